/* slab.cpp - small blocks by size class from chunks of their own; large ones from malloc. */
#include "slab.h"

#include <cstdint>
#include <cstdlib>
#include <sys/mman.h>

/* Valgrind's requests are a few instructions that do nothing outside valgrind; without
** its headers there is nobody to tell. */
#if __has_include(<valgrind/memcheck.h>)
#include <valgrind/memcheck.h>
#else
#define VALGRIND_MAKE_MEM_NOACCESS(p, n) ((void)(p), (void)(n))
#define VALGRIND_MAKE_MEM_UNDEFINED(p, n) ((void)(p), (void)(n))
#define VALGRIND_MAKE_MEM_DEFINED(p, n) ((void)(p), (void)(n))
#define VALGRIND_MALLOCLIKE_BLOCK(p, n, redzone, zeroed) ((void)(p), (void)(n))
#define VALGRIND_FREELIKE_BLOCK(p, redzone) ((void)(p))
#endif

/* Defined when AddressSanitizer's runtime is in the process (a client built with it may
** load this library unsanitized). */
extern "C" void __asan_poison_memory_region(void const volatile *, size_t) __attribute__((weak));

namespace kx {
namespace {

/* Classes of 16 bytes up to 512, then of powers of two up to a whole chunk. */
constexpr size_t kGrain = 16;
constexpr size_t kFineLargest = 512;
constexpr size_t kFineClasses = kFineLargest / kGrain;
constexpr size_t kChunkBytes = 64 * 1024;
constexpr size_t kLargest = kChunkBytes;
constexpr size_t kClasses = kFineClasses + 7; /* 1, 2, 4, ... 64 KiB */

/* A free block of a class, linked through its first word. */
struct FreeBlock {
    FreeBlock *next;
};

struct Slabs {
    FreeBlock *freeLists[kClasses] = {};
    char *chunkNext = nullptr; /* the unused rest of the newest chunk */
    char *chunkEnd = nullptr;
};

/* Constant-initialized, and its chunks are never given back: blocks freed by other
** libraries' static destructors at exit still find it. */
Slabs slabs;

/* AddressSanitizer knows only malloc's blocks: under it every block comes from malloc.
** Valgrind's memcheck is told of each block given out and given back (the requests cost
** a few instructions elsewhere), so that it still sees a freed block read. */
bool underAddressSanitizer() {
    static const bool present = __asan_poison_memory_region != nullptr;
    return present;
}

size_t classOf(size_t bytes) {
    if (bytes <= kFineLargest) return (bytes + kGrain - 1) / kGrain - 1;
    size_t c = kFineClasses;
    for (size_t size = 1024; size < bytes; size *= 2) ++c;
    return c;
}

size_t classSize(size_t c) {
    return c < kFineClasses ? (c + 1) * kGrain : size_t{1024} << (c - kFineClasses);
}

/* A new block of class `c` from the newest chunk, or from a new one. The rest of a
** chunk too short for the block is left unused. */
void *carve(size_t c) {
    const size_t size = classSize(c);
    if (static_cast<size_t>(slabs.chunkEnd - slabs.chunkNext) < size) {
        /* Mapped, not from malloc: page-aligned, and no heap block of malloc's that the
        ** blocks inside would overlap in valgrind's view. */
        void *mapped = mmap(nullptr, kChunkBytes, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
        if (mapped == MAP_FAILED) return nullptr;
        auto *chunk = static_cast<char *>(mapped);
        VALGRIND_MAKE_MEM_NOACCESS(chunk, kChunkBytes);
        slabs.chunkNext = chunk;
        slabs.chunkEnd = chunk + kChunkBytes;
    }
    void *block = slabs.chunkNext;
    slabs.chunkNext += size;
    return block;
}

} // namespace

void *slabAllocate(size_t bytes) {
    if (bytes > kLargest || underAddressSanitizer()) return std::malloc(bytes);
    const size_t c = classOf(bytes);
    void *block = slabs.freeLists[c];
    if (block != nullptr) {
        VALGRIND_MAKE_MEM_DEFINED(block, sizeof(FreeBlock));
        slabs.freeLists[c] = slabs.freeLists[c]->next;
    } else {
        block = carve(c);
    }
    if (block != nullptr) VALGRIND_MALLOCLIKE_BLOCK(block, bytes, 0, 0);
    return block;
}

void slabFree(void *p, size_t bytes) {
    if (bytes > kLargest || underAddressSanitizer()) {
        std::free(p);
        return;
    }
    const size_t c = classOf(bytes);
    VALGRIND_FREELIKE_BLOCK(p, 0);
    VALGRIND_MAKE_MEM_UNDEFINED(p, sizeof(FreeBlock));
    auto *block = static_cast<FreeBlock *>(p);
    block->next = slabs.freeLists[c];
    slabs.freeLists[c] = block;
    VALGRIND_MAKE_MEM_NOACCESS(p, sizeof(FreeBlock));
}

} // namespace kx
