/* inputs_support.h - what the input control tests share: a bell counter, a row of
** fields and arrow buttons in the test form, and typing into a field. */
#ifndef XC_TESTS_INPUTS_SUPPORT_H
#define XC_TESTS_INPUTS_SUPPORT_H
#include "xharness.h"
#include <X11/XKBlib.h>
#include <Xm/ArrowB.h>
#include <Xm/RowColumn.h>
#include <Xm/Text.h>
#include <Xm/TextF.h>
#include <initializer_list>
#include <string>
namespace inputs {
/* Counts the bells that the server rings, through the keyboard extension's bell
** notification on a connection of its own. */
class BellCounter {
public:
    BellCounter() {
        int major = XkbMajorVersion, minor = XkbMinorVersion, error = 0, opcode = 0;
        dpy_ = XkbOpenDisplay(DisplayString(xt::display()), &eventBase_, &error, &major,
                              &minor, &opcode);
        if (dpy_ != nullptr) XkbSelectEvents(dpy_, XkbUseCoreKbd, XkbBellNotifyMask, ~0u);
    }
    ~BellCounter() { if (dpy_ != nullptr) XCloseDisplay(dpy_); }
    BellCounter(const BellCounter &) = delete;
    bool available() const { return dpy_ != nullptr; }
    /* Bells rung since the counter was made or last reset. */
    int count() {
        XSync(xt::display(), False);
        XSync(dpy_, False);
        for (XEvent event; XPending(dpy_);) {
            XNextEvent(dpy_, &event);
            count_ += event.type == eventBase_ &&
                      reinterpret_cast<XkbEvent *>(&event)->any.xkb_type == XkbBellNotify;
        }
        return count_;
    }
    void reset() { count(), count_ = 0; }
private:
    Display *dpy_ = nullptr;
    int eventBase_ = 0, count_ = 0;
};
/* Adds one to `*count` as each of the widgets is destroyed. */
inline void countDestroys(int *count, std::initializer_list<Widget> widgets) {
    for (Widget w : widgets)
        XtAddCallback(w, XmNdestroyCallback,
                      [](Widget, XtPointer n, XtPointer) { ++*static_cast<int *>(n); }, count);
}
/* A client that destroys its control from the first report it gets; no report may reach
** it afterwards. */
template <typename Handle, void (*destroy)(Handle *)>
struct CloseOnFirstReport {
    Handle *input;
    template <typename Source>
    static void onValue(Source, void *data, int32_t *) {
        auto *self = static_cast<CloseOnFirstReport *>(data);
        if (self->input == nullptr) return void(ADD_FAILURE() << "a report after the destroy");
        destroy(self->input);
        self->input = nullptr;
    }
};
/* The text of a text field or text widget. */
inline std::string textOf(Widget w) {
    char *text = XmTextGetString(w);
    std::string copy = text ? text : "";
    XtFree(text);
    return copy;
}
/* A test with a horizontal row in the form, filled left to right from a spare text field
** that takes the focus when the shell gets it, and when a field is to lose it. */
class InputsTest : public xt::XTest {
protected:
    void SetUp() override {
        xt::XTest::SetUp();
        row_ = XtVaCreateManagedWidget("row", xmRowColumnWidgetClass, form(), XmNorientation,
                                       XmHORIZONTAL, XmNpacking, XmPACK_TIGHT, nullptr);
        spare = field("spare", 6);
        ASSERT_TRUE(bells.available()) << "the server does not notify bells";
        bells.reset();
    }
    Widget field(const char *name, short columns) {
        return XtVaCreateManagedWidget(name, xmTextFieldWidgetClass, row_, XmNcolumns, columns,
                                       nullptr);
    }
    Widget arrow(const char *name, unsigned char direction) {
        return XtVaCreateManagedWidget(name, xmArrowButtonWidgetClass, row_, XmNarrowDirection,
                                       direction, XmNwidth, 24, XmNheight, 24, nullptr);
    }
    /* Focuses the field, deletes what it holds with the keyboard and types `text`. */
    void retype(Widget w, const char *text) {
        xt::focus(w);
        xt::key(XK_End);
        for (std::size_t i = textOf(w).size(); i > 0; --i) xt::key(XK_BackSpace);
        xt::type(text);
    }
    /* Moves the focus to the spare field, so that the focused field loses it. */
    void leaveField() { xt::focus(spare); }
    BellCounter bells;
    Widget spare = nullptr;
private:
    Widget row_ = nullptr;
};
} // namespace inputs
#endif
