/* tree.cpp - ordered trees of cookie-carrying nodes, walked without recursion. */
#include "kxtree.h"
#include "kxobj.h"
#include "kxprivate.h"

namespace {

struct Node;

struct Tree {
    void *cookie;      /* 'p': the tree-level word */
    Node *first;       /* 'p': root-level nodes in order */
    Node *last;        /* 'p' */
    int32_t nodeCount; /* 'i' */
};
constexpr const char *kTreeSignature = "p;p;p;i;";

/* The tree holds the one reference of each node. A node with a null tree is detached
** (pruned) and counts as absent. */
struct Node {
    void *cookie;       /* 'p': a word, or an object that the node holds a reference on */
    Tree *tree;         /* 'p' */
    Node *parent;       /* 'p' */
    Node *firstChild;   /* 'p' */
    Node *lastChild;    /* 'p' */
    Node *next;         /* 'p' */
    Node *prev;         /* 'p' */
    int32_t childCount; /* 'i' */
    int32_t cookieKind; /* 'i' */
};
constexpr const char *kNodeSignature = "p;p;p;p;p;p;p;i;i;";

void finalizeNode(void *data) {
    Node *node = static_cast<Node *>(data);
    if (node->cookieKind == KX_TREE_COOKIE_OBJECT) ObjReleaseInternal(&node->cookie);
}

void freeAllNodes(Tree *tree);

void finalizeTree(void *data) {
    freeAllNodes(static_cast<Tree *>(data));
}

const kx::ObjClass kTreeClass{finalizeTree};
const kx::ObjClass kNodeClass{finalizeNode};

Tree *asTree(void *h) {
    return static_cast<Tree *>(kx::objectOfClass(h, KX_TAG_TREE, &kTreeClass));
}

Node *asNode(void *h) {
    Node *node = static_cast<Node *>(kx::objectOfClass(h, KX_TAG_TREE_NODE, &kNodeClass));
    return node != nullptr && node->tree != nullptr ? node : nullptr;
}

/* The first node after the subtree of `node` in pre-order, staying inside the subtree
** of `top` (null: the whole tree). */
Node *preorderNextOutside(Node *node, const Node *top) {
    for (; node != nullptr && node != top; node = node->parent)
        if (node->next != nullptr) return node->next;
    return nullptr;
}

/* The next node in pre-order, staying inside the subtree of `top`. */
Node *preorderNext(Node *node, const Node *top) {
    return node->firstChild != nullptr ? node->firstChild : preorderNextOutside(node, top);
}

Node *deepestFirst(Node *node) {
    while (node->firstChild != nullptr) node = node->firstChild;
    return node;
}

/* The next node in post-order, staying inside the subtree of `top` (null: the whole
** tree); children are visited before their parent. */
Node *postorderNext(Node *node, const Node *top) {
    if (node == top) return nullptr;
    return node->next != nullptr ? deepestFirst(node->next) : node->parent;
}

/* Frees a node of a detached subtree. Its links are cleared first, so that a reference
** someone kept beyond the node's life finds an absent node. */
void releaseNode(Tree *tree, Node *node) {
    *node = Node{node->cookie, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, 0,
                 node->cookieKind};
    tree->nodeCount--;
    ObjReleaseInternal(&node);
}

/* Frees the subtree of `start` (with a null `top`: `start` and every node after it),
** children before parents. Every node is marked detached before the first cookie is
** released, so whatever such a release reaches finds the doomed nodes absent. */
void freeSubtree(Tree *tree, Node *start, const Node *top) {
    for (Node *node = start; node != nullptr; node = preorderNext(node, top))
        node->tree = nullptr;
    for (Node *node = deepestFirst(start); node != nullptr;) {
        Node *next = postorderNext(node, top);
        releaseNode(tree, node);
        node = next;
    }
}

void freeAllNodes(Tree *tree) {
    Node *first = tree->first;
    tree->first = tree->last = nullptr;
    if (first != nullptr) freeSubtree(tree, first, nullptr);
}

/* Takes `node` out of its parent's (or the tree's root-level) chain of siblings. */
void unlink(Node *node) {
    Node **first = node->parent ? &node->parent->firstChild : &node->tree->first;
    Node **last = node->parent ? &node->parent->lastChild : &node->tree->last;
    if (node->prev != nullptr) node->prev->next = node->next;
    else *first = node->next;
    if (node->next != nullptr) node->next->prev = node->prev;
    else *last = node->prev;
    if (node->parent != nullptr) node->parent->childCount--;
    node->next = node->prev = nullptr;
    node->parent = nullptr;
}

/* Creates a node holding `cookie` as the last child of `parent` (null: the last
** root-level node). */
Node *appendNode(Tree *tree, Node *parent, void *cookie, int32_t cookieKind) {
    if (cookieKind != KX_TREE_COOKIE_WORD && cookieKind != KX_TREE_COOKIE_OBJECT)
        return nullptr;
    Node *node = nullptr;
    if (!kx::createObject(&node, sizeof(Node), KX_TAG_TREE_NODE, kNodeSignature, 0,
                          kx::objectPool(tree), &kNodeClass))
        return nullptr;
    if (cookieKind == KX_TREE_COOKIE_OBJECT && !ObjIncRefCount(cookie)) cookie = nullptr;
    Node **first = parent ? &parent->firstChild : &tree->first;
    Node **last = parent ? &parent->lastChild : &tree->last;
    *node = Node{cookie, tree, parent, nullptr, nullptr, nullptr, *last, 0, cookieKind};
    if (*last != nullptr) (*last)->next = node;
    else *first = node;
    *last = node;
    if (parent != nullptr) parent->childCount++;
    tree->nodeCount++;
    return node;
}

bool attached(const Node *node) {
    return node != nullptr && node->tree != nullptr;
}

using Step = Node *(*)(Node *, const Node *);

/* Calls fn for each node from `start`, going on with `next` inside the subtree of `top`
** (null: to the end of the tree). The tree is held during the walk, so a callback may
** release it. The visited node and the node after its subtree are held during the
** call, so a callback may prune: after a pruned visited node the walk goes on with the
** node that followed its subtree, and ends if that one was pruned too. */
int walk(Node *start, const Node *top, Step next, Step nextOutside, TreeWalkFn fn, void *ctx) {
    if (start == nullptr) return 1;
    kx::Hold holdTree(start->tree);
    for (Node *node = start; node != nullptr;) {
        kx::Hold holdNode(node);
        Node *after = nextOutside(node, top);
        kx::Hold holdAfter(after);
        if (!fn(ctx, node)) return 0;
        node = attached(node) ? next(node, top) : attached(after) ? after : nullptr;
    }
    return 1;
}

} // namespace

extern "C" {

int TreeCreateFromPool(void *phTree, int32_t reserved, uint32_t poolId) {
    return kx::createObject(phTree, sizeof(Tree), KX_TAG_TREE, kTreeSignature, reserved,
                            poolId, &kTreeClass);
}

void *TreeAddRootItem(void *hTree, void *cookie, int32_t cookieKind) {
    Tree *tree = asTree(hTree);
    return tree ? appendNode(tree, nullptr, cookie, cookieKind) : nullptr;
}

void *TreeAddItem(void *hParent, void *cookie, int32_t cookieKind) {
    Node *parent = asNode(hParent);
    return parent ? appendNode(parent->tree, parent, cookie, cookieKind) : nullptr;
}

int TreeWalk(void *hTree, TreeWalkFn fn, void *ctx, int32_t reserved) {
    Tree *tree = asTree(hTree);
    if (tree == nullptr || fn == nullptr || reserved != 0) return 1;
    return walk(tree->first, nullptr, preorderNext, preorderNextOutside, fn, ctx);
}

int TreeWalkPostOrder(void *hTree, TreeWalkFn fn, void *ctx) {
    Tree *tree = asTree(hTree);
    if (tree == nullptr || fn == nullptr || tree->first == nullptr) return 1;
    /* Children come first, so what follows a node's subtree is simply what follows it. */
    return walk(deepestFirst(tree->first), nullptr, postorderNext, postorderNext, fn, ctx);
}

int TreeWalkFromNode(void *hNode, TreeWalkFn fn, void *ctx, int32_t reserved) {
    Node *node = asNode(hNode);
    if (node == nullptr || fn == nullptr || reserved != 0) return 1;
    return walk(node, node, preorderNext, preorderNextOutside, fn, ctx);
}

int TreeSearchFromNode(void *phResult, void *hStart, TreeSearchFn pred, void *key,
                       int32_t reserved) {
    if (phResult == nullptr) return 0;
    Node **result = static_cast<Node **>(phResult);
    Node *start = asNode(hStart);
    *result = nullptr;
    if (start == nullptr || pred == nullptr || reserved != 0) return 0;
    kx::Hold holdTree(start->tree);
    for (Node *node = start; node != nullptr; node = preorderNext(node, nullptr)) {
        if (pred(key, node->cookie)) {
            *result = node;
            return 1;
        }
    }
    return 0;
}

void *TreeFirstNode(void *hTree) {
    Tree *tree = asTree(hTree);
    return tree ? tree->first : nullptr;
}

int TreeNextSibling(void *phResult, void *hNode) {
    if (phResult == nullptr) return 0;
    Node *node = asNode(hNode);
    Node *next = node ? node->next : nullptr;
    *static_cast<Node **>(phResult) = next;
    return next != nullptr;
}

void *TreeNodeFirstChild(void *hNode) {
    Node *node = asNode(hNode);
    return node ? node->firstChild : nullptr;
}

void *TreeNodeParent(void *hNode) {
    Node *node = asNode(hNode);
    return node ? node->parent : nullptr;
}

int32_t TreeNodeChildCount(void *hNode) {
    Node *node = asNode(hNode);
    return node ? node->childCount : 0;
}

int TreeNodeHasParent(void *hNode) {
    Node *node = asNode(hNode);
    return node != nullptr && node->parent != nullptr;
}

void *TreeNodeCookie(void *hNode) {
    Node *node = asNode(hNode);
    return node ? node->cookie : nullptr;
}

void *TreeFromNode(void *hNode) {
    Node *node = asNode(hNode);
    return node ? node->tree : nullptr;
}

void TreeSetCookie(void *hTree, void *cookie) {
    Tree *tree = asTree(hTree);
    if (tree != nullptr) tree->cookie = cookie;
}

void *TreeGetCookie(void *hTree) {
    Tree *tree = asTree(hTree);
    return tree ? tree->cookie : nullptr;
}

int TreePruneBranch(void *hNode) {
    Node *node = asNode(hNode);
    if (node == nullptr) return 0;
    Tree *tree = node->tree;
    kx::Hold holdTree(tree);
    unlink(node);
    freeSubtree(tree, node, node);
    return 1;
}

int32_t TreeNodeCount(void *hTree) {
    Tree *tree = asTree(hTree);
    return tree ? tree->nodeCount : 0;
}

} // extern "C"
