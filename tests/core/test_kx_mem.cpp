/* test_kx_mem.cpp - pool accounting, secrets, frees that must never crash, the registry. */
#include "kxtest.h"
#include <algorithm>
#include <cstring>
#include <random>
namespace {
using MemTest = kxtest::PoolTest;
using kxtest::make;
using kxtest::Values;
TEST_F(MemTest, PoolsCountTheirBlocksBytesAndHeaders) {
    const uint32_t other = MemPoolCreate("other");
    const int64_t defaultCount = MemPoolLiveCount(pool());
    void *a = MemAllocateFromPool(100, other), *obj = nullptr;
    const int64_t blockFootprint = MemPoolFootprint(other);
    ASSERT_TRUE(ObjCreateInternal(&obj, 28, 0x1234, "p;", 0, other));
    /* Sizes stay as asked; the footprint adds a header per block, larger for an object. */
    const int64_t objectFootprint = MemPoolFootprint(other) - blockFootprint;
    EXPECT_EQ((Values{other != 0 && other != pool(), MemPoolLiveCount(other),
                      MemPoolLiveBytes(other), MemPoolLiveCount(pool()) - defaultCount,
                      blockFootprint > 100, objectFootprint - 28 > blockFootprint - 100}),
              (Values{1, 2, 128, 0, 1, 1}));
    MemFreeInternal(&a);
    ObjReleaseInternal(&obj);
    EXPECT_EQ((Values{kxtest::word(a), MemPoolLiveCount(other), MemPoolFootprint(other)}),
              (Values{0, 0, 0}));
    char *empty = static_cast<char *>(MemAllocateFromPool(0, pool()));
    ASSERT_NE(empty, nullptr) << "size 0 gives a usable block";
    empty[0] = 'x';
    MemFreeInternal(&empty);
    for (uint32_t unknown : {0u, 0x7fffffffu})
        EXPECT_EQ((Values{kxtest::word(MemAllocateFromPool(8, unknown)),
                          MemPoolLiveCount(unknown), MemPoolLiveBytes(unknown),
                          MemPoolFootprint(unknown)}), (Values{0, -1, -1, -1}));
    char src[] = "abcdef", dst[7] = {};
    EXPECT_EQ((Values{MemCopy(dst, src, sizeof src), MemCopy(nullptr, src, 1),
                      MemCopy(dst, nullptr, 1)}), (Values{1, 0, 0}));
    MemZero(dst, 3);
    MemZero(nullptr, 10);
    EXPECT_EQ(std::string(dst, 6), std::string("\0\0\0def", 6));
}
/* A size whose sum with the runtime's header would wrap round (or pass what one
** allocation can hold) gives null and a trace line, never a tiny block overrun. */
TEST_F(MemTest, SizesTooLargeForTheHeaderAreRefusedAndTraced) {
    kxtest::TraceLines traced;
    for (size_t size : {SIZE_MAX, SIZE_MAX - 15, SIZE_MAX - 8, size_t{PTRDIFF_MAX}})
        EXPECT_EQ(MemAllocateFromPool(size, pool()), nullptr) << "SIZE_MAX - " << SIZE_MAX - size;
    EXPECT_EQ(traced.lines.size(), 4u);
}
/* Either free of what is no live pool block (a literal, a freed block, malloc's, the stack,
** inside a block or an aligned step within one, an object) only clears and counts it. */
TEST_F(MemTest, SecretsAreWipedWholeAndForeignPointersOnlyClearedAndCounted) {
    kxtest::FreedSecrets freed;
    char *secret = StrCat("hunter", "2", nullptr);
    char *block = static_cast<char *>(MemAllocateFromPool(256, pool()));
    void *fromMalloc = std::malloc(8), *obj = make(0x1234), *gone = MemAllocateFromPool(16, pool());
    const void *stale = gone;
    MemFreeInternal(&gone);
    const int64_t foreign = MemForeignFreeCount();
    MemFreeSecret(&secret);
    EXPECT_EQ(freed.bytes, std::string(8, '\0'));
    int onStack = 0;
    const void *rows[] = {"a literal", stale, fromMalloc, &onStack, block + 4, block + 64, obj};
    for (auto free : {MemFreeInternal, MemFreeSecret})
        for (const void *p : rows) {
            free(&p);
            EXPECT_EQ(p, nullptr);
        }
    for (auto free : {MemFreeInternal, MemFreeSecret}) free(nullptr);
    MemFreeSecret(&secret); /* null by now */
    EXPECT_EQ((Values{MemForeignFreeCount() - foreign, ObjGetTag(obj), onStack}),
              (Values{14, 0x1234, 0})) << "nulls are no foreign pointers, objects no blocks";
    EXPECT_EQ(freed.bytes.size(), 8u) << "only the live block was wiped and freed";
    std::free(fromMalloc); /* still the caller's */
    ObjReleaseInternal(&obj);
    MemFreeInternal(&block);
}
/* Objects and blocks come and go by the hundred thousand in a scrambled order: the registry
** that guards every object access still finds each live one and none that went, and a list
** that long is released without recursing once per element. The count fills the registry's
** page table close to where it grows, so that removals have probe runs to move back. */
TEST_F(MemTest, TheRegistryKeepsUpWithChurnAndALongListGoesWithoutRecursion) {
    constexpr uint32_t kCount = 150000, kTagBase = 0x7a000000u;
    std::vector<void *> objects(kCount), blocks(kCount), gone;
    std::vector<uint32_t> order(kCount);
    for (uint32_t i = 0; i < kCount; ++i) {
        objects[i] = make(kTagBase + i, "p;", 8);
        blocks[i] = MemAllocateFromPool(i % 48, pool());
        order[i] = i;
    }
    std::shuffle(order.begin(), order.end(), std::mt19937(20240611u));
    for (uint32_t n = 0; n < kCount / 2; ++n) {
        gone.push_back(objects[order[n]]);
        ObjReleaseInternal(&objects[order[n]]);
        MemFreeInternal(&blocks[order[n]]);
    }
    uint32_t wrong = 0;
    for (const void *h : gone) wrong += ObjGetTag(h) != 0;
    void *list = nullptr;
    ASSERT_TRUE(ListCreateFromPool(&list, 0, pool()));
    for (uint32_t i = 0; i < kCount; ++i) {
        wrong += objects[i] != nullptr && ObjGetTag(objects[i]) != kTagBase + i;
        ListPushLastItemInternal(list, &objects[i]);
        MemFreeInternal(&blocks[i]);
    }
    EXPECT_EQ((Values{wrong, ListCount(list)}), (Values{0, kCount / 2}));
    ObjReleaseInternal(&list);
}
} // namespace
