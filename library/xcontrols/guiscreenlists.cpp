/* guiscreenlists.cpp - builders of list boxes and combo boxes, and the handlers that
** record the chosen entries and run their actions. */
#include <Xm/List.h>
#include <Xm/PushB.h>
#include <Xm/TextF.h>

#include "guicombo.h"
#include "guimakegcsandfonts.h"

#include "guiscreenitem.h"

namespace xc::screen {
namespace {

/* The text of an entry (ComboItem or ListItem child), or null when it gives no entry. */
const char *entryText(const ScreenItem *entry, uint32_t type) {
    if (entry == nullptr || entry->itemType != type) return nullptr;
    auto *data = untaggedDataOf<ComboItemData>(entry, "s;");
    return data ? data->text : nullptr;
}

ListItemData *listEntry(void *node) {
    ScreenItem *entry = itemOf(node);
    if (entryText(entry, ListItem) == nullptr) return nullptr;
    return untaggedDataOf<ListItemData>(entry, GUI_LISTITEM_SIGNATURE);
}

bool isSelected(const XmListCallbackStruct *cbs, int position) {
    switch (cbs->reason) {
    case XmCR_MULTIPLE_SELECT:
    case XmCR_EXTENDED_SELECT:
        for (int i = 0; i < cbs->selected_item_count; ++i)
            if (cbs->selected_item_positions[i] == position) return true;
        return false;
    case XmCR_BROWSE_SELECT:
        return cbs->item_position == position;
    default:
        return false;
    }
}

/* Records each entry's selected flag; newly selected entries run their actions. */
void onListSelection(Widget, XtPointer node, XtPointer callData) {
    auto *cbs = static_cast<XmListCallbackStruct *>(callData);
    int position = 0;
    for (void *child = TreeNodeFirstChild(node); child != nullptr; TreeNextSibling(&child, child)) {
        ListItemData *entry = listEntry(child);
        if (entry == nullptr) continue;
        ++position;
        if (!isSelected(cbs, position)) {
            entry->selected = 0;
            trace(801, 0, "item %ld not selected", static_cast<long>(position));
            continue;
        }
        trace(802, 0, "item %ld selected", static_cast<long>(position));
        if (entry->selected == 0) {
            entry->selected = 1;
            trace(803, 0, "do actions for %ld", static_cast<long>(position));
            runActions(child, false);
            if (itemOf(node) == nullptr) return; /* an action closed the screen */
        }
    }
}

ComboBoxData *comboData(void *node) {
    return dataOf<ComboBoxData>(itemOf(node), GUI_TAG_COMBOBOX, GUI_COMBOBOX_SIGNATURE);
}

/* Every change of the combo's text field is stored as the typed text and runs the combo
** box's own actions. */
void onComboText(Widget w, XtPointer node, XtPointer) {
    ComboBoxData *data = comboData(node);
    if (data == nullptr) return;
    char *text = XmTextFieldGetString(w);
    MemFreeInternal(&data->typedText);
    data->typedText = StrDuplicateIntoPool(text, pool());
    XtFree(text);
    runActions(node, false);
}

/* The entry whose text the combo now shows runs its actions and becomes the selection. */
int onComboSelection(GuiCombo *combo, void *node) {
    if (comboData(node) == nullptr) return 0;
    char *chosen = GuiGetComboSelection(combo);
    int position = 0;
    for (void *child = TreeNodeFirstChild(node); child != nullptr; TreeNextSibling(&child, child)) {
        const char *text = entryText(itemOf(child), ComboItem);
        if (text == nullptr) continue;
        ++position;
        if (StrCompare(text, chosen) != 0) continue;
        runActions(child, false);
        if (ComboBoxData *data = comboData(node)) { /* gone if an action closed the screen */
            data->selected = position;
            trace(804, 0, "Combo item selected now %ld", static_cast<long>(position));
        }
        break;
    }
    MemFreeInternal(&chosen);
    return 1;
}

Widget createDropButton(Widget form) {
    Args args;
    args.add(XmNtopAttachment, XmATTACH_FORM).add(XmNbottomAttachment, XmATTACH_FORM)
        .add(XmNrightAttachment, XmATTACH_FORM).add(XmNleftAttachment, XmATTACH_NONE)
        .add(XmNhighlightThickness, 0).add(XmNshadowThickness, 2);
    if (comboPixmap != 0)
        args.add(XmNlabelType, XmPIXMAP).add(XmNlabelPixmap, comboPixmap)
            .add(XmNlabelInsensitivePixmap, comboPixmap);
    Widget button = XmCreatePushButton(form, const_cast<char *>("button"), args.list(), args.count());
    queueManage(button);
    return button;
}

Widget createComboText(Widget form, Widget button, const ComboBoxData *data) {
    Args args;
    args.add(XmNtopAttachment, XmATTACH_FORM).add(XmNbottomAttachment, XmATTACH_NONE)
        .add(XmNleftAttachment, XmATTACH_FORM).add(XmNrightAttachment, XmATTACH_WIDGET)
        .add(XmNrightWidget, reinterpret_cast<XtArgVal>(button));
    if (data->userEntry == 0) args.add(XmNeditable, False);
    if (data->columns > 0) args.add(XmNcolumns, data->columns);
    args.add(XmNhighlightThickness, 0).add(XmNshadowThickness, 0).add(XmNmarginHeight, 2)
        .add(XmNmarginWidth, 3).addColour(XmNbackground, form, "white");
    Widget text = XmCreateTextField(form, const_cast<char *>("text"), args.list(), args.count());
    queueManage(text);
    return text;
}

/* The drop-down: a list in the item's parent form, hanging under the frame, never
** mapped by Xt (the combo control maps and unmaps it). */
Widget createDropList(Widget where, Widget frame) {
    Args args;
    args.add(XmNleftAttachment, XmATTACH_OPPOSITE_WIDGET).add(XmNleftWidget, reinterpret_cast<XtArgVal>(frame))
        .add(XmNrightAttachment, XmATTACH_OPPOSITE_WIDGET).add(XmNrightWidget, reinterpret_cast<XtArgVal>(frame))
        .add(XmNtopAttachment, XmATTACH_WIDGET).add(XmNtopWidget, reinterpret_cast<XtArgVal>(frame))
        .add(XmNvisibleItemCount, 4).add(XtNmappedWhenManaged, False).add(XmNhighlightThickness, 0);
    Args windowArgs = args;
    args.addColour(XmNbackground, where, "white");
    Widget list = createScrolled(where, "list", xmListWidgetClass, windowArgs, args);
    queueManage(list);
    return list;
}

/* Appends the texts to the list in one call: added one by one, each entry makes Motif
** measure and lay out the list again. */
void addEntries(Widget list, const PoolVector<const char *> &texts) {
    PoolVector<XmString> items;
    items.reserve(texts.size());
    for (const char *text : texts) items.push_back(newXmString(text));
    if (!items.empty()) XmListAddItems(list, items.data(), static_cast<int>(items.size()), 0);
    for (XmString item : items) XmStringFree(item);
}

/* Fills the list with the texts of the ComboItem children; every child gets its GUI data.
** Returns the number of entries. */
int32_t addComboEntries(Widget list, void *node) {
    PoolVector<const char *> texts;
    for (void *child = TreeNodeFirstChild(node); child != nullptr; TreeNextSibling(&child, child)) {
        createGuiData(child);
        if (const char *text = entryText(itemOf(child), ComboItem)) texts.push_back(text);
    }
    addEntries(list, texts);
    return static_cast<int32_t>(texts.size());
}

} // namespace

void buildComboBox(Widget parent, void *node) {
    oGuiData *gui = createGuiData(node);
    ComboBoxData *data = comboData(node);
    if (gui == nullptr || data == nullptr) return;
    Widget where = whereToBuild(parent, node);

    Widget form = nullptr;
    Widget frame = createInsetFrame(where, &form);
    Widget button = createDropButton(form);
    Widget text = createComboText(form, button, data);
    Widget list = createDropList(where, frame);
    const int32_t count = addComboEntries(list, node);

    GuiWidgetRecord *rec = newRecord(nullptr, WIDGET_COMBO);
    GuiCombo *combo = GuiManageCombo(text, button, list);
    if (rec) rec->combo = combo;
    GuiAddComboCallback(combo, onComboSelection, node);
    XtAddCallback(text, XmNvalueChangedCallback, onComboText, node);

    if (data->selected >= 1 && data->selected <= count)
        GuiChangeComboSelection(combo, data->selected, 1);
    else if (data->userEntry != 1)
        GuiChangeComboSelection(combo, 1, 1);
    else {
        XmListDeselectAllItems(list); /* the combo control chose entry 1: nothing is chosen */
        XmTextFieldSetString(text, const_cast<char *>(""));
    }

    addWidget(gui, frame);
    addWidget(gui, form);
    addWidget(gui, XtParent(list));
    appendControl(gui, &rec);
}

void buildListBox(Widget parent, void *node) {
    oGuiData *gui = createGuiData(node);
    ScreenItem *item = itemOf(node);
    if (gui == nullptr) return;
    auto *list = objectAs<ListBoxData>(item->itemData, 0, GUI_LISTBOX_SIGNATURE);
    if (!ObjIsA(list, GUI_TAG_LISTBOX) && !ObjIsA(list, GUI_TAG_EXTLISTBOX)) return;
    auto *extended = item->itemType != ListBox
                         ? objectAs<ExtendedListBoxData>(list, 0, GUI_EXTLISTBOX_SIGNATURE)
                         : nullptr;
    if (item->itemType != ListBox && extended == nullptr) return;
    Widget where = whereToBuild(parent, node);

    /* XmListSelectPos keeps one entry selected under any policy but multiple select, so
    ** a list of several choices gets its stored selection under that policy first. */
    Args args;
    if (list->multiple) args.add(XmNselectionPolicy, XmMULTIPLE_SELECT);
    if (extended)
        args.add(XmNlistSizePolicy, XmCONSTANT).add(XmNunitType, Xm100TH_FONT_UNITS)
            .add(XtNwidth, static_cast<Dimension>(extended->width * 132))
            .add(XmNvisibleItemCount, extended->visible);
    else
        args.add(XmNvisibleItemCount, 4);
    Args windowArgs = args;
    windowArgs.add(XtNmappedWhenManaged, False);
    args.addColour(XmNbackground, where, "white");
    Widget w = createScrolled(where, "list", xmListWidgetClass, windowArgs, args);
    queueManage(w);

    PoolVector<const char *> texts;
    PoolVector<int> selected; /* by position: entries of one text are told apart */
    for (void *child = TreeNodeFirstChild(node); child != nullptr; TreeNextSibling(&child, child)) {
        createGuiData(child);
        ListItemData *entry = listEntry(child);
        if (entry == nullptr) continue;
        texts.push_back(entry->text);
        if (entry->selected) selected.push_back(static_cast<int>(texts.size()));
    }
    addEntries(w, texts);
    for (int position : selected) XmListSelectPos(w, position, False);
    if (list->multiple) XtVaSetValues(w, XmNselectionPolicy, XmEXTENDED_SELECT, nullptr);
    XtAddCallback(w, list->multiple ? XmNextendedSelectionCallback : XmNbrowseSelectionCallback,
                  onListSelection, node);
    addWidget(gui, XtParent(w));
    addWidget(gui, w);
}

} // namespace xc::screen
