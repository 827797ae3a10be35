/* guitimeinput.h - the time input: hours and minutes fields stepped by an up and a down
** button. */
#ifndef XC_GUITIMEINPUT_H
#define XC_GUITIMEINPUT_H

#include <stdint.h>
#include <X11/Intrinsic.h>
#include "xcexport.h"

XC_BEGIN_DECLS

typedef struct GuiTimeInput GuiTimeInput;

/* Called on every change of either field (typed, stepped or set) with the handle, the
** client data and the shown time of day as a time value (GuiTimeInputGetTimeT); the
** pointer is valid only during the call. */
typedef void (*GuiTimeInputCallback)(GuiTimeInput *pInput, void *pClientData,
                                     int32_t *pTime);

/* The time input handle. The caller owns it from GuiManageTimeInput until
** GuiTimeInputDestroy; read it, but change it only through the functions below. */
struct GuiTimeInput {
    Widget wHours;                   /* hours text field */
    Widget wMinutes;                 /* minutes text field */
    Widget wUp;                      /* up button (XmPushButton or XmArrowButton) */
    Widget wDown;                    /* down button */
    Widget wCurrent;                 /* the field the buttons act on: focused last */
    GuiTimeInputCallback fnCallback; /* value callback, or null */
    void *pClientData;               /* handed to fnCallback */
    int32_t iMaxHours;               /* upper limit of the hours; 0 means 23 */
    int32_t iMaxMinutes;             /* upper limit of the minutes; 0 means 59 */
    int32_t iMinHours;               /* lower limit of the hours; 0 means 0 */
    int32_t iMinMinutes;             /* lower limit of the minutes; 0 means 0 */
};

/* Turns two text fields (XmTextField or XmText) and two buttons (XmPushButton or
** XmArrowButton) made by the caller into a time input and returns its handle (null, with
** a trace, when a widget is null or of another class, or memory runs out). The fields
** are not written.
**
** The buttons step the field focused last (the hours field at first) once per arming,
** within its limits: no wrap from 23 to 0 and no carry from minutes into hours. A field
** is checked when it loses the focus: an out-of-range value is clamped with a bell and
** written with two digits, a value in range stays as typed. Each field has its own
** limits whatever the other holds. */
XC_API GuiTimeInput *GuiManageTimeInput(Widget wHours, Widget wMinutes, Widget wUp,
                                        Widget wDown);

/* Sets the value callback and its client data, replacing any earlier pair. */
XC_API void GuiAddTimeInputCallback(GuiTimeInput *pInput, GuiTimeInputCallback fnCallback,
                                    void *pClientData);

/* Destroys the hours and minutes fields and the up and down buttons, in this order, and
** frees the handle. The handle is invalid afterwards. Called from the value callback
** (or any callback that the input's own code set off), the destruction waits until that
** code returns, and the callback is not called again. */
XC_API void GuiTimeInputDestroy(GuiTimeInput *pInput);

/* Shows the UTC hours and minutes of the time value, with two digits each. */
XC_API void GuiTimeInputSetTimeT(GuiTimeInput *pInput, int32_t tTime);

/* Shows the server's current time in UTC: the local clock less the offset stored in
** "timeserver.cfg" (section "Orlenda Time", key "Offset From Server", milliseconds). */
XC_API void GuiTimeInputSetNow(GuiTimeInput *pInput);

/* Shows the values with two digits; hours outside 0-23 and minutes outside 0-59 are
** shown as 00. The caller's limits are not applied here. */
XC_API void GuiTimeInputSet(GuiTimeInput *pInput, int32_t iHours, int32_t iMinutes);

/* Stores at `pTime` the shown time of day as seconds after a UTC midnight
** (TimeFromTimeOfDay) and returns its result; 0 for a null argument. */
XC_API int GuiTimeInputGetTimeT(int32_t *pTime, GuiTimeInput *pInput);

/* Store atoi of the hours or minutes field and return 1; 0 for a null argument. */
XC_API int GuiTimeInputGetHours(int32_t *piHours, GuiTimeInput *pInput);
XC_API int GuiTimeInputGetMinutes(int32_t *piMinutes, GuiTimeInput *pInput);

/* Makes the hours and minutes fields and both buttons sensitive (non-zero flag) or
** insensitive. */
XC_API void GuiTimeInputSetSensitive(GuiTimeInput *pInput, int32_t bSensitive);

/* Narrow the limits: the hours field stays within [min hours, max hours] and the
** minutes field within [min minutes, max minutes]. A 0 stands for the default (23 and 59
** above, 0 below). The fields are not touched: the limits apply from the next step or
** check. A null handle is ignored. */
XC_API void GuiTimeInputSetMaxTime(GuiTimeInput *pInput, int32_t iHours, int32_t iMinutes);
XC_API void GuiTimeInputSetMinTime(GuiTimeInput *pInput, int32_t iHours, int32_t iMinutes);

XC_END_DECLS

#endif
