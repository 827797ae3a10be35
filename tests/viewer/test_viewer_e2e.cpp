/* test_viewer_e2e.cpp - the viewer program driven end to end: the pointer and the keyboard
** of this process work the viewer's window, found through the places the viewer writes
** with --layout, and the answer document printed when the screen closes is checked whole. */
#include "xharness.h"

#include <X11/extensions/XTest.h>

#include <map>

#include <nlohmann/json.hpp>

#include "viewerfixture.h"

namespace {

using nlohmann::ordered_json;

class ViewerEndToEnd : public xt::XTest {
protected:
    /* Starts the viewer on an example screen and waits for the places of its items. */
    std::unique_ptr<Viewer> start(const std::string &example) {
        const std::string layout = scratch_.path("layout.json");
        auto viewer = std::make_unique<Viewer>(std::vector<std::string>{
            "--layout", layout, XCV_SOURCE_DIR "/examples/screens/" + example});
        // The viewer writes the file whole, aside and renamed.
        EXPECT_TRUE(xt::pumpUntil([&] { return std::filesystem::exists(layout); }, 20000))
            << "the viewer wrote no layout";
        const ordered_json doc = ordered_json::parse(std::ifstream(layout), nullptr, false);
        for (const auto &[id, box] : doc.items()) places_[std::stoi(id)] = box.get<std::vector<int>>();
        return viewer;
    }
    /* The viewer's top-level window, given the keyboard (there is no window manager). */
    Window focusViewer() {
        Display *dpy = xt::display();
        Window root = DefaultRootWindow(dpy), top = 0;
        int x = 0, y = 0;
        const std::vector<int> &any = places_.begin()->second;
        XTranslateCoordinates(dpy, root, root, any[0] + 1, any[1] + 1, &x, &y, &top);
        XSetInputFocus(dpy, top, RevertToParent, CurrentTime);
        settle();
        return top;
    }
    /* A real click at a fraction of an item's place, optionally with a modifier key held. */
    void clickIn(int id, double fx = 0.5, double fy = 0.5, KeySym modifier = NoSymbol) {
        ASSERT_EQ(places_[id].size(), 4u) << "item " << id << " has no place";
        const std::vector<int> &p = places_[id];
        XTestFakeMotionEvent(xt::display(), -1, p[0] + int(p[2] * fx), p[1] + int(p[3] * fy), CurrentTime);
        if (modifier != NoSymbol) xt::pressKey(modifier);
        xt::pressPointer();
        xt::releasePointer();
        if (modifier != NoSymbol) xt::releaseKey(modifier);
        settle();
    }
    /* Time for the viewer to handle what this process sent; long enough that two clicks
    ** never count as a double click. */
    static void settle() {
        XSync(xt::display(), False);
        std::this_thread::sleep_for(std::chrono::milliseconds(400));
        xt::pump();
    }

private:
    Scratch scratch_;
    std::map<int, std::vector<int>> places_; // x, y, width, height on the root window
};

TEST_F(ViewerEndToEnd, TheRestoreDialogAnswersWhatTheUserChose) {
    auto viewer = start("restore-dialog.json");
    focusViewer();
    // Files to restore (11): /etc and /var/lib/postgresql come selected; Control adds the
    // third of its six visible entries, /home/bob.
    clickIn(11, 0.5, 5.0 / 12, XK_Control_L);
    // Restore to another directory (24) allows input into the edit box (25); its text is
    // replaced from the end.
    clickIn(24);
    clickIn(25, 0.98);
    for (int i = 0; i < 12; ++i) xt::key(XK_BackSpace);
    xt::type("/tmp/here");
    clickIn(33); // if a file exists: the third choice, stepped to with Down in its field
    xt::key(XK_Down);
    xt::key(XK_Down);
    clickIn(37); // verify restored files
    clickIn(90); // Restore: a CLOSE action
    ASSERT_EQ(viewer->finish(), 0) << viewer->err;
    EXPECT_EQ(viewer->err, "");
    EXPECT_EQ(ordered_json::parse(viewer->out), ordered_json::parse(R"({"jobId": 77, "closedBy": 90,
      "values": {"11": {"type": "ExtendedListBox", "selected": [1, 3, 5],
                        "selectedTexts": ["/etc", "/home/bob", "/var/lib/postgresql"]},
        "111": {"type": "ListItem", "selected": true}, "112": {"type": "ListItem", "selected": false},
        "113": {"type": "ListItem", "selected": true}, "114": {"type": "ListItem", "selected": false},
        "115": {"type": "ListItem", "selected": true}, "116": {"type": "ListItem", "selected": false},
        "22": {"type": "RadioManager", "selected": 24}, "23": {"type": "RadioButton", "set": false},
        "24": {"type": "RadioButton", "set": true}, "25": {"type": "EditBox", "text": "/tmp/here"},
        "33": {"type": "ComboBox", "selected": 3, "typedText": "Skip it", "selectedText": "Skip it"},
        "35": {"type": "GetPasswordBox", "encrypted": null},
        "36": {"type": "selectionItem", "set": true}, "37": {"type": "selectionItem", "set": true}}})"))
        << viewer->out;
}

TEST_F(ViewerEndToEnd, TheBackupOptionsScreenAnswersEveryValueItHolds) {
    auto viewer = start("backup-options.json");
    clickIn(90); // OK
    ASSERT_EQ(viewer->finish(), 0) << viewer->err;
    KxDateStruct april{2026, 4, 1, 0};
    int32_t firstRun = 0;
    ASSERT_TRUE(TimeFromDate(&firstRun, &april));
    ordered_json expected = ordered_json::parse(R"({"jobId": 42, "closedBy": 90, "values": {
        "4": {"type": "EditBox", "text": "Nightly file server"},
        "6": {"type": "ComboBox", "selected": 2, "typedText": "Incremental",
              "selectedText": "Incremental"},
        "8": {"type": "NumInput", "value": 30}, "12": {"type": "selectionItem", "set": true},
        "13": {"type": "selectionItem", "set": false}, "14": {"type": "selectionItem", "set": false},
        "17": {"type": "GetPasswordBox", "encrypted": null},
        "22": {"type": "RadioManager", "selected": 23}, "23": {"type": "RadioButton", "set": true},
        "24": {"type": "RadioButton", "set": false},
        "26": {"type": "EditBox", "text": "/srv/backup/nightly"},
        "28": {"type": "ComboBox", "selected": 1, "typedText": "LTO-8 drive 1",
               "selectedText": "LTO-8 drive 1"},
        "42": {"type": "selectionItem", "set": true},
        "44": {"type": "DateInput", "date": 0, "iso": "2026-04-01"},
        "45": {"type": "TimeInput", "time": 81000, "iso": "22:30"}}})");
    expected["values"]["44"]["date"] = firstRun;
    EXPECT_EQ(ordered_json::parse(viewer->out), expected) << viewer->out;
}

TEST_F(ViewerEndToEnd, ClosingTheWindowExitsOneAndPrintsNothing) {
    auto viewer = start("restore-dialog.json");
    Display *dpy = xt::display();
    XEvent ev{};
    ev.xclient.type = ClientMessage;
    ev.xclient.window = focusViewer();
    ev.xclient.message_type = XInternAtom(dpy, "WM_PROTOCOLS", False);
    ev.xclient.format = 32;
    ev.xclient.data.l[0] = static_cast<long>(XInternAtom(dpy, "WM_DELETE_WINDOW", False));
    XSendEvent(dpy, ev.xclient.window, False, NoEventMask, &ev);
    XFlush(dpy);
    EXPECT_EQ(viewer->finish(), 1);
    EXPECT_EQ(viewer->out + viewer->err, "");
}

} // namespace
