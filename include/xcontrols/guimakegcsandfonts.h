/* guimakegcsandfonts.h - the graphics contexts, font list and pictures that the
** controls and the client draw with. */
#ifndef XC_GUIMAKEGCSANDFONTS_H
#define XC_GUIMAKEGCSANDFONTS_H

#include <X11/Intrinsic.h>
#include <Xm/Xm.h>

#include "xcexport.h"

XC_BEGIN_DECLS

/* Made by GuiCreateGcsAndFonts from the colours of its widget; all carry the font
** "*helv*med*r*normal*12*" (mask GCForeground | GCBackground | GCFont), made on the
** root window of the display's default screen. "fg/bg" below are foreground and
** background; "shadow" and "select" colours are Motif's calculation from the widget's
** background (XmGetColors). */
XC_API extern GC gcTop;           /* fg: top-shadow colour; bg: widget background */
XC_API extern GC gcBot;           /* fg: bottom-shadow colour; bg: widget background */
XC_API extern GC gcBlack;         /* fg: screen's black pixel; bg: widget background */
XC_API extern GC gcWhite;         /* fg: screen's white pixel; bg: screen's black pixel */
XC_API extern GC gcTreeDisabled;  /* fg: select colour; bg: screen's black pixel */
XC_API extern GC gcProgress;      /* fg: screen's black pixel; bg: widget background */

/* The client's own: the library never sets or reads them. */
XC_API extern GC gcInvert;
XC_API extern GC gcWizzyScheduledJobs;
XC_API extern GC gcWizzyRunningJobs;
XC_API extern GC gcWizzyCompletedJobs;
XC_API extern XmFontList myDefaultFontList;

/* The widget's own XmNfontList (not a copy), set by GuiCreateGcsAndFonts; for a widget
** without one (a shell or a manager such as a form) its XmNlabelFontList. */
XC_API extern XmFontList fontlist;

/* The pictures "up.bmp", "down.bmp" and "combo.bmp" from the directory gui/bmps below
** the home directory; 0 while a picture could not be loaded. */
XC_API extern Pixmap upPixmap;
XC_API extern Pixmap downPixmap;
XC_API extern Pixmap comboPixmap;

/* Creates everything above from widget `w` (a widget of the client's main window).
** Call GuiInitLoadBmps on the same widget first, then this once, before any control
** is made. A picture that fails to load is traced as "Failed to load <path>" and
** leaves its global as it was; the others are still loaded. When no font matches the
** pattern, the GCs keep the server's default font (GCFont left out of the mask) and
** the fact is traced. Calling it again makes a second set and overwrites the globals
** without freeing the first. A null widget is traced and nothing is made. */
XC_API void GuiCreateGcsAndFonts(Widget w);

XC_END_DECLS

#endif
