/* guiscreenupdate.cpp - updates of a shown plugin screen: the whole screen replaced, or
** single items found by id and patched through the dispatch by item type, with the
** visibility and sensitivity that every per-item update applies. */
#include "guiscreenitem.h"
#include "guiscreenupdaters.h"

namespace xc::screen {
namespace {

/* The index of the tree that per-item updates search, built on the first search and kept
** while the tree keeps its shape, so that an update of k items on a screen of n costs
** k log n rather than k walks of n. It drops when the tree is torn down or freed; should
** the client change the tree itself, its node count (or a stale hit) tells. */
struct ShownIndex {
    ItemIndex index{nullptr}; /* of no tree: holds nothing */
    int32_t nodes = 0;
};
ShownIndex gShown;

bool indexFits(void *tree) {
    return tree != nullptr && gShown.index.tree() == tree && TreeNodeCount(tree) == gShown.nodes;
}

ItemIndex &indexOf(void *tree) {
    if (!indexFits(tree)) {
        gShown.index = ItemIndex(tree);
        gShown.nodes = TreeNodeCount(tree);
    }
    return gShown.index;
}

/* The first node of the tree in pre-order whose item has the id, or null. */
void *findShown(void *tree, int32_t itemId) {
    void *node = indexOf(tree).findNode(itemId);
    ScreenItem *item = itemOf(node);
    if (node == nullptr || (item != nullptr && item->itemId == itemId && TreeFromNode(node) == tree))
        return node;
    forgetShownIndex(tree); /* the tree changed behind the index: one new walk */
    return indexOf(tree).findNode(itemId);
}

struct UpdateKind {
    uint32_t type;
    Updater update;
};

/* Item types that the per-item update knows. Types without an entry (RowColManager,
** ExtendedListBox, unassigned codes) are unknown to it; a null updater leaves the item
** as it is (its item data is not replaced). */
constexpr UpdateKind kUpdateKinds[] = {
    {GroupBox, updateTitle},    {TabManager, nullptr},     {StackedTabManager, nullptr},
    {TabPage, nullptr},         {ComboItem, nullptr},      {ListItem, nullptr},
    {RadioButton, nullptr},     {8, nullptr},              {DateInput, nullptr},
    {TimeInput, nullptr},       {ChangePassword, nullptr}, {GetPasswordBox, nullptr},
    {ComboBox, updateCombo},    {ListBox, updateList},     {selectionItem, updateToggle},
    {RadioManager, updateRadios}, {PushButton, updateButton}, {EditBox, updateEditText},
    {NumInput, updateNumber},   {Label, updateLabel},
};

const UpdateKind *updateKindOf(uint32_t type) {
    for (const UpdateKind &k : kUpdateKinds)
        if (k.type == type) return &k;
    return nullptr;
}

/* The update item's flags become the shown item's, on the record and the widget. */
void applyFlags(ScreenItem *shown, const ScreenItem *patch) {
    Widget outer = outerWidget(shown);
    if (outer == nullptr) return;
    shown->hidden = patch->hidden == 1 ? 1 : 0;
    shown->disabled = patch->disabled == 1 ? 1 : 0;
    applyVisibility(shown, outer);
}

} // namespace

void forgetShownIndex(const void *tree) {
    if (gShown.index.tree() == tree) gShown.index = ItemIndex(nullptr);
}

void replaceEntries(void *shownNode, void *updateNode, EntryFilter isEntry) {
    if (shownNode == updateNode) return; /* the shown tree handed as its own update */
    void *tree = TreeFromNode(shownNode);
    const bool indexed = indexFits(tree);
    if (indexed) gShown.index.forgetChildren(shownNode);
    while (void *child = TreeNodeFirstChild(shownNode)) TreePruneBranch(child);
    for (void *entry = TreeNodeFirstChild(updateNode); entry != nullptr; TreeNextSibling(&entry, entry))
        if (isEntry(itemOf(entry))) TreeAddItem(shownNode, TreeNodeCookie(entry), KX_TREE_COOKIE_OBJECT);
    if (!indexed) return;
    gShown.index.addChildren(shownNode);
    gShown.nodes = TreeNodeCount(tree);
}

int updateItem(void *shownNode, void *updateNode) {
    ScreenItem *shown = itemOf(shownNode);
    ScreenItem *patch = itemOf(updateNode);
    if (shown == nullptr || patch == nullptr) return 0;
    const UpdateKind *kind = updateKindOf(shown->itemType);
    bool fits = true;
    if (kind == nullptr) trace(401, 1, "unknown screen item");
    else if (kind->update && !(fits = kind->update(shownNode, updateNode)))
        trace(402, 1, "Update data of item %ld does not fit its type", static_cast<long>(shown->itemId));
    applyFlags(shown, patch);
    return kind != nullptr && fits;
}

int updateWholeScreen(oScreenDef *screen, oUpdateScreen *update) {
    void *cookie = update->screenCookie;
    if (cookie == nullptr && ObjIsA(screen->oPluginScreenDef, KX_TAG_TREE))
        cookie = TreeGetCookie(screen->oPluginScreenDef);
    TreeSetCookie(update->tree, cookie);
    trace(104, 0, "Process screen update of whole screen");
    /* The new tree's reference is taken first: the update may hand the shown tree again. */
    void *next = ObjIncRefCount(update->tree) ? update->tree : nullptr;
    destroyScreenWidgets(screen->oPluginScreenDef);
    ObjReleaseInternal(&screen->oPluginScreenDef);
    screen->oPluginScreenDef = next;
    buildScreen(screen->parentWidget, next);
    return 1;
}

int updateItems(oScreenDef *screen, oUpdateScreen *update) {
    if (update->screenCookie != nullptr) TreeSetCookie(screen->oPluginScreenDef, update->screenCookie);
    trace(105, 0, "Process screen updates of individual items");
    if (!ObjIsA(update->tree, KX_TAG_TREE) || !ObjIsA(screen->oPluginScreenDef, KX_TAG_TREE)) {
        trace(106, 0, "oUpdateScreen %p oScreenDef->oPluginScreenDef %p", update->tree,
              screen->oPluginScreenDef);
        return 0;
    }
    int result = 0;
    for (void *node = TreeFirstNode(update->tree); node != nullptr; TreeNextSibling(&node, node)) {
        ScreenItem *patch = itemOf(node);
        if (patch == nullptr) continue;
        trace(107, 0, "Replace screen item %ld", static_cast<long>(patch->itemId));
        void *shownNode = findShown(screen->oPluginScreenDef, patch->itemId);
        ScreenItem *shown = itemOf(shownNode);
        if (shown == nullptr) {
            trace(108, 0, "No such item to update");
            continue;
        }
        result = updateItem(shownNode, node);
        storeHandle(&shown->actions, patch->actions);
    }
    return result;
}

} // namespace xc::screen
