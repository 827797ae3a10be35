/* kxtest.h - the base for base-runtime tests: every test gives back what it took. */
#ifndef KX_TEST_H
#define KX_TEST_H
#include <gtest/gtest.h>
#include <unistd.h>
#include <cstdlib>
#include <optional>
#include <string>
#include <vector>
#include "kx.h"
namespace kxtest {
/* Several observations compared with their expected values in one expectation. */
using Values = std::vector<int64_t>;
inline int64_t word(const void *p) { return static_cast<int64_t>(reinterpret_cast<intptr_t>(p)); }
/* Fails a test that leaves the pools with more or fewer live blocks or objects than it found. */
class PoolTest : public ::testing::Test {
protected:
    void TearDown() override {
        EXPECT_EQ(MemLiveCountAllPools(), blocks_) << "pool blocks leaked or lost";
        EXPECT_EQ(ObjLiveCount(), objects_) << "objects leaked or lost";
    }
    static uint32_t pool() { return MemGetDefaultPoolId(); }
private:
    const int64_t blocks_ = MemLiveCountAllPools(), objects_ = ObjLiveCount();
};
/* A zeroed object in the default pool, laid out as "o;s;i;p;" unless told otherwise. */
inline void *make(uint32_t tag, const char *signature = "o;s;i;p;", uint32_t size = 32) {
    void *h = nullptr;
    EXPECT_TRUE(ObjCreateInternal(&h, size, tag, signature, 0, MemGetDefaultPoolId())) << signature;
    return h;
}
/* Sets (or, given null, removes) an environment variable for a scope. */
class ScopedEnv {
public:
    ScopedEnv(const char *name, const char *value) : name_(name) {
        if (const char *old = std::getenv(name)) old_ = old;
        value ? setenv(name, value, 1) : unsetenv(name);
    }
    ~ScopedEnv() { old_ ? setenv(name_.c_str(), old_->c_str(), 1) : unsetenv(name_.c_str()); }
    ScopedEnv(const ScopedEnv &) = delete;
private:
    std::string name_;
    std::optional<std::string> old_;
};
/* A pool string as a std::string (null as "<null>"), freed. */
inline std::string take(char *s) {
    std::string text = s ? s : "<null>";
    MemFreeInternal(&s);
    return text;
}
/* A new empty file under /tmp; the caller removes it. */
inline std::string tempFile() {
    char path[] = "/tmp/kxtestXXXXXX";
    close(mkstemp(path));
    return path;
}
/* Gathers the bytes of every block that MemFreeSecret gives back, as they are then. */
struct FreedSecrets {
    FreedSecrets() { MemSetFreedSecretHook(record, this); }
    ~FreedSecrets() { MemSetFreedSecretHook(nullptr, nullptr); }
    FreedSecrets(const FreedSecrets &) = delete;
    static void record(void *ctx, const void *block, size_t size) {
        static_cast<FreedSecrets *>(ctx)->bytes.append(static_cast<const char *>(block), size);
    }
    std::string bytes;
};
/* Captures every trace line as "component|number|sub|level|text". */
struct TraceLines {
    TraceLines() { TraceSetCaptureHook(record, this); }
    ~TraceLines() { TraceSetCaptureHook(nullptr, nullptr); }
    TraceLines(const TraceLines &) = delete;
    static void record(void *ctx, const char *component, int32_t no, int32_t sub, int32_t level,
                       const char *text) {
        static_cast<TraceLines *>(ctx)->lines.push_back(
            std::string(component) + "|" + std::to_string(no) + "|" + std::to_string(sub) + "|" +
            std::to_string(level) + "|" + text);
    }
    std::vector<std::string> lines;
};
} // namespace kxtest
#endif
