/* guiservertime.cpp - the server's current time from the stored clock offset. */
#include "guiservertime.h"

#include "guicommon.h"

namespace xc {

namespace {
constexpr const char *kFile = "timeserver.cfg";
constexpr const char *kSection = "Orlenda Time";
constexpr const char *kKey = "Offset From Server";
/* What the probe holds when nothing is stored (so a stored -1 reads as nothing). */
constexpr int32_t kNothingStored = -1;
constexpr int64_t kMsPerSecond = 1000;
} // namespace

int32_t serverTimeNow(const ServerTimeTraces &traces) {
    int32_t probe = kNothingStored;
    int64_t offsetMs = 0;
    CfgGetInteger(&probe, kFile, kSection, kKey, 0);
    if (probe == kNothingStored) {
        trace(traces.fallback, -1, "Cannot get OrlTime - falling back to TimeNow()");
        return TimeNow();
    }
    CfgGetInt64(&offsetMs, kFile, kSection, kKey, 0);
    trace(traces.delta, 0, "OrlTime delta = %lld", static_cast<long long>(offsetMs));
    /* Truncated toward zero, subtracted with 32-bit wrap-around like the time value. */
    const auto seconds = static_cast<uint32_t>(static_cast<int32_t>(offsetMs / kMsPerSecond));
    return static_cast<int32_t>(static_cast<uint32_t>(TimeNow()) - seconds);
}

} // namespace xc
