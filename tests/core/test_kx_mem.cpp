/* test_kx_mem.cpp - pool accounting, secrets, and frees that must never crash. */
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
    EXPECT_EQ((Values{kxtest::word(a), MemPoolLiveBytes(other)}), (Values{0, 28}));
    ObjReleaseInternal(&obj);
    EXPECT_EQ((Values{MemPoolLiveCount(other), MemPoolFootprint(other)}), (Values{0, 0}));
    char *empty = static_cast<char *>(MemAllocateFromPool(0, pool()));
    ASSERT_NE(empty, nullptr) << "size 0 gives a usable block";
    empty[0] = 'x';
    MemFreeInternal(&empty);
    for (uint32_t unknown : {0u, 0x7fffffffu})
        EXPECT_EQ((Values{kxtest::word(MemAllocateFromPool(8, unknown)),
                          MemPoolLiveCount(unknown), MemPoolLiveBytes(unknown),
                          MemPoolFootprint(unknown)}),
                  (Values{0, -1, -1, -1}));
}
/* A size whose sum with the runtime's header would wrap round (or pass what one
** allocation can hold) gives null and a trace line, never a tiny block overrun. */
TEST_F(MemTest, SizesTooLargeForTheHeaderAreRefusedAndTraced) {
    kxtest::TraceLines traced;
    for (size_t size : {SIZE_MAX, SIZE_MAX - 15, SIZE_MAX - 8, size_t{PTRDIFF_MAX}})
        EXPECT_EQ(MemAllocateFromPool(size, pool()), nullptr) << "SIZE_MAX - " << SIZE_MAX - size;
    EXPECT_EQ(traced.lines.size(), 4u);
}
TEST_F(MemTest, ForeignPointersAreClearedCountedAndLeftAlone) {
    char *block = static_cast<char *>(MemAllocateFromPool(256, pool()));
    void *fromMalloc = std::malloc(8), *obj = make(0x1234);
    void *freed = MemAllocateFromPool(16, pool());
    const void *stale = freed;
    int onStack = 0;
    MemFreeInternal(&freed);
    const int64_t foreign = MemForeignFreeCount();
    /* Inside a block, and an aligned address within one: where a block could start. */
    const void *rows[] = {"a literal", stale, fromMalloc, &onStack, block + 4, block + 64, obj};
    for (const void *p : rows) {
        MemFreeInternal(&p);
        EXPECT_EQ(p, nullptr);
    }
    std::memset(fromMalloc, 0, 8); /* still the caller's: not freed */
    std::free(fromMalloc);
    EXPECT_EQ(ObjGetTag(obj), 0x1234u) << "MemFreeInternal must not free an object";
    ObjReleaseInternal(&obj);
    MemFreeInternal(&block);
    MemFreeInternal(nullptr);
    MemFreeInternal(&freed);
    MemZero(nullptr, 10);
    EXPECT_EQ(MemForeignFreeCount(), foreign + 7) << "nulls are no foreign pointers";
}
TEST_F(MemTest, ASecretIsWipedWholeBeforeItsBlockGoesAndFreesAsSafelyAsAnyBlock) {
    kxtest::FreedSecrets freed;
    char *secret = StrCat("hunter", "2", nullptr);
    const char *literal = "read-only: never written";
    void *again = secret, *obj = make(0x1234, "p;", 8), *objAlias = obj;
    const int64_t foreign = MemForeignFreeCount();
    MemFreeSecret(&secret);
    EXPECT_EQ(freed.bytes, std::string(8, '\0'));
    void *slots[] = {&again, &literal, &objAlias, &secret};
    for (void *slot : slots) MemFreeSecret(slot);
    MemFreeSecret(nullptr);
    EXPECT_EQ((Values{kxtest::word(literal), ObjGetTag(obj), MemForeignFreeCount() - foreign}),
              (Values{0, 0x1234, 3})) << "an object is no secret block";
    EXPECT_EQ(freed.bytes.size(), 8u) << "only the live block was wiped and freed";
    ObjReleaseInternal(&obj);
}
TEST_F(MemTest, CopyAndZero) {
    char src[] = "abcdef", dst[7] = {};
    EXPECT_EQ((Values{MemCopy(dst, src, sizeof src), MemCopy(nullptr, src, 1),
                      MemCopy(dst, nullptr, 1)}), (Values{1, 0, 0}));
    MemZero(dst, 3);
    EXPECT_EQ(std::string(dst, 6), std::string("\0\0\0def", 6));
}
/* The registry keeps finding every live block while many others come and go in a
** scrambled order: the lookups that guard every object access depend on it. */
TEST_F(MemTest, LiveBlocksStayKnownWhileOthersComeAndGoInAnyOrder) {
    constexpr uint32_t kObjects = 20000, kTagBase = 0x7a000000u;
    std::vector<void *> objects(kObjects), blocks(kObjects);
    std::vector<uint32_t> order(kObjects);
    for (uint32_t i = 0; i < kObjects; ++i) {
        objects[i] = make(kTagBase + i, "p;", 8);
        blocks[i] = MemAllocateFromPool(i % 48, pool());
        order[i] = i;
    }
    std::shuffle(order.begin(), order.end(), std::mt19937(20240611u));
    std::vector<const void *> gone;
    for (uint32_t n = 0; n < kObjects / 2; ++n) {
        gone.push_back(objects[order[n]]);
        ObjReleaseInternal(&objects[order[n]]);
        MemFreeInternal(&blocks[order[n]]);
    }
    uint32_t wrong = 0;
    for (uint32_t i = 0; i < kObjects; ++i)
        wrong += objects[i] != nullptr && ObjGetTag(objects[i]) != kTagBase + i;
    for (const void *h : gone) wrong += ObjGetTag(h) != 0;
    EXPECT_EQ(wrong, 0u) << "live objects lost or released ones still found";
    const int64_t foreign = MemForeignFreeCount();
    for (uint32_t n = kObjects / 2; n < kObjects; ++n) {
        void *asBlock = objects[order[n]];
        MemFreeInternal(&asBlock); /* an object is no block, whatever its neighbours did */
        ObjReleaseInternal(&objects[order[n]]);
        MemFreeInternal(&blocks[order[n]]);
    }
    EXPECT_EQ(MemForeignFreeCount(), foreign + kObjects / 2);
}
} // namespace
