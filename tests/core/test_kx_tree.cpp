/* test_kx_tree.cpp - trees: order of walks, search, prune, cookies and deep trees. */
#include "kxtest.h"
namespace {
using TreeTest = kxtest::PoolTest;
using Words = std::vector<intptr_t>;
constexpr uint32_t kTagCookie = 0x5c00c1e5u;
void *word(intptr_t w) { return reinterpret_cast<void *>(w); }
intptr_t wordOf(void *node) { return reinterpret_cast<intptr_t>(TreeNodeCookie(node)); }
/* Collects node cookies; at word stopAt prunes pruneAt and goes on, or ends the walk. */
struct Trail { Words words; intptr_t stopAt = -1; void *pruneAt = nullptr; };
int follow(void *ctx, void *node) {
    Trail *trail = static_cast<Trail *>(ctx);
    trail->words.push_back(wordOf(node));
    if (wordOf(node) != trail->stopAt) return 1;
    return trail->pruneAt != nullptr && TreePruneBranch(trail->pruneAt);
}
int wordIs(void *key, void *cookie) { return cookie == key; }
/* Roots 1 and 6; 1 holds 2 (holding 3 and 4) and 5; 6 holds 7. */
class SmallTree : public TreeTest {
protected:
    void SetUp() override {
        TreeTest::SetUp();
        build();
    }
    void build() {
        ObjReleaseInternal(&tree);
        ASSERT_TRUE(TreeCreateFromPool(&tree, 0, pool()));
        const int parents[] = {0, 0, 1, 2, 2, 1, 0, 6};
        for (int i = 1; i <= 7; ++i) {
            n[i] = parents[i] ? TreeAddItem(n[parents[i]], word(i), KX_TREE_COOKIE_WORD)
                              : TreeAddRootItem(tree, word(i), KX_TREE_COOKIE_WORD);
            ASSERT_NE(n[i], nullptr);
        }
    }
    void TearDown() override {
        ObjReleaseInternal(&tree);
        TreeTest::TearDown();
    }
    Words preorder() {
        Trail trail;
        EXPECT_EQ(TreeWalk(tree, follow, &trail, 0), 1);
        return trail.words;
    }
    void *tree = nullptr;
    void *n[8] = {};
};
TEST_F(SmallTree, WalksVisitInOrderEndAtZeroAndGoOnAroundWhatACallbackPrunes) {
    enum Walk { Pre, Post, FromNode };
    const struct { Walk walk; int start, stopAt, pruneAt, result; Words visited, left; } rows[] = {
        {Pre, 0, -1, 0, 1, {1, 2, 3, 4, 5, 6, 7}, {1, 2, 3, 4, 5, 6, 7}},
        {Post, 0, -1, 0, 1, {3, 4, 2, 5, 1, 7, 6}, {1, 2, 3, 4, 5, 6, 7}},
        {FromNode, 2, -1, 0, 1, {2, 3, 4}, {1, 2, 3, 4, 5, 6, 7}},
        {FromNode, 5, -1, 0, 1, {5}, {1, 2, 3, 4, 5, 6, 7}},
        {Pre, 0, 4, 0, 0, {1, 2, 3, 4}, {1, 2, 3, 4, 5, 6, 7}},
        {Post, 0, 5, 0, 0, {3, 4, 2, 5}, {1, 2, 3, 4, 5, 6, 7}},
        {Pre, 0, 2, 2, 1, {1, 2, 5, 6, 7}, {1, 5, 6, 7}},   /* the visited node */
        {FromNode, 2, 3, 1, 1, {2, 3}, {6, 7}},             /* an ancestor ends the walk */
        {Pre, 0, 3, 5, 1, {1, 2, 3, 4, 6, 7}, {1, 2, 3, 4, 6, 7}}, /* a node ahead */
    };
    for (const auto &r : rows) {
        SCOPED_TRACE("row " + std::to_string(&r - rows));
        build();
        Trail trail{{}, r.stopAt, r.pruneAt ? n[r.pruneAt] : nullptr};
        EXPECT_EQ(r.walk == Pre    ? TreeWalk(tree, follow, &trail, 0)
                  : r.walk == Post ? TreeWalkPostOrder(tree, follow, &trail)
                                   : TreeWalkFromNode(n[r.start], follow, &trail, 0),
                  r.result);
        EXPECT_EQ(trail.words, r.visited);
        EXPECT_EQ(preorder(), r.left);
    }
}
TEST_F(SmallTree, SearchRunsFromTheStartToTheEndOfTheTreeAndFindsTheFirstMatch) {
    void *duplicate = TreeAddItem(n[5], word(3), KX_TREE_COOKIE_WORD);
    /* From 4 the search leaves 4's subtree and goes on, but never reaches back to 2. */
    const struct { int start; intptr_t key; void *found; } rows[] = {
        {4, 7, n[7]}, {4, 2, nullptr}, {1, 4, n[4]}, {1, 3, n[3]}, {4, 3, duplicate}};
    for (const auto &r : rows) {
        void *found = word(99);
        const int hit = TreeSearchFromNode(&found, n[r.start], wordIs, word(r.key), 0);
        EXPECT_TRUE(hit == (r.found != nullptr) && found == r.found) << r.start << " " << r.key;
    }
}
TEST_F(SmallTree, NavigationAndCounts) {
    EXPECT_EQ(TreeFirstNode(tree), n[1]);
    EXPECT_EQ(TreeNodeCount(tree), 7);
    /* node: its child count, first child and parent (0: none) */
    const int rows[][4] = {{1, 2, 2, 0}, {2, 2, 3, 1}, {3, 0, 0, 2}, {4, 0, 0, 2}, {6, 1, 7, 0}};
    for (const auto &r : rows) {
        const Words got = {TreeNodeChildCount(n[r[0]]), wordOf(TreeNodeFirstChild(n[r[0]])),
                           wordOf(TreeNodeParent(n[r[0]])), TreeNodeHasParent(n[r[0]]),
                           TreeFromNode(n[r[0]]) == tree};
        EXPECT_EQ(got, (Words{r[1], r[2], r[3], r[3] != 0, 1})) << "node " << r[0];
    }
    void *node = n[3];
    EXPECT_EQ(TreeNextSibling(&node, node), 1) << "the result may overwrite the argument";
    EXPECT_EQ(node, n[4]);
    EXPECT_EQ(TreeNextSibling(&node, node), 0);
    EXPECT_EQ(node, nullptr);
    EXPECT_EQ(TreeNextSibling(&node, n[1]), 1);
    EXPECT_EQ(node, n[6]) << "root-level nodes are siblings";
    TreeSetCookie(tree, word(0x1234));
    EXPECT_EQ(TreeGetCookie(tree), word(0x1234)) << "the tree's cookie is a plain word";
}
TEST_F(SmallTree, PruneRemovesTheSubtreeKeepsTheChainsRightAndLeavesNoHandles) {
    const int64_t count = MemPoolLiveCount(pool());
    EXPECT_EQ(TreePruneBranch(n[2]), 1);
    EXPECT_EQ((Words{MemPoolLiveCount(pool()) - count, wordOf(TreeNodeFirstChild(n[1])),
                     TreeNodeCount(tree)}), (Words{-3, 5, 4}));
    for (int i : {2, 3, 4})
        EXPECT_TRUE(!ObjGetTag(n[i]) && !TreeNodeCookie(n[i]) && !TreePruneBranch(n[i]) &&
                    !TreeAddItem(n[i], word(8), KX_TREE_COOKIE_WORD)) << "pruned " << i;
    void *a = TreeAddItem(n[7], word(10), KX_TREE_COOKIE_WORD);
    void *b = TreeAddItem(n[7], word(11), KX_TREE_COOKIE_WORD);
    void *c = TreeAddItem(n[7], word(12), KX_TREE_COOKIE_WORD);
    ASSERT_TRUE(TreePruneBranch(b)); /* a middle, a last and a first sibling */
    EXPECT_EQ(preorder(), (Words{1, 5, 6, 7, 10, 12}));
    ASSERT_TRUE(TreePruneBranch(c) && TreeAddItem(n[7], word(13), KX_TREE_COOKIE_WORD));
    ASSERT_TRUE(TreePruneBranch(a) && TreePruneBranch(n[1]));
    EXPECT_EQ(preorder(), (Words{6, 7, 13}));
    Trail trail;
    EXPECT_EQ(TreeWalkPostOrder(tree, [](void *ctx, void *node) {
        static_cast<Trail *>(ctx)->words.push_back(wordOf(node));
        return TreePruneBranch(node);
    }, &trail), 1) << "a post-order walk may prune every node it visits";
    EXPECT_EQ(trail.words, (Words{13, 7, 6}));
    EXPECT_EQ((Words{TreeFirstNode(tree) == nullptr, TreeNodeCount(tree)}), (Words{1, 0}));
    ASSERT_NE(TreeAddRootItem(tree, word(9), KX_TREE_COOKIE_WORD), nullptr);
    EXPECT_EQ(preorder(), (Words{9}));
}
TEST_F(SmallTree, ACallbackMayReleaseTheTreeDuringAWalk) {
    struct Release { void *tree; int visits = 0; } ctx{tree};
    tree = nullptr;
    EXPECT_EQ(TreeWalk(ctx.tree, [](void *c, void *) {
        Release *r = static_cast<Release *>(c);
        void *owner = r->tree;
        if (r->visits++ == 0) ObjReleaseInternal(&owner);
        return 1;
    }, &ctx, 0), 1);
    EXPECT_EQ(ctx.visits, 7);
    EXPECT_EQ(ObjGetTag(ctx.tree), 0u) << "the tree went when the walk let it go";
}
/* Word cookies take no reference; a dead cookie object is stored as null. */
TEST_F(TreeTest, ObjectCookiesAreHeldByTheirNodesAndDroppedWithThem) {
    void *cookie = kxtest::make(kTagCookie, "i;", 8), *tree = nullptr, *orphan = cookie;
    ASSERT_TRUE(TreeCreateFromPool(&tree, 0, pool()));
    void *root = TreeAddRootItem(tree, cookie, KX_TREE_COOKIE_OBJECT);
    void *child = TreeAddItem(root, cookie, KX_TREE_COOKIE_OBJECT);
    TreeAddItem(root, cookie, KX_TREE_COOKIE_WORD);
    Words counts = {ObjGetRefCount(cookie), TreeNodeCookie(child) == cookie};
    TreePruneBranch(child);
    counts.push_back(ObjGetRefCount(cookie));
    ObjReleaseInternal(&tree);
    counts.push_back(ObjGetRefCount(cookie));
    EXPECT_EQ(counts, (Words{3, 1, 2, 1}));
    ASSERT_TRUE(TreeCreateFromPool(&tree, 0, pool()));
    ObjReleaseInternal(&orphan);
    root = TreeAddRootItem(tree, cookie, KX_TREE_COOKIE_OBJECT);
    EXPECT_TRUE(root != nullptr && TreeNodeCookie(root) == nullptr);
    EXPECT_EQ(TreeAddRootItem(tree, word(1), 7), nullptr) << "unknown cookie kind";
    ObjReleaseInternal(&tree);
}
TEST_F(TreeTest, HandlesOfTheWrongKindAreAbsent) {
    void *fake = kxtest::make(KX_TAG_TREE_NODE, "p;p;p;p;p;p;p;i;i;", 64), *list = nullptr;
    ASSERT_TRUE(ListCreateFromPool(&list, 0, pool()));
    Trail trail;
    for (void *h : {fake, list, static_cast<void *>(nullptr)}) {
        void *found = word(1);
        TreeSetCookie(h, word(5));
        const std::vector<const void *> absent = {
            TreeAddRootItem(h, word(1), KX_TREE_COOKIE_WORD), TreeAddItem(h, word(1), 0),
            TreeFirstNode(h), TreeNodeFirstChild(h), TreeNodeParent(h), TreeFromNode(h),
            TreeGetCookie(h), word(TreeSearchFromNode(&found, h, wordIs, word(1), 0)), found,
            word(TreeNodeChildCount(h)), word(TreeNodeHasParent(h)), word(TreePruneBranch(h)),
            word(TreeNodeCount(h))};
        EXPECT_EQ(absent, std::vector<const void *>(absent.size(), nullptr)) << h;
        EXPECT_TRUE(TreeWalk(h, follow, &trail, 0) && TreeWalkPostOrder(h, follow, &trail) &&
                    TreeWalkFromNode(h, follow, &trail, 0));
    }
    EXPECT_TRUE(trail.words.empty());
    ObjReleaseInternal(&fake);
    ObjReleaseInternal(&list);
}
/* A chain 10000 levels deep, each below the root holding a numbered cookie object:
** nothing may recurse once per level, and releasing the tree frees every level. */
TEST_F(TreeTest, WalksSearchPruneAndReleaseReachTheBottomOfADeepTree) {
    constexpr int kDepth = 10000;
    void *tree = nullptr;
    ASSERT_TRUE(TreeCreateFromPool(&tree, 0, pool()));
    void *root = TreeAddRootItem(tree, word(0), KX_TREE_COOKIE_WORD), *deepest = root;
    for (int i = 1; i < kDepth; ++i) {
        void *cookie = kxtest::make(kTagCookie, "i;", 4);
        *static_cast<int32_t *>(cookie) = i;
        deepest = TreeAddItem(deepest, cookie, KX_TREE_COOKIE_OBJECT);
        ObjReleaseInternal(&cookie); /* the node holds it now */
    }
    auto collect = [](void *ctx, void *node) {
        static_cast<std::vector<void *> *>(ctx)->push_back(node);
        return 1;
    };
    std::vector<void *> pre, below, post;
    const int walked = TreeWalk(tree, collect, &pre, 0) + TreeWalkPostOrder(tree, collect, &post) +
                       TreeWalkFromNode(TreeNodeFirstChild(root), collect, &below, 0);
    ASSERT_EQ((Words{walked, intptr_t(pre.size()), intptr_t(below.size()), intptr_t(post.size())}),
              (Words{3, kDepth, kDepth - 1, kDepth}));
    EXPECT_TRUE(post.front() == deepest && post.back() == root) << "post-order from the bottom";
    void *found = nullptr;
    int wanted = kDepth - 1;
    EXPECT_EQ(TreeSearchFromNode(&found, root, [](void *key, void *cookie) {
        return static_cast<int>(ObjIsA(cookie, kTagCookie) &&
                                *static_cast<int32_t *>(cookie) == *static_cast<int *>(key));
    }, &wanted, 0), 1);
    EXPECT_EQ(found, deepest);
    EXPECT_EQ(TreePruneBranch(TreeNodeFirstChild(root)), 1);
    EXPECT_EQ(TreeNodeCount(tree), 1);
    ObjReleaseInternal(&tree); /* the fixture's leak check proves every level went */
    EXPECT_EQ(ObjGetTag(root), 0u);
}
} // namespace
