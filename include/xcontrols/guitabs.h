/* guitabs.h - the tab holder: a drawing area that paints its own tabs above a bevelled
** page frame, one page per tab. */
#ifndef XC_GUITABS_H
#define XC_GUITABS_H

#include <stdint.h>
#include <X11/Intrinsic.h>
#include "xcexport.h"

XC_BEGIN_DECLS

/* A tab holder is made in a parent Form: a page form ("form", inset 10 pixels on the
** left, right and bottom, below the tabs on top) that holds one page per tab (an XmFrame
** "tabPage" filling the page form, in which the caller builds that page's widgets), and
** a drawing area ("tabDa") filling the parent, on which the holder paints the tabs and a
** bevelled frame around the pages. Clicking a tab selects it: its page is raised and made
** sensitive, every other page is unmapped and insensitive, and the tab callback is told.
**
** Plain holders keep all tabs on one row however wide they get; stacking holders wrap
** their tabs into rows spread to the holder's width, and draw the row that holds the
** selected tab last, next to the page. A stacking tab wider than the holder by itself
** takes a row of its own, spread like any row, and the next tab starts a new row (rather
** than sharing the wide tab's row, which would push it past the right edge).
**
** Tab NUMBERS are 1-based (GuiEnableTab, GuiDisableTab, GuiSelectTab, GuiGetSelectedTab);
** tab INDICES are 0-based (GuiTabSetTabVisible, GuiGetTabWidgetAtIndex, the positions
** of GuiDeleteTabsFromExistingTabHolder).
**
** The handle and its tab records are allocated from the base runtime's default pool and
** belong to the caller until GuiDestroyTabs. The records are public so that code which
** builds pages can reach them; treat every field as read-only. */

/* One tab. Records never move: a record's index and number stay what they were when it
** was made, also when tabs before it are deleted. */
typedef struct GuiTab {
    int32_t iNumber;  /* 1-based position: index + 1 */
    int32_t bEnabled; /* 1: clickable, title in black; 0: title in the bottom-shadow colour */
    int32_t bHidden;  /* non-zero: not laid out, drawn or clickable */
    int32_t iLeftX;   /* the tab's box in the drawing area, as last laid out and drawn */
    int32_t iRightX;
    int32_t iTopY;
    int32_t iBottomY;
    int32_t iRow;     /* row of the last layout; 0 is the selected tab's row */
    char *pszTitle;   /* the holder's own copy; null after the tab was deleted */
    Widget wPage;     /* the tab's "tabPage" frame */
} GuiTab;

/* The tab callback: called on the Xt thread when the user selects another tab with the
** pointer (never for GuiSelectTab), with the drawing area, the client data given to
** GuiAddTabCallback and a pointer to the holder's selected-tab number, which already
** holds the new tab's number. The callback may destroy the holder. */
typedef void (*GuiTabCallback)(Widget wTabDa, void *pClientData, int32_t *piSelected);

typedef struct GuiTabs {
    int32_t iNumTabs;          /* tabs in use: the records the strip shows */
    int32_t iCapacity;         /* records allocated; >= iNumTabs */
    int32_t iSelected;         /* number of the selected tab; 1 after creation */
    Widget wTabDa;             /* the "tabDa" drawing area */
    GuiTab *pTabs;             /* iCapacity records */
    GuiTabCallback fnCallback; /* or null */
    void *pClientData;         /* handed to fnCallback */
    Widget wPageForm;          /* the "form" that holds the pages */
    int32_t bStacking;         /* 1: stacking tabs */
} GuiTabs;

/* Creates a plain (GuiCreateTabs) or stacking (GuiCreateStackingTabs) tab holder with
** `count` tabs titled by `titles` (copied; a null title shows as an empty one) in the
** Form `parent`. Tab 1 is selected; the pages of the others are insensitive. Needs the
** shared GCs and font list of GuiCreateGcsAndFonts. Returns null, with a trace, for a
** null parent, a negative count, null titles with a positive count, or when memory is
** exhausted. */
XC_API GuiTabs *GuiCreateTabs(Widget parent, int32_t count, char **titles);
XC_API GuiTabs *GuiCreateStackingTabs(Widget parent, int32_t count, char **titles);

/* Sets (replaces) the tab callback and its client data; a null function removes it. */
XC_API void GuiAddTabCallback(GuiTabs *tabs, GuiTabCallback fn, void *pClientData);

/* Makes tab `number` clickable (title in black) or not (title in the bottom-shadow
** colour) and redraws. A disabled tab can still be selected with GuiSelectTab. */
XC_API void GuiEnableTab(GuiTabs *tabs, int32_t number);
XC_API void GuiDisableTab(GuiTabs *tabs, int32_t number);

/* Selects tab `number`, redraws and makes only its page sensitive. The tab callback is
** not called. */
XC_API void GuiSelectTab(GuiTabs *tabs, int32_t number);

/* The selected tab's number; 0 without a holder. */
XC_API int32_t GuiGetSelectedTab(GuiTabs *tabs);

/* Hides (hide == 1) or shows (any other value: 0) the tab at `index`. Hiding the
** selected tab selects the first shown tab (GuiSelectTab); when none is shown the page
** form is unmanaged, and showing a tab again does not manage it again. Nothing else is
** redrawn: the next redraw shows the change. */
XC_API void GuiTabSetTabVisible(GuiTabs *tabs, int32_t index, int32_t hide);

/* The "tabPage" frame of the tab at `index`; null for a null holder or an index outside
** the records. */
XC_API Widget GuiGetTabWidgetAtIndex(GuiTabs *tabs, int32_t index);

/* Appends `count` tabs titled by `titles` (copied), numbered after the present ones, with
** insensitive pages (the page of a first tab excepted); the selection stays. Redraws and
** returns the former number of tabs (the index of the first new tab), or -1, with a
** trace and the holder unchanged, when memory runs out or the arguments are bad. */
XC_API int32_t GuiAddTabsToExistingTabHolder(GuiTabs *tabs, char **titles, int32_t count);

/* Deletes the tabs at the `count` 0-based `positions`, in the order given: each such
** record's page is replaced by a new empty one and its title freed, and the number of
** tabs drops by one. Records do not move, so the strip then shows the first records: a
** deleted position below the new number of tabs stays with an empty title. With
** reselect == 1 tab 1 is selected afterwards. Redraws and returns the number of tabs;
** 0 for a null holder. Null positions are traced and delete nothing. */
XC_API int32_t GuiDeleteTabsFromExistingTabHolder(GuiTabs *tabs, int32_t *positions,
                                                  int32_t count, int32_t reselect);

/* Sets the drawing area's width to what all titles need side by side: the sum over the
** tabs in use, hidden ones included, of each title's width plus 25. Does not redraw (the
** drawing area's resize does). */
XC_API void GuiTabSizeToTitles(GuiTabs *tabs);

/* Destroys every page and the drawing area and frees the holder; the page form stays
** with the parent. Called from the tab callback, the destruction waits until the
** holder's own code has returned. The holder also ends by itself when the client
** destroys its drawing area (or the parent holding it); the handle is invalid after
** either. */
XC_API void GuiDestroyTabs(GuiTabs *tabs);

XC_END_DECLS

#endif
