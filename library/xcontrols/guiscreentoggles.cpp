/* guiscreentoggles.cpp - builders of selection toggles and radio managers, and the
** handlers that record the user's choice and run the actions. */
#include <Xm/RowColumn.h>
#include <Xm/ToggleB.h>

#include "guiscreenitem.h"

namespace xc::screen {
namespace {

/* A toggle's new state: from Motif's callback structure, or the builder's first call. */
int32_t newState(XtPointer callData) {
    return static_cast<XmToggleButtonCallbackStruct *>(callData)->set;
}

void onSelection(Widget, XtPointer node, XtPointer callData) {
    auto *data = dataOf<SelectionItemData>(itemOf(node), GUI_TAG_SELECTION, GUI_SELECTION_SIGNATURE);
    if (data == nullptr) return;
    data->set = newState(callData);
    trace(701, 0, "selection now set %d", data->set);
    runActions(node, data->set != 1);
}

void onRadio(Widget, XtPointer node, XtPointer callData) {
    trace(702, 0, "Radio button callback");
    auto *data = dataOf<RadioButtonData>(itemOf(node), GUI_TAG_RADIOBUTTON, GUI_RADIOBUTTON_SIGNATURE);
    if (data == nullptr) return;
    const int32_t state = newState(callData);
    if (data->set == state) {
        trace(703, 0, "radio button status not changed");
        return;
    }
    data->set = state;
    trace(704, 0, "radio now set %d", state);
    if (state == 1) runActions(node, false);
}

/* Calls a toggle's handler once as the builder does, with the stored state. */
void reportInitialState(XtCallbackProc handler, Widget w, void *node, int32_t set) {
    XmToggleButtonCallbackStruct initial{};
    initial.reason = XmCR_VALUE_CHANGED;
    initial.set = set;
    handler(w, node, &initial);
}

Widget createToggle(Widget parent, const char *name, const char *label, int32_t set, bool hidden) {
    XmStr text(label);
    Args args;
    if (text) args.add(XmNlabelString, reinterpret_cast<XtArgVal>(static_cast<XmString>(text)));
    if (set != 0) args.add(XmNset, True);
    args.addColour(XmNselectColor, parent, "red");
    Widget w = hidden ? createHidden(parent, name, xmToggleButtonWidgetClass, args)
                      : XtCreateWidget(name, xmToggleButtonWidgetClass, parent, args.list(), args.count());
    queueManage(w);
    return w;
}

void buildRadioButton(Widget radioBox, void *node) {
    oGuiData *gui = createGuiData(node);
    ScreenItem *item = itemOf(node);
    if (gui == nullptr || item->itemType != RadioButton) return;
    auto *data = dataOf<RadioButtonData>(item, GUI_TAG_RADIOBUTTON, GUI_RADIOBUTTON_SIGNATURE);
    if (data == nullptr || data->label == nullptr) return;
    Widget toggle = createToggle(radioBox, "radiobutton", data->label, data->set, false);
    trace(705, 0, "Freeing string");
    XtAddCallback(toggle, XmNvalueChangedCallback, onRadio, node);
    reportInitialState(onRadio, toggle, node, data->set);
    addWidget(gui, toggle);
}

} // namespace

void buildSelectionItem(Widget parent, void *node) {
    oGuiData *gui = createGuiData(node);
    auto *data = dataOf<SelectionItemData>(itemOf(node), GUI_TAG_SELECTION, GUI_SELECTION_SIGNATURE);
    if (gui == nullptr || data == nullptr) return;
    Widget where = whereToBuild(parent, node);
    Widget toggle = createToggle(where, "toggle", data->label, data->set, true);
    XtAddCallback(toggle, XmNvalueChangedCallback, onSelection, node);
    reportInitialState(onSelection, toggle, node, data->set);
    addWidget(gui, toggle);
}

void buildRadioManager(Widget parent, void *node) {
    oGuiData *gui = createGuiData(node);
    if (gui == nullptr) return;
    Widget where = whereToBuild(parent, node);
    Args args;
    args.add(XtNmappedWhenManaged, False);
    Widget box = XmCreateRadioBox(where, const_cast<char *>("radiobox"), args.list(), args.count());
    queueManage(box);
    addWidget(gui, box);
    for (void *child = TreeNodeFirstChild(node); child != nullptr; TreeNextSibling(&child, child))
        buildRadioButton(box, child);
    trace(706, 0, "Created RadioManager");
}

} // namespace xc::screen
