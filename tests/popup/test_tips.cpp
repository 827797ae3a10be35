/* test_tips.cpp - tooltips and menu tips under a real pointer and real time. */
#include "xharness.h"
#include <Xm/CascadeB.h>
#include <Xm/Label.h>
#include <Xm/PushB.h>
#include <Xm/RowColumn.h>
#include <Xm/ToggleB.h>
#include <chrono>
#include "guimenutips.h"
#include "guipopup.h"
#include "guitooltip.h"
namespace {
using namespace xt;
Widget gTarget = nullptr;
Widget button(const char *name, Widget parent, WidgetClass cls = xmPushButtonWidgetClass) {
    return XtVaCreateManagedWidget(name, cls, parent, nullptr);
}
void leave() { movePointer(XtParent(gTarget), 1, 300); }
std::string labelOf(Widget label) {
    XmString s = nullptr;
    char *text = nullptr;
    XtVaGetValues(label, XmNlabelString, &s, nullptr);
    XmStringGetLtoR(s, const_cast<char *>(XmSTRING_DEFAULT_CHARSET), &text);
    const std::string copy = text ? text : "";
    XtFree(text);
    XmStringFree(s);
    return copy;
}
using TipTest = XTest;
/* What the pointer does after entering the target at (5, 5), whether the tooltip then
** comes, what takes it away again, and how many waits were restarted at least. */
struct TipRow {
    const char *name;
    void (*act)();
    bool shown;
    void (*end)();
    int restarts;
};
/* The target's right button opens a popup menu, as a client's context menu does. */
void openMenu(Widget w, XtPointer, XEvent *event, Boolean *) {
    if (event->xbutton.button == 3) GuiPopupCreateMenu(XtParent(w), event, nullptr, "Menu", nullptr, nullptr);
}
TEST_F(TipTest, TheTooltipComesWhenThePointerRestsAndGoesOnLeavePressOrDestroy) {
    static int warnings = 0; /* Xt's: a grab taken off with the tooltip took the menu's along */
    XtAppSetWarningMsgHandler(app(), [](String, String, String, String, String *, Cardinal *) { ++warnings; });
    realize();
    auto destroy = [] { XtDestroyWidget(std::exchange(gTarget, nullptr)); };
    const TipRow rows[] = {
        {"rests, then leaves", [] {}, true, leave, 0},
        {"rests, then a press and a move", [] {}, true, [] { click(gTarget, 5, 5); movePointer(gTarget, 6, 6); }, 0},
        {"rests, then a press opens a menu", [] {}, true, [] { click(gTarget, 5, 5, 3); key(XK_Escape); leave(); }, 0},
        {"moves every 300 ms", [] { for (int x = 6; x < 11; ++x) pumpFor(300), movePointer(gTarget, x, 5); leave(); },
         false, [] {}, 5},
        {"leaves after 200 ms", [] { pumpFor(200); leave(); }, false, [] {}, 1},
        {"rests, then the widget goes", [] {}, true, destroy, 0},
        {"the widget goes while waiting", destroy, false, [] {}, 0},
    };
    Widget shell = this->shell();
    auto tip = [shell] { return XtNameToWidget(shell, "toolTip"); };
    for (const TipRow &row : rows) {
        SCOPED_TRACE(row.name);
        GuiAddTip(gTarget = button("target", form()), "Starts the job");
        XtAddEventHandler(gTarget, ButtonPressMask, False, openMenu, nullptr);
        pump();
        leave();
        clearTraces();
        const auto entered = std::chrono::steady_clock::now();
        movePointer(gTarget, 5, 5);
        row.act();
        ASSERT_EQ(pumpUntil([&] { return tip() && isViewable(tip()); }, 1500), row.shown);
        if (row.shown) {
            EXPECT_GE(std::chrono::steady_clock::now() - entered, std::chrono::milliseconds(490));
            int x = 0, y = 0;
            rootPosition(gTarget, &x, &y);
            EXPECT_EQ((std::vector<int>{geometry(tip()).x, geometry(tip()).y}), (std::vector<int>{x + 15, y + 15}));
            EXPECT_EQ(labelOf(XtNameToWidget(tip(), "toolTip")), "Starts the job");
        }
        row.end();
        pumpFor(700);
        EXPECT_FALSE(tip() && isViewable(tip())) << "gone, and no new wait after a press or out of the widget";
        int restarts = 0;
        for (const TraceLine &line : traces()) restarts += line.text.rfind("Remove Timer ", 0) == 0;
        EXPECT_GE(restarts, row.restarts);
        if (gTarget) destroy();
    }
    EXPECT_EQ(warnings, 0);
    XtAppSetWarningMsgHandler(app(), nullptr);
}
TEST_F(TipTest, MenuEntriesShowTheirTipsWhileTheMenuIsOpen) {
    Widget bar = XmCreateMenuBar(form(), const_cast<char *>("bar"), nullptr, 0);
    Widget menu = XmCreatePulldownMenu(bar, const_cast<char *>("menu"), nullptr, 0);
    Widget sub = XmCreatePulldownMenu(menu, const_cast<char *>("sub"), nullptr, 0);
    Widget file = button("File", bar, xmCascadeButtonWidgetClass);
    XtVaSetValues(file, XmNsubMenuId, menu, nullptr);
    XtManageChild(bar);
    const struct { Widget entry; const char *tip; } rows[] = {
        {button("Open", menu), "Opens a file"},
        {button("Bold", menu, xmToggleButtonWidgetClass), "Bold text"},
        {button("Plain", menu), nullptr},
        {button("More", menu, xmCascadeButtonWidgetClass), "More things"},
    };
    button("Deep", sub);
    XtVaSetValues(rows[3].entry, XmNsubMenuId, sub, nullptr);
    Widget area = XtVaCreateManagedWidget("tipArea", xmRowColumnWidgetClass, form(), XmNtopAttachment,
                                          XmATTACH_WIDGET, XmNtopWidget, bar, XmNmappedWhenManaged, False, nullptr);
    Widget label = button("tipLabel", area, xmLabelWidgetClass);
    GuiAddTipControl(menu, area, label);
    for (const auto &row : rows) GuiAddMenuTip(row.entry, row.tip, label);
    GuiAddMenuTip(label, "never", label);
    realize();
    EXPECT_FALSE(isViewable(area));
    movePointer(file);
    pressPointer();
    EXPECT_TRUE(isViewable(area)) << "shown with the menu";
    EXPECT_EQ(labelOf(label), " ");
    for (const auto &row : rows) {
        movePointer(row.entry);
        pumpFor(300);
        EXPECT_EQ(labelOf(label), row.tip ? row.tip : " ") << XtName(row.entry);
    }
    movePointer(form(), 300, 300);
    releasePointer();
    EXPECT_FALSE(isViewable(area)) << "hidden with the menu";
    EXPECT_TRUE(hasTraceContaining("GuiAddTipControl("));
}
} // namespace
