/* screencheck.h - the checks of a loaded screen that no single field shows: references
** between items, ids used twice, and which items belong under which. */
#ifndef XC_SCREENCHECK_H
#define XC_SCREENCHECK_H

#include <string>
#include <vector>

#include "screenfile.h"

namespace screenfile {

/* Something in a screen that loads but does not work as written, and where it is. */
struct Problem {
    Place place;
    std::string message;
};

/* Every problem of `screen`, in tree order (an empty list for a clean screen):
** - an id that an earlier item has already (actions and attachments find the earlier);
** - an attachment to an id that no item has, to the item itself, or to an item with
**   another parent (its widget lies in another form, or in none);
** - an action aimed at an id that no item has, and SET, CLEAR or CLOSE aimed at a type
**   that they do nothing to;
** - a ComboItem outside a ComboBox, a ListItem outside a list box, a RadioButton outside
**   a RadioManager, a TabPage outside a tab manager; any other item inside one of those,
**   or under an item that holds no items; an item of a RowColManager with attachments
**   (they take it out of the grid).
** Reads the tree and the places only; needs no display. Time grows linearly with the
** items. */
std::vector<Problem> check(const Loaded &screen);

/* Loads a screen file's text and checks it: check()'s problems, or, for a file that does
** not load, the loader's error as the one problem (at its place, the message without
** the "line L, column C: " that it may start with). */
std::vector<Problem> checkText(const std::string &text);

} // namespace screenfile

#endif
