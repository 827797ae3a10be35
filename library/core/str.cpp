/* str.cpp - zero-terminated strings in pool memory. */
#include "kxstr.h"
#include "kxmem.h"

#include <cctype>
#include <cstdarg>
#include <cstdio>
#include <cstring>

namespace {

const char *orEmpty(const char *s) {
    return s ? s : "";
}

int sign(int difference) {
    return (difference > 0) - (difference < 0);
}

/* Compares at most `n` characters (n < 0: all), folding ASCII case when asked. */
int compare(const char *a, const char *b, long n, bool foldCase) {
    const unsigned char *x = reinterpret_cast<const unsigned char *>(orEmpty(a));
    const unsigned char *y = reinterpret_cast<const unsigned char *>(orEmpty(b));
    for (; n != 0; ++x, ++y, --n) {
        int cx = foldCase ? std::tolower(*x) : *x;
        int cy = foldCase ? std::tolower(*y) : *y;
        if (cx != cy) return sign(cx - cy);
        if (cx == 0) break;
    }
    return 0;
}

} // namespace

extern "C" {

char *StrDuplicateIntoPool(const char *s, uint32_t poolId) {
    if (s == nullptr) return nullptr;
    size_t size = std::strlen(s) + 1;
    char *copy = static_cast<char *>(MemAllocateFromPool(size, poolId));
    if (copy != nullptr) std::memcpy(copy, s, size);
    return copy;
}

char *StrCat(const char *first, ...) {
    va_list args;
    va_start(args, first);
    va_list again;
    va_copy(again, args);
    size_t length = std::strlen(orEmpty(first));
    for (const char *s = va_arg(args, const char *); s; s = va_arg(args, const char *))
        length += std::strlen(s);
    va_end(args);

    char *result = static_cast<char *>(MemAllocateFromPool(length + 1, MemGetDefaultPoolId()));
    if (result != nullptr) {
        char *end = stpcpy(result, orEmpty(first));
        for (const char *s = va_arg(again, const char *); s; s = va_arg(again, const char *))
            end = stpcpy(end, s);
    }
    va_end(again);
    return result;
}

int32_t StrSize(const char *s) {
    return s ? static_cast<int32_t>(std::strlen(s) + 1) : 0;
}

int StrFromInteger(void *ppResult, int64_t value) {
    if (ppResult == nullptr) return 0;
    char text[24];
    std::snprintf(text, sizeof text, "%lld", static_cast<long long>(value));
    char *copy = StrDuplicateIntoPool(text, MemGetDefaultPoolId());
    *static_cast<char **>(ppResult) = copy;
    return copy != nullptr;
}

int StrCompare(const char *a, const char *b) {
    return compare(a, b, -1, false);
}

int StrCompareNoCase(const char *a, const char *b) {
    return compare(a, b, -1, true);
}

int StrCompareRangeNoCase(const char *a, const char *b, int32_t n) {
    return n > 0 ? compare(a, b, n, true) : 0;
}

} // extern "C"
