/* strictjson.h - JSON parsing that rejects what a plain parse lets through silently
** (a field given twice, a NUL byte, nesting or texts beyond the limits) and names the
** place of every error. */
#ifndef XC_STRICTJSON_H
#define XC_STRICTJSON_H

#include <string>

#include <nlohmann/json.hpp>

namespace screenfile {

constexpr size_t kMaxJsonDepth = 160;   /* arrays and objects nested in one another */
constexpr size_t kMaxTextBytes = 4096;  /* one string or field name, in UTF-8 bytes */

/* Parses `text` into `out`. On failure returns false and sets `error`: "line L, column C:
** <reason>" for a syntax error, a NUL byte or a number beyond a double's range, "<path>:
** <reason>" for an object that names a field twice, a container nested deeper than
** kMaxJsonDepth or a string longer than kMaxTextBytes (path as in "items[2].data.title").
** Memory and time grow linearly with the text. */
bool parseStrictJson(const std::string &text, nlohmann::json &out, std::string &error);

/* Paths into a document: "items[2]" and "items[2].data"; a key that is not a plain
** word is quoted: items[2]["two words"]. The root's path is empty. */
std::string memberPath(const std::string &base, const std::string &key);
std::string indexPath(const std::string &base, size_t index);

} // namespace screenfile

#endif
