/* screencheck.cpp - walks a loaded screen and names every reference and nesting that the
** library would not act on as written. */
#include "screencheck.h"

#include <cstring>
#include <unordered_map>

#include "kx.h"
#include "screentypes.h"

namespace screenfile {
namespace {

/* A code and the item types that go with it, named for messages. */
struct Pairing {
    uint32_t code;
    uint32_t types[2];
    const char *typeNames;

    bool with(uint32_t type) const { return type == types[0] || type == types[1]; }
};

/* The items that only the item above them builds, and the types that hold them. */
const Pairing kEntries[] = {
    {ComboItem, {ComboBox, ComboBox}, "a ComboBox"},
    {ListItem, {ListBox, ExtendedListBox}, "a ListBox or an ExtendedListBox"},
    {RadioButton, {RadioManager, RadioManager}, "a RadioManager"},
    {TabPage, {TabManager, StackedTabManager}, "a TabManager or a StackedTabManager"}};

/* The types that build any items under them into a form of their own. */
bool holdsAnyItem(uint32_t type) {
    return type == GroupBox || type == TabPage || type == RowColManager;
}

const Pairing *entryOf(uint32_t type) {
    for (const Pairing &entry : kEntries)
        if (entry.code == type) return &entry;
    return nullptr;
}

/* The entry that `type` holds, when it holds entries. */
const Pairing *entryHeldBy(uint32_t type) {
    for (const Pairing &entry : kEntries)
        if (entry.with(type)) return &entry;
    return nullptr;
}

/* "a Label", "an EditBox", "an item of type 99". */
std::string named(uint32_t type) {
    const char *name = typeName(type);
    if (!name) return "an item of type " + std::to_string(type);
    return std::string(std::strchr("AEIOU", name[0]) ? "an " : "a ") + name;
}

std::string shortPlace(Place place) {
    return std::to_string(place.line) + ":" + std::to_string(place.column);
}

/* The types that an action kind acts on, for the kinds that do nothing to others. */
const Pairing kKindTargets[] = {
    {ACTION_SET, {selectionItem, RadioButton}, "a selectionItem or a RadioButton"},
    {ACTION_CLEAR, {selectionItem, selectionItem}, "a selectionItem"},
    {ACTION_CLOSE, {PushButton, PushButton}, "a PushButton"}};

const char *actionName(int32_t kind) {
    for (const NamedCode &entry : kActionKinds)
        if (entry.code == kind) return entry.name;
    return nullptr;
}

class Checker {
public:
    explicit Checker(const Loaded &screen) : screen_(screen) {}

    std::vector<Problem> run() {
        TreeWalk(screen_.tree(), indexNode, this, 0);
        TreeWalk(screen_.tree(), checkNode, this, 0);
        return std::move(problems_);
    }

private:
    static int indexNode(void *self, void *node) {
        if (const ScreenItem *item = itemOf(node))
            static_cast<Checker *>(self)->firstWithId_.emplace(item->itemId, node);
        return 1;
    }

    static int checkNode(void *self, void *node) {
        if (itemOf(node)) static_cast<Checker *>(self)->checkItem(node);
        return 1;
    }

    void report(const void *recordOrField, std::string message) {
        problems_.push_back({screen_.placeOf(recordOrField), std::move(message)});
    }

    void checkItem(void *node) {
        const ScreenItem *item = itemOf(node);
        void *first = firstWithId_.at(item->itemId);
        if (first != node)
            report(&item->itemId, "id " + std::to_string(item->itemId) +
                                      " is also used by the item at " +
                                      shortPlace(screen_.placeOf(itemOf(first))) +
                                      "; actions and attachments find that one");
        checkPlaceInTree(node, item);
        checkAttachments(node, item);
        checkActions(item);
    }

    void checkPlaceInTree(void *node, const ScreenItem *item) {
        const ScreenItem *parent = TreeNodeHasParent(node) ? itemOf(TreeNodeParent(node)) : nullptr;
        const Pairing *entry = entryOf(item->itemType);
        const Pairing *held = parent ? entryHeldBy(parent->itemType) : nullptr;
        if (entry && !(parent && entry->with(parent->itemType)))
            report(item, named(item->itemType) + " outside " + entry->typeNames +
                             " is never shown");
        else if (held && held->code != item->itemType)
            report(item, named(item->itemType) + " in " + named(parent->itemType) +
                             " is never shown: " + named(parent->itemType) + " shows its " +
                             typeName(held->code) + " items only");
        else if (parent && !held && !holdsAnyItem(parent->itemType))
            report(item, named(parent->itemType) + " holds no items: this one is built in the "
                                                   "screen's form");
        if (parent && parent->itemType == RowColManager && item->attachments)
            report(&item->attachments,
                   "attachments take an item of a RowColManager out of the grid");
    }

    /* The library attaches a side to the outer widget of the first item with the id; a
    ** form takes attachments between its own children only. */
    void checkAttachments(void *node, const ScreenItem *item) {
        for (int side = 0; item->attachments && side < 4; ++side) {
            const ScreenAttachment *a = item->attachments[side];
            if (!a || a->kind != ATTACH_ITEM) continue;
            const std::string which = std::string("the ") + kAttachSides[side].name +
                                      " side is attached to ";
            auto target = firstWithId_.find(a->itemId);
            if (target == firstWithId_.end())
                report(a, which + "id " + std::to_string(a->itemId) + ", which no item has");
            else if (target->second == node)
                report(a, which + "the item itself");
            else if (parentOf(target->second) != parentOf(node))
                report(a, which + "item " + std::to_string(a->itemId) +
                              ", which lies in another form: attach items to their siblings");
        }
    }

    static void *parentOf(void *node) {
        return TreeNodeHasParent(node) ? TreeNodeParent(node) : nullptr;
    }

    void checkActions(const ScreenItem *item) {
        if (item->actions) ListWalk(item->actions, checkElement, this);
    }

    static int checkElement(void *self, void *element) {
        auto *action = static_cast<const ScreenAction *>(ListElementItem(element));
        if (action) static_cast<Checker *>(self)->checkAction(action);
        return 1;
    }

    void checkAction(const ScreenAction *action) {
        const char *kind = actionName(action->kind);
        if (!kind) return; // raw codes do nothing
        auto target = firstWithId_.find(action->targetId);
        if (target == firstWithId_.end()) {
            report(action, std::string("the ") + kind + " action aims at id " +
                               std::to_string(action->targetId) + ", which no item has");
            return;
        }
        const uint32_t type = itemOf(target->second)->itemType;
        for (const Pairing &rule : kKindTargets)
            if (rule.code == static_cast<uint32_t>(action->kind) && !rule.with(type))
                report(action, std::string("the ") + kind + " action aims at " + named(type) +
                                   ", which it does nothing to: it acts on " + rule.typeNames);
    }

    const Loaded &screen_;
    std::unordered_map<int32_t, void *> firstWithId_;
    std::vector<Problem> problems_;
};

} // namespace

std::vector<Problem> check(const Loaded &screen) { return Checker(screen).run(); }

std::vector<Problem> checkText(const std::string &text) {
    Loaded screen;
    Problem failure;
    if (parse(text, screen, failure.message, &failure.place)) return check(screen);
    const std::string place = describe(failure.place) + ": ";
    if (failure.message.compare(0, place.size(), place) == 0) failure.message.erase(0, place.size());
    return {failure};
}

} // namespace screenfile
