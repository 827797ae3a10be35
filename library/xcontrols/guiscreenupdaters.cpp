/* guiscreenupdaters.cpp - the per-item updaters: each changes the widgets of one shown
** item in place from an update item of the same type and takes over its item data. */
#include <Xm/List.h>
#include <Xm/Text.h>
#include <Xm/ToggleB.h>

#include "guicombo.h"
#include "guinuminput.h"
#include "guiscreenupdaters.h"

namespace xc::screen {
namespace {

/* The shown item's record keeps the update's data from now on. */
void takeData(void *shownNode, void *updateNode) {
    storeHandle(&itemOf(shownNode)->itemData, itemOf(updateNode)->itemData);
}

Widget valueWidgetOf(void *node) {
    GuiWidgetRecord *rec = valueRecord(itemOf(node));
    return rec ? rec->widget : nullptr;
}

void setLabel(Widget w, const char *text) {
    if (w == nullptr) return;
    XmStr label(text ? text : "");
    XtVaSetValues(w, XmNlabelString, static_cast<XmString>(label), nullptr);
}

void setToggle(Widget w, const char *text, int32_t set) {
    if (w == nullptr) return;
    XmStr label(text ? text : "");
    XtVaSetValues(w, XmNlabelString, static_cast<XmString>(label), XmNset, set != 0, nullptr);
}

/* The updater of items whose data is one text shown as the value widget's label. */
template <typename T>
bool relabel(void *shownNode, void *updateNode, uint32_t tag, const char *layout, char *T::*text) {
    T *data = dataOf<T>(itemOf(updateNode), tag, layout);
    if (data == nullptr) return false;
    setLabel(valueWidgetOf(shownNode), data->*text);
    takeData(shownNode, updateNode);
    return true;
}

/* The text of an entry record, or null when the child gives no entry. */
const char *entryText(const ScreenItem *child, uint32_t type) {
    if (child == nullptr || child->itemType != type) return nullptr;
    auto *data = untaggedDataOf<ComboItemData>(child, "s;");
    return data ? data->text : nullptr;
}

bool isComboEntry(const ScreenItem *child) { return entryText(child, ComboItem) != nullptr; }
ListItemData *listEntry(const ScreenItem *child) {
    if (entryText(child, ListItem) == nullptr) return nullptr;
    return untaggedDataOf<ListItemData>(child, GUI_LISTITEM_SIGNATURE);
}
bool isListEntry(const ScreenItem *child) { return listEntry(child) != nullptr; }

} // namespace

bool updateTitle(void *shownNode, void *updateNode) {
    return relabel(shownNode, updateNode, GUI_TAG_GROUPBOX, GUI_GROUPBOX_SIGNATURE, &GroupBoxData::title);
}

bool updateButton(void *shownNode, void *updateNode) {
    return relabel(shownNode, updateNode, GUI_TAG_PUSHBUTTON, GUI_PUSHBUTTON_SIGNATURE,
                   &PushButtonData::label);
}

/* A label keeps its widget string and its item data when the text is the same. */
bool updateLabel(void *shownNode, void *updateNode) {
    auto *data = dataOf<LabelData>(itemOf(updateNode), GUI_TAG_LABEL, GUI_LABEL_SIGNATURE);
    if (data == nullptr) return false;
    Widget label = valueWidgetOf(shownNode);
    if (label == nullptr) return true;
    XmString shownString = nullptr;
    XtVaGetValues(label, XmNlabelString, &shownString, nullptr);
    XmText shown(shownString);
    XmStringFree(shownString);
    const char *text = data->text ? data->text : "";
    if (StrCompare(shown.get() ? shown.get() : "", text) == 0) return true;
    setLabel(label, text);
    takeData(shownNode, updateNode);
    return true;
}

bool updateToggle(void *shownNode, void *updateNode) {
    auto *data = dataOf<SelectionItemData>(itemOf(updateNode), GUI_TAG_SELECTION, GUI_SELECTION_SIGNATURE);
    if (data == nullptr) return false;
    setToggle(valueWidgetOf(shownNode), data->label, data->set);
    takeData(shownNode, updateNode);
    return true;
}

/* The first buttons, pair by pair: buttons are never added or removed, and the shown
** buttons keep their records (only their set flags follow). The manager's own data is
** not read. */
bool updateRadios(void *shownNode, void *updateNode) {
    void *shown = TreeNodeFirstChild(shownNode);
    void *patch = TreeNodeFirstChild(updateNode);
    for (; shown != nullptr && patch != nullptr; TreeNextSibling(&shown, shown), TreeNextSibling(&patch, patch)) {
        ScreenItem *patchItem = itemOf(patch);
        if (patchItem == nullptr || patchItem->itemType != RadioButton) continue;
        auto *from = dataOf<RadioButtonData>(patchItem, GUI_TAG_RADIOBUTTON, GUI_RADIOBUTTON_SIGNATURE);
        auto *to = dataOf<RadioButtonData>(itemOf(shown), GUI_TAG_RADIOBUTTON, GUI_RADIOBUTTON_SIGNATURE);
        if (from == nullptr) continue;
        setToggle(valueWidgetOf(shown), from->label, from->set);
        if (to != nullptr) to->set = from->set;
    }
    return true;
}

bool updateEditText(void *shownNode, void *updateNode) {
    auto *data = dataOf<EditBoxData>(itemOf(updateNode), GUI_TAG_EDITBOX, GUI_EDITBOX_SIGNATURE);
    if (data == nullptr) return false;
    if (Widget text = valueWidgetOf(shownNode))
        XmTextSetString(text, const_cast<char *>(data->text ? data->text : ""));
    takeData(shownNode, updateNode);
    return true;
}

bool updateNumber(void *shownNode, void *updateNode) {
    auto *data = dataOf<NumInputData>(itemOf(updateNode), GUI_TAG_NUMINPUT, GUI_NUMINPUT_SIGNATURE);
    if (data == nullptr) return false;
    if (GuiWidgetRecord *rec = valueRecord(itemOf(shownNode)))
        if (rec->numInput != nullptr) GuiNumInputSet(static_cast<GuiNumInput *>(rec->numInput), data->value);
    takeData(shownNode, updateNode);
    return true;
}

/* New entries without notification, the user-entry state, then the selection with
** notification: the combo box's handlers record it and run the chosen entry's actions. */
bool updateCombo(void *shownNode, void *updateNode) {
    auto *data = dataOf<ComboBoxData>(itemOf(updateNode), GUI_TAG_COMBOBOX, GUI_COMBOBOX_SIGNATURE);
    if (data == nullptr) return false;
    replaceEntries(shownNode, updateNode, isComboEntry);
    GuiWidgetRecord *rec = valueRecord(itemOf(shownNode));
    auto *combo = rec ? static_cast<GuiCombo *>(rec->combo) : nullptr;
    if (combo != nullptr) {
        PoolVector<char *> texts;
        for (void *e = TreeNodeFirstChild(shownNode); e != nullptr; TreeNextSibling(&e, e))
            texts.push_back(const_cast<char *>(entryText(itemOf(e), ComboItem)));
        GuiReplaceComboList(combo, static_cast<int32_t>(texts.size()), texts.data(), 0);
        if (data->userEntry) GuiEnableComboUserEntry(combo);
        else GuiDisableComboUserEntry(combo);
        GuiChangeComboSelection(combo, data->selected, 1);
    }
    takeData(shownNode, updateNode);
    return true;
}

/* New entries and their selected flags, without notification: no list action runs. */
bool updateList(void *shownNode, void *updateNode) {
    if (dataOf<ListBoxData>(itemOf(updateNode), GUI_TAG_LISTBOX, GUI_LISTBOX_SIGNATURE) == nullptr)
        return false;
    replaceEntries(shownNode, updateNode, isListEntry);
    if (Widget list = valueWidgetOf(shownNode)) {
        XmListDeleteAllItems(list);
        /* Only a list of multiple select keeps several entries selected: a list of
        ** several choices shows extended select, so it selects under multiple select. */
        unsigned char policy = XmBROWSE_SELECT;
        XtVaGetValues(list, XmNselectionPolicy, &policy, nullptr);
        if (policy == XmEXTENDED_SELECT) XtVaSetValues(list, XmNselectionPolicy, XmMULTIPLE_SELECT, nullptr);
        int position = 0;
        for (void *e = TreeNodeFirstChild(shownNode); e != nullptr; TreeNextSibling(&e, e)) {
            ListItemData *entry = listEntry(itemOf(e));
            XmStr text(entry->text);
            XmListAddItemUnselected(list, text, 0);
            ++position;
            if (entry->selected) XmListSelectPos(list, position, False);
        }
        if (policy == XmEXTENDED_SELECT) XtVaSetValues(list, XmNselectionPolicy, policy, nullptr);
    }
    takeData(shownNode, updateNode);
    return true;
}

} // namespace xc::screen
