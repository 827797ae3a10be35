/* blocktable.h - the registry's map from live block address to block, built for lookups. */
#ifndef KX_BLOCKTABLE_H
#define KX_BLOCKTABLE_H

#include <cstddef>
#include <cstdint>

namespace kx {

/* What a registered address is: a plain pool block, or the data of an object (whose
** header lies in front of it, in the same allocation). */
enum class BlockKind : uint8_t { Plain, Object };

/* One live block: its address (null marks a free slot), its size as requested, its pool
** and its kind. */
struct BlockSlot {
    const void *address;
    size_t size;
    uint32_t poolId;
    BlockKind kind;
};

/* Address -> block by open addressing: a power-of-two array of slots, each address
** starting at the slot its Fibonacci hash names and probing linearly. Removal shifts
** the following run back instead of leaving tombstones, so a lookup ends at the first
** free slot. The slots come from malloc (the runtime's own bookkeeping) and are never
** freed, so blocks freed by other libraries' static destructors at exit still find the
** table. Every object check of the runtime is one `find`: it must stay small. */
class BlockTable {
public:
    /* Constant-initialized: usable before and after every static constructor. */
    constexpr BlockTable() = default;

    /* The slot of the live block at `p` (which must not be null), or null. Reads nothing
    ** but the table. */
    const BlockSlot *find(const void *p) const {
        for (size_t i = home(p);; i = (i + 1) & mask_) {
            const BlockSlot &slot = slots_[i];
            if (slot.address == p) return &slot;
            if (slot.address == nullptr) return nullptr;
        }
    }

    /* Adds a block whose address is not in the table. False when the table had to grow
    ** and there was no memory for it. */
    bool insert(const BlockSlot &block);

    /* Removes the block of `slot`, a result of `find`. */
    void erase(const BlockSlot *slot);

private:
    size_t home(const void *p) const {
        /* Blocks are 16-aligned: the low bits say nothing. */
        const uint64_t mixed = (reinterpret_cast<uintptr_t>(p) >> 4) * 0x9E3779B97F4A7C15ull;
        return static_cast<size_t>(mixed >> shift_) & mask_;
    }
    void place(const BlockSlot &block);
    bool grow();

    /* Until the first insert the table is one free slot that is never written. */
    static BlockSlot noSlots_[1];
    BlockSlot *slots_ = noSlots_;
    size_t mask_ = 0;      /* capacity - 1 */
    unsigned shift_ = 63;  /* 64 - log2(capacity); with mask_ 0 any shift will do */
    size_t count_ = 0;
};

/* Every live block of every pool. */
extern BlockTable liveBlocks;

/* True when `p` is a registered live block of `kind`. Never dereferences `p`. */
inline bool isLiveBlock(const void *p, BlockKind kind) {
    if (p == nullptr) return false;
    const BlockSlot *slot = liveBlocks.find(p);
    return slot != nullptr && slot->kind == kind;
}

} // namespace kx

#endif
