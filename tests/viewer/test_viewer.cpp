/* test_viewer.cpp - the viewer program run as a user runs it: bad files and arguments,
** rendering the example screens, answering through a CLOSE action, closing the window. */
#include "loaderfixture.h"
#include "strictjson.h"
#include "xharness.h"

#include <X11/Xatom.h>
#include <X11/extensions/XTest.h>
#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <regex>
#include <thread>

#include <nlohmann/json.hpp>

namespace fs = std::filesystem;

namespace {

/* A run of the viewer as a child process, its output gathered. */
class Viewer {
public:
    /* Starts the viewer with `args`, settings added to its environment, and `input`
    ** as its standard input. */
    explicit Viewer(const std::vector<std::string> &args,
                    const std::vector<std::string> &env = {}, const std::string &input = "") {
        int in[2], out[2], err[2];
        if (pipe(in) != 0 || pipe(out) != 0 || pipe(err) != 0) return;
        pid_ = fork();
        if (pid_ == 0) {
            dup2(in[0], 0);
            dup2(out[1], 1);
            dup2(err[1], 2);
            for (int fd : {in[0], in[1], out[0], out[1], err[0], err[1]}) close(fd);
            for (const std::string &setting : env) putenv(const_cast<char *>(setting.c_str()));
            std::vector<char *> argv{const_cast<char *>(XCV_VIEWER)};
            for (const std::string &a : args) argv.push_back(const_cast<char *>(a.c_str()));
            argv.push_back(nullptr);
            execv(XCV_VIEWER, argv.data());
            _exit(127);
        }
        close(in[0]);
        if (!input.empty()) {
            EXPECT_EQ(write(in[1], input.data(), input.size()), static_cast<ssize_t>(input.size()));
        }
        close(in[1]);
        close(out[1]);
        close(err[1]);
        out_ = out[0];
        err_ = err[0];
    }
    ~Viewer() {
        if (pid_ > 0 && status_ < 0) kill(pid_, SIGKILL), waitpid(pid_, nullptr, 0);
        if (out_ >= 0) close(out_);
        if (err_ >= 0) close(err_);
    }

    /* Gathers the output until the program ends; its exit status, or -1 when it had to
    ** be killed after `timeoutMs`. */
    int finish(int timeoutMs = 30000) {
        auto deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds(timeoutMs);
        while (out_ >= 0 || err_ >= 0) {
            if (std::chrono::steady_clock::now() > deadline) {
                kill(pid_, SIGKILL);
                break;
            }
            pollfd fds[2] = {{out_, POLLIN, 0}, {err_, POLLIN, 0}};
            if (poll(fds, 2, 50) <= 0) continue;
            drain(out_, fds[0].revents, out);
            drain(err_, fds[1].revents, err);
        }
        int raw = 0;
        waitpid(pid_, &raw, 0);
        status_ = WIFEXITED(raw) ? WEXITSTATUS(raw) : -1;
        return status_;
    }

    std::string out, err;

private:
    static void drain(int &fd, short revents, std::string &into) {
        if (fd < 0 || !(revents & (POLLIN | POLLHUP))) return;
        char buffer[4096];
        ssize_t n = read(fd, buffer, sizeof buffer);
        if (n > 0) {
            into.append(buffer, static_cast<size_t>(n));
        } else {
            close(fd);
            fd = -1;
        }
    }

    pid_t pid_ = -1;
    int out_ = -1, err_ = -1;
    int status_ = -1;
};

/* A scratch directory, removed with everything in it when the test ends. */
class Scratch {
public:
    Scratch() {
        char name[] = "/tmp/xcv-test-XXXXXX";
        dir_ = mkdtemp(name) ? name : "/tmp";
    }
    ~Scratch() { fs::remove_all(dir_); }
    std::string file(const std::string &name, const std::string &content) const {
        std::string path = path_of(name);
        std::ofstream(path) << content;
        return path;
    }
    std::string path_of(const std::string &name) const { return (fs::path(dir_) / name).string(); }
private:
    std::string dir_;
};

/* Width and height from a PNG's header, or {0, 0} when the file is no PNG. */
std::pair<uint32_t, uint32_t> pngSize(const std::string &path) {
    std::ifstream in(path, std::ios::binary);
    unsigned char head[24] = {};
    in.read(reinterpret_cast<char *>(head), sizeof head);
    const unsigned char signature[8] = {0x89, 'P', 'N', 'G', '\r', '\n', 0x1a, '\n'};
    if (!in || std::memcmp(head, signature, 8) != 0) return {0, 0};
    auto word = [&](int at) {
        return uint32_t(head[at]) << 24 | uint32_t(head[at + 1]) << 16 |
               uint32_t(head[at + 2]) << 8 | uint32_t(head[at + 3]);
    };
    return {word(16), word(20)};
}

const char *kUsageStart = "usage: xcontrols-view [--png PATH] [--trace] [--size WxH] SCREEN.json";

TEST(ViewerProgram, BadScreenFilesExitTwoNamingThePlaceAndTheReason) {
    Scratch scratch;
    Viewer missing({scratch.path_of("none.json")});
    EXPECT_EQ(missing.finish(), 2);
    EXPECT_EQ(missing.err, "xcontrols-view: cannot read " + scratch.path_of("none.json") +
                               ": No such file or directory\n");
    Viewer directory({scratch.path_of("")});
    EXPECT_EQ(directory.finish(), 2);
    EXPECT_EQ(directory.err,
              "xcontrols-view: cannot read " + scratch.path_of("") + ": it is a directory\n");
    Viewer endless({"/dev/zero"});
    EXPECT_EQ(endless.finish(), 2);
    EXPECT_EQ(endless.err, "xcontrols-view: cannot read /dev/zero: larger than 4 MiB, the most a screen file may have\n");
    Viewer piped({"-"}, {}, R"({"items": [{"type": "Label", "id": 1, "data": {"text": 1}}]})");
    EXPECT_EQ(piped.finish(), 2);
    EXPECT_EQ(piped.err,
              "xcontrols-view: -: items[0].data.text: expected a string or null, got an integer\n");
}

TEST(ViewerProgram, ReadsTheScreenFromStandardInput) {
    Scratch scratch;
    std::string png = scratch.path_of("piped.png");
    Viewer viewer({"--png", png, "-"}, {}, R"({"width": 120, "height": 80, "items": []})");
    EXPECT_EQ(viewer.finish(), 0) << viewer.err;
    EXPECT_EQ(pngSize(png), std::make_pair(120u, 80u));
}

TEST(ViewerProgram, BadArgumentsExitTwoWithTheUsage) {
    Scratch scratch;
    std::string good = scratch.file("good.json", R"({"items": []})");
    struct Case { std::vector<std::string> args; const char *reason; };
    const Case cases[] = {
        {{}, "no screen file given"},
        {{"--frobnicate", good}, "unknown option --frobnicate"},
        {{good, "--png"}, "option --png needs a value"},
        {{"--size", "big", good}, "--size wants WIDTHxHEIGHT in pixels, such as 640x480, not \"big\""},
        {{"--size", "0x10", good}, "--size wants WIDTHxHEIGHT in pixels, such as 640x480, not \"0x10\""},
        {{good, good}, nullptr},
    };
    for (const Case &c : cases) {
        Viewer viewer(c.args);
        EXPECT_EQ(viewer.finish(), 2);
        if (c.reason) {
            EXPECT_EQ(viewer.err.substr(0, viewer.err.find('\n')),
                      std::string("xcontrols-view: ") + c.reason);
        }
        EXPECT_NE(viewer.err.find(kUsageStart), std::string::npos) << viewer.err;
        EXPECT_EQ(viewer.out, "");
    }
    Viewer help({"--help"});
    EXPECT_EQ(help.finish(), 0);
    EXPECT_EQ(help.out.rfind(kUsageStart, 0), 0u);
}

TEST(ViewerProgram, WithoutADisplayItExitsThree) {
    Scratch scratch;
    Viewer viewer({scratch.file("good.json", R"({"items": []})")}, {"DISPLAY=:4095"});
    EXPECT_EQ(viewer.finish(), 3);
    EXPECT_EQ(viewer.err, "xcontrols-view: cannot open display \":4095\"\n");
}

TEST(ViewerProgram, EveryExampleScreenRendersToAPng) {
    Scratch scratch;
    int examples = 0;
    for (const auto &entry : fs::directory_iterator(XCV_SOURCE_DIR "/examples/screens")) {
        if (entry.path().extension() != ".json") continue;
        ++examples;
        std::string png = scratch.path_of(entry.path().stem().string() + ".png");
        Viewer viewer({"--png", png, entry.path().string()});
        EXPECT_EQ(viewer.finish(), 0) << entry.path() << "\n" << viewer.err;
        EXPECT_EQ(viewer.out, png + "\n");
        EXPECT_EQ(viewer.err, "") << "an example screen should load without warnings";
        auto size = pngSize(png);
        EXPECT_GT(size.first, 100u) << png;
        EXPECT_GT(size.second, 100u) << png;
    }
    EXPECT_GE(examples, 2);
}

TEST(ViewerProgram, SizeOptionSetsTheWindowSizeAndTraceGoesToStandardError) {
    Scratch scratch;
    std::string screen = scratch.file("screen.json", R"({"width": 300, "height": 200, "items": [
        {"type": "Label", "id": 1, "data": {"text": "Hello"}}]})");
    std::string png = scratch.path_of("shot.png");
    Viewer fromFile({"--png", png, screen});
    ASSERT_EQ(fromFile.finish(), 0) << fromFile.err;
    EXPECT_EQ(pngSize(png), std::make_pair(300u, 200u));
    EXPECT_EQ(fromFile.err, "");

    Viewer fromOption({"--size", "420x260", "--trace", "--png", png, screen});
    ASSERT_EQ(fromOption.finish(), 0) << fromOption.err;
    EXPECT_EQ(pngSize(png), std::make_pair(420u, 260u));
    EXPECT_NE(fromOption.err.find("Create a Label"), std::string::npos) << fromOption.err;
}

/* A screen with a value of every kind that reaches X: sizes, offsets, grid columns. */
const char *kHostileBase = R"({"jobId": 7, "width": 400, "height": 300, "items": [
  {"type": "Label", "id": 1, "data": {"text": "Name"},
   "attach": {"left": {"kind": "centre", "offset": 0}, "top": {"kind": "position", "position": 0, "offset": 4}}},
  {"type": "EditBox", "id": 2, "data": {"rows": 3, "columns": 20, "maxLength": 40, "text": "x"},
   "attach": {"top": {"kind": "item", "item": 1, "offset": 6}}},
  {"type": "RowColManager", "id": 3, "data": {"columns": 2},
   "attach": {"top": {"kind": "item", "item": 2, "offset": 6}}, "children": [
    {"type": "NumInput", "id": 4, "data": {"value": 5, "minimum": 0, "maximum": 9, "columns": 4}},
    {"type": "ExtendedListBox", "id": 5, "data": {"width": 10, "visible": 3}, "children": [
      {"type": "ListItem", "id": 6, "data": {"text": "a", "selected": 1}}]},
    {"type": "ComboBox", "id": 7, "data": {"selected": 1, "columns": 8}, "children": [
      {"type": "ComboItem", "id": 8, "data": {"text": "b"}}]},
    {"type": "GetPasswordBox", "id": 9, "data": {"columns": 8}},
    {"type": "DateInput", "id": 10, "data": {"date": 86400}},
    {"type": "TimeInput", "id": 11, "data": {"time": 3600}}]}]})";

/* The base with the value at `pointer` written as `literal`, which may be no JSON value
** of the library's range at all ("1e400"). */
std::string withLiteral(const nlohmann::json &base, const nlohmann::json::json_pointer &pointer,
                        const std::string &literal) {
    nlohmann::json doc = base;
    doc[pointer] = "\x01";
    std::string text = doc.dump();
    return text.replace(text.find("\"\\u0001\""), 8, literal);
}

/* One generated file and the status it must end with (-1: any documented one). */
struct Hostile {
    std::string name, content;
    int status;
};

/* Every number of the base replaced by each hostile literal; the base cut short, given a
** NUL byte, and a few bytes of it overwritten; files at and beyond every limit. */
std::vector<Hostile> hostileFiles() {
    const nlohmann::json base = nlohmann::json::parse(kHostileBase);
    const std::string text = base.dump();
    std::vector<Hostile> files;
    const char *literals[] = {"-2147483648", "2147483647", "-1", "32768", "1e400",
                              "1.5", "\"7\"", "[]", "null", "{}"};
    const nlohmann::json leaves = base.flatten();
    for (const auto &leaf : leaves.items()) {
        if (!leaf.value().is_number()) continue;
        for (const char *literal : literals)
            files.push_back({leaf.key() + "=" + literal,
                             withLiteral(base, nlohmann::json::json_pointer(leaf.key()), literal), -1});
    }
    for (size_t at = 0; at < text.size(); at += text.size() / 16) {
        files.push_back({"cut at " + std::to_string(at), text.substr(0, at), 2});
        files.push_back({"NUL at " + std::to_string(at), text.substr(0, at) + '\0' + text.substr(at), 2});
        for (const char *bytes : {"\xff", "{", "\"", "\\", "]"})
            files.push_back({std::string("byte ") + bytes + " at " + std::to_string(at),
                           std::string(text).replace(at, 1, bytes), -1});
    }
    const auto label = [](const std::string &text, const std::string &attach) {
        return R"({"items": [{"type": "Label", "id": 1, "data": {"text": ")" + text +
               R"("}, "attach": )" + attach + "}]}";
    };
    std::string manyItems = R"({"items": [)";
    for (size_t i = 0; i <= screenfile::kMaxItems; ++i) manyItems += R"({"type": "Label", "id": 1},)";
    files.insert(files.end(), {
        {"deep arrays", R"({"items": [], "comment": )" + repeated(200000, "[") + repeated(200000, "]") + "}", 2},
        {"deep items", groupChain(12000), 2},
        {"deepest items", groupChain(screenfile::kMaxItemDepth), 0},
        {"too deep items", groupChain(screenfile::kMaxItemDepth + 1), 2},
        {"too many items", manyItems + "{}]}", 2},
        {"too large", std::string(screenfile::kMaxFileBytes + 1, ' '), 2},
        {"huge label", label(std::string(256 << 10, 'W'), "null"), 2},
        {"longest label", label(std::string(screenfile::kMaxTextBytes, 'W'), "null"), 0},
        {"centred far left", label("a", R"({"left": {"kind": "centre", "offset": -2147483648}})"), 0},
        {"centred far up", label("a", R"({"top": {"kind": "centre", "offset": 2147483647}})"), 0},
        {"wide grid", R"({"items": [{"type": "RowColManager", "id": 1, "data": {"columns": 2147483647},
           "children": [{"type": "Label", "id": 2}, {"type": "Label", "id": 3}]}]})", 0},
        {"larger than the screen", R"({"width": 32767, "height": 32767, "items": []})", 0},
        {"number of 1000 digits", R"({"items": [], "jobId": )" + std::string(1000, '9') + "}", 2},
        {"comment not text", R"({"items": [], "comment": {"a": 1}})", 2},
        {"not UTF-8", "{\"items\": [], \"title\": \"\xe9\"}", 2},
    });
    return files;
}

/* The place in a refusal: the file, "line L, column C", "top level" or a path into the
** document. */
const std::regex kRefusal(
    R"(xcontrols-view: (cannot read [^:]+: [^\n]+\n|[^:]+: (line \d+, column \d+|top level|[A-Za-z_]\w*(\.\w+|\[("[^"]*"|\d+)\])*): [^\n]+\n(xcontrols-view: [^\n]*warning: [^\n]*\n)*))");

TEST(ViewerProgram, BadAndHostileFilesEndWithADocumentedStatusAndNeverAnXError) {
    Scratch scratch;
    const std::vector<Hostile> files = hostileFiles();
    ASSERT_GT(files.size(), 200u);
    std::printf("%zu generated files\n", files.size());
    const auto check = [&](const Hostile &file, Viewer &viewer) {
        const int status = viewer.finish(20000);
        const std::string row = file.name + ": exit " + std::to_string(status) + "\n" + viewer.err.substr(0, 300);
        EXPECT_TRUE(status == 0 || status == 2 || status == 3) << "a signal or a hang; " << row;
        if (file.status >= 0) EXPECT_EQ(status, file.status) << row;
        EXPECT_EQ(viewer.err.find("X error"), std::string::npos) << row;
        if (status == 2) EXPECT_TRUE(std::regex_match(viewer.err, kRefusal)) << row;
    };
    // A few viewers at a time: most files are refused before any window exists.
    constexpr size_t kAtOnce = 4;
    for (size_t first = 0; first < files.size(); first += kAtOnce) {
        std::vector<std::unique_ptr<Viewer>> running;
        for (size_t i = first; i < std::min(files.size(), first + kAtOnce); ++i) {
            const std::string path = scratch.file("hostile" + std::to_string(i - first) + ".json", files[i].content);
            running.push_back(std::make_unique<Viewer>(std::vector<std::string>{
                "--png", scratch.path_of("hostile" + std::to_string(i - first) + ".png"), path}));
        }
        for (size_t i = 0; i < running.size(); ++i) check(files[first + i], *running[i]);
    }
}

/* Driving a shown viewer window with real input from this process. */
class ViewerWindow : public xt::XTest {
protected:
    /* The top-level window titled `title`, once it is viewable; 0 after 10 s. */
    Window waitForWindow(const std::string &title) {
        Display *dpy = xt::display();
        Window found = 0;
        xt::pumpUntil([&] {
            Window root, parent, *children = nullptr;
            unsigned int count = 0;
            if (!XQueryTree(dpy, DefaultRootWindow(dpy), &root, &parent, &children, &count))
                return false;
            for (unsigned int i = 0; i < count && !found; ++i) {
                char *name = nullptr;
                XWindowAttributes a;
                if (XFetchName(dpy, children[i], &name) && name && title == name &&
                    XGetWindowAttributes(dpy, children[i], &a) && a.map_state == IsViewable)
                    found = children[i];
                if (name) XFree(name);
            }
            if (children) XFree(children);
            return found != 0;
        }, 10000);
        return found;
    }

    /* A real click at a fraction of the window's size. */
    void clickAt(Window w, double fx, double fy) {
        Display *dpy = xt::display();
        XWindowAttributes a;
        XGetWindowAttributes(dpy, w, &a);
        int rx = 0, ry = 0;
        Window child;
        XTranslateCoordinates(dpy, w, DefaultRootWindow(dpy), static_cast<int>(a.width * fx),
                              static_cast<int>(a.height * fy), &rx, &ry, &child);
        XTestFakeMotionEvent(dpy, -1, rx, ry, CurrentTime);
        xt::pressPointer();
        xt::releasePointer();
        settle();
    }

    /* Gives the other process time to handle what this one sent. */
    static void settle() {
        xt::pump();
        std::this_thread::sleep_for(std::chrono::milliseconds(300));
    }

    /* Whether the library builds these items yet: the same screen built in this process. */
    bool libraryBuilds(const std::string &text, std::initializer_list<int32_t> ids) {
        screenfile::Loaded screen;
        std::string error;
        if (!screenfile::parse(text, screen, error)) return false;
        void *tree = screen.take();
        GuiCreatePlgScreen(form(), tree, 1);
        bool built = true;
        for (int32_t id : ids) built = built && xt::outerWidget(xt::itemOf(xt::findNode(tree, id)));
        GuiFreeScreenDefAndWidgets(&tree);
        clearTraces();
        return built;
    }
};

/* An edit box across the top, a toggle under it, and a large OK button in the lower right
** quarter that closes the screen: places that a click at a fraction of the window hits. */
const char *kAnswerScreen = R"({"jobId": 77, "title": "xcv answer test", "items": [
  {"type": "EditBox", "id": 1, "data": {"rows": 1},
   "attach": {"left": {"kind": "position", "position": 0, "offset": 10},
              "right": {"kind": "position", "position": 100, "offset": 10},
              "top": {"kind": "position", "position": 0, "offset": 10}}},
  {"type": "selectionItem", "id": 2, "data": {"label": "Verify"},
   "attach": {"left": {"kind": "position", "position": 0, "offset": 10},
              "top": {"kind": "position", "position": 30},
              "bottom": {"kind": "position", "position": 45}}},
  {"type": "PushButton", "id": 3, "data": {"label": "OK"},
   "actions": [{"kind": "CLOSE", "target": 3}],
   "attach": {"left": {"kind": "position", "position": 50},
              "right": {"kind": "position", "position": 100, "offset": 10},
              "top": {"kind": "position", "position": 50},
              "bottom": {"kind": "position", "position": 100, "offset": 10}}}]})";

TEST_F(ViewerWindow, ClosingTheWindowExitsOneAndPrintsNothing) {
    Scratch scratch;
    Viewer viewer({"--size", "400x300", scratch.file("answer.json", kAnswerScreen)});
    Window w = waitForWindow("xcv answer test");
    ASSERT_NE(w, 0u) << "the viewer's window did not appear";

    Display *dpy = xt::display();
    XEvent ev{};
    ev.xclient.type = ClientMessage;
    ev.xclient.window = w;
    ev.xclient.message_type = XInternAtom(dpy, "WM_PROTOCOLS", False);
    ev.xclient.format = 32;
    ev.xclient.data.l[0] = static_cast<long>(XInternAtom(dpy, "WM_DELETE_WINDOW", False));
    ev.xclient.data.l[1] = CurrentTime;
    XSendEvent(dpy, w, False, NoEventMask, &ev);
    XFlush(dpy);

    EXPECT_EQ(viewer.finish(), 1);
    EXPECT_EQ(viewer.out, "");
    EXPECT_EQ(viewer.err, "");
}

TEST_F(ViewerWindow, CloseActionPrintsTheAnswersAndExitsZero) {
    if (!libraryBuilds(kAnswerScreen, {1, 2, 3}))
        GTEST_SKIP() << "the library does not build edit boxes, toggles and push buttons yet";
    Scratch scratch;
    Viewer viewer({"--size", "400x300", scratch.file("answer.json", kAnswerScreen)});
    Window w = waitForWindow("xcv answer test");
    ASSERT_NE(w, 0u) << "the viewer's window did not appear";

    XSetInputFocus(xt::display(), w, RevertToParent, CurrentTime);
    clickAt(w, 0.5, 0.08); // into the edit box
    xt::type("hello");
    settle();
    clickAt(w, 0.1, 0.37); // the toggle
    clickAt(w, 0.75, 0.75); // OK

    ASSERT_EQ(viewer.finish(), 0) << viewer.err;
    auto answers = nlohmann::ordered_json::parse(viewer.out);
    EXPECT_EQ(answers, nlohmann::ordered_json::parse(R"({
        "jobId": 77, "closedBy": 3,
        "values": {"1": {"type": "EditBox", "text": "hello"},
                   "2": {"type": "selectionItem", "set": true}}})"))
        << viewer.out;
}

TEST_F(ViewerWindow, TheBackupOptionsScreenAnswersEveryValueItHolds) {
    Scratch scratch;
    std::string layout = scratch.path_of("layout.json");
    Viewer viewer({"--layout", layout, XCV_SOURCE_DIR "/examples/screens/backup-options.json"});
    ASSERT_TRUE(xt::pumpUntil([&] { return fs::exists(layout); }, 20000))
        << "the viewer wrote no layout\n" << (viewer.finish(1000), viewer.err);
    auto ok = nlohmann::json::parse(std::ifstream(layout))["90"];
    ASSERT_EQ(ok.size(), 4u);
    XTestFakeMotionEvent(xt::display(), -1, ok[0].get<int>() + ok[2].get<int>() / 2,
                         ok[1].get<int>() + ok[3].get<int>() / 2, CurrentTime);
    xt::pressPointer();
    xt::releasePointer();

    ASSERT_EQ(viewer.finish(), 0) << viewer.err;
    KxDateStruct april{2026, 4, 1, 0};
    int32_t firstRun = 0;
    ASSERT_TRUE(TimeFromDate(&firstRun, &april));
    nlohmann::ordered_json expected = nlohmann::ordered_json::parse(R"({
      "jobId": 42, "closedBy": 90,
      "values": {
        "4": {"type": "EditBox", "text": "Nightly file server"},
        "6": {"type": "ComboBox", "selected": 2, "typedText": "Incremental",
              "selectedText": "Incremental"},
        "8": {"type": "NumInput", "value": 30},
        "12": {"type": "selectionItem", "set": true},
        "13": {"type": "selectionItem", "set": false},
        "14": {"type": "selectionItem", "set": false},
        "17": {"type": "GetPasswordBox", "encrypted": null},
        "22": {"type": "RadioManager", "selected": 23},
        "23": {"type": "RadioButton", "set": true},
        "24": {"type": "RadioButton", "set": false},
        "26": {"type": "EditBox", "text": "/srv/backup/nightly"},
        "28": {"type": "ComboBox", "selected": 1, "typedText": "LTO-8 drive 1",
               "selectedText": "LTO-8 drive 1"},
        "42": {"type": "selectionItem", "set": true},
        "44": {"type": "DateInput", "date": 0, "iso": "2026-04-01"},
        "45": {"type": "TimeInput", "time": 81000, "iso": "22:30"}}})");
    expected["values"]["44"]["date"] = firstRun;
    EXPECT_EQ(nlohmann::ordered_json::parse(viewer.out), expected) << viewer.out;
}

} // namespace
