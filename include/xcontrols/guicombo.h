/* guicombo.h - the combo box: a text field, a drop button and a drop-down list. */
#ifndef XC_GUICOMBO_H
#define XC_GUICOMBO_H

#include <stdint.h>
#include <X11/Intrinsic.h>
#include "xcexport.h"

XC_BEGIN_DECLS

/* A combo box is a text field that shows the current choice, a small drop button beside
** it and a scrolled list (the drop-down) that the control maps over the widgets around
** it when the button is activated and unmaps when a choice is made or the list loses
** the focus. List positions are 1-based as in XmList; 0 means "no position".
**
** The handle is allocated from the base runtime's default pool by GuiManageCombo (or
** GuiCreateComboAndWidgets), belongs to the caller and is freed by GuiDestroyCombo
** only. Its record is public so that code which built the widgets itself can reach
** them; treat every field as read-only. */
typedef struct GuiCombo GuiCombo;

/* The selection callback: called on the Xt thread with the handle and the client data
** given to GuiAddComboCallback, after the text field already shows the new choice.
** Its result is ignored. */
typedef int (*GuiComboCallback)(GuiCombo *combo, void *pClientData);

struct GuiCombo {
    Widget wText;               /* the XmTextField that shows the chosen text (first!) */
    Widget wButton;             /* the drop button (XmPushButton) */
    Widget wList;               /* the XmList; its parent is its scrolled window */
    int32_t iDefaultPos;        /* position chosen by the default operations: always 1 */
    int32_t bListShown;         /* 1 while the drop-down's windows are mapped */
    int32_t bMayOpen;           /* 1 if the next activation of the button opens it */
    GuiComboCallback fnCallback;    /* the selection callback, or null */
    void *pClientData;          /* handed to fnCallback */
    int32_t bNotify;            /* fnCallback is called only while this is 1 */
};

/* Builds a complete combo box and returns GuiManageCombo of its widgets.
**
** parent: a Form; a sunken frame "comboFrame" (holding the text field
**   "QZ_serverSelectionInput" and the drop button "comboButton" with a built-in arrow
**   picture) and a label "comboLabel" are created in it.
** listParent: the Form that directly contains parent; the drop-down (a scrolled list
**   "QZ_serverSelectionInput") is created in it with parent's left and right edges,
**   hanging from parent's bottom edge (listBelow == 1) or standing on its top edge.
** labelText: the label's text (null: no text). labelLeft == 1 puts the label left of
**   the frame, anything else right of it.
** visibleItems: the list's XmNvisibleItemCount.
** userEntry == 1 makes the text field editable; anything else makes it read-only.
**
** The label is attached on its left and right only: it keeps its own height. A failure
** to build the arrow picture is traced ("Failed to create combo pixmap") and leaves the
** button without a picture. A null parent is traced and gives null; otherwise null only
** when memory is exhausted. GuiDestroyCombo destroys all of these widgets. */
XC_API GuiCombo *GuiCreateComboAndWidgets(Widget parent, Widget listParent,
                                          const char *labelText, int32_t labelLeft,
                                          int32_t listBelow, int32_t visibleItems,
                                          int32_t userEntry);

/* Turns a text field (XmTextField), a push button (XmPushButton) and a list (XmList in
** a scrolled window, kept unmapped by Xt: XmNmappedWhenManaged False) into a combo box,
** and selects position 1 of the list (which fills the text field when the list holds
** items). Returns the new handle; null, with a trace, when a widget is missing or of
** another class, or when memory is exhausted. */
XC_API GuiCombo *GuiManageCombo(Widget wText, Widget wButton, Widget wList);

/* Sets the selection callback and its client data, replacing any earlier pair (a null
** function removes the callback). */
XC_API void GuiAddComboCallback(GuiCombo *combo, GuiComboCallback fn, void *pClientData);

/* Makes the text field editable, or read-only. */
XC_API void GuiEnableComboUserEntry(GuiCombo *combo);
XC_API void GuiDisableComboUserEntry(GuiCombo *combo);

/* A copy of the text field's current text (which may be typed text that matches no
** item), in the default pool: free it with MemFreeInternal. Null without a handle. */
XC_API char *GuiGetComboSelection(GuiCombo *combo);

/* The 1-based position of the selected list item; 0 when the list does not report
** exactly one selected position. */
XC_API int32_t GuiGetComboItemNumberSelected(GuiCombo *combo);

/* Deselects everything and selects `position` (0: the last item; beyond the count:
** none). With notify != 0 the text field takes the item's text and the callback is
** called; with notify 0 nothing else happens. Then scrolls a list longer than its
** visible rows so that the item shows with one row of context above it, or below it
** near the end of the list. */
XC_API void GuiChangeComboSelection(GuiCombo *combo, int32_t position, int32_t notify);

/* Selects the item whose text equals `text` as GuiChangeComboSelection does; with
** notify 0 also sets the text field to it. Returns 1, or 0 (nothing changed) when no
** item has that text. */
XC_API int32_t GuiComboSelectItem(GuiCombo *combo, const char *text, int32_t notify);

/* Appends an item at the end of the list (a null text is ignored). */
XC_API void GuiAddToComboList(GuiCombo *combo, const char *text);

/* Deletes the first item with that text; does nothing when there is none. */
XC_API void GuiRemoveFromComboList(GuiCombo *combo, const char *text);

/* Replaces all items by the `count` texts (none when count <= 0; null texts are
** skipped). The current text stays chosen if an item still has it; otherwise the text
** field is emptied and position 1 selected. `notify` as for GuiChangeComboSelection. */
XC_API void GuiReplaceComboList(GuiCombo *combo, int32_t count, char **texts, int32_t notify);

/* Closes the drop-down, destroys the text field, the button and the list widget, and
** frees the handle. A list made by XmCreateScrolledList takes its scrolled window with
** it; a combo made by GuiCreateComboAndWidgets takes its frame and label too. A scrolled
** window that the caller made apart from the list stays the caller's.
** Called while the combo's own code runs (from the selection callback, or from a text
** field callback that the combo's operation set off), the destruction waits until that
** code returns: the combo calls its client no more and never returns into a destroyed
** widget. The handle is invalid after the call either way. */
XC_API void GuiDestroyCombo(GuiCombo *combo);

/* Makes the text field and the button sensitive (flag != 0) or not. */
XC_API void GuiComboSetSensitive(GuiCombo *combo, int32_t flag);

/* Empties the text field and selects the default position (the first item), which
** shows its text; the callback is called only when notify is 1. */
XC_API void GuiComboSetDefaultSelection(GuiCombo *combo, int32_t notify);

/* GuiComboSetDefaultSelection with notify 1. */
XC_API void GuiComboSelectDefault(GuiCombo *combo);

/* Empties the text field; the list selection stays. */
XC_API void GuiComboSetEmpty(GuiCombo *combo);

/* Sets the text field's text (a null text does nothing); the list selection stays. */
XC_API void GuiComboSetText(GuiCombo *combo, const char *text);

XC_END_DECLS

#endif
