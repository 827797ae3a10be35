/* guitooltip.cpp - the tooltip state machine: idle, waiting for the pointer to rest,
** shown; one tooltip for the whole library. */
#include <Xm/Label.h>
#include <X11/Shell.h>

#include "guitooltip.h"

#include "guicommon.h"

namespace xc {
namespace {

constexpr int32_t kMsgAddTip = 610;
constexpr int32_t kMsgRemoveTimer = 611;
constexpr int32_t kMsgBadArgument = 612;

constexpr unsigned long kRestMs = 500;
constexpr Position kOffset = 10;

Widget gTipShell = nullptr;      /* the tooltip shown, or null */
XtIntervalId gTimer = 0;         /* the wait for the pointer to rest, or 0 */
Widget gPointerWidget = nullptr; /* the widget the pointer entered or moved in last */

void showTip(XtPointer text, XtIntervalId *);

void startTimer(Widget widget, XtPointer text) {
    gTimer = XtAppAddTimeOut(XtWidgetToApplicationContext(widget), kRestMs, showTip, text);
    gPointerWidget = widget;
}

void removeTimer() {
    if (gTimer == 0) return;
    traceSub(kMsgRemoveTimer, static_cast<int32_t>(gTimer), 1, "Remove Timer %d",
             static_cast<int>(gTimer));
    XtRemoveTimeOut(gTimer);
    gTimer = 0;
}

void destroyTip() {
    if (gTipShell != nullptr) XtDestroyWidget(gTipShell);
    gTipShell = nullptr;
}

/* A shell destroyed under a shown tooltip takes it along. */
void forgetTip(Widget tip, XtPointer, XtPointer) {
    if (gTipShell == tip) gTipShell = nullptr;
}

/* A widget that goes takes its tooltip, or the wait for it, along. */
void forgetWidget(Widget widget, XtPointer, XtPointer) {
    if (gPointerWidget != widget) return;
    removeTimer();
    destroyTip();
    gPointerWidget = nullptr;
}

Widget windowManagerShellOf(Widget widget) {
    while (widget != nullptr && !XtIsWMShell(widget)) widget = XtParent(widget);
    return widget;
}

/* Any tooltip shown before goes first: one at a time, whichever widget asked. The
** tooltip takes no grab: taking a grab off takes every later one with it, such as the
** grab of a popup menu that the press removing the tooltip opened. */
void showTip(XtPointer text, XtIntervalId *) {
    gTimer = 0;
    destroyTip();
    Widget shell = windowManagerShellOf(gPointerWidget);
    if (shell == nullptr || !XtIsRealized(shell)) return;
    Window root = 0, child = 0;
    int rootX = 0, rootY = 0, x = 0, y = 0;
    unsigned int buttons = 0;
    XQueryPointer(XtDisplay(shell), XtWindow(shell), &root, &child, &rootX, &rootY, &x, &y,
                  &buttons);
    gTipShell = XtVaCreatePopupShell("toolTip", overrideShellWidgetClass, shell, XtNx,
                                     static_cast<Position>(rootX + kOffset), XtNy,
                                     static_cast<Position>(rootY + kOffset), nullptr);
    XtAddCallback(gTipShell, XtNdestroyCallback, forgetTip, nullptr);
    XmStr label(static_cast<const char *>(text));
    XtVaCreateManagedWidget("toolTip", xmLabelWidgetClass, gTipShell, XmNlabelString,
                            static_cast<XmString>(label), XtNborderWidth, 1, nullptr);
    XtPopup(gTipShell, XtGrabNone);
}

void onEnter(Widget widget, XtPointer text, XEvent *, Boolean *) {
    if (gTimer == 0) startTimer(widget, text);
}

void onLeave(Widget, XtPointer, XEvent *, Boolean *) {
    if (gTimer != 0) removeTimer();
    else destroyTip();
}

/* Every move starts the wait again: the tooltip comes once the pointer rests. */
void onMotion(Widget widget, XtPointer text, XEvent *, Boolean *) {
    if (gTimer == 0) return;
    removeTimer();
    startTimer(widget, text);
}

void onPress(Widget, XtPointer, XEvent *, Boolean *) {
    destroyTip();
    removeTimer();
}

} // namespace
} // namespace xc

using namespace xc;

extern "C" void GuiAddTip(Widget widget, const char *pszText) {
    trace(kMsgAddTip, 4, "GuiAddTip(%p, %s)", static_cast<void *>(widget),
          pszText ? pszText : "(null)");
    if (widget == nullptr || pszText == nullptr) {
        trace(kMsgBadArgument, -1, "GuiAddTip: no widget or no text");
        return;
    }
    XtPointer text = const_cast<char *>(pszText);
    XtAddEventHandler(widget, EnterWindowMask, False, onEnter, text);
    XtAddEventHandler(widget, LeaveWindowMask, False, onLeave, nullptr);
    XtAddEventHandler(widget, PointerMotionMask, False, onMotion, text);
    XtAddEventHandler(widget, ButtonPressMask, False, onPress, nullptr);
    XtAddCallback(widget, XtNdestroyCallback, forgetWidget, nullptr);
}
