/* strictjson.h - JSON parsing that rejects what a plain parse lets through silently
** (a field given twice) and names the place of every error. */
#ifndef XC_STRICTJSON_H
#define XC_STRICTJSON_H

#include <string>

#include <nlohmann/json.hpp>

namespace screenfile {

/* Parses `text` into `out`. On failure returns false and sets `error`: "line L, column C:
** <reason>" for a syntax error, "<path>: duplicate field" for an object that names a
** field twice (path as in "items[2].data.title"). */
bool parseStrictJson(const std::string &text, nlohmann::json &out, std::string &error);

/* Paths into a document: "items[2]" and "items[2].data"; a key that is not a plain
** word is quoted: items[2]["two words"]. The root's path is empty. */
std::string memberPath(const std::string &base, const std::string &key);
std::string indexPath(const std::string &base, size_t index);

} // namespace screenfile

#endif
