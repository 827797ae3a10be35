/* guipopup.h - context menus built from a list of menu items, popped up at the pointer
** and destroyed by the library on its own after they pop down. */
#ifndef XC_GUIPOPUP_H
#define XC_GUIPOPUP_H

#include <stdint.h>
#include <X11/Intrinsic.h>
#include "xcexport.h"

XC_BEGIN_DECLS

/* One shown menu. The library allocates it from the default pool and frees it with the
** menu's widgets; XmNuserData of the row column points to it, so an entry callback (whose
** widget is the row column) can read it. The client only reads it. */
typedef struct GuiPopupMenu {
    Widget wShell;     /* the XmMenuShell "shell" */
    Widget wRowColumn; /* the popup XmRowColumn "rowcol" */
    Widget wTitle;     /* the XmLabel "label", or null without a title */
    Widget wSeparator; /* the XmSeparator "separator", or null without a title */
    Widget *pButtons;  /* the XmPushButton "button" of each item, in list order */
    int32_t iButtons;  /* number of buttons */
    int32_t iSerial;   /* counts the menus made: 1 to 1000, then 1 again */
} GuiPopupMenu;

/* Called once, with the data given to GuiPopupAddPopDownCallback. */
typedef void (*GuiPopDownFn)(void *pData);

/* Builds a popup menu under the composite widget `wParent` and pops it up at the pointer position of `event`
** (the ButtonPress that asks for the menu). The widgets: an unmanaged core widget
** "dummy" under the parent, holding the XmMenuShell "shell", holding the popup
** XmRowColumn "rowcol"; with a `pszTitle`, an XmLabel "label" and a double-line
** XmSeparator "separator" first; then one XmPushButton "button" per item of `hItems`.
**
** Items: a base-runtime list of objects whose first field is the label text (a string
** field, or a pointer to a zero-terminated text; a null text shows an empty label).
** Each button holds one reference on its item while it exists and keeps the item in its
** XmNuserData; the list itself is not kept. A list entry that is no object is traced and
** gets no button; a null or empty list gives a menu without buttons.
**
** `fnEntry` (may be null) is added with `pClientData` to the row column's
** XmNentryCallback: it gets the row column's callback structure for the chosen button.
**
** Posting: a press and release of the button without moving (a click) leaves the menu
** posted until a choice is made or the user clicks elsewhere; holding the button down,
** the menu follows the pointer and the release over an entry chooses it.
**
** Lifetime: when the menu shell pops down, the menu is destroyed 250 ms later with all
** its widgets, the "dummy" widget included, and every item reference is given back. A
** repeated pop-down of the same menu within those 250 ms is recognised by the menu itself
** (not by its serial, which another menu's pop-down could overwrite and which repeats
** after 1000 menus) and traced "Avoiding LessTif's double-popdown bug". A menu whose
** parent is destroyed first goes with it, its items given back and its timer removed.
**
** Returns 1; 0 with a trace when the parent is null or not a composite widget, or
** `event` is no button press. */
XC_API int GuiPopupCreateMenu(Widget wParent, XEvent *event, XtCallbackProc fnEntry,
                              const char *pszTitle, XtPointer pClientData, void *hItems);

/* Sets the pop-down function: it is called once, as fn(pData), when the next menu to go
** has been destroyed (its items given back), and then forgotten. Setting it again before
** that replaces it; a null function clears it. */
XC_API void GuiPopupAddPopDownCallback(GuiPopDownFn fn, void *pData);

XC_END_DECLS

#endif
