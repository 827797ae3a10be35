/* screens.h - building screen definition trees as a client does (tests, benchmarks). */
#ifndef XC_TEST_SCREENS_H
#define XC_TEST_SCREENS_H

#include <array>
#include <cstdint>
#include <deque>
#include <memory>
#include <unordered_map>

#include "guiscreendef.h"
#include "kx.h"
#include "screentypes.h"

namespace xt {

/* A new item data object; the caller owns its one reference. */
void *newObject(uint32_t tag, const char *signature, uint32_t size);
template <typename T>
T *newData(uint32_t tag, const char *signature) {
    return static_cast<T *>(newObject(tag, signature, sizeof(T)));
}
/* A pool copy of a text, for 's' fields (null stays null). */
char *poolText(const char *text);

/* Item data of the common types (one reference each, for Screen::add to take over). */
void *labelData(const char *text);
void *groupBoxData(const char *title);
void *rowColData(int32_t columns);
void *pushButtonData(const char *label);
void *editBoxData(int32_t maxLength, int32_t columns, int32_t rows, const char *text = nullptr);
void *selectionData(const char *label, int32_t set);
void *radioManagerData();
void *radioButtonData(const char *label, int32_t set);
void *listBoxData(int32_t multiple);
void *extendedListBoxData(int32_t multiple, int32_t width, int32_t visible);
void *listItemData(const char *text, int32_t selected = 0);
void *comboBoxData(int32_t selected, int32_t userEntry, int32_t columns = 0);
void *comboItemData(const char *text);
void *numInputData(int32_t value, int32_t maximum, int32_t minimum, int32_t columns = 0);
void *dateInputData(int32_t date); /* seconds; 0: today */
void *timeInputData(int32_t time); /* seconds; 0: now */
/* The values of date and time items: the seconds of a local date, and of a time of day
** after a UTC midnight. */
int32_t dateTime(int32_t year, int32_t month, int32_t day);
int32_t timeOfDay(int32_t hours, int32_t minutes);

/* A screen definition tree that a test builds and that is released when the object
** goes, unless the test released it (GuiFreeScreenDefAndWidgets(tree slot)). */
class Screen {
public:
    Screen();
    ~Screen();
    Screen(const Screen &) = delete;
    Screen &operator=(const Screen &) = delete;

    void *tree() const { return tree_; }
    void **slot() { return &tree_; }

    /* Appends an item under `parentNode` (null: top level) and returns its node. The
    ** item takes over the caller's reference on `itemData`. */
    void *add(void *parentNode, uint32_t type, int32_t id, void *itemData = nullptr);

    /* First node/item with the id in pre-order; null when there is none. */
    void *node(int32_t id) const;
    ScreenItem *item(int32_t id) const;

    /* Sets one side's attachment of an item (the array is made on first use); a side
    ** given as null stays null. */
    void attach(int32_t id, int side, int32_t kind, int32_t position, int32_t refId,
                int32_t offset);
    /* Gives the item an attachments array of four null sides. */
    void attachNone(int32_t id);
    void addAction(int32_t id, int32_t targetId, int32_t kind);

private:
    void *tree_ = nullptr;
    /* id -> the node added with it and how many nodes were added with it: a screen of
    ** thousands of items is built without a search of the tree per item. */
    std::unordered_map<int32_t, std::pair<void *, int>> added_;
    std::deque<ScreenAttachment> sides_;
    std::deque<std::array<ScreenAttachment *, 4>> arrays_;
};

/* Finds a node by id in any tree (pre-order, first match). */
void *findNode(void *tree, int32_t id);
using screenfile::itemOf;

/* The widget of the first (outer) or last (value) widget record of an item. */
Widget outerWidget(const ScreenItem *item);
Widget valueWidget(const ScreenItem *item);
GuiWidgetRecord *lastRecord(const ScreenItem *item);
int32_t widgetCount(const ScreenItem *item);

} // namespace xt

#endif
