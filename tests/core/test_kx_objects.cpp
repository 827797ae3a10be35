/* test_kx_objects.cpp - objects, their signature-driven release, and lists. */
#include "kxtest.h"
#include <cstring>
namespace {
using ObjectTest = kxtest::PoolTest;
using ListTest = kxtest::PoolTest;
using kxtest::make;
using kxtest::Values;
constexpr uint32_t kTag = 0x51a0c0deu;
struct Thing { void *child; char *name; int32_t number; void *plain; }; /* "o;s;i;p;" */
Thing *thing() { return static_cast<Thing *>(make(kTag)); }
TEST_F(ObjectTest, ANewObjectIsZeroedHeldOnceAndOfItsKind) {
    const int64_t count = MemPoolLiveCount(pool());
    Thing *t = thing();
    ASSERT_NE(t, nullptr);
    EXPECT_EQ((Values{MemPoolLiveCount(pool()) - count, !t->child && !t->name && !t->number &&
                      !t->plain, ObjGetRefCount(t), ObjGetSignature(t) == std::string("o;s;i;p;")}),
              (Values{1, 1, 1, 1})) << "a live block of its pool, zeroed, held once";
    /* Tag 0 and a null prefix match any object; a token's text is a prefix too. */
    const struct { uint32_t tag; const char *prefix; bool layout; } rows[] = {
        {kTag, "o;s;", true}, {kTag, "", true}, {kTag, "o;s;i;p;", true}, {0, "o;s;", true},
        {0, nullptr, true}, {KX_TAG_LIST, "o;s;", true}, {kTag, "o;s;i;p;i;", false},
        {kTag, "p;", false}};
    for (const auto &r : rows) {
        const bool kind = r.layout && (r.tag == 0 || r.tag == kTag), hasPrefix = r.prefix;
        EXPECT_EQ((Values{ObjIsOfKind(t, r.tag, r.prefix), ObjIsA(t, r.tag),
                          hasPrefix && ObjHasLayout(t, r.prefix),
                          ObjIsOfKindToken(t, r.tag, ObjSignatureToken(r.prefix))}),
                  (Values{kind, r.tag == kTag, hasPrefix && r.layout, hasPrefix && kind}))
            << r.tag << " " << (r.prefix ? r.prefix : "null");
    }
    /* Equal texts give one token; one that does not parse, or an unknown one, matches nothing. */
    EXPECT_EQ((Values{ObjSignatureToken("o;s;") != 0, ObjSignatureToken("x;"),
                      ObjSignatureToken("o;s;") == ObjSignatureToken(std::string("o;s;").c_str()),
                      ObjSignatureToken(nullptr), ObjIsOfKindToken(t, kTag, 0xffffffu)}),
              (Values{1, 0, 1, 0, 0}));
    ObjReleaseInternal(&t);
    EXPECT_EQ(t, nullptr);
}
/* Every row's signature goes through one buffer: a signature is read afresh from its text,
** even at an address that held another. "i;o;" is an int, 4 bytes of padding, a pointer. */
TEST_F(ObjectTest, CreationRefusesBadSignaturesSizesAndArguments) {
    const uint32_t p = pool();
    const struct { uint32_t size; const char *sig; int reserved; uint32_t pool; int ok; } rows[] = {
        {16, "p;", 0, p, 1},   {64, "x;", 0, p, 0},    {64, "o", 0, p, 0},  {64, "oo;", 0, p, 0},
        {64, "o;;", 0, p, 0},  {15, "i;o;", 0, p, 0},  {16, "i;o;", 0, p, 1},
        {64, "o;", 1, p, 0},   {64, "o;", 0, 0x7fffffffu, 0}, {15, "i;i;s;", 0, p, 0},
        {16, "i;i;s;", 0, p, 1}, {0, "", 0, p, 1},     {8, nullptr, 0, p, 1}};
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
    EXPECT_FALSE(ObjCreateInternal(nullptr, 64, kTag, "o;", 0, pool()));
}
TEST_F(ObjectTest, BooleansAndWrongNullOrFreedHandles) {
    void *yes = nullptr, *no = nullptr, *other = make(kTag), *freed = make(kTag), *stale = freed;
    ObjReleaseInternal(&freed);
    ASSERT_TRUE(ObjBooleanCreate(&yes, 5) && ObjBooleanCreate(&no, 0));
    EXPECT_EQ((Values{ObjIsA(yes, KX_TAG_BOOLEAN), ObjBooleanGet(yes), ObjBooleanGet(no),
                      ObjBooleanGet(other)}), (Values{1, 1, 0, -1}));
    for (void **h : {&yes, &no, &other}) ObjReleaseInternal(h);
    int local = 7;
    char *block = static_cast<char *>(MemAllocateFromPool(64, pool()));
    void *random = reinterpret_cast<void *>(static_cast<uintptr_t>(0xdeadbeef0ull));
    const void *handles[] = {nullptr, stale, &local, block, block + 32, "text", random};
    for (const void *h : handles) {
        EXPECT_EQ((Values{ObjGetTag(h), ObjIsA(h, kTag), ObjGetRefCount(h),
                          ObjGetSignature(h) != nullptr, ObjHasLayout(h, ""),
                          ObjIsOfKind(h, 0, nullptr), ObjBooleanGet(h),
                          ObjIsOfKindToken(h, 0, ObjSignatureToken("p;")),
                          ObjIncRefCount(const_cast<void *>(h))}),
                  (Values{0, 0, 0, 0, 0, 0, -1, 0, 0})) << h;
        ObjReleaseInternal(&h);
        EXPECT_EQ(h, nullptr);
    }
    EXPECT_EQ(local, 7);
    MemFreeInternal(&block);
    ObjReleaseInternal(nullptr);
}
/* Collects the items a walk visits; stops after some (0: never), or releases a list first. */
struct Visit { std::vector<void *> items; size_t stopAfter; void **release; };
int record(void *ctx, void *element) {
    Visit *visit = static_cast<Visit *>(ctx);
    visit->items.push_back(ListElementItem(element));
    if (visit->release != nullptr) ObjReleaseInternal(visit->release);
    return visit->stopAfter == 0 || visit->items.size() < visit->stopAfter;
}
TEST_F(ListTest, WalksGoEitherWayStopAtZeroAndHoldTheListACallbackReleases) {
    const struct { bool backwards, release; size_t stopAfter; int result; Values order; } rows[] = {
        {false, false, 0, 1, {0, 1, 2}}, {true, false, 0, 1, {2, 1, 0}},
        {false, false, 2, 0, {0, 1}},    {true, false, 1, 0, {2}},
        {false, true, 0, 1, {0, 1, 2}},  {true, true, 1, 0, {2}}};
    for (const auto &r : rows) {
        SCOPED_TRACE("row " + std::to_string(&r - rows));
        void *list = nullptr, *items[3];
        ASSERT_TRUE(ListCreateFromPool(&list, 0, pool()));
        for (void *&item : items) EXPECT_TRUE(ListAddLastItem(list, item = make(kTag)));
        EXPECT_EQ((Values{ListCount(list), ListFirstItem(list) == items[0],
                          ListLastItem(list) == items[2], ObjGetRefCount(items[1])}),
                  (Values{3, 1, 1, 2})) << "the list holds a reference on each item";
        Visit visit{{}, r.stopAfter, r.release ? &list : nullptr};
        EXPECT_EQ((r.backwards ? ListWalkBackwards : ListWalk)(list, record, &visit), r.result);
        std::vector<void *> expected;
        for (int64_t i : r.order) expected.push_back(items[i]);
        EXPECT_EQ(visit.items, expected);
        EXPECT_EQ(list == nullptr, r.release);
        ObjReleaseInternal(&list);
        EXPECT_EQ(ObjGetRefCount(items[1]), 1) << "the list went with its last reference";
        for (void *&item : items) ObjReleaseInternal(&item);
    }
}
} // namespace
