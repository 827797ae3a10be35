/* kxtest.h - the base for base-runtime tests: every test gives back what it took. */
#ifndef KX_TEST_H
#define KX_TEST_H
#include <gtest/gtest.h>
#include "kx.h"
namespace kxtest {
/* Several observations compared with their expected values in one expectation. */
using Values = std::vector<int64_t>;
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
/* Gathers the bytes of every block that MemFreeSecret gives back, as they are then. */
struct FreedSecrets {
    FreedSecrets() { MemSetFreedSecretHook(record, this); }
    ~FreedSecrets() { MemSetFreedSecretHook(nullptr, nullptr); }
    static void record(void *ctx, const void *block, size_t size) {
        static_cast<FreedSecrets *>(ctx)->bytes.append(static_cast<const char *>(block), size);
    }
    std::string bytes;
};
/* Captures the text of every trace line. */
struct TraceLines {
    TraceLines() { TraceSetCaptureHook(record, this); }
    ~TraceLines() { TraceSetCaptureHook(nullptr, nullptr); }
    static void record(void *ctx, const char *, int32_t, int32_t, int32_t, const char *text) {
        static_cast<TraceLines *>(ctx)->lines.push_back(text);
    }
    std::vector<std::string> lines;
};
} // namespace kxtest
#endif
