/* mem.cpp - memory pools: a registry of live blocks gives accounting and safe frees. */
#include "kxmem.h"
#include "kxprivate.h"
#include "kxtrace.h"
#include "slab.h"

#include <cstdlib>
#include <cstring>
#include <sodium.h>
#include <string>
#include <vector>

namespace {

constexpr uint32_t kDefaultPoolId = 1;

struct Pool {
    std::string name;
    int64_t liveCount = 0;
    int64_t liveBytes = 0;
    int64_t footprint = 0;
};

/* The pools' bookkeeping (the blocks themselves are in kx::liveBlocks). Made on first
** use and never destroyed, so that blocks freed by other libraries' static destructors
** at exit still find it. */
struct Registry {
    std::vector<Pool> pools; /* pool id n is pools[n - 1] */
    int64_t foreignFrees = 0;
    KxFreedSecretHook freedSecretHook = nullptr;
    void *freedSecretHookCtx = nullptr;

    Registry() {
        pools.push_back(Pool{"default"});
    }
};

Registry &registry() {
    static Registry *r = new Registry;
    return *r;
}

Pool *findPool(uint32_t poolId) {
    auto &pools = registry().pools;
    if (poolId == 0 || poolId > pools.size()) return nullptr;
    return &pools[poolId - 1];
}

/* Whether `size` bytes and the runtime's headers fit in one allocation. malloc gives no
** object larger than PTRDIFF_MAX, and checking against it also keeps the sum from
** wrapping round to a small number. */
bool fitsOneAllocation(size_t headerSize, size_t size) {
    return size <= size_t{PTRDIFF_MAX} - headerSize - sizeof(kx::BlockHeader);
}

/* The bytes of one allocation: the headers, then the block (one byte at least, so that
** every block has an address of its own). */
size_t allocationSize(size_t headerSize, size_t size) {
    return headerSize + sizeof(kx::BlockHeader) + (size ? size : 1);
}

/* Reads the block pointer stored at `ppBlock` and clears the variable; null when either
** is null. */
void *takeBlock(void *ppBlock) {
    if (ppBlock == nullptr) return nullptr;
    void **slot = static_cast<void **>(ppBlock);
    void *block = *slot;
    *slot = nullptr;
    return block;
}

} // namespace

namespace kx {

/* An allocation is [headerSize bytes][BlockHeader][size bytes]; the block's address is
** that of its data. */
void *allocateBlock(size_t headerSize, size_t size, uint32_t poolId, BlockKind kind) {
    Pool *pool = findPool(poolId);
    if (pool == nullptr) return nullptr;
    if (!fitsOneAllocation(headerSize, size)) {
        TraceMessage("KXMEM      ", 1, 0, 0, "Refused a block of %zu bytes in pool %u", size,
                     poolId);
        return nullptr;
    }
    void *base = slabAllocate(allocationSize(headerSize, size));
    if (base == nullptr) return nullptr;
    auto *block = reinterpret_cast<BlockHeader *>(static_cast<char *>(base) + headerSize);
    *block = BlockHeader{size, poolId, kind};
    void *p = block + 1;
    if (!liveBlocks.insert(p)) {
        slabFree(base, allocationSize(headerSize, size));
        return nullptr;
    }
    pool->liveCount++;
    pool->liveBytes += static_cast<int64_t>(size);
    pool->footprint += static_cast<int64_t>(headerSize + sizeof(BlockHeader) + size);
    return p;
}

bool freeBlock(const void *p, size_t headerSize, BlockKind kind) {
    BlockHeader *block = liveBlock(p);
    if (block == nullptr || block->kind != kind) return false;
    Pool *pool = findPool(block->poolId);
    pool->liveCount--;
    pool->liveBytes -= static_cast<int64_t>(block->size);
    pool->footprint -= static_cast<int64_t>(headerSize + sizeof(BlockHeader) + block->size);
    liveBlocks.erase(p);
    slabFree(reinterpret_cast<char *>(block) - headerSize, allocationSize(headerSize, block->size));
    return true;
}

} // namespace kx

extern "C" {

uint32_t MemGetDefaultPoolId(void) {
    return kDefaultPoolId;
}

uint32_t MemPoolCreate(const char *name) {
    auto &pools = registry().pools;
    pools.push_back(Pool{name ? name : ""});
    return static_cast<uint32_t>(pools.size());
}

void *MemAllocateFromPool(size_t size, uint32_t poolId) {
    return kx::allocateBlock(0, size, poolId, kx::BlockKind::Plain);
}

void MemFreeInternal(void *ppBlock) {
    void *block = takeBlock(ppBlock);
    if (block != nullptr && !kx::freeBlock(block, 0, kx::BlockKind::Plain))
        registry().foreignFrees++;
}

void MemFreeSecret(void *ppBlock) {
    void *block = takeBlock(ppBlock);
    if (block == nullptr) return;
    const kx::BlockHeader *header = kx::liveBlock(block);
    if (header == nullptr || header->kind != kx::BlockKind::Plain) {
        registry().foreignFrees++;
        return;
    }
    const size_t usable = header->size ? header->size : 1;
    sodium_memzero(block, usable);
    Registry &r = registry();
    if (r.freedSecretHook != nullptr) r.freedSecretHook(r.freedSecretHookCtx, block, usable);
    kx::freeBlock(block, 0, kx::BlockKind::Plain);
}

void MemSetFreedSecretHook(KxFreedSecretHook hook, void *ctx) {
    registry().freedSecretHook = hook;
    registry().freedSecretHookCtx = ctx;
}

int MemCopy(void *dst, const void *src, size_t size) {
    if (dst == nullptr || src == nullptr) return 0;
    std::memmove(dst, src, size);
    return 1;
}

void MemZero(void *block, size_t size) {
    if (block != nullptr) std::memset(block, 0, size);
}

int64_t MemPoolLiveCount(uint32_t poolId) {
    const Pool *pool = findPool(poolId);
    return pool ? pool->liveCount : -1;
}

int64_t MemPoolLiveBytes(uint32_t poolId) {
    const Pool *pool = findPool(poolId);
    return pool ? pool->liveBytes : -1;
}

int64_t MemPoolFootprint(uint32_t poolId) {
    const Pool *pool = findPool(poolId);
    return pool ? pool->footprint : -1;
}

int64_t MemForeignFreeCount(void) {
    return registry().foreignFrees;
}

int64_t MemLiveCountAllPools(void) {
    int64_t total = 0;
    for (const Pool &pool : registry().pools) total += pool.liveCount;
    return total;
}

} // extern "C"
