// Number, date and time items from creation to teardown: how teardown ends the controls,
// the client destroying the widgets first, and random screens of these items created,
// updated and freed, unrealized and shown.
#include "plgscreen.h"
#include <algorithm>
#include <climits>
#include <random>
namespace xt {
namespace {
class Lifecycle : public ShownBothWays {
protected:
    static bool shown() { return GetParam() != Shown::Never; }
};
/* A group box holding one item of each kind in a grid (2). */
void threeItems(Screen &s) {
    void *grid = s.add(s.add(nullptr, GroupBox, 1, groupBoxData("Schedule")), RowColManager, 2,
                       rowColData(1));
    s.add(grid, NumInput, 3, numInputData(2, 5, 1));
    s.add(grid, DateInput, 4, dateInputData(dateTime(2030, 1, 31)));
    s.add(grid, TimeInput, 5, timeInputData(timeOfDay(6, 30)));
}
/* Set by the holder form's destroy callback, which runs after the library's own. */
struct EndedBeforeHolder {
    const GuiWidgetRecord *rec;
    bool ended = false;
    static void note(Widget, XtPointer self, XtPointer) {
        auto *e = static_cast<EndedBeforeHolder *>(self);
        e->ended = e->rec->dateInput == nullptr;
    }
};
TEST_P(Lifecycle, TeardownEndsEachControlBeforeItsWidgetsAreFreed) {
    Screen s;
    threeItems(s);
    show(s, 7, shown());
    const auto *date = dateInputOf(s, 4);
    ASSERT_NE(date, nullptr);
    GoneList gone;
    for (Widget w : {date->wYear, date->wMonth, date->wDay, date->wUp, date->wDown})
        gone.watch(w);
    gone.watchItem(s, 4);
    EndedBeforeHolder holder{lastRecord(s.item(4))};
    XtAddCallback(XtParent(date->wDay), XmNdestroyCallback, EndedBeforeHolder::note, &holder);
    clearTraces();
    destroy(s);
    EXPECT_TRUE(holder.ended) << "the date control ends while the form of its fields still stands";
    ASSERT_FALSE(gone.names.empty());
    EXPECT_EQ(gone.names.back(), "form");
    std::sort(gone.names.begin(), gone.names.end());
    EXPECT_EQ(gone.names, (std::vector<std::string>{"/", "/", "down", "form", "input", "input",
                                                    "input", "up"}));
    for (const char *kind : {"6", "7", "8"}) /* the date, time and number controls */
        EXPECT_EQ(countTrace(std::string("Destroy widget of type ") + kind), 1) << kind;
    EXPECT_EQ(countTrace("Destroy widget of type 0"), 3 + 1 + 2 + 3 + 2);
}
/* A control stretched between two positions of the form, then another control: the form
** must not follow the first one's attachments into its freed fields while the second goes
** (valgrind sees the read: Motif is not instrumented). */
TEST_P(Lifecycle, StretchedControlsGoWithoutTheFormLayingOutFreedFields) {
    Screen s;
    s.add(nullptr, DateInput, 1, dateInputData(dateTime(2030, 1, 31)));
    s.attach(1, ATTACH_LEFT, ATTACH_POSITION, 0, 0, 17);
    s.attach(1, ATTACH_RIGHT, ATTACH_POSITION, 36, 0, 6);
    s.add(nullptr, NumInput, 2, numInputData(2, 5, 1));
    show(s, 7, shown());
    destroy(s);
}
TEST_P(Lifecycle, WidgetsDestroyedByTheClientTakeTheirControlsWithThem) {
    Screen s;
    threeItems(s);
    s.add(s.add(s.node(2), ComboBox, 6, comboBoxData(1, 0)), ComboItem, 7, comboItemData("one"));
    show(s, 7, shown());
    XtDestroyWidget(outer(s, 1));
    pump();
    for (int32_t id : {3, 4, 5, 6}) {
        const GuiWidgetRecord *rec = lastRecord(s.item(id));
        ASSERT_NE(rec, nullptr);
        EXPECT_TRUE(!rec->combo && !rec->numInput && !rec->dateInput && !rec->timeInput) << id;
    }
    show(s, 8, shown()); /* the client shows the same definition again, then ends it */
    const auto *number = numInputOf(s, 3);
    ASSERT_NE(number, nullptr);
    EXPECT_EQ(textOf(number->wText), "2");
    XtDestroyWidget(outer(s, 4));
    pump();
    EXPECT_EQ(outer(s, 4), nullptr) << "an inner item's records forget its widgets";
    EXPECT_NE(outer(s, 3), nullptr) << "and its neighbours keep theirs";
    clearTraces();
    destroy(s);
    EXPECT_EQ(countTrace("Destroy widget of type 7"), 1) << "the record is still visited";
}
/* Up to `count` items in group boxes, grids and at the top level: mostly number, date and
** time items with values from the edges of their ranges, sometimes with data of another
** type or none. Ids repeat, so updates hit several items or none. */
void randomItems(std::mt19937 &rng, Screen &s, int count) {
    static const uint32_t types[] = {NumInput, DateInput, TimeInput, NumInput, DateInput,
                                     TimeInput, GroupBox, RowColManager, Label};
    static const int32_t edges[] = {0, 1, -1, 10, 59, 86399, INT32_MIN, INT32_MAX};
    auto pick = [&](size_t n) { return n ? rng() % n : 0; };
    auto value = [&] { return pick(3) == 0 ? static_cast<int32_t>(rng()) : edges[pick(8)]; };
    std::vector<void *> containers;
    for (int i = 0; i < count; ++i) {
        void *parent =
            containers.empty() || pick(3) == 0 ? nullptr : containers[pick(containers.size())];
        const uint32_t type = types[pick(9)], dataType = pick(6) == 1 ? types[pick(9)] : type;
        void *d = dataType == NumInput ? numInputData(value(), value(), value(), value() & 7)
                  : dataType == DateInput ? dateInputData(value())
                  : dataType == TimeInput ? timeInputData(value())
                  : dataType == GroupBox ? groupBoxData("box")
                  : dataType == RowColManager ? rowColData(static_cast<int32_t>(pick(4)))
                  : labelData("label");
        if (pick(6) == 0) ObjReleaseInternal(&d);
        void *node = s.add(parent, type, static_cast<int32_t>(pick(count + 2)), d);
        if (type == GroupBox || type == RowColManager) containers.push_back(node);
    }
}
/* Clicks one arrow of each control that is on the display. */
int clickArrows(void *tree) {
    int clicks = 0;
    TreeWalk(tree, [](void *ctx, void *node) {
        GuiWidgetRecord *rec = lastRecord(itemOf(node));
        Widget arrow = !rec ? nullptr
                       : rec->numInput ? static_cast<GuiNumInput *>(rec->numInput)->wUp
                       : rec->dateInput ? static_cast<GuiDateInput *>(rec->dateInput)->wDown
                       : rec->timeInput ? static_cast<GuiTimeInput *>(rec->timeInput)->wUp
                                        : nullptr;
        if (!arrow || !isViewable(arrow)) return 1;
        click(arrow);
        ++*static_cast<int *>(ctx);
        return 1;
    }, &clicks, 0);
    return clicks;
}
TEST_P(Lifecycle, RandomScreensAreCreatedUpdatedAndFreedWithoutLeaksOrXErrors) {
    const uint32_t seed = 20251130;
    std::mt19937 rng(seed);
    const int errorsBefore = xErrorCount();
    int clicks = 0;
    for (int round = 0; round < 60; ++round) {
        SCOPED_TRACE("seed " + std::to_string(seed) + " round " + std::to_string(round));
        Screen shown, patch, next;
        randomItems(rng, shown, 1 + round % 12);
        randomItems(rng, patch, 1 + round % 5);
        randomItems(rng, next, 1 + round % 9);
        oScreenDef screen = record(shown, round);
        if (GetParam() == Shown::BeforeBuild && round % 4 == 0) {
            pump();
            clicks += clickArrows(shown.tree());
        }
        update(screen, patch, 1);
        update(screen, next, 0);
        if (round % 10 == 0) pump(1);
        GuiFreeScreenDefAndWidgets(&screen.oPluginScreenDef);
        ASSERT_EQ(xErrorCount(), errorsBefore);
    }
    EXPECT_TRUE(clicks > 0 || GetParam() == Shown::Never) << "some controls were clicked";
}
XT_BOTH_WAYS(Lifecycle, Never);
} // namespace
} // namespace xt
