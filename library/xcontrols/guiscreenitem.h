/* guiscreenitem.h - what the plugin-screen driver, layout, actions, updaters and the
** builders of every item family share (private to the library). */
#ifndef XC_GUISCREENITEM_H
#define XC_GUISCREENITEM_H

#include "guicommon.h"
#include "guiscreendef.h"

#include <utility>

namespace xc::screen {

/* ---- Items and their records -------------------------------------------------------- */

/* The screen item a node carries, or null when the node or its cookie is not one. */
ScreenItem *itemOf(void *node);

/* The item's oGuiData, or null. */
oGuiData *guiDataOf(const ScreenItem *item);

/* `h` as a widget record, or null when it is none. */
GuiWidgetRecord *asRecord(void *h);

/* First record of the item's widget list (its outermost widget) and last record (the
** widget that shows its value); null when the item has none. */
GuiWidgetRecord *outerRecord(const ScreenItem *item);
/* The same from the item's GUI data (null: none). */
GuiWidgetRecord *outerRecordOf(const oGuiData *gui);
GuiWidgetRecord *valueRecord(const ScreenItem *item);
Widget outerWidget(const ScreenItem *item);

/* The item data of an item when it carries `tag` (and, for safety, the matching field
** layout); null otherwise. */
template <typename T>
T *dataOf(const ScreenItem *item, uint32_t tag, const char *layout) {
    return item ? objectAs<T>(item->itemData, tag, layout) : nullptr;
}

/* Item data read without a tag check (entries, pages): only the field layout is checked,
** so a record of another shape is never read. */
template <typename T>
T *untaggedDataOf(const ScreenItem *item, const char *layout) {
    return item ? objectAs<T>(item->itemData, 0, layout) : nullptr;
}

/* The first node of the item's tree, in pre-order, whose item has the id; null if none. */
void *findItemNode(void *tree, int32_t itemId);
ScreenItem *findItem(void *tree, int32_t itemId);

/* The same search answered from a table made in one walk, for passes that search once
** per item (the layout pass, per-item updates), where a walk per search would cost
** quadratic time. */
class ItemIndex {
public:
    explicit ItemIndex(void *tree);
    /* An empty index of `tree` for the caller's own pre-order walk to fill (add for each
    ** node that has an item), which then calls finish: the create walk fills it, so that
    ** the items are not read once more from memory that the widgets have pushed out of
    ** the caches. */
    struct FilledByCaller {};
    ItemIndex(void *tree, FilledByCaller) : tree_(tree) {}
    /* Orders what was added by id; searches are answered only after it. */
    void finish();
    void *tree() const { return tree_; }
    ScreenItem *find(int32_t itemId) const;
    void *findNode(int32_t itemId) const;
    void add(void *node, ScreenItem *item);
    /* Keeps the index true while the children of `node` are replaced: forgetChildren
    ** before they are pruned (their subtrees go from the index), addChildren once the new
    ** ones (leaves) are appended. */
    void forgetChildren(void *node);
    void addChildren(void *node);
private:
    struct Entry {
        int32_t id;
        uint64_t rank; /* pre-order position: a walked node's is a multiple of 2^32, a
                          child appended later sits between its parent and the next */
        void *node;
        ScreenItem *item;
    };
    const Entry *first(int32_t itemId) const;
    Entry *entryOf(void *node); /* the entry of exactly this node, or null */
    void *tree_;
    PoolVector<Entry> items_; /* by id, then by rank */
};

/* ---- The builders' common steps ----------------------------------------------------- */

/* Creates the item's oGuiData (widget list empty, jobId = glJobId) and stores it in the
** item with the record's own reference, overwriting what was there. Returns it. */
oGuiData *createGuiData(void *node);

/* The childParent of the node's parent item; null when there is none. */
Widget parentWidgetOf(void *node);

/* Where a builder creates the node's widgets: the childParent of its parent item, or else
** the screen's form `screenForm`; a non-null `fallbackTrace` is traced (with `traceNo`)
** when the item falls back to the screen's form. */
Widget whereToBuild(Widget screenForm, void *node, int32_t traceNo = 0,
                    const char *fallbackTrace = nullptr);

/* A new all-zero widget record (kind 0, no widget), or null. The caller owns its
** reference until it hands it to appendRecord. */
GuiWidgetRecord *newRecord(Widget w = nullptr, int32_t kind = WIDGET_PLAIN);

/* Appends the record to the item's widget list, which takes over the caller's reference;
** `*rec` is cleared. */
void appendRecord(oGuiData *gui, GuiWidgetRecord **rec);

/* Appends a plain record (kind 0) of the widget; the shorthand of the two above. */
void addWidget(oGuiData *gui, Widget w);

/* Makes the records of the node's item forget their widgets when the widgets are
** destroyed by other means than teardown (the client destroying the screen's parent, or
** an item's widget, first), so that nothing reaches a widget that no longer exists. The
** item's outer widget takes one callback for the records of the item and of the items
** under it whose widgets lie within it; only a widget outside it takes one of its own.
** Called by the create walk once the node (whose item is `item`) is built. */
void watchWidgets(void *node, const ScreenItem *item);

/* While a teardown destroys the widgets of `tree`, whose records it cleared first, the
** destroy callbacks of that tree's items have nothing to do and return at once (a
** screen of thousands of items would otherwise look each item up once more). */
class TeardownScope {
public:
    explicit TeardownScope(const void *tree);
    ~TeardownScope();
    TeardownScope(const TeardownScope &) = delete;
    TeardownScope &operator=(const TeardownScope &) = delete;
private:
    const void *previous_;
};

/* True when `w` is `ancestor` or lies within it (a null ancestor holds nothing). */
bool isWithin(Widget w, Widget ancestor);


/* The build batch of a screen: while one is open, queueManage only queues widgets; the
** outermost batch's finish manages every queued widget, one XtManageChildren per parent,
** innermost parents first, so that a realized form lays its new children out once
** instead of once per child. A batch that ends without finish manages nothing (the
** widgets stay unmanaged, as after an out-of-memory stop). */
class BuildBatch {
public:
    BuildBatch();
    ~BuildBatch();
    BuildBatch(const BuildBatch &) = delete;
    BuildBatch &operator=(const BuildBatch &) = delete;
    void finish();
    void queue(Widget w);
    /* Manages the queued widgets that lie inside `container`, innermost parents first. */
    void manageWithin(Widget container);
private:
    struct Parent {
        Widget parent;
        PoolVector<Widget> children; /* queued, not yet managed */
    };
    void ranksWithin(Widget w, PoolVector<size_t> &ranks) const;
    PoolVector<Parent> parents_; /* in the order of their first queued child */
    PoolHashMap<Widget, size_t> rankOf_;
    size_t lastRank_ = 0; /* of the parent of the widget queued last */
};

/* Queues a widget of a plugin screen for the open build batch; manages it at once when
** no batch is open. */
void queueManage(Widget w);

/* Manages at once the queued widgets that lie inside `container` (not the container
** itself), so that the container can be measured before the batch ends. */
void manageQueuedWithin(Widget container);

/* A widget argument list that grows as a builder adds resources. */
class Args {
public:
    Args &add(const char *name, XtArgVal value) {
        if (count_ < kMax) {
            XtSetArg(args_[count_], const_cast<char *>(name), value);
            ++count_; /* XtSetArg names its first argument twice */
        }
        return *this;
    }
    /* Adds a colour resource from a colour name, converted once for widgets created in
    ** `where`; nothing when the name does not convert (the resource keeps its default). */
    Args &addColour(const char *name, Widget where, const char *colour);
    ArgList list() { return args_; }
    Cardinal count() const { return count_; }
private:
    static constexpr Cardinal kMax = 24;
    Arg args_[kMax];
    Cardinal count_ = 0;
};

/* Creates a widget of a plugin screen with XtNmappedWhenManaged false, ready for the
** layout pass to map it. */
Widget createHidden(Widget parent, const char *name, WidgetClass cls, Args &args);

/* ---- Walks used by the driver -------------------------------------------------------- */

/* The create and layout passes of a screen's tree, in one build batch. */
void buildScreen(Widget parent, void *tree);

/* The two modes of GuiUpdatePlgScreen. */
int updateWholeScreen(oScreenDef *screen, oUpdateScreen *update);
int updateItems(oScreenDef *screen, oUpdateScreen *update);

/* The teardown walk: every widget and control of the tree's records is destroyed and the
** records cleared; the records, GUI data and tree stay. */
void destroyScreenWidgets(void *tree);

/* The layout step of one node (attachments, visibility, sensitivity, grid); the walk's
** context is the ItemIndex of the screen's tree. The layout pass walks the tree
** bottom-up (children before their parent), so that a grid measures children that are
** laid out already and no subtree is laid out twice. */
int layoutNode(void *index, void *node);

/* Applies `hidden` and `disabled` of an item to its outer widget `outer` (null: nothing
** to do). */
void applyVisibility(const ScreenItem *item, Widget outer);

/* Drops the index of `tree` that per-item updates keep (the tree is torn down or freed). */
void forgetShownIndex(const void *tree);

/* The per-item update of a shown node from an update node: 1, or 0 for a type that the
** update does not know. */
int updateItem(void *shownNode, void *updateNode);

/* Runs the actions of the node's item, plain or inverted, on the screen that the node
** belongs to. A CLOSE may let the client free the screen: callers touch nothing of the
** node or its tree afterwards. */
void runActions(void *node, bool inverted);

/* Reports the job to the close callback registered with InitPluginScreens, with a
** boolean object holding true; while an entry point builds or updates a screen the call
** waits until that entry point has finished (the first CLOSE's job is reported, once). */
void requestClose(int32_t jobId);

/* A frame with a sunken shadow, created hidden in `where`, and the form inside it
** (`*form`), both queued for managing: the box of a combo box or a number input.
** Returns the frame. */
Widget createInsetFrame(Widget where, Widget *form);

/* Creates a scrolled window in `parent` and the child of `cls` named `name` inside it, as
** Motif's scrolled list and text do, but unmanaged so that the build batch can manage
** both. `windowArgs` go to the scrolled window, `childArgs` to the child. Returns the
** child; its Xt parent is the scrolled window. */
Widget createScrolled(Widget parent, const char *name, WidgetClass cls, Args &windowArgs,
                      Args &childArgs);

/* Builder signature: (screen's parent widget, node). */
using Builder = void (*)(Widget parent, void *node);

void buildGroupBox(Widget parent, void *node);
void buildLabel(Widget parent, void *node);
void buildRowColManager(Widget parent, void *node);
void buildPushButton(Widget parent, void *node);
void buildEditBox(Widget parent, void *node);
void buildSelectionItem(Widget parent, void *node);
void buildRadioManager(Widget parent, void *node);
void buildListBox(Widget parent, void *node);
void buildComboBox(Widget parent, void *node);
void buildDateInput(Widget parent, void *node);
void buildTimeInput(Widget parent, void *node);
void buildNumInput(Widget parent, void *node);
void buildChangePassword(Widget parent, void *node);
void buildGetPasswordBox(Widget parent, void *node);
/* Tab managers: the items under each TabPage child are built in that page's form, its
** childParent. */
void buildPlainTabManager(Widget parent, void *node);
void buildStackedTabManager(Widget parent, void *node);

/* The form that holds the widgets of the control of a number, date or time input
** record; null for other records and for a record without a control. */
Widget controlHolder(const GuiWidgetRecord *rec);

/* Appends the record of the item's control (the last one: it shows the value). The
** control goes with the form that holds its fields (or a combo box's list), whether
** teardown or the client destroys it; teardown ends the controls left after that. */
void appendControl(oGuiData *gui, GuiWidgetRecord **rec);

/* Destroys the control of a control record (combo, number, date or time input, tab
** holder) and clears its handle, so that the control goes once, whether teardown or the
** end of its widgets reaches it first. Plain records are left alone. */
void destroyControlOf(GuiWidgetRecord *rec);

} // namespace xc::screen

#endif
