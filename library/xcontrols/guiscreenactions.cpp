/* guiscreenactions.cpp - the action processor of plugin screens: show, hide, allow or
** disallow input, set or clear toggles and radio buttons, and close the screen. */
#include <Xm/ToggleB.h>

#include "guiscreenitem.h"

namespace xc::screen {
namespace {

struct Walk {
    void *tree;
    bool inverted;
};

int32_t invert(int32_t kind) {
    switch (kind) {
    case ACTION_SHOW: return ACTION_HIDE;
    case ACTION_HIDE: return ACTION_SHOW;
    case ACTION_ALLOW_INPUT: return ACTION_DISALLOW_INPUT;
    case ACTION_DISALLOW_INPUT: return ACTION_ALLOW_INPUT;
    case ACTION_SET: return ACTION_CLEAR;
    case ACTION_CLEAR: return ACTION_SET;
    default: return kind;
    }
}

void setToggle(Widget w, Boolean on) { XtVaSetValues(w, XmNset, on, nullptr); }

/* Reports the job of the button to the client; 0 so that the walk stops, since the client
** normally frees the screen from the callback. */
int closeScreen(Widget button) {
    XtPointer job = nullptr;
    XtVaGetValues(button, XmNuserData, &job, nullptr);
    const long jobId = static_cast<long>(reinterpret_cast<intptr_t>(job));
    trace(901, 0, "close plugin screen for job %ld", jobId);
    requestClose(static_cast<int32_t>(jobId));
    return 0;
}

int setAction(void *targetNode, ScreenItem *target, Widget w) {
    trace(902, 0, "Process SET action");
    if (w == nullptr) return 1;
    trace(903, 0, "Got a widget to action");
    if (target->itemType == selectionItem) {
        trace(904, 0, "Action for Selecition");
        setToggle(w, True);
    } else if (target->itemType == RadioButton) {
        trace(905, 0, "Action for Radio Button");
        GuiSetRadioButton(targetNode);
    }
    return 1;
}

int processAction(void *ctx, void *element) {
    const Walk &walk = *static_cast<Walk *>(ctx);
    auto *action = objectAs<ScreenAction>(ListElementItem(element), 0, GUI_ACTION_SIGNATURE);
    if (action == nullptr) return 1;
    void *targetNode = findItemNode(walk.tree, action->targetId);
    ScreenItem *target = itemOf(targetNode);
    if (target == nullptr || guiDataOf(target) == nullptr) return 1;
    Widget w = outerWidget(target);
    switch (walk.inverted ? invert(action->kind) : action->kind) {
    case ACTION_SHOW:
        trace(906, 0, "Process SHOW action");
        if (w) {
            target->hidden = 0;
            mapWidget(w);
        }
        return 1;
    case ACTION_HIDE:
        trace(907, 0, "Process HIDE action");
        if (w) {
            target->hidden = 1;
            unmapWidget(w);
        }
        return 1;
    case ACTION_ALLOW_INPUT:
        trace(908, 0, "Process ALLOW INPUT action");
        if (w) {
            target->disabled = 0;
            XtSetSensitive(w, True);
        }
        return 1;
    case ACTION_DISALLOW_INPUT:
        trace(909, 0, "Process DISALLOW INPUT action");
        if (w) {
            target->disabled = 1;
            XtSetSensitive(w, False);
        }
        return 1;
    case ACTION_SET:
        return setAction(targetNode, target, w);
    case ACTION_CLEAR:
        trace(910, 0, "Process CLEAR action");
        if (w && target->itemType == selectionItem) setToggle(w, False);
        return 1;
    case ACTION_CLOSE:
        trace(911, 0, "Process CLOSE action");
        return w && target->itemType == PushButton ? closeScreen(w) : 1;
    default:
        return 1;
    }
}

int switchOff(void *, void *node) {
    if (Widget w = outerWidget(itemOf(node))) setToggle(w, False);
    return 1;
}

} // namespace

void runActions(void *node, bool inverted) {
    ScreenItem *item = itemOf(node);
    if (item == nullptr || item->actions == nullptr) return;
    Walk walk{TreeFromNode(node), inverted};
    ListWalk(item->actions, processAction, &walk);
}

} // namespace xc::screen

using namespace xc::screen;

extern "C" XC_API void GuiSetRadioButton(void *hButtonNode) {
    ScreenItem *button = itemOf(hButtonNode);
    if (guiDataOf(button) != nullptr) {
        xc::trace(912, 0, "Got oGuiData");
        if (outerRecord(button) != nullptr) xc::trace(913, 0, "We have a valid radio button widget to set");
    }
    if (button != nullptr) {
        if (TreeNodeHasParent(hButtonNode)) TreeWalkFromNode(TreeNodeParent(hButtonNode), switchOff, nullptr, 0);
        if (Widget w = outerWidget(button)) setToggle(w, True);
    }
    xc::trace(914, 0, "GuiSetRadioButton END");
}
