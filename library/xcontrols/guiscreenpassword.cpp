/* guiscreenpassword.cpp - builders of the password items and the handlers that keep what
** the user types in the item data: in clear for a change of password, encrypted for a
** password box. */
#include <Xm/Form.h>
#include <Xm/Label.h>
#include <Xm/Text.h>
#include <Xm/TextF.h>

#include "guipwdentry.h"

#include "guiscreenitem.h"

namespace xc::screen {
namespace {

ChangePasswordData *changePasswordOf(void *node) {
    return dataOf<ChangePasswordData>(itemOf(node), GUI_TAG_CHANGEPASSWORD,
                                      GUI_CHANGEPASSWORD_SIGNATURE);
}

GetPasswordBoxData *passwordBoxOf(void *node) {
    return dataOf<GetPasswordBoxData>(itemOf(node), GUI_TAG_GETPASSWORD,
                                      GUI_GETPASSWORD_SIGNATURE);
}

/* Puts the field's password, in clear, in a field of the change-password item's data;
** the value it replaces is wiped. The copy that GuiGetPassword made is the one stored, so
** that no other copy of the clear text is left behind. */
void keepClearText(void *node, Widget field, char *ChangePasswordData::*slot, int32_t traceNo,
                   const char *invalid) {
    ChangePasswordData *data = changePasswordOf(node);
    if (data == nullptr) {
        trace(traceNo, 0, "%s", invalid);
        return;
    }
    char *password = nullptr;
    GuiGetPassword(&password, field);
    MemFreeSecret(&(data->*slot));
    data->*slot = password;
}

void onNewPassword(Widget field, XtPointer node, XtPointer) {
    keepClearText(node, field, &ChangePasswordData::newPassword, 1101,
                  "Password changed, invalid details object");
}

void onConfirmation(Widget field, XtPointer node, XtPointer) {
    keepClearText(node, field, &ChangePasswordData::confirmation, 1102,
                  "Confirm Password changed, invalid details object");
}

/* The box keeps only the encryption of what was typed, and nothing at all when its key
** argument is 0. */
void onPasswordBox(Widget field, XtPointer node, XtPointer) {
    GetPasswordBoxData *data = passwordBoxOf(node);
    if (data == nullptr) return;
    char *password = nullptr;
    GuiGetPassword(&password, field);
    MemFreeInternal(&data->encrypted);
    if (data->keyArg != 0) SecurityEncryptPassword(&data->encrypted, password, data->keyArg);
    MemFreeSecret(&password);
    trace(1103, 0, "got new password value");
}

/* A label whose widget name is its text: Motif shows the name of a label given none. */
Widget createNamedLabel(Widget form, const char *text, Args &args) {
    Widget label = XmCreateLabel(form, const_cast<char *>(text), args.list(), args.count());
    queueManage(label);
    return label;
}

/* A masked field of the change-password form, starting at the column after `labels`. */
Widget createMaskedField(Widget form, Widget labels, Args &args) {
    args.add(XmNshadowThickness, 2).add(XmNcolumns, 20).add(XmNmarginHeight, 2)
        .add(XmNmarginWidth, 3).add(XmNleftAttachment, XmATTACH_WIDGET)
        .add(XmNleftWidget, reinterpret_cast<XtArgVal>(labels));
    Widget field = XmCreateTextField(form, const_cast<char *>("input"), args.list(), args.count());
    queueManage(field);
    GuiCreatePasswordEntry(field);
    return field;
}

/* Below `above`, ten pixels apart. */
void placeBelow(Args &args, Widget above) {
    args.add(XmNtopAttachment, XmATTACH_WIDGET).add(XmNtopWidget, reinterpret_cast<XtArgVal>(above))
        .add(XmNtopOffset, 10);
}

} // namespace

void buildChangePassword(Widget parent, void *node) {
    oGuiData *gui = createGuiData(node);
    if (gui == nullptr || changePasswordOf(node) == nullptr) return;
    Widget where = whereToBuild(parent, node);

    Args formArgs;
    Widget form = createHidden(where, "form", xmFormWidgetClass, formArgs);
    queueManage(form);

    Args firstArgs;
    firstArgs.add(XmNtopAttachment, XmATTACH_FORM).add(XmNleftAttachment, XmATTACH_FORM)
        .add(XmNbottomAttachment, XmATTACH_NONE).add(XmNrightAttachment, XmATTACH_NONE);
    Widget first = createNamedLabel(form, LocaleGetStaticString("New Password", 770), firstArgs);
    Args secondArgs;
    placeBelow(secondArgs, first);
    secondArgs.add(XmNleftAttachment, XmATTACH_FORM);
    Widget second = createNamedLabel(form, LocaleGetStaticString("Confirm Password", 771),
                                     secondArgs);

    /* Both fields start after the longer label's column: the second label's. */
    Args newArgs;
    newArgs.add(XmNtopAttachment, XmATTACH_FORM).add(XmNbottomAttachment, XmATTACH_NONE)
        .add(XmNrightAttachment, XmATTACH_NONE);
    Widget newField = createMaskedField(form, second, newArgs);
    Args confirmArgs;
    placeBelow(confirmArgs, first);
    Widget confirmation = createMaskedField(form, second, confirmArgs);

    XtAddCallback(newField, XmNvalueChangedCallback, onNewPassword, node);
    XtAddCallback(confirmation, XmNvalueChangedCallback, onConfirmation, node);
    addWidget(gui, form);
    addWidget(gui, newField);
    addWidget(gui, confirmation);
}

void buildGetPasswordBox(Widget parent, void *node) {
    oGuiData *gui = createGuiData(node);
    GetPasswordBoxData *data = passwordBoxOf(node);
    if (gui == nullptr || data == nullptr) return;
    Widget where = whereToBuild(parent, node);

    Args args;
    args.add(XmNrows, 1).add(XmNcolumns, data->columns).add(XmNhighlightThickness, 0)
        .add(XmNshadowThickness, 2).add(XmNmarginHeight, 2).add(XmNmarginWidth, 3)
        .addColour(XmNbackground, where, "white");
    Widget text = createHidden(where, "text", xmTextWidgetClass, args);
    addWidget(gui, text);
    queueManage(text);
    GuiCreatePasswordEntry(text);
    XtAddCallback(text, XmNvalueChangedCallback, onPasswordBox, node);
}

} // namespace xc::screen
