/* benchkit.h - what the benchmark programs share: the clock, waiting until the X server
** has done what it was asked, and a realized shell with a form to build screens into. */
#ifndef XC_BENCHKIT_H
#define XC_BENCHKIT_H

#include <X11/Shell.h>
#include <Xm/Form.h>

#include <chrono>
#include <cstdio>
#include <cstring>

namespace bench {

inline double seconds() {
    using namespace std::chrono;
    return duration<double>(steady_clock::now().time_since_epoch()).count();
}

/* Waits for the X server, then handles every event that is pending. */
inline void settle(Widget w) {
    XSync(XtDisplay(w), False);
    XtAppContext app = XtWidgetToApplicationContext(w);
    while (XtAppPending(app)) XtAppProcessEvent(app, XtIMAll);
}

/* A realized 1200x900 shell of class `appClass` holding a managed form, settled; null
** without a display. Lines of standard output are flushed as they are printed. */
inline Widget openForm(const char *appClass, int &argc, char **argv) {
    XtAppContext app;
    Widget shell = XtVaOpenApplication(&app, appClass, nullptr, 0, &argc, argv, nullptr,
                                       topLevelShellWidgetClass, XtNwidth, 1200, XtNheight, 900, nullptr);
    if (shell == nullptr) return nullptr;
    Widget form = XmCreateForm(shell, const_cast<char *>("screen"), nullptr, 0);
    XtManageChild(form);
    XtRealizeWidget(shell);
    settle(form);
    std::setvbuf(stdout, nullptr, _IOLBF, 0);
    return form;
}

/* With `--instructions` first on the command line, runs `count` on `form` (each phase of
** it a callgrind dump of its own), destroys the shell and answers true: the program then
** ends without its timed runs. */
inline bool countInstructionsOnly(int argc, char **argv, Widget form, void (*count)(Widget)) {
    if (argc < 2 || std::strcmp(argv[1], "--instructions") != 0) return false;
    count(form);
    XtDestroyWidget(XtParent(form));
    return true;
}

} // namespace bench

#endif
