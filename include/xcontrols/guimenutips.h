/* guimenutips.h - menu tips: a line of help in a label of the window for the menu entry
** under the pointer, in an area shown only while the menu is open. */
#ifndef XC_GUIMENUTIPS_H
#define XC_GUIMENUTIPS_H

#include <X11/Intrinsic.h>
#include "xcexport.h"

XC_BEGIN_DECLS

/* Shows `pszText` in the label `wTipLabel` whenever the menu entry `wButton` is armed (an
** XmPushButton or XmToggleButton) or cascades (an XmCascadeButton); other widgets get
** nothing. The text is not copied: it must stay valid as long as the button lives (a
** null text blanks the label). A
** small record from the default pool holds the label and the text and is freed when the
** button is destroyed. A null button or label is traced and ignored. */
XC_API void GuiAddMenuTip(Widget wButton, const char *pszText, Widget wTipLabel);

/* While the pulldown XmRowColumn `wMenu` is mapped, the label `wTipLabel` starts blank
** (" ") and the area `wTipArea` (which holds the label) is raised and mapped; when the
** menu is unmapped, the area is unmapped. Only the area's window is mapped and unmapped:
** its managed state does not change (make it XmNmappedWhenManaged false to start hidden).
** Writes the trace line "GuiAddTipControl(%p, %p)" (level 1). A null argument is traced
** and ignored. */
XC_API void GuiAddTipControl(Widget wMenu, Widget wTipArea, Widget wTipLabel);

XC_END_DECLS

#endif
