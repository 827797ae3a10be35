/* guiscreenupdate.cpp - per-item updates of a shown plugin screen: the dispatch by item
** type and the visibility and sensitivity that every update applies. */
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

} // namespace xc::screen
