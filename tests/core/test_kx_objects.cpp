/* test_kx_objects.cpp - objects, their signature-driven release, and lists. */
#include "kxtest.h"
#include <cstring>
namespace {
using ObjectTest = kxtest::PoolTest;
using ListTest = kxtest::PoolTest;
using kxtest::make;
constexpr uint32_t kTag = 0x51a0c0deu;
/* "o;s;i;p;" as a client declares it. */
struct Thing {
    void *child;
    char *name;
    int32_t number;
    void *plain;
};
Thing *thing() { return static_cast<Thing *>(make(kTag)); }
TEST_F(ObjectTest, ANewObjectIsZeroedHeldOnceAndOfItsKind) {
    const int64_t count = MemPoolLiveCount(pool());
    Thing *t = thing();
    ASSERT_NE(t, nullptr);
    EXPECT_EQ(MemPoolLiveCount(pool()), count + 1) << "an object is a live block of its pool";
    EXPECT_TRUE(!t->child && !t->name && !t->number && !t->plain);
    EXPECT_EQ(ObjGetRefCount(t), 1);
    EXPECT_STREQ(ObjGetSignature(t), "o;s;i;p;");
    /* Tag 0 and a null prefix match any object; a token's text is a prefix too. */
    const struct { uint32_t tag; const char *prefix; bool layout; } rows[] = {
        {kTag, "o;s;", true},        {kTag, "", true},     {kTag, "o;s;i;p;", true},
        {0, "o;s;", true},           {0, nullptr, true},   {KX_TAG_LIST, "o;s;", true},
        {kTag, "o;s;i;p;i;", false}, {kTag, "p;", false},
    };
    for (const auto &r : rows) {
        SCOPED_TRACE(std::to_string(r.tag) + " " + (r.prefix ? r.prefix : "null"));
        const bool kind = r.layout && (r.tag == 0 || r.tag == kTag);
        EXPECT_EQ(ObjIsOfKind(t, r.tag, r.prefix), kind);
        EXPECT_EQ(ObjIsA(t, r.tag), r.tag == kTag);
        if (r.prefix == nullptr) continue;
        EXPECT_EQ(ObjHasLayout(t, r.prefix), r.layout);
        EXPECT_EQ(ObjIsOfKindToken(t, r.tag, ObjSignatureToken(r.prefix)), kind);
    }
    EXPECT_NE(ObjSignatureToken("o;s;"), 0u);
    EXPECT_EQ(ObjSignatureToken("o;s;"), ObjSignatureToken(std::string("o;s;").c_str()))
        << "equal texts, one token";
    EXPECT_EQ(ObjSignatureToken("x;"), 0u) << "a signature that does not parse has no token";
    EXPECT_EQ(ObjSignatureToken(nullptr), 0u);
    EXPECT_FALSE(ObjIsOfKindToken(t, kTag, 0));
    EXPECT_FALSE(ObjIsOfKindToken(t, kTag, 0xffffffu)) << "an unknown token matches nothing";
    ObjReleaseInternal(&t);
    EXPECT_EQ(t, nullptr);
}
TEST_F(ObjectTest, CreationRefusesBadSignaturesSizesAndArguments) {
    /* "i;o;" is an int, 4 bytes of padding, then a pointer: 16 bytes. */
    const struct { uint32_t size; const char *signature; int reserved; uint32_t pool; int ok; } rows[] = {
        {64, "x;", 0, pool(), 0},   {64, "o", 0, pool(), 0},      {64, "oo;", 0, pool(), 0},
        {64, "o;;", 0, pool(), 0},  {15, "i;o;", 0, pool(), 0},   {64, "o;", 1, pool(), 0},
        {64, "o;", 0, 0x7fffffffu, 0}, {16, "i;o;", 0, pool(), 1}, {0, "", 0, pool(), 1},
        {8, nullptr, 0, pool(), 1},
    };
    for (const auto &r : rows) {
        void *h = reinterpret_cast<void *>(1);
        const char *sig = r.signature ? r.signature : "";
        EXPECT_EQ(ObjCreateInternal(&h, r.size, kTag, r.signature, r.reserved, r.pool), r.ok)
            << r.size << " '" << sig << "' " << r.reserved;
        EXPECT_STREQ(ObjGetSignature(h), r.ok ? sig : nullptr) << sig;
        ObjReleaseInternal(&h);
    }
    EXPECT_FALSE(ObjCreateInternal(nullptr, 64, kTag, "o;", 0, pool()));
}
/* A signature is read afresh from its text, even at an address that held another. */
TEST_F(ObjectTest, ASignatureBufferMayChangeBetweenCreations) {
    char signature[16] = "p;";
    void *h = make(kTag, signature, 16);
    ObjReleaseInternal(&h);
    std::strcpy(signature, "x;");
    EXPECT_FALSE(ObjCreateInternal(&h, 16, kTag, signature, 0, pool()));
    std::strcpy(signature, "i;i;s;");
    ASSERT_FALSE(ObjCreateInternal(&h, 15, kTag, signature, 0, pool())) << "needs 16 bytes";
    h = make(kTag, signature, 16);
    EXPECT_STREQ(ObjGetSignature(h), "i;i;s;");
    static_cast<char **>(h)[1] = StrDuplicateIntoPool("owned", pool());
    ObjReleaseInternal(&h); /* the string field is freed: the fixture sees no leak */
}
TEST_F(ObjectTest, TheLastReleaseReleasesObjectFieldsAndFreesStringsAtTheirOffsets) {
    struct Mixed {
        int32_t a;
        void *b;
        int32_t c, d;
        char *e;
    };
    Mixed *m = static_cast<Mixed *>(make(kTag, "i;o;i;i;s;", sizeof(Mixed)));
    m->e = StrDuplicateIntoPool("owned", pool());
    m->b = make(kTag);
    const int64_t count = MemPoolLiveCount(pool());
    ObjReleaseInternal(&m);
    EXPECT_EQ(MemPoolLiveCount(pool()), count - 3) << "the string and the child went too";
    Thing *parent = thing(), *child = thing();
    void *shared = make(kTag);
    parent->child = child;
    parent->name = const_cast<char *>("not pool memory");
    child->child = shared;
    ASSERT_TRUE(ObjIncRefCount(shared)); /* the test keeps its own reference too */
    parent->plain = shared;              /* 'p' is never released */
    const int64_t foreign = MemForeignFreeCount();
    ObjReleaseInternal(&parent);
    EXPECT_EQ(MemForeignFreeCount(), foreign + 1) << "a foreign string is tolerated";
    EXPECT_EQ(ObjGetTag(child), 0u) << "the child went with its only holder";
    EXPECT_EQ(ObjGetRefCount(shared), 1) << "the child dropped its reference, 'p' did not";
    ObjReleaseInternal(&shared);
    /* A holds B; B points back at A without a reference (a client's mistake): releasing
    ** A reaches A again while A is being freed, and must neither revive nor free it twice. */
    Thing *a = thing(), *b = thing();
    a->child = b;
    b->child = a;
    ObjReleaseInternal(&a);
    EXPECT_EQ(ObjGetTag(b), 0u);
}
TEST_F(ObjectTest, WrongNullAndFreedHandlesAreNoObject) {
    void *freed = make(kTag);
    void *stale = freed;
    ObjReleaseInternal(&freed);
    int local = 7;
    char *block = static_cast<char *>(MemAllocateFromPool(64, pool()));
    void *random = reinterpret_cast<void *>(static_cast<uintptr_t>(0xdeadbeef0ull));
    const void *handles[] = {nullptr, stale, &local, block, block + 32, "text", random};
    for (const void *h : handles) {
        EXPECT_EQ(ObjGetTag(h), 0u);
        EXPECT_FALSE(ObjIsA(h, kTag));
        EXPECT_EQ(ObjGetRefCount(h), 0);
        EXPECT_EQ(ObjGetSignature(h), nullptr);
        EXPECT_FALSE(ObjHasLayout(h, ""));
        EXPECT_FALSE(ObjIsOfKind(h, 0, nullptr));
        EXPECT_FALSE(ObjIsOfKindToken(h, 0, ObjSignatureToken("p;")));
        EXPECT_FALSE(ObjIncRefCount(const_cast<void *>(h)));
        EXPECT_EQ(ObjBooleanGet(h), -1);
        ObjReleaseInternal(&h);
        EXPECT_EQ(h, nullptr);
    }
    EXPECT_EQ(local, 7);
    MemFreeInternal(&block);
    ObjReleaseInternal(nullptr);
}
TEST_F(ObjectTest, BooleanObjects) {
    void *yes = nullptr, *no = nullptr, *other = make(kTag);
    ASSERT_TRUE(ObjBooleanCreate(&yes, 5));
    ASSERT_TRUE(ObjBooleanCreate(&no, 0));
    EXPECT_TRUE(ObjIsA(yes, KX_TAG_BOOLEAN));
    EXPECT_EQ(ObjBooleanGet(yes), 1);
    EXPECT_EQ(ObjBooleanGet(no), 0);
    EXPECT_EQ(ObjBooleanGet(other), -1);
    for (void **h : {&yes, &no, &other}) ObjReleaseInternal(h);
}
/* Collects the items a walk visits; can stop after some, or release a list on the first. */
struct Visit {
    std::vector<void *> items;
    size_t stopAfter = 0; /* 0: never stop */
    void **releaseOnFirst = nullptr;
};
int record(void *ctx, void *element) {
    Visit *visit = static_cast<Visit *>(ctx);
    visit->items.push_back(ListElementItem(element));
    if (visit->releaseOnFirst != nullptr) ObjReleaseInternal(visit->releaseOnFirst);
    return visit->stopAfter == 0 || visit->items.size() < visit->stopAfter;
}
TEST_F(ListTest, WalksGoEitherWayStopAtZeroAndHoldTheListACallbackReleases) {
    const struct { bool backwards; size_t stopAfter; bool release; int result; std::vector<int> order; } rows[] = {
        {false, 0, false, 1, {0, 1, 2}}, {true, 0, false, 1, {2, 1, 0}},
        {false, 2, false, 0, {0, 1}},    {true, 1, false, 0, {2}},
        {false, 0, true, 1, {0, 1, 2}},  {true, 1, true, 0, {2}},
    };
    for (const auto &r : rows) {
        SCOPED_TRACE("row " + std::to_string(&r - rows));
        void *list = nullptr, *items[3];
        ASSERT_TRUE(ListCreateFromPool(&list, 0, pool()));
        for (void *&item : items) EXPECT_TRUE(ListAddLastItem(list, item = make(kTag)));
        EXPECT_EQ(ListCount(list), 3);
        EXPECT_EQ(ListFirstItem(list), items[0]);
        EXPECT_EQ(ListLastItem(list), items[2]);
        EXPECT_EQ(ObjGetRefCount(items[1]), 2) << "the list holds a reference on each item";
        Visit visit{{}, r.stopAfter, r.release ? &list : nullptr};
        EXPECT_EQ((r.backwards ? ListWalkBackwards : ListWalk)(list, record, &visit), r.result);
        std::vector<void *> expected;
        for (int i : r.order) expected.push_back(items[i]);
        EXPECT_EQ(visit.items, expected);
        EXPECT_EQ(list == nullptr, r.release);
        ObjReleaseInternal(&list);
        EXPECT_EQ(ObjGetRefCount(items[1]), 1) << "the list went with its last reference";
        for (void *&item : items) ObjReleaseInternal(&item);
    }
}
TEST_F(ListTest, PushTakesOverTheCallersReferenceAndElementsLeadToTheirItems) {
    void *list = nullptr, *item = make(kTag), *watch = item, *element = nullptr;
    ASSERT_TRUE(ListCreateFromPool(&list, 0, pool()));
    EXPECT_EQ(ListPushLastItemInternal(list, &item), 1);
    EXPECT_EQ(item, nullptr);
    EXPECT_EQ(ObjGetRefCount(watch), 1);
    ListWalk(list, [](void *ctx, void *e) { *static_cast<void **>(ctx) = e; return 1; }, &element);
    EXPECT_TRUE(ObjIsA(element, KX_TAG_LIST_ELEMENT));
    EXPECT_EQ(*static_cast<void **>(element), watch) << "an element's data leads to its item";
    EXPECT_EQ(ListElementItem(watch), nullptr) << "an item is not an element";
    void *notAnObject = MemAllocateFromPool(8, pool()), *slot = notAnObject;
    EXPECT_EQ(ListPushLastItemInternal(list, &slot), 0);
    EXPECT_EQ(slot, notAnObject) << "a refused push changes nothing";
    EXPECT_EQ(ListAddLastItem(list, notAnObject), 0);
    EXPECT_EQ(ListAddLastItem(list, nullptr), 0);
    EXPECT_EQ(ListCount(list), 1);
    MemFreeInternal(&notAnObject);
    ObjReleaseInternal(&list);
    EXPECT_EQ(ObjGetTag(watch), 0u) << "the pushed item went with the list";
}
TEST_F(ListTest, HandlesOfAnotherKindAreNoList) {
    void *fake = make(KX_TAG_LIST, "p;p;i;", 64); /* the right tag but not made as a list */
    void *item = make(kTag), *list = nullptr;
    int calls = 0;
    auto count = [](void *ctx, void *) { return ++*static_cast<int *>(ctx); };
    for (void *h : {fake, item, static_cast<void *>(nullptr)}) {
        EXPECT_EQ(ListAddLastItem(h, item), 0);
        EXPECT_EQ(ListWalk(h, count, &calls), 1);
        EXPECT_EQ(ListWalkBackwards(h, count, &calls), 1);
        EXPECT_EQ(ListCount(h), 0);
        EXPECT_EQ(ListFirstItem(h), nullptr);
        EXPECT_EQ(ListLastItem(h), nullptr);
    }
    EXPECT_EQ(calls, 0);
    EXPECT_EQ(ObjGetRefCount(item), 1);
    EXPECT_FALSE(ListCreateFromPool(&list, 1, pool()));
    EXPECT_EQ(list, nullptr);
    ObjReleaseInternal(&fake);
    ObjReleaseInternal(&item);
}
TEST_F(ListTest, ALongListIsFreedWithoutDeepRecursion) {
    void *list = nullptr;
    ASSERT_TRUE(ListCreateFromPool(&list, 0, pool()));
    for (int i = 0; i < 100000; ++i) {
        void *item = make(kTag);
        ASSERT_TRUE(ListPushLastItemInternal(list, &item));
    }
    EXPECT_EQ(ListCount(list), 100000);
    ObjReleaseInternal(&list);
}
} // namespace
