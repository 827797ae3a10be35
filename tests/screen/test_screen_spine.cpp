// The plugin screen driver: create dispatch, stale GUI data, whole-screen and per-item
// updates, and teardown.
#include "plgscreen.h"
namespace xt {
namespace {
using Spine = PlgScreenTest;
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
    GoneList gone;
    for (int id : {1, 2}) gone.watchItem(s, id);
    oGuiData *boxData = s.item(1)->guiData;
    ObjIncRefCount(boxData);
    destroy(s);
    EXPECT_EQ(boxData->childParent, nullptr) << "no record keeps a destroyed form";
    ObjReleaseInternal(&boxData);
    EXPECT_EQ(gone.names, (std::vector<std::string>{"label", "label", "form", "frame"}));
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
/* Whole-screen updates, then per-item updates that find nothing to do. */
TEST_F(Spine, UpdatesCarryOrReplaceTheCookieAndRebuildTheSameTree) {
    Screen first, second, third, empty, stranger;
    for (Screen *s : {&first, &second, &third}) s->add(nullptr, Label, 1, labelData("label"));
    stranger.add(nullptr, Label, 42, labelData("nobody"));
    TreeSetCookie(first.tree(), reinterpret_cast<void *>(0x1234));
    oScreenDef screen = record(first);
    EXPECT_EQ(update(screen, second, 0), 1);
    EXPECT_EQ(TreeGetCookie(second.tree()), reinterpret_cast<void *>(0x1234));
    EXPECT_EQ(screen.oPluginScreenDef, second.tree());
    EXPECT_TRUE(outer(first, 1) == nullptr && outer(second, 1)) << "old widgets destroyed";
    update(screen, third, 0, reinterpret_cast<void *>(0x99));
    EXPECT_EQ(TreeGetCookie(third.tree()), reinterpret_cast<void *>(0x99));
    clearTraces();
    EXPECT_EQ(update(screen, third, 0), 1) << "the shown tree handed again is rebuilt";
    EXPECT_EQ(screen.oPluginScreenDef, third.tree());
    EXPECT_EQ(ObjGetRefCount(third.tree()), 2) << "the screen record holds its own reference";
    EXPECT_EQ(countTrace("Create a Label"), 1);
    EXPECT_EQ(update(screen, empty, 1), 0);
    EXPECT_EQ(update(screen, stranger, 1), 0);
    EXPECT_TRUE(hasTrace("No such item to update"));
    oUpdateScreen noTree{nullptr, 0, 0, reinterpret_cast<void *>(5)};
    EXPECT_EQ(GuiUpdatePlgScreen(&screen, &noTree, 1), 0);
    EXPECT_EQ(TreeGetCookie(third.tree()), reinterpret_cast<void *>(5)) << "set before the check";
    GuiFreeScreenDefAndWidgets(&screen.oPluginScreenDef);
}
} // namespace
} // namespace xt
