/* guiscreenbuttons.cpp - builders of push buttons and edit boxes, and their handlers. */
#include <Xm/PushB.h>
#include <Xm/Text.h>

#include "guiscreenitem.h"

namespace xc::screen {
namespace {

void onActivate(Widget, XtPointer node, XtPointer) { runActions(node, false); }

/* Keeps the item's text equal to what the widget shows, on every keystroke. */
void onEdit(Widget w, XtPointer node, XtPointer) {
    auto *data = dataOf<EditBoxData>(itemOf(node), GUI_TAG_EDITBOX, GUI_EDITBOX_SIGNATURE);
    if (data == nullptr) return;
    char *value = XmTextGetString(w);
    MemFreeInternal(&data->text);
    data->text = StrDuplicateIntoPool(value, pool());
    trace(601, 0, "new value is %s", value ? value : "(null)");
    XtFree(value);
}

} // namespace

void buildPushButton(Widget parent, void *node) {
    oGuiData *gui = createGuiData(node);
    ScreenItem *item = itemOf(node);
    auto *data = dataOf<PushButtonData>(item, GUI_TAG_PUSHBUTTON, GUI_PUSHBUTTON_SIGNATURE);
    if (gui == nullptr || data == nullptr) return;
    Widget where = whereToBuild(parent, node);

    XmStr label(data->label);
    Args args;
    args.add(XmNlabelString, reinterpret_cast<XtArgVal>(static_cast<XmString>(label)))
        .add(XmNhighlightThickness, 0).add(XmNshadowThickness, 2);
    Widget button = createHidden(where, "pushb", xmPushButtonWidgetClass, args);
    queueManage(button);
    if (ListCount(item->actions) > 0) {
        XtVaSetValues(button, XmNuserData, static_cast<XtPointer>(reinterpret_cast<void *>(
                                               static_cast<intptr_t>(glJobId))), nullptr);
        XtAddCallback(button, XmNactivateCallback, onActivate, node);
    }
    addWidget(gui, button);
}

void buildEditBox(Widget parent, void *node) {
    oGuiData *gui = createGuiData(node);
    auto *data = dataOf<EditBoxData>(itemOf(node), GUI_TAG_EDITBOX, GUI_EDITBOX_SIGNATURE);
    if (gui == nullptr || data == nullptr) return;
    Widget where = whereToBuild(parent, node);

    Args args;
    args.add(XtNmappedWhenManaged, False);
    if (data->rows > 0) args.add(XmNrows, data->rows);
    if (data->columns > 0) args.add(XmNcolumns, data->columns);
    if (data->maxLength > 0) args.add(XmNmaxLength, data->maxLength);
    if (data->text) args.add(XmNvalue, reinterpret_cast<XtArgVal>(data->text));
    args.add(XmNhighlightThickness, 0).add(XmNshadowThickness, 2).add(XmNmarginHeight, 2)
        .add(XmNmarginWidth, 3).addColour(XmNbackground, where, "white");

    Widget text;
    if (data->rows == 1) {
        text = XtCreateWidget("text", xmTextWidgetClass, where, args.list(), args.count());
    } else {
        args.add(XmNeditMode, XmMULTI_LINE_EDIT);
        Args windowArgs;
        text = createScrolled(where, "text", xmTextWidgetClass, windowArgs, args);
        addWidget(gui, XtParent(text));
    }
    queueManage(text);
    mapWidget(text);
    XtAddCallback(text, XmNvalueChangedCallback, onEdit, node);
    addWidget(gui, text);
}

} // namespace xc::screen
