/* screentypes.h - the names of the screen model: item types with their data records,
** action kinds, attachment kinds and sides; the item record of a tree node (shared by the
** screen file loader, the answers and the viewer). */
#ifndef XC_SCREENTYPES_H
#define XC_SCREENTYPES_H

#include <cstddef>
#include <cstdint>
#include <string>

#include "guiscreendef.h"
#include "kx.h"

namespace screenfile {

/* The item record that `node` carries, checked to be a screen item; null for a null node
** or any other cookie. The one reader of the tools (the loader, the answers, the viewer and
** the screen kit of the tests and benchmarks). */
inline ScreenItem *itemOf(void *node) {
    void *cookie = node ? TreeNodeCookie(node) : nullptr;
    return ObjIsA(cookie, GUI_TAG_SCREEN_ITEM) && ObjHasLayout(cookie, GUI_SCREEN_ITEM_SIGNATURE)
               ? static_cast<ScreenItem *>(cookie)
               : nullptr;
}

/* How a field of an item data record is written in the file. */
enum class FieldKind {
    Int,  /* signed 32-bit integer */
    Flag, /* true/false (or an integer) */
    Text, /* a pool string owned by the record, or null */
    Date, /* seconds; also "YYYY-MM-DD" or "now" */
    Time, /* seconds; also "HH:MM", "HH:MM:SS" or "now" */
    Word, /* a pointer-sized integer */
    ClearPassword /* a password in clear, stored as Text; answered only when the item asks */
};

struct FieldDef {
    const char *name;  /* the struct field's name in guiscreendef.h */
    FieldKind kind;
    size_t offset;
    bool answer;       /* the library writes it while the screen is shown */
};

struct TypeDef {
    const char *name;  /* the enumerator's name in guiscreendef.h */
    uint32_t code;
    uint32_t tag;      /* of the item data record */
    const char *signature;
    uint32_t size;
    const FieldDef *fields;
    size_t fieldCount;
};

/* The loader's mark in an item's clientWord1, a word that the library never reads: the
** screen file asked for the item's clear-text password fields in the answers
** ("answerClearText": true). Without it they are never printed. */
constexpr int32_t kAnswerClearText = 1;

/* Lookups; null when nothing matches. */
const TypeDef *typeByName(const std::string &name);
const TypeDef *typeByCode(uint32_t code);
/* The type whose name equals `name` ignoring case, for "did you mean" hints. */
const TypeDef *typeByNameNoCase(const std::string &name);
const FieldDef *fieldByName(const TypeDef &type, const std::string &name);

/* A name and its code, for action kinds, attachment kinds and sides. */
struct NamedCode {
    const char *name;
    int32_t code;
};
extern const NamedCode kActionKinds[7];
extern const NamedCode kAttachKinds[3];
extern const NamedCode kAttachSides[4];

/* The code of `name` in a table, or false when it has none. */
template <size_t N>
bool codeOf(const NamedCode (&table)[N], const std::string &name, int32_t &code) {
    for (const NamedCode &entry : table) {
        if (name == entry.name) {
            code = entry.code;
            return true;
        }
    }
    return false;
}

/* "a, b, c": the names of a table, for messages. */
template <size_t N>
std::string namesOf(const NamedCode (&table)[N]) {
    std::string names;
    for (const NamedCode &entry : table) names += (names.empty() ? "" : ", ") + std::string(entry.name);
    return names;
}

} // namespace screenfile

#endif
