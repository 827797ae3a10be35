/* kxlist.h - ordered lists of object handles. */
#ifndef KX_LIST_H
#define KX_LIST_H

#include <stdint.h>
#include "kxexport.h"

KX_BEGIN_DECLS

/* A list (tag KX_TAG_LIST) holds elements (tag KX_TAG_LIST_ELEMENT); each element holds
** one reference on its item. Releasing the last reference of the list releases the
** elements and so the items' references. Every function treats a handle of the wrong
** tag as no list and does nothing (walks report 1, accessors null or 0). */

/* Walk callback: gets the walk's context and the element; returns 0 to stop. */
typedef int (*ListWalkFn)(void *ctx, void *hElement);

/* Creates an empty list in pool `poolId`, stored at `phList`. `reserved` must be 0.
** Returns 1/0. */
KX_API int ListCreateFromPool(void *phList, int32_t reserved, uint32_t poolId);

/* Appends the handle stored at `phItem` and takes over the caller's reference: the
** variable is set to null. Returns 1; 0 (and nothing changes) when the list or item is
** not valid. */
KX_API int ListPushLastItemInternal(void *hList, void *phItem);

/* Appends `hItem` with a reference of the list's own. Returns 1/0. */
KX_API int ListAddLastItem(void *hList, void *hItem);

/* Calls fn(ctx, element) for each element from first to last (backwards: last to
** first) and stops at the first call that returns 0. Returns 1 when the walk went to
** the end, 0 when a callback stopped it. The list and the current element stay alive
** during a callback even if the callback releases the list. */
KX_API int ListWalk(void *hList, ListWalkFn fn, void *ctx);
KX_API int ListWalkBackwards(void *hList, ListWalkFn fn, void *ctx);

/* The item that an element holds, or null when `hElement` is not an element. */
KX_API void *ListElementItem(void *hElement);

/* First and last items of a list, or null. */
KX_API void *ListFirstItem(void *hList);
KX_API void *ListLastItem(void *hList);

/* Number of elements, 0 for an invalid list. */
KX_API int32_t ListCount(void *hList);

KX_END_DECLS

#endif
