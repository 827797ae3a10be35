/* guiscreendef.cpp - plugin screens: the entry points, the create dispatch, the build
** batch and the teardown by widget kind. */
#include <algorithm>
#include <new>
#include <utility>

#include "guicombo.h"
#include "guidateinput.h"
#include "guinuminput.h"
#include "guitimeinput.h"
#include "guiscreenitem.h"

extern "C" {
XC_API int32_t glJobId = 0;
}

namespace xc::screen {
namespace {

GuiPlgCloseFn gClose = nullptr;
void *gCloseValue = nullptr;

/* ---- The create dispatch ------------------------------------------------------------ */

struct ItemKind {
    uint32_t type;
    const char *trace;
    Builder build; /* null: the item is an entry or page that its parent builds */
};

constexpr ItemKind kItemKinds[] = {
    {GroupBox, "Create a GroupBox", buildGroupBox},
    {TabManager, "Create a TabManager", nullptr},
    {TabPage, "Create a TabPage", nullptr},
    {ComboBox, "Create a ComboBox", buildComboBox},
    {ComboItem, "Create a ComboItem", nullptr},
    {ListBox, "Create a ListBox", buildListBox},
    {ListItem, "Create a ListItem", nullptr},
    {selectionItem, "Create a selectionItem", buildSelectionItem},
    {RadioManager, "Create a RadioManager", buildRadioManager},
    {RadioButton, "Create a RadioButton", nullptr},
    {PushButton, "Create a PushButton", buildPushButton},
    {EditBox, "Create a EditBox", buildEditBox},
    {NumInput, "Create a NumInput", buildNumInput},
    {Label, "Create a Label", buildLabel},
    {RowColManager, "Create a Row Col Manager", buildRowColManager},
    {DateInput, "Create a Date Input", buildDateInput},
    {TimeInput, "Create a Time Input", buildTimeInput},
    {ChangePassword, "Create a Change password control", nullptr},
    {GetPasswordBox, "Create a GetPasswordBox", nullptr},
    {StackedTabManager, "Create a Stacked TabManager", nullptr},
    {ExtendedListBox, "Create an extended ListBox", buildListBox},
};

const ItemKind *kindOf(uint32_t type) {
    for (const ItemKind &k : kItemKinds)
        if (k.type == type) return &k;
    return nullptr;
}

int releaseGuiData(void *, void *node) {
    if (ScreenItem *item = itemOf(node)) ObjReleaseInternal(&item->guiData);
    return 1;
}

int createNode(void *parent, void *node) {
    ScreenItem *item = itemOf(node);
    const ItemKind *kind = item ? kindOf(item->itemType) : nullptr;
    if (kind == nullptr) {
        trace(101, 1, "unknown screen item");
        return 1;
    }
    trace(102, 0, "%s", kind->trace);
    if (kind->build) kind->build(static_cast<Widget>(parent), node);
    watchWidgets(node);
    return 1;
}

/* ---- The build batch ----------------------------------------------------------------- */

PoolVector<Widget> *gPending = nullptr;

/* Manages one batch of children of one parent. A realized parent lays the batch out at
** once, at the sizes the children have then; a container that was never realized has
** not laid out its own children yet and has no size (Xt lays it out only when it
** realizes it, after the parent has placed it). Realizing such containers first, while
** still unmanaged, gives them their size before the parent places them. */
void manageBatch(PoolVector<Widget> &batch) {
    if (XtIsRealized(XtParent(batch.front())))
        for (Widget w : batch)
            if (XtIsComposite(w) && !XtIsRealized(w)) XtRealizeWidget(w);
    XtManageChildren(batch.data(), static_cast<Cardinal>(batch.size()));
}

/* Manages the queued widgets: one XtManageChildren per parent, parents in the reverse
** order of their first appearance, so inner containers are complete before the
** container that holds them is managed into a realized form. */
void flushPending(PoolVector<Widget> &pending) {
    PoolVector<std::pair<size_t, Widget>> order; /* (rank of the parent, widget) */
    PoolVector<Widget> parents;
    order.reserve(pending.size());
    for (Widget w : pending) {
        auto it = std::find(parents.rbegin(), parents.rend(), XtParent(w));
        size_t rank = it == parents.rend() ? parents.size() : parents.rend() - it - 1;
        if (it == parents.rend()) parents.push_back(XtParent(w));
        order.emplace_back(rank, w);
    }
    std::stable_sort(order.begin(), order.end(),
                     [](const auto &a, const auto &b) { return a.first > b.first; });
    PoolVector<Widget> batch;
    for (size_t i = 0; i < order.size(); ++i) {
        batch.push_back(order[i].second);
        if (i + 1 == order.size() || order[i + 1].first != order[i].first) {
            manageBatch(batch);
            batch.clear();
        }
    }
}

/* Runs the create and layout passes with the manage calls of the builders batched. */
void buildScreen(Widget parent, void *tree) {
    PoolVector<Widget> pending;
    PoolVector<Widget> *outer = gPending;
    if (outer == nullptr) gPending = &pending;
    TreeWalk(tree, createNode, parent, 0);
    ItemIndex index(tree);
    TreeWalk(tree, layoutNode, &index, 0);
    if (outer == nullptr) {
        gPending = nullptr;
        flushPending(pending);
    }
}

/* ---- Teardown --------------------------------------------------------------------------- */

/* Takes every child of the form out of its layout before some of them go one by one.
** An unrealized form leaves the attachments of the other children pointing at a
** destroyed sibling and follows them at its next layout, which would read freed memory;
** children that are not managed are not laid out. */
void leaveLayout(Widget form) {
    WidgetList children = nullptr;
    Cardinal count = 0;
    XtVaGetValues(form, XmNchildren, &children, XmNnumChildren, &count, nullptr);
    if (count > 0) XtUnmanageChildren(children, count);
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
    PlainWidgets item;        /* of the top-level item being walked */
    WidgetSet set;            /* the ancestor checks' scratch, used again per item */
    PoolVector<Widget> alone; /* to destroy one by one, for every item walked so far */
};

/* Tears one record down: a control goes at once; a plain widget is forgotten by its
** record (whose destroy callbacks then have nothing to do) and goes after the walk. */
int destroyRecord(void *ctx, void *element) {
    auto *rec = objectAs<GuiWidgetRecord>(ListElementItem(element), GUI_TAG_WIDGET,
                                          GUI_WIDGET_SIGNATURE);
    if (rec == nullptr) return 1;
    trace(103, 0, "Destroy widget of type %ld", static_cast<long>(rec->widgetKind));
    if (rec->widgetKind != WIDGET_PLAIN) {
        destroyControlOf(rec);
        return 1;
    }
    if (Widget w = std::exchange(rec->widget, nullptr)) static_cast<PlainWidgets *>(ctx)->push_back(w);
    return 1;
}

int destroyNodeWidgets(void *ctx, void *node) {
    auto *teardown = static_cast<Teardown *>(ctx);
    if (oGuiData *gui = guiDataOf(itemOf(node)))
        ListWalkBackwards(gui->widgetList, destroyRecord, &teardown->item);
    if (!TreeNodeHasParent(node)) {
        appendOutermost(teardown->item, teardown->set, teardown->alone);
        teardown->item.clear();
    }
    return 1;
}

/* Takes the managed widgets out of their forms first, in one call per parent:
** destroying a managed widget makes a realized form lay out the remaining children
** again, once per widget. Unmanaged, they are unmapped with all they hold. */
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

void destroyWidgets(void *tree) {
    Teardown teardown;
    TreeWalkPostOrder(tree, destroyNodeWidgets, &teardown);
    unmanageByParent(teardown.alone);
    TeardownScope scope(tree);
    for (Widget w : teardown.alone) {
        unmapWidget(w);
        XtDestroyWidget(w);
    }
}

/* ---- Updates ----------------------------------------------------------------------------- */

int updateWholeScreen(oScreenDef *screen, oUpdateScreen *update) {
    void *cookie = update->screenCookie;
    if (cookie == nullptr && ObjIsA(screen->oPluginScreenDef, KX_TAG_TREE))
        cookie = TreeGetCookie(screen->oPluginScreenDef);
    TreeSetCookie(update->tree, cookie);
    trace(104, 0, "Process screen update of whole screen");
    /* The new tree's reference is taken first: the update may hand the shown tree again. */
    void *next = ObjIncRefCount(update->tree) ? update->tree : nullptr;
    destroyWidgets(screen->oPluginScreenDef);
    ObjReleaseInternal(&screen->oPluginScreenDef);
    screen->oPluginScreenDef = next;
    buildScreen(screen->parentWidget, next);
    return 1;
}

int updateItems(oScreenDef *screen, oUpdateScreen *update) {
    if (update->screenCookie != nullptr) TreeSetCookie(screen->oPluginScreenDef, update->screenCookie);
    trace(105, 0, "Process screen updates of individual items");
    if (!ObjIsA(update->tree, KX_TAG_TREE) || !ObjIsA(screen->oPluginScreenDef, KX_TAG_TREE)) {
        trace(106, 0, "oUpdateScreen %p oScreenDef->oPluginScreenDef %p", update->tree,
              screen->oPluginScreenDef);
        return 0;
    }
    int result = 0;
    for (void *node = TreeFirstNode(update->tree); node != nullptr; TreeNextSibling(&node, node)) {
        ScreenItem *patch = itemOf(node);
        if (patch == nullptr) continue;
        trace(107, 0, "Replace screen item %ld", static_cast<long>(patch->itemId));
        void *shownNode = findItemNode(screen->oPluginScreenDef, patch->itemId);
        ScreenItem *shown = itemOf(shownNode);
        if (shown == nullptr) {
            trace(108, 0, "No such item to update");
            continue;
        }
        result = updateItem(shownNode, node);
        storeHandle(&shown->actions, patch->actions);
    }
    return result;
}

} // namespace

Widget controlHolder(const GuiWidgetRecord *rec) {
    Widget field = nullptr;
    switch (rec->widgetKind) {
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
    if (Widget holder = controlHolder(rec)) leaveLayout(holder);
    switch (rec->widgetKind) {
    case WIDGET_COMBO: destroyOnce(rec->combo, GuiDestroyCombo); break;
    case WIDGET_NUMINPUT: destroyOnce(rec->numInput, GuiNumInputDestroy); break;
    case WIDGET_DATEINPUT: destroyOnce(rec->dateInput, GuiDateInputDestroy); break;
    case WIDGET_TIMEINPUT: destroyOnce(rec->timeInput, GuiTimeInputDestroy); break;
    default: break;
    }
}

void manageQueuedWithin(Widget container) {
    if (gPending == nullptr) return;
    PoolVector<Widget> inner;
    auto keep = gPending->begin();
    for (Widget w : *gPending) {
        if (w != container && isWithin(w, container)) inner.push_back(w);
        else *keep++ = w;
    }
    gPending->erase(keep, gPending->end());
    if (!inner.empty()) flushPending(inner);
}

void manage(Widget w) {
    if (w == nullptr) return;
    if (gPending) gPending->push_back(w);
    else XtManageChild(w);
}

GuiPlgCloseFn closeCallback() { return gClose; }

} // namespace xc::screen

using namespace xc::screen;

namespace {

/* Runs an entry point's work; the library's containers may run out of memory, and no
** exception may leave the C boundary. */
template <typename Work>
int guarded(const char *entry, Work &&work) noexcept {
    try {
        return work();
    } catch (const std::bad_alloc &) {
        xc::trace(110, -1, "%s: out of memory", entry);
        return 0;
    }
}

} // namespace

extern "C" {

XC_API void InitPluginScreens(GuiPlgCloseFn fnClose, void *pClientValue) {
    gClose = fnClose;
    gCloseValue = pClientValue;
}

XC_API int GuiCreatePlgScreen(Widget parent, void *hScreenDef, int32_t jobId) {
    glJobId = jobId;
    if (parent == nullptr) {
        xc::trace(111, -1, "No parent widget for the screen");
        return 1;
    }
    guarded("GuiCreatePlgScreen", [&] {
        TreeWalk(hScreenDef, releaseGuiData, nullptr, 0);
        buildScreen(parent, hScreenDef);
        return 1;
    });
    return 1;
}

XC_API int GuiUpdatePlgScreen(oScreenDef *pScreen, oUpdateScreen *pUpdate, int32_t perItem) {
    if (pScreen == nullptr || pUpdate == nullptr) return 0;
    glJobId = pScreen->jobId;
    if (!perItem && pScreen->parentWidget == nullptr) {
        xc::trace(111, -1, "No parent widget for the screen");
        return 0;
    }
    return guarded("GuiUpdatePlgScreen", [&] {
        return perItem ? updateItems(pScreen, pUpdate) : updateWholeScreen(pScreen, pUpdate);
    });
}

XC_API void GuiFreeScreenDef(void *phScreenDef) {
    if (phScreenDef != nullptr) ObjReleaseInternal(phScreenDef);
}

XC_API void GuiFreeScreenDefAndWidgets(void *phScreenDef) {
    void **slot = static_cast<void **>(phScreenDef);
    if (slot == nullptr || *slot == nullptr) return;
    xc::trace(109, 0, "Destroy the widgets making up the screen");
    guarded("GuiFreeScreenDefAndWidgets", [&] {
        destroyWidgets(*slot);
        return 1;
    });
    GuiFreeScreenDef(slot);
}

} // extern "C"
