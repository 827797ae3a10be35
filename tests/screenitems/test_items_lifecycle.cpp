// Number, date and time items from creation to teardown: what bad item data builds,
// how teardown ends the controls, what happens when the client destroys the widgets
// first, and random screens of these items created, updated and freed, in a form that
// is not on the display yet and in one that is.
#include "itemsfixture.h"

#include <Xm/Form.h>

#include <climits>
#include <random>
#include <string>
#include <vector>

namespace {

using items::textOf;

/* When the shell gets its windows: never during the test, or before the screen is built. */
enum class Shown { Never, BeforeBuild };

std::string shownName(const ::testing::TestParamInfo<Shown> &info) {
    return info.param == Shown::Never ? "Unrealized" : "Shown";
}

/* The names of the widgets whose destruction it watches, in the order they went. */
class Departures {
public:
    void watch(Widget w) { XtAddCallback(w, XmNdestroyCallback, gone, &names_); }
    const std::vector<std::string> &names() const { return names_; }

private:
    static void gone(Widget w, XtPointer names, XtPointer) {
        static_cast<std::vector<std::string> *>(names)->push_back(XtName(w));
    }
    std::vector<std::string> names_;
};

class Lifecycle : public items::ItemsTest, public ::testing::WithParamInterface<Shown> {
protected:
    void SetUp() override {
        ItemsTest::SetUp();
        if (GetParam() == Shown::BeforeBuild) realize();
    }
    void build(xt::Screen &s) { show(s, GetParam() == Shown::BeforeBuild); }

    /* A group box holding one item of each kind. */
    static void threeItems(xt::Screen &s) {
        void *box = s.add(nullptr, GroupBox, 1, xt::groupBoxData("Schedule"));
        void *grid = s.add(box, RowColManager, 2, xt::rowColData(1));
        s.add(grid, NumInput, 3, xt::numInputData(2, 5, 1));
        s.add(grid, DateInput, 4, xt::dateInputData(items::dateTime(2030, 1, 31)));
        s.add(grid, TimeInput, 5, xt::timeInputData(items::timeOfDay(6, 30)));
    }
};

TEST_P(Lifecycle, TeardownEndsEachControlBeforeTheWidgetsAroundIt) {
    xt::Screen s;
    threeItems(s);
    build(s);
    const GuiDateInput *date = dateInputOf(s, 4);
    ASSERT_NE(date, nullptr);
    Departures departures;
    for (Widget w : {date->wYear, date->wMonth, date->wDay, date->wUp, date->wDown}) departures.watch(w);
    for (GuiWidgetRecord *rec : records(s, 4))
        if (rec->widget) departures.watch(rec->widget);
    const int64_t built = poolGrowth();
    EXPECT_GT(built, 0);

    clearTraces();
    destroy(s);
    EXPECT_EQ(departures.names(),
              (std::vector<std::string>{"input", "input", "input", "up", "down", "/", "/", "form"}))
        << "the date control (year, month, day, buttons), then the labels, then the form";
    EXPECT_EQ(countTrace("Destroy widget of type 6"), 1);
    EXPECT_EQ(countTrace("Destroy widget of type 7"), 1);
    EXPECT_EQ(countTrace("Destroy widget of type 8"), 1);
    EXPECT_EQ(countTrace("Destroy widget of type 0"), 3 + 1 + 2 + 3 + 2);
    EXPECT_EQ(poolGrowth(), 0) << "the control handles went with the screen";
}

/* A control stretched between two positions of the screen's form, then another control:
** the form must not follow the first one's attachments into its freed fields while the
** second goes (valgrind sees the read: Motif is not instrumented). */
TEST_P(Lifecycle, StretchedControlsGoWithoutTheFormLayingOutFreedFields) {
    xt::Screen s;
    s.add(nullptr, DateInput, 1, xt::dateInputData(items::dateTime(2030, 1, 31)));
    s.attach(1, ATTACH_LEFT, ATTACH_POSITION, 0, 0, 17);
    s.attach(1, ATTACH_RIGHT, ATTACH_POSITION, 36, 0, 6);
    s.add(nullptr, NumInput, 2, xt::numInputData(2, 5, 1));
    build(s);
    destroy(s);
    EXPECT_EQ(poolGrowth(), 0);
}

TEST_P(Lifecycle, WrongOrMissingItemDataBuildsNothing) {
    xt::Screen s;
    s.add(nullptr, NumInput, 1);
    s.add(nullptr, NumInput, 2, xt::dateInputData(5));            /* another tag and shape */
    s.add(nullptr, DateInput, 3);
    s.add(nullptr, DateInput, 4, xt::timeInputData(5));           /* the same shape, another tag */
    s.add(nullptr, TimeInput, 5, xt::labelData("not a time"));
    s.add(nullptr, TimeInput, 6, xt::dateInputData(0));
    build(s);
    for (int32_t id = 1; id <= 6; ++id) {
        ASSERT_NE(s.item(id)->guiData, nullptr) << id;
        EXPECT_EQ(xt::widgetCount(s.item(id)), 0) << id;
    }
    Cardinal children = 99;
    XtVaGetValues(form(), XmNnumChildren, &children, nullptr);
    EXPECT_EQ(children, 0u);
    EXPECT_FALSE(hasTrace("Create date widgets"));
    EXPECT_EQ(data<TimeInputData>(s, 4)->time, 5) << "nothing reported into the data";
    clearTraces();
    destroy(s);
    EXPECT_FALSE(hasTraceContaining("Destroy widget"));
}

TEST_P(Lifecycle, WidgetsDestroyedByTheClientTakeTheirControlsWithThem) {
    xt::Screen s;
    threeItems(s);
    void *combo = s.add(s.node(2), ComboBox, 6, xt::comboBoxData(1, 0));
    s.add(combo, ComboItem, 7, xt::comboItemData("one"));
    build(s);
    XtDestroyWidget(xt::outerWidget(s.item(1)));
    xt::pump();
    for (int32_t id : {3, 4, 5, 6}) {
        const GuiWidgetRecord *rec = xt::lastRecord(s.item(id));
        ASSERT_NE(rec, nullptr);
        EXPECT_EQ(rec->combo, nullptr) << id;
        EXPECT_EQ(rec->numInput, nullptr) << id;
        EXPECT_EQ(rec->dateInput, nullptr) << id;
        EXPECT_EQ(rec->timeInput, nullptr) << id;
    }

    /* The client shows the same definition again, then ends it. */
    GuiCreatePlgScreen(form(), s.tree(), 8);
    xt::pump();
    const GuiNumInput *number = numInputOf(s, 3);
    ASSERT_NE(number, nullptr);
    EXPECT_EQ(textOf(number->wText), "2");
    XtDestroyWidget(xt::outerWidget(s.item(4)));
    xt::pump();
    EXPECT_EQ(xt::outerWidget(s.item(4)), nullptr) << "an inner item's records forget its widgets";
    EXPECT_NE(xt::outerWidget(s.item(3)), nullptr) << "and its neighbours keep theirs";
    clearTraces();
    destroy(s);
    EXPECT_EQ(countTrace("Destroy widget of type 7"), 1) << "the record is still visited";
}

TEST_P(Lifecycle, PerItemAndWholeScreenUpdatesKeepOrReplaceTheControls) {
    oScreenDef screen{9, 0, 0, 0, form(), nullptr};
    {
        xt::Screen first;
        threeItems(first);
        screen.oPluginScreenDef = first.tree();
        ObjIncRefCount(first.tree());
        build(first);
    }
    void *shown = screen.oPluginScreenDef;
    GuiNumInput *number = static_cast<GuiNumInput *>(xt::lastRecord(xt::itemOf(xt::findNode(shown, 3)))->numInput);
    ASSERT_NE(number, nullptr);

    xt::Screen patch;
    patch.add(nullptr, DateInput, 4, xt::dateInputData(items::dateTime(2031, 2, 1)));
    patch.add(nullptr, NumInput, 3, xt::numInputData(4, 5, 1));
    patch.item(3)->hidden = 1;
    oUpdateScreen items{patch.tree(), 0, 0, nullptr};
    EXPECT_EQ(GuiUpdatePlgScreen(&screen, &items, 1), 1);
    ScreenItem *shownNumber = xt::itemOf(xt::findNode(shown, 3));
    EXPECT_EQ(xt::lastRecord(shownNumber)->numInput, number) << "the control stays";
    EXPECT_EQ(shownNumber->hidden, 1);
    EXPECT_FALSE(xt::isMapped(xt::outerWidget(shownNumber)));

    xt::Screen next;
    next.add(nullptr, TimeInput, 1, xt::timeInputData(items::timeOfDay(1, 2)));
    oUpdateScreen whole{next.tree(), 0, 0, nullptr};
    clearTraces();
    EXPECT_EQ(GuiUpdatePlgScreen(&screen, &whole, 0), 1);
    EXPECT_EQ(countTrace("Destroy widget of type 6"), 1);
    EXPECT_EQ(countTrace("Destroy widget of type 7"), 1);
    EXPECT_EQ(countTrace("Destroy widget of type 8"), 1);
    EXPECT_NE(timeInputOf(next, 1), nullptr);
    GuiFreeScreenDefAndWidgets(&screen.oPluginScreenDef);
}

/* ---- Random screens of these items ---------------------------------------------------- */

class RandomItems {
public:
    explicit RandomItems(uint32_t seed) : rng_(seed) {}

    /* Up to `count` items in group boxes, grids and at the top level: mostly number, date
    ** and time items with values from the edges of their ranges, sometimes with data of
    ** another type or none. Ids repeat, so updates hit several items or none. */
    void fill(xt::Screen &s, int count) {
        std::vector<void *> containers;
        for (int i = 0; i < count; ++i) {
            void *parent = containers.empty() || pick(3) == 0 ? nullptr : containers[pick(containers.size())];
            const uint32_t type = kTypes[pick(sizeof kTypes / sizeof kTypes[0])];
            void *node = s.add(parent, type, static_cast<int32_t>(pick(count + 2)), data(type));
            if (type == GroupBox || type == RowColManager) containers.push_back(node);
        }
    }

private:
    static constexpr uint32_t kTypes[] = {NumInput, DateInput, TimeInput, NumInput, DateInput,
                                          TimeInput, GroupBox, RowColManager, Label};

    size_t pick(size_t n) { return n ? rng_() % n : 0; }

    int32_t value() {
        static const int32_t edges[] = {0, 1, -1, 10, 59, 86399, INT32_MIN, INT32_MAX};
        return pick(3) == 0 ? static_cast<int32_t>(rng_()) : edges[pick(sizeof edges / sizeof edges[0])];
    }

    void *data(uint32_t type) {
        switch (pick(6)) {
        case 0: return nullptr;
        case 1: type = kTypes[pick(sizeof kTypes / sizeof kTypes[0])]; break; /* maybe another's */
        default: break;
        }
        switch (type) {
        case NumInput: return xt::numInputData(value(), value(), value(), static_cast<int32_t>(pick(12)));
        case DateInput: return xt::dateInputData(value());
        case TimeInput: return xt::timeInputData(value());
        case GroupBox: return xt::groupBoxData("box");
        case RowColManager: return xt::rowColData(static_cast<int32_t>(pick(4)));
        default: return xt::labelData("label");
        }
    }

    std::mt19937 rng_;
};

/* Clicks one arrow of each control that is on the display. */
int clickArrows(void *tree) {
    struct Walk {
        static int visit(void *ctx, void *node) {
            GuiWidgetRecord *rec = xt::lastRecord(xt::itemOf(node));
            if (rec == nullptr) return 1;
            Widget arrow = nullptr;
            if (auto *n = static_cast<GuiNumInput *>(rec->numInput)) arrow = n->wUp;
            if (auto *d = static_cast<GuiDateInput *>(rec->dateInput)) arrow = d->wDown;
            if (auto *t = static_cast<GuiTimeInput *>(rec->timeInput)) arrow = t->wUp;
            if (arrow != nullptr && xt::isViewable(arrow)) {
                xt::click(arrow);
                ++*static_cast<int *>(ctx);
            }
            return 1;
        }
    };
    int clicks = 0;
    TreeWalk(tree, Walk::visit, &clicks, 0);
    return clicks;
}

TEST_P(Lifecycle, RandomScreensAreCreatedUpdatedAndFreedWithoutLeaksOrXErrors) {
    const uint32_t seed = 20251130;
    RandomItems random(seed);
    const int errorsBefore = xt::xErrorCount();
    int clicks = 0;
    for (int round = 0; round < 60; ++round) {
        SCOPED_TRACE("seed " + std::to_string(seed) + " round " + std::to_string(round));
        xt::Screen shown, patch, next;
        random.fill(shown, 1 + round % 12);
        random.fill(patch, 1 + round % 5);
        random.fill(next, 1 + round % 9);

        oScreenDef screen{round, 0, 0, 0, form(), shown.tree()};
        ObjIncRefCount(shown.tree());
        GuiCreatePlgScreen(form(), shown.tree(), round);
        if (GetParam() == Shown::BeforeBuild && round % 4 == 0) {
            xt::pump();
            clicks += clickArrows(shown.tree());
        }
        oUpdateScreen items{patch.tree(), 0, 0, nullptr};
        GuiUpdatePlgScreen(&screen, &items, 1);
        oUpdateScreen whole{next.tree(), 0, 0, nullptr};
        GuiUpdatePlgScreen(&screen, &whole, 0);
        if (round % 10 == 0) xt::pump(1);
        GuiFreeScreenDefAndWidgets(&screen.oPluginScreenDef);
        ASSERT_EQ(xt::xErrorCount(), errorsBefore);
    }
    if (GetParam() == Shown::BeforeBuild) {
        EXPECT_GT(clicks, 0) << "some controls were clicked";
    }
    EXPECT_EQ(poolGrowth(), 0);
}

INSTANTIATE_TEST_SUITE_P(Items, Lifecycle, ::testing::Values(Shown::Never, Shown::BeforeBuild), shownName);

} // namespace
