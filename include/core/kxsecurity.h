/* kxsecurity.h - password encryption. */
#ifndef KX_SECURITY_H
#define KX_SECURITY_H

#include <stdint.h>
#include "kxexport.h"

KX_BEGIN_DECLS

/* How strong the stored form is. The clear text is sealed with XSalsa20-Poly1305 (an
** authenticated cipher, a fresh random nonce each time) under a 256-bit key hashed
** (BLAKE2b) from `keyArg` alone. So `keyArg` is the secret: the stored form is exactly as
** safe as the key argument is unguessable, and it has at most 64 bits. Whoever has the
** stored form but not the key argument cannot read the clear text, cannot tell whether
** two stored forms hold the same password, and cannot alter a stored form or make one
** that decrypts; they do learn the clear text's length (the stored form grows with it),
** and they can try key arguments one by one offline, each costing a hash and a check: a
** small, constant or otherwise guessable key argument (a process id, a user number, a
** value compiled into the program) gives almost no protection. Whoever has the key
** argument reads every password stored under it. */

/* Stores at `ppResult` (a `char **` as void *) a new printable string (default pool)
** holding the clear text encrypted under `keyArg` as above; it never contains the clear
** text, and no copy of the clear text or the key is left behind in memory. A null clear
** text counts as empty. Returns 1/0 (null stored on failure). */
KX_API int SecurityEncryptPassword(void *ppResult, const char *clearText, intptr_t keyArg);

/* The inverse, for the client and tests: a new string (default pool) with the clear
** text, or null when the text was not made by SecurityEncryptPassword with the same
** `keyArg`. The clear text is written nowhere else; free it with MemFreeSecret. */
KX_API char *SecurityDecryptPassword(const char *encrypted, intptr_t keyArg);

KX_END_DECLS

#endif
