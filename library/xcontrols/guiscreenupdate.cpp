/* guiscreenupdate.cpp - updates of a shown plugin screen: the whole screen replaced, or
** single items patched through the dispatch by item type, with the visibility and
** sensitivity that every per-item update applies. */
#include "guiscreenitem.h"

namespace xc::screen {
namespace {

/* An updater patches the shown item from the update item; null: nothing to patch. */
using Updater = void (*)(void *shownNode, void *updateNode);

struct UpdateKind {
    uint32_t type;
    Updater update;
};

/* Item types that the per-item update knows. Types without an entry (RowColManager,
** ExtendedListBox, unassigned codes) are unknown to it. */
constexpr UpdateKind kUpdateKinds[] = {
    {GroupBox, nullptr},      {TabManager, nullptr},    {StackedTabManager, nullptr},
    {TabPage, nullptr},       {ComboItem, nullptr},     {ListItem, nullptr},
    {RadioButton, nullptr},   {8, nullptr},             {DateInput, nullptr},
    {TimeInput, nullptr},     {ChangePassword, nullptr}, {GetPasswordBox, nullptr},
    {ComboBox, nullptr},      {ListBox, nullptr},       {selectionItem, nullptr},
    {RadioManager, nullptr},  {PushButton, nullptr},    {EditBox, nullptr},
    {NumInput, nullptr},      {Label, nullptr},
};

const UpdateKind *updateKindOf(uint32_t type) {
    for (const UpdateKind &k : kUpdateKinds)
        if (k.type == type) return &k;
    return nullptr;
}

/* The update item's flags become the shown item's, on the record and the widget. */
void applyFlags(ScreenItem *shown, const ScreenItem *patch) {
    if (outerWidget(shown) == nullptr) return;
    shown->hidden = patch->hidden == 1 ? 1 : 0;
    shown->disabled = patch->disabled == 1 ? 1 : 0;
    applyVisibility(shown);
}

} // namespace

int updateItem(void *shownNode, void *updateNode) {
    ScreenItem *shown = itemOf(shownNode);
    ScreenItem *patch = itemOf(updateNode);
    if (shown == nullptr || patch == nullptr) return 0;
    const UpdateKind *kind = updateKindOf(shown->itemType);
    if (kind == nullptr) trace(401, 1, "unknown screen item");
    else if (kind->update) kind->update(shownNode, updateNode);
    applyFlags(shown, patch);
    return kind != nullptr;
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
        void *shownNode = findItemNode(screen->oPluginScreenDef, patch->itemId);
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
