/* test_tips.cpp - tooltips and menu tips under a real pointer and real time. */
#include "xharness.h"
#include <Xm/CascadeB.h>
#include <Xm/Label.h>
#include <Xm/PushB.h>
#include <Xm/RowColumn.h>
#include <Xm/ToggleB.h>
#include <chrono>
#include "guimenutips.h"
#include "guitooltip.h"
namespace {
using namespace xt;
using Clock = std::chrono::steady_clock;
class TipTest : public XTest {
protected:
    Widget tip() const { return XtNameToWidget(shell(), "toolTip"); }
    bool tipShown() const { return tip() != nullptr && isViewable(tip()); }
    Widget button(const char *name, Widget parent, WidgetClass cls = xmPushButtonWidgetClass) {
        return XtVaCreateManagedWidget(name, cls, parent, nullptr);
    }
    static std::string labelOf(Widget label) {
        XmString s = nullptr;
        XtVaGetValues(label, XmNlabelString, &s, nullptr);
        char *text = nullptr;
        XmStringGetLtoR(s, const_cast<char *>(XmSTRING_DEFAULT_CHARSET), &text);
        std::string copy = text ? text : "";
        XtFree(text);
        XmStringFree(s);
        return copy;
    }
};
int removeTimerLines(const std::vector<TraceLine> &lines) {
    int count = 0;
    for (const TraceLine &line : lines) count += line.text.rfind("Remove Timer ", 0) == 0;
    return count;
}
void leave(Widget w) { movePointer(XtParent(w), 1, 300); }
/* What the pointer does after entering the widget at (5, 5), whether the tooltip then
** comes, and what takes it away again. */
struct TipRow {
    const char *name;
    void (*act)(Widget widget);
    bool shown;
    void (*end)(Widget widget);
    int removeTimerLines; /* at least */
};
TEST_F(TipTest, TheTooltipComesWhenThePointerRestsAndGoesOnLeaveOrPress) {
    Widget target = button("target", form());
    GuiAddTip(target, "Starts the job");
    realize();
    const TipRow rows[] = {
        {"rests, then leaves", [](Widget) {}, true, leave, 0},
        {"rests, then a press and a move", [](Widget) {}, true,
         [](Widget w) {
             click(w, 5, 5);
             movePointer(w, 6, 6);
         }, 0},
        {"moves every 300 ms", [](Widget w) {
             for (int x = 6; x < 11; ++x) {
                 pumpFor(300);
                 movePointer(w, x, 5);
             }
             leave(w);
         }, false, leave, 5},
        {"leaves after 200 ms", [](Widget w) { pumpFor(200); leave(w); }, false, leave, 1},
    };
    for (const TipRow &row : rows) {
        SCOPED_TRACE(row.name);
        clearTraces();
        leave(target);
        const auto entered = Clock::now();
        movePointer(target, 5, 5);
        row.act(target);
        ASSERT_EQ(pumpUntil([&] { return tipShown(); }, 1500), row.shown);
        if (row.shown) {
            EXPECT_GE(Clock::now() - entered, std::chrono::milliseconds(490));
            int px = 0, py = 0;
            rootPosition(target, &px, &py);
            const Geometry at = geometry(tip());
            EXPECT_EQ((std::pair<int, int>{at.x, at.y}), (std::pair<int, int>{px + 15, py + 15}));
            EXPECT_EQ(labelOf(XtNameToWidget(tip(), "toolTip")), "Starts the job");
        }
        row.end(target);
        pumpFor(700);
        EXPECT_FALSE(tipShown()) << "gone, and no new wait after a press or out of the widget";
        EXPECT_GE(removeTimerLines(traces()), row.removeTimerLines);
    }
}
TEST_F(TipTest, AWidgetTakesItsTooltipAlongWhenItGoes) {
    realize();
    for (bool waitForTip : {false, true}) {
        SCOPED_TRACE(waitForTip ? "shown" : "waiting");
        Widget target = button("target", form());
        GuiAddTip(target, "Gone soon");
        pump();
        movePointer(target, 5, 5);
        EXPECT_EQ(pumpUntil([&] { return tipShown(); }, waitForTip ? 1500 : 100), waitForTip);
        XtDestroyWidget(target);
        pumpFor(700);
        EXPECT_FALSE(tipShown());
    }
}
TEST_F(TipTest, MenuEntriesShowTheirTipsWhileTheMenuIsOpen) {
    Widget bar = XmCreateMenuBar(form(), const_cast<char *>("bar"), nullptr, 0);
    XtManageChild(bar);
    Widget menu = XmCreatePulldownMenu(bar, const_cast<char *>("menu"), nullptr, 0);
    Widget sub = XmCreatePulldownMenu(menu, const_cast<char *>("sub"), nullptr, 0);
    Widget file = button("File", bar, xmCascadeButtonWidgetClass);
    XtVaSetValues(file, XmNsubMenuId, menu, nullptr);
    const struct { Widget entry; const char *tip; } rows[] = {
        {button("Open", menu), "Opens a file"},
        {button("Bold", menu, xmToggleButtonWidgetClass), "Bold text"},
        {button("Plain", menu), nullptr},
        {button("More", menu, xmCascadeButtonWidgetClass), "More things"},
    };
    button("Deep", sub);
    XtVaSetValues(rows[3].entry, XmNsubMenuId, sub, nullptr);
    Widget area = XtVaCreateManagedWidget("tipArea", xmRowColumnWidgetClass, form(),
                                          XmNtopAttachment, XmATTACH_WIDGET, XmNtopWidget, bar,
                                          XmNmappedWhenManaged, False, nullptr);
    Widget label = XtVaCreateManagedWidget("tipLabel", xmLabelWidgetClass, area, nullptr);
    GuiAddTipControl(menu, area, label);
    for (const auto &row : rows)
        if (row.tip) GuiAddMenuTip(row.entry, row.tip, label);
    GuiAddMenuTip(label, "never", label);
    realize();
    EXPECT_FALSE(isViewable(area));
    movePointer(file);
    pressPointer();
    EXPECT_TRUE(isViewable(area)) << "shown with the menu";
    EXPECT_EQ(labelOf(label), " ");
    std::string expected = " ";
    for (const auto &row : rows) {
        movePointer(row.entry);
        pumpFor(300);
        if (row.tip) expected = row.tip;
        EXPECT_EQ(labelOf(label), expected) << XtName(row.entry);
    }
    movePointer(form(), 300, 300);
    releasePointer();
    EXPECT_FALSE(isViewable(area)) << "hidden with the menu";
    EXPECT_TRUE(hasTraceContaining("GuiAddTipControl("));
}
} // namespace
