/* guipopup.cpp - popup menus built from item lists, destroyed on their own a moment after
** they pop down. */
#include <Xm/Label.h>
#include <Xm/MenuShell.h>
#include <Xm/PushB.h>
#include <Xm/RowColumn.h>
#include <Xm/Separator.h>

#include <cstddef>
#include <utility>

#include "guipopup.h"

#include "guicommon.h"
#include "guiinputkit.h"

namespace xc {
namespace {

constexpr int32_t kMsgItemCount = 600;
constexpr int32_t kMsgAddItem = 601;
constexpr int32_t kMsgRepeatedPopDown = 602;
constexpr int32_t kMsgPopDownFunction = 603;
constexpr int32_t kMsgBadArgument = 604;
constexpr int32_t kMsgNoItem = 605;

/* Motif pops a menu down before it calls the chosen entry's callbacks, so the widgets
** must outlive the pop-down: the menu goes a moment later. */
constexpr unsigned long kDestroyDelayMs = 250;
constexpr int32_t kLastSerial = 1000;

/* The library's part of a menu beside what the client may read (at the same address). */
struct Menu {
    GuiPopupMenu shown;
    Widget dummy;
    XtIntervalId destroyTimer; /* 0 unless the destroy is pending */
    bool poppedDown;           /* its first pop-down started the destroy */
    XButtonEvent post;         /* the press that asked for the menu */
    bool releaseSeen;          /* the first release after the post came */
    bool reposting;            /* posted again after a click: not a pop-down */
    Time heldBack;             /* the release that ended the click, kept from Motif */
};

/* A menu item: an object whose first field is its label text. */
struct MenuItem {
    const char *label;
};

int32_t gSerial = 0;
GuiPopDownFn gPopDownFn = nullptr;
void *gPopDownData = nullptr;

MenuItem *menuItemOf(void *h) {
    MenuItem *item = objectAs<MenuItem>(h, 0, "s;");
    return item ? item : objectAs<MenuItem>(h, 0, "p;");
}

int32_t nextSerial() {
    gSerial = (gSerial >= kLastSerial ? 0 : gSerial) + 1;
    return gSerial;
}

/* The one-shot function is forgotten before it runs, so that it can set the next one. */
void runPopDownFunction() {
    if (gPopDownFn == nullptr) return;
    trace(kMsgPopDownFunction, 0, "call the popdown function");
    std::exchange(gPopDownFn, nullptr)(std::exchange(gPopDownData, nullptr));
}

/* A button gives its item back when it goes, whoever destroys it. */
void releaseItem(Widget, XtPointer item, XtPointer) {
    ObjReleaseInternal(&item);
}

void onPopDown(Widget, XtPointer data, XtPointer);

/* The dummy widget goes last of the menu's widgets (Xt calls the destroy callbacks of
** children first), so the buttons have given their items back by now. */
void onMenuDestroyed(Widget, XtPointer data, XtPointer) {
    auto *menu = static_cast<Menu *>(data);
    if (menu->destroyTimer != 0) XtRemoveTimeOut(menu->destroyTimer);
    XtRemoveCallback(menu->shown.wShell, XtNpopdownCallback, onPopDown, menu);
    MemFreeInternal(&menu->shown.pButtons);
    MemFreeInternal(&menu);
    runPopDownFunction();
}

void destroyMenu(XtPointer data, XtIntervalId *) {
    auto *menu = static_cast<Menu *>(data);
    menu->destroyTimer = 0;
    XtDestroyWidget(menu->dummy);
}

void onPopDown(Widget shell, XtPointer data, XtPointer) {
    auto *menu = static_cast<Menu *>(data);
    if (menu->reposting) return;
    if (menu->poppedDown) {
        trace(kMsgRepeatedPopDown, 0, "Avoiding LessTif's double-popdown bug");
        return;
    }
    menu->poppedDown = true;
    menu->destroyTimer = XtAppAddTimeOut(XtWidgetToApplicationContext(shell), kDestroyDelayMs,
                                         destroyMenu, menu);
}

/* A press and release without moving, within a double click's time. */
bool isClick(const XButtonEvent &press, const XButtonEvent &release, Widget w) {
    return release.button == press.button && release.x_root == press.x_root &&
           release.y_root == press.y_root &&
           release.time - press.time <= static_cast<Time>(XtGetMultiClickTime(XtDisplay(w)));
}

/* Motif takes a menu that was posted by a press down at the release of that button,
** but keeps one up that was posted with no button held. A click (press and release
** without moving) is how users open a context menu to choose from it afterwards, so its
** release is kept from Motif (it reaches both the row column and the shell) and the menu
** is posted once more, now with the button up: it stays until a choice or a click
** elsewhere. */
void holdBackClickRelease(Widget w, XtPointer data, XEvent *event, Boolean *goOn) {
    auto *menu = static_cast<Menu *>(data);
    const XButtonEvent &release = event->xbutton;
    if (!menu->releaseSeen) {
        menu->releaseSeen = true;
        if (!isClick(menu->post, release, w)) return;
        menu->heldBack = release.time;
        menu->reposting = true;
        XtUnmanageChild(menu->shown.wRowColumn);
        XtManageChild(menu->shown.wRowColumn);
        menu->reposting = false;
    }
    if (menu->heldBack != 0 && release.time == menu->heldBack) *goOn = False;
}

/* One unmanaged button per item that is an object; its label is the item's text. */
int addItemButton(void *data, void *element) {
    auto *menu = static_cast<Menu *>(data);
    void *handle = ListElementItem(element);
    MenuItem *item = menuItemOf(handle);
    if (item == nullptr || !ObjIncRefCount(handle)) {
        trace(kMsgNoItem, -1, "GuiPopupCreateMenu: a list entry is no menu item");
        return 1;
    }
    trace(kMsgAddItem, 0, "GUI add %s to menu", item->label ? item->label : "(null)");
    XmStr label(item->label ? item->label : "");
    Widget button = XtVaCreateWidget("button", xmPushButtonWidgetClass, menu->shown.wRowColumn,
                                     XmNlabelString, static_cast<XmString>(label), XmNuserData,
                                     handle, XmNshadowThickness, 1, nullptr);
    XtAddCallback(button, XmNdestroyCallback, releaseItem, handle);
    menu->shown.pButtons[menu->shown.iButtons++] = button;
    return 1;
}

void addTitle(Menu *menu, const char *title) {
    XmStr label(title);
    menu->shown.wTitle = XtVaCreateWidget("label", xmLabelWidgetClass, menu->shown.wRowColumn,
                                          XmNlabelString, static_cast<XmString>(label), nullptr);
    menu->shown.wSeparator =
        XtVaCreateWidget("separator", xmSeparatorWidgetClass, menu->shown.wRowColumn,
                         XmNseparatorType, XmDOUBLE_LINE, nullptr);
}

/* A zeroed menu record with room for `count` buttons, or null with a trace. */
Menu *newMenu(int32_t count) {
    trace(kMsgItemCount, 0, "GUI have %ld menu items", static_cast<long>(count));
    auto *menu = allocateRecord<Menu>("GuiPopupCreateMenu");
    if (menu == nullptr || count == 0) return menu;
    menu->shown.pButtons = static_cast<Widget *>(
        allocateRecord(static_cast<std::size_t>(count) * sizeof(Widget), "GuiPopupCreateMenu"));
    if (menu->shown.pButtons == nullptr) MemFreeInternal(&menu);
    return menu;
}

/* The title, the separator and the buttons are made unmanaged and managed in one call:
** the row column lays itself out once. */
void addEntries(Menu *menu, const char *title, void *items) {
    if (title != nullptr) addTitle(menu, title);
    ListWalk(items, addItemButton, menu);
    WidgetList children = nullptr;
    Cardinal count = 0;
    XtVaGetValues(menu->shown.wRowColumn, XmNchildren, &children, XmNnumChildren, &count,
                  nullptr);
    XtManageChildren(children, count);
}

} // namespace
} // namespace xc

using namespace xc;

extern "C" {

int GuiPopupCreateMenu(Widget wParent, XEvent *event, XtCallbackProc fnEntry,
                       const char *pszTitle, XtPointer pClientData, void *hItems) {
    if (wParent == nullptr || !XtIsComposite(wParent) || event == nullptr ||
        event->type != ButtonPress) {
        trace(kMsgBadArgument, -1, "GuiPopupCreateMenu: no composite parent or no button press");
        return 0;
    }
    auto *menu = newMenu(ListCount(hItems));
    if (menu == nullptr) return 0;
    menu->shown.iSerial = nextSerial();
    menu->dummy = XtCreateWidget("dummy", coreWidgetClass, wParent, nullptr, 0);
    menu->shown.wShell = XtVaCreatePopupShell("shell", xmMenuShellWidgetClass, menu->dummy,
                                              XtNheight, 30, XtNwidth, 30, XmNshadowThickness,
                                              1, XmNallowShellResize, True, nullptr);
    XtAddCallback(menu->dummy, XmNdestroyCallback, onMenuDestroyed, menu);
    menu->shown.wRowColumn =
        XtVaCreateWidget("rowcol", xmRowColumnWidgetClass, menu->shown.wShell, XmNrowColumnType,
                         XmMENU_POPUP, XmNuserData, &menu->shown, nullptr);
    if (fnEntry != nullptr)
        XtAddCallback(menu->shown.wRowColumn, XmNentryCallback, fnEntry, pClientData);
    addEntries(menu, pszTitle, hItems);
    XtAddCallback(menu->shown.wShell, XtNpopdownCallback, onPopDown, menu);
    menu->post = event->xbutton;
    for (Widget w : {menu->shown.wRowColumn, menu->shown.wShell})
        XtInsertEventHandler(w, ButtonReleaseMask, False, holdBackClickRelease, menu, XtListHead);
    XmMenuPosition(menu->shown.wRowColumn, &event->xbutton);
    XtManageChild(menu->shown.wRowColumn);
    return 1;
}

void GuiPopupAddPopDownCallback(GuiPopDownFn fn, void *pData) {
    gPopDownFn = fn;
    gPopDownData = pData;
}

} // extern "C"
