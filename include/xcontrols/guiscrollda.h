/* guiscrollda.h - a picture larger than its drawing area, scrolled by moving the pixels
** on screen and asking the client only for what comes into view. */
#ifndef XC_GUISCROLLDA_H
#define XC_GUISCROLLDA_H

#include <stdint.h>
#include <X11/Intrinsic.h>
#include "xcexport.h"

XC_BEGIN_DECLS

struct GuiScrollRecord;

/* The client's painter: paints the picture into the drawing area with the record's GC,
** from the record's positions. `iPartial` 0: the whole window (`iFromY` and `iToY` are
** 0); 1: only the window rows from `iFromY` up to, not including, `iToY`. Either way the
** GC may be clipped to the area that needs painting. */
typedef void (*GuiScrollDrawFn)(struct GuiScrollRecord *pScroll, int32_t iPartial,
                                int32_t iFromY, int32_t iToY);

/* Filled by the client, kept alive by it as long as the scroll bars exist. The library
** writes only the two positions, and the GC's clip (always reset to none afterwards). */
typedef struct GuiScrollRecord {
    Widget wDrawingArea;    /* the widget drawn on */
    Widget wVertScrollBar;  /* an XmScrollBar */
    Widget wHorzScrollBar;  /* an XmScrollBar */
    int32_t iPictureWidth;  /* of the whole picture, in pixels */
    int32_t iPictureHeight;
    int32_t iVertPos;       /* picture y shown at the window's top */
    int32_t iHorzPos;       /* picture x shown at the window's left */
    GuiScrollDrawFn fnDraw;
    GC gc;                  /* the client draws with it; the library copies with it */
} GuiScrollRecord;

/* Sets both positions to 0 and adds to the bars (either may be null) the callbacks that
** scroll: page increment and decrement jump a page (the window is cleared and painted
** whole), increment, decrement and drag scroll by pixels (GuiScrollVert, and the same
** sideways). Value-changed, to-top and to-bottom get nothing. A null record is traced
** and ignored. */
XC_API void GuiAddScrollCallbacks(Widget wVertScrollBar, Widget wHorzScrollBar,
                                  GuiScrollRecord *pScroll);

/* Scrolls to the vertical position `iNewPos`: the rows still in view are copied to their
** new place (XCopyArea with the record's GC), the uncovered strip is cleared and the draw
** function asked for its rows only, under a clip to it: scrolling down by d asks for
** rows H - d to H of a window H high, up by d for rows 0 to d. A jump of the window's
** height or more copies nothing and asks for rows 0 to H. The position is stored even
** while the drawing area is not realized (nothing is drawn then). */
XC_API void GuiScrollVert(GuiScrollRecord *pScroll, int32_t iNewPos);

/* Fits both bars to the window and picture sizes (vertical first): the slider is the
** window's size over a range of the picture's size, the page increment the window's
** size, and a value that would run past the end is clamped on the bar (the record gets
** it with the next scroll). When the picture fits in the window the position goes back
** to 0 (the window is cleared and painted whole if it was not 0) and the slider covers
** the whole range; with a picture size of 0 the bar is set to 0..1 with a slider of 1.
** Call after the window was resized or the picture size changed. */
XC_API void GuiSizeScrollbars(GuiScrollRecord *pScroll);

/* Writes the trace line "stop compiler bitch" (level 1) and does nothing else. */
XC_API void GuiScrollDummy(void);

XC_END_DECLS

#endif
