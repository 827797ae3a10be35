/* xharness.h - the test harness: a real X display, real input through XTest, X error
** and leak checks, and captured trace lines.
** A test deriving from XTest gets in SetUp a fresh shell with a form (not realized: call
** realize()), and in TearDown the shell destroyed, then a failure for every X error and
** for pool blocks live more or fewer than at the start. Input goes through XTest and the
** Xt event loop, never callbacks. Include before any X header (X's `None` breaks gtest). */
#ifndef XC_XHARNESS_H
#define XC_XHARNESS_H
#include <gtest/gtest.h>
#include <X11/Intrinsic.h>
#include <X11/keysym.h>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>
namespace xt {
/* The process-wide display and application context (opened on first use). */
Display *display();
XtAppContext app();
/* X protocol errors seen so far in the process. */
int xErrorCount();
/* One captured trace line. */
struct TraceLine { std::string component; int32_t msgNo, sub, level; std::string text; };
/* Processes X and Xt events (timers included) until none is pending for `idleMs`. */
void pump(int idleMs = 30);
/* Processes events for `ms` milliseconds, whatever arrives. */
void pumpFor(int ms);
/* Processes events until `done` returns true or `timeoutMs` passes; the result of done. */
bool pumpUntil(const std::function<bool()> &done, int timeoutMs = 2000);
/* Geometry of a widget relative to its parent, as Xt sees it after layout. */
struct Geometry { int x, y, width, height; };
Geometry geometry(Widget w);
/* Position of the widget's origin on the root window. */
void rootPosition(Widget w, int *rx, int *ry);
/* True when the widget's window exists and is viewable (mapped, and its ancestors too). */
bool isViewable(Widget w);
/* True when the widget's own window is mapped (whatever its ancestors). */
bool isMapped(Widget w);
/* Real input. Coordinates are relative to the widget; by default its centre. */
void movePointer(Widget w, int x = -1, int y = -1);
void pressPointer(int button = 1);
void releasePointer(int button = 1);
void click(Widget w, int x = -1, int y = -1, int button = 1);
/* Click with a modifier key held (for example XK_Control_L). */
void clickWith(KeySym modifier, Widget w, int x = -1, int y = -1);
void pressKey(KeySym sym);
void releaseKey(KeySym sym);
void key(KeySym sym);                       /* press and release */
void type(const char *text);                /* printable ASCII, Shift where needed */
/* Gives the keyboard focus to the widget's shell window and the widget inside it. */
void focus(Widget w);
/* The base class of tests that use the display. */
class XTest : public ::testing::Test {
protected:
    void SetUp() override;
    void TearDown() override;
    Widget shell() const { return shell_; }
    Widget form() const { return form_; }
    /* Sizes the shell, realizes it and waits until it is mapped. */
    void realize(int width = 640, int height = 480);
    /* Captured trace lines since SetUp (or since clearTraces). */
    const std::vector<TraceLine> &traces() const;
    void clearTraces();
    int countTrace(const std::string &text) const;   /* lines whose text equals text */
    bool hasTrace(const std::string &text) const { return countTrace(text) > 0; }
    bool hasTraceContaining(const std::string &part) const;
private:
    Widget shell_ = nullptr, form_ = nullptr;
    int errorsAtStart_ = 0;
    int64_t liveAtStart_ = 0;
};
} // namespace xt
#endif
