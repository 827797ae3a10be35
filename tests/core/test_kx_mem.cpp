/* test_kx_mem.cpp - pool accounting, secrets, and frees that must never crash. */
#include "kxtest.h"
#include <algorithm>
#include <cstring>
#include <random>
namespace {
using MemTest = kxtest::PoolTest;
using kxtest::make;
TEST_F(MemTest, PoolsCountTheirBlocksBytesAndHeaders) {
    const uint32_t other = MemPoolCreate("other");
    ASSERT_NE(other, 0u);
    ASSERT_NE(other, pool());
    const int64_t defaultCount = MemPoolLiveCount(pool());
    void *a = MemAllocateFromPool(100, other);
    const int64_t blockFootprint = MemPoolFootprint(other);
    EXPECT_GT(blockFootprint, 100) << "a block takes its size and a header";
    void *obj = nullptr;
    ASSERT_TRUE(ObjCreateInternal(&obj, 28, 0x1234, "p;", 0, other));
    EXPECT_GT(MemPoolFootprint(other) - blockFootprint, blockFootprint - 100 + 28)
        << "an object's header is larger than a plain block's";
    EXPECT_EQ(MemPoolLiveCount(other), 2);
    EXPECT_EQ(MemPoolLiveBytes(other), 128) << "the sizes stay as requested";
    EXPECT_EQ(MemPoolLiveCount(pool()), defaultCount) << "another pool's blocks leaked in";
    MemFreeInternal(&a);
    EXPECT_EQ(a, nullptr);
    EXPECT_EQ(MemPoolLiveBytes(other), 28);
    ObjReleaseInternal(&obj);
    EXPECT_EQ(MemPoolLiveCount(other), 0);
    EXPECT_EQ(MemPoolFootprint(other), 0);
    char *empty = static_cast<char *>(MemAllocateFromPool(0, pool()));
    ASSERT_NE(empty, nullptr) << "size 0 gives a usable block";
    empty[0] = 'x';
    MemFreeInternal(&empty);
    for (uint32_t unknown : {0u, 0x7fffffffu}) {
        EXPECT_EQ(MemAllocateFromPool(8, unknown), nullptr);
        EXPECT_EQ(MemPoolLiveCount(unknown), -1);
        EXPECT_EQ(MemPoolLiveBytes(unknown), -1);
        EXPECT_EQ(MemPoolFootprint(unknown), -1);
    }
}
/* A size whose sum with the runtime's header would wrap round (or pass what one
** allocation can hold) gives null and a trace line, never a tiny block overrun. */
TEST_F(MemTest, SizesTooLargeForTheHeaderAreRefusedAndTraced) {
    kxtest::TraceLines traced;
    for (size_t size : {SIZE_MAX, SIZE_MAX - 15, SIZE_MAX - 8, size_t{PTRDIFF_MAX}}) {
        void *p = MemAllocateFromPool(size, pool());
        EXPECT_EQ(p, nullptr) << "SIZE_MAX - " << SIZE_MAX - size;
        MemFreeInternal(&p);
    }
    EXPECT_EQ(traced.lines.size(), 4u);
}
TEST_F(MemTest, ForeignPointersAreClearedCountedAndLeftAlone) {
    char *block = static_cast<char *>(MemAllocateFromPool(256, pool()));
    void *fromMalloc = std::malloc(8);
    void *obj = make(0x1234);
    int onStack = 0;
    void *freed = MemAllocateFromPool(16, pool());
    const void *stale = freed;
    MemFreeInternal(&freed);
    const int64_t foreign = MemForeignFreeCount();
    /* Inside a block, and an aligned address within one: where a block could start. */
    const void *rows[] = {"a literal", stale, fromMalloc, &onStack, block + 4, block + 64, obj};
    for (const void *p : rows) {
        MemFreeInternal(&p);
        EXPECT_EQ(p, nullptr);
    }
    EXPECT_EQ(MemForeignFreeCount(), foreign + 7);
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
    void *again = secret;
    const char *literal = "read-only: never written";
    void *obj = make(0x1234, "p;", 8);
    void *objAlias = obj;
    const int64_t foreign = MemForeignFreeCount();
    MemFreeSecret(&secret);
    EXPECT_EQ(secret, nullptr);
    EXPECT_EQ(freed.bytes, std::string(8, '\0'));
    MemFreeSecret(&again);
    MemFreeSecret(&literal);
    MemFreeSecret(&objAlias);
    EXPECT_EQ(literal, nullptr);
    EXPECT_EQ(ObjGetTag(obj), 0x1234u) << "an object is no secret block";
    MemFreeSecret(nullptr);
    MemFreeSecret(&secret);
    EXPECT_EQ(MemForeignFreeCount(), foreign + 3);
    EXPECT_EQ(freed.bytes.size(), 8u) << "only the live block was wiped and freed";
    ObjReleaseInternal(&obj);
}
TEST_F(MemTest, CopyAndZero) {
    char src[] = "abcdef", dst[7] = {};
    EXPECT_EQ(MemCopy(dst, src, sizeof src), 1);
    EXPECT_EQ(MemCopy(nullptr, src, 1), 0);
    EXPECT_EQ(MemCopy(dst, nullptr, 1), 0);
    MemZero(dst, 3);
    EXPECT_EQ(std::string(dst, 6), std::string("\0\0\0def", 6));
}
/* The registry keeps finding every live block while many others come and go in a
** scrambled order: the lookups that guard every object access depend on it. */
TEST_F(MemTest, LiveBlocksStayKnownWhileOthersComeAndGoInAnyOrder) {
    constexpr uint32_t kObjects = 20000, kTagBase = 0x7a000000u;
    const int64_t count = MemPoolLiveCount(pool());
    std::vector<void *> objects(kObjects), blocks(kObjects);
    std::vector<uint32_t> order(kObjects);
    for (uint32_t i = 0; i < kObjects; ++i) {
        objects[i] = make(kTagBase + i, "p;", 8);
        blocks[i] = MemAllocateFromPool(i % 48, pool());
        order[i] = i;
    }
    EXPECT_EQ(MemPoolLiveCount(pool()), count + 2 * kObjects);
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
