/* time.cpp - time values and their broken-down form, local and UTC. */
#include "kxtime.h"

#include <cstdint>
#include <ctime>

namespace {

bool fitsTimeValue(int64_t value) {
    return value >= INT32_MIN && value <= INT32_MAX;
}

void fillBreakdown(KxTimeStruct *out, const std::tm &tm) {
    *out = KxTimeStruct{tm.tm_hour,        tm.tm_min,     tm.tm_sec,  tm.tm_year + 1900,
                        tm.tm_mon + 1,     tm.tm_mday,    tm.tm_wday, tm.tm_yday};
}

} // namespace

extern "C" {

int32_t TimeNow(void) {
    const int64_t now = std::time(nullptr);
    return fitsTimeValue(now) ? static_cast<int32_t>(now) : INT32_MAX;
}

int TimeIsLeapYear(int32_t year) {
    return (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
}

int32_t TimeDaysInMonth(int32_t month, int32_t year) {
    static constexpr int32_t kDays[12] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    if (month < 1 || month > 12) return 0;
    return kDays[month - 1] + (month == 2 && TimeIsLeapYear(year));
}

int TimeToBreakdownStruct(KxTimeStruct *out, int32_t t) {
    std::tm tm{};
    const std::time_t value = t;
    if (out == nullptr || localtime_r(&value, &tm) == nullptr) return 0;
    fillBreakdown(out, tm);
    return 1;
}

int TimeToUTCBreakdownStruct(KxTimeStruct *out, int32_t t) {
    std::tm tm{};
    const std::time_t value = t;
    if (out == nullptr || gmtime_r(&value, &tm) == nullptr) return 0;
    fillBreakdown(out, tm);
    return 1;
}

int TimeFromDate(int32_t *out, const KxDateStruct *date) {
    if (out == nullptr) return 0;
    *out = 0;
    if (date == nullptr || date->iMonth < 1 || date->iMonth > 12) return 0;
    /* Years that far back overflow the broken-down form's count from 1900. */
    if (date->iYear < INT32_MIN + 1900) return 0;
    std::tm tm{};
    tm.tm_year = date->iYear - 1900;
    tm.tm_mon = date->iMonth - 1;
    tm.tm_mday = date->iDay;
    tm.tm_isdst = -1; /* let the zone's rules say whether summer time applies */
    const std::time_t value = std::mktime(&tm);
    if (value == static_cast<std::time_t>(-1) || !fitsTimeValue(value)) return 0;
    *out = static_cast<int32_t>(value);
    return 1;
}

int TimeFromTimeOfDay(int32_t *out, const KxTimeOfDayStruct *tod) {
    if (out == nullptr || tod == nullptr) return 0;
    *out = 0;
    const int64_t seconds =
        int64_t{tod->iHours} * 3600 + int64_t{tod->iMinutes} * 60 + tod->iSeconds;
    if (!fitsTimeValue(seconds)) return 0;
    *out = static_cast<int32_t>(seconds);
    return 1;
}

} // extern "C"
