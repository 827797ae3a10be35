/* guiscreenitem.cpp - the plugin screen's shared steps: items, GUI data, widget records,
** the parent of an item and searches by item id. */
#include <Xm/Form.h>
#include <Xm/Frame.h>
#include <Xm/ScrolledW.h>

#include <algorithm>
#include <cstdio>
#include <cstring>

#include "guiscreenitem.h"

namespace xc::screen {

ScreenItem *itemOf(void *node) {
    static const uint32_t token = signatureToken(GUI_SCREEN_ITEM_SIGNATURE);
    return objectAs<ScreenItem>(TreeNodeCookie(node), GUI_TAG_SCREEN_ITEM,
                                GUI_SCREEN_ITEM_SIGNATURE, token);
}

oGuiData *guiDataOf(const ScreenItem *item) {
    static const uint32_t token = signatureToken(GUI_GUIDATA_SIGNATURE);
    return item ? objectAs<oGuiData>(item->guiData, GUI_TAG_GUIDATA, GUI_GUIDATA_SIGNATURE, token)
                : nullptr;
}

GuiWidgetRecord *asRecord(void *h) {
    static const uint32_t token = signatureToken(GUI_WIDGET_SIGNATURE);
    return objectAs<GuiWidgetRecord>(h, GUI_TAG_WIDGET, GUI_WIDGET_SIGNATURE, token);
}

namespace {

int matchItemId(void *key, void *cookie) {
    auto *item = objectAs<ScreenItem>(cookie, GUI_TAG_SCREEN_ITEM, GUI_SCREEN_ITEM_SIGNATURE);
    return item != nullptr && item->itemId == *static_cast<int32_t *>(key);
}

} // namespace

GuiWidgetRecord *outerRecordOf(const oGuiData *gui) {
    return gui ? asRecord(ListFirstItem(gui->widgetList)) : nullptr;
}

GuiWidgetRecord *outerRecord(const ScreenItem *item) {
    return outerRecordOf(guiDataOf(item));
}

GuiWidgetRecord *valueRecord(const ScreenItem *item) {
    oGuiData *gui = guiDataOf(item);
    return gui ? asRecord(ListLastItem(gui->widgetList)) : nullptr;
}

Widget outerWidget(const ScreenItem *item) {
    GuiWidgetRecord *rec = outerRecord(item);
    return rec ? rec->widget : nullptr;
}

void *findItemNode(void *tree, int32_t itemId) {
    void *found = nullptr;
    if (ObjIsA(tree, KX_TAG_TREE))
        TreeSearchFromNode(&found, TreeFirstNode(tree), matchItemId, &itemId, 0);
    return found;
}

ScreenItem *findItem(void *tree, int32_t itemId) { return itemOf(findItemNode(tree, itemId)); }

namespace {
int indexItem(void *ctx, void *node) {
    if (ScreenItem *item = itemOf(node)) static_cast<ItemIndex *>(ctx)->add(node, item);
    return 1;
}

int collectNode(void *nodes, void *node) {
    static_cast<PoolVector<void *> *>(nodes)->push_back(node);
    return 1;
}

constexpr uint64_t kRankStep = uint64_t{1} << 32;
} // namespace

ItemIndex::ItemIndex(void *tree) : tree_(tree) {
    TreeWalk(tree, indexItem, this, 0);
    finish();
}

void ItemIndex::finish() {
    std::stable_sort(items_.begin(), items_.end(),
                     [](const Entry &a, const Entry &b) { return a.id < b.id; });
}

void ItemIndex::add(void *node, ScreenItem *item) {
    items_.push_back({item->itemId, items_.size() * kRankStep, node, item});
}

const ItemIndex::Entry *ItemIndex::first(int32_t itemId) const {
    auto it = std::lower_bound(items_.begin(), items_.end(), itemId,
                               [](const Entry &e, int32_t id) { return e.id < id; });
    return it != items_.end() && it->id == itemId ? &*it : nullptr;
}

ScreenItem *ItemIndex::find(int32_t itemId) const {
    const Entry *e = first(itemId);
    return e ? e->item : nullptr;
}

void *ItemIndex::findNode(int32_t itemId) const {
    const Entry *e = first(itemId);
    return e ? e->node : nullptr;
}

ItemIndex::Entry *ItemIndex::entryOf(void *node) {
    const ScreenItem *item = itemOf(node);
    const Entry *e = item ? first(item->itemId) : nullptr;
    for (; e != nullptr && e != items_.data() + items_.size() && e->id == item->itemId; ++e)
        if (e->node == node) return const_cast<Entry *>(e);
    return nullptr;
}

void ItemIndex::forgetChildren(void *node) {
    PoolVector<void *> gone;
    for (void *child = TreeNodeFirstChild(node); child != nullptr; TreeNextSibling(&child, child))
        TreeWalkFromNode(child, collectNode, &gone, 0);
    for (void *n : gone)
        if (Entry *e = entryOf(n)) e->node = nullptr;
    items_.erase(std::remove_if(items_.begin(), items_.end(), [](const Entry &e) { return !e.node; }),
                 items_.end());
}

void ItemIndex::addChildren(void *node) {
    const Entry *parent = entryOf(node);
    if (parent == nullptr) return;
    uint64_t rank = parent->rank;
    for (void *child = TreeNodeFirstChild(node); child != nullptr; TreeNextSibling(&child, child)) {
        ScreenItem *item = itemOf(child);
        if (item == nullptr) continue;
        const Entry entry{item->itemId, ++rank, child, item};
        items_.insert(std::upper_bound(items_.begin(), items_.end(), entry,
                                       [](const Entry &x, const Entry &y) {
                                           return x.id != y.id ? x.id < y.id : x.rank < y.rank;
                                       }),
                      entry);
    }
}

oGuiData *createGuiData(void *node) {
    ScreenItem *item = itemOf(node);
    if (item == nullptr) return nullptr;
    oGuiData *gui = nullptr;
    if (!ObjCreateInternal(&gui, sizeof(oGuiData), GUI_TAG_GUIDATA, GUI_GUIDATA_SIGNATURE, 0, pool()))
        return nullptr;
    ListCreateFromPool(&gui->widgetList, 0, pool());
    gui->jobId = glJobId;
    storeHandle(reinterpret_cast<void **>(&item->guiData), gui);
    ObjReleaseInternal(&gui);
    return item->guiData;
}

Widget parentWidgetOf(void *node) {
    if (!TreeNodeHasParent(node)) return nullptr;
    oGuiData *gui = guiDataOf(itemOf(TreeNodeParent(node)));
    return gui ? gui->childParent : nullptr;
}

Widget whereToBuild(Widget screenForm, void *node, int32_t traceNo, const char *fallbackTrace) {
    if (Widget where = parentWidgetOf(node)) return where;
    if (fallbackTrace != nullptr) trace(traceNo, 0, "%s", fallbackTrace);
    return screenForm;
}

GuiWidgetRecord *newRecord(Widget w, int32_t kind) {
    GuiWidgetRecord *rec = nullptr;
    if (!ObjCreateInternal(&rec, sizeof(GuiWidgetRecord), GUI_TAG_WIDGET, GUI_WIDGET_SIGNATURE, 0, pool()))
        return nullptr;
    rec->widget = w;
    rec->widgetKind = kind;
    return rec;
}

void appendRecord(oGuiData *gui, GuiWidgetRecord **rec) {
    if (*rec == nullptr) return;
    if (gui == nullptr || !ListPushLastItemInternal(gui->widgetList, rec)) ObjReleaseInternal(rec);
}

void addWidget(oGuiData *gui, Widget w) {
    GuiWidgetRecord *rec = newRecord(w);
    appendRecord(gui, &rec);
}

/* ---- Records that outlive their widgets ---------------------------------------------- */

namespace {

/* The tree whose widgets a teardown is destroying, after it cleared their records. */
const void *gTearingDown = nullptr;

/* One record's widget goes, by whatever means: the record forgets it. */
void forgetWidget(Widget w, XtPointer clientData, XtPointer) {
    GuiWidgetRecord *rec = asRecord(clientData);
    if (rec != nullptr && rec->widget == w) rec->widget = nullptr;
}

int forgetWidgetsWithin(void *outer, void *element) {
    GuiWidgetRecord *rec = asRecord(ListElementItem(element));
    if (rec != nullptr && rec->widget != nullptr && isWithin(rec->widget, static_cast<Widget>(outer)))
        rec->widget = nullptr;
    return 1;
}

int forgetNodeWidgetsWithin(void *outer, void *node) {
    if (oGuiData *gui = guiDataOf(itemOf(node))) ListWalk(gui->widgetList, forgetWidgetsWithin, outer);
    return 1;
}

/* An item's outer widget goes other than by teardown (which clears the records first):
** every record of the item's subtree whose widget lies within it forgets the widget. Xt
** runs destroy callbacks before it frees any widget of the tree that goes, so the
** parents of those widgets can still be followed. */
void forgetSubtreeWidgets(Widget w, XtPointer clientData, XtPointer) {
    if (gTearingDown != nullptr && TreeFromNode(clientData) == gTearingDown) return;
    if (outerWidget(itemOf(clientData)) == w) TreeWalkFromNode(clientData, forgetNodeWidgetsWithin, w, 0);
}

int watchRecord(void *outer, void *element) {
    GuiWidgetRecord *rec = asRecord(ListElementItem(element));
    if (rec != nullptr && rec->widget != nullptr && !isWithin(rec->widget, static_cast<Widget>(outer)))
        XtAddCallback(rec->widget, XmNdestroyCallback, forgetWidget, rec);
    return 1;
}

} // namespace

TeardownScope::TeardownScope(const void *tree) : previous_(gTearingDown) { gTearingDown = tree; }

TeardownScope::~TeardownScope() { gTearingDown = previous_; }

bool isWithin(Widget w, Widget ancestor) {
    if (ancestor == nullptr) return false;
    for (; w != nullptr; w = XtParent(w))
        if (w == ancestor) return true;
    return false;
}

void watchWidgets(void *node, const ScreenItem *item) {
    oGuiData *gui = guiDataOf(item);
    if (gui == nullptr) return;
    const GuiWidgetRecord *first = outerRecordOf(gui);
    Widget outer = first ? first->widget : nullptr;
    if (outer != nullptr) XtAddCallback(outer, XmNdestroyCallback, forgetSubtreeWidgets, node);
    ListWalk(gui->widgetList, watchRecord, outer);
}

Args &Args::addColour(const char *name, Widget where, const char *colour) {
    /* A creation argument: setting the colour on the finished widget made Motif
    ** reconfigure it, which cost more than creating it. */
    Pixel pixel = 0;
    XrmValue from{static_cast<unsigned>(std::strlen(colour) + 1), const_cast<char *>(colour)};
    XrmValue to{sizeof pixel, reinterpret_cast<XPointer>(&pixel)};
    if (XtConvertAndStore(where, XmRString, &from, XmRPixel, &to)) add(name, static_cast<XtArgVal>(pixel));
    return *this;
}

Widget createHidden(Widget parent, const char *name, WidgetClass cls, Args &args) {
    Widget w = XtCreateWidget(name, cls, parent, args.list(), args.count());
    /* Set on the new widget before anything can manage it, as a creation argument
    ** would; an argument costs every resource lookup of Xt and Motif once more. */
    XtSetMappedWhenManaged(w, False);
    return w;
}

Widget createInsetFrame(Widget where, Widget *form) {
    Args args;
    args.add(XmNshadowThickness, 2).add(XmNshadowType, XmSHADOW_IN);
    Widget frame = createHidden(where, "frame", xmFrameWidgetClass, args);
    queueManage(frame);
    *form = XmCreateForm(frame, const_cast<char *>("form"), nullptr, 0);
    queueManage(*form);
    return frame;
}

Widget createScrolled(Widget parent, const char *name, WidgetClass cls, Args &windowArgs,
                      Args &childArgs) {
    char windowName[64];
    std::snprintf(windowName, sizeof windowName, "%sSW", name);
    windowArgs.add(XmNscrollingPolicy, XmAPPLICATION_DEFINED).add(XmNvisualPolicy, XmVARIABLE)
        .add(XmNscrollBarDisplayPolicy, XmSTATIC).add(XmNshadowThickness, 0);
    Widget window = XtCreateWidget(windowName, xmScrolledWindowWidgetClass, parent,
                                   windowArgs.list(), windowArgs.count());
    queueManage(window);
    return XtCreateWidget(name, cls, window, childArgs.list(), childArgs.count());
}

} // namespace xc::screen
