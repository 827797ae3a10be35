/* guiservertime.h - the server's current time, as the date and time inputs show it
** (private). */
#ifndef XC_GUISERVERTIME_H
#define XC_GUISERVERTIME_H

#include <cstdint>

namespace xc {

/* The trace numbers under which one caller reports how it got the time. */
struct ServerTimeTraces {
    int32_t fallback; /* "Cannot get OrlTime - falling back to TimeNow()" */
    int32_t delta;    /* "OrlTime delta = %lld" */
};

/* The local clock corrected by the offset that the client stores in "timeserver.cfg"
** (milliseconds by which the local clock is ahead of the server's), read afresh on
** every call; the plain local clock when no offset is stored. */
int32_t serverTimeNow(const ServerTimeTraces &traces);

} // namespace xc

#endif
