/* guipwdentry.h - a text field that shows one asterisk per typed character and keeps the
** password itself beside the field. */
#ifndef XC_GUIPWDENTRY_H
#define XC_GUIPWDENTRY_H

#include <X11/Intrinsic.h>
#include "xcexport.h"

XC_BEGIN_DECLS

/* Turns the XmText or XmTextField `wText` into a password entry: from now on the field
** only ever holds asterisks, one per character, and the typed characters are kept in a
** record of the default pool that XmNuserData of the widget points to (the application
** must not use XmNuserData of the field for anything else). A widget that is an entry
** already stays as it is.
**
** Every change of the text goes through the entry's modify-verify callback: inserted
** characters (typed or pasted, wherever the insertion point is) are appended to the
** stored password and reach the field as asterisks; a deletion cuts the stored password
** at the deletion's start and the field loses everything from there to its end. A
** selection that an insertion replaces is not taken from the stored password.
**
** Whenever the stored password is replaced, cut or goes with the widget (a destroy
** callback), the block that held it is overwritten before it is freed, and the cut-off
** part of a cut is overwritten at once. No trace line holds a password. Call once per
** widget; a null widget, or one that is neither an XmText nor an XmTextField, is traced
** and ignored. */
XC_API void GuiCreatePasswordEntry(Widget wText);

/* Replaces the stored password of the entry `wText` with a copy of `pszPassword` (null
** counts as empty) and shows one asterisk per character. The old password is wiped. The
** field's modify-verify and value-changed callbacks run for the new text; afterwards the
** stored password is exactly the one given. A widget that is not a password entry is
** traced and ignored. */
XC_API void GuiSetPassword(Widget wText, const char *pszPassword);

/* Stores at `*ppszPassword` and returns a new copy (default pool) of the password kept by
** the entry `wText`; the caller owns it and frees it with MemFreeSecret. Before anything
** was typed or set, and for a null widget, the result is null; once a password was
** stored and then deleted, it is an empty string. A null `ppszPassword` gives null and
** stores nothing. Writes the trace line "GuiGetPassword()" (component "GUIPWD"). */
XC_API char *GuiGetPassword(char **ppszPassword, Widget wText);

XC_END_DECLS

#endif
