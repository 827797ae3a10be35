/* screens.cpp - building screen definition trees as a client does (tests, benchmarks). */
#include "screens.h"

namespace xt {

void *newObject(uint32_t tag, const char *signature, uint32_t size) {
    void *h = nullptr;
    ObjCreateInternal(&h, size, tag, signature, 0, MemGetDefaultPoolId());
    return h;
}

char *poolText(const char *text) { return StrDuplicateIntoPool(text, MemGetDefaultPoolId()); }

void *labelData(const char *text) {
    auto *d = newData<LabelData>(GUI_TAG_LABEL, GUI_LABEL_SIGNATURE);
    d->text = poolText(text);
    return d;
}

void *groupBoxData(const char *title) {
    auto *d = newData<GroupBoxData>(GUI_TAG_GROUPBOX, GUI_GROUPBOX_SIGNATURE);
    d->title = poolText(title);
    return d;
}

void *rowColData(int32_t columns) {
    auto *d = newData<RowColManagerData>(GUI_TAG_ROWCOL, GUI_ROWCOL_SIGNATURE);
    d->columns = columns;
    return d;
}

Screen::Screen() { TreeCreateFromPool(&tree_, 0, MemGetDefaultPoolId()); }

Screen::~Screen() { ObjReleaseInternal(&tree_); }

void *Screen::add(void *parentNode, uint32_t type, int32_t id, void *itemData) {
    auto *item = static_cast<ScreenItem *>(
        newObject(GUI_TAG_SCREEN_ITEM, GUI_SCREEN_ITEM_SIGNATURE, sizeof(ScreenItem)));
    item->itemType = type;
    item->itemId = id;
    item->itemData = itemData;
    void *node = parentNode ? TreeAddItem(parentNode, item, KX_TREE_COOKIE_OBJECT)
                            : TreeAddRootItem(tree_, item, KX_TREE_COOKIE_OBJECT);
    ObjReleaseInternal(&item);
    return node;
}

void *Screen::node(int32_t id) const { return findNode(tree_, id); }
ScreenItem *Screen::item(int32_t id) const { return itemOf(node(id)); }

void Screen::attachNone(int32_t id) {
    ScreenItem *it = item(id);
    if (!it) return;
    arrays_.push_back({nullptr, nullptr, nullptr, nullptr});
    it->attachments = arrays_.back().data();
}

void Screen::attach(int32_t id, int side, int32_t kind, int32_t position, int32_t refId,
                    int32_t offset) {
    ScreenItem *it = item(id);
    if (!it) return;
    if (!it->attachments) attachNone(id);
    sides_.push_back({kind, position, refId, offset});
    it->attachments[side] = &sides_.back();
}

void Screen::addAction(int32_t id, int32_t targetId, int32_t kind) {
    ScreenItem *it = item(id);
    if (!it) return;
    if (!it->actions) ListCreateFromPool(&it->actions, 0, MemGetDefaultPoolId());
    auto *a = static_cast<ScreenAction *>(
        newObject(GUI_TAG_ACTION, GUI_ACTION_SIGNATURE, sizeof(ScreenAction)));
    a->targetId = targetId;
    a->kind = kind;
    ListPushLastItemInternal(it->actions, &a);
}

namespace {
int matchId(void *key, void *cookie) {
    auto *item = static_cast<ScreenItem *>(cookie);
    return ObjIsA(item, GUI_TAG_SCREEN_ITEM) && item->itemId == *static_cast<int32_t *>(key);
}
} // namespace

void *findNode(void *tree, int32_t id) {
    void *found = nullptr;
    TreeSearchFromNode(&found, TreeFirstNode(tree), matchId, &id, 0);
    return found;
}

ScreenItem *itemOf(void *node) {
    void *cookie = node ? TreeNodeCookie(node) : nullptr;
    return ObjIsA(cookie, GUI_TAG_SCREEN_ITEM) ? static_cast<ScreenItem *>(cookie) : nullptr;
}

Widget outerWidget(const ScreenItem *item) {
    if (!item || !ObjIsA(item->guiData, GUI_TAG_GUIDATA)) return nullptr;
    auto *rec = static_cast<GuiWidgetRecord *>(ListFirstItem(item->guiData->widgetList));
    return rec ? rec->widget : nullptr;
}

GuiWidgetRecord *lastRecord(const ScreenItem *item) {
    if (!item || !ObjIsA(item->guiData, GUI_TAG_GUIDATA)) return nullptr;
    return static_cast<GuiWidgetRecord *>(ListLastItem(item->guiData->widgetList));
}

Widget valueWidget(const ScreenItem *item) {
    GuiWidgetRecord *rec = lastRecord(item);
    return rec ? rec->widget : nullptr;
}

int32_t widgetCount(const ScreenItem *item) {
    if (!item || !ObjIsA(item->guiData, GUI_TAG_GUIDATA)) return 0;
    return ListCount(item->guiData->widgetList);
}

} // namespace xt
