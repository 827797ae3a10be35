/* obj.cpp - tagged, reference-counted objects whose signature says what to release. */
#include "kxobj.h"
#include "kxmem.h"
#include "kxprivate.h"

#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

namespace {

/* One field of a signature: its kind letter and its offset in the object's data. */
struct Field {
    char kind;
    uint32_t offset;
};

} // namespace

/* A parsed signature. Layouts are shared by every object of the same signature and
** live for the process. */
struct kx::ObjectLayout {
    std::string text;
    std::vector<Field> fields;
    uint32_t size = 0;  /* bytes up to the end of the last field */
    uint32_t token = 0; /* its number among the layouts, from 1 */
};

namespace {

using Layout = kx::ObjectLayout;
using Header = kx::ObjectHeader;

/* Every layout by token - 1. A plain array from malloc, never freed and constant-
** initialized, so that the check by token, made several times per item of a screen,
** reads it with no guard of a function-local static. */
const Layout **layoutsByToken = nullptr;
uint32_t layoutCount = 0, layoutCapacity = 0;

/* Gives `layout` the next token; false when there is no memory for it. */
bool addToken(Layout &layout) {
    if (layoutCount == layoutCapacity) {
        const uint32_t capacity = layoutCapacity == 0 ? 64 : layoutCapacity * 2;
        void *grown = std::realloc(layoutsByToken, capacity * sizeof *layoutsByToken);
        if (grown == nullptr) return false;
        layoutsByToken = static_cast<const Layout **>(grown);
        layoutCapacity = capacity;
    }
    layoutsByToken[layoutCount++] = &layout;
    layout.token = layoutCount;
    return true;
}

int64_t liveObjects = 0;

/* Parses "o;p;i;s;" into offsets of a C struct of those members; false when it does not
** parse. */
bool parseSignature(const char *signature, Layout &layout) {
    uint32_t offset = 0;
    for (const char *c = signature; *c != '\0'; c += 2) {
        if (c[1] != ';') return false;
        uint32_t size;
        switch (c[0]) {
        case 'o': case 'p': case 's': size = sizeof(void *); break;
        case 'i': size = sizeof(int32_t); break;
        default: return false;
        }
        offset = (offset + size - 1) / size * size;
        layout.fields.push_back(Field{c[0], offset});
        offset += size;
    }
    layout.size = offset;
    layout.text = signature;
    return true;
}

/* The shared layout of a signature text, or null when it does not parse. */
const Layout *parsedLayout(const char *signature) {
    static auto *layouts = new std::unordered_map<std::string, std::unique_ptr<Layout>>;
    const std::string key = signature;
    auto it = layouts->find(key);
    if (it != layouts->end()) return it->second.get();
    auto layout = std::make_unique<Layout>();
    if (!parseSignature(key.c_str(), *layout) || !addToken(*layout)) return nullptr;
    return layouts->emplace(key, std::move(layout)).first->second.get();
}

/* The shared layout of a signature, or null when it does not parse. Objects are made
** over and over with the same signature literal, so a small cache keyed by the text's
** address answers before the text is hashed; the text is still compared, since an
** address may hold another signature by now. */
const Layout *layoutOf(const char *signature) {
    struct Recent {
        const char *text;
        const Layout *layout;
    };
    constexpr unsigned kRecentBits = 6;
    static Recent recent[1u << kRecentBits];
    const char *text = signature ? signature : "";
    const uint64_t mixed = reinterpret_cast<uintptr_t>(text) * 0x9E3779B97F4A7C15ull;
    Recent &entry = recent[mixed >> (64 - kRecentBits)];
    if (entry.text == text && std::strcmp(entry.layout->text.c_str(), text) == 0)
        return entry.layout;
    const Layout *layout = parsedLayout(text);
    if (layout != nullptr) entry = Recent{text, layout};
    return layout;
}

/* The header of a live object that is not being freed, else null. The registry is
** asked before any byte of `h` is read. */
Header *liveHeader(const void *h) {
    if (!kx::isLiveBlock(h, kx::BlockKind::Object)) return nullptr;
    Header *header = kx::objectHeader(h);
    return header->dying ? nullptr : header;
}

bool signatureBegins(const Layout &layout, const char *prefix) {
    if (prefix == nullptr) return true;
    const size_t length = std::strlen(prefix);
    return length <= layout.text.size() && std::memcmp(layout.text.data(), prefix, length) == 0;
}

/* Out of line, so that the usual check, where the layouts are the same, saves no
** registers. */
[[gnu::noinline]] bool layoutBegins(const Layout &layout, const Layout &prefix) {
    return signatureBegins(layout, prefix.text.c_str());
}

/* Drops what the fields own: 'o' references and 's' strings, wiped first since any of
** them may hold a secret (a password item's clear text). */
void releaseFields(void *data, const Layout &layout) {
    char *bytes = static_cast<char *>(data);
    for (const Field &field : layout.fields) {
        void *slot = bytes + field.offset;
        if (field.kind == 'o') ObjReleaseInternal(slot);
        else if (field.kind == 's') MemFreeSecret(slot);
    }
}

/* Frees an object whose last reference went. It is marked dying first, so that
** nothing reached while its fields are released can take or drop a reference on it. */
void destroy(void *data, Header *header) {
    header->dying = true;
    if (header->cls != nullptr && header->cls->finalize != nullptr) header->cls->finalize(data);
    releaseFields(data, *header->layout);
    liveObjects--;
    kx::freeBlock(data, sizeof(Header), kx::BlockKind::Object);
}

} // namespace

namespace kx {

int createObject(void *phObj, uint32_t dataSize, uint32_t tag, const char *signature,
                 int32_t reserved, uint32_t poolId, const ObjClass *cls) {
    if (phObj == nullptr) return 0;
    void **slot = static_cast<void **>(phObj);
    *slot = nullptr;
    const Layout *layout = layoutOf(signature);
    if (reserved != 0 || layout == nullptr || layout->size > dataSize) return 0;
    void *data = allocateBlock(sizeof(Header), dataSize, poolId, BlockKind::Object);
    if (data == nullptr) return 0;
    std::memset(data, 0, dataSize);
    Header *header = kx::objectHeader(data);
    *header = Header{tag, 1, false, layout, cls};
    liveObjects++;
    *slot = data;
    return 1;
}

void destroyObject(void *h) {
    destroy(h, kx::objectHeader(h));
}

uint32_t objectPool(const void *h) {
    return liveBlock(h)->poolId;
}

void *objectOfClass(const void *h, uint32_t tag, const ObjClass *cls) {
    const Header *header = liveHeader(h);
    if (header == nullptr || header->tag != tag || header->cls != cls) return nullptr;
    return const_cast<void *>(h);
}

} // namespace kx

extern "C" {

int ObjCreateInternal(void *phObj, uint32_t dataSize, uint32_t tag, const char *signature,
                      int32_t reserved, uint32_t poolId) {
    return kx::createObject(phObj, dataSize, tag, signature, reserved, poolId, nullptr);
}

int ObjIncRefCount(void *hObj) {
    Header *header = liveHeader(hObj);
    if (header == nullptr) return 0;
    header->refs++;
    return 1;
}

void ObjReleaseInternal(void *phObj) {
    if (phObj == nullptr) return;
    void **slot = static_cast<void **>(phObj);
    void *h = *slot;
    *slot = nullptr;
    Header *header = liveHeader(h);
    if (header == nullptr) return;
    if (--header->refs == 0) destroy(h, header);
}

uint32_t ObjGetTag(const void *hObj) {
    const Header *header = liveHeader(hObj);
    return header ? header->tag : 0;
}

const char *ObjGetSignature(const void *hObj) {
    const Header *header = liveHeader(hObj);
    return header ? header->layout->text.c_str() : nullptr;
}

int ObjHasLayout(const void *hObj, const char *prefix) {
    const Header *header = liveHeader(hObj);
    return header != nullptr && signatureBegins(*header->layout, prefix);
}

int ObjIsA(const void *hObj, uint32_t tag) {
    const Header *header = liveHeader(hObj);
    return header != nullptr && header->tag == tag;
}

int ObjIsOfKind(const void *hObj, uint32_t tag, const char *prefix) {
    const Header *header = liveHeader(hObj);
    return header != nullptr && (tag == 0 || header->tag == tag) &&
           signatureBegins(*header->layout, prefix);
}

uint32_t ObjSignatureToken(const char *signature) {
    const Layout *layout = signature ? layoutOf(signature) : nullptr;
    return layout ? layout->token : 0;
}

int ObjIsOfKindToken(const void *hObj, uint32_t tag, uint32_t token) {
    if (token - 1u >= layoutCount) return 0; /* token 0 wraps around */
    const Header *header = liveHeader(hObj);
    if (header == nullptr || (tag != 0 && header->tag != tag)) return 0;
    const Layout *prefix = layoutsByToken[token - 1];
    return header->layout == prefix || layoutBegins(*header->layout, *prefix);
}

int32_t ObjGetRefCount(const void *hObj) {
    const Header *header = liveHeader(hObj);
    return header ? header->refs : 0;
}

int ObjBooleanCreate(void *phObj, int32_t value) {
    if (!kx::createObject(phObj, sizeof(int32_t), KX_TAG_BOOLEAN, "i;", 0,
                          MemGetDefaultPoolId(), nullptr))
        return 0;
    **static_cast<int32_t **>(phObj) = value != 0;
    return 1;
}

int32_t ObjBooleanGet(const void *hObj) {
    if (!ObjIsA(hObj, KX_TAG_BOOLEAN) || !ObjHasLayout(hObj, "i;")) return -1;
    return *static_cast<const int32_t *>(hObj);
}

int64_t ObjLiveCount(void) {
    return liveObjects;
}

} // extern "C"
