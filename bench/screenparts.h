/* screenparts.h - the screens of the screen benchmark, described once as trees of parts
** and built from that description both as a client's screen definition and by hand in
** raw Motif. */
#ifndef XC_BENCH_SCREENPARTS_H
#define XC_BENCH_SCREENPARTS_H

#include <X11/Intrinsic.h>

#include <string>
#include <vector>

#include "screens.h"

namespace bench {

/* The item types a benchmark screen uses; a combo box comes with ten entries, a list box
** with five and a radio manager with three buttons. */
enum class Kind { GroupBox, Grid, Label, Edit, MultiLineEdit, Combo, List, Toggle, Radio, Button, Number, Date, Time };

struct Part {
    Kind kind;
    std::vector<Part> children; /* the items of a group box (one) or a grid (its cells) */
};

/* The entries (combo and list items, radio buttons) that an item of the kind holds, and
** the text of each. */
int entryCount(Kind kind);
std::string entryText(Kind kind, int index);

/* The text of the screen's `ordinal`th label (from 1, in the order of the definition):
** every label has its own, as on a real screen, so that no client can make one compound
** string serve them all. */
std::string labelText(int ordinal);

/* The number of screen items a part defines, entries and radio buttons included. */
int itemCount(const Part &part);

/* Top-level parts stand in four columns by position, each under the one above it. */
constexpr int kColumns = 4;

/* Adds `count` copies of `block` at the top level of `screen`, as a client does. */
void defineScreen(xt::Screen &screen, const Part &block, int count);

/* The widgets of `count` copies of `block` built in raw Motif in `form` (realized): `tops`
** are the top-level widgets, `outers` the outer widget of every item that has widgets, in
** the order of the items in the screen definition. */
struct RawScreen {
    std::vector<Widget> tops;
    std::vector<Widget> outers;
};
RawScreen buildRawScreen(Widget form, const Part &block, int count);
void destroyRawScreen(RawScreen &screen);

/* The outer widget of every item of a screen the library built, in the items' order. */
std::vector<Widget> libraryOuters(const xt::Screen &screen);

} // namespace bench

#endif
