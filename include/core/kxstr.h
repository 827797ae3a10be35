/* kxstr.h - zero-terminated strings in pool memory. */
#ifndef KX_STR_H
#define KX_STR_H

#include <stdint.h>
#include "kxexport.h"

KX_BEGIN_DECLS

/* New strings come from the default pool unless a pool is named; free them with
** MemFreeInternal. A null string counts as empty in comparisons. */

/* A copy of `s` in pool `poolId`; null for a null `s` or when memory runs out. */
KX_API char *StrDuplicateIntoPool(const char *s, uint32_t poolId);

/* A new string joining the arguments up to the terminating null; a null first argument
** counts as empty (a null later argument ends the list). */
KX_API char *StrCat(const char *first, ...);

/* Size in bytes including the terminating zero; 0 for null. */
KX_API int32_t StrSize(const char *s);

/* Stores at `ppResult` (a `char **` as void *) the decimal text of `value`. 1/0. */
KX_API int StrFromInteger(void *ppResult, int64_t value);

/* 0 when equal; otherwise the sign of the first difference. */
KX_API int StrCompare(const char *a, const char *b);
/* The same ignoring ASCII case. */
KX_API int StrCompareNoCase(const char *a, const char *b);
/* The same over at most the first `n` characters. */
KX_API int StrCompareRangeNoCase(const char *a, const char *b, int32_t n);

KX_END_DECLS

#endif
