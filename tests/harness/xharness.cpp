/* xharness.cpp - the test harness: display, XTest input, error and leak checks. */
#include "xharness.h"
#include <X11/Shell.h>
#include <X11/XKBlib.h>
#include <X11/extensions/XTest.h>
#include <Xm/Form.h>
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <thread>
#include "kx.h"
namespace xt {
namespace {
Display *gDisplay = nullptr;
XtAppContext gApp = nullptr;
int gErrors = 0;
std::vector<TraceLine> gTraces;
int onXError(Display *dpy, XErrorEvent *ev) {
    char text[256];
    XGetErrorText(dpy, ev->error_code, text, sizeof text);
    std::fprintf(stderr, "X error: %s (code %d, request %d.%d, resource 0x%lx)\n", text,
                 ev->error_code, ev->request_code, ev->minor_code, ev->resourceid);
    ++gErrors;
    return 0;
}
void onTrace(void *, const char *component, int32_t msgNo, int32_t sub, int32_t level,
             const char *text) {
    std::string comp(component ? component : "");
    comp.erase(comp.find_last_not_of(' ') + 1); /* trailing blanks of a padded name */
    gTraces.push_back({comp, msgNo, sub, level, text ? text : ""});
}
void open() {
    if (gDisplay) return;
    XSetErrorHandler(onXError);
    XtToolkitInitialize();
    gApp = XtCreateApplicationContext();
    int argc = 1;
    char arg0[] = "xctest";
    char *argv[] = {arg0, nullptr};
    gDisplay = XtOpenDisplay(gApp, nullptr, "xctest", "XcTest", nullptr, 0, &argc, argv);
    if (!gDisplay) {
        std::fprintf(stderr, "cannot open the X display (DISPLAY=%s)\n",
                     std::getenv("DISPLAY") ? std::getenv("DISPLAY") : "");
        std::exit(2);
    }
    if (std::getenv("XC_TEST_SYNC")) XSynchronize(gDisplay, True);
    XSetErrorHandler(onXError);
    TraceSetCaptureHook(onTrace, nullptr);
}
void sleepMs(int ms) { std::this_thread::sleep_for(std::chrono::milliseconds(ms)); }
long nowMs() {
    using namespace std::chrono;
    return duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count();
}
void sync() { XSync(gDisplay, False); }
KeyCode code(KeySym sym) { return XKeysymToKeycode(display(), sym); }
void fakeButton(int button, Bool down) {
    XTestFakeButtonEvent(display(), button, down, CurrentTime);
    pump(10);
}
void fakeKey(KeySym sym, Bool down) {
    XTestFakeKeyEvent(display(), code(sym), down, CurrentTime);
    pump(5);
}
} // namespace
Display *display() { open(); return gDisplay; }
XtAppContext app() { open(); return gApp; }
int xErrorCount() { return gErrors; }
void pump(int idleMs) {
    open();
    sync();
    long idleSince = nowMs();
    while (nowMs() - idleSince < idleMs) {
        if (XtAppPending(gApp)) {
            XtAppProcessEvent(gApp, XtIMAll);
            idleSince = nowMs();
        } else {
            sync();
            if (!XtAppPending(gApp)) sleepMs(2);
        }
    }
}
void pumpFor(int ms) { pumpUntil([] { return false; }, ms); }
bool pumpUntil(const std::function<bool()> &done, int timeoutMs) {
    open();
    long end = nowMs() + timeoutMs;
    while (!done()) {
        if (nowMs() > end) return false;
        sync();
        if (XtAppPending(gApp)) XtAppProcessEvent(gApp, XtIMAll);
        else sleepMs(1);
    }
    return true;
}
Geometry geometry(Widget w) {
    Position x = 0, y = 0;
    Dimension width = 0, height = 0;
    XtVaGetValues(w, XtNx, &x, XtNy, &y, XtNwidth, &width, XtNheight, &height, nullptr);
    return {x, y, width, height};
}
void rootPosition(Widget w, int *rx, int *ry) {
    Window child;
    XTranslateCoordinates(XtDisplay(w), XtWindow(w), DefaultRootWindow(XtDisplay(w)), 0, 0, rx,
                          ry, &child);
}
static int mapState(Widget w) {
    XWindowAttributes a;
    return XtIsRealized(w) && XGetWindowAttributes(XtDisplay(w), XtWindow(w), &a) ? a.map_state
                                                                                  : IsUnmapped;
}
bool isViewable(Widget w) { return mapState(w) == IsViewable; }
bool isMapped(Widget w) { return mapState(w) != IsUnmapped; }
void movePointer(Widget w, int x, int y) {
    Geometry g = geometry(w);
    if (x < 0) x = g.width / 2;
    if (y < 0) y = g.height / 2;
    int rx = 0, ry = 0;
    rootPosition(w, &rx, &ry);
    XTestFakeMotionEvent(display(), -1, rx + x, ry + y, CurrentTime);
    pump(10);
}
void pressPointer(int button) { fakeButton(button, True); }
void releasePointer(int button) { fakeButton(button, False); }
void click(Widget w, int x, int y, int button) {
    movePointer(w, x, y);
    pressPointer(button);
    releasePointer(button);
    pump();
}
void pressKey(KeySym sym) { fakeKey(sym, True); }
void releaseKey(KeySym sym) { fakeKey(sym, False); }
void clickWith(KeySym modifier, Widget w, int x, int y) {
    pressKey(modifier);
    click(w, x, y);
    releaseKey(modifier);
    pump();
}
void key(KeySym sym) {
    pressKey(sym);
    releaseKey(sym);
    pump();
}
void type(const char *text) {
    for (const char *p = text; *p; ++p) {
        char name[2] = {*p, 0};
        KeySym sym = *p == ' ' ? XK_space : XStringToKeysym(name);
        if (sym == NoSymbol) sym = static_cast<KeySym>(static_cast<unsigned char>(*p));
        KeyCode kc = code(sym);
        bool shifted = XkbKeycodeToKeysym(display(), kc, 0, 0) != sym;
        if (shifted) XTestFakeKeyEvent(display(), code(XK_Shift_L), True, CurrentTime);
        XTestFakeKeyEvent(display(), kc, True, CurrentTime);
        XTestFakeKeyEvent(display(), kc, False, CurrentTime);
        if (shifted) XTestFakeKeyEvent(display(), code(XK_Shift_L), False, CurrentTime);
        pump(5);
    }
    pump();
}
void focus(Widget w) {
    Widget top = w;
    while (XtParent(top)) top = XtParent(top);
    if (XtIsRealized(top))
        XSetInputFocus(XtDisplay(top), XtWindow(top), RevertToParent, CurrentTime);
    pump(10);
    XmProcessTraversal(w, XmTRAVERSE_CURRENT);
    pump();
}
void XTest::SetUp() {
    open();
    pump(5);
    gTraces.clear();
    errorsAtStart_ = gErrors;
    liveAtStart_ = MemLiveCountAllPools();
    shell_ = XtVaAppCreateShell("xctest", "XcTest", topLevelShellWidgetClass, gDisplay,
                                XmNallowShellResize, True, XmNx, 0, XmNy, 0, nullptr);
    form_ = XmCreateForm(shell_, const_cast<char *>("screen"), nullptr, 0);
    XtManageChild(form_);
}
void XTest::realize(int width, int height) {
    XtVaSetValues(shell_, XtNwidth, width, XtNheight, height, nullptr);
    XtRealizeWidget(shell_);
    pumpUntil([this] { return isViewable(shell_); });
    XSetInputFocus(gDisplay, XtWindow(shell_), RevertToParent, CurrentTime);
    pump();
}
void XTest::TearDown() {
    pump(5);
    if (shell_) XtDestroyWidget(shell_);
    shell_ = form_ = nullptr;
    pump(5);
    EXPECT_EQ(gErrors - errorsAtStart_, 0) << "X protocol errors during the test";
    EXPECT_EQ(MemLiveCountAllPools() - liveAtStart_, 0) << "pool blocks leaked by the test";
}
const std::vector<TraceLine> &XTest::traces() const { return gTraces; }
void XTest::clearTraces() { gTraces.clear(); }
int XTest::countTrace(const std::string &text) const {
    auto same = [&](const TraceLine &t) { return t.text == text; };
    return static_cast<int>(std::count_if(gTraces.begin(), gTraces.end(), same));
}
bool XTest::hasTraceContaining(const std::string &part) const {
    auto has = [&](const TraceLine &t) { return t.text.find(part) != std::string::npos; };
    return std::any_of(gTraces.begin(), gTraces.end(), has);
}
} // namespace xt
