/* screens.cpp - building screen definition trees as a client does (tests, benchmarks). */
#include "screens.h"

namespace xt {

void *newObject(uint32_t tag, const char *signature, uint32_t size) {
    void *h = nullptr;
    ObjCreateInternal(&h, size, tag, signature, 0, MemGetDefaultPoolId());
    return h;
}

char *poolText(const char *text) {
    return text ? StrDuplicateIntoPool(text, MemGetDefaultPoolId()) : nullptr;
}

namespace {
/* The two shapes that many item data records share: a text ("s;"), and a text with a
** flag ("s;i;"). */
struct Text {
    char *text;
};
struct TextAndFlag {
    char *text;
    int32_t flag;
};

void *textData(uint32_t tag, const char *signature, const char *text) {
    auto *d = newData<Text>(tag, signature);
    d->text = poolText(text);
    return d;
}

void *textAndFlagData(uint32_t tag, const char *signature, const char *text, int32_t flag) {
    auto *d = newData<TextAndFlag>(tag, signature);
    d->text = poolText(text);
    d->flag = flag;
    return d;
}
} // namespace

void *labelData(const char *text) { return textData(GUI_TAG_LABEL, GUI_LABEL_SIGNATURE, text); }

void *groupBoxData(const char *title) {
    return textData(GUI_TAG_GROUPBOX, GUI_GROUPBOX_SIGNATURE, title);
}

void *rowColData(int32_t columns) {
    auto *d = newData<RowColManagerData>(GUI_TAG_ROWCOL, GUI_ROWCOL_SIGNATURE);
    d->columns = columns;
    return d;
}

void *pushButtonData(const char *label) {
    return textData(GUI_TAG_PUSHBUTTON, GUI_PUSHBUTTON_SIGNATURE, label);
}

void *editBoxData(int32_t maxLength, int32_t columns, int32_t rows, const char *text) {
    auto *d = newData<EditBoxData>(GUI_TAG_EDITBOX, GUI_EDITBOX_SIGNATURE);
    d->maxLength = maxLength;
    d->columns = columns;
    d->rows = rows;
    d->text = poolText(text);
    return d;
}

void *selectionData(const char *label, int32_t set) {
    return textAndFlagData(GUI_TAG_SELECTION, GUI_SELECTION_SIGNATURE, label, set);
}

void *radioManagerData() {
    return newData<RadioManagerData>(GUI_TAG_RADIOMANAGER, GUI_RADIOMANAGER_SIGNATURE);
}

void *radioButtonData(const char *label, int32_t set) {
    return textAndFlagData(GUI_TAG_RADIOBUTTON, GUI_RADIOBUTTON_SIGNATURE, label, set);
}

void *listBoxData(int32_t multiple) {
    auto *d = newData<ListBoxData>(GUI_TAG_LISTBOX, GUI_LISTBOX_SIGNATURE);
    d->multiple = multiple;
    return d;
}

void *extendedListBoxData(int32_t multiple, int32_t width, int32_t visible) {
    auto *d = newData<ExtendedListBoxData>(GUI_TAG_EXTLISTBOX, GUI_EXTLISTBOX_SIGNATURE);
    d->multiple = multiple;
    d->width = width;
    d->visible = visible;
    return d;
}

void *listItemData(const char *text, int32_t selected) {
    return textAndFlagData(GUI_TAG_LISTITEM, GUI_LISTITEM_SIGNATURE, text, selected);
}

void *comboBoxData(int32_t selected, int32_t userEntry, int32_t columns) {
    auto *d = newData<ComboBoxData>(GUI_TAG_COMBOBOX, GUI_COMBOBOX_SIGNATURE);
    d->selected = selected;
    d->userEntry = userEntry;
    d->columns = columns;
    return d;
}

void *comboItemData(const char *text) {
    return textData(GUI_TAG_COMBOITEM, GUI_COMBOITEM_SIGNATURE, text);
}

void *numInputData(int32_t value, int32_t maximum, int32_t minimum, int32_t columns) {
    auto *d = newData<NumInputData>(GUI_TAG_NUMINPUT, GUI_NUMINPUT_SIGNATURE);
    d->value = value;
    d->maximum = maximum;
    d->minimum = minimum;
    d->columns = columns;
    return d;
}

void *dateInputData(int32_t date) {
    auto *d = newData<DateInputData>(GUI_TAG_DATEINPUT, GUI_DATEINPUT_SIGNATURE);
    d->date = date;
    return d;
}

void *timeInputData(int32_t time) {
    auto *d = newData<TimeInputData>(GUI_TAG_TIMEINPUT, GUI_TIMEINPUT_SIGNATURE);
    d->time = time;
    return d;
}

int32_t dateTime(int32_t year, int32_t month, int32_t day) {
    KxDateStruct date{year, month, day, 0};
    int32_t t = 0;
    TimeFromDate(&t, &date);
    return t;
}

int32_t timeOfDay(int32_t hours, int32_t minutes) {
    KxTimeOfDayStruct tod{hours, minutes, 0};
    int32_t t = 0;
    TimeFromTimeOfDay(&t, &tod);
    return t;
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
    if (node != nullptr) {
        auto &entry = added_[id];
        entry = {entry.second == 0 ? node : entry.first, entry.second + 1};
    }
    return node;
}

/* An id added once is answered from the table while its node is still in the tree;
** otherwise (ids added twice, nodes pruned) the tree is searched. */
void *Screen::node(int32_t id) const {
    auto it = added_.find(id);
    if (it != added_.end() && it->second.second == 1) {
        void *n = it->second.first;
        if (ObjIsA(n, KX_TAG_TREE_NODE) && TreeFromNode(n) == tree_ && itemOf(n) != nullptr &&
            itemOf(n)->itemId == id)
            return n;
    }
    return findNode(tree_, id);
}
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
