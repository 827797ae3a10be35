/* blocktable.h - the registry of live blocks: which addresses start a block of the runtime. */
#ifndef KX_BLOCKTABLE_H
#define KX_BLOCKTABLE_H

#include <cstddef>
#include <cstdint>

namespace kx {

/* What a registered address is: a plain pool block, or the data of an object (whose
** object header lies in front of it, in the same allocation). */
enum class BlockKind : uint8_t { Plain, Object };

/* What the runtime keeps just below the address of every block it hands out. It is read
** only once the registry has said that a live block starts at that address. */
struct alignas(16) BlockHeader {
    size_t size; /* as requested */
    uint32_t poolId;
    BlockKind kind;
};

/* The set of addresses at which a live block starts. Blocks are 16-aligned, so each
** 4 KiB page of memory is a bitmap of 256 possible starts, and the table maps a page
** number to its bitmap by open addressing (Fibonacci hash, linear probing, removal by
** shifting the following run back). Blocks made together lie on a few pages, so the
** checks of an object and of the objects it links to read one or two lines of a small
** table rather than a random line of a large one each. The slots come from malloc (the
** runtime's own bookkeeping) and are never freed, so blocks freed by other libraries'
** static destructors at exit still find the table. */
class BlockTable {
public:
    /* Constant-initialized: usable before and after every static constructor. */
    constexpr BlockTable() = default;

    /* True when a live block starts at `p`. Reads nothing but the table. */
    bool contains(const void *p) const {
        const uintptr_t a = reinterpret_cast<uintptr_t>(p);
        if (a % kStep != 0) return false;
        const Page *page = find(a / kPageSize);
        const uintptr_t start = (a % kPageSize) / kStep;
        return page != nullptr && ((page->starts[start / 64] >> (start % 64)) & 1) != 0;
    }

    /* Adds `p` (16-aligned, not yet registered). False when the table had to grow and
    ** there was no memory for it. */
    bool insert(const void *p);

    /* Removes `p`, which must be registered. */
    void erase(const void *p);

private:
    static constexpr uintptr_t kStep = 16;
    static constexpr uintptr_t kPageSize = 4096;

    struct Page {
        uintptr_t number; /* 0: a free slot (no block lies on page 0) */
        uint64_t starts[kPageSize / kStep / 64];
    };

    size_t home(uintptr_t number) const {
        return static_cast<size_t>((number * 0x9E3779B97F4A7C15ull) >> shift_) & mask_;
    }
    const Page *find(uintptr_t number) const {
        for (size_t i = home(number);; i = (i + 1) & mask_) {
            if (slots_[i].number == number) return &slots_[i];
            if (slots_[i].number == 0) return nullptr;
        }
    }
    Page *findOrAdd(uintptr_t number);
    void removeSlot(size_t hole);
    void place(const Page &page);
    bool grow();

    /* Until the first insert the table is one free slot that is never written. */
    static Page noSlots_[1];
    Page *slots_ = noSlots_;
    size_t mask_ = 0;     /* capacity - 1 */
    unsigned shift_ = 63; /* 64 - log2(capacity); with mask_ 0 any shift will do */
    size_t count_ = 0;    /* pages in use */
};

/* Every live block of every pool. */
extern BlockTable liveBlocks;

/* The header of the live block that starts at `p`, or null. Never reads memory at `p`
** unless a live block starts there. */
inline BlockHeader *liveBlock(const void *p) {
    if (p == nullptr || !liveBlocks.contains(p)) return nullptr;
    return reinterpret_cast<BlockHeader *>(const_cast<char *>(static_cast<const char *>(p))) - 1;
}

/* True when `p` is a registered live block of `kind`. */
inline bool isLiveBlock(const void *p, BlockKind kind) {
    const BlockHeader *block = liveBlock(p);
    return block != nullptr && block->kind == kind;
}

} // namespace kx

#endif
