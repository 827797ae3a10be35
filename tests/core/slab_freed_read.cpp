/* slab_freed_read.cpp - reads a small pool block after freeing it: valgrind must say so,
** though the block came from the runtime's own chunks and not from malloc. */
#include <cstdio>
#include "kx.h"
int main() {
    auto *block = static_cast<volatile char *>(MemAllocateFromPool(24, MemGetDefaultPoolId()));
    block[0] = 'x';
    void *freed = const_cast<char *>(block);
    MemFreeInternal(&freed);
    std::printf("read after free: %d\n", block[1]);
    return 0;
}
