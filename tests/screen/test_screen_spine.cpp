// The plugin screen driver: create dispatch, stale GUI data, whole-screen and per-item
// updates, teardown, and what the trace says about each.
#include "xharness.h"
#include <Xm/Label.h>
#include <string>
#include <vector>
#include "screens.h"

namespace {

using xt::outerWidget;

std::vector<std::string> &order() {
    static std::vector<std::string> names;
    return names;
}

void noted(Widget w, XtPointer, XtPointer) { order().push_back(XtName(w)); }

int noteDestruction(void *, void *element) {
    auto *rec = static_cast<GuiWidgetRecord *>(ListElementItem(element));
    XtAddCallback(rec->widget, XmNdestroyCallback, noted, nullptr);
    return 1;
}

class Spine : public xt::XTest {
protected:
    void SetUp() override {
        XTest::SetUp();
        screen_.jobId = 31;
        screen_.parentWidget = form();
    }
    /* Shows `tree` as the client does: the screen record holds a reference on it. */
    void show(void *tree) {
        ObjIncRefCount(tree);
        screen_.oPluginScreenDef = tree;
        GuiCreatePlgScreen(form(), tree, screen_.jobId);
    }
    void freeShown() { GuiFreeScreenDefAndWidgets(&screen_.oPluginScreenDef); }
    int updateItems(xt::Screen &patch) {
        oUpdateScreen u{patch.tree(), 0, 0, nullptr};
        return GuiUpdatePlgScreen(&screen_, &u, 1);
    }
    oScreenDef screen_{};
};

TEST_F(Spine, EveryKnownTypeWritesItsTraceLineAndUnknownCodesAreSkipped) {
    const std::vector<std::pair<uint32_t, std::string>> known = {
        {1, "Create a GroupBox"}, {2, "Create a TabManager"}, {3, "Create a TabPage"},
        {4, "Create a ComboBox"}, {5, "Create a ComboItem"}, {6, "Create a ListBox"},
        {7, "Create a ListItem"}, {9, "Create a selectionItem"}, {10, "Create a RadioManager"},
        {11, "Create a RadioButton"}, {12, "Create a PushButton"}, {13, "Create a EditBox"},
        {14, "Create a NumInput"}, {19, "Create a Label"}, {20, "Create a Row Col Manager"},
        {21, "Create a Date Input"}, {22, "Create a Time Input"},
        {23, "Create a Change password control"}, {24, "Create a GetPasswordBox"},
        {25, "Create a Stacked TabManager"}, {26, "Create an extended ListBox"}};
    const uint32_t unknown[] = {0, 8, 15, 16, 17, 18, 27, 4000000000u};
    xt::Screen s;
    int id = 1;
    for (auto &k : known) s.add(nullptr, k.first, id++);
    for (uint32_t code : unknown) s.add(nullptr, code, id++);
    GuiCreatePlgScreen(form(), s.tree(), 1);
    for (auto &k : known) EXPECT_EQ(countTrace(k.second), 1) << k.second;
    int unknownLines = 0;
    for (auto &t : traces())
        if (t.text == "unknown screen item") {
            ++unknownLines;
            EXPECT_EQ(t.level, 1);
            EXPECT_EQ(t.component, "GUI");
        }
    EXPECT_EQ(unknownLines, 8);
    for (int i = 0; i < 8; ++i) EXPECT_EQ(s.item(22 + i)->guiData, nullptr);
    GuiFreeScreenDefAndWidgets(s.slot());
}

TEST_F(Spine, ItemsWithoutDataGetGuiDataButNoWidget) {
    xt::Screen s;
    s.add(nullptr, Label, 1);
    s.add(nullptr, GroupBox, 2, xt::labelData("a label's data in a group box"));
    s.add(nullptr, RowColManager, 3, xt::labelData("wrong"));
    GuiCreatePlgScreen(form(), s.tree(), 1);
    ASSERT_NE(s.item(1)->guiData, nullptr);
    EXPECT_EQ(xt::widgetCount(s.item(1)), 0);
    ASSERT_NE(s.item(2)->guiData, nullptr);
    EXPECT_EQ(xt::widgetCount(s.item(2)), 0);
    EXPECT_EQ(s.item(3)->guiData, nullptr) << "a row-column manager checks its data first";
    GuiFreeScreenDefAndWidgets(s.slot());
}

TEST_F(Spine, GuiDataRecordsTheJobAndTopLevelLabelsUseTheScreenForm) {
    xt::Screen s;
    s.add(nullptr, Label, 1, xt::labelData("top"));
    GuiCreatePlgScreen(form(), s.tree(), 77);
    EXPECT_EQ(glJobId, 77);
    EXPECT_EQ(s.item(1)->guiData->jobId, 77);
    EXPECT_EQ(XtParent(outerWidget(s.item(1))), form());
    EXPECT_TRUE(hasTrace("Can't find parent use toplevel"));
    EXPECT_TRUE(hasTrace("Label is top"));
    GuiFreeScreenDefAndWidgets(s.slot());
}

TEST_F(Spine, RecreatingAShownDefinitionReleasesTheOldGuiData) {
    xt::Screen s;
    void *box = s.add(nullptr, GroupBox, 1, xt::groupBoxData("Box"));
    s.add(box, Label, 2, xt::labelData("in box"));
    GuiCreatePlgScreen(form(), s.tree(), 1);
    oGuiData *old = s.item(2)->guiData;
    ObjIncRefCount(old);
    XtDestroyWidget(outerWidget(s.item(1))); /* the client destroys the shown widgets */
    xt::pump();
    EXPECT_EQ(outerWidget(s.item(2)), nullptr) << "records forget destroyed widgets";
    clearTraces();
    GuiCreatePlgScreen(form(), s.tree(), 2);
    EXPECT_FALSE(hasTraceContaining("created again")) << "nothing of the first build stands";
    EXPECT_EQ(ObjGetRefCount(old), 1) << "the item dropped its reference on the old GUI data";
    EXPECT_NE(s.item(2)->guiData, old);
    EXPECT_EQ(s.item(2)->guiData->jobId, 2);
    EXPECT_EQ(XtParent(outerWidget(s.item(2))), s.item(1)->guiData->childParent);
    ObjReleaseInternal(&old);
    GuiCreatePlgScreen(form(), s.tree(), 3); /* over the standing widgets of the second */
    EXPECT_TRUE(hasTrace("Screen created again over 2 items whose widgets still stand"));
    GuiFreeScreenDefAndWidgets(s.slot());
}

TEST_F(Spine, TeardownDestroysChildrenFirstAndEachItemsWidgetsLastFirst) {
    xt::Screen s;
    void *box = s.add(nullptr, GroupBox, 1, xt::groupBoxData("Box"));
    s.add(box, Label, 2, xt::labelData("child"));
    GuiCreatePlgScreen(form(), s.tree(), 1);
    order().clear();
    for (int id : {1, 2}) ListWalk(s.item(id)->guiData->widgetList, noteDestruction, nullptr);
    oGuiData *boxData = s.item(1)->guiData;
    ObjIncRefCount(boxData);
    clearTraces();
    GuiFreeScreenDefAndWidgets(s.slot());
    EXPECT_EQ(s.tree(), nullptr);
    EXPECT_EQ(boxData->childParent, nullptr) << "no record keeps a destroyed form";
    ObjReleaseInternal(&boxData);
    EXPECT_EQ(order(), (std::vector<std::string>{"label", "label", "form", "frame"}));
    EXPECT_TRUE(hasTrace("Destroy the widgets making up the screen"));
    EXPECT_EQ(countTrace("Destroy widget of type 0"), 4);
}

TEST_F(Spine, NoParentWidgetBuildsNothing) {
    xt::Screen s;
    s.add(nullptr, Label, 1, xt::labelData("orphan"));
    EXPECT_EQ(GuiCreatePlgScreen(nullptr, s.tree(), 3), 1);
    EXPECT_TRUE(hasTrace("No parent widget for the screen"));
    EXPECT_EQ(s.item(1)->guiData, nullptr);
    oScreenDef orphan{3, 0, 0, 0, nullptr, nullptr};
    oUpdateScreen whole{s.tree(), 0, 0, nullptr};
    EXPECT_EQ(GuiUpdatePlgScreen(&orphan, &whole, 0), 0);
    EXPECT_EQ(orphan.oPluginScreenDef, nullptr);
}

TEST_F(Spine, FreeWithNullPointerOrNullHandleDoesNothing) {
    GuiFreeScreenDefAndWidgets(nullptr);
    void *none = nullptr;
    GuiFreeScreenDefAndWidgets(&none);
    GuiFreeScreenDef(nullptr);
    GuiFreeScreenDef(&none);
    EXPECT_TRUE(traces().empty());
}

TEST_F(Spine, WholeScreenUpdateCarriesOrReplacesTheScreenCookie) {
    xt::Screen first, second, third;
    first.add(nullptr, Label, 1, xt::labelData("one"));
    second.add(nullptr, Label, 1, xt::labelData("two"));
    third.add(nullptr, Label, 1, xt::labelData("three"));
    TreeSetCookie(first.tree(), reinterpret_cast<void *>(0x1234));
    show(first.tree());
    Widget old = outerWidget(first.item(1));

    oUpdateScreen keep{second.tree(), 0, 0, nullptr};
    EXPECT_EQ(GuiUpdatePlgScreen(&screen_, &keep, 0), 1);
    EXPECT_EQ(TreeGetCookie(second.tree()), reinterpret_cast<void *>(0x1234));
    EXPECT_EQ(screen_.oPluginScreenDef, second.tree());
    EXPECT_EQ(outerWidget(first.item(1)), nullptr) << "old widgets destroyed";
    EXPECT_NE(outerWidget(second.item(1)), old);
    EXPECT_TRUE(hasTrace("Process screen update of whole screen"));

    oUpdateScreen replace{third.tree(), 0, 0, reinterpret_cast<void *>(0x99)};
    GuiUpdatePlgScreen(&screen_, &replace, 0);
    EXPECT_EQ(TreeGetCookie(third.tree()), reinterpret_cast<void *>(0x99));
    EXPECT_EQ(ObjGetRefCount(third.tree()), 2) << "the screen record holds its own reference";
    freeShown();
}

TEST_F(Spine, WholeScreenUpdateWithTheShownTreeRebuildsIt) {
    xt::Screen s;
    s.add(nullptr, Label, 1, xt::labelData("again"));
    show(s.tree());
    clearTraces();
    oUpdateScreen same{s.tree(), 0, 0, nullptr};
    EXPECT_EQ(GuiUpdatePlgScreen(&screen_, &same, 0), 1);
    EXPECT_EQ(screen_.oPluginScreenDef, s.tree());
    EXPECT_EQ(ObjGetRefCount(s.tree()), 2) << "the test's and the screen record's";
    EXPECT_EQ(countTrace("Destroy widget of type 0"), 1);
    EXPECT_EQ(countTrace("Create a Label"), 1);
    EXPECT_EQ(XtParent(outerWidget(s.item(1))), form());
    freeShown();
}

TEST_F(Spine, PerItemUpdateAppliesFlagsAndActionsInUpdateOrderEvenForAnIdListedTwice) {
    xt::Screen shown, patch;
    shown.add(nullptr, Label, 5, xt::labelData("five"));
    show(shown.tree());
    patch.add(nullptr, Label, 5, xt::labelData("five"));
    patch.add(nullptr, Label, 5, xt::labelData("five"));
    patch.item(5)->hidden = 1;               /* the first of the two */
    patch.addAction(5, 9, ACTION_SHOW);
    void *second = nullptr;
    TreeNextSibling(&second, TreeFirstNode(patch.tree()));
    ScreenItem *last = xt::itemOf(second);
    last->disabled = 1;
    clearTraces();
    EXPECT_EQ(updateItems(patch), 1);
    EXPECT_EQ(countTrace("Replace screen item 5"), 2);
    ScreenItem *item = shown.item(5);
    EXPECT_EQ(item->hidden, 0) << "the second update shows it again";
    EXPECT_EQ(item->disabled, 1);
    EXPECT_EQ(item->actions, nullptr) << "the last update's (empty) actions replace the first's";
    EXPECT_FALSE(XtIsSensitive(outerWidget(item)));
    freeShown();
}

TEST_F(Spine, PerItemUpdateOfAnUnknownTypeStillAppliesFlagsAndActions) {
    xt::Screen shown, patch;
    shown.add(nullptr, RowColManager, 3, xt::rowColData(2));
    show(shown.tree());
    patch.add(nullptr, RowColManager, 3, xt::rowColData(1));
    patch.item(3)->hidden = 1;
    patch.addAction(3, 1, ACTION_HIDE);
    clearTraces();
    EXPECT_EQ(updateItems(patch), 0);
    EXPECT_TRUE(hasTrace("unknown screen item"));
    EXPECT_EQ(shown.item(3)->hidden, 1);
    EXPECT_EQ(shown.item(3)->actions, patch.item(3)->actions);
    EXPECT_EQ(ObjGetRefCount(patch.item(3)->actions), 2);
    freeShown();
}

TEST_F(Spine, PerItemUpdateWithNothingToDo) {
    xt::Screen shown, empty, stranger;
    shown.add(nullptr, Label, 1, xt::labelData("one"));
    show(shown.tree());

    clearTraces();
    EXPECT_EQ(updateItems(empty), 0);
    ASSERT_EQ(traces().size(), 1u);
    EXPECT_EQ(traces()[0].text, "Process screen updates of individual items");

    stranger.add(nullptr, Label, 42, xt::labelData("nobody"));
    EXPECT_EQ(updateItems(stranger), 0);
    EXPECT_TRUE(hasTrace("No such item to update"));

    oUpdateScreen noTree{nullptr, 0, 0, reinterpret_cast<void *>(5)};
    EXPECT_EQ(GuiUpdatePlgScreen(&screen_, &noTree, 1), 0);
    EXPECT_TRUE(hasTraceContaining("oUpdateScreen"));
    EXPECT_EQ(TreeGetCookie(shown.tree()), reinterpret_cast<void *>(5))
        << "the cookie is set before the trees are checked";
    freeShown();
}

} // namespace
