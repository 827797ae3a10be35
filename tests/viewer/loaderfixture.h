/* loaderfixture.h - a fixture for tests that load screen files: it loads, refuses, finds
** items, and checks that every pool block taken was given back. */
#ifndef XC_TEST_LOADERFIXTURE_H
#define XC_TEST_LOADERFIXTURE_H

#include <gtest/gtest.h>

#include <string>

#include "kx.h"
#include "screenfile.h"
#include "screens.h"

/* `s` written `n` times: nesting and long texts for the limits. */
inline std::string repeated(size_t n, const std::string &s) {
    std::string text;
    for (size_t i = 0; i < n; ++i) text += s;
    return text;
}

/* A screen of `depth` group boxes, each inside the one before. */
inline std::string groupChain(size_t depth) {
    return R"({"items": [)" + repeated(depth, R"({"type": "GroupBox", "id": 1, "children": [)") +
           repeated(depth, "]}") + "]}";
}

/* Every test must give back every pool block it took, failures included. */
class LoaderTest : public ::testing::Test {
protected:
    void SetUp() override { liveAtStart_ = MemLiveCountAllPools(); }
    void TearDown() override {
        screen.reset();
        EXPECT_EQ(MemLiveCountAllPools(), liveAtStart_) << "pool blocks were not given back";
    }

    /* Loads text that must be valid. */
    void load(const std::string &text) {
        std::string error;
        ASSERT_TRUE(screenfile::parse(text, screen, error)) << error;
    }
    /* The error of text that must be refused; the screen must stay empty. */
    std::string refuse(const std::string &text) {
        std::string error;
        EXPECT_FALSE(screenfile::parse(text, screen, error));
        EXPECT_EQ(screen.tree(), nullptr);
        return error;
    }
    ScreenItem *item(int32_t id) const { return xt::itemOf(xt::findNode(screen.tree(), id)); }
    template <typename T>
    T *data(int32_t id) const {
        return item(id) ? static_cast<T *>(item(id)->itemData) : nullptr;
    }

    screenfile::Loaded screen;

private:
    int64_t liveAtStart_ = 0;
};

#endif
