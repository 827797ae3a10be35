/* kxlocale.h - translated texts of numbered messages. */
#ifndef KX_LOCALE_H
#define KX_LOCALE_H

#include <stdint.h>
#include "kxexport.h"

KX_BEGIN_DECLS

/* The message catalogue is the file named by the environment variable KX_MESSAGES
** (lines "number = text"; '#' comments), read once on first use. Without it, or for a
** number it lacks, the default text is the answer. The result is owned by the runtime
** and lives for the whole process: never free it. */
KX_API const char *LocaleGetString(const char *defaultText, int32_t msgNo);
KX_API const char *LocaleGetStaticString(const char *defaultText, int32_t msgNo);

KX_END_DECLS

#endif
