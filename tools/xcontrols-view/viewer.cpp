/* viewer.cpp - the viewer's X session: start-up in the order a client of the library
** follows, the event loop, the answers on CLOSE, and rendering to a PNG. */
#include "viewer.h"

#include <Xm/Form.h>
#include <Xm/Protocols.h>
#include <Xm/Xm.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <optional>
#include <thread>

#include "guiscreendef.h"
#include "kx.h"
#include "liveupdates.h"
#include "screentypes.h"
#include "xsnapshot.h"

#if __has_include("guibmploader.h")
#include "guibmploader.h"
#define XCV_HAVE_BMPLOADER 1
#endif
#if __has_include("guimakegcsandfonts.h")
#include "guimakegcsandfonts.h"
#define XCV_HAVE_GCSANDFONTS 1
#endif

namespace viewer {
namespace {

/* How the shown screen ended. The close callback has no client data, so this is the
** one place it can leave its news. */
struct Outcome {
    bool ended = false;
    bool answered = false;
    int32_t jobId = 0;
    std::optional<int32_t> closedBy;
};
Outcome gOutcome;

int onClose(int32_t jobId, void *) {
    gOutcome.ended = gOutcome.answered = true;
    gOutcome.jobId = jobId;
    return 1;
}

/* Registered after the library's own activate handler, so it runs after the button's
** actions: when they closed the screen, this button did it. */
void onButtonActivated(Widget, XtPointer clientData, XtPointer) {
    if (gOutcome.answered && !gOutcome.closedBy)
        gOutcome.closedBy = static_cast<int32_t>(reinterpret_cast<intptr_t>(clientData));
}

/* The item's outer widget (its first widget record), or null when it has none. */
Widget outerWidget(const ScreenItem *item) {
    if (!item || !ObjIsA(item->guiData, GUI_TAG_GUIDATA)) return nullptr;
    auto *record = static_cast<GuiWidgetRecord *>(ListFirstItem(item->guiData->widgetList));
    return ObjIsA(record, GUI_TAG_WIDGET) ? record->widget : nullptr;
}

int watchButton(void *, void *node) {
    const ScreenItem *item = screenfile::itemOf(node);
    Widget button = item && item->itemType == PushButton ? outerWidget(item) : nullptr;
    if (button)
        XtAddCallback(button, XmNactivateCallback, onButtonActivated,
                      reinterpret_cast<XtPointer>(static_cast<intptr_t>(item->itemId)));
    return 1;
}

void onWindowClosed(Widget, XtPointer, XtPointer) { gOutcome.ended = true; }

/* Xlib's and Xt's own handlers would exit with status 1: an X error, a lost connection
** or a toolkit error ends the viewer with a message and status 3 instead. */
int onXError(Display *dpy, XErrorEvent *event) {
    char text[256] = "";
    XGetErrorText(dpy, event->error_code, text, sizeof text);
    std::fprintf(stderr, "xcontrols-view: X error: %s (request %d.%d)\n", text,
                 static_cast<int>(event->request_code), static_cast<int>(event->minor_code));
    std::exit(kFailed);
}

int onXIOError(Display *) {
    std::fprintf(stderr, "xcontrols-view: the connection to the X server was lost\n");
    std::exit(kFailed);
}

void onXtError(String message) {
    std::fprintf(stderr, "xcontrols-view: toolkit error: %s\n", message);
    std::exit(kFailed);
}

const char *kFallbackResources[] = {
    "*fontList: -*-helvetica-medium-r-normal-*-12-*-*-*-*-*-iso8859-1",
    "*screen.marginWidth: 12",
    "*screen.marginHeight: 12",
    nullptr,
};

/* Processes events until the window is viewable and nothing has arrived for a while, so
** that every item is laid out and drawn. False when the window never becomes viewable. */
bool settle(XtAppContext app, Widget shell) {
    using clock = std::chrono::steady_clock;
    const auto deadline = clock::now() + std::chrono::seconds(10);
    const auto quiet = std::chrono::milliseconds(150);
    Display *dpy = XtDisplay(shell);
    auto lastEvent = clock::now();
    for (;;) {
        XSync(dpy, False);
        while (XtAppPending(app)) {
            XtAppProcessEvent(app, XtIMAll);
            lastEvent = clock::now();
        }
        XWindowAttributes attributes{};
        bool viewable = XGetWindowAttributes(dpy, XtWindow(shell), &attributes) &&
                        attributes.map_state == IsViewable;
        if (viewable && clock::now() - lastEvent >= quiet) return true;
        if (clock::now() > deadline) return viewable;
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
}

/* The shared drawing resources of the library's controls, made once at start-up. */
void createSharedResources(Widget shell) {
#ifdef XCV_HAVE_BMPLOADER
    GuiInitLoadBmps(shell);
#endif
#ifdef XCV_HAVE_GCSANDFONTS
    GuiCreateGcsAndFonts(shell);
#endif
    (void)shell;
}

Widget createShell(Display *dpy, const screenfile::Loaded &screen, const Options &options) {
    Widget shell = XtVaAppCreateShell("xcontrols-view", "XcontrolsView",
                                      applicationShellWidgetClass, dpy, XmNdeleteResponse,
                                      XmDO_NOTHING, nullptr);
    if (!screen.title.empty()) XtVaSetValues(shell, XmNtitle, screen.title.c_str(), nullptr);
    // The screen is built after the window is up: without a given size the window
    // follows the size that the screen asks for.
    int width = options.width ? options.width : screen.width;
    int height = options.height ? options.height : screen.height;
    XtVaSetValues(shell, XmNallowShellResize, width <= 0 || height <= 0, nullptr);
    if (width > 0) XtVaSetValues(shell, XmNwidth, width, nullptr);
    if (height > 0) XtVaSetValues(shell, XmNheight, height, nullptr);
    Atom deleteWindow = XmInternAtom(dpy, const_cast<char *>("WM_DELETE_WINDOW"), False);
    XmAddWMProtocolCallback(shell, deleteWindow, onWindowClosed, nullptr);
    return shell;
}

/* A window must lie on the screen to be read back: a larger one is cut to the screen's
** size (the picture then shows its top left part). */
bool fitToScreen(XtAppContext app, Widget shell) {
    const Dimension screenWidth = static_cast<Dimension>(WidthOfScreen(XtScreen(shell)));
    const Dimension screenHeight = static_cast<Dimension>(HeightOfScreen(XtScreen(shell)));
    Dimension width = 0, height = 0;
    XtVaGetValues(shell, XmNwidth, &width, XmNheight, &height, nullptr);
    if (width <= screenWidth && height <= screenHeight) return true;
    XtVaSetValues(shell, XmNallowShellResize, False, XmNx, 0, XmNy, 0, XmNwidth,
                  std::min(width, screenWidth), XmNheight, std::min(height, screenHeight), nullptr);
    return settle(app, shell);
}

ExitCode renderToPng(XtAppContext app, Widget shell, const std::string &path) {
    if (!settle(app, shell) || !fitToScreen(app, shell)) {
        std::fprintf(stderr, "xcontrols-view: the window did not appear\n");
        return kFailed;
    }
    if (!XSnapshotWindowToPng(XtDisplay(shell), XtWindow(shell), path.c_str())) {
        std::fprintf(stderr, "xcontrols-view: cannot write %s\n", path.c_str());
        return kFailed;
    }
    std::printf("%s\n", path.c_str());
    return kAnswered;
}

/* One "id": [x, y, width, height] entry per item with a realized outer widget. */
int writeItemPlace(void *ctx, void *node) {
    auto *out = static_cast<std::string *>(ctx);
    const ScreenItem *item = screenfile::itemOf(node);
    Widget outer = outerWidget(item);
    if (!outer || !XtIsRealized(outer)) return 1;
    Display *dpy = XtDisplay(outer);
    XWindowAttributes a{};
    int x = 0, y = 0;
    Window child;
    XGetWindowAttributes(dpy, XtWindow(outer), &a);
    XTranslateCoordinates(dpy, XtWindow(outer), DefaultRootWindow(dpy), 0, 0, &x, &y, &child);
    char entry[96];
    std::snprintf(entry, sizeof entry, "%s\n  \"%ld\": [%d, %d, %d, %d]", out->size() > 1 ? "," : "",
                  static_cast<long>(item->itemId), x, y, a.width, a.height);
    *out += entry;
    return 1;
}

/* Writes the places of the items once the window is settled; the file appears whole
** (written aside, then renamed), so a reader that waits for it never sees half of it. */
bool writeLayout(XtAppContext app, Widget shell, void *tree, const std::string &path) {
    if (!settle(app, shell)) return false;
    std::string doc = "{";
    TreeWalk(tree, writeItemPlace, &doc, 0);
    doc += "\n}\n";
    const std::string aside = path + ".part";
    FILE *file = std::fopen(aside.c_str(), "w");
    if (!file) return false;
    const bool written = std::fputs(doc.c_str(), file) >= 0;
    return std::fclose(file) == 0 && written && std::rename(aside.c_str(), path.c_str()) == 0;
}

/* The push buttons of a screen built anew report the one that closes it. */
void watchButtons(void *tree) { TreeWalk(tree, watchButton, nullptr, 0); }

/* Runs until the screen is answered or dismissed; update documents of `updatesPath`
** change the screen meanwhile. */
ExitCode runUntilClosed(XtAppContext app, Widget shell, oScreenDef &screen,
                        const std::string &updatesPath) {
    std::unique_ptr<liveupdates::Feed> feed;
    if (!updatesPath.empty()) {
        std::string error;
        const int fd = liveupdates::openSource(updatesPath, error);
        if (fd < 0) {
            std::fprintf(stderr, "xcontrols-view: cannot read %s: %s\n", updatesPath.c_str(), error.c_str());
            return kBadInput;
        }
        feed = std::make_unique<liveupdates::Feed>(app, fd, updatesPath, shell, screen, watchButtons);
    }
    while (!gOutcome.ended) XtAppProcessEvent(app, XtIMAll);
    if (!gOutcome.answered) return kDismissed;
    std::printf("%s\n", screenfile::answers(screen.oPluginScreenDef, gOutcome.jobId, gOutcome.closedBy).c_str());
    return kAnswered;
}

} // namespace

ExitCode show(screenfile::Loaded &screen, const Options &options, int argc, char **argv) {
    XtToolkitInitialize();
    XtAppContext app = XtCreateApplicationContext();
    XtAppSetFallbackResources(app, const_cast<String *>(kFallbackResources));
    Display *dpy = XtOpenDisplay(app, nullptr, "xcontrols-view", "XcontrolsView", nullptr, 0,
                                 &argc, argv);
    if (!dpy) {
        std::fprintf(stderr, "xcontrols-view: cannot open display \"%s\"\n", XDisplayName(nullptr));
        XtDestroyApplicationContext(app);
        return kFailed;
    }

    XSetErrorHandler(onXError);
    XSetIOErrorHandler(onXIOError);
    XtAppSetErrorHandler(app, onXtError);
    Widget shell = createShell(dpy, screen, options);
    createSharedResources(shell);
    Widget form = XmCreateForm(shell, const_cast<char *>("screen"), nullptr, 0);
    XtManageChild(form);
    InitPluginScreens(onClose, nullptr);
    // A client builds plugin screens into a realized form, as the library expects; the
    // window appears only once the screen is complete, so that no click can reach it
    // before the items have windows of their own.
    XtVaSetValues(shell, XtNmappedWhenManaged, False, nullptr);
    XtRealizeWidget(shell);
    // The screen record holds the tree's reference, as a client's does for updates.
    oScreenDef record{screen.jobId, 0, 0, 0, form, screen.take()};
    void *&tree = record.oPluginScreenDef;
    ExitCode status = kFailed;
    if (GuiCreatePlgScreen(form, tree, screen.jobId)) {
        watchButtons(tree);
        XtMapWidget(shell);
        if (!options.layoutPath.empty() && !writeLayout(app, shell, tree, options.layoutPath))
            std::fprintf(stderr, "xcontrols-view: cannot write %s\n", options.layoutPath.c_str());
        status = options.pngPath.empty() ? runUntilClosed(app, shell, record, options.updatesPath)
                                         : renderToPng(app, shell, options.pngPath);
    } else {
        std::fprintf(stderr, "xcontrols-view: the library could not build the screen\n");
    }
    std::fflush(stdout);
    GuiFreeScreenDefAndWidgets(&tree);
    XtDestroyWidget(shell);
    XtCloseDisplay(dpy);
    XtDestroyApplicationContext(app);
    return status;
}

} // namespace viewer
