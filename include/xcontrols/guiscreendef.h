/* guiscreendef.h - plugin screens: the screen definition model and its entry points.
**
** A plugin screen is a base-runtime tree (kxtree.h) whose every node carries a
** ScreenItem object as its cookie, added with KX_TREE_COOKIE_OBJECT so that the node
** holds a reference on it. Each item names its type, its id, its attachments inside the
** parent form, the actions it triggers and its type-specific data. The client builds the
** tree and owns it; the library hangs an oGuiData on every item it builds and holds one
** reference on every object it stores.
**
** Colours that items are given by name (a white text background, a red toggle) are
** converted to pixels once per widget and passed when the widget is created, rather than
** set on the finished widget through a typed argument: the same colours, without Motif
** reconfiguring every widget once more.
**
** Ownership of shared records: a per-item update of a combo box or list box moves the
** update node's entry records under the shown node. Since tree nodes hold a reference
** on their cookie objects, the shown tree keeps those records alive by itself: the
** client may release the update tree as soon as GuiUpdatePlgScreen returns.
**
** Strings in item data are 's' fields: pool strings (kxstr.h) that the object owns and
** frees when its last reference goes. Handlers that store a new text free the old one.
*/
#ifndef XC_GUISCREENDEF_H
#define XC_GUISCREENDEF_H

#include <stdint.h>
#include <X11/Intrinsic.h>
#include "xcexport.h"

XC_BEGIN_DECLS

/* ---- Item types ------------------------------------------------------------------- */

enum GuiItemType {
    GroupBox = 1,
    TabManager = 2,
    TabPage = 3,
    ComboBox = 4,
    ComboItem = 5,
    ListBox = 6,
    ListItem = 7,
    selectionItem = 9,
    RadioManager = 10,
    RadioButton = 11,
    PushButton = 12,
    EditBox = 13,
    NumInput = 14,
    Label = 19,
    RowColManager = 20,
    DateInput = 21,
    TimeInput = 22,
    ChangePassword = 23,
    GetPasswordBox = 24,
    StackedTabManager = 25,
    ExtendedListBox = 26
};

/* ---- Actions and attachments ------------------------------------------------------ */

enum GuiActionKind {
    ACTION_SHOW = 1,
    ACTION_HIDE = 2,
    ACTION_ALLOW_INPUT = 3,
    ACTION_DISALLOW_INPUT = 4,
    ACTION_SET = 6,
    ACTION_CLEAR = 7,
    ACTION_CLOSE = 8
};

enum GuiAttachKind {
    ATTACH_CENTRE = 1,
    ATTACH_POSITION = 2,
    ATTACH_ITEM = 3
};

/* One side of an item inside its form. Plain memory owned by the client. */
typedef struct ScreenAttachment {
    int32_t kind;     /* GuiAttachKind; any other value leaves the side untouched */
    int32_t position; /* percent of the form, for ATTACH_POSITION */
    int32_t itemId;   /* reference item, for ATTACH_ITEM */
    int32_t offset;   /* pixels; for ATTACH_CENTRE the distance from the form's middle */
} ScreenAttachment;

enum GuiAttachSide { ATTACH_LEFT = 0, ATTACH_RIGHT = 1, ATTACH_TOP = 2, ATTACH_BOTTOM = 3 };

/* An action: the data of each element of an item's `actions` list. Base-runtime object
** with signature GUI_ACTION_SIGNATURE (tag GUI_TAG_ACTION by convention). */
typedef struct ScreenAction {
    int32_t targetId; /* itemId of the item that the action changes */
    int32_t kind;     /* GuiActionKind; codes 0, 5 and above 8 do nothing */
} ScreenAction;
#define GUI_TAG_ACTION 0xc9a2be21u
#define GUI_ACTION_SIGNATURE "i;i;"

/* ---- The screen item record --------------------------------------------------------- */

typedef struct oGuiData oGuiData;

/* The node cookie: a base-runtime object with tag GUI_TAG_SCREEN_ITEM and signature
** GUI_SCREEN_ITEM_SIGNATURE. A node whose cookie is anything else is skipped. */
typedef struct ScreenItem {
    uint32_t itemType;               /* GuiItemType */
    int32_t itemId;                  /* unique within one screen definition */
    int32_t clientWord1;             /* the client's; never read or written */
    ScreenAttachment **attachments;  /* null, or four pointers: left, right, top, bottom */
    void *actions;                   /* list of ScreenAction objects, or null */
    int32_t clientWord2;             /* the client's; never read or written */
    int32_t hidden;                  /* 1: the outermost widget is unmapped */
    int32_t disabled;                /* 1: the outermost widget is insensitive */
    void *itemData;                  /* type-specific object (tags below), or null */
    oGuiData *guiData;               /* the library's; null until the item is built */
} ScreenItem;
#define GUI_TAG_SCREEN_ITEM 0xc9a2be10u
#define GUI_SCREEN_ITEM_SIGNATURE "i;i;i;p;o;i;i;i;o;o;"

/* ---- Item data records ---------------------------------------------------------------
** Each is a base-runtime object with the tag and signature given beside it. The library
** checks the tag (and, for the types whose tag it does not check, the signature) before
** it reads a record. Fields marked "written" are set by the library while the screen is
** shown. */

#define GUI_TAG_GROUPBOX        0xc99ea5bau
#define GUI_TAG_COMBOBOX        0xc99ea7b7u
#define GUI_TAG_LISTBOX         0xc99ea9b4u
#define GUI_TAG_EXTLISTBOX      0xca90bd82u
#define GUI_TAG_SELECTION       0xc99eab21u
#define GUI_TAG_RADIOBUTTON     0xc99eac5au
#define GUI_TAG_PUSHBUTTON      0xc99eac99u
#define GUI_TAG_EDITBOX         0xc99ead19u
#define GUI_TAG_NUMINPUT        0xc99eadbbu
#define GUI_TAG_LABEL           0xc99eb25bu
#define GUI_TAG_ROWCOL          0xca9b0be4u
#define GUI_TAG_DATEINPUT       0xc86cae62u
#define GUI_TAG_TIMEINPUT       0xc86cae64u
#define GUI_TAG_CHANGEPASSWORD  0xca1301dbu
#define GUI_TAG_GETPASSWORD     0xca7d2882u
/* Entries, pages and managers: their tags are not checked, their signatures are. */
#define GUI_TAG_COMBOITEM       0xc9a2be11u
#define GUI_TAG_LISTITEM        0xc9a2be12u
#define GUI_TAG_TABPAGE         0xc9a2be13u
#define GUI_TAG_RADIOMANAGER    0xc9a2be14u
#define GUI_TAG_TABMANAGER      0xc9a2be15u

typedef struct GroupBoxData { char *title; } GroupBoxData;
#define GUI_GROUPBOX_SIGNATURE "s;"

typedef struct ComboBoxData {
    int32_t selected;   /* 1-based entry among ComboItems with a text (written) */
    char *typedText;    /* what the text field holds (written) */
    int32_t userEntry;  /* 0: the text cannot be edited */
    int32_t columns;    /* width in characters when above 0 */
} ComboBoxData;
#define GUI_COMBOBOX_SIGNATURE "i;s;i;i;"

typedef struct ComboItemData { char *text; } ComboItemData; /* null text: no entry */
#define GUI_COMBOITEM_SIGNATURE "s;"

typedef struct ListBoxData { int32_t multiple; } ListBoxData;
#define GUI_LISTBOX_SIGNATURE "i;"

typedef struct ExtendedListBoxData {
    int32_t multiple;   /* several entries may be selected */
    int32_t width;      /* width in characters */
    int32_t visible;    /* number of visible entries */
} ExtendedListBoxData;
#define GUI_EXTLISTBOX_SIGNATURE "i;i;i;"

typedef struct ListItemData {
    char *text;         /* null: no entry */
    int32_t selected;   /* (written) */
} ListItemData;
#define GUI_LISTITEM_SIGNATURE "s;i;"

typedef struct SelectionItemData {
    char *label;
    int32_t set;        /* (written) */
} SelectionItemData;
#define GUI_SELECTION_SIGNATURE "s;i;"

typedef struct RadioManagerData { int32_t unused; } RadioManagerData; /* not read */
#define GUI_RADIOMANAGER_SIGNATURE "i;"

typedef struct RadioButtonData {
    char *label;        /* null: no button */
    int32_t set;        /* (written) */
} RadioButtonData;
#define GUI_RADIOBUTTON_SIGNATURE "s;i;"

typedef struct PushButtonData { char *label; } PushButtonData;
#define GUI_PUSHBUTTON_SIGNATURE "s;"

typedef struct EditBoxData {
    int32_t maxLength;  /* XmNmaxLength when above 0 */
    int32_t columns;    /* XmNcolumns when above 0 */
    int32_t rows;       /* 1: single line; other values: scrolled multi-line */
    char *text;         /* (written on every change) */
} EditBoxData;
#define GUI_EDITBOX_SIGNATURE "i;i;i;s;"

typedef struct NumInputData {
    int32_t value;      /* (written) */
    int32_t maximum;
    int32_t minimum;
    int32_t columns;
} NumInputData;
#define GUI_NUMINPUT_SIGNATURE "i;i;i;i;"

typedef struct LabelData { char *text; } LabelData;
#define GUI_LABEL_SIGNATURE "s;"

typedef struct RowColManagerData { int32_t columns; } RowColManagerData; /* < 1: one */
#define GUI_ROWCOL_SIGNATURE "i;"

/* A DateInput's month field holds the longest month name that the date input shows (three
** letters with the default names, more where the locale's names are longer), not two
** characters: so that a user who types "jun" gets June by its whole name rather than
** January by its first letter. */
typedef struct DateInputData { int32_t date; } DateInputData; /* seconds; 0: now (written) */
#define GUI_DATEINPUT_SIGNATURE "i;"

typedef struct TimeInputData { int32_t time; } TimeInputData; /* seconds; 0: now (written) */
#define GUI_TIMEINPUT_SIGNATURE "i;"

typedef struct ChangePasswordData {
    char *newPassword;  /* clear text (written) */
    char *confirmation; /* clear text (written) */
} ChangePasswordData;
#define GUI_CHANGEPASSWORD_SIGNATURE "s;s;"

typedef struct GetPasswordBoxData {
    int32_t columns;
    intptr_t keyArg;    /* handed to SecurityEncryptPassword; 0: nothing is stored */
    char *encrypted;    /* (written) */
} GetPasswordBoxData;
#define GUI_GETPASSWORD_SIGNATURE "i;p;s;"

/* A TabPage is one tab of its tab manager, in tree order; a page without item data (or
** with a null title) shows an empty title. */
typedef struct TabPageData { char *title; } TabPageData;
#define GUI_TABPAGE_SIGNATURE "s;"

typedef struct TabManagerData { int32_t unused; } TabManagerData; /* not read */
#define GUI_TABMANAGER_SIGNATURE "i;"

/* ---- The library's records ---------------------------------------------------------- */

/* Per-item GUI data, created by the library for every item that the create walk builds. */
struct oGuiData {
    void *widgetList;   /* list of GuiWidgetRecord objects: first the outermost widget,
                           last the widget that shows the item's value */
    Widget childParent; /* where the item's children are created (containers only) */
    int32_t jobId;      /* glJobId when the object was created */
};
#define GUI_TAG_GUIDATA 0xc9a2be8cu
#define GUI_GUIDATA_SIGNATURE "o;p;i;"

/* How a widget record is torn down. */
enum GuiWidgetKind {
    WIDGET_PLAIN = 0,     /* unmap the window, destroy the widget */
    WIDGET_COMBO = 1,     /* GuiDestroyCombo */
    WIDGET_TABS = 5,      /* GuiDestroyTabs */
    WIDGET_NUMINPUT = 6,  /* GuiNumInputDestroy */
    WIDGET_DATEINPUT = 7, /* GuiDateInputDestroy */
    WIDGET_TIMEINPUT = 8  /* GuiTimeInputDestroy */
};

typedef struct GuiWidgetRecord {
    int32_t widgetKind;
    Widget widget;
    void *combo;
    void *tabs;
    void *numInput;
    void *dateInput;
    void *timeInput;
} GuiWidgetRecord;
#define GUI_TAG_WIDGET 0xc9a2be4fu
#define GUI_WIDGET_SIGNATURE "i;p;p;p;p;p;p;"

/* The client's record of one shown screen, passed to GuiUpdatePlgScreen. Plain memory. */
typedef struct oScreenDef {
    int32_t jobId;            /* copied to glJobId on every update */
    int32_t clientWord1;
    int32_t clientWord2;
    int32_t clientWord3;
    Widget parentWidget;      /* the form that holds the screen's top-level items */
    void *oPluginScreenDef;   /* the tree now shown; replaced by a whole-screen update */
} oScreenDef;

/* An update: a whole new screen or the items to replace. Plain memory. */
typedef struct oUpdateScreen {
    void *tree;               /* screen definition tree of the update */
    int32_t clientWord1;
    int32_t clientWord2;
    void *screenCookie;       /* 0, or a new screen cookie to set */
} oUpdateScreen;

/* The close callback: called by a CLOSE action with the job id and a boolean object
** holding true (kxobj.h), which the library releases after the call. The client may
** free the screen from inside it. A CLOSE that an item runs while GuiCreatePlgScreen or
** GuiUpdatePlgScreen builds or updates the screen (a toggle or a combo box reports its
** first state as it is built) is held until that entry point has finished, so that the
** screen stands whole when the client frees it; one that a control runs from a program
** call (GuiChangeComboSelection with notify, say) is held until the control's code has
** returned. Several such CLOSEs make one call, with the first one's job. */
typedef int (*GuiPlgCloseFn)(int32_t jobId, void *hFlag);

/* ---- Entry points ------------------------------------------------------------------- */

/* The job that the screen being created or updated belongs to. */
XC_API extern int32_t glJobId;

/* Registers the close callback and a client value (stored, never used). Calling it again
** replaces both. */
XC_API void InitPluginScreens(GuiPlgCloseFn fnClose, void *pClientValue);

/* Builds the screen `hScreenDef` into the form `parent` for job `jobId`: drops stale GUI
** data, builds every item, lays the items out, maps those not hidden and makes the
** disabled ones insensitive. The layout pass visits the items bottom-up (children before
** their parent), so that a row-column manager measures children whose own grids and
** attachments are in place and no subtree is laid out twice; a grid child that carries
** its own attachments keeps them over its cell, as if laid out after the grid, and
** ATTACH_CENTRE measures a container at its laid-out size. The parent may be realized or not; when it is realized
** the new widgets are managed in one batch per parent. The caller keeps the tree.
** Returns 1.
** A tree whose widgets still stand (shown, and neither torn down with
** GuiFreeScreenDefAndWidgets nor destroyed by the client) is built again beside them:
** the old widgets stay on the form and the controls of the old build (combo, date, time
** and number inputs) are never destroyed. This is traced at level 0 with the number of
** such items ("Screen created again over %ld items whose widgets still stand"). */
XC_API int GuiCreatePlgScreen(Widget parent, void *hScreenDef, int32_t jobId);

/* Applies `pUpdate` to the screen `pScreen`: with `perItem` 0 a whole new tree replaces
** the shown one (old widgets destroyed; pScreen takes a reference on the new tree and
** drops its old one); otherwise each top-level item of the update tree patches the
** shown item with the same id. Returns 1, or 0 in per-item mode when nothing was
** updated or the last item's type has no updater.
** Per-item mode finds each shown item (the first with the id in tree order) through an
** index of the shown tree that the library builds on the first update and keeps while the
** tree keeps its shape; it goes with the screen's teardown or GuiFreeScreenDef.
** An update item whose data is missing, or is not a record of the shown item's type
** (a LabelData sent to an EditBox), is never read: the shown item keeps its widgets and
** its item data, yet takes the update item's hidden and disabled flags and its actions,
** as an item of a type that the update does not know does. That item's result is 0
** (traced "Update data of item %ld does not fit its type" at level 1). Types that take
** nothing but the flags (dates, times, passwords, tabs, pages, entries) never read the
** data and report 1. */
XC_API int GuiUpdatePlgScreen(oScreenDef *pScreen, oUpdateScreen *pUpdate, int32_t perItem);

/* Destroys the widgets of every item (children before parents, each item's widgets last
** first), then releases the tree and clears `*phScreenDef`. Null pointers do nothing.
** Departure, for speed: the walk traces every record in that order, but Xt destroys each
** outermost widget with everything it holds in one pass, and a control whose fields lie
** in such a widget (number, date and time inputs, combo boxes) is ended from within that
** pass, before any of its widgets is freed: its destroy operation still runs and still
** destroys each field, which Xt then finds already going. Widgets that share a parent
** therefore go in Xt's order (each holder's children in turn) rather than control first,
** labels after. The tab holder, which has no such form, goes before the widgets. */
XC_API void GuiFreeScreenDefAndWidgets(void *phScreenDef);

/* Releases the tree at `*phScreenDef` and clears it; widgets are not touched. */
XC_API void GuiFreeScreenDef(void *phScreenDef);

/* Selects the radio button of `hButtonNode` within its radio manager: every toggle of the
** manager's subtree is switched off, then the button's own on. Only the toggles change:
** the set flags in the item data stay, and no radio callback or action runs. */
XC_API void GuiSetRadioButton(void *hButtonNode);

XC_END_DECLS

#endif
