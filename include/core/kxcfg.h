/* kxcfg.h - INI-style configuration files. */
#ifndef KX_CFG_H
#define KX_CFG_H

#include <stdint.h>
#include "kxexport.h"

KX_BEGIN_DECLS

/* A file name without a '/' is looked up in the configuration directory: the value of
** the environment variable KX_CONFIG_DIR when set, else "config" below the home
** directory (see kxpath.h). A name with a '/' is used as it is.
**
** Syntax: "[Section Name]" lines open a section; "Key Name = value" lines set a key
** (names are compared ignoring case, blanks around names and values are trimmed);
** lines starting with ';' or '#' and blank lines are ignored. A value is a decimal
** integer with an optional sign and nothing else. When a key stands more than once in
** its section, the first line counts. Files are read afresh on every call. */

/* Stores the key's value at `value` and returns 1; leaves it unchanged and returns 0
** when the file, section or key is missing or the value is not an integer that fits.
** `reserved` must be 0. */
KX_API int CfgGetInteger(int32_t *value, const char *file, const char *section,
                         const char *key, int32_t reserved);
KX_API int CfgGetInt64(int64_t *value, const char *file, const char *section,
                       const char *key, int64_t reserved);

KX_END_DECLS

#endif
