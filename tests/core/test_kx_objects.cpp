/* test_kx_objects.cpp - objects, their signature-driven release, and lists. */
#include "kxtest.h"

#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

namespace {

using ObjectTest = kxtest::PoolTest;
using ListTest = kxtest::PoolTest;

constexpr uint32_t kTagThing = 0x51a0c0deu;

/* "o;s;i;p;" as a client declares it. */
struct Thing {
    void *child;
    char *name;
    int32_t number;
    void *plain;
};

void *makeThing(uint32_t tag = kTagThing) {
    void *h = nullptr;
    EXPECT_TRUE(ObjCreateInternal(&h, sizeof(Thing), tag, "o;s;i;p;", 0, MemGetDefaultPoolId()));
    return h;
}

TEST_F(ObjectTest, CreationGivesZeroedDataOneReferenceAndTheTag) {
    const int64_t count = MemPoolLiveCount(pool());
    Thing *t = static_cast<Thing *>(makeThing());
    ASSERT_NE(t, nullptr);
    EXPECT_EQ(MemPoolLiveCount(pool()), count + 1) << "an object is a live block of its pool";
    EXPECT_EQ(t->child, nullptr);
    EXPECT_EQ(t->name, nullptr);
    EXPECT_EQ(t->number, 0);
    EXPECT_EQ(t->plain, nullptr);
    EXPECT_EQ(ObjGetTag(t), kTagThing);
    EXPECT_TRUE(ObjIsA(t, kTagThing));
    EXPECT_FALSE(ObjIsA(t, KX_TAG_LIST));
    EXPECT_EQ(ObjGetRefCount(t), 1);
    EXPECT_STREQ(ObjGetSignature(t), "o;s;i;p;");
    EXPECT_TRUE(ObjHasLayout(t, "o;s;"));
    EXPECT_TRUE(ObjHasLayout(t, ""));
    EXPECT_FALSE(ObjHasLayout(t, "o;s;i;p;i;"));
    EXPECT_FALSE(ObjHasLayout(t, "p;"));
    EXPECT_TRUE(ObjIsOfKind(t, kTagThing, "o;s;"));
    EXPECT_TRUE(ObjIsOfKind(t, 0, nullptr)) << "tag 0 and a null prefix match any object";
    EXPECT_FALSE(ObjIsOfKind(t, KX_TAG_LIST, "o;s;")) << "the tag must match";
    EXPECT_FALSE(ObjIsOfKind(t, kTagThing, "o;s;i;p;i;")) << "and so must the signature";
    const uint32_t exact = ObjSignatureToken("o;s;i;p;");
    const uint32_t prefix = ObjSignatureToken(std::string("o;s;").c_str());
    EXPECT_NE(exact, 0u);
    EXPECT_EQ(exact, ObjSignatureToken(std::string("o;s;i;p;").c_str())) << "equal texts, one token";
    EXPECT_TRUE(ObjIsOfKindToken(t, kTagThing, exact));
    EXPECT_TRUE(ObjIsOfKindToken(t, 0, prefix)) << "a token's text is a prefix, as in ObjIsOfKind";
    EXPECT_FALSE(ObjIsOfKindToken(t, KX_TAG_LIST, exact));
    EXPECT_FALSE(ObjIsOfKindToken(t, kTagThing, ObjSignatureToken("o;s;i;p;i;")));
    EXPECT_EQ(ObjSignatureToken("x;"), 0u) << "a signature that does not parse has no token";
    EXPECT_EQ(ObjSignatureToken(nullptr), 0u);
    EXPECT_FALSE(ObjIsOfKindToken(t, kTagThing, 0));
    EXPECT_FALSE(ObjIsOfKindToken(t, kTagThing, 0xffffffu)) << "an unknown token matches nothing";
    ObjReleaseInternal(&t);
    EXPECT_EQ(t, nullptr);
    EXPECT_EQ(MemPoolLiveCount(pool()), count);
}

TEST_F(ObjectTest, ObjectsCountInTheirOwnPool) {
    const uint32_t other = MemPoolCreate("objects");
    void *h = nullptr;
    ASSERT_TRUE(ObjCreateInternal(&h, 40, kTagThing, "i;", 0, other));
    EXPECT_EQ(MemPoolLiveCount(other), 1);
    EXPECT_EQ(MemPoolLiveBytes(other), 40);
    ObjReleaseInternal(&h);
    EXPECT_EQ(MemPoolLiveCount(other), 0);
    EXPECT_EQ(MemPoolLiveBytes(other), 0);
}

TEST_F(ObjectTest, BadSignaturesAndSizesAreRefused) {
    void *h = reinterpret_cast<void *>(1);
    EXPECT_FALSE(ObjCreateInternal(&h, 64, kTagThing, "x;", 0, pool()));
    EXPECT_EQ(h, nullptr);
    EXPECT_FALSE(ObjCreateInternal(&h, 64, kTagThing, "o", 0, pool()));
    EXPECT_FALSE(ObjCreateInternal(&h, 64, kTagThing, "oo;", 0, pool()));
    EXPECT_FALSE(ObjCreateInternal(&h, 64, kTagThing, "o;;", 0, pool()));
    /* "i;o;" is an int, 4 bytes of padding, then a pointer: 16 bytes. */
    EXPECT_FALSE(ObjCreateInternal(&h, 15, kTagThing, "i;o;", 0, pool()));
    EXPECT_FALSE(ObjCreateInternal(&h, 64, kTagThing, "o;", 1, pool())) << "reserved must be 0";
    EXPECT_FALSE(ObjCreateInternal(&h, 64, kTagThing, "o;", 0, 0x7fffffffu)) << "unknown pool";
    EXPECT_EQ(h, nullptr);
    EXPECT_FALSE(ObjCreateInternal(nullptr, 64, kTagThing, "o;", 0, pool()));

    ASSERT_TRUE(ObjCreateInternal(&h, 16, kTagThing, "i;o;", 0, pool()));
    ObjReleaseInternal(&h);
    ASSERT_TRUE(ObjCreateInternal(&h, 0, kTagThing, "", 0, pool())) << "no fields at all";
    ObjReleaseInternal(&h);
    ASSERT_TRUE(ObjCreateInternal(&h, 8, kTagThing, nullptr, 0, pool()));
    EXPECT_STREQ(ObjGetSignature(h), "");
    ObjReleaseInternal(&h);
}

/* A signature is read afresh from its text, even at an address that held another. */
TEST_F(ObjectTest, ASignatureBufferMayChangeBetweenCreations) {
    char signature[16] = "p;";
    void *h = nullptr;
    ASSERT_TRUE(ObjCreateInternal(&h, 16, kTagThing, signature, 0, pool()));
    EXPECT_STREQ(ObjGetSignature(h), "p;");
    ObjReleaseInternal(&h);

    std::strcpy(signature, "x;");
    EXPECT_FALSE(ObjCreateInternal(&h, 16, kTagThing, signature, 0, pool()));

    std::strcpy(signature, "i;i;s;");
    ASSERT_FALSE(ObjCreateInternal(&h, 15, kTagThing, signature, 0, pool())) << "needs 16 bytes";
    ASSERT_TRUE(ObjCreateInternal(&h, 16, kTagThing, signature, 0, pool()));
    EXPECT_STREQ(ObjGetSignature(h), "i;i;s;");
    static_cast<char **>(h)[1] = StrDuplicateIntoPool("owned", pool());
    ObjReleaseInternal(&h); /* the string field is freed: the fixture sees no leak */
}

TEST_F(ObjectTest, FieldsFollowCStructLayout) {
    struct Mixed {
        int32_t a;
        void *b;
        int32_t c;
        int32_t d;
        char *e;
    };
    void *h = nullptr;
    ASSERT_TRUE(ObjCreateInternal(&h, sizeof(Mixed), kTagThing, "i;o;i;i;s;", 0, pool()));
    Mixed *m = static_cast<Mixed *>(h);
    m->e = StrDuplicateIntoPool("owned", pool());
    m->b = makeThing();
    const int64_t count = MemPoolLiveCount(pool());
    ObjReleaseInternal(&h);
    EXPECT_EQ(MemPoolLiveCount(pool()), count - 3) << "the string and the child must be freed at their offsets";
}

TEST_F(ObjectTest, LastReleaseReleasesObjectFieldsAndFreesStrings) {
    Thing *parent = static_cast<Thing *>(makeThing());
    Thing *child = static_cast<Thing *>(makeThing());
    void *shared = makeThing();
    parent->child = child;
    parent->name = StrDuplicateIntoPool("parent", pool());
    child->child = shared;
    ASSERT_TRUE(ObjIncRefCount(shared)); /* the test keeps its own reference too */
    parent->plain = shared;              /* 'p' is never released */

    ObjReleaseInternal(&parent);
    EXPECT_EQ(ObjGetTag(child), 0u) << "the child went with its only holder";
    EXPECT_EQ(ObjGetRefCount(shared), 1) << "the child dropped its reference, 'p' did not";
    ObjReleaseInternal(&shared);
}

TEST_F(ObjectTest, ForeignStringFieldsAreTolerated) {
    Thing *t = static_cast<Thing *>(makeThing());
    t->name = const_cast<char *>("not pool memory");
    const int64_t foreign = MemForeignFreeCount();
    ObjReleaseInternal(&t);
    EXPECT_EQ(MemForeignFreeCount(), foreign + 1);
}

TEST_F(ObjectTest, ReferencesKeepTheObjectUntilTheLastRelease) {
    void *h = makeThing();
    void *second = h;
    ASSERT_TRUE(ObjIncRefCount(h));
    EXPECT_EQ(ObjGetRefCount(h), 2);
    ObjReleaseInternal(&second);
    EXPECT_EQ(second, nullptr);
    EXPECT_EQ(ObjGetTag(h), kTagThing);
    ObjReleaseInternal(&h);
}

TEST_F(ObjectTest, WrongNullAndFreedHandlesAreNoObject) {
    void *freed = makeThing();
    void *stale = freed;
    ObjReleaseInternal(&freed);

    int local = 7;
    void *block = MemAllocateFromPool(64, pool());
    void *random = reinterpret_cast<void *>(static_cast<uintptr_t>(0xdeadbeef0ull));
    const void *bad[] = {nullptr, stale, &local, block, static_cast<char *>(block) + 32,
                         "text", random};
    for (const void *h : bad) {
        EXPECT_EQ(ObjGetTag(h), 0u);
        EXPECT_FALSE(ObjIsA(h, kTagThing));
        EXPECT_EQ(ObjGetRefCount(h), 0);
        EXPECT_EQ(ObjGetSignature(h), nullptr);
        EXPECT_FALSE(ObjHasLayout(h, ""));
        EXPECT_FALSE(ObjIsOfKind(h, 0, nullptr));
        EXPECT_FALSE(ObjIsOfKindToken(h, 0, ObjSignatureToken("p;")));
        EXPECT_FALSE(ObjIncRefCount(const_cast<void *>(h)));
        void *copy = const_cast<void *>(h);
        ObjReleaseInternal(&copy);
        EXPECT_EQ(copy, nullptr);
    }
    EXPECT_EQ(local, 7);
    MemFreeInternal(&block);
    ObjReleaseInternal(nullptr);
}

TEST_F(ObjectTest, CyclesThroughFieldsNeitherReviveNorDoubleFree) {
    /* A holds B; B points back at A without a reference of its own (a client's
    ** mistake). Releasing A reaches A again while A is being freed. */
    Thing *a = static_cast<Thing *>(makeThing());
    Thing *b = static_cast<Thing *>(makeThing());
    a->child = b;
    b->child = a;
    ObjReleaseInternal(&a);
    EXPECT_EQ(ObjGetTag(b), 0u);
}

TEST_F(ObjectTest, BooleanObjects) {
    void *yes = nullptr;
    void *no = nullptr;
    ASSERT_TRUE(ObjBooleanCreate(&yes, 5));
    ASSERT_TRUE(ObjBooleanCreate(&no, 0));
    EXPECT_TRUE(ObjIsA(yes, KX_TAG_BOOLEAN));
    EXPECT_EQ(ObjBooleanGet(yes), 1);
    EXPECT_EQ(ObjBooleanGet(no), 0);
    void *thing = makeThing();
    EXPECT_EQ(ObjBooleanGet(thing), -1);
    EXPECT_EQ(ObjBooleanGet(nullptr), -1);
    ObjReleaseInternal(&thing);
    ObjReleaseInternal(&yes);
    ObjReleaseInternal(&no);
}

/* ---- lists ---- */

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

class ListOfThree : public ListTest {
protected:
    void SetUp() override {
        ListTest::SetUp();
        ASSERT_TRUE(ListCreateFromPool(&list, 0, pool()));
        for (void *&item : items) {
            item = makeThing();
            ASSERT_TRUE(ListAddLastItem(list, item));
        }
    }
    void TearDown() override {
        ObjReleaseInternal(&list);
        for (void *&item : items) ObjReleaseInternal(&item);
        ListTest::TearDown();
    }
    void *list = nullptr;
    void *items[3] = {};
};

TEST_F(ListOfThree, WalksVisitInOrderAndBackwards) {
    Visit forwards;
    EXPECT_EQ(ListWalk(list, record, &forwards), 1);
    EXPECT_EQ(forwards.items, (std::vector<void *>{items[0], items[1], items[2]}));
    Visit backwards;
    EXPECT_EQ(ListWalkBackwards(list, record, &backwards), 1);
    EXPECT_EQ(backwards.items, (std::vector<void *>{items[2], items[1], items[0]}));
    EXPECT_EQ(ListCount(list), 3);
    EXPECT_EQ(ListFirstItem(list), items[0]);
    EXPECT_EQ(ListLastItem(list), items[2]);
}

TEST_F(ListOfThree, AWalkStopsAtTheFirstCallbackReportingZero) {
    Visit visit;
    visit.stopAfter = 2;
    EXPECT_EQ(ListWalk(list, record, &visit), 0);
    EXPECT_EQ(visit.items, (std::vector<void *>{items[0], items[1]}));
    Visit back;
    back.stopAfter = 1;
    EXPECT_EQ(ListWalkBackwards(list, record, &back), 0);
    EXPECT_EQ(back.items, (std::vector<void *>{items[2]}));
}

TEST_F(ListOfThree, TheListHoldsAReferenceOnEachItem) {
    EXPECT_EQ(ObjGetRefCount(items[1]), 2);
    void *gone = list;
    ObjReleaseInternal(&gone);
    list = nullptr;
    EXPECT_EQ(ObjGetRefCount(items[1]), 1);
}

TEST_F(ListOfThree, ACallbackMayReleaseTheListDuringTheWalk) {
    Visit visit;
    void *ownersReference = list;
    list = nullptr;
    visit.releaseOnFirst = &ownersReference;
    EXPECT_EQ(ListWalk(ownersReference, record, &visit), 1);
    EXPECT_EQ(visit.items.size(), 3u) << "the held list is walked to its end";
    EXPECT_EQ(ObjGetRefCount(items[0]), 1) << "the list went when the walk let it go";
}

TEST_F(ListOfThree, ACallbackMayReleaseTheListDuringABackwardWalkAndStop) {
    Visit visit;
    void *ownersReference = list;
    list = nullptr;
    visit.releaseOnFirst = &ownersReference;
    visit.stopAfter = 1;
    EXPECT_EQ(ListWalkBackwards(ownersReference, record, &visit), 0);
    EXPECT_EQ(ObjGetRefCount(items[2]), 1);
}

TEST_F(ListTest, PushTakesOverTheCallersReference) {
    void *list = nullptr;
    ASSERT_TRUE(ListCreateFromPool(&list, 0, pool()));
    void *item = makeThing();
    void *watch = item;
    EXPECT_EQ(ListPushLastItemInternal(list, &item), 1);
    EXPECT_EQ(item, nullptr);
    EXPECT_EQ(ObjGetRefCount(watch), 1);
    EXPECT_EQ(ListFirstItem(list), watch);

    void *notAnObject = MemAllocateFromPool(8, pool());
    void *slot = notAnObject;
    EXPECT_EQ(ListPushLastItemInternal(list, &slot), 0);
    EXPECT_EQ(slot, notAnObject) << "a refused push changes nothing";
    EXPECT_EQ(ListAddLastItem(list, notAnObject), 0);
    EXPECT_EQ(ListAddLastItem(list, nullptr), 0);
    EXPECT_EQ(ListCount(list), 1);
    MemFreeInternal(&notAnObject);

    ObjReleaseInternal(&list);
    EXPECT_EQ(ObjGetTag(watch), 0u) << "the pushed item went with the list";
}

TEST_F(ListTest, ElementsAreObjectsWhoseDataLeadsToTheItem) {
    void *list = nullptr;
    ASSERT_TRUE(ListCreateFromPool(&list, 0, pool()));
    void *item = makeThing();
    ListAddLastItem(list, item);
    void *element = nullptr;
    ListWalk(list, [](void *ctx, void *e) { *static_cast<void **>(ctx) = e; return 1; }, &element);
    EXPECT_TRUE(ObjIsA(element, KX_TAG_LIST_ELEMENT));
    EXPECT_EQ(*static_cast<void **>(element), item);
    EXPECT_EQ(ListElementItem(item), nullptr) << "an item is not an element";
    ObjReleaseInternal(&list);
    ObjReleaseInternal(&item);
}

TEST_F(ListTest, HandlesOfAnotherKindAreNoList) {
    void *fake = nullptr;
    /* The right tag but not made as a list. */
    ASSERT_TRUE(ObjCreateInternal(&fake, 64, KX_TAG_LIST, "p;p;i;", 0, pool()));
    void *item = makeThing();
    int calls = 0;
    auto count = [](void *ctx, void *) { ++*static_cast<int *>(ctx); return 1; };
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
    void *list = nullptr;
    EXPECT_FALSE(ListCreateFromPool(&list, 1, pool()));
    EXPECT_EQ(list, nullptr);
    ObjReleaseInternal(&fake);
    ObjReleaseInternal(&item);
}

TEST_F(ListTest, ALongListIsFreedWithoutDeepRecursion) {
    void *list = nullptr;
    ASSERT_TRUE(ListCreateFromPool(&list, 0, pool()));
    for (int i = 0; i < 100000; ++i) {
        void *item = makeThing();
        ASSERT_TRUE(ListPushLastItemInternal(list, &item));
    }
    EXPECT_EQ(ListCount(list), 100000);
    ObjReleaseInternal(&list);
}

} // namespace
