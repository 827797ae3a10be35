/* test_gcsandfonts.cpp - the shared GCs, font list and button pictures, checked by what
** they draw on the server. */
#include "bmptest.h"

#include <Xm/DrawingA.h>
#include <Xm/Label.h>
#include <Xm/PushB.h>
#include <X11/Xatom.h>

#include <fnmatch.h>

#include <algorithm>
#include <set>

#include "kx.h"
#include "xcontrols/guimakegcsandfonts.h"

namespace {

constexpr const char *kPattern = "*helv*med*r*normal*12*";

GC *const kMadeGcs[] = {&gcTop, &gcBot, &gcBlack, &gcWhite, &gcTreeDisabled, &gcProgress};
GC *const kClientGcs[] = {&gcInvert, &gcWizzyScheduledJobs, &gcWizzyRunningJobs,
                          &gcWizzyCompletedJobs};
Pixmap *const kPixmaps[] = {&upPixmap, &downPixmap, &comboPixmap};

/* The widget's colours as Motif derives them, for comparison. */
struct Expected {
    Pixel background, top, bottom, select, black, white;
};

/* A copy of the button pictures in a home directory of the test's own. */
void copyPicture(const char *file, const std::string &toDir) {
    char *from = PathHomeBuild("gui", "bmps", file, nullptr);
    ASSERT_NE(from, nullptr);
    std::filesystem::copy_file(from, toDir + "/" + file);
    MemFreeInternal(&from);
}

class GcsAndFonts : public xt::XTest {
protected:
    void SetUp() override {
        xt::XTest::SetUp();
        resetGlobals();
        label_ = XtVaCreateManagedWidget("label", xmLabelWidgetClass, form(), XtVaTypedArg,
                                         XmNbackground, XmRString, "#5f8fbf", 8, nullptr);
        GuiInitLoadBmps(label_);
    }

    void TearDown() override {
        Display *dpy = xt::display();
        for (GC *gc : kMadeGcs)
            if (*gc) XFreeGC(dpy, *gc);
        for (Pixmap *p : kPixmaps)
            if (*p) XFreePixmap(dpy, *p);
        resetGlobals();
        if (homeChanged_) {
            if (savedHome_.empty()) unsetenv("KX_HOME");
            else setenv("KX_HOME", savedHome_.c_str(), 1);
        }
        xt::XTest::TearDown();
    }

    static void resetGlobals() {
        for (GC *gc : kMadeGcs) *gc = nullptr;
        for (Pixmap *p : kPixmaps) *p = 0;
        fontlist = nullptr;
    }

    /* Points the home directory somewhere else for this test. */
    void setHome(const std::string &dir) {
        if (!homeChanged_) {
            const char *home = std::getenv("KX_HOME");
            savedHome_ = home ? home : "";
            homeChanged_ = true;
        }
        setenv("KX_HOME", dir.c_str(), 1);
    }

    Expected expected() const {
        Expected e = {};
        Colormap cmap = 0;
        XtVaGetValues(label_, XtNbackground, &e.background, XtNcolormap, &cmap, nullptr);
        Pixel foreground;
        XmGetColors(XtScreen(label_), cmap, e.background, &foreground, &e.top, &e.bottom,
                    &e.select);
        Display *dpy = xt::display();
        e.black = BlackPixel(dpy, DefaultScreen(dpy));
        e.white = WhitePixel(dpy, DefaultScreen(dpy));
        return e;
    }

    /* The pixel values that drawing "Wg" as an image string with `gc` leaves inside the
    ** text's box: the GC's background and foreground as the server sees them. */
    std::set<unsigned long> drawnColours(GC gc) {
        Display *dpy = xt::display();
        const int screen = DefaultScreen(dpy);
        XFontStruct *font = XQueryFont(dpy, XGContextFromGC(gc)); /* the GC's font */
        EXPECT_NE(font, nullptr);
        if (font == nullptr) return {};
        const int width = XTextWidth(font, "Wg", 2);
        const int ascent = font->ascent, descent = font->descent;
        XFreeFontInfo(nullptr, font, 1);

        const Pixmap canvas = XCreatePixmap(dpy, RootWindow(dpy, screen), 64, 64,
                                            unsigned(DefaultDepth(dpy, screen)));
        XDrawImageString(dpy, canvas, gc, 4, 4 + ascent, "Wg", 2);
        std::set<unsigned long> seen;
        const std::vector<unsigned long> pixels = bmpt::readPixels(canvas, 64, 64);
        for (int y = 4; y < 4 + ascent + descent; ++y)
            for (int x = 4; x < 4 + width; ++x) seen.insert(pixels[size_t(y) * 64 + size_t(x)]);
        XFreePixmap(dpy, canvas);
        return seen;
    }

    Widget label_ = nullptr;

private:
    bool homeChanged_ = false;
    std::string savedHome_;
};

TEST_F(GcsAndFonts, SixGcsCarryTheColoursOfTheWidget) {
    GuiCreateGcsAndFonts(label_);
    EXPECT_EQ(countTrace("GuiCreateGcsAndFonts()"), 1);
    const Expected e = expected();
    const struct {
        GC gc;
        Pixel foreground, background;
        const char *name;
    } gcs[] = {
        {gcTop, e.top, e.background, "gcTop"},
        {gcBot, e.bottom, e.background, "gcBot"},
        {gcBlack, e.black, e.background, "gcBlack"},
        {gcWhite, e.white, e.black, "gcWhite"},
        {gcTreeDisabled, e.select, e.black, "gcTreeDisabled"},
        {gcProgress, e.black, e.background, "gcProgress"},
    };
    for (const auto &g : gcs) {
        ASSERT_NE(g.gc, nullptr) << g.name;
        XGCValues values;
        ASSERT_TRUE(XGetGCValues(xt::display(), g.gc,
                                 GCForeground | GCBackground | GCFunction | GCLineWidth, &values));
        EXPECT_EQ(values.foreground, g.foreground) << g.name;
        EXPECT_EQ(values.background, g.background) << g.name;
        EXPECT_EQ(values.function, GXcopy) << g.name;
        EXPECT_EQ(values.line_width, 0) << g.name;
        /* What the server draws with it: exactly those two colours. */
        EXPECT_EQ(drawnColours(g.gc), (std::set<unsigned long>{g.foreground, g.background}))
            << g.name;
    }
    for (GC *gc : kClientGcs) EXPECT_EQ(*gc, nullptr) << "a GC of the client's was set";
    EXPECT_EQ(myDefaultFontList, nullptr);
}

TEST_F(GcsAndFonts, GcsCarryAFontOfThePattern) {
    GuiCreateGcsAndFonts(label_);
    Display *dpy = xt::display();
    for (GC *gc : kMadeGcs) {
        XFontStruct *font = XQueryFont(dpy, XGContextFromGC(*gc)); /* as the server has it */
        ASSERT_NE(font, nullptr);
        unsigned long nameAtom = 0;
        ASSERT_TRUE(XGetFontProperty(font, XA_FONT, &nameAtom));
        char *name = XGetAtomName(dpy, Atom(nameAtom));
        EXPECT_EQ(fnmatch(kPattern, name, FNM_CASEFOLD), 0) << name;
        XFree(name);
        XFreeFontInfo(nullptr, font, 1);
    }
}

TEST_F(GcsAndFonts, FontListIsTheWidgetsOwn) {
    XmFontList own = nullptr;
    XtVaGetValues(label_, XmNfontList, &own, nullptr);
    ASSERT_NE(own, nullptr);
    GuiCreateGcsAndFonts(label_);
    EXPECT_EQ(fontlist, own);
}

TEST_F(GcsAndFonts, ShellsAndManagersGiveTheFontListOfTheirLabels) {
    for (Widget w : {shell(), form()}) {
        XmFontList own = nullptr, labels = nullptr;
        XtVaGetValues(w, XmNfontList, &own, XmNlabelFontList, &labels, nullptr);
        ASSERT_EQ(own, nullptr) << XtName(w) << " has a font list of its own";
        ASSERT_NE(labels, nullptr) << XtName(w);
        fontlist = nullptr;
        GuiCreateGcsAndFonts(w);
        EXPECT_EQ(fontlist, labels) << XtName(w);
        for (GC *gc : kMadeGcs) XFreeGC(xt::display(), *gc);
        for (Pixmap *p : kPixmaps) XFreePixmap(xt::display(), *p);
        resetGlobals();
    }
    EXPECT_FALSE(hasTraceContaining("has no font list"));
}

TEST_F(GcsAndFonts, AWidgetWithoutFontListsLeavesFontlistAsItWas) {
    Widget area = XtVaCreateManagedWidget("area", xmDrawingAreaWidgetClass, form(), nullptr);
    XmFontList before = nullptr;
    XtVaGetValues(label_, XmNfontList, &before, nullptr);
    fontlist = before;
    GuiCreateGcsAndFonts(area);
    EXPECT_EQ(fontlist, before);
    EXPECT_EQ(countTrace("Widget area has no font list"), 1);
    for (GC *gc : kMadeGcs) EXPECT_NE(*gc, nullptr);
}

TEST_F(GcsAndFonts, ThreePicturesComeFromTheHomeDirectory) {
    GuiCreateGcsAndFonts(label_);
    EXPECT_FALSE(hasTraceContaining("Failed to load"));
    const struct {
        Pixmap pixmap;
        unsigned width, height;
        int arrowX, arrowY; /* a pixel of the arrow */
    } pictures[] = {{upPixmap, 11, 7, 5, 1}, {downPixmap, 11, 7, 5, 5}, {comboPixmap, 10, 10, 4, 7}};
    Display *dpy = xt::display();
    const unsigned long grey = bmpt::pixelOf({0xc4, 0xc4, 0xc4});
    for (const auto &p : pictures) {
        ASSERT_NE(p.pixmap, Pixmap(0));
        const bmpt::Geometry g = bmpt::pixmapGeometry(p.pixmap);
        EXPECT_EQ(g.width, p.width);
        EXPECT_EQ(g.height, p.height);
        EXPECT_EQ(g.depth, unsigned(DefaultDepth(dpy, DefaultScreen(dpy))));
        const std::vector<unsigned long> pixels = bmpt::readPixels(p.pixmap, int(p.width), int(p.height));
        EXPECT_EQ(pixels[0], grey);
        EXPECT_EQ(pixels[size_t(p.arrowY) * p.width + size_t(p.arrowX)], BlackPixel(dpy, DefaultScreen(dpy)));
    }
    /* An up arrow is wide at the bottom, a down arrow at the top. */
    const std::vector<unsigned long> up = bmpt::readPixels(upPixmap, 11, 7);
    const std::vector<unsigned long> down = bmpt::readPixels(downPixmap, 11, 7);
    EXPECT_EQ(up[1 * 11 + 1], grey);
    EXPECT_EQ(up[5 * 11 + 1], BlackPixel(dpy, DefaultScreen(dpy)));
    EXPECT_EQ(down[1 * 11 + 1], BlackPixel(dpy, DefaultScreen(dpy)));
    EXPECT_EQ(down[5 * 11 + 1], grey);
}

TEST_F(GcsAndFonts, PicturesShowOnButtons) {
    GuiCreateGcsAndFonts(label_);
    Widget buttons[3];
    Pixmap pictures[3] = {upPixmap, downPixmap, comboPixmap};
    const char *names[3] = {"up", "down", "combo"};
    for (int i = 0; i < 3; ++i) {
        buttons[i] = XtVaCreateManagedWidget(
            names[i], xmPushButtonWidgetClass, form(), XmNlabelType, XmPIXMAP, XmNlabelPixmap,
            pictures[i], XmNlabelInsensitivePixmap, pictures[i], XmNleftAttachment,
            XmATTACH_FORM, XmNleftOffset, 40 * i + 4, XmNtopAttachment, XmATTACH_FORM,
            XmNtopOffset, 30, nullptr);
    }
    realize(160, 80);
    if (const char *dir = std::getenv("XC_SNAPSHOT_DIR")) {
        EXPECT_TRUE(xt::snapshot(shell(), std::string(dir) + "/bmp-buttons.png"));
    }
    Display *dpy = xt::display();
    for (Widget b : buttons) {
        const xt::Geometry g = xt::geometry(b);
        const std::vector<unsigned long> pixels = bmpt::readPixels(XtWindow(b), g.width, g.height);
        EXPECT_NE(std::count(pixels.begin(), pixels.end(), BlackPixel(dpy, DefaultScreen(dpy))), 0)
            << XtName(b) << " shows no arrow";
    }
}

TEST_F(GcsAndFonts, MissingPicturesAreTracedAndTheRestIsStillMade) {
    bmpt::TempDir emptyHome;
    setHome(emptyHome.path());
    GuiCreateGcsAndFonts(label_);
    for (GC *gc : kMadeGcs) EXPECT_NE(*gc, nullptr);
    EXPECT_NE(fontlist, nullptr);
    for (Pixmap *p : kPixmaps) EXPECT_EQ(*p, Pixmap(0));

    std::vector<std::string> failures;
    for (const xt::TraceLine &line : traces())
        if (line.text.rfind("Failed to load ", 0) == 0) {
            failures.push_back(line.text);
            EXPECT_EQ(line.level, 0);
            EXPECT_EQ(line.component, "GUI");
        }
    const std::string dir = emptyHome.path() + "/gui/bmps/";
    EXPECT_EQ(failures, (std::vector<std::string>{"Failed to load " + dir + "up.bmp",
                                                  "Failed to load " + dir + "down.bmp",
                                                  "Failed to load " + dir + "combo.bmp"}));
    EXPECT_EQ(ReadBmpErrno, 0x80001); /* the outcome of the last picture */
}

TEST_F(GcsAndFonts, OnlyTheMissingPictureStaysZero) {
    bmpt::TempDir home;
    std::filesystem::create_directories(home.path() + "/gui/bmps");
    copyPicture("up.bmp", home.path() + "/gui/bmps");
    copyPicture("combo.bmp", home.path() + "/gui/bmps");
    setHome(home.path());
    GuiCreateGcsAndFonts(label_);
    EXPECT_NE(upPixmap, Pixmap(0));
    EXPECT_EQ(downPixmap, Pixmap(0));
    EXPECT_NE(comboPixmap, Pixmap(0));
    EXPECT_EQ(countTrace("Failed to load " + home.path() + "/gui/bmps/down.bmp"), 1);
    EXPECT_FALSE(hasTraceContaining("up.bmp"));
    EXPECT_EQ(ReadBmpErrno, 0);
}

TEST_F(GcsAndFonts, NullWidgetMakesNothing) {
    GuiCreateGcsAndFonts(nullptr);
    EXPECT_EQ(countTrace("GuiCreateGcsAndFonts() without a widget"), 1);
    for (GC *gc : kMadeGcs) EXPECT_EQ(*gc, nullptr);
    for (Pixmap *p : kPixmaps) EXPECT_EQ(*p, Pixmap(0));
}

/* Runs only on a server of its own (tests.cmake), since it changes the font path. */
TEST_F(GcsAndFonts, WithoutAMatchingFontTheGcsKeepTheDefaultFont) {
    if (!std::getenv("XC_TEST_OWN_SERVER")) GTEST_SKIP() << "changes the server's font path";
    Display *dpy = xt::display();
    int count = 0;
    char **saved = XGetFontPath(dpy, &count);
    char builtIns[] = "built-ins";
    char *onlyBuiltIns[] = {builtIns};
    XSetFontPath(dpy, onlyBuiltIns, 1);
    XSync(dpy, False);
    XFontStruct *probe = XLoadQueryFont(dpy, kPattern);
    EXPECT_EQ(probe, nullptr) << "the font path still holds the font";
    if (probe) XFreeFont(dpy, probe);

    GuiCreateGcsAndFonts(label_);
    XSetFontPath(dpy, saved, count);
    XFreeFontPath(saved);

    EXPECT_EQ(countTrace(std::string("No font matches ") + kPattern + ", using the default font"), 1);
    const Expected e = expected();
    EXPECT_EQ(drawnColours(gcWhite), (std::set<unsigned long>{e.white, e.black}));
    for (GC *gc : kMadeGcs) {
        ASSERT_NE(*gc, nullptr);
        XGCValues values;
        XGetGCValues(dpy, *gc, GCFont, &values);
        EXPECT_EQ(values.font, ~0UL) << "a font was given to the GC";
    }
}

} // namespace
