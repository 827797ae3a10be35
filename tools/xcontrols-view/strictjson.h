/* strictjson.h - JSON parsing that rejects what a plain parse lets through silently
** (a field given twice, a NUL byte, nesting or texts beyond the limits) and names the
** place of every error. */
#ifndef XC_STRICTJSON_H
#define XC_STRICTJSON_H

#include <string>
#include <unordered_map>
#include <vector>

#include <nlohmann/json.hpp>

namespace screenfile {

constexpr size_t kMaxJsonDepth = 160;   /* arrays and objects nested in one another */
constexpr size_t kMaxTextBytes = 4096;  /* one string or field name, in UTF-8 bytes */

/* A place in a text: line and column (in bytes), both counted from 1; 0: unknown. */
struct Place {
    size_t line = 0, column = 0;
};

/* The places of the offsets in one text. */
class LineIndex {
public:
    LineIndex() = default;
    explicit LineIndex(const std::string &text);
    Place at(size_t offset) const;

private:
    std::vector<size_t> starts_; /* the offset of each line */
};

/* "line L, column C". */
std::string describe(Place place);

/* Where the values of a parsed document begin in its text: an object or an array at its
** opening bracket, the value of a field at the field's name. A value in an array that is
** neither object nor array has no place of its own. Valid while the document is not
** changed. */
class Places {
public:
    /* The place of `v`, a value of the parsed document; {0, 0} when it has none. */
    Place of(const nlohmann::json &v) const;
    /* The place of the value at `path` (as memberPath and indexPath write it) in `doc`,
    ** or of the innermost value on the way that has one; the document's start for "". */
    Place ofPath(const nlohmann::json &doc, const std::string &path) const;
    /* The place where the last parse stopped, when it failed. */
    Place failure;

private:
    friend class StrictBuilder;
    friend bool parseStrictJson(const std::string &, nlohmann::json &, std::string &, Places *);
    std::unordered_map<const void *, size_t> offsets_; /* by value, as byte offsets */
    LineIndex lines_;
};

/* Parses `text` into `out`. On failure returns false and sets `error`: "line L, column C:
** <reason>" for a syntax error, a NUL byte or a number beyond a double's range, "<path>:
** <reason>" for an object that names a field twice, a container nested deeper than
** kMaxJsonDepth or a string longer than kMaxTextBytes (path as in "items[2].data.title").
** `places`, when given, learns where the values begin (or where the parse failed). Memory
** and time grow linearly with the text. */
bool parseStrictJson(const std::string &text, nlohmann::json &out, std::string &error,
                     Places *places = nullptr);

/* Paths into a document: "items[2]" and "items[2].data"; a key that is not a plain
** word is quoted: items[2]["two words"]. The root's path is empty. */
std::string memberPath(const std::string &base, const std::string &key);
std::string indexPath(const std::string &base, size_t index);

} // namespace screenfile

#endif
