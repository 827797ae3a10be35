/* guimenutips.cpp - menu tips: the help line of the armed menu entry in a tip label, and
** the tip area shown while a menu is open. */
#include <Xm/CascadeB.h>
#include <Xm/PushB.h>
#include <Xm/ToggleB.h>

#include "guimenutips.h"

#include "guicommon.h"
#include "guiinputkit.h"

namespace xc {
namespace {

constexpr int32_t kMsgTipControl = 620;

struct MenuTip {
    Widget tipLabel;
    const char *text;
};

void setLabel(Widget label, const char *text) {
    XmStr string(text);
    XtVaSetValues(label, XmNlabelString, static_cast<XmString>(string), nullptr);
}

void showTip(Widget, XtPointer data, XtPointer) {
    const auto *tip = static_cast<const MenuTip *>(data);
    setLabel(tip->tipLabel, tip->text ? tip->text : " ");
}

void freeTip(Widget, XtPointer data, XtPointer) {
    MemFreeInternal(&data);
}

/* The callback that tells an entry is under the pointer, or null for other widgets. */
const char *armCallbackOf(Widget button) {
    if (XmIsCascadeButton(button)) return XmNcascadingCallback;
    if (XmIsPushButton(button) || XmIsToggleButton(button)) return XmNarmCallback;
    return nullptr;
}

void blankLabel(Widget, XtPointer label, XtPointer) {
    setLabel(static_cast<Widget>(label), " ");
}

void showArea(Widget, XtPointer area, XtPointer) {
    mapWidget(static_cast<Widget>(area));
    raiseWidget(static_cast<Widget>(area));
}

void hideArea(Widget, XtPointer area, XtPointer) {
    unmapWidget(static_cast<Widget>(area));
}

} // namespace
} // namespace xc

using namespace xc;

extern "C" {

void GuiAddMenuTip(Widget wButton, const char *pszText, Widget wTipLabel) {
    if (!haveHandle(wButton, "GuiAddMenuTip") || !haveHandle(wTipLabel, "GuiAddMenuTip"))
        return;
    const char *callback = armCallbackOf(wButton);
    if (callback == nullptr) return;
    auto *tip = allocateRecord<MenuTip>("GuiAddMenuTip");
    if (tip == nullptr) return;
    tip->tipLabel = wTipLabel;
    tip->text = pszText;
    XtAddCallback(wButton, callback, showTip, tip);
    XtAddCallback(wButton, XmNdestroyCallback, freeTip, tip);
}

void GuiAddTipControl(Widget wMenu, Widget wTipArea, Widget wTipLabel) {
    trace(kMsgTipControl, 1, "GuiAddTipControl(%p, %p)", static_cast<void *>(wMenu),
          static_cast<void *>(wTipArea));
    for (Widget needed : {wMenu, wTipArea, wTipLabel})
        if (!haveHandle(needed, "GuiAddTipControl")) return;
    XtAddCallback(wMenu, XmNmapCallback, blankLabel, wTipLabel);
    XtAddCallback(wMenu, XmNmapCallback, showArea, wTipArea);
    XtAddCallback(wMenu, XmNunmapCallback, hideArea, wTipArea);
}

} // extern "C"
