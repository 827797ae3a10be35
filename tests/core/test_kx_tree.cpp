/* test_kx_tree.cpp - trees: order of walks, search, prune, cookies and deep trees. */
#include "kxtest.h"
namespace {
using TreeTest = kxtest::PoolTest;
using Words = std::vector<intptr_t>;
constexpr uint32_t kTagCookie = 0x5c00c1e5u;
void *word(intptr_t w) { return reinterpret_cast<void *>(w); }
intptr_t wordOf(void *node) { return reinterpret_cast<intptr_t>(TreeNodeCookie(node)); }
int wordIs(void *key, void *cookie) { return cookie == key; }
/* Collects node cookies. At word `at` it releases `release`, or prunes `prune` and goes on,
** or ends the walk; with `at` 0 it prunes every node it visits. */
struct Trail { Words words; intptr_t at = -1; void *prune = nullptr; void **release = nullptr; };
int follow(void *ctx, void *node) {
    Trail *trail = static_cast<Trail *>(ctx);
    trail->words.push_back(wordOf(node));
    if (trail->at == 0) return TreePruneBranch(node);
    if (wordOf(node) != trail->at) return 1;
    if (trail->release != nullptr) ObjReleaseInternal(trail->release);
    return trail->release != nullptr || (trail->prune != nullptr && TreePruneBranch(trail->prune));
}
/* Roots 1 and 6; 1 holds 2 (holding 3 and 4) and 5; 6 holds 7. */
class SmallTree : public TreeTest {
protected:
    void SetUp() override { build(); }
    void build() {
        ObjReleaseInternal(&tree);
        ASSERT_TRUE(TreeCreateFromPool(&tree, 0, pool()));
        const int parents[] = {0, 0, 1, 2, 2, 1, 0, 6};
        for (int i = 1; i <= 7; ++i)
            n[i] = parents[i] ? TreeAddItem(n[parents[i]], word(i), KX_TREE_COOKIE_WORD)
                              : TreeAddRootItem(tree, word(i), KX_TREE_COOKIE_WORD);
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
    void *tree = nullptr, *n[8] = {};
};
TEST_F(SmallTree, WalksVisitInOrderEndAtZeroAndGoOnAroundWhatACallbackPrunesOrReleases) {
    enum Walk { Pre, Post, FromNode };
    const Words all = {1, 2, 3, 4, 5, 6, 7}, post = {3, 4, 2, 5, 1, 7, 6};
    struct Row { Walk walk; int start, at, prune, release, result; Words visited, left; };
    const Row rows[] = {
        {Pre, 0, -1, 0, 0, 1, all, all}, {Post, 0, -1, 0, 0, 1, post, all},
        {FromNode, 2, -1, 0, 0, 1, {2, 3, 4}, all}, {FromNode, 5, -1, 0, 0, 1, {5}, all},
        {Pre, 0, 4, 0, 0, 0, {1, 2, 3, 4}, all}, {Post, 0, 5, 0, 0, 0, {3, 4, 2, 5}, all},
        {Pre, 0, 2, 2, 0, 1, {1, 2, 5, 6, 7}, {1, 5, 6, 7}},   /* the visited node */
        {FromNode, 2, 3, 1, 0, 1, {2, 3}, {6, 7}},             /* an ancestor ends the walk */
        {Pre, 0, 3, 5, 0, 1, {1, 2, 3, 4, 6, 7}, {1, 2, 3, 4, 6, 7}}, /* a node ahead */
        {Post, 0, 0, 0, 0, 1, post, {}}, {Pre, 0, 1, 0, 1, 1, all, {}}};
    for (const auto &r : rows) {
        SCOPED_TRACE("row " + std::to_string(&r - rows));
        build();
        void *was = tree;
        Trail trail{{}, r.at, r.prune ? n[r.prune] : nullptr, r.release ? &tree : nullptr};
        EXPECT_EQ(r.walk == Pre    ? TreeWalk(tree, follow, &trail, 0)
                  : r.walk == Post ? TreeWalkPostOrder(tree, follow, &trail)
                                   : TreeWalkFromNode(n[r.start], follow, &trail, 0), r.result);
        EXPECT_EQ(trail.words, r.visited);
        EXPECT_EQ(preorder(), r.left);
        EXPECT_EQ(ObjGetTag(was) != 0, !r.release) << "the tree went when the walk let it go";
    }
}
TEST_F(SmallTree, NavigationCountsAndASearchFromTheStartToTheEndOfTheTree) {
    /* node: its child count, first child and parent (0: none) */
    const int rows[][4] = {{1, 2, 2, 0}, {2, 2, 3, 1}, {3, 0, 0, 2}, {6, 1, 7, 0}};
    for (const auto &r : rows)
        EXPECT_EQ((Words{TreeNodeChildCount(n[r[0]]), wordOf(TreeNodeFirstChild(n[r[0]])),
                         wordOf(TreeNodeParent(n[r[0]])), TreeNodeHasParent(n[r[0]]),
                         TreeFromNode(n[r[0]]) == tree}), (Words{r[1], r[2], r[3], r[3] != 0, 1}))
            << "node " << r[0];
    void *node = n[3], *root6 = nullptr; /* the result may overwrite the argument */
    TreeSetCookie(tree, word(0x1234));
    EXPECT_EQ((Words{TreeNextSibling(&node, node), node == n[4], TreeNextSibling(&node, node),
                     node == nullptr, TreeNextSibling(&root6, n[1]), root6 == n[6],
                     TreeFirstNode(tree) == n[1], TreeNodeCount(tree), wordOf(n[2]) == 2,
                     intptr_t(TreeGetCookie(tree))}), (Words{1, 1, 0, 1, 1, 1, 1, 7, 1, 0x1234}));
    void *duplicate = TreeAddItem(n[5], word(3), KX_TREE_COOKIE_WORD);
    /* From 4 the search leaves 4's subtree and goes on, but never reaches back to 2. */
    const struct { int start; intptr_t key; void *found; } searches[] = {
        {4, 7, n[7]}, {4, 2, nullptr}, {1, 4, n[4]}, {1, 3, n[3]}, {4, 3, duplicate}};
    for (const auto &s : searches) {
        void *found = word(99);
        const int hit = TreeSearchFromNode(&found, n[s.start], wordIs, word(s.key), 0);
        EXPECT_TRUE(hit == (s.found != nullptr) && found == s.found) << s.start << " " << s.key;
    }
}
/* Word cookies take no reference; a dead cookie object is stored as null. */
TEST_F(TreeTest, ObjectCookiesAreHeldByTheirNodesAndDroppedWithThem) {
    void *cookie = kxtest::make(kTagCookie, "i;", 8), *tree = nullptr, *orphan = cookie;
    ASSERT_TRUE(TreeCreateFromPool(&tree, 0, pool()));
    void *root = TreeAddRootItem(tree, cookie, KX_TREE_COOKIE_OBJECT);
    void *child = TreeAddItem(root, cookie, KX_TREE_COOKIE_WORD);
    Words counts = {ObjGetRefCount(cookie), TreeNodeCookie(child) == cookie};
    TreePruneBranch(root);
    ObjReleaseInternal(&orphan);
    root = TreeAddRootItem(tree, cookie, KX_TREE_COOKIE_OBJECT);
    counts.push_back(root != nullptr && TreeNodeCookie(root) == nullptr);
    counts.push_back(TreeAddRootItem(tree, word(1), 7) == nullptr); /* an unknown cookie kind */
    EXPECT_EQ(counts, (Words{2, 1, 1, 1}));
    ObjReleaseInternal(&tree);
}
/* A chain 10000 levels deep, each below the root holding a cookie object: no walk, search,
** prune or release may recurse once per level; the leak check sees every level go. */
TEST_F(TreeTest, WalksSearchPruneAndReleaseReachTheBottomOfADeepTree) {
    constexpr int kDepth = 10000;
    void *tree = nullptr, *found = nullptr;
    ASSERT_TRUE(TreeCreateFromPool(&tree, 0, pool()));
    void *root = TreeAddRootItem(tree, word(0), KX_TREE_COOKIE_WORD), *deepest = root;
    for (int i = 1; i < kDepth; ++i) {
        void *cookie = kxtest::make(kTagCookie, "i;", 4);
        deepest = TreeAddItem(deepest, cookie, KX_TREE_COOKIE_OBJECT);
        ObjReleaseInternal(&cookie); /* the node holds it now */
    }
    Trail pre, post, below; /* cookie objects are no words that stop a walk */
    auto isLast = [](void *last, void *cookie) { return int(TreeNodeCookie(last) == cookie); };
    EXPECT_EQ((Words{TreeWalk(tree, follow, &pre, 0), TreeWalkPostOrder(tree, follow, &post),
                     TreeWalkFromNode(TreeNodeFirstChild(root), follow, &below, 0),
                     intptr_t(pre.words.size() + post.words.size() + below.words.size()),
                     post.words.back(), TreeSearchFromNode(&found, root, isLast, deepest, 0),
                     found == deepest, TreePruneBranch(TreeNodeFirstChild(root)),
                     TreeNodeCount(tree)}), (Words{1, 1, 1, 3 * kDepth - 1, 0, 1, 1, 1, 1}));
    ObjReleaseInternal(&tree);
}
} // namespace
