/* kxobj.h - tagged, reference-counted objects with signature-driven release. */
#ifndef KX_OBJ_H
#define KX_OBJ_H

#include <stdint.h>
#include "kxexport.h"

KX_BEGIN_DECLS

/* Type tags of the runtime's own objects. */
#define KX_TAG_TREE         0xc8a2f9a1u
#define KX_TAG_TREE_NODE    0xc8a2f9b6u
#define KX_TAG_LIST         0xc8a2f9b9u
#define KX_TAG_LIST_ELEMENT 0xc8a2f9bbu
#define KX_TAG_BOOLEAN      0xc8a2f9c3u

/* A handle is a pointer to an object's data. The hidden header in front of it holds
** the tag, the reference count, the pool and the field signature.
**
** The signature is a string of one-letter field kinds each followed by ';':
** 'o' an object handle, 'p' a pointer, 'i' a 32-bit integer, 's' a string in pool
** memory that the object owns. Fields are laid out as a C compiler lays out a struct of
** those members (pointers and strings 8 bytes and 8-aligned on 64-bit, integers 4
** bytes), so a client declares a struct and a matching signature: "o;p;i;" is
** struct { void *o; void *p; int32_t i; }. When the last reference goes, every 'o'
** field's object is released and every 's' field wiped and freed (MemFreeSecret) before
** the object itself is freed: a record that held a password in clear leaves none behind. While that happens the object counts as gone: a reference
** that its fields hold back to it (a cycle) can neither revive nor free it twice.
** A signature that does not parse, or whose fields need more than `dataSize` bytes,
** makes creation fail. */

/* Creates a zero-filled object of `dataSize` bytes with one reference and stores its
** handle at `phObj` (a `T **` passed as void *). `reserved` must be 0. Returns 1, or 0
** (and stores null) on failure. */
KX_API int ObjCreateInternal(void *phObj, uint32_t dataSize, uint32_t tag,
                             const char *signature, int32_t reserved, uint32_t poolId);

/* Adds a reference. Returns 1, or 0 when `hObj` is null or not a live object. */
KX_API int ObjIncRefCount(void *hObj);

/* Drops one reference of the handle stored at `phObj` and sets it to null. The last
** reference frees the object after releasing its 'o' fields. A null pointer, a null
** handle or a handle that is not a live object is ignored (the variable is still
** cleared). */
KX_API void ObjReleaseInternal(void *phObj);

/* The object's tag, or 0 when `hObj` is null or not a live object. Never reads memory
** that is not a live object of the runtime. */
KX_API uint32_t ObjGetTag(const void *hObj);

/* The signature the object was created with, or null when `hObj` is not a live object.
** Owned by the object. */
KX_API const char *ObjGetSignature(const void *hObj);

/* 1 when `hObj` is a live object whose signature begins with `prefix` (a null or empty
** prefix matches every signature), else 0. */
KX_API int ObjHasLayout(const void *hObj, const char *prefix);

/* 1 when `hObj` is a live object carrying `tag`, else 0. */
KX_API int ObjIsA(const void *hObj, uint32_t tag);

/* ObjIsA and ObjHasLayout in one check, for typed views of objects that are read often:
** 1 when `hObj` is a live object carrying `tag` (0: any tag) whose signature begins with
** `prefix` (null or empty: any), else 0. */
KX_API int ObjIsOfKind(const void *hObj, uint32_t tag, const char *prefix);

/* A number that stands for a signature text for the life of the process (equal texts get
** the same number), for the checks that run most often; 0 when the text is null or does
** not parse. */
KX_API uint32_t ObjSignatureToken(const char *signature);

/* ObjIsOfKind with the text of a signature token as the prefix; an object created with
** exactly that signature is recognised without comparing texts. 0 for an unknown token. */
KX_API int ObjIsOfKindToken(const void *hObj, uint32_t tag, uint32_t token);

/* The reference count, or 0 when `hObj` is not a live object. */
KX_API int32_t ObjGetRefCount(const void *hObj);

/* Creates a boolean object (tag KX_TAG_BOOLEAN) holding `value` != 0. Returns 1/0. */
KX_API int ObjBooleanCreate(void *phObj, int32_t value);

/* The value of a boolean object: 1 or 0; -1 when `hObj` is not a boolean object. */
KX_API int32_t ObjBooleanGet(const void *hObj);

/* Number of live objects of every pool; for tests. */
KX_API int64_t ObjLiveCount(void);

KX_END_DECLS

#endif
