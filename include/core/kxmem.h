/* kxmem.h - memory pools with live-allocation accounting. */
#ifndef KX_MEM_H
#define KX_MEM_H

#include <stddef.h>
#include <stdint.h>
#include "kxexport.h"

KX_BEGIN_DECLS

/* The id of the process-wide default pool. Always the same value; never 0. */
KX_API uint32_t MemGetDefaultPoolId(void);

/* Creates a further pool with its own accounting and returns its id (0 on failure).
** The name is copied and only used in diagnostics. */
KX_API uint32_t MemPoolCreate(const char *name);

/* A new block of `size` bytes from pool `poolId`, or null when memory is exhausted
** or the pool id is unknown. A size of 0 gives a valid 1-byte block. The block's
** content is undefined. A size that with the runtime's header would exceed PTRDIFF_MAX
** (no allocation can be that large) gives null and a trace line. Blocks are 16-aligned.
** Blocks of up to 64 KiB (with the header) come from the runtime's own chunks, apart
** from malloc's heap, and a freed one is kept for the next block of its size class: the
** chunks are not given back to the system. */
KX_API void *MemAllocateFromPool(size_t size, uint32_t poolId);

/* Frees the block whose address is stored at `ppBlock` (a `T **` passed as void *)
** and sets that pointer to null. A null `ppBlock` or a null block is ignored. A pointer
** that is not a live block of any pool (a literal, a freed block) is never touched: the
** variable is cleared, nothing is freed, and MemForeignFreeCount() counts it. An object
** handle is not a block either: objects go with ObjReleaseInternal. */
KX_API void MemFreeInternal(void *ppBlock);

/* Frees a block that held a secret (a clear-text password, a key) like MemFreeInternal,
** after overwriting the whole block, every byte of its requested size (1 for a size of
** 0), with zeros in a way the compiler cannot drop. The same guarantees: a null
** `ppBlock` or block is ignored; a pointer that is not a live block (a literal, a block
** already freed, an object handle) is neither written nor freed, only the variable is
** cleared and MemForeignFreeCount() counts it. Every block that has held a secret goes
** this way: MemFreeInternal leaves the bytes as they are. */
KX_API void MemFreeSecret(void *ppBlock);

/* For tests only: `hook` (null: none) is called with every block that MemFreeSecret
** frees, after the wipe and just before the memory goes back, so that a test can see
** what is left of the block. `size` is the number of bytes wiped. */
typedef void (*KxFreedSecretHook)(void *ctx, const void *block, size_t size);
KX_API void MemSetFreedSecretHook(KxFreedSecretHook hook, void *ctx);

/* Copies `size` bytes; returns 1, or 0 when either pointer is null. */
KX_API int MemCopy(void *dst, const void *src, size_t size);

/* Fills `size` bytes with zero; a null block is ignored. */
KX_API void MemZero(void *block, size_t size);

/* Accounting: blocks (objects included) that pool `poolId` has handed out and not
** yet had back, and their total size in bytes as requested. -1 for an unknown pool. */
KX_API int64_t MemPoolLiveCount(uint32_t poolId);
KX_API int64_t MemPoolLiveBytes(uint32_t poolId);

/* The memory that pool `poolId`'s live blocks take: their sizes as requested plus the
** runtime's own header in front of each (what malloc keeps besides is not counted). -1
** for an unknown pool. */
KX_API int64_t MemPoolFootprint(uint32_t poolId);

/* How many MemFreeInternal calls were given a pointer that was not a live block. */
KX_API int64_t MemForeignFreeCount(void);

/* The live count summed over every pool. */
KX_API int64_t MemLiveCountAllPools(void);

KX_END_DECLS

#endif
