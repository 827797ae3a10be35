/* kxtime.h - time values (signed 32-bit seconds) and their broken-down form. */
#ifndef KX_TIME_H
#define KX_TIME_H

#include <stdint.h>
#include "kxexport.h"

KX_BEGIN_DECLS

/* Broken-down time: words in this order. */
typedef struct KxTimeStruct {
    int32_t iHours;   /* 0 to 23 */
    int32_t iMinutes; /* 0 to 59 */
    int32_t iSeconds; /* 0 to 59 */
    int32_t iYear;    /* four digits */
    int32_t iMonth;   /* 1 to 12 */
    int32_t iDay;     /* 1 to 31 */
    int32_t iWeekDay; /* 0 Sunday to 6 */
    int32_t iYearDay; /* 0 to 365 */
} KxTimeStruct;

/* A date for TimeFromDate: year, month 1-12, day, and a reserved word (0). */
typedef struct KxDateStruct {
    int32_t iYear;
    int32_t iMonth;
    int32_t iDay;
    int32_t iReserved;
} KxDateStruct;

/* A time of day for TimeFromTimeOfDay. */
typedef struct KxTimeOfDayStruct {
    int32_t iHours;
    int32_t iMinutes;
    int32_t iSeconds;
} KxTimeOfDayStruct;

/* Time values are 32-bit: 1901-12-13 20:45:52 to 2038-01-19 03:14:07 UTC. A conversion
** whose result falls outside that range refuses it (result 0, 0 stored) rather than
** clamping, so that a date or time typed out of range is never taken as another one. */

/* The current time in seconds since 1970-01-01 00:00 UTC; INT32_MAX once the clock is
** past the range (a wrapped value would lie in 1901). */
KX_API int32_t TimeNow(void);

/* 1 for a Gregorian leap year. */
KX_API int TimeIsLeapYear(int32_t year);

/* Days of `month` (1-12) in `year`; 0 for a month out of range. */
KX_API int32_t TimeDaysInMonth(int32_t month, int32_t year);

/* Fill `out` with `t` in local time (TimeToBreakdownStruct) or UTC. 1/0 (null out). */
KX_API int TimeToBreakdownStruct(KxTimeStruct *out, int32_t t);
KX_API int TimeToUTCBreakdownStruct(KxTimeStruct *out, int32_t t);

/* Local midnight at the start of the date. Days beyond the month's length roll over
** into the next month; a month out of 1-12, a null argument or a time outside the range
** gives 0 (result 0). */
KX_API int TimeFromDate(int32_t *out, const KxDateStruct *date);

/* Seconds since a UTC midnight: hours * 3600 + minutes * 60 + seconds, so that
** TimeToUTCBreakdownStruct gives the hours and minutes back. Any field value is taken
** (a negative one counts back); a sum outside the range gives 0 (result 0). 1/0. */
KX_API int TimeFromTimeOfDay(int32_t *out, const KxTimeOfDayStruct *tod);

KX_END_DECLS

#endif
