/* guidateinput.h - the date input: year, month-name and day fields stepped by an up and
** a down button. */
#ifndef XC_GUIDATEINPUT_H
#define XC_GUIDATEINPUT_H

#include <stdint.h>
#include <X11/Intrinsic.h>
#include "xcexport.h"

XC_BEGIN_DECLS

typedef struct GuiDateInput GuiDateInput;

/* Called on every change of any field (typed, stepped or set) with the handle, the
** client data and the date as a time value (GuiDateInputGetTimeT); the pointer is valid
** only during the call. A full set reports once per field. */
typedef void (*GuiDateInputCallback)(GuiDateInput *pInput, void *pClientData,
                                     int32_t *pTime);

/* The date input handle. The caller owns it from GuiManageDateInput until
** GuiDateInputDestroy; read it, but change it only through the functions below. */
struct GuiDateInput {
    Widget wYear;                    /* year text field */
    Widget wMonth;                   /* month text field; XmNuserData holds the month 1-12 */
    Widget wDay;                     /* day text field */
    Widget wUp;                      /* up button (XmPushButton or XmArrowButton) */
    Widget wDown;                    /* down button */
    Widget wCurrent;                 /* the field the buttons act on: focused last */
    GuiDateInputCallback fnCallback; /* value callback, or null */
    void *pClientData;               /* handed to fnCallback */
};

/* Turns three text fields (XmTextField or XmText) and two buttons (XmPushButton or
** XmArrowButton) made by the caller into a date input and returns its handle (null,
** with a trace, when a widget is null or of another class, or memory runs out). The
** fields are not written.
**
** The buttons step the field focused last (the day field at first) once per arming:
** the year within 1900 to 3000, the month within 1 to 12 (no wrap, no carry into the
** year), the day within the days of the month. A field is checked when it loses the
** focus: an out-of-range year or day is clamped with a bell, a month name is parsed
** (whole short name, else first letter, ignoring case; an unknown one brings the
** previous name back), and a day beyond the month's end is pulled back to its last day.
** The month names come from the locale strings 757 ("BAD", shown for month 0) to 769
** ("Dec"), read on the first call of the process. */
XC_API GuiDateInput *GuiManageDateInput(Widget wYear, Widget wMonth, Widget wDay, Widget wUp,
                                        Widget wDown);

/* Sets the value callback and its client data, replacing any earlier pair. */
XC_API void GuiAddDateInputCallback(GuiDateInput *pInput, GuiDateInputCallback fnCallback,
                                    void *pClientData);

/* Destroys the year, month and day fields and the up and down buttons, in this order,
** and frees the handle. The handle is invalid afterwards. Called from the value callback
** (or any callback that the input's own code set off), the destruction waits until that
** code returns, and the callback is not called again: a set stops at the field that
** reported. */
XC_API void GuiDateInputDestroy(GuiDateInput *pInput);

/* Shows the local date of the time value: the year and the day with at least two
** digits, the month by its name. */
XC_API void GuiDateInputSetTimeT(GuiDateInput *pInput, int32_t tTime);

/* Shows the given date without checking it. A month outside 0 to 12 is traced and
** shown as month 0 ("BAD"). */
XC_API void GuiDateInputSet(GuiDateInput *pInput, int32_t iYear, int32_t iMonth, int32_t iDay);

/* Shows today's date as the server sees it: the local clock less the offset stored in
** "timeserver.cfg" (section "Orlenda Time", key "Offset From Server", milliseconds). */
XC_API void GuiDateInputSetNow(GuiDateInput *pInput);

/* Stores at `pTime` the local midnight of the shown date (TimeFromDate) and returns
** TimeFromDate's result; 0 for a null argument. */
XC_API int GuiDateInputGetTimeT(int32_t *pTime, GuiDateInput *pInput);

/* Store the shown year (atoi of its text), month number or day (atoi) and return 1;
** 0 for a null argument. */
XC_API int GuiDateInputGetYear(int32_t *piYear, GuiDateInput *pInput);
XC_API int GuiDateInputGetMonth(int32_t *piMonth, GuiDateInput *pInput);
XC_API int GuiDateInputGetDay(int32_t *piDay, GuiDateInput *pInput);

/* Makes the day, month and year fields and both buttons sensitive (non-zero flag) or
** insensitive. */
XC_API void GuiDateInputSetSensitive(GuiDateInput *pInput, int32_t bSensitive);

XC_END_DECLS

#endif
