// The plugin screen driver: create dispatch, stale GUI data, whole-screen and per-item
// updates, and teardown.
#include "plgscreen.h"
namespace xt {
namespace {
using Spine = PlgScreenTest;
void noteGone(Widget w, XtPointer names, XtPointer) {
    static_cast<std::vector<std::string> *>(names)->push_back(XtName(w));
}
TEST_F(Spine, EveryTypeWithoutDataGetsGuiDataAndUnknownCodesAreSkipped) {
    const uint32_t known[] = {1, 2, 3, 4, 5, 6, 7, 9, 10, 11, 12, 13, 14, 19, 21, 22, 23, 24, 25,
                              26};
    const uint32_t unknown[] = {0, 8, 15, 16, 17, 18, 27, 4000000000u};
    Screen s;
    int32_t id = 1;
    for (uint32_t type : known) s.add(nullptr, type, id++);
    for (uint32_t type : unknown) s.add(nullptr, type, id++);
    s.add(nullptr, GroupBox, 50, labelData("a label's data in a group box"));
    s.add(nullptr, RowColManager, 51, labelData("wrong"));
    show(s, 1, false);
    EXPECT_NE(s.item(14)->guiData, nullptr) << "the label (14) gets GUI data all the same";
    for (int32_t i = 21; i <= 28; ++i) EXPECT_EQ(s.item(i)->guiData, nullptr) << i;
    EXPECT_EQ(countTrace("unknown screen item"), 8);
    EXPECT_TRUE(s.item(50)->guiData && !widgetCount(s.item(50)));
    EXPECT_EQ(s.item(51)->guiData, nullptr) << "a row-column manager checks its data first";
    destroy(s);
}
TEST_F(Spine, RecreatingAShownDefinitionReleasesTheOldGuiData) {
    Screen s;
    s.add(s.add(nullptr, GroupBox, 1, groupBoxData("Box")), Label, 2, labelData("in box"));
    show(s, 1, false);
    oGuiData *old = s.item(2)->guiData;
    ObjIncRefCount(old);
    XtDestroyWidget(outer(s, 1)); /* the client destroys the shown widgets */
    pump();
    EXPECT_EQ(outer(s, 2), nullptr) << "records forget destroyed widgets";
    clearTraces();
    show(s, 2, false);
    EXPECT_FALSE(hasTraceContaining("created again")) << "nothing of the first build stands";
    EXPECT_EQ(ObjGetRefCount(old), 1) << "the item dropped its reference on the old GUI data";
    EXPECT_EQ(s.item(2)->guiData->jobId, 2);
    EXPECT_EQ(XtParent(outer(s, 2)), s.item(1)->guiData->childParent);
    ObjReleaseInternal(&old);
    show(s, 3, false); /* over the standing widgets of the second */
    EXPECT_TRUE(hasTrace("Screen created again over 2 items whose widgets still stand"));
    destroy(s);
}
TEST_F(Spine, TeardownDestroysChildrenFirstAndEachItemsWidgetsLastFirst) {
    Screen s;
    s.add(s.add(nullptr, GroupBox, 1, groupBoxData("Box")), Label, 2, labelData("child"));
    show(s, 1, false);
    std::vector<std::string> gone;
    for (int id : {1, 2})
        ListWalk(s.item(id)->guiData->widgetList, [](void *names, void *element) {
            Widget w = static_cast<GuiWidgetRecord *>(ListElementItem(element))->widget;
            XtAddCallback(w, XmNdestroyCallback, noteGone, names);
            return 1;
        }, &gone);
    oGuiData *boxData = s.item(1)->guiData;
    ObjIncRefCount(boxData);
    destroy(s);
    EXPECT_EQ(boxData->childParent, nullptr) << "no record keeps a destroyed form";
    ObjReleaseInternal(&boxData);
    EXPECT_EQ(gone, (std::vector<std::string>{"label", "label", "form", "frame"}));
}
TEST_F(Spine, NoParentWidgetBuildsNothingAndNullFreesDoNothing) {
    Screen s;
    s.add(nullptr, Label, 1, labelData("orphan"));
    EXPECT_EQ(GuiCreatePlgScreen(nullptr, s.tree(), 3), 1);
    EXPECT_TRUE(hasTrace("No parent widget for the screen"));
    EXPECT_EQ(s.item(1)->guiData, nullptr);
    oScreenDef orphan{3, 0, 0, 0, nullptr, nullptr};
    EXPECT_EQ(update(orphan, s, 0), 0);
    EXPECT_EQ(orphan.oPluginScreenDef, nullptr);
    clearTraces();
    void *none = nullptr;
    GuiFreeScreenDefAndWidgets(nullptr);
    GuiFreeScreenDefAndWidgets(&none);
    GuiFreeScreenDef(nullptr);
    GuiFreeScreenDef(&none);
    EXPECT_TRUE(traces().empty());
}
TEST_F(Spine, WholeScreenUpdateCarriesOrReplacesTheCookieAndRebuildsTheSameTree) {
    Screen first, second, third;
    for (Screen *s : {&first, &second, &third}) s->add(nullptr, Label, 1, labelData("label"));
    TreeSetCookie(first.tree(), reinterpret_cast<void *>(0x1234));
    oScreenDef screen = record(first);
    Widget old = outer(first, 1);
    EXPECT_EQ(update(screen, second, 0), 1);
    EXPECT_EQ(TreeGetCookie(second.tree()), reinterpret_cast<void *>(0x1234));
    EXPECT_EQ(screen.oPluginScreenDef, second.tree());
    EXPECT_EQ(outer(first, 1), nullptr) << "old widgets destroyed";
    EXPECT_NE(outer(second, 1), old);
    update(screen, third, 0, reinterpret_cast<void *>(0x99));
    EXPECT_EQ(TreeGetCookie(third.tree()), reinterpret_cast<void *>(0x99));
    EXPECT_EQ(ObjGetRefCount(third.tree()), 2) << "the screen record holds its own reference";
    clearTraces();
    EXPECT_EQ(update(screen, third, 0), 1) << "the shown tree handed again is rebuilt";
    EXPECT_EQ(screen.oPluginScreenDef, third.tree());
    EXPECT_EQ(ObjGetRefCount(third.tree()), 2);
    EXPECT_EQ(countTrace("Create a Label"), 1);
    EXPECT_EQ(XtParent(outer(third, 1)), form());
    GuiFreeScreenDefAndWidgets(&screen.oPluginScreenDef);
}
TEST_F(Spine, PerItemUpdateAppliesFlagsAndActionsInOrderEvenForAnUnknownType) {
    Screen shown, patch;
    shown.add(nullptr, Label, 5, labelData("five"));
    shown.add(nullptr, RowColManager, 3, rowColData(2));
    oScreenDef screen = record(shown);
    patch.add(nullptr, Label, 5, labelData("five"));
    void *second = patch.add(nullptr, Label, 5, labelData("five"));
    patch.item(5)->hidden = 1; /* the first of the two */
    patch.addAction(5, 9, ACTION_SHOW);
    itemOf(second)->disabled = 1;
    EXPECT_EQ(update(screen, patch, 1), 1);
    EXPECT_EQ(countTrace("Replace screen item 5"), 2);
    EXPECT_EQ(shown.item(5)->hidden, 0) << "the second update shows it again";
    EXPECT_EQ(shown.item(5)->actions, nullptr) << "the last update's (empty) actions win";
    EXPECT_FALSE(XtIsSensitive(outer(shown, 5)));
    Screen grid;
    grid.add(nullptr, RowColManager, 3, rowColData(1));
    grid.item(3)->hidden = 1;
    grid.addAction(3, 1, ACTION_HIDE);
    EXPECT_EQ(update(screen, grid, 1), 0);
    EXPECT_EQ(shown.item(3)->hidden, 1);
    EXPECT_EQ(shown.item(3)->actions, grid.item(3)->actions);
    GuiFreeScreenDefAndWidgets(&screen.oPluginScreenDef);
}
TEST_F(Spine, PerItemUpdateWithNothingToDo) {
    Screen shown, empty, stranger;
    shown.add(nullptr, Label, 1, labelData("one"));
    oScreenDef screen = record(shown);
    EXPECT_EQ(update(screen, empty, 1), 0);
    stranger.add(nullptr, Label, 42, labelData("nobody"));
    clearTraces();
    EXPECT_EQ(update(screen, stranger, 1), 0);
    EXPECT_TRUE(hasTrace("No such item to update"));
    oUpdateScreen noTree{nullptr, 0, 0, reinterpret_cast<void *>(5)};
    EXPECT_EQ(GuiUpdatePlgScreen(&screen, &noTree, 1), 0);
    EXPECT_EQ(TreeGetCookie(shown.tree()), reinterpret_cast<void *>(5))
        << "the cookie is set before the trees are checked";
    GuiFreeScreenDefAndWidgets(&screen.oPluginScreenDef);
}
} // namespace
} // namespace xt
