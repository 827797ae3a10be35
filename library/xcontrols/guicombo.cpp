/* guicombo.cpp - the combo box's behaviour: the drop-down, the selection and the list. */
#include "xcontrols/guicombo.h"

#include <Xm/List.h>
#include <Xm/PushB.h>
#include <Xm/Text.h>
#include <Xm/TextF.h>
#include <X11/keysym.h>

#include "guicommon.h"

/* Motif's destroy callback on a list made by XmCreateScrolledList, which destroys the
** scrolled window with the list. Xm/XmP.h declares it outside its C linkage block. */
extern "C" void _XmDestroyParentCallback(Widget, XtPointer, XtPointer);

namespace {

constexpr int32_t kTraceDestroy = 8;
constexpr int32_t kTraceNoHandle = 503;

/* Every exported operation takes the handle on trust from the caller; a null one is
** traced and ignored rather than followed. */
bool present(const GuiCombo *combo, const char *operation) {
    if (combo != nullptr) return true;
    xc::trace(kTraceNoHandle, 1, "%s without a combo", operation);
    return false;
}

/* The combo calls out (the text field's callbacks, the client's callback) and the client
** may destroy the combo from there. Each operation that goes on after a callout holds a
** guard, which GuiDestroyCombo clears, and asks it before touching the handle again. */
class Serving {
public:
    explicit Serving(GuiCombo *c) : combo_(c), outer_(innermost_) { innermost_ = this; }
    ~Serving() { innermost_ = outer_; }
    Serving(const Serving &) = delete;
    Serving &operator=(const Serving &) = delete;
    bool alive() const { return combo_ != nullptr; }
    static void destroyed(const GuiCombo *c) {
        for (Serving *s = innermost_; s != nullptr; s = s->outer_)
            if (s->combo_ == c) s->combo_ = nullptr;
    }
private:
    GuiCombo *combo_;
    Serving *outer_;
    static Serving *innermost_;
};

Serving *Serving::innermost_ = nullptr;

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
    Serving guard(c);
    {
        xc::XmText chosen(cbs->item);
        if (chosen.get() != nullptr) setText(c, chosen.get());
    }
    if (!guard.alive()) return;
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

} // namespace

extern "C" {

XC_API GuiCombo *GuiManageCombo(Widget wText, Widget wButton, Widget wList) {
    if (wText == nullptr || wButton == nullptr || wList == nullptr) {
        xc::trace(kTraceNoHandle, 1, "GuiManageCombo without its widgets");
        return nullptr;
    }
    auto *c = static_cast<GuiCombo *>(MemAllocateFromPool(sizeof(GuiCombo), xc::pool()));
    if (c == nullptr) return nullptr;
    *c = GuiCombo{wText, wButton, wList, 1, 0, 1, nullptr, nullptr, 1};
    installBehaviour(c);
    /* No callback is installed yet: this only fills the text field from a filled list. */
    XmListSelectPos(wList, c->iDefaultPos, True);
    return c;
}

XC_API void GuiAddComboCallback(GuiCombo *combo, GuiComboCallback fn, void *pClientData) {
    if (!present(combo, "GuiAddComboCallback")) return;
    combo->fnCallback = fn;
    combo->pClientData = pClientData;
}

XC_API void GuiEnableComboUserEntry(GuiCombo *combo) {
    if (present(combo, "GuiEnableComboUserEntry"))
        XtVaSetValues(combo->wText, XmNeditable, True, nullptr);
}

XC_API void GuiDisableComboUserEntry(GuiCombo *combo) {
    if (present(combo, "GuiDisableComboUserEntry"))
        XtVaSetValues(combo->wText, XmNeditable, False, nullptr);
}

XC_API char *GuiGetComboSelection(GuiCombo *combo) {
    if (!present(combo, "GuiGetComboSelection")) return nullptr;
    char *shown = XmTextGetString(combo->wText);
    char *copy = StrDuplicateIntoPool(shown, xc::pool());
    XtFree(shown);
    return copy;
}

XC_API int32_t GuiGetComboItemNumberSelected(GuiCombo *combo) {
    if (!present(combo, "GuiGetComboItemNumberSelected")) return 0;
    int *positions = nullptr;
    int count = 0;
    XmListGetSelectedPos(combo->wList, &positions, &count);
    const int32_t selected = count == 1 && positions != nullptr ? positions[0] : 0;
    if (positions != nullptr) XtFree(reinterpret_cast<char *>(positions));
    return selected;
}

XC_API void GuiChangeComboSelection(GuiCombo *combo, int32_t position, int32_t notify) {
    if (!present(combo, "GuiChangeComboSelection")) return;
    Widget list = combo->wList;
    int count = 0, visible = 0;
    XtVaGetValues(list, XmNitemCount, &count, XmNvisibleItemCount, &visible, nullptr);
    XmListDeselectAllItems(list);
    if (position < 0) return;   /* no such item: nothing selected, nothing to show */
    Serving guard(combo);
    XmListSelectPos(list, position, notify != 0);
    if (guard.alive() && position <= count) scrollToShow(list, position, count, visible);
}

XC_API int32_t GuiComboSelectItem(GuiCombo *combo, const char *text, int32_t notify) {
    if (!present(combo, "GuiComboSelectItem") || text == nullptr) return 0;
    int position = 0;
    {
        xc::XmStr item(text);
        position = XmListItemPos(combo->wList, item);
    }
    if (position == 0) return 0;
    Serving guard(combo);
    GuiChangeComboSelection(combo, position, notify);
    /* Without notification the list's callback, which shows the text, does not run. */
    if (notify == 0 && guard.alive()) setText(combo, text);
    return 1;
}

XC_API void GuiAddToComboList(GuiCombo *combo, const char *text) {
    if (!present(combo, "GuiAddToComboList") || text == nullptr) return;
    xc::XmStr item(text);
    XmListAddItem(combo->wList, item, 0);
}

XC_API void GuiRemoveFromComboList(GuiCombo *combo, const char *text) {
    if (!present(combo, "GuiRemoveFromComboList") || text == nullptr) return;
    xc::XmStr item(text);
    const int position = XmListItemPos(combo->wList, item);
    if (position > 0) XmListDeletePos(combo->wList, position);
}

XC_API void GuiReplaceComboList(GuiCombo *combo, int32_t count, char **texts, int32_t notify) {
    if (!present(combo, "GuiReplaceComboList")) return;
    XmListDeleteAllItems(combo->wList);
    for (int32_t i = 0; texts != nullptr && i < count; ++i) GuiAddToComboList(combo, texts[i]);
    /* A choice still offered survives; otherwise the default item is chosen. */
    char *current = XmTextGetString(combo->wText);
    Serving guard(combo);
    if (!GuiComboSelectItem(combo, current, notify) && guard.alive()) {
        setText(combo, "");
        if (guard.alive()) XmListSelectPos(combo->wList, combo->iDefaultPos, notify != 0);
    }
    XtFree(current);
}

XC_API void GuiDestroyCombo(GuiCombo *combo) {
    xc::trace(kTraceDestroy, 1, "GuiDestroyCombo(%p)", static_cast<void *>(combo));
    if (combo == nullptr) return;
    Serving::destroyed(combo);
    /* Destruction may move the focus; no handler may reach the handle after it goes. */
    removeBehaviour(combo);
    if (combo->bListShown == 1) closeDropDown(combo);
    /* A list made by XmCreateScrolledList would take its scrolled window with it; that
    ** window belongs to whoever made it (a plugin screen destroys it itself) and goes
    ** with its parent otherwise. */
    XtRemoveCallback(combo->wList, XmNdestroyCallback, _XmDestroyParentCallback, nullptr);
    XtDestroyWidget(combo->wText);
    XtDestroyWidget(combo->wButton);
    XtDestroyWidget(combo->wList);
    MemFreeInternal(&combo);
}

XC_API void GuiComboSetSensitive(GuiCombo *combo, int32_t flag) {
    if (!present(combo, "GuiComboSetSensitive")) return;
    XtSetSensitive(combo->wText, flag != 0);
    XtSetSensitive(combo->wButton, flag != 0);
}

XC_API void GuiComboSetDefaultSelection(GuiCombo *combo, int32_t notify) {
    if (!present(combo, "GuiComboSetDefaultSelection")) return;
    Serving guard(combo);
    setText(combo, "");
    if (!guard.alive()) return;
    /* The list's callback shows the default item's text in any case; bNotify decides
    ** whether the client hears of it. */
    combo->bNotify = notify == 1 ? 1 : 0;
    XmListSelectPos(combo->wList, combo->iDefaultPos, True);
    if (guard.alive()) combo->bNotify = 1;
}

XC_API void GuiComboSelectDefault(GuiCombo *combo) { GuiComboSetDefaultSelection(combo, 1); }

XC_API void GuiComboSetEmpty(GuiCombo *combo) {
    if (present(combo, "GuiComboSetEmpty")) setText(combo, "");
}

XC_API void GuiComboSetText(GuiCombo *combo, const char *text) {
    if (present(combo, "GuiComboSetText") && text != nullptr) setText(combo, text);
}

} // extern "C"
