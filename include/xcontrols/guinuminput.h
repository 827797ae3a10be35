/* guinuminput.h - the number input: a text field stepped by an up and a down button,
** repeating while a button is held. */
#ifndef XC_GUINUMINPUT_H
#define XC_GUINUMINPUT_H

#include <stdint.h>
#include <X11/Intrinsic.h>
#include "xcexport.h"

XC_BEGIN_DECLS

/* Called on every change of the field's text (typed, stepped or set) with the text
** field, the client data and the field's value read with atoi; the value pointer is
** valid only during the call. */
typedef void (*GuiNumInputCallback)(Widget wText, void *pClientData, int32_t *piValue);

/* The number input handle. The caller owns it from GuiManageNumInput until
** GuiNumInputDestroy; read it, but change it only through the functions below. */
typedef struct GuiNumInput {
    Widget wText;                   /* the text field (XmTextField or XmText) */
    Widget wUp;                     /* up button (XmPushButton or XmArrowButton) */
    Widget wDown;                   /* down button */
    int32_t iMax;                   /* upper limit */
    int32_t iMin;                   /* lower limit */
    int32_t iInitial;               /* value shown at creation */
    int32_t iWidth;                 /* minimum digits, zero-filled; 0: no filling */
    int32_t bWrap;                  /* 1: stepping past a limit goes on at the other */
    GuiNumInputCallback fnCallback; /* value callback, or null */
    void *pClientData;              /* handed to fnCallback */
    XtIntervalId idTimer;           /* pending repeat timer, 0 when none */
    int32_t iRepeatCount;           /* steps and checks since the last release */
} GuiNumInput;

/* Turns a text field (XmTextField or XmText) and two buttons (XmPushButton or
** XmArrowButton) made by the caller into a number input and returns its handle (null,
** with a trace, when a widget is null or of another class, or memory runs out).
**
** Note the order: maximum before minimum. The field is set to `iInitial` as plain
** decimal, unchecked and not zero-filled. Arming a button steps once at once; while it
** stays armed the step repeats after 200 ms, then every 100 ms from the 5th step on and
** every 50 ms from the 20th. At a limit the step goes on at the other limit when `bWrap`
** is 1 (any other value does not wrap); otherwise it rings the bell and the repeat
** stops. Stepped values are written with at least `iWidth` digits, zero-filled. When
** the field loses the focus its value is pulled into the range. The first number input
** of the process fixes the display and application context that all of them use for
** bells and timers. */
XC_API GuiNumInput *GuiManageNumInput(Widget wText, Widget wUp, Widget wDown, int32_t iMax,
                                      int32_t iMin, int32_t iInitial, int32_t iWidth,
                                      int32_t bWrap);

/* Sets the value callback and its client data, replacing any earlier pair. */
XC_API void GuiAddNumInputCallback(GuiNumInput *pInput, GuiNumInputCallback fnCallback,
                                   void *pClientData);

/* Shows `iValue` as plain decimal (no zero filling) and returns 1; returns 0 and
** changes nothing when the value lies outside the range or the handle is null. */
XC_API int GuiNumInputSet(GuiNumInput *pInput, int32_t iValue);

/* Pulls the field's value into the range, then stores it at `piValue`; returns 1
** (0 for a null argument). */
XC_API int GuiNumInputGetValue(int32_t *piValue, GuiNumInput *pInput);

/* Sets a new range (note the order: minimum first) and pulls the shown value into it,
** which writes and reports it when it had to move. */
XC_API void GuiNumInputChangeRange(GuiNumInput *pInput, int32_t iMin, int32_t iMax);

/* Makes the text field and both buttons sensitive (non-zero flag) or insensitive. */
XC_API void GuiNumInputSetSensitive(GuiNumInput *pInput, int32_t bSensitive);

/* Stops any pending repeat, destroys the text field, the up and the down button, in
** this order, and frees the handle. The handle is invalid afterwards. Called from the
** value callback (or any callback that the input's own code set off), the destruction
** waits until that code returns, and the callback is not called again. */
XC_API void GuiNumInputDestroy(GuiNumInput *pInput);

XC_END_DECLS

#endif
