/* guiscreenbasic.cpp - builders of the simplest plugin screen items: group boxes, labels
** and row-column managers. */
#include <Xm/Form.h>
#include <Xm/Frame.h>
#include <Xm/Label.h>

#include "guiscreenitem.h"

namespace xc::screen {
void buildGroupBox(Widget parent, void *node) {
    oGuiData *gui = createGuiData(node);
    auto *data = dataOf<GroupBoxData>(itemOf(node), GUI_TAG_GROUPBOX, GUI_GROUPBOX_SIGNATURE);
    if (gui == nullptr || data == nullptr) return;
    Widget where = whereToBuild(parent, node);

    Args frameArgs;
    frameArgs.add(XmNmarginWidth, 5).add(XmNmarginHeight, 5);
    Widget frame = createHidden(where, "frame", xmFrameWidgetClass, frameArgs);
    queueManage(frame);

    XmStr title(data->title);
    Arg labelArgs[2];
    XtSetArg(labelArgs[0], XmNchildType, XmFRAME_TITLE_CHILD);
    XtSetArg(labelArgs[1], XmNlabelString, static_cast<XmString>(title));
    Widget label = XmCreateLabel(frame, const_cast<char *>("label"), labelArgs, 2);
    queueManage(label);

    Widget form = XmCreateForm(frame, const_cast<char *>("form"), nullptr, 0);
    gui->childParent = form;
    queueManage(form);

    addWidget(gui, frame);
    addWidget(gui, form);
    addWidget(gui, label);
}

void buildLabel(Widget parent, void *node) {
    oGuiData *gui = createGuiData(node);
    auto *data = dataOf<LabelData>(itemOf(node), GUI_TAG_LABEL, GUI_LABEL_SIGNATURE);
    if (gui == nullptr || data == nullptr) return;
    Widget where = whereToBuild(parent, node, 301, "Can't find parent use toplevel");
    trace(302, 0, "parent of label %p", static_cast<void *>(where));
    trace(303, 0, "Label is %s", data->text ? data->text : "(null)");

    XmStr text(data->text);
    Args args;
    args.add(XmNalignment, XmALIGNMENT_BEGINNING);
    if (text) args.add(XmNlabelString, reinterpret_cast<XtArgVal>(static_cast<XmString>(text)));
    Widget label = createHidden(where, "label", xmLabelWidgetClass, args);
    queueManage(label);
    addWidget(gui, label);
}

void buildRowColManager(Widget parent, void *node) {
    if (dataOf<RowColManagerData>(itemOf(node), GUI_TAG_ROWCOL, GUI_ROWCOL_SIGNATURE) == nullptr)
        return;
    oGuiData *gui = createGuiData(node);
    if (gui == nullptr) return;
    Widget where = whereToBuild(parent, node, 304, "Can't get parent of RowCol use toplevel");
    trace(305, 0, "Parent of rowcol is %p", static_cast<void *>(where));

    Args args;
    args.add(XmNmarginHeight, 20).add(XmNmarginWidth, 20);
    Widget form = createHidden(where, "rowcol", xmFormWidgetClass, args);
    gui->childParent = form;
    queueManage(form);
    trace(306, 0, "Row Col is %p", static_cast<void *>(form));
    addWidget(gui, form);
}

} // namespace xc::screen
