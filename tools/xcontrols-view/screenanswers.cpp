/* screenanswers.cpp - the answer document: what the user chose and typed, read back from
** the item data that the library writes while a screen is shown. */
#include <cstring>
#include <string>
#include <unordered_set>
#include <utility>
#include <vector>

#include <nlohmann/json.hpp>

#include "kx.h"
#include "screenfile.h"
#include "screentypes.h"

namespace screenfile {

using nlohmann::ordered_json;

namespace {

/* The item's data record when it is the one its type defines (tag and layout), else null. */
const char *dataOf(const ScreenItem *item, const TypeDef *&type) {
    type = item ? typeByCode(item->itemType) : nullptr;
    if (!type || !ObjIsA(item->itemData, type->tag) || !ObjHasLayout(item->itemData, type->signature))
        return nullptr;
    return static_cast<const char *>(item->itemData);
}

template <typename T>
T fieldAt(const char *data, size_t offset) {
    T value;
    std::memcpy(&value, data + offset, sizeof value);
    return value;
}

ordered_json textOrNull(const char *text) { return text ? ordered_json(text) : ordered_json(); }

std::string twoDigits(int32_t n) { return (n < 10 ? "0" : "") + std::to_string(n); }

/* Dates as the date input shows them (local), times as the time input does (UTC). */
std::string isoDate(int32_t t) {
    KxTimeStruct tm{};
    TimeToBreakdownStruct(&tm, t);
    return std::to_string(tm.iYear) + "-" + twoDigits(tm.iMonth) + "-" + twoDigits(tm.iDay);
}

std::string isoTime(int32_t t) {
    KxTimeStruct tm{};
    TimeToUTCBreakdownStruct(&tm, t);
    return twoDigits(tm.iHours) + ":" + twoDigits(tm.iMinutes);
}

ordered_json fieldValue(const FieldDef &field, const char *data) {
    switch (field.kind) {
    case FieldKind::Text:
    case FieldKind::ClearPassword: return textOrNull(fieldAt<const char *>(data, field.offset));
    case FieldKind::Flag: return fieldAt<int32_t>(data, field.offset) != 0;
    case FieldKind::Word: return static_cast<int64_t>(fieldAt<intptr_t>(data, field.offset));
    case FieldKind::Int:
    case FieldKind::Date:
    case FieldKind::Time: break;
    }
    return fieldAt<int32_t>(data, field.offset);
}

/* Calls fn(child item, child data) for each child of `node` of type `code` whose data is
** that type's record. */
template <typename Fn>
void forEachChild(void *node, uint32_t code, Fn fn) {
    for (void *child = TreeNodeFirstChild(node); child; TreeNextSibling(&child, child)) {
        const ScreenItem *item = itemOf(child);
        const TypeDef *type = nullptr;
        const char *data = dataOf(item, type);
        if (data && type->code == code) fn(item, data);
    }
}

/* Values that live in an item's children: the text of a combo box's selected entry, a
** list's selected entries, a radio manager's set button. */
void addChildValues(ordered_json &value, void *node, const ScreenItem *item, const char *data) {
    switch (item->itemType) {
    case ComboBox: {
        int32_t wanted = reinterpret_cast<const ComboBoxData *>(data)->selected;
        int32_t position = 0;
        ordered_json text;
        forEachChild(node, ComboItem, [&](const ScreenItem *, const char *entry) {
            const char *entryText = reinterpret_cast<const ComboItemData *>(entry)->text;
            if (entryText && ++position == wanted) text = entryText;
        });
        value["selectedText"] = text;
        break;
    }
    case ListBox:
    case ExtendedListBox: {
        ordered_json positions = ordered_json::array(), texts = ordered_json::array();
        int32_t position = 0;
        forEachChild(node, ListItem, [&](const ScreenItem *, const char *entry) {
            auto *listItem = reinterpret_cast<const ListItemData *>(entry);
            if (!listItem->text) return;
            ++position;
            if (!listItem->selected) return;
            positions.push_back(position);
            texts.push_back(listItem->text);
        });
        value["selected"] = positions;
        value["selectedTexts"] = texts;
        break;
    }
    case RadioManager: {
        ordered_json chosen;
        forEachChild(node, RadioButton, [&](const ScreenItem *button, const char *entry) {
            if (chosen.is_null() && reinterpret_cast<const RadioButtonData *>(entry)->set)
                chosen = button->itemId;
        });
        value["selected"] = chosen;
        break;
    }
    default: break;
    }
}

/* Whether both entries of a change of password were typed and are the same: what a
** client needs to know without seeing either. */
bool passwordsMatch(const char *data) {
    auto *change = reinterpret_cast<const ChangePasswordData *>(data);
    return change->newPassword && change->confirmation &&
           std::strcmp(change->newPassword, change->confirmation) == 0;
}

/* The value entry of one item, or null for an item that holds no value. */
ordered_json valueOf(void *node) {
    const ScreenItem *item = itemOf(node);
    const TypeDef *type = nullptr;
    const char *data = dataOf(item, type);
    if (!data) return nullptr;
    ordered_json value = {{"type", type->name}};
    for (size_t i = 0; i < type->fieldCount; ++i) {
        const FieldDef &field = type->fields[i];
        if (!field.answer) continue;
        if (field.kind == FieldKind::ClearPassword && !(item->clientWord1 & kAnswerClearText))
            continue;
        value[field.name] = fieldValue(field, data);
        int32_t t = fieldAt<int32_t>(data, field.offset);
        if (field.kind == FieldKind::Date) value["iso"] = isoDate(t);
        if (field.kind == FieldKind::Time) value["iso"] = isoTime(t);
    }
    addChildValues(value, node, item, data);
    if (item->itemType == ChangePassword) value["passwordsMatch"] = passwordsMatch(data);
    return value.size() > 1 ? value : ordered_json();
}

/* The values by item id, the first item of an id in pre-order winning. The ordered
** object searches its keys one by one on every insertion; the ids seen are kept in a
** table instead, and entries are appended to the object's vector directly, so that a
** screen of thousands of items is answered in linear time. */
struct Collect {
    ordered_json values = ordered_json::object();
    std::unordered_set<int32_t> seen;
};

int collectValue(void *ctx, void *node) {
    auto *collect = static_cast<Collect *>(ctx);
    const ScreenItem *item = itemOf(node);
    const int32_t id = item ? item->itemId : 0;
    ordered_json value = valueOf(node);
    if (value.is_null() || !collect->seen.insert(id).second) return 1;
    using Entries = std::vector<ordered_json::object_t::value_type>;
    Entries &entries = collect->values.get_ref<ordered_json::object_t &>();
    entries.emplace_back(std::to_string(id), std::move(value));
    return 1;
}

} // namespace

std::string answers(void *tree, int32_t jobId, std::optional<int32_t> closedBy) {
    Collect collect;
    TreeWalk(tree, collectValue, &collect, 0);
    ordered_json doc = {{"jobId", jobId},
                        {"closedBy", closedBy ? ordered_json(*closedBy) : ordered_json()},
                        {"values", collect.values}};
    // Texts typed in a locale other than UTF-8 hold bytes that JSON cannot carry: they
    // become U+FFFD rather than stopping the program.
    return doc.dump(2, ' ', false, ordered_json::error_handler_t::replace);
}

} // namespace screenfile
