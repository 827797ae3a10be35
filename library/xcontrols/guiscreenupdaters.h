/* guiscreenupdaters.h - the per-item updaters of plugin screen items and the step they
** share with the update driver (private to the library). */
#ifndef XC_GUISCREENUPDATERS_H
#define XC_GUISCREENUPDATERS_H

#include "guiscreenitem.h"

namespace xc::screen {

/* An updater patches the shown item of `shownNode` from the update item of `updateNode`:
** widgets changed in place, the update's item data stored in the shown item. It returns
** false, having read and changed nothing, when the update's data is missing or not a
** record of the shown item's type. */
using Updater = bool (*)(void *shownNode, void *updateNode);

bool updateTitle(void *shownNode, void *updateNode);    /* GroupBox */
bool updateCombo(void *shownNode, void *updateNode);    /* ComboBox */
bool updateList(void *shownNode, void *updateNode);     /* ListBox */
bool updateToggle(void *shownNode, void *updateNode);   /* selectionItem */
bool updateRadios(void *shownNode, void *updateNode);   /* RadioManager */
bool updateButton(void *shownNode, void *updateNode);   /* PushButton */
bool updateEditText(void *shownNode, void *updateNode); /* EditBox */
bool updateNumber(void *shownNode, void *updateNode);   /* NumInput */
bool updateLabel(void *shownNode, void *updateNode);    /* Label */

/* Which children of an update node become entries of the shown node. */
using EntryFilter = bool (*)(const ScreenItem *child);

/* Replaces the children of `shownNode` by new leaves carrying the records of those
** children of `updateNode` that `isEntry` accepts, in order. The nodes take references on
** the records, so the update tree may go at once; the shown tree's index follows. */
void replaceEntries(void *shownNode, void *updateNode, EntryFilter isEntry);

} // namespace xc::screen

#endif
