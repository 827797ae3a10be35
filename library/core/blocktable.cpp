/* blocktable.cpp - adding and removing block starts, and growing the registry's page table. */
#include "blocktable.h"

#include <cstdlib>

namespace kx {

namespace {

constexpr size_t kFirstCapacity = 256;

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

BlockTable::Page BlockTable::noSlots_[1] = {};
BlockTable liveBlocks;

/* Puts `page` into the first free slot from its home; the table has a free slot. */
void BlockTable::place(const Page &page) {
    size_t i = home(page.number);
    while (slots_[i].number != 0) i = (i + 1) & mask_;
    slots_[i] = page;
}

bool BlockTable::grow() {
    const size_t oldCapacity = mask_ + 1;
    const size_t capacity = slots_ == noSlots_ ? kFirstCapacity : oldCapacity * 2;
    auto *slots = static_cast<Page *>(std::calloc(capacity, sizeof(Page)));
    if (slots == nullptr) return false;
    Page *old = slots_;
    slots_ = slots;
    mask_ = capacity - 1;
    shift_ = 64 - log2Of(capacity);
    if (old == noSlots_) return true;
    for (size_t i = 0; i < oldCapacity; ++i)
        if (old[i].number != 0) place(old[i]);
    std::free(old);
    return true;
}

/* The slot of page `number`, made empty when the page had no block yet; null when the
** table had to grow and could not. */
BlockTable::Page *BlockTable::findOrAdd(uintptr_t number) {
    if (const Page *page = find(number)) return const_cast<Page *>(page);
    if (overLoaded(count_ + 1, mask_ + 1) && !grow()) return nullptr;
    size_t i = home(number);
    while (slots_[i].number != 0) i = (i + 1) & mask_;
    slots_[i] = Page{number, {}};
    count_++;
    return &slots_[i];
}

bool BlockTable::insert(const void *p) {
    const uintptr_t a = reinterpret_cast<uintptr_t>(p);
    Page *page = findOrAdd(a / kPageSize);
    if (page == nullptr) return false;
    const uintptr_t start = (a % kPageSize) / kStep;
    page->starts[start / 64] |= uint64_t{1} << (start % 64);
    return true;
}

void BlockTable::erase(const void *p) {
    const uintptr_t a = reinterpret_cast<uintptr_t>(p);
    Page *page = const_cast<Page *>(find(a / kPageSize));
    const uintptr_t start = (a % kPageSize) / kStep;
    page->starts[start / 64] &= ~(uint64_t{1} << (start % 64));
    for (uint64_t word : page->starts)
        if (word != 0) return;
    removeSlot(static_cast<size_t>(page - slots_));
}

/* Frees the slot `hole`. Each later slot of the run moves into the hole unless its home
** lies between the hole and itself, where a probe for it would never pass the hole. */
void BlockTable::removeSlot(size_t hole) {
    for (size_t i = (hole + 1) & mask_; slots_[i].number != 0; i = (i + 1) & mask_) {
        const size_t fromHome = (i - home(slots_[i].number)) & mask_;
        if (fromHome >= ((i - hole) & mask_)) {
            slots_[hole] = slots_[i];
            hole = i;
        }
    }
    slots_[hole].number = 0;
    count_--;
}

} // namespace kx
