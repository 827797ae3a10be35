/* guicombo.cpp - the combo box's behaviour: the drop-down, the selection and the list. */
#include "xcontrols/guicombo.h"

#include <Xm/List.h>
#include <Xm/PushB.h>
#include <Xm/Text.h>
#include <Xm/TextF.h>
#include <X11/keysym.h>

#include "guicommon.h"
#include "guiinputkit.h"

namespace {

constexpr int32_t kTraceDestroy = 8;

/* The combo calls out (the text field's callbacks, the client's callback) and the client
** may destroy the combo from there: every operation that calls out holds a ControlScope
** and asks it after the call before going on. */
void destroyNow(void *record);

Widget dropDownWindow(const GuiCombo *c) { return XtParent(c->wList); }

void setText(const GuiCombo *c, const char *text) {
    XtVaSetValues(c->wText, XmNvalue, text, nullptr);
}

/* ---- The drop-down ------------------------------------------------------------------- */

/* The scrolled window and the list are mapped on the X windows directly; Xt's own
** mapped state is never used, so the widgets stay managed and laid out while hidden. */
void closeDropDown(GuiCombo *c) {
    xc::unmapWidget(dropDownWindow(c));
    xc::unmapWidget(c->wList);
    c->bListShown = 0;
}

void openDropDown(Widget, XtPointer client, XtPointer) {
    auto *c = static_cast<GuiCombo *>(client);
    if (c->bMayOpen != 1) return;
    xc::mapWidget(dropDownWindow(c));
    xc::mapWidget(c->wList);
    c->bListShown = 1;
    XmProcessTraversal(c->wList, XmTRAVERSE_CURRENT);
    xc::raiseWidget(dropDownWindow(c));
}

/* The press comes before the activation and before the button takes the focus: a click
** on an open drop-down notes it open here, the focus change closes it, and the
** activation that follows must not open it again. */
void notePress(Widget, XtPointer client, XEvent *, Boolean *) {
    auto *c = static_cast<GuiCombo *>(client);
    c->bMayOpen = c->bListShown == 1 ? 0 : 1;
}

void closeOnReturn(Widget w, XtPointer client, XEvent *event, Boolean *) {
    auto *c = static_cast<GuiCombo *>(client);
    const unsigned returnCode = XKeysymToKeycode(XtDisplay(w), XK_Return);
    if ((event->xkey.keycode & 0xff) != (returnCode & 0xff)) return;
    XmProcessTraversal(c->wButton, XmTRAVERSE_CURRENT);
    closeDropDown(c);
}

void closeOnFocusOut(Widget, XtPointer client, XEvent *event, Boolean *) {
    if (event->type == FocusOut) closeDropDown(static_cast<GuiCombo *>(client));
}

/* A choice made with the pointer ends the drop-down; one made from the keyboard (or by
** the program) leaves it as it is, so that the user can browse until Return. */
void takeChosenItem(Widget, XtPointer client, XtPointer call) {
    auto *c = static_cast<GuiCombo *>(client);
    auto *cbs = static_cast<XmListCallbackStruct *>(call);
    xc::ControlScope scope(c, destroyNow);
    if (!scope.alive()) return;
    {
        xc::XmText chosen(cbs->item);
        if (chosen.get() != nullptr) setText(c, chosen.get());
    }
    if (!scope.alive()) return;
    if (cbs->event != nullptr && cbs->event->type == ButtonRelease) {
        XmProcessTraversal(c->wButton, XmTRAVERSE_CURRENT);
        closeDropDown(c);
    }
    if (c->fnCallback != nullptr && c->bNotify == 1) c->fnCallback(c, c->pClientData);
}

/* ---- The text field ---------------------------------------------------------------- */

/* Entering the field selects its whole text so that typing replaces it. */
void selectTextOnFocus(Widget, XtPointer client, XEvent *event, Boolean *) {
    Widget text = static_cast<GuiCombo *>(client)->wText;
    if (event->type == FocusIn)
        XmTextSetSelection(text, 0, XmTextGetLastPosition(text), CurrentTime);
    else
        XmTextClearSelection(text, CurrentTime);
}

/* Up and Down step through the list whether or not the drop-down is open. Down past the
** last item selects nothing (and the next Down the first item again). */
void stepOnUpDown(Widget, XtPointer client, XEvent *event, Boolean *) {
    auto *c = static_cast<GuiCombo *>(client);
    const KeySym sym = XLookupKeysym(&event->xkey, 0);
    if (sym != XK_Up && sym != XK_Down) return;
    const int32_t selected = GuiGetComboItemNumberSelected(c);
    if (sym == XK_Up)
        GuiChangeComboSelection(c, selected > 1 ? selected - 1 : selected, 1);
    else
        GuiChangeComboSelection(c, selected + 1, 1);
}

/* ---- Installing and removing the behaviour ----------------------------------------- */

struct EventHook {
    Widget GuiCombo::*widget;
    EventMask mask;
    XtEventHandler proc;
};

constexpr EventHook kEventHooks[] = {
    {&GuiCombo::wList, KeyReleaseMask, closeOnReturn},
    {&GuiCombo::wList, FocusChangeMask, closeOnFocusOut},
    {&GuiCombo::wButton, ButtonPressMask, notePress},
    {&GuiCombo::wText, FocusChangeMask, selectTextOnFocus},
    {&GuiCombo::wText, KeyReleaseMask, stepOnUpDown},
};

struct CallbackHook {
    Widget GuiCombo::*widget;
    const char *name;
    XtCallbackProc proc;
};

const CallbackHook kCallbackHooks[] = {
    {&GuiCombo::wButton, XmNactivateCallback, openDropDown},
    {&GuiCombo::wList, XmNbrowseSelectionCallback, takeChosenItem},
};

void installBehaviour(GuiCombo *c) {
    for (const auto &hook : kCallbackHooks)
        XtAddCallback(c->*hook.widget, hook.name, hook.proc, c);
    for (const auto &hook : kEventHooks)
        XtAddEventHandler(c->*hook.widget, hook.mask, False, hook.proc, c);
}

void removeBehaviour(GuiCombo *c) {
    for (const auto &hook : kCallbackHooks)
        XtRemoveCallback(c->*hook.widget, hook.name, hook.proc, c);
    for (const auto &hook : kEventHooks)
        XtRemoveEventHandler(c->*hook.widget, hook.mask, False, hook.proc, c);
}

/* ---- Scrolling ---------------------------------------------------------------------- */

/* Shows the item at `position` with one row of context above it, or one below it near
** the end of the list. A short list is never scrolled. */
void scrollToShow(Widget list, int position, int count, int visible) {
    if (count <= visible) return;
    if (position == 0) position = count;   /* position 0 stands for the last item */
    if (count - position < visible - 2)
        XmListSetBottomPos(list, position >= count ? count : position + 1);
    else
        XmListSetPos(list, position <= 1 ? 1 : position - 1);
}

/* Closes the drop-down and destroys the widgets. The list takes its scrolled window with
** it when Motif made the two together (XmCreateScrolledList), and whatever
** GuiCreateComboAndWidgets built for the combo. */
void destroyNow(void *record) {
    auto *combo = static_cast<GuiCombo *>(record);
    /* Destruction may move the focus; no handler may reach the handle after it goes. */
    removeBehaviour(combo);
    if (combo->bListShown == 1) closeDropDown(combo);
    XtDestroyWidget(combo->wText);
    XtDestroyWidget(combo->wButton);
    XtDestroyWidget(combo->wList);
    MemFreeInternal(&combo);
}

} // namespace

extern "C" {

XC_API GuiCombo *GuiManageCombo(Widget wText, Widget wButton, Widget wList) {
    using xc::WidgetRole;
    if (!xc::haveWidgets(__func__, {{wText, WidgetRole::TextField},
                                    {wButton, WidgetRole::PushButton},
                                    {wList, WidgetRole::List}}))
        return nullptr;
    auto *c = xc::allocateRecord<GuiCombo>(__func__);
    if (c == nullptr) return nullptr;
    *c = GuiCombo{wText, wButton, wList, 1, 0, 1, nullptr, nullptr, 1};
    installBehaviour(c);
    /* No callback is installed yet: this only fills the text field from a filled list. */
    XmListSelectPos(wList, c->iDefaultPos, True);
    return c;
}

XC_API void GuiAddComboCallback(GuiCombo *combo, GuiComboCallback fn, void *pClientData) {
    if (!xc::haveHandle(combo, __func__)) return;
    combo->fnCallback = fn;
    combo->pClientData = pClientData;
}

XC_API void GuiEnableComboUserEntry(GuiCombo *combo) {
    if (xc::haveHandle(combo, __func__))
        XtVaSetValues(combo->wText, XmNeditable, True, nullptr);
}

XC_API void GuiDisableComboUserEntry(GuiCombo *combo) {
    if (xc::haveHandle(combo, __func__))
        XtVaSetValues(combo->wText, XmNeditable, False, nullptr);
}

XC_API char *GuiGetComboSelection(GuiCombo *combo) {
    if (!xc::haveHandle(combo, __func__)) return nullptr;
    char *shown = XmTextGetString(combo->wText);
    char *copy = StrDuplicateIntoPool(shown, xc::pool());
    XtFree(shown);
    return copy;
}

XC_API int32_t GuiGetComboItemNumberSelected(GuiCombo *combo) {
    if (!xc::haveHandle(combo, __func__)) return 0;
    int *positions = nullptr;
    int count = 0;
    XmListGetSelectedPos(combo->wList, &positions, &count);
    const int32_t selected = count == 1 && positions != nullptr ? positions[0] : 0;
    if (positions != nullptr) XtFree(reinterpret_cast<char *>(positions));
    return selected;
}

XC_API void GuiChangeComboSelection(GuiCombo *combo, int32_t position, int32_t notify) {
    if (!xc::haveHandle(combo, __func__)) return;
    Widget list = combo->wList;
    int count = 0, visible = 0;
    XtVaGetValues(list, XmNitemCount, &count, XmNvisibleItemCount, &visible, nullptr);
    XmListDeselectAllItems(list);
    if (position < 0) return;   /* no such item: nothing selected, nothing to show */
    xc::ControlScope scope(combo, destroyNow);
    XmListSelectPos(list, position, notify != 0);
    if (scope.alive() && position <= count) scrollToShow(list, position, count, visible);
}

XC_API int32_t GuiComboSelectItem(GuiCombo *combo, const char *text, int32_t notify) {
    if (!xc::haveHandle(combo, __func__) || text == nullptr) return 0;
    int position = 0;
    {
        xc::XmStr item(text);
        position = XmListItemPos(combo->wList, item);
    }
    if (position == 0) return 0;
    xc::ControlScope scope(combo, destroyNow);
    GuiChangeComboSelection(combo, position, notify);
    /* Without notification the list's callback, which shows the text, does not run. */
    if (notify == 0 && scope.alive()) setText(combo, text);
    return 1;
}

XC_API void GuiAddToComboList(GuiCombo *combo, const char *text) {
    if (!xc::haveHandle(combo, __func__) || text == nullptr) return;
    xc::XmStr item(text);
    XmListAddItem(combo->wList, item, 0);
}

XC_API void GuiRemoveFromComboList(GuiCombo *combo, const char *text) {
    if (!xc::haveHandle(combo, __func__) || text == nullptr) return;
    xc::XmStr item(text);
    const int position = XmListItemPos(combo->wList, item);
    if (position > 0) XmListDeletePos(combo->wList, position);
}

XC_API void GuiReplaceComboList(GuiCombo *combo, int32_t count, char **texts, int32_t notify) {
    if (!xc::haveHandle(combo, __func__)) return;
    XmListDeleteAllItems(combo->wList);
    for (int32_t i = 0; texts != nullptr && i < count; ++i) GuiAddToComboList(combo, texts[i]);
    /* A choice still offered survives; otherwise the default item is chosen. */
    char *current = XmTextGetString(combo->wText);
    xc::ControlScope scope(combo, destroyNow);
    if (!GuiComboSelectItem(combo, current, notify) && scope.alive()) {
        setText(combo, "");
        if (scope.alive()) XmListSelectPos(combo->wList, combo->iDefaultPos, notify != 0);
    }
    XtFree(current);
}

XC_API void GuiDestroyCombo(GuiCombo *combo) {
    xc::trace(kTraceDestroy, 1, "GuiDestroyCombo(%p)", static_cast<void *>(combo));
    if (combo != nullptr) xc::ControlScope::destroyWhenIdle(combo, destroyNow);
}

XC_API void GuiComboSetSensitive(GuiCombo *combo, int32_t flag) {
    if (!xc::haveHandle(combo, __func__)) return;
    XtSetSensitive(combo->wText, flag != 0);
    XtSetSensitive(combo->wButton, flag != 0);
}

XC_API void GuiComboSetDefaultSelection(GuiCombo *combo, int32_t notify) {
    if (!xc::haveHandle(combo, __func__)) return;
    xc::ControlScope scope(combo, destroyNow);
    setText(combo, "");
    if (!scope.alive()) return;
    /* The list's callback shows the default item's text in any case; bNotify decides
    ** whether the client hears of it. */
    combo->bNotify = notify == 1 ? 1 : 0;
    XmListSelectPos(combo->wList, combo->iDefaultPos, True);
    combo->bNotify = 1;
}

XC_API void GuiComboSelectDefault(GuiCombo *combo) { GuiComboSetDefaultSelection(combo, 1); }

XC_API void GuiComboSetEmpty(GuiCombo *combo) {
    if (xc::haveHandle(combo, __func__)) setText(combo, "");
}

XC_API void GuiComboSetText(GuiCombo *combo, const char *text) {
    if (xc::haveHandle(combo, __func__) && text != nullptr) setText(combo, text);
}

} // extern "C"
