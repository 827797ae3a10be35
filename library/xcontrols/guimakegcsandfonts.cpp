/* guimakegcsandfonts.cpp - the graphics contexts, font list and pictures that the
** controls and the client draw with. */
#include "xcontrols/guimakegcsandfonts.h"

#include "guicommon.h"
#include "xcontrols/guibmploader.h"

extern "C" {

GC gcTop = nullptr;
GC gcBot = nullptr;
GC gcBlack = nullptr;
GC gcWhite = nullptr;
GC gcInvert = nullptr;
GC gcTreeDisabled = nullptr;
GC gcProgress = nullptr;
GC gcWizzyScheduledJobs = nullptr;
GC gcWizzyRunningJobs = nullptr;
GC gcWizzyCompletedJobs = nullptr;
XmFontList fontlist = nullptr;
XmFontList myDefaultFontList = nullptr;
Pixmap upPixmap = 0;
Pixmap downPixmap = 0;
Pixmap comboPixmap = 0;

} // extern "C"

namespace {

enum TraceNo : int32_t {
    kTraceCreate = 21,
    kTraceLoadFailed = 22,
    kTraceNoFont = 23,
    kTraceNoWidget = 24,
    kTraceNoFontList = 25,
};

constexpr const char *kFontPattern = "*helv*med*r*normal*12*";

/* The widget's colours as Motif derives them from its background. */
struct Colours {
    Pixel background;
    Pixel topShadow;
    Pixel bottomShadow;
    Pixel select;
    Pixel black;
    Pixel white;
};

Colours widgetColours(Widget w) {
    Colours c = {};
    Colormap colormap = 0;
    XtVaGetValues(w, XtNbackground, &c.background, XtNcolormap, &colormap, nullptr);
    Pixel foreground = 0;
    XmGetColors(XtScreen(w), colormap, c.background, &foreground, &c.topShadow,
                &c.bottomShadow, &c.select);
    Display *display = XtDisplay(w);
    c.black = BlackPixel(display, DefaultScreen(display));
    c.white = WhitePixel(display, DefaultScreen(display));
    return c;
}

/* The GCs in the order they are made, with their colours. */
struct GcRecipe {
    GC *gc;
    Pixel Colours::*foreground;
    Pixel Colours::*background;
};

constexpr GcRecipe kGcs[] = {
    {&gcBot, &Colours::bottomShadow, &Colours::background},
    {&gcTop, &Colours::topShadow, &Colours::background},
    {&gcBlack, &Colours::black, &Colours::background},
    {&gcWhite, &Colours::white, &Colours::black},
    {&gcTreeDisabled, &Colours::select, &Colours::black},
    {&gcProgress, &Colours::black, &Colours::background},
};

/* The font's id, or 0 (the server's default font) when nothing matches the pattern. */
Font loadFont(Display *display) {
    XFontStruct *font = XLoadQueryFont(display, kFontPattern);
    if (font == nullptr) {
        xc::trace(kTraceNoFont, 0, "No font matches %s, using the default font", kFontPattern);
        return 0;
    }
    const Font id = font->fid;
    XFreeFontInfo(nullptr, font, 1); /* the font stays loaded: only the description goes */
    return id;
}

void createGcs(Widget w, Font font) {
    Display *display = XtDisplay(w);
    const Window root = RootWindow(display, DefaultScreen(display));
    const Colours colours = widgetColours(w);
    for (const GcRecipe &recipe : kGcs) {
        XGCValues values = {};
        values.foreground = colours.*recipe.foreground;
        values.background = colours.*recipe.background;
        unsigned long mask = GCForeground | GCBackground;
        if (font != 0) {
            values.font = font;
            mask |= GCFont;
        }
        *recipe.gc = XCreateGC(display, root, mask, &values);
    }
}

/* The widget's own font list. Shells and managers have none: theirs is the font list
** they give their labels. */
void takeFontList(Widget w) {
    XmFontList list = nullptr;
    XtVaGetValues(w, XmNfontList, &list, nullptr);
    if (list == nullptr) XtVaGetValues(w, XmNlabelFontList, &list, nullptr);
    if (list == nullptr) {
        xc::trace(kTraceNoFontList, 0, "Widget %s has no font list", XtName(w));
        return;
    }
    fontlist = list;
}

struct PictureFile {
    const char *file;
    Pixmap *pixmap;
};

constexpr PictureFile kPictures[] = {
    {"up.bmp", &upPixmap},
    {"down.bmp", &downPixmap},
    {"combo.bmp", &comboPixmap},
};

void loadPictures() {
    for (const PictureFile &picture : kPictures) {
        char *path = PathHomeBuild("gui", "bmps", picture.file, nullptr);
        if (!GuiReadBmpFile(picture.pixmap, path))
            xc::trace(kTraceLoadFailed, 0, "Failed to load %s", path ? path : "(null)");
        MemFreeInternal(&path);
    }
}

} // namespace

extern "C" void GuiCreateGcsAndFonts(Widget w) {
    if (w == nullptr) {
        xc::trace(kTraceNoWidget, 0, "GuiCreateGcsAndFonts() without a widget");
        return;
    }
    xc::trace(kTraceCreate, 1, "GuiCreateGcsAndFonts()");
    createGcs(w, loadFont(XtDisplay(w)));
    takeFontList(w);
    loadPictures();
}
