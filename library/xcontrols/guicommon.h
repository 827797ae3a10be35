/* guicommon.h - helpers that every source unit of the library shares (private). */
#ifndef XC_GUICOMMON_H
#define XC_GUICOMMON_H

#include <cstdarg>
#include <cstdint>
#include <new>
#include <unordered_map>
#include <vector>
#include <Xm/Xm.h>
#include "kx.h"

namespace xc {

/* The base runtime's default pool, asked once and kept. */
uint32_t pool();

/* Trace through the base runtime under the component "GUI" padded to 11 characters
** (traceAs names another component, such as "GUIPWD"). */
void trace(int32_t msgNo, int32_t level, const char *format, ...)
    __attribute__((format(printf, 3, 4)));
void traceSub(int32_t msgNo, int32_t sub, int32_t level, const char *format, ...)
    __attribute__((format(printf, 4, 5)));
void traceAs(const char *component, int32_t msgNo, int32_t level, const char *format, ...)
    __attribute__((format(printf, 4, 5)));

/* A new compound string of `text` made with XmStringCreateLtoR in the default character
** set, for the caller to free with XmStringFree; null for a null text. */
XmString newXmString(const char *text);

/* A compound string made with newXmString, freed when the guard goes. */
class XmStr {
public:
    explicit XmStr(const char *text);
    ~XmStr();
    XmStr(const XmStr &) = delete;
    XmStr &operator=(const XmStr &) = delete;
    operator XmString() const { return str_; }
private:
    XmString str_;
};

/* Plain text of a compound string (XmStringGetLtoR, default character set), freed with
** XtFree by the guard. */
class XmText {
public:
    explicit XmText(XmString s);
    ~XmText();
    XmText(const XmText &) = delete;
    XmText &operator=(const XmText &) = delete;
    const char *get() const { return text_; }
private:
    char *text_ = nullptr;
};

/* Window operations that never reach Xlib with a window that does not exist. While a
** widget is unrealized, mapping and unmapping set XtNmappedWhenManaged instead, so that
** Xt maps (or leaves unmapped) the window when the widget is realized. */
void mapWidget(Widget w);
void unmapWidget(Widget w);
void raiseWidget(Widget w);

/* Holds back Motif's updates of its drop-site registry while the guard lives: every text
** widget is a drop site, and the registry updated once per widget created or destroyed
** costs time that grows with the square of the widgets of the shell. `w`: any widget of
** the shell, alive at both ends; null holds nothing back. */
class DropSiteBatch {
public:
    explicit DropSiteBatch(Widget w);
    ~DropSiteBatch();
    DropSiteBatch(const DropSiteBatch &) = delete;
    DropSiteBatch &operator=(const DropSiteBatch &) = delete;
private:
    Widget widget_;
};

/* The base runtime's token of one of the library's signature literals (a text that stays
** as it is for the life of the process), asked once per literal and kept. */
uint32_t signatureToken(const char *literal);

/* A typed view of a base-runtime object: null unless `h` is a live object with the tag
** (tag 0: any tag) whose signature begins with `layout`, a signature literal (or null:
** any signature). The accessors that every walk calls pass the literal's token, asked
** once and kept in a static of their own. */
template <typename T>
T *objectAs(void *h, uint32_t tag, const char *layout, uint32_t token) {
    const bool ok = token != 0 ? ObjIsOfKindToken(h, tag, token) : ObjIsOfKind(h, tag, layout);
    return ok ? static_cast<T *>(h) : nullptr;
}

template <typename T>
T *objectAs(void *h, uint32_t tag, const char *layout) {
    return objectAs<T>(h, tag, layout, layout ? signatureToken(layout) : 0);
}

/* Replaces the object handle stored at `slot` by `h`: takes a reference on `h` (null
** when that fails), then releases the old one. */
void storeHandle(void **slot, void *h);

/* A standard allocator on the default pool, so that the library's containers are in the
** pool accounting too. */
template <typename T>
struct PoolAllocator {
    using value_type = T;
    PoolAllocator() = default;
    template <typename U>
    PoolAllocator(const PoolAllocator<U> &) {}
    T *allocate(std::size_t n) {
        void *p = MemAllocateFromPool(n * sizeof(T), pool());
        if (p == nullptr) throw std::bad_alloc();
        return static_cast<T *>(p);
    }
    void deallocate(T *p, std::size_t) { MemFreeInternal(&p); }
    template <typename U>
    bool operator==(const PoolAllocator<U> &) const { return true; }
    template <typename U>
    bool operator!=(const PoolAllocator<U> &) const { return false; }
};

template <typename T>
using PoolVector = std::vector<T, PoolAllocator<T>>;

template <typename K, typename V>
using PoolHashMap = std::unordered_map<K, V, std::hash<K>, std::equal_to<K>,
                                       PoolAllocator<std::pair<const K, V>>>;

} // namespace xc

#endif
