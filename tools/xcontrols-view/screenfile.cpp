/* screenfile.cpp - builds a screen definition tree from a parsed screen file, checking
** every value on the way and naming the place of the first one that is wrong. */
#include "screenfile.h"

#include <cctype>
#include <cstdio>
#include <cstring>
#include <limits>
#include <utility>

#include "kx.h"
#include "screentypes.h"
#include "strictjson.h"

namespace screenfile {

using nlohmann::json;

namespace {

/* The first thing wrong with a document: where, and why. */
struct Failure {
    std::string where;
    std::string why;
};

[[noreturn]] void fail(const std::string &where, const std::string &why) {
    throw Failure{where, why};
}

std::string describe(const json &v) {
    switch (v.type()) {
    case json::value_t::null: return "null";
    case json::value_t::boolean: return "a boolean";
    case json::value_t::string: return "a string";
    case json::value_t::number_integer:
    case json::value_t::number_unsigned: return "an integer";
    case json::value_t::number_float: return "a number with a fraction";
    case json::value_t::object: return "an object";
    case json::value_t::array: return "an array";
    default: return "a value of another kind";
    }
}

void expectObject(const json &v, const std::string &path) {
    if (!v.is_object()) fail(path, "expected an object, got " + describe(v));
}

void expectArray(const json &v, const std::string &path) {
    if (!v.is_array()) fail(path, "expected an array, got " + describe(v));
}

/* Rejects fields that `allowed` does not name (most likely typing mistakes). */
void onlyFields(const json &obj, const std::string &path,
                std::initializer_list<const char *> allowed, const std::string &what) {
    for (const auto &field : obj.items()) {
        bool known = false;
        std::string list;
        for (const char *name : allowed) {
            known = known || field.key() == name;
            list += (list.empty() ? "" : ", ") + std::string(name);
        }
        if (!known) fail(memberPath(path, field.key()), "unknown field; " + what + " has " + list);
    }
}

const json *member(const json &obj, const char *name) {
    auto it = obj.find(name);
    return it == obj.end() ? nullptr : &*it;
}

const json &required(const json &obj, const std::string &path, const char *name) {
    const json *v = member(obj, name);
    if (!v) fail(path, std::string("missing field \"") + name + "\"");
    return *v;
}

int64_t integerIn(const json &v, const std::string &path, int64_t low, int64_t high) {
    if (!v.is_number_integer()) fail(path, "expected an integer, got " + describe(v));
    bool fits = v.is_number_unsigned() ? v.get<uint64_t>() <= static_cast<uint64_t>(high)
                                       : v.get<int64_t>() >= low && v.get<int64_t>() <= high;
    if (!fits)
        fail(path, "the integer " + v.dump() + " is out of range (" + std::to_string(low) +
                       " to " + std::to_string(high) + ")");
    return v.get<int64_t>();
}

int32_t int32Of(const json &v, const std::string &path) {
    return static_cast<int32_t>(integerIn(v, path, std::numeric_limits<int32_t>::min(),
                                          std::numeric_limits<int32_t>::max()));
}

int32_t flagOf(const json &v, const std::string &path) {
    if (v.is_boolean()) return v.get<bool>() ? 1 : 0;
    if (!v.is_number_integer()) fail(path, "expected true, false or an integer, got " + describe(v));
    return int32Of(v, path);
}

/* A name from `table`, or an integer taken as a raw code. */
template <size_t N>
int32_t namedCodeOf(const json &v, const std::string &path, const NamedCode (&table)[N],
                    const char *what) {
    if (v.is_number_integer()) return int32Of(v, path);
    if (!v.is_string()) fail(path, std::string("expected ") + what + " name or code, got " + describe(v));
    int32_t code = 0;
    if (!codeOf(table, v.get<std::string>(), code))
        fail(path, std::string("unknown ") + what + " " + v.dump() + " (known: " + namesOf(table) + ")");
    return code;
}

/* Whether `s` has the shape of `pattern`, in which '9' stands for a digit: no sign, no
** blank and no missing digit gets through to the numbers. */
bool shaped(const std::string &s, const char *pattern) {
    if (s.size() != std::strlen(pattern)) return false;
    for (size_t i = 0; i < s.size(); ++i)
        if (pattern[i] == '9' ? !std::isdigit(static_cast<unsigned char>(s[i])) : s[i] != pattern[i])
            return false;
    return true;
}

/* "YYYY-MM-DD" as local midnight, the form the date input shows. */
bool dateFromText(const std::string &s, int32_t &t) {
    KxDateStruct date{};
    return shaped(s, "9999-99-99") &&
           std::sscanf(s.c_str(), "%4d-%2d-%2d", &date.iYear, &date.iMonth, &date.iDay) == 3 &&
           date.iMonth >= 1 && date.iMonth <= 12 && date.iDay >= 1 &&
           date.iDay <= TimeDaysInMonth(date.iMonth, date.iYear) && TimeFromDate(&t, &date);
}

/* "HH:MM" or "HH:MM:SS" as seconds after a UTC midnight, the form the time input shows.
** Midnight is taken one day later, since 0 itself means "now". */
bool timeFromText(const std::string &s, int32_t &t) {
    KxTimeOfDayStruct tod{};
    const bool shapeOk = shaped(s, "99:99") || shaped(s, "99:99:99");
    if (!shapeOk ||
        std::sscanf(s.c_str(), "%2d:%2d:%2d", &tod.iHours, &tod.iMinutes, &tod.iSeconds) < 2 ||
        tod.iHours > 23 || tod.iMinutes > 59 || tod.iSeconds > 59 || !TimeFromTimeOfDay(&t, &tod))
        return false;
    if (t == 0) t = 24 * 3600;
    return true;
}

/* A date or time: seconds, "now" (0, which the inputs show as the current time), or text
** that `convert` turns into seconds. */
int32_t secondsOf(const json &v, const std::string &path, const char *expected,
                  bool (*convert)(const std::string &, int32_t &)) {
    if (v.is_number_integer()) return int32Of(v, path);
    if (!v.is_string()) fail(path, std::string(expected) + ", got " + describe(v));
    int32_t t = 0;
    const std::string s = v.get<std::string>();
    if (s != "now" && !convert(s, t)) fail(path, std::string(expected) + ", got " + v.dump());
    return t;
}

/* Owns one reference of an object until the guard goes. */
class ObjectRef {
public:
    explicit ObjectRef(void *h) : h_(h) {}
    ~ObjectRef() { ObjReleaseInternal(&h_); }
    ObjectRef(const ObjectRef &) = delete;
    ObjectRef &operator=(const ObjectRef &) = delete;
    void *get() const { return h_; }
private:
    void *h_;
};

void *newObject(uint32_t tag, const char *signature, uint32_t size, const std::string &path) {
    void *h = nullptr;
    if (!ObjCreateInternal(&h, size, tag, signature, 0, MemGetDefaultPoolId()))
        fail(path, "out of memory");
    return h;
}

} // namespace

/* Walks a parsed document and builds the tree into a Loaded. Throws Failure. */
class Builder {
public:
    Builder(Loaded &out, const Places &places) : out_(out), places_(places) {}

    void screen(const json &doc) {
        expectObject(doc, "");
        // "$schema" names the schema that editors check the file against.
        onlyFields(doc, "", {"$schema", "jobId", "title", "width", "height", "items", "comment"},
                   "a screen");
        if (const json *v = member(doc, "$schema")) stringOf(*v, "$schema");
        if (const json *v = member(doc, "jobId")) out_.jobId = int32Of(*v, "jobId");
        if (const json *v = member(doc, "title")) out_.title = stringOf(*v, "title");
        if (const json *v = member(doc, "comment")) stringOf(*v, "comment");
        if (const json *v = member(doc, "width")) out_.width = windowSideOf(*v, "width");
        if (const json *v = member(doc, "height")) out_.height = windowSideOf(*v, "height");
        if (!TreeCreateFromPool(&out_.tree_, 0, MemGetDefaultPoolId())) fail("", "out of memory");
        items(required(doc, "", "items"), "items", nullptr, 1);
    }

private:
    static std::string stringOf(const json &v, const std::string &path) {
        if (!v.is_string()) fail(path, "expected a string, got " + describe(v));
        return v.get<std::string>();
    }

    static int32_t windowSideOf(const json &v, const std::string &path) {
        return static_cast<int32_t>(integerIn(v, path, 0, kMaxWindowSide));
    }

    /* The items of one level; `depth` 1 is the top level. */
    void items(const json &list, const std::string &path, void *parentNode, int depth) {
        expectArray(list, path);
        for (size_t i = 0; i < list.size(); ++i) item(list[i], indexPath(path, i), parentNode, depth);
    }

    void item(const json &obj, const std::string &path, void *parentNode, int depth) {
        // The library lays out and frees a screen level by level, recursively.
        if (depth > kMaxItemDepth)
            fail(path, "items nested deeper than " + std::to_string(kMaxItemDepth) + " levels");
        if (++itemCount_ > kMaxItems)
            fail(path, "more than " + std::to_string(kMaxItems) + " items in the screen");
        expectObject(obj, path);
        onlyFields(obj, path,
                   {"type", "id", "hidden", "disabled", "data", "attach", "actions", "children",
                    "comment", "answerClearText"},
                   "an item");
        ObjectRef ref(newObject(GUI_TAG_SCREEN_ITEM, GUI_SCREEN_ITEM_SIGNATURE,
                                sizeof(ScreenItem), path));
        auto *rec = static_cast<ScreenItem *>(ref.get());
        const TypeDef *type = typeOf(required(obj, path, "type"), memberPath(path, "type"), rec);
        rec->itemId = int32Of(required(obj, path, "id"), memberPath(path, "id"));
        notePlace(rec, obj);
        notePlace(&rec->itemId, obj["id"]);
        if (const json *v = member(obj, "hidden")) rec->hidden = flagOf(*v, memberPath(path, "hidden"));
        if (const json *v = member(obj, "comment")) stringOf(*v, memberPath(path, "comment"));
        if (const json *v = member(obj, "disabled"))
            rec->disabled = flagOf(*v, memberPath(path, "disabled"));
        itemData(member(obj, "data"), memberPath(path, "data"), type, rec);
        if (const json *v = member(obj, "answerClearText"))
            clearTextAnswer(*v, memberPath(path, "answerClearText"), type, rec);
        if (const json *v = member(obj, "attach")) {
            attachments(*v, memberPath(path, "attach"), rec);
            notePlace(&rec->attachments, *v);
        }
        if (const json *v = member(obj, "actions")) actions(*v, memberPath(path, "actions"), rec);

        void *node = parentNode ? TreeAddItem(parentNode, rec, KX_TREE_COOKIE_OBJECT)
                                : TreeAddRootItem(out_.tree_, rec, KX_TREE_COOKIE_OBJECT);
        if (!node) fail(path, "out of memory");
        const json *children = member(obj, "children");
        if (children && !children->is_null()) items(*children, memberPath(path, "children"), node, depth + 1);
    }

    /* A type name, or an integer taken as a raw code (a type the library may not know). */
    const TypeDef *typeOf(const json &v, const std::string &path, ScreenItem *rec) {
        if (v.is_number_integer()) {
            rec->itemType = static_cast<uint32_t>(integerIn(v, path, 0, UINT32_MAX));
            return typeByCode(rec->itemType);
        }
        if (!v.is_string()) fail(path, "expected an item type name or code, got " + describe(v));
        const TypeDef *type = typeByName(v.get<std::string>());
        if (!type) {
            std::string why = "unknown item type " + v.dump();
            if (const TypeDef *near = typeByNameNoCase(v.get<std::string>()))
                why += std::string(" (did you mean \"") + near->name + "\"?)";
            fail(path, why);
        }
        rec->itemType = type->code;
        return type;
    }

    /* Asking for a password in clear in the answers is only for a type that keeps one. */
    static void clearTextAnswer(const json &v, const std::string &path, const TypeDef *type,
                                ScreenItem *rec) {
        if (!flagOf(v, path)) return;
        bool keepsClearText = false;
        for (size_t i = 0; type && i < type->fieldCount; ++i)
            keepsClearText |= type->fields[i].kind == FieldKind::ClearPassword;
        if (!keepsClearText) fail(path, "only a ChangePassword keeps a password in clear");
        rec->clientWord1 |= kAnswerClearText;
    }

    /* Absent: a record of the type with every field zero or null. null: no record. */
    void itemData(const json *v, const std::string &path, const TypeDef *type, ScreenItem *rec) {
        if (v && v->is_null()) return;
        if (!type) {
            if (v) fail(path, "item type code " + std::to_string(rec->itemType) +
                                  " has no item data record; leave \"data\" out or null");
            return;
        }
        rec->itemData = newObject(type->tag, type->signature, type->size, path);
        if (!v) return;
        expectObject(*v, path);
        for (const auto &field : v->items()) {
            const FieldDef *def = fieldByName(*type, field.key());
            if (!def) fail(memberPath(path, field.key()), unknownFieldOf(*type));
            store(static_cast<char *>(rec->itemData) + def->offset, def->kind, field.value(),
                  memberPath(path, field.key()));
        }
    }

    static std::string unknownFieldOf(const TypeDef &type) {
        std::string why = std::string("unknown field; the data of a ") + type.name + " has ";
        for (size_t i = 0; i < type.fieldCount; ++i)
            why += (i ? ", " : "") + std::string(type.fields[i].name);
        return why;
    }

    static void store(char *slot, FieldKind kind, const json &v, const std::string &path) {
        int32_t word = 0;
        switch (kind) {
        case FieldKind::Text:
        case FieldKind::ClearPassword: {
            if (!v.is_null() && !v.is_string()) fail(path, "expected a string or null, got " + describe(v));
            char *text = v.is_null() ? nullptr
                                     : StrDuplicateIntoPool(v.get<std::string>().c_str(),
                                                            MemGetDefaultPoolId());
            if (!v.is_null() && !text) fail(path, "out of memory");
            std::memcpy(slot, &text, sizeof text); // the record owns it from here
            return;
        }
        case FieldKind::Word: {
            auto value = static_cast<intptr_t>(integerIn(v, path, INTPTR_MIN, INTPTR_MAX));
            std::memcpy(slot, &value, sizeof value);
            return;
        }
        case FieldKind::Int: word = int32Of(v, path); break;
        case FieldKind::Flag: word = flagOf(v, path); break;
        case FieldKind::Date:
            word = secondsOf(v, path, "expected a date as \"YYYY-MM-DD\", \"now\" or seconds",
                             dateFromText);
            break;
        case FieldKind::Time:
            word = secondsOf(v, path,
                             "expected a time as \"HH:MM\", \"HH:MM:SS\", \"now\" or seconds",
                             timeFromText);
            break;
        }
        std::memcpy(slot, &word, sizeof word);
    }

    /* An object of sides; a side left out or given as null is a null entry. */
    void attachments(const json &v, const std::string &path, ScreenItem *rec) {
        if (v.is_null()) return;
        expectObject(v, path);
        std::array<ScreenAttachment *, 4> sides{};
        for (const auto &side : v.items()) {
            std::string sidePath = memberPath(path, side.key());
            int32_t index = 0;
            if (!codeOf(kAttachSides, side.key(), index))
                fail(sidePath, "unknown attachment side; sides are " + namesOf(kAttachSides));
            if (!side.value().is_null()) sides[index] = attachment(side.value(), sidePath);
        }
        out_.arrays_.push_back(sides);
        rec->attachments = out_.arrays_.back().data();
    }

    ScreenAttachment *attachment(const json &v, const std::string &path) {
        expectObject(v, path);
        onlyFields(v, path, {"kind", "position", "item", "offset"}, "an attachment");
        ScreenAttachment side{};
        side.kind = namedCodeOf(required(v, path, "kind"), memberPath(path, "kind"), kAttachKinds,
                                "attachment kind");
        const json *position = member(v, "position");
        const json *item = member(v, "item");
        if (position) side.position = int32Of(*position, memberPath(path, "position"));
        if (item) side.itemId = int32Of(*item, memberPath(path, "item"));
        if (const json *offset = member(v, "offset")) side.offset = int32Of(*offset, memberPath(path, "offset"));
        requireFor(side.kind, ATTACH_POSITION, position, path, "position");
        requireFor(side.kind, ATTACH_ITEM, item, path, "item");
        out_.sides_.push_back(side);
        notePlace(&out_.sides_.back(), item ? *item : v);
        return &out_.sides_.back();
    }

    /* "position" belongs to position attachments and "item" to item attachments; raw
    ** kinds may carry any field, since the record has them all. */
    static void requireFor(int32_t kind, int32_t owner, const json *given, const std::string &path,
                           const char *field) {
        bool named = kind == ATTACH_CENTRE || kind == ATTACH_POSITION || kind == ATTACH_ITEM;
        if (kind == owner && !given) fail(path, std::string("missing field \"") + field + "\"");
        if (named && kind != owner && given)
            fail(memberPath(path, field), std::string("does not apply to a ") +
                                              kAttachKinds[kind - 1].name + " attachment");
    }

    void actions(const json &v, const std::string &path, ScreenItem *rec) {
        if (v.is_null()) return;
        expectArray(v, path);
        if (!ListCreateFromPool(&rec->actions, 0, MemGetDefaultPoolId())) fail(path, "out of memory");
        for (size_t i = 0; i < v.size(); ++i) {
            std::string actionPath = indexPath(path, i);
            expectObject(v[i], actionPath);
            onlyFields(v[i], actionPath, {"kind", "target"}, "an action");
            ObjectRef action(newObject(GUI_TAG_ACTION, GUI_ACTION_SIGNATURE, sizeof(ScreenAction),
                                       actionPath));
            auto *a = static_cast<ScreenAction *>(action.get());
            a->kind = namedCodeOf(required(v[i], actionPath, "kind"), memberPath(actionPath, "kind"),
                                  kActionKinds, "action kind");
            a->targetId = int32Of(required(v[i], actionPath, "target"),
                                  memberPath(actionPath, "target"));
            notePlace(a, v[i]["target"]);
            if (!ListAddLastItem(rec->actions, a)) fail(actionPath, "out of memory");
        }
    }

    void notePlace(const void *recordOrField, const json &v) {
        out_.places_.emplace(recordOrField, places_.of(v));
    }

    Loaded &out_;
    const Places &places_;
    size_t itemCount_ = 0;
};

Loaded::~Loaded() { reset(); }

void *Loaded::take() {
    void *tree = tree_;
    tree_ = nullptr;
    return tree;
}

void Loaded::reset() {
    ObjReleaseInternal(&tree_);
    jobId = 0;
    title.clear();
    width = height = 0;
    places_.clear();
    sides_.clear();
    arrays_.clear();
}

Place Loaded::placeOf(const void *recordOrField) const {
    auto found = places_.find(recordOrField);
    return found == places_.end() ? Place{} : found->second;
}

bool parse(const std::string &text, Loaded &out, std::string &error, Place *errorPlace) {
    out.reset();
    json doc;
    Places places;
    if (!parseStrictJson(text, doc, error, &places)) {
        if (errorPlace) *errorPlace = places.failure;
        return false;
    }
    try {
        Builder(out, places).screen(doc);
        return true;
    } catch (const Failure &failure) {
        out.reset();
        error = (failure.where.empty() ? "top level" : failure.where) + ": " + failure.why;
        if (errorPlace) *errorPlace = places.ofPath(doc, failure.where);
        return false;
    }
}

bool parseUpdate(const std::string &text, Loaded &out, bool &wholeScreen, std::string &error) {
    out.reset();
    json doc;
    if (!parseStrictJson(text, doc, error)) return false;
    try {
        expectObject(doc, "");
        onlyFields(doc, "", {"update", "items", "title", "comment"}, "an update");
        const json &mode = required(doc, "", "update");
        if (mode != "items" && mode != "screen") fail("update", "expected \"items\" or \"screen\"");
        wholeScreen = mode == "screen";
    } catch (const Failure &failure) {
        error = (failure.where.empty() ? "top level" : failure.where) + ": " + failure.why;
        return false;
    }
    // The rest is a screen file's top level: its items, title and comment.
    doc.erase("update");
    return parse(doc.dump(), out, error);
}

const char *typeName(uint32_t code) {
    const TypeDef *type = typeByCode(code);
    return type ? type->name : nullptr;
}

} // namespace screenfile
