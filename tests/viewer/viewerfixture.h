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
    template <typename T>
    T *data(int32_t id) const {
        return item(id) ? static_cast<T *>(item(id)->itemData) : nullptr;
    }
    screenfile::Loaded screen;

private:
    int64_t liveAtStart_ = 0;
};

#ifdef XCV_VIEWER
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <thread>
#include <vector>

/* A scratch directory, removed with everything in it when the test ends. */
class Scratch {
public:
    Scratch() {
        char name[] = "/tmp/xcv-test-XXXXXX";
        dir_ = mkdtemp(name) ? name : "/tmp";
    }
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
    std::string dir_;
};

/* The viewer program run as a child with `args`, settings added to its environment and
** `input` as its standard input; finish() waits for it and reads what it wrote. */
class Viewer {
public:
    explicit Viewer(const std::vector<std::string> &args,
                    const std::vector<std::string> &env = {}, const std::string &input = "") {
        const std::string in = io_.file("in", input), out = io_.path("out"), err = io_.path("err");
        std::fflush(nullptr); // the child must not write this process's buffered output again
        if ((pid_ = fork()) != 0) return;
        if (!freopen(in.c_str(), "r", stdin) || !freopen(out.c_str(), "w", stdout) ||
            !freopen(err.c_str(), "w", stderr))
            _exit(127);
        for (const std::string &setting : env) putenv(const_cast<char *>(setting.c_str()));
        std::vector<char *> argv{const_cast<char *>(XCV_VIEWER)};
        for (const std::string &a : args) argv.push_back(const_cast<char *>(a.c_str()));
        argv.push_back(nullptr);
        execv(XCV_VIEWER, argv.data());
        _exit(127);
    }
    ~Viewer() { finish(0); }
    /* The exit status; -1 when the program ended by a signal or was killed after `timeoutMs`. */
    int finish(int timeoutMs = 30000) {
        const auto deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds(timeoutMs);
        int raw = 0;
        while (pid_ > 0 && waitpid(pid_, &raw, WNOHANG) == 0) {
            if (std::chrono::steady_clock::now() > deadline) kill(pid_, SIGKILL);
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        }
        if (pid_ > 0) status_ = WIFEXITED(raw) ? WEXITSTATUS(raw) : -1;
        pid_ = -1;
        out = io_.read("out"), err = io_.read("err");
        return status_;
    }
    std::string out, err;

private:
    Scratch io_;
    pid_t pid_ = -1;
    int status_ = -1;
};
#endif

#endif
