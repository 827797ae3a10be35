/* viewerfixture.h - the viewer's test fixtures: a loader test that checks every pool block
** taken was given back, and (where the viewer program is built) a run of the program. */
#ifndef XC_TEST_VIEWERFIXTURE_H
#define XC_TEST_VIEWERFIXTURE_H

#include <gtest/gtest.h>

#include <string>

#include "kx.h"
#include "screenfile.h"
#include "screens.h"
#include "screentypes.h"

/* `s` written `n` times: nesting and long texts for the limits. */
inline std::string repeated(size_t n, const std::string &s) {
    std::string text;
    while (n--) text += s;
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
    void load(const std::string &text) { ASSERT_EQ(errorOf(text, true), ""); }
    /* The error of `text`, which must be refused (or, when `loads`, loaded). */
    std::string errorOf(const std::string &text, bool loads = false) {
        std::string error;
        EXPECT_EQ(screenfile::parse(text, screen, error), loads);
        EXPECT_EQ(screen.tree() != nullptr, loads);
        return error;
    }
    template <typename T> T *data(int32_t id) const {
        ScreenItem *item = screenfile::itemOf(xt::findNode(screen.tree(), id));
        return item ? static_cast<T *>(item->itemData) : nullptr;
    }
    screenfile::Loaded screen;

private:
    int64_t liveAtStart_ = 0;
};

#ifdef XCV_VIEWER
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <future>
#include <vector>

/* A scratch directory, removed with everything in it when the test ends. */
class Scratch {
public:
    Scratch() { dir_ = mkdtemp(name_) ? name_ : "/tmp"; }
    ~Scratch() { std::filesystem::remove_all(dir_); }
    std::string path(const std::string &name) const { return dir_ + "/" + name; }
    std::string file(const std::string &name, const std::string &content) const {
        std::ofstream(path(name)) << content;
        return path(name);
    }
    std::string read(const std::string &name) const {
        std::ifstream in(path(name));
        return {std::istreambuf_iterator<char>(in), {}};
    }

private:
    char name_[21] = "/tmp/xcv-test-XXXXXX";
    std::string dir_;
};

/* The viewer program run with `args` after `env` settings ("NAME=value ...") and `input`
** as its standard input, killed after 30 s; finish() waits and reads what it wrote. */
class Viewer {
public:
    explicit Viewer(const std::vector<std::string> &args, const std::string &env = "",
                    const std::string &input = "") {
        std::string command = env + " timeout -s KILL 30 " XCV_VIEWER;
        for (const std::string &arg : args) command += " '" + arg + "'"; // none has a quote
        command += " <" + io_.file("in", input) + " >" + io_.path("out") + " 2>" + io_.path("err");
        run_ = std::async(std::launch::async, [command] { return std::system(command.c_str()); });
    }
    /* The exit status (137 when the program was killed); call once. */
    int finish() {
        const int raw = run_.get();
        out = io_.read("out"), err = io_.read("err");
        return WIFEXITED(raw) ? WEXITSTATUS(raw) : -1;
    }
    std::string out, err;

private:
    Scratch io_;
    std::future<int> run_;
};
#endif

#endif
