/* test_viewer_e2e.cpp - the viewer program driven end to end: the pointer and the keyboard
** of this process work the viewer's window, found through the places the viewer writes
** with --layout, and the answer document printed when the screen closes is read back. */
#include "xharness.h"

#include <X11/extensions/XTest.h>

#include <chrono>
#include <map>
#include <thread>

#include <nlohmann/json.hpp>

#include "viewerfixture.h"

namespace {

using nlohmann::json;

class ViewerEndToEnd : public xt::XTest {
protected:
    /* Starts the viewer on an example screen, waits for the places of its items and gives
    ** its top-level window the keyboard (there is no window manager). */
    std::unique_ptr<Viewer> start(const std::string &example) {
        const std::string layout = scratch_.path("layout.json");
        auto viewer = std::make_unique<Viewer>(std::vector<std::string>{
            "--layout", layout, XCV_SOURCE_DIR "/examples/screens/" + example});
        // The viewer writes the file whole, aside and renamed.
        EXPECT_TRUE(xt::pumpUntil([&] { return std::filesystem::exists(layout); }, 20000));
        const json doc = json::parse(std::ifstream(layout), nullptr, false);
        for (const auto &[id, box] : doc.items())
            places_[std::stoi(id)] = box.get<std::vector<int>>();
        Display *dpy = xt::display();
        const Window root = DefaultRootWindow(dpy);
        const std::vector<int> &any = places_.begin()->second;
        int x = 0, y = 0;
        XTranslateCoordinates(dpy, root, root, any[0] + 1, any[1] + 1, &x, &y, &top_);
        XSetInputFocus(dpy, top_, RevertToParent, CurrentTime);
        settle();
        return viewer;
    }
    /* A real click at a fraction of an item's place, optionally with a modifier key held. */
    void clickIn(int id, double fx = 0.5, double fy = 0.5, KeySym modifier = NoSymbol) {
        ASSERT_EQ(places_[id].size(), 4u) << "item " << id << " has no place";
        const std::vector<int> &p = places_[id];
        XTestFakeMotionEvent(xt::display(), -1, p[0] + int(p[2] * fx), p[1] + int(p[3] * fy), 0);
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
    Window top_ = 0;
    Scratch scratch_;
    std::map<int, std::vector<int>> places_; // x, y, width, height on the root window
};

TEST_F(ViewerEndToEnd, TheRestoreDialogAnswersWhatTheUserChose) {
    auto viewer = start("restore-dialog.json");
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
    for (int i = 0; i < 2; ++i) xt::key(XK_Down);
    clickIn(37); // verify restored files
    clickIn(90); // Restore: a CLOSE action
    ASSERT_EQ(viewer->finish(), 0) << viewer->err;
    EXPECT_EQ(viewer->err, "");
    const json got = json::parse(viewer->out, nullptr, false), expected = {
        {"/jobId", 77}, {"/closedBy", 90},
        {"/values/11/selectedTexts", {"/etc", "/home/bob", "/var/lib/postgresql"}},
        {"/values/113/selected", true}, {"/values/22/selected", 24},
        {"/values/23/set", false}, {"/values/25/text", "/tmp/here"},
        {"/values/33/selected", 3}, {"/values/33/typedText", "Skip it"},
        {"/values/35/encrypted", nullptr}, {"/values/37/set", true}};
    for (const auto &[pointer, value] : expected.items())
        EXPECT_EQ(got.value(json::json_pointer(pointer), json()), value) << pointer;
}

TEST_F(ViewerEndToEnd, ClosingTheWindowExitsOneAndPrintsNothing) {
    auto viewer = start("restore-dialog.json");
    Display *dpy = xt::display();
    XEvent ev{};
    const Atom protocols = XInternAtom(dpy, "WM_PROTOCOLS", False);
    ev.xclient = {ClientMessage, 0, False, dpy, top_, protocols, 32, {}};
    ev.xclient.data.l[0] = static_cast<long>(XInternAtom(dpy, "WM_DELETE_WINDOW", False));
    XSendEvent(dpy, top_, False, NoEventMask, &ev);
    XFlush(dpy);
    EXPECT_EQ(viewer->finish(), 1);
    EXPECT_EQ(viewer->out + viewer->err, "");
}

} // namespace
