// Per-item updates of a shown screen: what each item type takes from an update, the
// records the shown tree keeps, the search by id, and the viewer's feed of update lines.
#include "plgscreen.h"

#include <Xm/Text.h>
#include <unistd.h>

#include <functional>

#include "liveupdates.h"
#include "viewerfixture.h"

namespace xt {
namespace {
using Updates = PlgScreenTest;

std::string labelOf(Widget w) {
    XmString s = nullptr;
    char *text = nullptr;
    XtVaGetValues(w, XmNlabelString, &s, nullptr);
    XmStringGetLtoR(s, const_cast<char *>(XmSTRING_DEFAULT_CHARSET), &text);
    std::unique_ptr<char, decltype(&XtFree)> owned(text, XtFree);
    XmStringFree(s);
    return text ? text : "";
}
int entries(Widget list) { int n = -1; XtVaGetValues(list, XmNitemCount, &n, nullptr); return n; }
void *withEntries(Screen &s, void *node, uint32_t type, std::initializer_list<const char *> texts,
                  int32_t firstId) {
    for (const char *t : texts)
        s.add(node, type, firstId++, type == ComboItem ? comboItemData(t) : listItemData(t, 0));
    return node;
}

/* The shown screen of the table: one item of each kind in a grid (100). */
void buildShown(Screen &s) {
    void *grid = column(s);
    s.add(grid, Label, 1, labelData("same"));
    s.add(grid, Label, 2, labelData("old"));
    s.add(grid, GroupBox, 3, groupBoxData("old"));
    s.add(grid, PushButton, 4, pushButtonData("old"));
    s.add(grid, selectionItem, 5, selectionData("old", 0));
    s.addAction(5, 1, ACTION_HIDE);
    s.add(grid, EditBox, 6, editBoxData(0, 10, 3, "old"));
    s.add(grid, NumInput, 7, numInputData(5, 100, 0));
    withEntries(s, s.add(grid, ListBox, 8, listBoxData(0)), ListItem, {"a", "b"}, 80);
    withEntries(s, s.add(grid, ComboBox, 9, comboBoxData(1, 0)), ComboItem, {"a", "b"}, 90);
    void *radios = s.add(grid, RadioManager, 10, radioManagerData());
    for (int32_t i = 0; i < 3; ++i) s.add(radios, RadioButton, 101 + i, radioButtonData("old", i == 0));
    s.add(grid, DateInput, 11, dateInputData(dateTime(2024, 2, 28)));
}

/* A row: the update item(s) it sends, the result, and what holds afterwards (given the
** item data before and the update's). */
struct Row {
    const char *what; int32_t id; std::function<void(Screen &)> patch; int result;
    std::function<bool(const Screen &, void *was, void *now)> holds;
};
bool comboShows(const Screen &s, Boolean editable) {
    const GuiCombo *c = comboOf(s, 9);
    Boolean e = !editable;
    XtVaGetValues(c->wText, XmNeditable, &e, nullptr);
    return entries(c->wList) == 3 && textOf(c->wText) == "two" && e == editable && hiddenItem(s, 1);
}

TEST_F(Updates, EachItemTakesItsUpdateInPlace) {
    Screen shown;
    buildShown(shown);
    oScreenDef screen = record(shown);
    realize();
    Widget scrolled = outer(shown, 6);
    auto comboRow = [](int32_t userEntry) { /* entry 2 of three chosen; it hides item 1 */
        return [userEntry](Screen &p) {
            withEntries(p, p.add(nullptr, ComboBox, 9, comboBoxData(2, userEntry)), ComboItem, {"one", "two", "three"}, 95);
            p.addAction(96, 1, ACTION_HIDE);
        };
    };
    const Row rows[] = {
        {"a label with the same text keeps its data", 1, [](Screen &p) { p.add(nullptr, Label, 1, labelData("same")); }, 1,
         [](const Screen &s, void *was, void *) { return labelOf(value(s, 1)) == "same" && data<void>(s, 1) == was; }},
        {"a label with a new text", 2, [](Screen &p) { p.add(nullptr, Label, 2, labelData("new")); }, 1,
         [](const Screen &s, void *, void *now) { return labelOf(value(s, 2)) == "new" && data<void>(s, 2) == now; }},
        {"a group box title", 3, [](Screen &p) { p.add(nullptr, GroupBox, 3, groupBoxData("new")); }, 1,
         [](const Screen &s, void *, void *now) { return labelOf(value(s, 3)) == "new" && data<void>(s, 3) == now; }},
        {"a push button label", 4, [](Screen &p) { p.add(nullptr, PushButton, 4, pushButtonData("new")); }, 1,
         [](const Screen &s, void *, void *) { return labelOf(value(s, 4)) == "new"; }},
        {"a toggle, without its actions", 5, [](Screen &p) { p.add(nullptr, selectionItem, 5, selectionData("new", 1)); }, 1,
         [this](const Screen &s, void *, void *) { return labelOf(value(s, 5)) == "new" && toggleOn(s, 5) && actionTraces() == 0; }},
        {"an edit box hidden", 6, [](Screen &p) { p.add(nullptr, EditBox, 6, editBoxData(0, 0, 3, "new")); p.item(6)->hidden = 1; }, 1,
         [&](const Screen &s, void *, void *) { return hiddenItem(s, 6) && outer(s, 6) == scrolled && XmTextGetLastPosition(value(s, 6)) == 3; }},
        {"a number", 7, [](Screen &p) { p.add(nullptr, NumInput, 7, numInputData(42, 100, 0)); }, 1,
         [](const Screen &s, void *, void *) { return textOf(numInputOf(s, 7)->wText) == "42" && data<NumInputData>(s, 7)->value == 42; }},
        {"a list without entries", 8, [](Screen &p) { p.add(nullptr, ListBox, 8, listBoxData(0)); }, 1,
         [](const Screen &s, void *, void *) { return entries(value(s, 8)) == 0 && TreeNodeChildCount(s.node(8)) == 0; }},
        {"a combo box with user entry", 9, comboRow(1), 1, [](const Screen &s, void *, void *) { return comboShows(s, True); }},
        {"a combo box without user entry", 9, comboRow(0), 1, [](const Screen &s, void *, void *) { return comboShows(s, False); }},
        {"fewer radio buttons", 10, [](Screen &p) { p.add(p.add(nullptr, RadioManager, 10, radioManagerData()), RadioButton, 101, radioButtonData("new", 0)); }, 1,
         [](const Screen &s, void *, void *) { return labelOf(value(s, 101)) == "new" && !toggleOn(s, 101) && data<RadioButtonData>(s, 101)->set == 0 && labelOf(value(s, 102)) == "old" && toggleOn(s, 102) == false; }},
        {"a date takes its flags only", 11, [](Screen &p) { p.add(nullptr, DateInput, 11, dateInputData(7)); p.item(11)->disabled = 1; }, 1,
         [](const Screen &s, void *was, void *) { return disabledItem(s, 11) && data<void>(s, 11) == was && textOf(dateInputOf(s, 11)->wDay) == "28"; }},
        {"an edit box sent a label's data", 6, [](Screen &p) { p.add(nullptr, EditBox, 6, labelData("no")); }, 0,
         [](const Screen &s, void *was, void *) { return shownItem(s, 6) && data<void>(s, 6) == was; }},
        {"a push button sent no data", 4, [](Screen &p) { p.add(nullptr, PushButton, 4); p.item(4)->disabled = 1; }, 0,
         [](const Screen &s, void *, void *) { return labelOf(value(s, 4)) == "new" && disabledItem(s, 4); }},
        {"a grid is unknown yet takes flags and actions", 100, [](Screen &p) { p.add(nullptr, RowColManager, 100, rowColData(1)); p.item(100)->disabled = 1; p.addAction(100, 1, ACTION_SHOW); }, 0,
         [](const Screen &s, void *, void *) { return disabledItem(s, 100) && ListCount(s.item(100)->actions) == 1; }},
    };
    for (const Row &row : rows) {
        SCOPED_TRACE(row.what);
        void *was = shown.item(row.id)->itemData, *now = nullptr;
        clearTraces();
        {
            Screen patch; /* released at once: the shown tree keeps what it took */
            row.patch(patch);
            now = patch.item(row.id)->itemData;
            EXPECT_EQ(update(screen, patch, 1), row.result);
        }
        pump();
        EXPECT_TRUE(row.holds(shown, was, now));
    }
    // The entries that came with the combo box's update outlive the update's tree: a
    // click on one (the grid enabled again) reads its record.
    Screen enable;
    enable.add(nullptr, RowColManager, 100, rowColData(1));
    EXPECT_EQ(update(screen, enable, 1), 0);
    click(comboOf(shown, 9)->wButton);
    clickEntry(comboOf(shown, 9)->wList, 3);
    EXPECT_EQ(textOf(comboOf(shown, 9)->wText), "three");
    EXPECT_EQ(data<ComboBoxData>(shown, 9)->selected, 3);
    GuiFreeScreenDefAndWidgets(&screen.oPluginScreenDef);
}

/* The first item with an id in tree order is updated, before and after the tree's shape
** changes: combo entries replaced by an update, a node pruned by the client, a new tree. */
TEST_F(Updates, TheFirstItemInTreeOrderIsUpdatedWhateverTheShape) {
    Screen shown, next;
    void *box = shown.add(nullptr, GroupBox, 1, groupBoxData("box"));
    shown.add(box, Label, 5, labelData("inner"));
    shown.add(nullptr, Label, 5, labelData("outer"));
    withEntries(shown, shown.add(nullptr, ComboBox, 2, comboBoxData(1, 0)), ComboItem, {"a"}, 60);
    shown.add(nullptr, Label, 7, labelData("seven"));
    next.add(nullptr, Label, 5, labelData("next"));
    oScreenDef screen = record(shown);
    auto send = [&](std::function<void(Screen &)> patch) {
        Screen p;
        patch(p);
        return update(screen, p, 1);
    };
    Widget inner = value(shown, 5), seven = value(shown, 7);
    const struct { const char *what; std::function<void(Screen &)> patch; std::function<bool()> holds; } rows[] = {
        {"id 5 twice: the inner label", [](Screen &p) { p.add(nullptr, Label, 5, labelData("x")); },
         [&] { return labelOf(inner) == "x"; }},
        {"combo entries that take id 7", [](Screen &p) { withEntries(p, p.add(nullptr, ComboBox, 2, comboBoxData(1, 0)), ComboItem, {"e"}, 7); },
         [&] { return findNode(shown.tree(), 7) == TreeNodeFirstChild(shown.node(2)); }},
        {"id 7 now names the entry first", [](Screen &p) { p.add(nullptr, Label, 7, labelData("y")); },
         [&] { return labelOf(seven) == "seven"; }},
        {"the entry pruned by the client", [&](Screen &p) { TreePruneBranch(TreeNodeFirstChild(shown.node(2))); p.add(nullptr, Label, 7, labelData("y")); },
         [&] { return labelOf(seven) == "y"; }},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.what);
        EXPECT_EQ(send(row.patch), 1);
        EXPECT_TRUE(row.holds());
    }
    EXPECT_EQ(update(screen, next, 0), 1);
    EXPECT_EQ(send([](Screen &p) { p.add(nullptr, Label, 5, labelData("again")); }), 1);
    EXPECT_EQ(labelOf(value(next, 5)), "again");
    GuiFreeScreenDefAndWidgets(&screen.oPluginScreenDef);
}

/* Four items from `id` on: a label, a combo box and a list box of two entries, a number. */
void addBlock(Screen &s, void *parent, int32_t id, const std::string &text, int32_t n) {
    s.add(parent, Label, id, labelData(text.c_str()));
    withEntries(s, s.add(parent, ComboBox, id + 1, comboBoxData(2, n % 2)), ComboItem, {"x", text.c_str()}, 5000);
    withEntries(s, s.add(parent, ListBox, id + 2, listBoxData(1)), ListItem, {text.c_str(), "y"}, 6000);
    s.add(parent, NumInput, id + 3, numInputData(n, 1000, 0));
}

/* Many update cycles on a large screen: no X error, no pool block left (the fixture). */
TEST_F(Updates, ManyCyclesOnALargeScreenLeaveNothingBehind) {
    const int cycles = std::getenv("XC_UPDATE_CYCLES") ? std::atoi(std::getenv("XC_UPDATE_CYCLES")) : 1000;
    Screen shown;
    void *grid = shown.add(nullptr, RowColManager, 0, rowColData(8));
    for (int32_t id = 1; id <= 196; id += 4) addBlock(shown, grid, id, "shown", 0);
    oScreenDef screen = record(shown);
    realize(1000, 900);
    for (int cycle = 0; cycle < cycles; ++cycle) {
        const std::string text = std::to_string(cycle);
        const int32_t id = 1 + 4 * (cycle % 49); /* the blocks in turn */
        Screen p;
        addBlock(p, nullptr, id, text, cycle);
        ASSERT_EQ(update(screen, p, 1), 1) << "cycle " << cycle;
        if (cycle % 50 == 0) pump(1);
        if (cycle == cycles - 1) {
            EXPECT_TRUE(labelOf(value(shown, id)) == text && textOf(comboOf(shown, id + 1)->wText) == text);
        }
    }
    GuiFreeScreenDefAndWidgets(&screen.oPluginScreenDef);
}

/* The viewer's feed: lines written to a pipe reach the widgets through the Xt loop; bad
** lines are reported with their line and skipped, a line may come in pieces. */
TEST_F(Updates, TheViewersFeedAppliesGoodLinesAndNamesBadOnes) {
    Screen shown;
    shown.add(nullptr, Label, 2, labelData("0"));
    oScreenDef screen = record(shown);
    realize();
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    testing::internal::CaptureStderr();
    {
        liveupdates::Feed feed(app(), ends[0], "progress", shell(), screen);
        const std::string lines = R"({"update": "items", "items": [{"type": "Label", "id": 2, "data": {"text": "1"}}]})"
            "\n{\"update\": \"items\", oops}\n\n" R"({"update": "items", "items": [{"type": "Label", "id": 2, "data": {"text": 3}}]})"
            "\n" R"({"update": "items", "title": "Done", "items": [{"type": "Label", "id": 2, "data": {"text": "4"}}]})" "\n";
        const size_t cut = lines.size() - 20; /* the last line comes in two pieces */
        ASSERT_EQ(write(ends[1], lines.data(), cut), ssize_t(cut));
        EXPECT_TRUE(pumpUntil([&] { return feed.linesApplied() + feed.linesRefused() == 3; }, 10000));
        ASSERT_EQ(write(ends[1], lines.data() + cut, 20), 20);
        EXPECT_TRUE(pumpUntil([&] { return feed.linesApplied() == 2; }, 10000));
        close(ends[1]);
        EXPECT_TRUE(pumpUntil([&] { return feed.ended(); }, 10000)) << "the end of the input";
        EXPECT_EQ(feed.linesRefused(), 2);
    }
    const std::string err = testing::internal::GetCapturedStderr();
    EXPECT_TRUE(err.find("xcontrols-view: progress: line 2, column 21: ") != err.npos &&
                err.find("xcontrols-view: progress: line 4: items[0].data.text: ") != err.npos) << err;
    char *title = nullptr;
    XtVaGetValues(shell(), XmNtitle, &title, nullptr);
    EXPECT_TRUE(labelOf(value(shown, 2)) == "4" && std::string(title) == "Done" && isViewable(value(shown, 2)));
    GuiFreeScreenDefAndWidgets(&screen.oPluginScreenDef);
}

/* The viewer's --updates option: lines on its standard input change the screen until a
** combo box update whose chosen entry closes it makes the viewer answer. */
TEST(ViewerUpdates, LinesOnStandardInputChangeTheScreenUntilItCloses) {
    Scratch files;
    const std::string screen = files.file("s.json", R"({"jobId": 9, "items": [{"type": "ComboBox", "id": 2},
        {"type": "PushButton", "id": 6, "actions": [{"kind": "CLOSE", "target": 6}]}]})");
    const std::string lines =
        R"({"update": "screen", "items": [{"type": "ComboBox", "id": 2}, {"type": "Label", "id": 2},)"
        R"( {"type": "PushButton", "id": 6, "actions": [{"kind": "CLOSE", "target": 6}]}]})" "\n"
        R"({"update": "items", "items": [{"type": "ComboBox", "id": 2, "data": {"selected": 2}, "children": [)"
        R"({"type": "ComboItem", "id": 4, "data": {"text": "b"}}, {"type": "ComboItem", "id": 5, "data": )"
        R"({"text": "c"}, "actions": [{"kind": "CLOSE", "target": 6}]}]}]})" "\n";
    Viewer viewer({"--updates", "-", screen}, "", lines);
    EXPECT_EQ(viewer.finish(), 0) << viewer.err;
    EXPECT_NE(viewer.out.find(R"("selectedText": "c")"), std::string::npos) << viewer.out;
    EXPECT_NE(viewer.err.find("xcontrols-view: warning: -: line 1, column 39: id 2 is also used"), std::string::npos) << viewer.err;
}

} // namespace
} // namespace xt
