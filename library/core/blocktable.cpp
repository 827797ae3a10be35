/* blocktable.cpp - growing and shrinking the registry's open-addressing table of live blocks. */
#include "blocktable.h"

#include <cstdlib>

namespace kx {

namespace {

constexpr size_t kFirstCapacity = 4096;

/* Grown past 5/8 full: probe runs stay short, and the table stays small. */
bool overLoaded(size_t count, size_t capacity) {
    return count * 8 > capacity * 5;
}

unsigned log2Of(size_t powerOfTwo) {
    unsigned bits = 0;
    while ((size_t{1} << bits) < powerOfTwo) ++bits;
    return bits;
}

} // namespace

BlockSlot BlockTable::noSlots_[1] = {};
BlockTable liveBlocks;

/* Puts `block` into the first free slot from its home; the table has a free slot. */
void BlockTable::place(const BlockSlot &block) {
    size_t i = home(block.address);
    while (slots_[i].address != nullptr) i = (i + 1) & mask_;
    slots_[i] = block;
}

bool BlockTable::grow() {
    const size_t oldCapacity = mask_ + 1;
    const size_t capacity = slots_ == noSlots_ ? kFirstCapacity : oldCapacity * 2;
    auto *slots = static_cast<BlockSlot *>(std::calloc(capacity, sizeof(BlockSlot)));
    if (slots == nullptr) return false;
    BlockSlot *old = slots_;
    slots_ = slots;
    mask_ = capacity - 1;
    shift_ = 64 - log2Of(capacity);
    if (old == noSlots_) return true;
    for (size_t i = 0; i < oldCapacity; ++i)
        if (old[i].address != nullptr) place(old[i]);
    std::free(old);
    return true;
}

bool BlockTable::insert(const BlockSlot &block) {
    if (overLoaded(count_ + 1, mask_ + 1) && !grow()) return false;
    place(block);
    count_++;
    return true;
}

void BlockTable::erase(const BlockSlot *slot) {
    size_t hole = static_cast<size_t>(slot - slots_);
    /* Each later slot of the run moves into the hole unless its home lies between the
    ** hole and itself, where a probe for it would never pass the hole. */
    for (size_t i = (hole + 1) & mask_; slots_[i].address != nullptr; i = (i + 1) & mask_) {
        const size_t fromHome = (i - home(slots_[i].address)) & mask_;
        if (fromHome >= ((i - hole) & mask_)) {
            slots_[hole] = slots_[i];
            hole = i;
        }
    }
    slots_[hole].address = nullptr;
    count_--;
}

} // namespace kx
