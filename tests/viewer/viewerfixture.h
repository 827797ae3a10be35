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
    ScreenItem *item(int32_t id) const {
        return screenfile::itemOf(xt::findNode(screen.tree(), id));
    }
    template <typename T> T *data(int32_t id) const {
        return item(id) ? static_cast<T *>(item(id)->itemData) : nullptr;
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
        return std::string(std::istreambuf_iterator<char>(in), {});
    }

private:
    char name_[21] = "/tmp/xcv-test-XXXXXX";
    std::string dir_;
};

/* The viewer program run with `args` after `env` settings ("NAME=value ...") and `input`
** as its standard input, killed after `seconds`; finish() waits and reads what it wrote. */
class Viewer {
public:
    explicit Viewer(const std::vector<std::string> &args, const std::string &env = "",
                    const std::string &input = "", int seconds = 30) {
        std::string command = env + " timeout -s KILL " + std::to_string(seconds) + " " XCV_VIEWER;
        for (std::string a : args) {
            for (size_t at = 0; (at = a.find('\'', at)) != std::string::npos; at += 4)
                a.replace(at, 1, "'\\''");
            command += " '" + a + "'";
        }
        command += " <" + io_.file("in", input) + " >" + io_.path("out") + " 2>" + io_.path("err");
        run_ = std::async(std::launch::async, [command] { return std::system(command.c_str()); });
    }
    /* The exit status; 137 when the program was killed. */
    int finish() {
        if (!run_.valid()) return status_;
        const int raw = run_.get();
        status_ = WIFEXITED(raw) ? WEXITSTATUS(raw) : -1;
        out = io_.read("out"), err = io_.read("err");
        return status_;
    }
    std::string out, err;

private:
    Scratch io_;
    std::future<int> run_;
    int status_ = -1;
};
#endif

#endif
