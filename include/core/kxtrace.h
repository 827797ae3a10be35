/* kxtrace.h - trace lines with a component, numbers and a level. */
#ifndef KX_TRACE_H
#define KX_TRACE_H

#include <stdarg.h>
#include <stdint.h>
#include "kxexport.h"

KX_BEGIN_DECLS

/* The sink is chosen by the environment variable KX_TRACE, read once when the process
** traces its first line: unset or "off" writes nothing, "stderr" writes to standard
** error, "file:PATH" appends to PATH. Each line:
** "COMPONENT  NUMBER.SUB L<level> text". A capture hook, when set, receives every
** line whatever the sink. */

typedef void (*KxTraceHook)(void *ctx, const char *component, int32_t msgNo, int32_t sub,
                            int32_t level, const char *text);

/* Formats and writes one line. Returns 1 when it was written or captured. */
KX_API int TraceMessageVa(const char *component, int32_t msgNo, int32_t sub, int32_t level,
                          const char *format, va_list args);
KX_API int TraceMessage(const char *component, int32_t msgNo, int32_t sub, int32_t level,
                        const char *format, ...)
#if defined(__GNUC__)
    __attribute__((format(printf, 5, 6)))
#endif
    ;

/* 1 when a line traced now would be written or captured, else 0: a caller with a costly
** line to prepare may ask first. */
KX_API int TraceIsOn(void);

/* Overrides the sink named by KX_TRACE with a value of the same syntax (null: off). */
KX_API void TraceSetSink(const char *sink);

/* Installs (or with null removes) the capture hook. */
KX_API void TraceSetCaptureHook(KxTraceHook hook, void *ctx);

KX_END_DECLS

#endif
