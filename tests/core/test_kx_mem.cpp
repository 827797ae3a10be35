/* test_kx_mem.cpp - pool accounting and frees that must never crash. */
#include "kxtest.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <random>
#include <vector>

namespace {

using MemTest = kxtest::PoolTest;

TEST_F(MemTest, DefaultPoolIsStableAndNonZero) {
    EXPECT_NE(MemGetDefaultPoolId(), 0u);
    EXPECT_EQ(MemGetDefaultPoolId(), MemGetDefaultPoolId());
}

TEST_F(MemTest, AllocationsAreCountedPerPoolInBlocksAndBytes) {
    const uint32_t other = MemPoolCreate("other");
    ASSERT_NE(other, 0u);
    ASSERT_NE(other, pool());
    const int64_t defaultCount = MemPoolLiveCount(pool());
    const int64_t defaultBytes = MemPoolLiveBytes(pool());

    void *a = MemAllocateFromPool(100, other);
    void *b = MemAllocateFromPool(28, other);
    ASSERT_NE(a, nullptr);
    ASSERT_NE(b, nullptr);
    EXPECT_EQ(MemPoolLiveCount(other), 2);
    EXPECT_EQ(MemPoolLiveBytes(other), 128);
    EXPECT_EQ(MemPoolLiveCount(pool()), defaultCount) << "another pool's blocks leaked in";
    EXPECT_EQ(MemPoolLiveBytes(pool()), defaultBytes);

    MemFreeInternal(&a);
    EXPECT_EQ(a, nullptr);
    EXPECT_EQ(MemPoolLiveCount(other), 1);
    EXPECT_EQ(MemPoolLiveBytes(other), 28);
    MemFreeInternal(&b);
    EXPECT_EQ(MemPoolLiveCount(other), 0);
    EXPECT_EQ(MemPoolLiveBytes(other), 0);
}

TEST_F(MemTest, TheFootprintCountsTheRuntimesHeadersToo) {
    const uint32_t other = MemPoolCreate("footprint");
    void *block = MemAllocateFromPool(100, other);
    const int64_t blockFootprint = MemPoolFootprint(other);
    EXPECT_GT(blockFootprint, 100) << "a block takes its size and a header";
    void *obj = nullptr;
    ASSERT_TRUE(ObjCreateInternal(&obj, 100, 0x1234, "p;", 0, other));
    EXPECT_GT(MemPoolFootprint(other) - blockFootprint, blockFootprint)
        << "an object's header is larger than a plain block's";
    EXPECT_EQ(MemPoolLiveBytes(other), 200) << "while the sizes stay as requested";
    ObjReleaseInternal(&obj);
    MemFreeInternal(&block);
    EXPECT_EQ(MemPoolFootprint(other), 0);
    EXPECT_EQ(MemPoolFootprint(0), -1);
}

TEST_F(MemTest, ZeroSizeGivesAUsableBlock) {
    char *p = static_cast<char *>(MemAllocateFromPool(0, pool()));
    ASSERT_NE(p, nullptr);
    p[0] = 'x';
    MemFreeInternal(&p);
}

TEST_F(MemTest, UnknownPoolsGiveNothing) {
    EXPECT_EQ(MemAllocateFromPool(8, 0), nullptr);
    EXPECT_EQ(MemAllocateFromPool(8, 0x7fffffffu), nullptr);
    EXPECT_EQ(MemPoolLiveCount(0x7fffffffu), -1);
    EXPECT_EQ(MemPoolLiveBytes(0), -1);
}

/* A size whose sum with the runtime's header would wrap round (or pass what one
** allocation can hold) gives null and a trace line, never a tiny block overrun. */
TEST_F(MemTest, SizesTooLargeForTheHeaderAreRefusedAndTraced) {
    int traced = 0;
    TraceSetCaptureHook([](void *n, const char *, int32_t, int32_t, int32_t, const char *) {
        ++*static_cast<int *>(n);
    }, &traced);
    for (size_t size : {SIZE_MAX, SIZE_MAX - 15, SIZE_MAX - 8, size_t{PTRDIFF_MAX}}) {
        void *p = MemAllocateFromPool(size, pool());
        EXPECT_EQ(p, nullptr) << "SIZE_MAX - " << SIZE_MAX - size;
        MemFreeInternal(&p);
    }
    TraceSetCaptureHook(nullptr, nullptr);
    EXPECT_EQ(traced, 4);
}

TEST_F(MemTest, ForeignPointersAreClearedCountedAndLeftAlone) {
    const int64_t foreign = MemForeignFreeCount();

    const char *literal = "a literal";
    MemFreeInternal(&literal);
    EXPECT_EQ(literal, nullptr);

    void *block = MemAllocateFromPool(16, pool());
    void *copy = block;
    MemFreeInternal(&block);
    MemFreeInternal(&copy); /* the same block a second time */
    EXPECT_EQ(copy, nullptr);

    void *fromMalloc = std::malloc(8);
    void *alias = fromMalloc;
    MemFreeInternal(&alias);
    EXPECT_EQ(alias, nullptr);
    std::memset(fromMalloc, 0, 8); /* still ours: not freed */
    std::free(fromMalloc);

    int onStack = 0;
    void *stack = &onStack;
    MemFreeInternal(&stack);

    void *inside = static_cast<char *>(MemAllocateFromPool(16, pool()));
    void *middle = static_cast<char *>(inside) + 4;
    MemFreeInternal(&middle);
    MemFreeInternal(&inside);

    /* An aligned address within a block is where a block could start, but none does. */
    void *big = MemAllocateFromPool(256, pool());
    void *within = static_cast<char *>(big) + 64;
    MemFreeInternal(&within);
    MemFreeInternal(&big);

    EXPECT_EQ(MemForeignFreeCount(), foreign + 6);
}

TEST_F(MemTest, ASecretIsWipedWholeBeforeItsBlockGoesAndFreesAsSafelyAsAnyBlock) {
    kxtest::FreedSecrets freed;
    char *secret = StrCat("hunter", "2", nullptr);
    void *again = secret;
    const char *literal = "read-only: never written";
    void *obj = nullptr;
    ASSERT_TRUE(ObjCreateInternal(&obj, 8, 0x1234, "p;", 0, pool()));
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

TEST_F(MemTest, ObjectHandlesAreNotBlocks) {
    void *obj = nullptr;
    ASSERT_TRUE(ObjCreateInternal(&obj, 8, 0x1234, "p;", 0, pool()));
    void *alias = obj;
    const int64_t foreign = MemForeignFreeCount();
    MemFreeInternal(&alias);
    EXPECT_EQ(MemForeignFreeCount(), foreign + 1);
    EXPECT_EQ(ObjGetTag(obj), 0x1234u) << "MemFreeInternal must not free an object";
    ObjReleaseInternal(&obj);
}

TEST_F(MemTest, NullsAreIgnored) {
    const int64_t foreign = MemForeignFreeCount();
    MemFreeInternal(nullptr);
    void *none = nullptr;
    MemFreeInternal(&none);
    MemZero(nullptr, 10);
    EXPECT_EQ(MemForeignFreeCount(), foreign);
}

TEST_F(MemTest, CopyAndZero) {
    char src[] = "abcdef";
    char dst[7] = {};
    EXPECT_EQ(MemCopy(dst, src, sizeof src), 1);
    EXPECT_STREQ(dst, "abcdef");
    EXPECT_EQ(MemCopy(nullptr, src, 1), 0);
    EXPECT_EQ(MemCopy(dst, nullptr, 1), 0);
    MemZero(dst, 3);
    EXPECT_EQ(dst[0], 0);
    EXPECT_EQ(dst[2], 0);
    EXPECT_EQ(dst[3], 'd');
}

TEST_F(MemTest, ManyBlocksFreedInAnyOrderBalanceTheAccount) {
    constexpr int kBlocks = 10000;
    const int64_t count = MemPoolLiveCount(pool());
    const int64_t bytes = MemPoolLiveBytes(pool());
    std::vector<void *> blocks;
    for (int i = 0; i < kBlocks; ++i) blocks.push_back(MemAllocateFromPool(i % 64, pool()));
    EXPECT_EQ(MemPoolLiveCount(pool()), count + kBlocks);
    for (int i = 0; i < kBlocks; i += 2) MemFreeInternal(&blocks[i]);
    for (int i = kBlocks - 1; i > 0; i -= 2) MemFreeInternal(&blocks[i]);
    EXPECT_EQ(MemPoolLiveCount(pool()), count);
    EXPECT_EQ(MemPoolLiveBytes(pool()), bytes);
}

/* The registry keeps finding every live block while many others come and go in a
** scrambled order: the lookups that guard every object access depend on it. */
TEST_F(MemTest, LiveBlocksStayKnownWhileOthersComeAndGoInAnyOrder) {
    constexpr uint32_t kObjects = 20000;
    constexpr uint32_t kTagBase = 0x7a000000u;
    std::vector<void *> objects(kObjects, nullptr);
    std::vector<void *> blocks(kObjects, nullptr);
    for (uint32_t i = 0; i < kObjects; ++i) {
        ASSERT_TRUE(ObjCreateInternal(&objects[i], 8, kTagBase + i, "p;", 0, pool()));
        blocks[i] = MemAllocateFromPool(i % 48, pool());
        ASSERT_NE(blocks[i], nullptr);
    }
    std::vector<uint32_t> order(kObjects);
    for (uint32_t i = 0; i < kObjects; ++i) order[i] = i;
    std::shuffle(order.begin(), order.end(), std::mt19937(20240611u));

    std::vector<const void *> gone;
    for (uint32_t n = 0; n < kObjects / 2; ++n) {
        const uint32_t i = order[n];
        gone.push_back(objects[i]);
        ObjReleaseInternal(&objects[i]);
        MemFreeInternal(&blocks[i]);
    }
    uint32_t wrong = 0;
    for (uint32_t i = 0; i < kObjects; ++i)
        if (objects[i] != nullptr && ObjGetTag(objects[i]) != kTagBase + i) ++wrong;
    for (const void *h : gone)
        if (ObjGetTag(h) != 0) ++wrong;
    EXPECT_EQ(wrong, 0u) << "live objects lost or released ones still found";

    const int64_t foreign = MemForeignFreeCount();
    for (uint32_t n = kObjects / 2; n < kObjects; ++n) {
        const uint32_t i = order[n];
        void *asBlock = objects[i];
        MemFreeInternal(&asBlock); /* an object is no block, whatever its neighbours did */
        ObjReleaseInternal(&objects[i]);
        MemFreeInternal(&blocks[i]);
    }
    EXPECT_EQ(MemForeignFreeCount(), foreign + kObjects / 2);
}

} // namespace
