/* test_kx_tree.cpp - trees: order of walks, search, prune, cookies and deep trees. */
#include "kxtest.h"

#include <string>
#include <vector>

namespace {

using TreeTest = kxtest::PoolTest;

constexpr uint32_t kTagCookie = 0x5c00c1e5u;

void *word(intptr_t w) {
    return reinterpret_cast<void *>(w);
}

intptr_t wordOf(void *node) {
    return reinterpret_cast<intptr_t>(TreeNodeCookie(node));
}

/* Collects node cookies (words) and can end the walk at a given word. */
struct Trail {
    std::vector<intptr_t> words;
    intptr_t stopAt = -1;
    void *pruneAt = nullptr; /* prune this node when the walk reaches stopAt */
};

int follow(void *ctx, void *node) {
    Trail *trail = static_cast<Trail *>(ctx);
    trail->words.push_back(wordOf(node));
    if (trail->pruneAt != nullptr && wordOf(node) == trail->stopAt) {
        TreePruneBranch(trail->pruneAt);
        return 1;
    }
    return wordOf(node) != trail->stopAt;
}

int wordIs(void *key, void *cookie) {
    return cookie == key;
}

/* A tree of words:
**   1
**   +- 2
**   |  +- 3
**   |  +- 4
**   +- 5
**   6
**   +- 7
*/
class SmallTree : public TreeTest {
protected:
    void SetUp() override {
        TreeTest::SetUp();
        ASSERT_TRUE(TreeCreateFromPool(&tree, 0, pool()));
        n[1] = TreeAddRootItem(tree, word(1), KX_TREE_COOKIE_WORD);
        n[2] = TreeAddItem(n[1], word(2), KX_TREE_COOKIE_WORD);
        n[3] = TreeAddItem(n[2], word(3), KX_TREE_COOKIE_WORD);
        n[4] = TreeAddItem(n[2], word(4), KX_TREE_COOKIE_WORD);
        n[5] = TreeAddItem(n[1], word(5), KX_TREE_COOKIE_WORD);
        n[6] = TreeAddRootItem(tree, word(6), KX_TREE_COOKIE_WORD);
        n[7] = TreeAddItem(n[6], word(7), KX_TREE_COOKIE_WORD);
        for (int i = 1; i <= 7; ++i) ASSERT_NE(n[i], nullptr);
    }
    void TearDown() override {
        ObjReleaseInternal(&tree);
        TreeTest::TearDown();
    }
    std::vector<intptr_t> preorder() {
        Trail trail;
        EXPECT_EQ(TreeWalk(tree, follow, &trail, 0), 1);
        return trail.words;
    }
    void *tree = nullptr;
    void *n[8] = {};
};

using Words = std::vector<intptr_t>;

TEST_F(SmallTree, PreOrderVisitsParentsBeforeChildrenInOrder) {
    EXPECT_EQ(preorder(), (Words{1, 2, 3, 4, 5, 6, 7}));
}

TEST_F(SmallTree, PostOrderVisitsChildrenBeforeParents) {
    Trail trail;
    EXPECT_EQ(TreeWalkPostOrder(tree, follow, &trail), 1);
    EXPECT_EQ(trail.words, (Words{3, 4, 2, 5, 1, 7, 6}));
}

TEST_F(SmallTree, WalksEndWhenACallbackReportsZero) {
    Trail pre;
    pre.stopAt = 4;
    EXPECT_EQ(TreeWalk(tree, follow, &pre, 0), 0);
    EXPECT_EQ(pre.words, (Words{1, 2, 3, 4}));
    Trail post;
    post.stopAt = 5;
    EXPECT_EQ(TreeWalkPostOrder(tree, follow, &post), 0);
    EXPECT_EQ(post.words, (Words{3, 4, 2, 5}));
}

TEST_F(SmallTree, AWalkFromANodeCoversOnlyItsSubtree) {
    Trail trail;
    EXPECT_EQ(TreeWalkFromNode(n[2], follow, &trail, 0), 1);
    EXPECT_EQ(trail.words, (Words{2, 3, 4}));
    Trail leaf;
    EXPECT_EQ(TreeWalkFromNode(n[5], follow, &leaf, 0), 1);
    EXPECT_EQ(leaf.words, (Words{5}));
}

TEST_F(SmallTree, SearchRunsFromTheStartToTheEndOfTheTree) {
    void *found = word(99);
    EXPECT_EQ(TreeSearchFromNode(&found, n[4], wordIs, word(7), 0), 1)
        << "the search leaves the start node's subtree and goes on";
    EXPECT_EQ(found, n[7]);
    EXPECT_EQ(TreeSearchFromNode(&found, n[4], wordIs, word(2), 0), 0)
        << "nodes before the start are not searched";
    EXPECT_EQ(found, nullptr);
    EXPECT_EQ(TreeSearchFromNode(&found, n[1], wordIs, word(4), 0), 1);
    EXPECT_EQ(found, n[4]);
}

TEST_F(SmallTree, SearchFindsTheFirstOfEqualCookiesInWalkOrder) {
    void *duplicate = TreeAddItem(n[5], word(3), KX_TREE_COOKIE_WORD);
    void *found = nullptr;
    EXPECT_EQ(TreeSearchFromNode(&found, n[1], wordIs, word(3), 0), 1);
    EXPECT_EQ(found, n[3]);
    EXPECT_EQ(TreeSearchFromNode(&found, n[4], wordIs, word(3), 0), 1);
    EXPECT_EQ(found, duplicate);
}

TEST_F(SmallTree, NavigationAndCounts) {
    EXPECT_EQ(TreeFirstNode(tree), n[1]);
    EXPECT_EQ(TreeNodeChildCount(n[1]), 2);
    EXPECT_EQ(TreeNodeChildCount(n[2]), 2);
    EXPECT_EQ(TreeNodeChildCount(n[3]), 0);
    EXPECT_EQ(TreeNodeFirstChild(n[2]), n[3]);
    EXPECT_EQ(TreeNodeFirstChild(n[3]), nullptr);
    EXPECT_EQ(TreeNodeParent(n[4]), n[2]);
    EXPECT_EQ(TreeNodeParent(n[6]), nullptr);
    EXPECT_TRUE(TreeNodeHasParent(n[3]));
    EXPECT_FALSE(TreeNodeHasParent(n[1]));
    EXPECT_EQ(TreeFromNode(n[7]), tree);
    EXPECT_EQ(TreeNodeCount(tree), 7);
    EXPECT_TRUE(ObjIsA(n[3], KX_TAG_TREE_NODE));
    EXPECT_TRUE(ObjIsA(tree, KX_TAG_TREE));

    void *node = n[3];
    EXPECT_EQ(TreeNextSibling(&node, node), 1) << "the result may overwrite the argument";
    EXPECT_EQ(node, n[4]);
    EXPECT_EQ(TreeNextSibling(&node, node), 0);
    EXPECT_EQ(node, nullptr);
    EXPECT_EQ(TreeNextSibling(&node, n[1]), 1);
    EXPECT_EQ(node, n[6]) << "root-level nodes are siblings";
}

TEST_F(SmallTree, TheTreeCookieIsAPlainWord) {
    EXPECT_EQ(TreeGetCookie(tree), nullptr);
    TreeSetCookie(tree, word(0x1234));
    EXPECT_EQ(TreeGetCookie(tree), word(0x1234));
}

TEST_F(SmallTree, PruneRemovesTheSubtreeAndItsHandlesBecomeAbsent) {
    const int64_t count = MemPoolLiveCount(pool());
    EXPECT_EQ(TreePruneBranch(n[2]), 1);
    EXPECT_EQ(MemPoolLiveCount(pool()), count - 3);
    EXPECT_EQ(preorder(), (Words{1, 5, 6, 7}));
    EXPECT_EQ(TreeNodeChildCount(n[1]), 1);
    EXPECT_EQ(TreeNodeFirstChild(n[1]), n[5]);
    EXPECT_EQ(TreeNodeCount(tree), 4);
    for (int i : {2, 3, 4}) {
        EXPECT_EQ(ObjGetTag(n[i]), 0u);
        EXPECT_EQ(TreeNodeCookie(n[i]), nullptr);
        EXPECT_EQ(TreeAddItem(n[i], word(8), KX_TREE_COOKIE_WORD), nullptr);
        EXPECT_EQ(TreePruneBranch(n[i]), 0);
    }
}

TEST_F(SmallTree, PruningFirstMiddleAndLastSiblingsKeepsTheChainsRight) {
    void *a = TreeAddItem(n[7], word(10), KX_TREE_COOKIE_WORD);
    void *b = TreeAddItem(n[7], word(11), KX_TREE_COOKIE_WORD);
    void *c = TreeAddItem(n[7], word(12), KX_TREE_COOKIE_WORD);
    ASSERT_TRUE(TreePruneBranch(b));
    EXPECT_EQ(preorder(), (Words{1, 2, 3, 4, 5, 6, 7, 10, 12}));
    ASSERT_TRUE(TreePruneBranch(c));
    EXPECT_EQ(TreeAddItem(n[7], word(13), KX_TREE_COOKIE_WORD) != nullptr, true);
    ASSERT_TRUE(TreePruneBranch(a));
    EXPECT_EQ(preorder(), (Words{1, 2, 3, 4, 5, 6, 7, 13}));
    ASSERT_TRUE(TreePruneBranch(n[1]));
    EXPECT_EQ(TreeFirstNode(tree), n[6]);
    ASSERT_TRUE(TreePruneBranch(n[6]));
    EXPECT_EQ(TreeFirstNode(tree), nullptr);
    EXPECT_EQ(TreeNodeCount(tree), 0);
    ASSERT_NE(TreeAddRootItem(tree, word(9), KX_TREE_COOKIE_WORD), nullptr);
    EXPECT_EQ(preorder(), (Words{9}));
}

TEST_F(SmallTree, ACallbackThatPrunesTheVisitedNodeGoesOnAfterItsSubtree) {
    Trail trail;
    trail.stopAt = 2;
    trail.pruneAt = n[2];
    EXPECT_EQ(TreeWalk(tree, follow, &trail, 0), 1);
    EXPECT_EQ(trail.words, (Words{1, 2, 5, 6, 7}));
    EXPECT_EQ(preorder(), (Words{1, 5, 6, 7}));
}

TEST_F(SmallTree, ACallbackThatPrunesAnAncestorOfTheVisitedNodeEndsTheWalk) {
    Trail trail;
    trail.stopAt = 3;
    trail.pruneAt = n[1];
    EXPECT_EQ(TreeWalkFromNode(n[2], follow, &trail, 0), 1);
    EXPECT_EQ(trail.words, (Words{2, 3}));
    EXPECT_EQ(preorder(), (Words{6, 7}));
}

TEST_F(SmallTree, APostOrderWalkMayPruneEveryNodeItVisits) {
    Trail trail;
    EXPECT_EQ(TreeWalkPostOrder(tree, [](void *ctx, void *node) {
        static_cast<Trail *>(ctx)->words.push_back(wordOf(node));
        return TreePruneBranch(node);
    }, &trail), 1);
    EXPECT_EQ(trail.words, (Words{3, 4, 2, 5, 1, 7, 6}));
    EXPECT_EQ(TreeNodeCount(tree), 0);
    EXPECT_EQ(TreeFirstNode(tree), nullptr);
}

TEST_F(SmallTree, ACallbackMayPruneNodesAheadOfTheWalk) {
    Trail trail;
    trail.stopAt = 3;
    trail.pruneAt = n[5];
    EXPECT_EQ(TreeWalk(tree, follow, &trail, 0), 1);
    EXPECT_EQ(trail.words, (Words{1, 2, 3, 4, 6, 7}));
}

TEST_F(SmallTree, ACallbackMayReleaseTheTreeDuringAWalk) {
    struct Release {
        void *tree;
        int visits = 0;
    } ctx{tree};
    tree = nullptr;
    EXPECT_EQ(TreeWalk(ctx.tree, [](void *c, void *) {
                  Release *r = static_cast<Release *>(c);
                  if (r->visits++ == 0) {
                      void *owner = r->tree;
                      ObjReleaseInternal(&owner);
                  }
                  return 1;
              }, &ctx, 0),
              1);
    EXPECT_EQ(ctx.visits, 7);
    EXPECT_EQ(ObjGetTag(ctx.tree), 0u) << "the tree went when the walk let it go";
}

TEST_F(TreeTest, ObjectCookiesAreHeldByTheirNodesAndDroppedWithThem) {
    void *cookie = nullptr;
    ASSERT_TRUE(ObjCreateInternal(&cookie, 8, kTagCookie, "i;", 0, pool()));
    void *tree = nullptr;
    ASSERT_TRUE(TreeCreateFromPool(&tree, 0, pool()));
    void *root = TreeAddRootItem(tree, cookie, KX_TREE_COOKIE_OBJECT);
    void *child = TreeAddItem(root, cookie, KX_TREE_COOKIE_OBJECT);
    TreeAddItem(root, cookie, KX_TREE_COOKIE_WORD);
    EXPECT_EQ(ObjGetRefCount(cookie), 3) << "word cookies take no reference";
    EXPECT_EQ(TreeNodeCookie(child), cookie);

    ASSERT_TRUE(TreePruneBranch(child));
    EXPECT_EQ(ObjGetRefCount(cookie), 2);
    ObjReleaseInternal(&tree);
    EXPECT_EQ(ObjGetRefCount(cookie), 1);

    ASSERT_TRUE(TreeCreateFromPool(&tree, 0, pool()));
    void *orphan = cookie;
    ObjReleaseInternal(&orphan);
    root = TreeAddRootItem(tree, cookie, KX_TREE_COOKIE_OBJECT);
    ASSERT_NE(root, nullptr);
    EXPECT_EQ(TreeNodeCookie(root), nullptr) << "a dead cookie object is stored as null";
    EXPECT_EQ(TreeAddRootItem(tree, word(1), 7), nullptr) << "unknown cookie kind";
    ObjReleaseInternal(&tree);
}

TEST_F(TreeTest, HandlesOfTheWrongKindAreAbsent) {
    void *fake = nullptr;
    ASSERT_TRUE(ObjCreateInternal(&fake, 64, KX_TAG_TREE_NODE, "p;p;p;p;p;p;p;i;i;", 0, pool()));
    void *list = nullptr;
    ASSERT_TRUE(ListCreateFromPool(&list, 0, pool()));
    Trail trail;
    for (void *h : {fake, list, static_cast<void *>(nullptr)}) {
        EXPECT_EQ(TreeAddRootItem(h, word(1), KX_TREE_COOKIE_WORD), nullptr);
        EXPECT_EQ(TreeAddItem(h, word(1), KX_TREE_COOKIE_WORD), nullptr);
        EXPECT_EQ(TreeWalk(h, follow, &trail, 0), 1);
        EXPECT_EQ(TreeWalkPostOrder(h, follow, &trail), 1);
        EXPECT_EQ(TreeWalkFromNode(h, follow, &trail, 0), 1);
        void *found = word(1);
        EXPECT_EQ(TreeSearchFromNode(&found, h, wordIs, word(1), 0), 0);
        EXPECT_EQ(found, nullptr);
        EXPECT_EQ(TreeFirstNode(h), nullptr);
        EXPECT_EQ(TreeNodeFirstChild(h), nullptr);
        EXPECT_EQ(TreeNodeParent(h), nullptr);
        EXPECT_EQ(TreeNodeChildCount(h), 0);
        EXPECT_FALSE(TreeNodeHasParent(h));
        EXPECT_EQ(TreeFromNode(h), nullptr);
        EXPECT_EQ(TreeGetCookie(h), nullptr);
        TreeSetCookie(h, word(5));
        EXPECT_EQ(TreePruneBranch(h), 0);
        EXPECT_EQ(TreeNodeCount(h), 0);
    }
    EXPECT_TRUE(trail.words.empty());
    ObjReleaseInternal(&fake);
    ObjReleaseInternal(&list);
}

class DeepTree : public TreeTest {
protected:
    static constexpr int kDepth = 10000;
    void SetUp() override {
        TreeTest::SetUp();
        ASSERT_TRUE(TreeCreateFromPool(&tree, 0, pool()));
        void *node = TreeAddRootItem(tree, word(0), KX_TREE_COOKIE_WORD);
        for (int i = 1; i < kDepth; ++i) {
            void *cookie = nullptr;
            ASSERT_TRUE(ObjCreateInternal(&cookie, 4, kTagCookie, "i;", 0, pool()));
            *static_cast<int32_t *>(cookie) = i;
            node = TreeAddItem(node, cookie, KX_TREE_COOKIE_OBJECT);
            ObjReleaseInternal(&cookie); /* the node holds it now */
            ASSERT_NE(node, nullptr);
        }
        deepest = node;
    }
    void TearDown() override {
        ObjReleaseInternal(&tree);
        TreeTest::TearDown();
    }
    void *tree = nullptr;
    void *deepest = nullptr;
};

int countNodes(void *ctx, void *) {
    ++*static_cast<int *>(ctx);
    return 1;
}

TEST_F(DeepTree, WalksSearchAndPruneReachTheBottom) {
    int pre = 0;
    EXPECT_EQ(TreeWalk(tree, countNodes, &pre, 0), 1);
    EXPECT_EQ(pre, kDepth);

    std::vector<void *> post;
    TreeWalkPostOrder(tree, [](void *ctx, void *node) {
        static_cast<std::vector<void *> *>(ctx)->push_back(node);
        return 1;
    }, &post);
    ASSERT_EQ(post.size(), static_cast<size_t>(kDepth));
    EXPECT_EQ(post.front(), deepest) << "post-order starts at the bottom";
    EXPECT_EQ(post.back(), TreeFirstNode(tree));

    int fromNode = 0;
    TreeWalkFromNode(TreeNodeFirstChild(TreeFirstNode(tree)), countNodes, &fromNode, 0);
    EXPECT_EQ(fromNode, kDepth - 1);

    void *found = nullptr;
    auto isDeepest = [](void *key, void *cookie) {
        return static_cast<int>(ObjIsA(cookie, kTagCookie) &&
                                *static_cast<int32_t *>(cookie) == *static_cast<int *>(key));
    };
    int wanted = kDepth - 1;
    EXPECT_EQ(TreeSearchFromNode(&found, TreeFirstNode(tree), isDeepest, &wanted, 0), 1);
    EXPECT_EQ(found, deepest);

    EXPECT_EQ(TreePruneBranch(TreeNodeFirstChild(TreeFirstNode(tree))), 1);
    EXPECT_EQ(TreeNodeCount(tree), 1);
}

TEST_F(DeepTree, ReleasingTheTreeFreesEveryLevel) {
    /* The fixture's leak check proves every node and cookie went. */
    ObjReleaseInternal(&tree);
    EXPECT_EQ(ObjGetTag(deepest), 0u);
}

} // namespace
