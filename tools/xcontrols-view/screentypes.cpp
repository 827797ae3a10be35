/* screentypes.cpp - the table of item types, their data records and the named codes. */
#include "screentypes.h"

#include <strings.h>

#include "guiscreendef.h"
#include "kx.h"

namespace screenfile {
namespace {

#define FIELD(record, field, kind, answer) \
    { #field, FieldKind::kind, offsetof(record, field), answer }

const FieldDef kGroupBox[] = {FIELD(GroupBoxData, title, Text, false)};
const FieldDef kTabManager[] = {FIELD(TabManagerData, unused, Int, false)};
const FieldDef kTabPage[] = {FIELD(TabPageData, title, Text, false)};
const FieldDef kComboBox[] = {
    FIELD(ComboBoxData, selected, Int, true), FIELD(ComboBoxData, typedText, Text, true),
    FIELD(ComboBoxData, userEntry, Flag, false), FIELD(ComboBoxData, columns, Int, false)};
const FieldDef kComboItem[] = {FIELD(ComboItemData, text, Text, false)};
const FieldDef kListBox[] = {FIELD(ListBoxData, multiple, Flag, false)};
const FieldDef kExtendedListBox[] = {FIELD(ExtendedListBoxData, multiple, Flag, false),
                                     FIELD(ExtendedListBoxData, width, Int, false),
                                     FIELD(ExtendedListBoxData, visible, Int, false)};
const FieldDef kListItem[] = {FIELD(ListItemData, text, Text, false),
                              FIELD(ListItemData, selected, Flag, true)};
const FieldDef kSelection[] = {FIELD(SelectionItemData, label, Text, false),
                               FIELD(SelectionItemData, set, Flag, true)};
const FieldDef kRadioManager[] = {FIELD(RadioManagerData, unused, Int, false)};
const FieldDef kRadioButton[] = {FIELD(RadioButtonData, label, Text, false),
                                 FIELD(RadioButtonData, set, Flag, true)};
const FieldDef kPushButton[] = {FIELD(PushButtonData, label, Text, false)};
const FieldDef kEditBox[] = {
    FIELD(EditBoxData, maxLength, Int, false), FIELD(EditBoxData, columns, Int, false),
    FIELD(EditBoxData, rows, Int, false), FIELD(EditBoxData, text, Text, true)};
const FieldDef kNumInput[] = {
    FIELD(NumInputData, value, Int, true), FIELD(NumInputData, maximum, Int, false),
    FIELD(NumInputData, minimum, Int, false), FIELD(NumInputData, columns, Int, false)};
const FieldDef kLabel[] = {FIELD(LabelData, text, Text, false)};
const FieldDef kRowCol[] = {FIELD(RowColManagerData, columns, Int, false)};
const FieldDef kDateInput[] = {FIELD(DateInputData, date, Date, true)};
const FieldDef kTimeInput[] = {FIELD(TimeInputData, time, Time, true)};
const FieldDef kChangePassword[] = {FIELD(ChangePasswordData, newPassword, ClearPassword, true),
                                    FIELD(ChangePasswordData, confirmation, ClearPassword, true)};
const FieldDef kGetPassword[] = {FIELD(GetPasswordBoxData, columns, Int, false),
                                 FIELD(GetPasswordBoxData, keyArg, Word, false),
                                 FIELD(GetPasswordBoxData, encrypted, Text, true)};

#undef FIELD

#define TYPE(name, tag, record, sig, fields) \
    { #name, name, tag, sig, sizeof(record), fields, sizeof(fields) / sizeof(fields[0]) }

const TypeDef kTypes[] = {
    TYPE(GroupBox, GUI_TAG_GROUPBOX, GroupBoxData, GUI_GROUPBOX_SIGNATURE, kGroupBox),
    TYPE(TabManager, GUI_TAG_TABMANAGER, TabManagerData, GUI_TABMANAGER_SIGNATURE,
         kTabManager),
    TYPE(TabPage, GUI_TAG_TABPAGE, TabPageData, GUI_TABPAGE_SIGNATURE, kTabPage),
    TYPE(ComboBox, GUI_TAG_COMBOBOX, ComboBoxData, GUI_COMBOBOX_SIGNATURE, kComboBox),
    TYPE(ComboItem, GUI_TAG_COMBOITEM, ComboItemData, GUI_COMBOITEM_SIGNATURE, kComboItem),
    TYPE(ListBox, GUI_TAG_LISTBOX, ListBoxData, GUI_LISTBOX_SIGNATURE, kListBox),
    TYPE(ListItem, GUI_TAG_LISTITEM, ListItemData, GUI_LISTITEM_SIGNATURE, kListItem),
    TYPE(selectionItem, GUI_TAG_SELECTION, SelectionItemData, GUI_SELECTION_SIGNATURE,
         kSelection),
    TYPE(RadioManager, GUI_TAG_RADIOMANAGER, RadioManagerData, GUI_RADIOMANAGER_SIGNATURE,
         kRadioManager),
    TYPE(RadioButton, GUI_TAG_RADIOBUTTON, RadioButtonData, GUI_RADIOBUTTON_SIGNATURE,
         kRadioButton),
    TYPE(PushButton, GUI_TAG_PUSHBUTTON, PushButtonData, GUI_PUSHBUTTON_SIGNATURE,
         kPushButton),
    TYPE(EditBox, GUI_TAG_EDITBOX, EditBoxData, GUI_EDITBOX_SIGNATURE, kEditBox),
    TYPE(NumInput, GUI_TAG_NUMINPUT, NumInputData, GUI_NUMINPUT_SIGNATURE, kNumInput),
    TYPE(Label, GUI_TAG_LABEL, LabelData, GUI_LABEL_SIGNATURE, kLabel),
    TYPE(RowColManager, GUI_TAG_ROWCOL, RowColManagerData, GUI_ROWCOL_SIGNATURE, kRowCol),
    TYPE(DateInput, GUI_TAG_DATEINPUT, DateInputData, GUI_DATEINPUT_SIGNATURE, kDateInput),
    TYPE(TimeInput, GUI_TAG_TIMEINPUT, TimeInputData, GUI_TIMEINPUT_SIGNATURE, kTimeInput),
    TYPE(ChangePassword, GUI_TAG_CHANGEPASSWORD, ChangePasswordData,
         GUI_CHANGEPASSWORD_SIGNATURE, kChangePassword),
    TYPE(GetPasswordBox, GUI_TAG_GETPASSWORD, GetPasswordBoxData, GUI_GETPASSWORD_SIGNATURE,
         kGetPassword),
    TYPE(StackedTabManager, GUI_TAG_TABMANAGER, TabManagerData, GUI_TABMANAGER_SIGNATURE,
         kTabManager),
    TYPE(ExtendedListBox, GUI_TAG_EXTLISTBOX, ExtendedListBoxData, GUI_EXTLISTBOX_SIGNATURE,
         kExtendedListBox),
};

#undef TYPE

} // namespace

const NamedCode kActionKinds[7] = {
    {"SHOW", ACTION_SHOW}, {"HIDE", ACTION_HIDE}, {"ALLOW_INPUT", ACTION_ALLOW_INPUT},
    {"DISALLOW_INPUT", ACTION_DISALLOW_INPUT}, {"SET", ACTION_SET}, {"CLEAR", ACTION_CLEAR},
    {"CLOSE", ACTION_CLOSE}};
const NamedCode kAttachKinds[3] = {
    {"centre", ATTACH_CENTRE}, {"position", ATTACH_POSITION}, {"item", ATTACH_ITEM}};
const NamedCode kAttachSides[4] = {
    {"left", ATTACH_LEFT}, {"right", ATTACH_RIGHT}, {"top", ATTACH_TOP},
    {"bottom", ATTACH_BOTTOM}};

const TypeDef *typeByName(const std::string &name) {
    for (const TypeDef &type : kTypes)
        if (name == type.name) return &type;
    return nullptr;
}

const TypeDef *typeByNameNoCase(const std::string &name) {
    for (const TypeDef &type : kTypes)
        if (strcasecmp(name.c_str(), type.name) == 0) return &type;
    return nullptr;
}

const TypeDef *typeByCode(uint32_t code) {
    for (const TypeDef &type : kTypes)
        if (code == type.code) return &type;
    return nullptr;
}

const FieldDef *fieldByName(const TypeDef &type, const std::string &name) {
    for (size_t i = 0; i < type.fieldCount; ++i)
        if (name == type.fields[i].name) return &type.fields[i];
    return nullptr;
}

} // namespace screenfile
