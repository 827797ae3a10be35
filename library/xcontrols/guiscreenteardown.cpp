/* guiscreenteardown.cpp - the end of a screen's widgets: the teardown walk by widget
** kind, and the order in which widgets and controls go. */
#include <X11/IntrinsicP.h>
#include <X11/CompositeP.h>

#include <algorithm>
#include <utility>

#include "guicombo.h"
#include "guidateinput.h"
#include "guinuminput.h"
#include "guitabs.h"
#include "guitimeinput.h"
#include "guiscreenitem.h"

namespace xc::screen {
namespace {

/* Takes every child of the form out of its layout before some of them go one by one.
** An unrealized form leaves the attachments of the other children pointing at a
** destroyed sibling and follows them at its next layout, which would read freed memory;
** children that are not managed are not laid out. The form is kept at its size first, so
** that it asks nothing of the containers around it (they would lay themselves out again,
** one control at a time), and its child list is read from the composite record (a
** resource query per control cost more than the unmanaging). */
void leaveLayout(Widget form) {
    XtVaSetValues(form, XmNresizePolicy, XmRESIZE_NONE, nullptr);
    const CompositePart &composite = reinterpret_cast<CompositeWidget>(form)->composite;
    if (composite.num_children > 0) XtUnmanageChildren(composite.children, composite.num_children);
}

/* Clears the handle before the control goes, so that nothing reaches it twice. */
template <typename Control>
void destroyOnce(void *&handle, void (*destroy)(Control *)) {
    auto *control = static_cast<Control *>(handle);
    handle = nullptr;
    if (control != nullptr) destroy(control);
}

/* A set of widgets by open addressing: a power-of-two table at most half full, for the
** ancestor checks of teardown, one or two per widget of the screen. */
class WidgetSet {
public:
    /* Empties the set, with room for `count` widgets. */
    void reset(size_t count) {
        const size_t size = tableSize(count);
        if (slots_.size() != size) slots_.resize(size);
        std::fill(slots_.begin(), slots_.end(), nullptr);
        mask_ = size - 1;
    }

    void insert(Widget w) {
        size_t i = home(w);
        for (; slots_[i] != nullptr; i = (i + 1) & mask_)
            if (slots_[i] == w) return;
        slots_[i] = w;
    }

    bool contains(Widget w) const {
        for (size_t i = home(w); slots_[i] != nullptr; i = (i + 1) & mask_)
            if (slots_[i] == w) return true;
        return false;
    }

private:
    static size_t tableSize(size_t count) {
        size_t size = 16;
        while (size < 2 * count) size *= 2;
        return size;
    }
    size_t home(Widget w) const {
        return static_cast<size_t>((reinterpret_cast<uintptr_t>(w) * 0x9E3779B97F4A7C15ull) >> 32) & mask_;
    }
    PoolVector<Widget> slots_;
    size_t mask_ = 0;
};

/* The plain widgets of the screen's records, as the teardown walk meets them. */
using PlainWidgets = PoolVector<Widget>;

/* Appends to `out` the widgets to destroy one by one, in walk order: those that lie
** within no other of `widgets`, each once (there are one or two per top-level item, so
** a widget that two records name is found among those just appended). Xt destroys the
** others with the one that holds them, children before their parents, in one recursive
** pass; destroyed alone, each would be taken out of its parent's layout and child list
** one at a time. None of those left lies within another, so no destroy frees a widget
** that is still to come. */
void appendOutermost(const PlainWidgets &widgets, WidgetSet &all, PoolVector<Widget> &out) {
    all.reset(widgets.size());
    for (Widget w : widgets) all.insert(w);
    const size_t first = out.size();
    for (Widget w : widgets) {
        Widget p = XtParent(w);
        while (p != nullptr && !all.contains(p)) p = XtParent(p);
        if (p == nullptr && std::find(out.begin() + static_cast<std::ptrdiff_t>(first), out.end(), w) == out.end())
            out.push_back(w);
    }
}

/* What the teardown walk gathers. Post-order visits each top-level item right after
** everything under it; the widgets of those items lie within the item's widgets or
** directly in the screen's parent (a builder creates an item's widgets in its parent
** item's form, or in the screen's parent), never within another top-level item's. So
** the widgets that go one by one are found per top-level item, in a few entries that
** are used again for the next one: a screen of thousands of items needs no large
** block, whose allocation would make malloc consolidate the heap in the middle of it. */
struct Teardown {
    void *nextTop = nullptr;             /* the top-level node that the walk meets next */
    PlainWidgets item;                   /* of the top-level item being walked */
    WidgetSet set;                       /* the ancestor checks' scratch, used again per item */
    PoolVector<Widget> alone;            /* to destroy one by one, for every item walked so far */
    PoolVector<GuiWidgetRecord *> controls; /* control records, in walk order */
};

/* Takes one record down: a plain widget is forgotten by its record (whose destroy
** callbacks then have nothing to do) and goes after the walk; a control is kept for
** the order of destruction below. */
int takeRecord(void *ctx, void *element) {
    auto *rec = asRecord(ListElementItem(element));
    if (rec == nullptr) return 1;
    auto *teardown = static_cast<Teardown *>(ctx);
    trace(103, 0, "Destroy widget of type %ld", static_cast<long>(rec->widgetKind));
    if (rec->widgetKind != WIDGET_PLAIN) teardown->controls.push_back(rec);
    else if (Widget w = std::exchange(rec->widget, nullptr)) teardown->item.push_back(w);
    return 1;
}

int takeNodeWidgets(void *ctx, void *node) {
    auto *teardown = static_cast<Teardown *>(ctx);
    if (oGuiData *gui = guiDataOf(itemOf(node))) {
        ListWalkBackwards(gui->widgetList, takeRecord, teardown);
        gui->childParent = nullptr;
    }
    /* Post-order meets the top-level nodes in their order, each after its subtree. */
    if (node == teardown->nextTop) {
        appendOutermost(teardown->item, teardown->set, teardown->alone);
        teardown->item.clear();
        TreeNextSibling(&teardown->nextTop, node);
    }
    return 1;
}

/* Takes the managed widgets out of their forms, in one call per parent: destroying a
** managed widget makes a realized form lay out the remaining children again, once per
** widget, and following their attachments into a widget destroyed before would read
** freed memory. Unmanaged, they are unmapped with all they hold. */
void unmanageByParent(const PoolVector<Widget> &widgets) {
    PoolVector<Widget> managed;
    for (Widget w : widgets)
        if (XtIsManaged(w)) managed.push_back(w);
    std::stable_sort(managed.begin(), managed.end(),
                     [](Widget a, Widget b) { return XtParent(a) < XtParent(b); });
    size_t start = 0;
    for (size_t i = 1; i <= managed.size(); ++i) {
        if (i == managed.size() || XtParent(managed[i]) != XtParent(managed[start])) {
            XtUnmanageChildren(&managed[start], static_cast<Cardinal>(i - start));
            start = i;
        }
    }
}

} // namespace

Widget controlHolder(const GuiWidgetRecord *rec) {
    Widget field = nullptr;
    switch (rec->widgetKind) {
    case WIDGET_COMBO:
        if (rec->combo) field = static_cast<GuiCombo *>(rec->combo)->wText;
        break;
    case WIDGET_NUMINPUT:
        if (rec->numInput) field = static_cast<GuiNumInput *>(rec->numInput)->wText;
        break;
    case WIDGET_DATEINPUT:
        if (rec->dateInput) field = static_cast<GuiDateInput *>(rec->dateInput)->wDay;
        break;
    case WIDGET_TIMEINPUT:
        if (rec->timeInput) field = static_cast<GuiTimeInput *>(rec->timeInput)->wHours;
        break;
    default:
        break;
    }
    return field ? XtParent(field) : nullptr;
}

void destroyControlOf(GuiWidgetRecord *rec) {
    /* A holder that is going has left every layout already. */
    Widget holder = controlHolder(rec);
    if (holder != nullptr && !holder->core.being_destroyed) leaveLayout(holder);
    switch (rec->widgetKind) {
    case WIDGET_COMBO: destroyOnce(rec->combo, GuiDestroyCombo); break;
    case WIDGET_NUMINPUT: destroyOnce(rec->numInput, GuiNumInputDestroy); break;
    case WIDGET_DATEINPUT: destroyOnce(rec->dateInput, GuiDateInputDestroy); break;
    case WIDGET_TIMEINPUT: destroyOnce(rec->timeInput, GuiTimeInputDestroy); break;
    case WIDGET_TABS: destroyOnce(rec->tabs, GuiDestroyTabs); break;
    default: break;
    }
}

namespace {

/* A combo box's drop-down list, which lies outside the form of its text field. */
Widget dropListOf(const GuiWidgetRecord *rec) {
    return rec->widgetKind == WIDGET_COMBO && rec->combo ? static_cast<GuiCombo *>(rec->combo)->wList
                                                         : nullptr;
}

/* A widget that a control cannot do without is going (the form that holds its fields, a
** combo box's list): the control goes with it. The record may already be gone, or its
** memory may serve a newer record, whose control then has other widgets. */
void onControlWidgetDestroyed(Widget w, XtPointer clientData, XtPointer) {
    auto *rec = asRecord(clientData);
    if (rec != nullptr && (controlHolder(rec) == w || dropListOf(rec) == w)) destroyControlOf(rec);
}

} // namespace

void appendControl(oGuiData *gui, GuiWidgetRecord **rec) {
    if (*rec != nullptr)
        for (Widget w : {controlHolder(*rec), dropListOf(*rec)})
            if (w != nullptr) XtAddCallback(w, XmNdestroyCallback, onControlWidgetDestroyed, *rec);
    appendRecord(gui, rec);
}

/* The order of destruction: every outermost widget of the screen leaves its form's
** layout first; the controls without a holder form (the tab holder) go; then the
** outermost widgets go, each with everything it holds. A control whose holder form goes
** in that pass is ended by the holder's destroy watch: Xt has marked every widget of the
** pass as going, so the control's own destroys of its fields cost nothing, where one by
** one they cost a parent's child list and a server request each. A control whose holder
** outlived the pass goes last. */
void destroyScreenWidgets(void *tree) {
    forgetShownIndex(tree);
    Teardown teardown;
    teardown.nextTop = TreeFirstNode(tree);
    TreeWalkPostOrder(tree, takeNodeWidgets, &teardown);
    DropSiteBatch dropSites(teardown.alone.empty() ? nullptr : XtParent(teardown.alone.front()));
    unmanageByParent(teardown.alone);
    for (GuiWidgetRecord *rec : teardown.controls)
        if (controlHolder(rec) == nullptr) destroyControlOf(rec);
    TeardownScope scope(tree);
    for (Widget w : teardown.alone) {
        unmapWidget(w);
        XtDestroyWidget(w);
    }
    for (GuiWidgetRecord *rec : teardown.controls) destroyControlOf(rec);
}

} // namespace xc::screen
