/* test_kx_tree.cpp - lists and trees: order of walks, search, prune, cookies, deep trees. */
#include "kxtest.h"
namespace {
using TreeTest = kxtest::PoolTest;
using Words = std::vector<intptr_t>;
constexpr uint32_t kTagCookie = 0x5c00c1e5u, kTagItem = 0x51a0c0deu;
void *word(intptr_t w) { return reinterpret_cast<void *>(w); }
intptr_t wordOf(void *node) { return reinterpret_cast<intptr_t>(TreeNodeCookie(node)); }
int wordIs(void *key, void *cookie) { return cookie == key; }
/* Collects the items' tags less kTagItem; stops after some (0: never), or releases a list. */
struct Visit { Words tags; size_t stopAfter; void **release; };
int record(void *ctx, void *element) {
    Visit *visit = static_cast<Visit *>(ctx);
    visit->tags.push_back(ObjGetTag(ListElementItem(element)) - kTagItem);
    if (visit->release != nullptr) ObjReleaseInternal(visit->release);
    return visit->stopAfter == 0 || visit->tags.size() < visit->stopAfter;
}
TEST_F(TreeTest, ListWalksGoEitherWayStopAtZeroAndHoldTheListACallbackReleases) {
    const struct { bool backwards, release; size_t stopAfter; int result; Words tags; } rows[] = {
        {false, false, 0, 1, {0, 1, 2}}, {true, false, 0, 1, {2, 1, 0}},
        {false, false, 2, 0, {0, 1}}, {true, false, 1, 0, {2}}, {false, true, 0, 1, {0, 1, 2}},
        {true, true, 1, 0, {2}}};
    for (const auto &r : rows) {
        SCOPED_TRACE("row " + std::to_string(&r - rows));
        void *list = nullptr, *items[3];
        ASSERT_TRUE(ListCreateFromPool(&list, 0, pool()));
        for (int i = 0; i < 3; ++i)
            EXPECT_TRUE(ListAddLastItem(list, items[i] = kxtest::make(kTagItem + i)));
        EXPECT_EQ((Words{ListCount(list), ListFirstItem(list) == items[0],
                          ListLastItem(list) == items[2], ObjGetRefCount(items[1])}),
                  (Words{3, 1, 1, 2})) << "the list holds a reference on each item";
        Visit visit{{}, r.stopAfter, r.release ? &list : nullptr};
        EXPECT_EQ((r.backwards ? ListWalkBackwards : ListWalk)(list, record, &visit), r.result);
        EXPECT_EQ((Words{visit.tags == r.tags, list == nullptr}), (Words{1, r.release}));
        ObjReleaseInternal(&list);
        EXPECT_EQ(ObjGetRefCount(items[1]), 1) << "the list went with its last reference";
        for (void *&item : items) ObjReleaseInternal(&item);
    }
}
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
/* Roots 1 and 6; 1 holds 2 (holding 3 and 4) and 5; 6 holds 7. Node i holds the word i. */
struct SmallTree {
    SmallTree() {
        EXPECT_TRUE(TreeCreateFromPool(&tree, 0, MemGetDefaultPoolId()));
        const int parents[] = {0, 0, 1, 2, 2, 1, 0, 6};
        for (int i = 1; i <= 7; ++i)
            n[i] = parents[i] ? TreeAddItem(n[parents[i]], word(i), KX_TREE_COOKIE_WORD)
                              : TreeAddRootItem(tree, word(i), KX_TREE_COOKIE_WORD);
    }
    ~SmallTree() { ObjReleaseInternal(&tree); }
    void *tree = nullptr, *n[8] = {};
};
TEST_F(TreeTest, WalksVisitInOrderEndAtZeroAndGoOnAroundWhatACallbackPrunesOrReleases) {
    enum Walk { Pre, Post, FromNode };
    const Words all = {1, 2, 3, 4, 5, 6, 7}, post = {3, 4, 2, 5, 1, 7, 6};
    struct Row { Walk walk; int start, at, prune, release, result; Words visited, left; };
    const Row rows[] = {
        {Pre, 0, -1, 0, 0, 1, all, all}, {Post, 0, -1, 0, 0, 1, post, all},
        {FromNode, 2, -1, 0, 0, 1, {2, 3, 4}, all}, {Pre, 0, 4, 0, 0, 0, {1, 2, 3, 4}, all},
        {Pre, 0, 2, 2, 0, 1, {1, 2, 5, 6, 7}, {1, 5, 6, 7}},   /* the visited node */
        {FromNode, 2, 3, 1, 0, 1, {2, 3}, {6, 7}},             /* an ancestor ends the walk */
        {Pre, 0, 3, 5, 0, 1, {1, 2, 3, 4, 6, 7}, {1, 2, 3, 4, 6, 7}}, /* a node ahead */
        {Post, 0, 5, 0, 0, 0, {3, 4, 2, 5}, all}, {Post, 0, 0, 0, 0, 1, post, {}},
        {Pre, 0, 1, 0, 1, 1, all, {}}};
    for (const auto &r : rows) {
        SCOPED_TRACE("row " + std::to_string(&r - rows));
        SmallTree t;
        void *was = t.tree;
        Trail trail{{}, r.at, r.prune ? t.n[r.prune] : nullptr, r.release ? &t.tree : nullptr};
        EXPECT_EQ(r.walk == Pre    ? TreeWalk(t.tree, follow, &trail, 0)
                  : r.walk == Post ? TreeWalkPostOrder(t.tree, follow, &trail)
                                   : TreeWalkFromNode(t.n[r.start], follow, &trail, 0), r.result);
        EXPECT_EQ(trail.words, r.visited);
        Trail left;
        TreeWalk(t.tree, follow, &left, 0);
        EXPECT_EQ(left.words, r.left);
        EXPECT_EQ(ObjGetTag(was) != 0, !r.release) << "the tree went when the walk let it go";
    }
}
/* Word cookies take no reference, object cookies one; a dead cookie object is stored as null. */
TEST_F(TreeTest, NavigationCookiesAndASearchFromTheStartToTheEndOfTheTree) {
    SmallTree t;
    void *const *n = t.n;
    /* node: its child count, first child and parent (0: none) */
    const int rows[][4] = {{1, 2, 2, 0}, {2, 2, 3, 1}, {3, 0, 0, 2}, {6, 1, 7, 0}};
    for (const auto &r : rows)
        EXPECT_EQ((Words{TreeNodeChildCount(n[r[0]]), wordOf(TreeNodeFirstChild(n[r[0]])),
                         wordOf(TreeNodeParent(n[r[0]])), TreeNodeHasParent(n[r[0]]),
                         TreeFromNode(n[r[0]]) == t.tree}), (Words{r[1], r[2], r[3], r[3] != 0, 1}))
            << "node " << r[0];
    void *node = n[3], *root6 = nullptr; /* the result may overwrite the argument */
    TreeSetCookie(t.tree, word(0x1234));
    EXPECT_EQ((Words{TreeNextSibling(&node, node), node == n[4], TreeNextSibling(&node, node),
                     node == nullptr, TreeNextSibling(&root6, n[1]), root6 == n[6],
                     TreeFirstNode(t.tree) == n[1], TreeNodeCount(t.tree),
                     intptr_t(TreeGetCookie(t.tree))}), (Words{1, 1, 0, 1, 1, 1, 1, 7, 0x1234}));
    void *duplicate = TreeAddItem(n[5], word(3), KX_TREE_COOKIE_WORD);
    /* From 4 the search leaves 4's subtree and goes on, but never reaches back to 2. */
    const struct { int start; intptr_t key; void *found; } searches[] = {
        {4, 7, n[7]}, {4, 2, nullptr}, {1, 4, n[4]}, {4, 3, duplicate}};
    for (const auto &s : searches) {
        void *found = word(99);
        const int hit = TreeSearchFromNode(&found, n[s.start], wordIs, word(s.key), 0);
        EXPECT_TRUE(hit == (s.found != nullptr) && found == s.found) << s.start << " " << s.key;
    }
    void *cookie = kxtest::make(kTagCookie, "i;", 8), *stale = cookie;
    void *held = TreeAddItem(n[7], cookie, KX_TREE_COOKIE_OBJECT);
    Words counts = {ObjGetRefCount(cookie), TreePruneBranch(held), ObjGetRefCount(cookie)};
    ObjReleaseInternal(&cookie);
    counts.push_back(TreeNodeCookie(TreeAddItem(n[7], stale, KX_TREE_COOKIE_OBJECT)) == nullptr);
    counts.push_back(TreeAddRootItem(t.tree, word(1), 7) == nullptr); /* an unknown cookie kind */
    EXPECT_EQ(counts, (Words{2, 1, 1, 1, 1}));
}
/* A chain 10000 deep below node 7: no walk, search, prune or release recurses once per level. */
TEST_F(TreeTest, WalksSearchPruneAndReleaseReachTheBottomOfADeepTree) {
    SmallTree t;
    void *last = t.n[7], *found = nullptr;
    for (int i = 1; i <= 10000; ++i) last = TreeAddItem(last, word(7 + i), KX_TREE_COOKIE_WORD);
    Trail pre, post, below;
    EXPECT_EQ((Words{TreeWalk(t.tree, follow, &pre, 0), TreeWalkPostOrder(t.tree, follow, &post),
                     TreeWalkFromNode(t.n[6], follow, &below, 0),
                     intptr_t(pre.words.size() + post.words.size() + below.words.size()),
                     post.words.front(), TreeSearchFromNode(&found, t.n[6], wordIs, word(10007), 0),
                     found == last, TreePruneBranch(t.n[7]), TreeNodeCount(t.tree)}),
              (Words{1, 1, 1, 3 * 10000 + 7 + 7 + 2, 3, 1, 1, 1, 6}));
}
} // namespace
