/* guitooltip.h - tooltips: a small borderless window with a text that comes up when the
** pointer rests on a widget. */
#ifndef XC_GUITOOLTIP_H
#define XC_GUITOOLTIP_H

#include <X11/Intrinsic.h>
#include "xcexport.h"

XC_BEGIN_DECLS

/* Gives `widget` the tooltip `pszText`. The text is not copied: it must stay valid as long
** as the widget lives. Writes the trace line "GuiAddTip(%p, %s)" (level 4).
**
** Once the pointer has rested on the widget for 500 ms (entering starts the wait, every
** move inside the widget starts it again, each restart traced "Remove Timer %d"), an
** override-redirect shell "toolTip" holding a one-pixel bordered XmLabel "toolTip" with
** the text comes up at the pointer position + (10, 10), as a popup child of the widget's
** nearest window-manager shell (a dialog's shell for a widget in a dialog); it takes no
** grab, so a press that removes it may open a popup menu. Leaving the
** widget or pressing a button in it takes the tooltip (or the wait) away; after a press
** it comes back only when the pointer leaves and enters again.
**
** One tooltip exists at a time in the whole library: a tooltip that comes up replaces
** the one shown before. A widget destroyed takes its tooltip (or the wait for it) along,
** and so does a shell destroyed under a shown tooltip. A null widget or text is traced
** and ignored. */
XC_API void GuiAddTip(Widget widget, const char *pszText);

XC_END_DECLS

#endif
