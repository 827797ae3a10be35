/* gallery.cpp - xcontrols-gallery: the library's stand-alone controls in one window,
** one framed section per family of controls, stacked from top to bottom. */
#include <Xm/Form.h>
#include <Xm/Frame.h>
#include <Xm/Label.h>
#include <Xm/Protocols.h>
#include <Xm/Xm.h>
#include <X11/Shell.h>

#include <chrono>
#include <cstdio>
#include <string>
#include <thread>

#include "gallery.h"
#include "guibmploader.h"
#include "guimakegcsandfonts.h"
#include "xsnapshot.h"

namespace {

const char *kUsage =
    "usage: xcontrols-gallery [--png PATH]\n"
    "\n"
    "Shows the library's stand-alone controls in one window until it is closed.\n"
    "\n"
    "  --png PATH   render the window to PATH once it is laid out, print PATH, exit 0\n"
    "  --help       show this text\n"
    "\n"
    "Exit status: 0 closed or rendered, 2 bad arguments, 3 no display or the PNG could\n"
    "not be written.\n";

enum Exit { kDone = 0, kBadArguments = 2, kNoDisplay = 3 };

/* A plain grey look that the controls' own pictures (drawn on #c0c0c0) blend into. */
String kFallbackResources[] = {
    const_cast<char *>("*fontList: -*-helvetica-medium-r-normal-*-12-*-*-*-*-*-iso8859-1"),
    const_cast<char *>("*title.fontList: -*-helvetica-bold-r-normal-*-12-*-*-*-*-*-iso8859-1"),
    const_cast<char *>("*background: #c0c0c0"),
    const_cast<char *>("*XmTextField.background: white"),
    const_cast<char *>("*XmList.background: white"),
    nullptr,
};

struct Arguments {
    std::string pngPath;
    bool help = false;
};

bool parseArguments(int argc, char **argv, Arguments &args, std::string &error) {
    for (int i = 1; i < argc; ++i) {
        const std::string arg = argv[i];
        if (arg == "--help" || arg == "-h") {
            args.help = true;
        } else if (arg == "--png") {
            if (i + 1 >= argc) {
                error = "option --png needs a path";
                return false;
            }
            args.pngPath = argv[++i];
        } else {
            error = "unknown argument " + arg;
            return false;
        }
    }
    return true;
}

/* One section: an etched frame with its title and a Form that the section fills. */
Widget addSection(Widget column, Widget above, const gallery::Section &section) {
    Widget frame = XtVaCreateWidget(
        "section", xmFrameWidgetClass, column, XmNshadowType, XmSHADOW_ETCHED_IN,
        XmNmarginWidth, 12, XmNmarginHeight, 10, XmNleftAttachment, XmATTACH_FORM,
        XmNrightAttachment, XmATTACH_FORM, XmNtopAttachment,
        above ? XmATTACH_WIDGET : XmATTACH_FORM, XmNtopWidget, above, nullptr);
    XmString title = XmStringCreateLocalized(const_cast<char *>(section.title));
    XtVaCreateManagedWidget("title", xmLabelWidgetClass, frame, XmNchildType,
                            XmFRAME_TITLE_CHILD, XmNlabelString, title, nullptr);
    XmStringFree(title);
    Widget area = XtVaCreateManagedWidget("area", xmFormWidgetClass, frame, XmNchildType,
                                          XmFRAME_WORKAREA_CHILD, nullptr);
    section.build(area);
    XtManageChild(frame);
    return frame;
}

/* A column of sections at the right of `left` (at the window's left edge for none). */
Widget addColumn(Widget window, Widget left) {
    return XtVaCreateManagedWidget("column", xmFormWidgetClass, window, XmNverticalSpacing, 12,
                                   XmNtopAttachment, XmATTACH_FORM, XmNleftAttachment,
                                   left ? XmATTACH_WIDGET : XmATTACH_FORM, XmNleftWidget, left,
                                   XmNleftOffset, left ? 12 : 0, nullptr);
}

Widget buildWindow(Widget shell) {
    Widget window = XtVaCreateWidget("gallery", xmFormWidgetClass, shell, XmNmarginWidth, 12,
                                     XmNmarginHeight, 12, nullptr);
    Widget column = nullptr, last = nullptr;
    for (const auto &section : gallery::kSections) {
        if (column == nullptr || section.newColumn) {
            column = addColumn(window, column);
            last = nullptr;
        }
        last = addSection(column, last, section);
    }
    XtManageChild(window);
    return window;
}

/* Runs the event loop until the shell is on the screen and nothing is left to draw. */
bool waitUntilDrawn(XtAppContext app, Widget shell) {
    using Clock = std::chrono::steady_clock;
    const auto deadline = Clock::now() + std::chrono::seconds(5);
    auto idleSince = Clock::now();
    bool shown = false;
    while (Clock::now() < deadline) {
        XSync(XtDisplay(shell), False);
        if (XtAppPending(app)) {
            XtAppProcessEvent(app, XtIMAll);
            idleSince = Clock::now();
            continue;
        }
        XWindowAttributes attrs;
        shown = XGetWindowAttributes(XtDisplay(shell), XtWindow(shell), &attrs) &&
                attrs.map_state == IsViewable;
        if (shown && Clock::now() - idleSince > std::chrono::milliseconds(200)) return true;
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    return shown;
}

void quit(Widget, XtPointer done, XtPointer) { *static_cast<bool *>(done) = true; }

void runUntilClosed(XtAppContext app, Widget shell) {
    bool done = false;
    Atom deleteWindow = XmInternAtom(XtDisplay(shell), const_cast<char *>("WM_DELETE_WINDOW"), False);
    XtVaSetValues(shell, XmNdeleteResponse, XmDO_NOTHING, nullptr);
    XmAddWMProtocolCallback(shell, deleteWindow, quit, &done);
    while (!done) {
        XEvent event;
        XtAppNextEvent(app, &event);
        XtDispatchEvent(&event);
    }
}

} // namespace

int main(int argc, char **argv) {
    Arguments args;
    std::string error;
    if (!parseArguments(argc, argv, args, error)) {
        std::fprintf(stderr, "xcontrols-gallery: %s\n%s", error.c_str(), kUsage);
        return kBadArguments;
    }
    if (args.help) {
        std::fputs(kUsage, stdout);
        return kDone;
    }

    XtSetLanguageProc(nullptr, nullptr, nullptr);
    XtToolkitInitialize();
    XtAppContext app = XtCreateApplicationContext();
    XtAppSetFallbackResources(app, kFallbackResources);
    int xtArgc = 1;
    Display *dpy = XtOpenDisplay(app, nullptr, "xcontrols-gallery", "XcGallery", nullptr, 0,
                                 &xtArgc, argv);
    if (dpy == nullptr) {
        std::fprintf(stderr, "xcontrols-gallery: cannot open the display\n");
        return kNoDisplay;
    }
    Widget shell = XtVaAppCreateShell("xcontrols-gallery", "XcGallery",
                                      topLevelShellWidgetClass, dpy, XmNtitle,
                                      "xcontrols gallery", XmNallowShellResize, True, nullptr);
    GuiInitLoadBmps(shell);      /* the client's start-up: pictures, GCs and font list */
    GuiCreateGcsAndFonts(shell);
    buildWindow(shell);
    XtRealizeWidget(shell);

    if (args.pngPath.empty()) {
        runUntilClosed(app, shell);
        return kDone;
    }
    if (!waitUntilDrawn(app, shell) ||
        XSnapshotWindowToPng(dpy, XtWindow(shell), args.pngPath.c_str()) != 1) {
        std::fprintf(stderr, "xcontrols-gallery: cannot write %s\n", args.pngPath.c_str());
        return kNoDisplay;
    }
    std::printf("%s\n", args.pngPath.c_str());
    return kDone;
}
