/* test_kx_mem.cpp - pools, secrets, objects and their kinds, pointers to neither, the registry. */
#include "kxtest.h"
#include <algorithm>
#include <cstring>
#include <random>
namespace {
using MemTest = kxtest::PoolTest;
using kxtest::make;
using kxtest::Values;
TEST_F(MemTest, PoolsCountTheirBlocksBytesAndHeadersAndRefuseSizesTooLargeForAHeader) {
    const uint32_t other = MemPoolCreate("other");
    void *a = MemAllocateFromPool(100, other), *obj = nullptr;
    const int64_t blockFootprint = MemPoolFootprint(other);
    ASSERT_TRUE(ObjCreateInternal(&obj, 28, 0x1234, "p;", 0, other));
    /* Sizes stay as asked; the footprint adds a header per block, larger for an object. */
    EXPECT_EQ((Values{MemPoolLiveCount(other), MemPoolLiveBytes(other), blockFootprint > 100,
                      MemPoolFootprint(other) - blockFootprint - 28 > blockFootprint - 100}),
              (Values{2, 128, 1, 1}));
    MemFreeInternal(&a);
    ObjReleaseInternal(&obj);
    EXPECT_EQ((Values{MemPoolLiveCount(other), MemPoolFootprint(other)}), (Values{0, 0}));
    for (uint32_t unknown : {0u, 0x7fffffffu})
        EXPECT_EQ((Values{MemAllocateFromPool(8, unknown) != nullptr, MemPoolLiveCount(unknown),
                          MemPoolLiveBytes(unknown), MemPoolFootprint(unknown)}),
                  (Values{0, -1, -1, -1}));
    char text[] = "abcdef";
    MemZero(nullptr, 10);
    MemZero(text, 3);
    EXPECT_EQ((Values{MemCopy(text, "xy", 2), MemCopy(nullptr, text, 1),
                      std::string(text, 6) == std::string("xy\0def", 6)}), (Values{1, 0, 1}));
    /* A size that cannot fit with the header (or wraps round with it) is refused and traced. */
    kxtest::TraceLines traced;
    for (size_t size : {SIZE_MAX, SIZE_MAX - 15, SIZE_MAX - 8, size_t{PTRDIFF_MAX}})
        EXPECT_EQ(MemAllocateFromPool(size, pool()), nullptr) << "SIZE_MAX - " << SIZE_MAX - size;
    EXPECT_EQ(traced.lines.size(), 4u);
}
/* A live block is wiped whole before it goes. A pointer to no live object reads as none and
** a release only clears it; one to no live block (an object) is only cleared and counted. */
TEST_F(MemTest, SecretsAreWipedWholeAndForeignPointersOnlyClearedAndCounted) {
    kxtest::FreedSecrets freed;
    char *secret = StrCat("hunter", "2", nullptr);
    char *block = static_cast<char *>(MemAllocateFromPool(256, pool()));
    void *gone = MemAllocateFromPool(16, pool()), *dead = make(0x1234), *obj = make(0x1234);
    void *fromMalloc = std::malloc(8), *random = reinterpret_cast<void *>(0xdeadbeef0ull);
    int onStack = 0;
    const void *rows[] = {block, "a literal", gone, dead, fromMalloc, &onStack, random, block + 4,
                          block + 64};
    MemFreeInternal(&gone);
    ObjReleaseInternal(&dead);
    MemFreeSecret(&secret);
    const int64_t foreign = MemForeignFreeCount();
    for (const void *h : rows) {
        EXPECT_EQ((Values{ObjGetTag(h), ObjGetRefCount(h), ObjGetSignature(h) != nullptr,
                          ObjHasLayout(h, ""), ObjIsOfKind(h, 0, nullptr), ObjBooleanGet(h),
                          ObjIsOfKindToken(h, 0, ObjSignatureToken("p;")),
                          ObjIncRefCount(const_cast<void *>(h))}),
                  (Values{0, 0, 0, 0, 0, -1, 0, 0})) << h;
        ObjReleaseInternal(&h);
        EXPECT_EQ(h, nullptr);
    }
    rows[0] = obj;
    for (auto free : {MemFreeInternal, MemFreeSecret})
        for (const void *p : rows) {
            free(&p);
            EXPECT_EQ(p, nullptr);
        }
    MemFreeSecret(&secret); /* null by now: no foreign pointer */
    EXPECT_EQ((Values{MemForeignFreeCount() - foreign, ObjGetTag(obj), onStack}),
              (Values{18, 0x1234, 0}));
    EXPECT_EQ(freed.bytes, std::string(8, '\0')) << "only the live block, wiped whole";
    std::free(fromMalloc); /* still the caller's */
    ObjReleaseInternal(&obj);
    MemFreeInternal(&block);
}
constexpr uint32_t kTag = 0x51a0c0deu;
struct Thing { void *child; char *name; int32_t number; void *plain; }; /* "o;s;i;p;" */
TEST_F(MemTest, ANewObjectIsZeroedHeldOnceAndOfItsKindAsABooleanIs) {
    Thing *t = static_cast<Thing *>(make(kTag));
    ASSERT_NE(t, nullptr);
    EXPECT_EQ((Values{!t->child && !t->name && !t->number && !t->plain, ObjGetRefCount(t),
                      ObjGetSignature(t) == std::string("o;s;i;p;")}), (Values{1, 1, 1}))
        << "zeroed, held once";
    /* Tag 0 matches any object; a token's text is a prefix too. */
    const struct { uint32_t tag; const char *prefix; bool layout; } rows[] = {
        {kTag, "o;s;", true}, {0, "o;s;i;p;", true}, {KX_TAG_LIST, "o;s;", true},
        {kTag, "o;s;i;p;i;", false}, {kTag, "p;", false}};
    for (const auto &r : rows) {
        const bool kind = r.layout && (r.tag == 0 || r.tag == kTag);
        const uint32_t token = ObjSignatureToken(r.prefix);
        EXPECT_EQ((Values{ObjIsOfKind(t, r.tag, r.prefix), ObjIsA(t, r.tag),
                          ObjHasLayout(t, r.prefix), ObjIsOfKindToken(t, r.tag, token)}),
                  (Values{kind, r.tag == kTag, r.layout, kind})) << r.tag << " " << r.prefix;
    }
    /* A null prefix matches any layout; equal texts give one token; a bad one matches nothing. */
    EXPECT_EQ((Values{ObjIsOfKind(t, 0, nullptr), ObjSignatureToken("x;"),
                      ObjIsOfKindToken(t, kTag, 0xffffffu), ObjIsOfKindToken(t, 0, 0),
                      ObjSignatureToken("o;s;") == ObjSignatureToken(std::string("o;s;").c_str())}),
              (Values{1, 0, 0, 0, 1}));
    void *yes = nullptr, *no = nullptr;
    ASSERT_TRUE(ObjBooleanCreate(&yes, 5) && ObjBooleanCreate(&no, 0));
    EXPECT_EQ((Values{ObjIsA(yes, KX_TAG_BOOLEAN), ObjBooleanGet(yes), ObjBooleanGet(no),
                      ObjBooleanGet(t)}), (Values{1, 1, 0, -1}));
    for (void **h : {&yes, &no, reinterpret_cast<void **>(&t)}) ObjReleaseInternal(h);
}
/* Every row's signature goes through one buffer: a signature is read afresh from its text,
** even at an address that held another. "i;o;" is an int, 4 bytes of padding, a pointer. */
TEST_F(MemTest, CreationRefusesBadSignaturesSizesAndArguments) {
    const uint32_t p = pool();
    const struct { uint32_t size; const char *sig; int reserved; uint32_t pool; int ok; } rows[] = {
        {16, "p;", 0, p, 1}, {64, "x;", 0, p, 0}, {64, "o", 0, p, 0}, {15, "i;o;", 0, p, 0},
        {16, "i;o;", 0, p, 1}, {64, "o;", 1, p, 0}, {64, "o;", 0, 0x7fffffffu, 0},
        {16, "i;i;s;", 0, p, 1}, {8, nullptr, 0, p, 1}};
    char buffer[16];
    for (const auto &r : rows) {
        void *h = reinterpret_cast<void *>(1);
        std::strcpy(buffer, r.sig ? r.sig : "");
        EXPECT_EQ(ObjCreateInternal(&h, r.size, kTag, r.sig ? buffer : nullptr, r.reserved, r.pool),
                  r.ok) << r.size << " '" << buffer << "' " << r.reserved;
        EXPECT_STREQ(ObjGetSignature(h), r.ok ? buffer : nullptr) << buffer;
        /* The last release frees the string field where this layout, not an older one, has it. */
        if (r.ok && std::strchr(buffer, 's')) static_cast<char **>(h)[1] = StrCat("owned", nullptr);
        ObjReleaseInternal(&h);
    }
}
/* The registry finds each live object and none that went after a scrambled churn that fills
** its page table close to where it grows; a list that long goes without deep recursion. */
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
    order.resize(kCount / 2);
    for (uint32_t i : order) {
        gone.push_back(objects[i]);
        ObjReleaseInternal(&objects[i]);
        MemFreeInternal(&blocks[i]);
    }
    int64_t wrong = std::count_if(gone.begin(), gone.end(), ObjGetTag);
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
/* Blocks of every size class, and some beyond the chunks' (from malloc), each
** filled with its own byte: freeing half and allocating again must leave every block
** 16-aligned and whole (a block given out twice, or a wrong size class, overwrites one). */
TEST_F(MemTest, BlocksOfEverySizeStayAlignedAndApartThroughChurn) {
    constexpr size_t kCount = 6000;
    std::mt19937 rng(20261123u);
    std::vector<unsigned char *> blocks(kCount);
    std::vector<size_t> sizes(kCount);
    auto fill = [&](size_t i) {
        sizes[i] = rng() % 50 == 0 ? rng() % 70000 : rng() % 700;
        blocks[i] = static_cast<unsigned char *>(MemAllocateFromPool(sizes[i], pool()));
        std::memset(blocks[i], static_cast<int>(i % 251), sizes[i]);
    };
    for (size_t i = 0; i < kCount; ++i) fill(i);
    for (size_t i = 0; i < kCount; i += 2) MemFreeInternal(&blocks[i]);
    for (size_t i = 0; i < kCount; i += 2) fill(i);
    int64_t misaligned = 0, overwritten = 0;
    for (size_t i = 0; i < kCount; ++i) {
        misaligned += reinterpret_cast<uintptr_t>(blocks[i]) % 16 != 0;
        overwritten += std::count(blocks[i], blocks[i] + sizes[i], static_cast<unsigned char>(i % 251)) !=
                       static_cast<std::ptrdiff_t>(sizes[i]);
        MemFreeInternal(&blocks[i]);
    }
    EXPECT_EQ((Values{misaligned, overwritten}), (Values{0, 0}));
}
} // namespace
