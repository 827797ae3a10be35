/* guicommon.cpp - helpers that every source unit of the library shares. */
#include "guicommon.h"

#include <Xm/DropSMgr.h>

#include <cstring>

namespace xc {

uint32_t pool() {
    static const uint32_t id = MemGetDefaultPoolId();
    return id;
}

namespace {

/* Component names are cut or padded with blanks to 11 characters, without printf. The
** callers ask first whether the line goes anywhere, so that one that goes nowhere costs
** nothing more. */
void traceV(const char *component, int32_t msgNo, int32_t sub, int32_t level,
            const char *format, va_list args) {
    constexpr size_t kWidth = 11;
    char padded[kWidth + 1];
    const size_t length = strnlen(component, kWidth);
    std::memcpy(padded, component, length);
    std::memset(padded + length, ' ', kWidth - length);
    padded[kWidth] = '\0';
    TraceMessageVa(padded, msgNo, sub, level, format, args);
}

} // namespace

void trace(int32_t msgNo, int32_t level, const char *format, ...) {
    if (!TraceIsOn()) return;
    va_list args;
    va_start(args, format);
    traceV("GUI", msgNo, 0, level, format, args);
    va_end(args);
}

void traceSub(int32_t msgNo, int32_t sub, int32_t level, const char *format, ...) {
    if (!TraceIsOn()) return;
    va_list args;
    va_start(args, format);
    traceV("GUI", msgNo, sub, level, format, args);
    va_end(args);
}

void traceAs(const char *component, int32_t msgNo, int32_t level, const char *format, ...) {
    if (!TraceIsOn()) return;
    va_list args;
    va_start(args, format);
    traceV(component, msgNo, 0, level, format, args);
    va_end(args);
}

XmString newXmString(const char *text) {
    return text ? XmStringCreateLtoR(const_cast<char *>(text),
                                     const_cast<char *>(XmSTRING_DEFAULT_CHARSET))
                : nullptr;
}

XmStr::XmStr(const char *text) : str_(newXmString(text)) {}

XmStr::~XmStr() {
    if (str_) XmStringFree(str_);
}

XmText::XmText(XmString s) {
    if (s && !XmStringGetLtoR(s, const_cast<char *>(XmSTRING_DEFAULT_CHARSET), &text_))
        text_ = nullptr;
}

XmText::~XmText() {
    if (text_) XtFree(text_);
}

void mapWidget(Widget w) {
    if (w == nullptr) return;
    if (XtIsRealized(w) && XtWindow(w) != 0)
        XMapWindow(XtDisplay(w), XtWindow(w));
    else
        XtSetMappedWhenManaged(w, True);
}

void unmapWidget(Widget w) {
    if (w == nullptr) return;
    if (XtIsRealized(w) && XtWindow(w) != 0)
        XUnmapWindow(XtDisplay(w), XtWindow(w));
    else
        XtSetMappedWhenManaged(w, False);
}

void raiseWidget(Widget w) {
    if (w != nullptr && XtIsRealized(w) && XtWindow(w) != 0)
        XRaiseWindow(XtDisplay(w), XtWindow(w));
}

DropSiteBatch::DropSiteBatch(Widget w) : widget_(w) {
    if (widget_ != nullptr) XmDropSiteStartUpdate(widget_);
}

DropSiteBatch::~DropSiteBatch() {
    if (widget_ != nullptr) XmDropSiteEndUpdate(widget_);
}

uint32_t signatureToken(const char *literal) {
    struct Known {
        const char *literal;
        uint32_t token;
    };
    constexpr unsigned kBits = 6;
    static Known known[1u << kBits];
    const uint64_t mixed = reinterpret_cast<uintptr_t>(literal) * 0x9E3779B97F4A7C15ull;
    Known &entry = known[mixed >> (64 - kBits)];
    if (entry.literal != literal) entry = Known{literal, ObjSignatureToken(literal)};
    return entry.token;
}

void storeHandle(void **slot, void *h) {
    void *old = *slot;
    *slot = ObjIncRefCount(h) ? h : nullptr;
    ObjReleaseInternal(&old);
}

} // namespace xc
