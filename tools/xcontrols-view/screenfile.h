/* screenfile.h - loads a plugin screen from its JSON file format and writes the answers.
**
** The format (docs/screen-format.md) mirrors the screen definition model of
** guiscreendef.h: item types and action kinds by their names, item data fields by the
** struct field names, attachments by side, children nested. Loading builds the tree a
** client would build: ScreenItem objects as node cookies, item data objects with their
** tag and signature, pool strings for text fields, action lists of ScreenAction
** objects.
*/
#ifndef XC_SCREENFILE_H
#define XC_SCREENFILE_H

#include <array>
#include <cstdint>
#include <deque>
#include <optional>
#include <string>
#include <unordered_map>

#include "guiscreendef.h"
#include "strictjson.h"

namespace screenfile {

/* A loaded screen. Owns the tree (released when the object goes, unless taken) and the
** attachment records that the items point to, which must outlive every use of the tree:
** keep the Loaded alive as long as the tree is shown, even after take(). */
class Loaded {
public:
    Loaded() = default;
    ~Loaded();
    Loaded(const Loaded &) = delete;
    Loaded &operator=(const Loaded &) = delete;

    void *tree() const { return tree_; }
    /* Hands the tree's reference to the caller (for GuiFreeScreenDefAndWidgets). */
    void *take();
    /* Releases the tree and forgets everything loaded. */
    void reset();

    int32_t jobId = 0;
    std::string title;             /* window title; empty: none given */
    int32_t width = 0, height = 0; /* window size; 0: the screen's natural size */

    /* Where the file wrote a record of the tree or one of its fields, by its address: an
    ** item (its object), its itemId and attachments (the names "id" and "attach"), an
    ** attachment side (its "item", else the side) and an action (its "target"). {0, 0}
    ** for anything else. */
    Place placeOf(const void *recordOrField) const;

private:
    friend class Builder;
    void *tree_ = nullptr;
    std::unordered_map<const void *, Place> places_;
    std::deque<ScreenAttachment> sides_;
    std::deque<std::array<ScreenAttachment *, 4>> arrays_;
};

/* Limits of a screen file (the JSON nesting limit is in strictjson.h). */
constexpr size_t kMaxFileBytes = 4 << 20;  /* the whole file */
constexpr int kMaxItemDepth = 64;          /* items nested in items */
constexpr size_t kMaxItems = 5000;         /* items in the whole screen */
constexpr int32_t kMaxWindowSide = 32767;  /* width and height: X positions are 16-bit */

/* Parses a screen file's text into `out` (whatever it held is released first). On
** failure returns false, leaves `out` empty with nothing allocated, and sets `error` to
** the place and the reason: "line L, column C: ..." for a syntax error, or a path into
** the document such as "items[2].children[0].data.columns: expected an integer, got a
** string" for a well-formed file that does not describe a screen. Refuses, with the
** place, what passes the limits above and those of parseStrictJson. `errorPlace`, when
** given, is set to the line and column of the error (of the value that a path names). */
bool parse(const std::string &text, Loaded &out, std::string &error, Place *errorPlace = nullptr);

/* Parses one update document (docs/screen-format.md, "Live updates"): {"update":
** "items" or "screen", "items": [...], "title"?, "comment"?}. Its items load into `out`
** as a screen file's would (`out.title` holds the title, empty when none is given);
** `wholeScreen` tells "screen" from "items". Errors as parse reports them. */
bool parseUpdate(const std::string &text, Loaded &out, bool &wholeScreen, std::string &error);

/* The answer document for a screen: {"jobId": N, "closedBy": ID or null, "values":
** {"<id>": {...}, ...}} with one entry per item that holds a value (texts, selected
** entries, set flags, numbers, dates and times, password fields), keyed by item id in
** tree order; an id used twice answers for its first item. `closedBy` is the push button
** whose press closed the screen, when one did. Pretty-printed, no final newline; bytes
** of a text that are not UTF-8 are written as U+FFFD. Never throws. */
std::string answers(void *tree, int32_t jobId, std::optional<int32_t> closedBy = std::nullopt);

/* The name of an item type code ("GroupBox"), or null for a code that has none. */
const char *typeName(uint32_t code);

} // namespace screenfile

#endif
