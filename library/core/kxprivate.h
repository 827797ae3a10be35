/* kxprivate.h - what the runtime's own units share: the block registry and object classes. */
#ifndef KX_PRIVATE_H
#define KX_PRIVATE_H

#include <cstddef>
#include <cstdint>
#include <string>

#include "blocktable.h"

namespace kx {

/* Allocates `headerSize + size` bytes for pool `poolId` and registers the address
** `base + headerSize` as a live block of `kind` accounted with `size` bytes. Returns
** that address, or null (unknown pool, no memory). */
void *allocateBlock(size_t headerSize, size_t size, uint32_t poolId, BlockKind kind);

/* Unregisters the block `p` of `kind` (allocated with `headerSize`) and frees it.
** False, and nothing happens, when `p` is not such a live block. */
bool freeBlock(const void *p, size_t headerSize, BlockKind kind);

/* Behaviour that the runtime attaches to its own objects (lists, trees, nodes): run
** when the last reference goes, before the signature's fields are released. */
struct ObjClass {
    void (*finalize)(void *data);
};

/* Creates an object like ObjCreateInternal, marked with `cls` (may be null). */
int createObject(void *phObj, uint32_t dataSize, uint32_t tag, const char *signature,
                 int32_t reserved, uint32_t poolId, const ObjClass *cls);

/* The pool that the object `h` came from; `h` must be a live object. */
uint32_t objectPool(const void *h);

/* The data of `h` when it is a live object of class `cls` carrying `tag`, else null. */
void *objectOfClass(const void *h, uint32_t tag, const ObjClass *cls);

/* A copy of `text` that lives for the process; equal texts share one copy. */
const char *intern(const std::string &text);

/* `s` without leading and trailing blanks (spaces, tabs, line ends). */
std::string trim(const std::string &s);

/* A parsed signature (obj.cpp). */
struct ObjectLayout;

/* The hidden header in front of an object's data; its size keeps the data 16-aligned.
** An object's allocation is [ObjectHeader][BlockHeader][data]. */
struct alignas(16) ObjectHeader {
    uint32_t tag;
    int32_t refs;
    bool dying; /* set once the last reference went, while its fields are released */
    const ObjectLayout *layout;
    const ObjClass *cls;
};

/* The header of the object whose data is at `h`; reads nothing. */
inline ObjectHeader *objectHeader(const void *h) {
    return reinterpret_cast<ObjectHeader *>(const_cast<char *>(static_cast<const char *>(h)) -
                                            sizeof(BlockHeader) - sizeof(ObjectHeader));
}

/* Frees the object `h`, whose last reference has just gone. */
void destroyObject(void *h);

/* Keeps an object alive for a scope: one reference taken, and dropped at the end. The
** handle must be null or a live object that the runtime reached through its own links
** (a validated handle, or a node or element linked from one): it is not looked up. An
** object being freed is left alone, as everywhere. Inline: the walks take two or three
** holds per node. */
class Hold {
public:
    explicit Hold(void *h) : h_(h) {
        if (h_ == nullptr) return;
        ObjectHeader *header = objectHeader(h_);
        if (header->dying) h_ = nullptr;
        else header->refs++;
    }
    ~Hold() {
        if (h_ != nullptr && --objectHeader(h_)->refs == 0) destroyObject(h_);
    }
    Hold(const Hold &) = delete;
    Hold &operator=(const Hold &) = delete;
private:
    void *h_;
};

} // namespace kx

#endif
