/* trace.cpp - trace lines to a capture hook and to the sink named by KX_TRACE. */
#include "kxtrace.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

namespace {

enum class SinkKind { Off, StdErr, File };

struct Sink {
    SinkKind kind = SinkKind::Off;
    std::string path;
};

struct TraceState {
    bool chosen = false; /* KX_TRACE read, or overridden by TraceSetSink */
    Sink sink;
    KxTraceHook hook = nullptr;
    void *hookCtx = nullptr;
};

TraceState &state() {
    static TraceState *s = new TraceState;
    return *s;
}

Sink parseSink(const char *text) {
    if (text == nullptr) return Sink{};
    if (std::strcmp(text, "stderr") == 0) return Sink{SinkKind::StdErr, std::string()};
    if (std::strncmp(text, "file:", 5) == 0 && text[5] != '\0')
        return Sink{SinkKind::File, text + 5};
    return Sink{};
}

/* KX_TRACE is read once, at the first line: a trace line costs no environment search,
** which matters to the lines that go nowhere, a few per widget made. */
const Sink &currentSink() {
    TraceState &s = state();
    if (!s.chosen) {
        s.sink = parseSink(std::getenv("KX_TRACE"));
        s.chosen = true;
    }
    return s.sink;
}

/* Whether a line goes anywhere: -1 until first asked, then kept up to date by every
** change of the hook or the sink. Most lines go nowhere, a few per widget made, and
** each asks this first. */
int linesGo = -1;

void refreshLinesGo() {
    linesGo = state().hook != nullptr || currentSink().kind != SinkKind::Off;
}

/* printf into a string of whatever length the arguments need. */
std::string format(const char *fmt, va_list args) {
    if (fmt == nullptr) return std::string();
    va_list copy;
    va_copy(copy, args);
    int length = std::vsnprintf(nullptr, 0, fmt, copy);
    va_end(copy);
    if (length <= 0) return std::string();
    std::vector<char> buffer(static_cast<size_t>(length) + 1);
    std::vsnprintf(buffer.data(), buffer.size(), fmt, args);
    return std::string(buffer.data(), static_cast<size_t>(length));
}

bool writeLine(const Sink &sink, const std::string &line) {
    if (sink.kind == SinkKind::StdErr) {
        std::fputs(line.c_str(), stderr);
        return true;
    }
    if (sink.kind != SinkKind::File) return false;
    std::FILE *file = std::fopen(sink.path.c_str(), "a");
    if (file == nullptr) return false;
    std::fputs(line.c_str(), file);
    std::fclose(file);
    return true;
}

} // namespace

extern "C" {

int TraceIsOn(void) {
    if (linesGo < 0) refreshLinesGo();
    return linesGo;
}

int TraceMessageVa(const char *component, int32_t msgNo, int32_t sub, int32_t level,
                   const char *format, va_list args) {
    TraceState &s = state();
    /* Most lines go nowhere: they cost no formatting. */
    if (!TraceIsOn()) return 0;
    const std::string text = ::format(format, args);
    const char *name = component ? component : "";
    bool done = false;
    if (s.hook != nullptr) {
        s.hook(s.hookCtx, name, msgNo, sub, level, text.c_str());
        done = true;
    }
    const Sink sink = currentSink();
    if (sink.kind != SinkKind::Off) {
        std::string line = std::string(name) + "  " + std::to_string(msgNo) + "." +
                           std::to_string(sub) + " L" + std::to_string(level) + " " + text + "\n";
        done = writeLine(sink, line) || done;
    }
    return done;
}

int TraceMessage(const char *component, int32_t msgNo, int32_t sub, int32_t level,
                 const char *format, ...) {
    va_list args;
    va_start(args, format);
    int result = TraceMessageVa(component, msgNo, sub, level, format, args);
    va_end(args);
    return result;
}

void TraceSetSink(const char *sink) {
    TraceState &s = state();
    s.sink = parseSink(sink);
    s.chosen = true;
    refreshLinesGo();
}

void TraceSetCaptureHook(KxTraceHook hook, void *ctx) {
    TraceState &s = state();
    s.hook = hook;
    s.hookCtx = ctx;
    refreshLinesGo();
}

} // extern "C"
