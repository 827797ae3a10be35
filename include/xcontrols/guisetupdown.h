/* guisetupdown.h - stepping or validating the integer in a text field within a range. */
#ifndef XC_GUISETUPDOWN_H
#define XC_GUISETUPDOWN_H

#include <stdint.h>
#include <X11/Intrinsic.h>
#include "xcexport.h"

XC_BEGIN_DECLS

/* Directions of GuiSetUpDownValue. */
enum GuiUpDownDirection {
    GUI_UPDOWN_UP = 0,      /* add 1 */
    GUI_UPDOWN_DOWN = 1,    /* subtract 1 */
    GUI_UPDOWN_VALIDATE = 2 /* keep the number, only check the range */
};

/* Steps or validates the number in the text widget `wText` (XmText or XmTextField).
**
** The text is read with atoi (text that is no number counts as 0); direction 0 adds 1,
** 1 subtracts 1, any other direction keeps the number. A number below `iMin` becomes
** `iMin` and one above `iMax` becomes `iMax`, each time with a bell at volume 100 (with
** `iMin` above `iMax` both happen and `iMax` wins). In validation (direction 2) a number
** that hit no limit leaves the text exactly as typed; otherwise the number is written
** back with at least `iWidth` digits: 0 plain, 1 to 3 that many, any other width 4.
** There is no wrap-around and no repeat: each call steps once. Writing the text runs
** the field's value-changed callbacks. A null widget, or one that is neither an XmText
** nor an XmTextField, is traced and ignored. */
XC_API void GuiSetUpDownValue(Widget wText, int32_t iDirection, int32_t iMin, int32_t iMax,
                              int32_t iWidth);

XC_END_DECLS

#endif
