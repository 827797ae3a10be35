/* kxtree.h - ordered trees whose nodes carry a cookie each. */
#ifndef KX_TREE_H
#define KX_TREE_H

#include <stdint.h>
#include "kxexport.h"

KX_BEGIN_DECLS

/* A tree (tag KX_TAG_TREE) owns its nodes (tag KX_TAG_TREE_NODE). Node handles are
** borrowed: they stay valid while the node is in its tree. A node's cookie is either a
** plain word or an object of which the node holds one reference (see TreeAddItem);
** releasing the tree's last reference frees every node and drops those references.
** Children keep the order in which they were added. Every function treats a handle
** of the wrong tag (or a node that was pruned) as absent. */

/* Cookie kinds for TreeAddItem and TreeAddRootItem. */
#define KX_TREE_COOKIE_WORD   0 /* the node stores the word as it is */
#define KX_TREE_COOKIE_OBJECT 1 /* the node takes a reference on the cookie object */

/* Walk callback: (context, node); returns 0 to end the walk. */
typedef int (*TreeWalkFn)(void *ctx, void *hNode);
/* Search predicate: (key, node cookie); non-zero for a match. */
typedef int (*TreeSearchFn)(void *key, void *cookie);

/* Creates an empty tree in pool `poolId` at `phTree`; `reserved` must be 0. 1/0. */
KX_API int TreeCreateFromPool(void *phTree, int32_t reserved, uint32_t poolId);

/* Appends a top-level node (a sibling after the last root-level node) holding `cookie`
** of kind `cookieKind`. Returns the new node, or null. With KX_TREE_COOKIE_OBJECT a
** cookie that is not a live object is stored as null. */
KX_API void *TreeAddRootItem(void *hTree, void *cookie, int32_t cookieKind);

/* Appends a new last child of `hParent` holding `cookie` of kind `cookieKind`.
** Returns the new node, or null. */
KX_API void *TreeAddItem(void *hParent, void *cookie, int32_t cookieKind);

/* Pre-order walk of every node (parent before children, children in order) calling
** fn(ctx, node); a result of 0 ends it. `reserved` must be 0. Returns 1 when the walk
** reached the end, 0 when it was ended. The tree stays alive during the walk even if a
** callback releases it. A callback may prune nodes: a pruned node is never visited; when
** it prunes the node it was given, the walk goes on with the node that followed that
** node's subtree, and ends when that one was pruned as well. */
KX_API int TreeWalk(void *hTree, TreeWalkFn fn, void *ctx, int32_t reserved);
/* Post-order walk: children before their parent. */
KX_API int TreeWalkPostOrder(void *hTree, TreeWalkFn fn, void *ctx);
/* Pre-order walk of the subtree of `hNode` (the node first). */
KX_API int TreeWalkFromNode(void *hNode, TreeWalkFn fn, void *ctx, int32_t reserved);

/* Stores at `phResult` the first node, in pre-order from `hStart` to the end of the
** tree's pre-order walk, for which pred(key, cookie) is non-zero; null when none.
** Returns 1 when found, else 0. `reserved` must be 0. */
KX_API int TreeSearchFromNode(void *phResult, void *hStart, TreeSearchFn pred, void *key,
                              int32_t reserved);

KX_API void *TreeFirstNode(void *hTree);
/* Stores the next sibling of `hNode` (null after the last) at `phResult`, which may be
** the address of the variable holding `hNode`. Returns 1 when there is one. */
KX_API int TreeNextSibling(void *phResult, void *hNode);
KX_API void *TreeNodeFirstChild(void *hNode);
KX_API void *TreeNodeParent(void *hNode);
KX_API int32_t TreeNodeChildCount(void *hNode);
KX_API int TreeNodeHasParent(void *hNode);
KX_API void *TreeNodeCookie(void *hNode);
KX_API void *TreeFromNode(void *hNode);

KX_API void TreeSetCookie(void *hTree, void *cookie);
KX_API void *TreeGetCookie(void *hTree);

/* Removes `hNode` and its whole subtree from its tree and frees them (dropping cookie
** references). Returns 1/0. */
KX_API int TreePruneBranch(void *hNode);

/* Number of nodes of the tree, for tests. */
KX_API int32_t TreeNodeCount(void *hTree);

KX_END_DECLS

#endif
