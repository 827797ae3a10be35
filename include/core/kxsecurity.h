/* kxsecurity.h - password encryption. */
#ifndef KX_SECURITY_H
#define KX_SECURITY_H

#include <stdint.h>
#include "kxexport.h"

KX_BEGIN_DECLS

/* Stores at `ppResult` (a `char **` as void *) a new printable string (default pool)
** holding the clear text encrypted with an authenticated cipher under a key derived
** from `keyArg`; it never contains the clear text. A null clear text counts as empty.
** Returns 1/0 (null stored on failure). */
KX_API int SecurityEncryptPassword(void *ppResult, const char *clearText, intptr_t keyArg);

/* The inverse, for the client and tests: a new string with the clear text, or null
** when the text was not made by SecurityEncryptPassword with the same `keyArg`. */
KX_API char *SecurityDecryptPassword(const char *encrypted, intptr_t keyArg);

KX_END_DECLS

#endif
