/* slab.h - where the runtime's blocks live: small ones in chunks of their own, apart
** from the heap that Xt and Motif allocate from. */
#ifndef KX_SLAB_H
#define KX_SLAB_H

#include <cstddef>

namespace kx {

/* Memory for `bytes` (headers included, at least 1), 16-aligned, or null. Blocks of up
** to 64 KiB come from chunks that hold nothing else, by size classes (of 16 bytes up to
** 512, then of powers of two), and a freed one serves the next block of its class;
** larger ones come from malloc. Interleaved with the toolkit's own small allocations, a
** screen's items, records and lists spread the widgets over more cache lines and pages,
** and building a large screen took about a fifth longer than the instructions alone
** explain. And a request of a kilobyte or more makes malloc first merge every small
** chunk freed since (a tenth of a large screen's teardown, which frees thousands):
** the runtime's growing arrays no longer make it.
** Valgrind's memcheck is told of every block given out and given back, and under
** AddressSanitizer every block comes from malloc, so that both still see a block used
** after it was freed. Single-threaded, like the rest of the runtime. */
void *slabAllocate(size_t bytes);

/* Gives back a block of `bytes` from slabAllocate (the same count). */
void slabFree(void *p, size_t bytes);

} // namespace kx

#endif
