/* kxtest.h - the base for base-runtime tests: every test gives back what it took. */
#ifndef KX_TEST_H
#define KX_TEST_H

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

#include "kx.h"

namespace kxtest {

/* Fails a test that leaves the pools with more or fewer live blocks than it found. */
class PoolTest : public ::testing::Test {
protected:
    void SetUp() override {
        liveAtStart_ = MemLiveCountAllPools();
        objectsAtStart_ = ObjLiveCount();
    }
    void TearDown() override {
        EXPECT_EQ(MemLiveCountAllPools(), liveAtStart_) << "pool blocks leaked or lost";
        EXPECT_EQ(ObjLiveCount(), objectsAtStart_) << "objects leaked or lost";
    }
    uint32_t pool() const { return MemGetDefaultPoolId(); }

private:
    int64_t liveAtStart_ = 0;
    int64_t objectsAtStart_ = 0;
};

/* Sets an environment variable for a scope and restores the old value. */
class ScopedEnv {
public:
    ScopedEnv(const char *name, const char *value) : name_(name) {
        const char *old = std::getenv(name);
        hadOld_ = old != nullptr;
        if (hadOld_) old_ = old;
        if (value) setenv(name, value, 1);
        else unsetenv(name);
    }
    ~ScopedEnv() {
        if (hadOld_) setenv(name_.c_str(), old_.c_str(), 1);
        else unsetenv(name_.c_str());
    }
    ScopedEnv(const ScopedEnv &) = delete;
    ScopedEnv &operator=(const ScopedEnv &) = delete;

private:
    std::string name_;
    std::string old_;
    bool hadOld_ = false;
};

/* A pool string as a std::string (null as "<null>"), freed. */
inline std::string take(char *s) {
    std::string text = s ? s : "<null>";
    MemFreeInternal(&s);
    return text;
}

/* Gathers the bytes of every block that MemFreeSecret gives back, as they are then. */
class FreedSecrets {
public:
    FreedSecrets() { MemSetFreedSecretHook(record, this); }
    ~FreedSecrets() { MemSetFreedSecretHook(nullptr, nullptr); }
    FreedSecrets(const FreedSecrets &) = delete;
    FreedSecrets &operator=(const FreedSecrets &) = delete;
    std::string bytes;

private:
    static void record(void *ctx, const void *block, size_t size) {
        static_cast<FreedSecrets *>(ctx)->bytes.append(static_cast<const char *>(block), size);
    }
};

} // namespace kxtest

#endif
