/* test_viewer_e2e.cpp - the viewer program driven end to end on an example screen with
** actions: the pointer and the keyboard of this process work the viewer's window, found
** through the places the viewer writes with --layout, and the answer document that the
** viewer prints when the screen closes is checked whole. */
#include "xharness.h"

#include <X11/extensions/XTest.h>
#include <sys/wait.h>

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <map>
#include <thread>

#include <nlohmann/json.hpp>

namespace fs = std::filesystem;
using nlohmann::ordered_json;

namespace {

/* Where an item's outer widget is on the screen, in root window pixels. */
struct Place {
    int x = 0, y = 0, width = 0, height = 0;
    int right() const { return x + width; }
    int bottom() const { return y + height; }
};

/* The viewer running in the background on `screen`, its standard output gathered by a
** thread; `timeout` ends it if the test never closes it. */
class ViewerRun {
public:
    ViewerRun(const std::string &screen, const std::string &layout)
        : errors_(layout + ".err") {
        const std::string command = "timeout 60 " + std::string(XCV_VIEWER) + " --layout " +
                                    layout + " " + screen + " 2>" + errors_;
        pipe_ = popen(command.c_str(), "r");
        if (pipe_ != nullptr) reader_ = std::thread([this] {
            char buffer[4096];
            size_t n;
            while ((n = std::fread(buffer, 1, sizeof buffer, pipe_)) > 0) out_.append(buffer, n);
        });
    }
    ~ViewerRun() { finish(); }

    /* Waits for the program to end; its exit status (-1 when it did not exit normally). */
    int finish() {
        if (pipe_ == nullptr) return status_;
        reader_.join();
        const int raw = pclose(pipe_);
        pipe_ = nullptr;
        status_ = WIFEXITED(raw) ? WEXITSTATUS(raw) : -1;
        std::ifstream in(errors_);
        err_.assign(std::istreambuf_iterator<char>(in), {});
        return status_;
    }
    const std::string &out() const { return out_; }
    const std::string &err() const { return err_; }

private:
    std::string errors_;
    FILE *pipe_ = nullptr;
    std::thread reader_;
    std::string out_, err_;
    int status_ = -1;
};

const std::string kRestoreDialog = XCV_E2E_SCREENS "/restore-dialog.json";

class ViewerEndToEnd : public xt::XTest {
protected:
    void SetUp() override {
        XTest::SetUp();
        dir_ = fs::temp_directory_path() / ("xcv-e2e-" + std::to_string(getpid()));
        fs::create_directories(dir_);
    }
    void TearDown() override {
        fs::remove_all(dir_);
        XTest::TearDown();
    }

    std::string scratch(const std::string &name) const { return (dir_ / name).string(); }

    /* The places the viewer wrote, once it has written them (it writes the file whole). */
    bool readLayout(const std::string &path) {
        const bool written = xt::pumpUntil([&] { return fs::exists(path); }, 20000);
        if (!written) return false;
        ordered_json doc = ordered_json::parse(std::ifstream(path));
        for (auto &[id, box] : doc.items())
            places_[std::stoi(id)] = {box[0].get<int>(), box[1].get<int>(), box[2].get<int>(),
                                      box[3].get<int>()};
        return true;
    }
    const Place &place(int id) {
        EXPECT_TRUE(places_.count(id)) << "item " << id << " has no place";
        return places_[id];
    }

    /* Gives the keyboard to the viewer's top-level window (there is no window manager). */
    void focusViewer() {
        Display *dpy = xt::display();
        Window root = DefaultRootWindow(dpy), top = 0;
        int x = 0, y = 0;
        const Place &any = places_.begin()->second;
        XTranslateCoordinates(dpy, root, root, any.x + 1, any.y + 1, &x, &y, &top);
        ASSERT_NE(top, 0u);
        XSetInputFocus(dpy, top, RevertToParent, CurrentTime);
        settle();
    }

    /* A real click at root position (x, y), optionally with a modifier key held. */
    void clickAt(int x, int y, KeySym modifier = NoSymbol) {
        Display *dpy = xt::display();
        XTestFakeMotionEvent(dpy, -1, x, y, CurrentTime);
        if (modifier != NoSymbol)
            XTestFakeKeyEvent(dpy, XKeysymToKeycode(dpy, modifier), True, CurrentTime);
        XTestFakeButtonEvent(dpy, 1, True, CurrentTime);
        XTestFakeButtonEvent(dpy, 1, False, CurrentTime);
        if (modifier != NoSymbol)
            XTestFakeKeyEvent(dpy, XKeysymToKeycode(dpy, modifier), False, CurrentTime);
        settle();
    }
    void clickInside(int id) {
        const Place &p = place(id);
        clickAt(p.x + p.width / 2, p.y + p.height / 2);
    }

    /* Gives the viewer time to handle what this process sent; long enough that two
    ** clicks never count as a double click. */
    static void settle() {
        XSync(xt::display(), False);
        std::this_thread::sleep_for(std::chrono::milliseconds(400));
        xt::pump();
    }

private:
    fs::path dir_;
    std::map<int, Place> places_;
};

TEST_F(ViewerEndToEnd, TheRestoreDialogAnswersWhatTheUserChose) {
    const std::string layout = scratch("layout.json");
    ViewerRun viewer(kRestoreDialog, layout);
    ASSERT_TRUE(readLayout(layout)) << "the viewer wrote no layout";
    focusViewer();

    /* Files to restore (11): six visible entries; /etc and /var/lib/postgresql come
    ** selected; Control adds the third, /home/bob. */
    const Place &files = place(11);
    clickAt(files.x + files.width / 2, files.y + files.height * 5 / 12, XK_Control_L);

    /* Restore to another directory (24), which allows input into the edit box (25);
    ** its text is replaced from the end. */
    clickInside(24);
    const Place &directory = place(25);
    clickAt(directory.right() - 4, directory.y + directory.height / 2);
    for (int i = 0; i < 12; ++i) xt::key(XK_BackSpace);
    xt::type("/tmp/here");

    /* If a file exists (33): the third choice, stepped to with Down in its field. */
    clickInside(33);
    xt::key(XK_Down);
    xt::key(XK_Down);
    settle();

    clickInside(37); /* Verify restored files */
    clickInside(90); /* Restore */

    ASSERT_EQ(viewer.finish(), 0) << viewer.err();
    EXPECT_EQ(viewer.err(), "");
    EXPECT_EQ(ordered_json::parse(viewer.out()), ordered_json::parse(R"({
      "jobId": 77,
      "closedBy": 90,
      "values": {
        "11": {"type": "ExtendedListBox", "selected": [1, 3, 5],
               "selectedTexts": ["/etc", "/home/bob", "/var/lib/postgresql"]},
        "111": {"type": "ListItem", "selected": true},
        "112": {"type": "ListItem", "selected": false},
        "113": {"type": "ListItem", "selected": true},
        "114": {"type": "ListItem", "selected": false},
        "115": {"type": "ListItem", "selected": true},
        "116": {"type": "ListItem", "selected": false},
        "22": {"type": "RadioManager", "selected": 24},
        "23": {"type": "RadioButton", "set": false},
        "24": {"type": "RadioButton", "set": true},
        "25": {"type": "EditBox", "text": "/tmp/here"},
        "33": {"type": "ComboBox", "selected": 3, "typedText": "Skip it", "selectedText": "Skip it"},
        "35": {"type": "GetPasswordBox", "encrypted": null},
        "36": {"type": "selectionItem", "set": true},
        "37": {"type": "selectionItem", "set": true}
      }})")) << viewer.out();
}

TEST_F(ViewerEndToEnd, CancelAnswersTheUntouchedValues) {
    const std::string layout = scratch("layout.json");
    ViewerRun viewer(kRestoreDialog, layout);
    ASSERT_TRUE(readLayout(layout)) << "the viewer wrote no layout";
    focusViewer();
    clickInside(91); /* Cancel */

    ASSERT_EQ(viewer.finish(), 0) << viewer.err();
    const ordered_json answers = ordered_json::parse(viewer.out());
    EXPECT_EQ(answers["closedBy"], 91);
    EXPECT_EQ(answers["values"]["11"]["selected"], ordered_json::parse("[1, 5]"));
    EXPECT_EQ(answers["values"]["22"]["selected"], 23);
    EXPECT_EQ(answers["values"]["25"]["text"], "/srv/restore");
    EXPECT_EQ(answers["values"]["33"]["selectedText"], "Keep the newer file");
    EXPECT_EQ(answers["values"]["37"]["set"], false);
}

} // namespace
