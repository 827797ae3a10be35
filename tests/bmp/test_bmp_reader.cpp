/* test_bmp_reader.cpp - the BMP reader on real files (error codes, pixels read back from
** the server, the colours it allocates; every truncation of a good file, seeded mutations,
** the regression corpus) and the shared GCs, font list and button pictures, checked by
** what they draw. Runs at every screen depth and once with a bare font path (tests.cmake). */
#include "xharness.h" /* gtest before Xlib, whose macros clash with it */

#include <Xm/DrawingA.h>
#include <Xm/Label.h>
#include <X11/Xatom.h>
#include <X11/Xutil.h>
#include <dlfcn.h>
#include <fnmatch.h>
#include <xcb/xproto.h>

#include <algorithm>
#include <climits>
#include <filesystem>
#include <random>

#include "bmpdecode.h"
#include "bmpwrite.h"
#include "kx.h"
#include "xcontrols/guibmploader.h"
#include "xcontrols/guimakegcsandfonts.h"

namespace {
/* The colours the library asked the server for in the last read; optionally every
** allocation fails. */
struct AllocSpy {
    bool failing = false;
    std::vector<bmpw::Rgb> asked;
} gSpy;
template <typename Fn> Fn nextDefinition(Fn, const char *name) {
    return reinterpret_cast<Fn>(dlsym(RTLD_NEXT, name));
}
} // namespace

/* This program exports its own colour allocation request and reply (tests.cmake), which
** the library's calls reach instead of the X connection library's: they note the request
** or fail the reply, and otherwise forward to the real functions. */
extern "C" __attribute__((visibility("default"))) xcb_alloc_color_cookie_t
xcb_alloc_color(xcb_connection_t *c, xcb_colormap_t cmap, uint16_t r, uint16_t g, uint16_t b) {
    static const auto next = nextDefinition(&xcb_alloc_color, "xcb_alloc_color");
    gSpy.asked.push_back({uint8_t(r >> 8), uint8_t(g >> 8), uint8_t(b >> 8)});
    return next(c, cmap, r, g, b);
}
extern "C" __attribute__((visibility("default"))) xcb_alloc_color_reply_t *
xcb_alloc_color_reply(xcb_connection_t *c, xcb_alloc_color_cookie_t k, xcb_generic_error_t **e) {
    static const auto next = nextDefinition(&xcb_alloc_color_reply, "xcb_alloc_color_reply");
    xcb_alloc_color_reply_t *reply = next(c, k, e);
    if (!gSpy.failing) return reply;
    std::free(reply);
    return nullptr;
}

namespace {
namespace bmp = xc::bmp;

/* A private directory below the system's temporary directory, removed when it goes. */
struct TempDir {
    std::string pattern = std::filesystem::temp_directory_path() / "xcbmp-XXXXXX";
    const std::string path = mkdtemp(pattern.data());
    ~TempDir() {
        std::error_code ignored;
        std::filesystem::remove_all(path, ignored);
    }
    std::string file(const std::string &name) const { return path + "/" + name; }
};

unsigned long black() { return BlackPixel(xt::display(), DefaultScreen(xt::display())); }

/* A drawable as the server has it: size, depth and pixel values, row by row. */
struct Grab {
    unsigned width = 0, height = 0, depth = 0;
    std::vector<unsigned long> pixels;
    unsigned long at(unsigned x, unsigned y) const { return pixels.at(y * width + x); }
};
Grab grab(Drawable d) {
    Grab g;
    Window root;
    int x, y;
    unsigned border;
    XGetGeometry(xt::display(), d, &root, &x, &y, &g.width, &g.height, &border, &g.depth);
    XImage *image = XGetImage(xt::display(), d, 0, 0, g.width, g.height, AllPlanes, ZPixmap);
    for (y = 0; image != nullptr && y < int(g.height); ++y)
        for (x = 0; x < int(g.width); ++x) g.pixels.push_back(XGetPixel(image, x, y));
    if (image != nullptr) XDestroyImage(image);
    return g;
}

/* The pixel of a colour in the default colormap (after the reader took it, the same
** shared read-only cell). */
unsigned long pixelOf(bmpw::Rgb rgb) {
    Display *dpy = xt::display();
    const Colormap cmap = DefaultColormap(dpy, DefaultScreen(dpy));
    XColor c = {0, uint16_t(rgb.red << 8), uint16_t(rgb.green << 8), uint16_t(rgb.blue << 8),
                DoRed | DoGreen | DoBlue, 0};
    if (!XAllocColor(dpy, cmap, &c)) return black();
    XFreeColors(dpy, cmap, &c.pixel, 1, 0);
    return c.pixel;
}

/* The outcome of one read. */
struct Load {
    int32_t result, error;
    Pixmap pixmap;
};

/* A picture of w x h whose pixels cycle through indices 1 .. colours of distinct colours. */
bmpw::Indexed pattern(int32_t w, int32_t h, int colours = 6) {
    bmpw::Indexed pic(w, h);
    for (int i = 0; i < 256; ++i)
        pic.palette[size_t(i)] = {uint8_t(i * 37 + 11), uint8_t(255 - i), uint8_t(i * 101 + 3)};
    for (int32_t y = 0; y < h; ++y)
        for (int32_t x = 0; x < w; ++x) pic.at(x, y) = uint8_t(1 + (x * 3 + y * 5) % colours);
    return pic;
}
bool visualIs(int visualClass) {
    return DefaultVisual(xt::display(), DefaultScreen(xt::display()))->c_class == visualClass;
}

/* The reader has the test display; the pixmaps a test read are freed at its end. */
class BmpReader : public xt::XTest {
protected:
    static constexpr Pixmap kUntouched = 0x5eed;
    void SetUp() override {
        xt::XTest::SetUp();
        GuiInitLoadBmps(form());
    }
    void TearDown() override {
        for (Pixmap p : made_) XFreePixmap(xt::display(), p);
        gSpy = AllocSpy();
        xt::XTest::TearDown();
    }
    Load loadPath(const std::string &path) {
        Load load = {0, 0, kUntouched};
        gSpy.asked.clear();
        load.result = GuiReadBmpFile(&load.pixmap, path.c_str());
        load.error = ReadBmpErrno;
        if (load.result == 1 && load.pixmap != kUntouched) made_.push_back(load.pixmap);
        return load;
    }
    Load load(const std::vector<uint8_t> &bytes) {
        EXPECT_TRUE(bmpw::writeFile(dir.file("picture.bmp"), bytes));
        return loadPath(dir.file("picture.bmp"));
    }
    /* Every pixel of the pixmap against the picture's colours, up to the first wrong one. */
    void expectPicture(Pixmap pixmap, const bmpw::Indexed &pic) {
        const Grab got = grab(pixmap);
        ASSERT_EQ(got.width, unsigned(pic.width));
        ASSERT_EQ(got.height, unsigned(pic.height));
        std::vector<unsigned long> expected(256, ~0UL);
        for (size_t i = 0; i < got.pixels.size(); ++i) {
            const uint8_t index = pic.pixels[i];
            if (expected[index] == ~0UL) expected[index] = pixelOf(pic.palette[index]);
            ASSERT_EQ(got.pixels[i], expected[index])
                << "pixel " << i % got.width << "," << i / got.width << " index " << int(index);
        }
    }
    void expectRefused(const Load &got, int32_t code) {
        EXPECT_EQ(got.result, 0);
        EXPECT_EQ(got.error, code) << std::hex << got.error;
        EXPECT_EQ(got.pixmap, kUntouched);
        EXPECT_TRUE(gSpy.asked.empty()) << "colours allocated for a refused file";
    }
    /* Any outcome: a code and the pixmap untouched, or a pixmap of the header's size. */
    void expectConsistent(const Load &got, const std::vector<uint8_t> &bytes) {
        if (got.result == 0) {
            EXPECT_NE(got.error, 0);
            EXPECT_EQ(got.pixmap, kUntouched);
            return;
        }
        /* Loaded sides are at most 32767: two bytes each. */
        ASSERT_EQ(got.result, 1);
        EXPECT_EQ(got.error, 0);
        EXPECT_EQ(grab(got.pixmap).width, unsigned(bytes[18] | bytes[19] << 8));
        EXPECT_EQ(grab(got.pixmap).height, unsigned(bytes[22] | bytes[23] << 8));
    }
    const TempDir dir;

private:
    std::vector<Pixmap> made_;
};

/* A good file whose rows end in padding. */
bmpw::Indexed goodPicture() {
    bmpw::Indexed pic = pattern(7, 5, 35);
    pic.padding = 250;
    return pic;
}

TEST_F(BmpReader, HeadersAreCheckedFieldByFieldInOrder) {
    const bmpw::Indexed pic = pattern(4, 4);
    struct Patch {
        size_t offset, bytes;
        int64_t value;
    };
    const struct {
        std::vector<Patch> patches;
        int32_t code;
    } rows[] = {
        {{{1, 1, 'A'}}, bmp::kNotM}, {{{0, 1, 'A'}}, bmp::kNotB},
        {{{0, 1, 'X'}, {1, 1, 'Y'}, {28, 2, 24}, {30, 4, 1}}, bmp::kNotB}, /* first byte first */
        {{{28, 2, 24}, {30, 4, 1}}, bmp::kNot256Colours}, /* depth before compression */
        {{{28, 2, 1}}, bmp::kNot256Colours}, {{{28, 2, 4}}, bmp::kNot256Colours},
        {{{28, 2, 16}}, bmp::kNot256Colours}, {{{28, 2, 24}}, bmp::kNot256Colours},
        {{{28, 2, 32}}, bmp::kNot256Colours}, {{{30, 4, 1}}, bmp::kCompressed},
        {{{30, 4, 2}}, bmp::kCompressed},
        /* Sides X cannot take; a top-down file (negative height) is refused too. */
        {{{18, 4, 0}}, bmp::kNotB}, {{{18, 4, -4}}, bmp::kNotB}, {{{18, 4, INT_MIN}}, bmp::kNotB},
        {{{18, 4, 32768}}, bmp::kNotB}, {{{22, 4, 0}}, bmp::kNotB}, {{{22, 4, -4}}, bmp::kNotB},
        {{{22, 4, 32768}}, bmp::kNotB}, {{{22, 4, INT_MAX}}, bmp::kNotB},
        {{{18, 4, 32767}, {22, 4, 32767}}, bmp::kCannotRead}, /* a GiB that is not there */
        /* Sizes and offsets other than the sides are not trusted; success resets the code. */
        {{{2, 4, 99}, {10, 4, 2000}, {14, 4, 12}, {46, 4, 2}}, 0},
    };
    for (size_t row = 0; row < std::size(rows); ++row) {
        SCOPED_TRACE("row " + std::to_string(row));
        std::vector<uint8_t> bytes = bmpw::encode(pic);
        for (const Patch &p : rows[row].patches)
            for (size_t i = 0; i < p.bytes; ++i) bytes[p.offset + i] = uint8_t(p.value >> 8 * i);
        const Load got = load(bytes);
        if (rows[row].code != 0) {
            expectRefused(got, rows[row].code);
            continue;
        }
        ASSERT_EQ(got.result, 1);
        EXPECT_EQ(got.error, 0);
        expectPicture(got.pixmap, pic);
    }
}

TEST_F(BmpReader, FilesThatCannotBeOpenedOrReadAreTold) {
    const std::string missing = dir.file("none.bmp"), good = dir.file("good.bmp");
    ASSERT_TRUE(bmpw::writeFile(good, bmpw::encode(pattern(3, 3))));
    const struct {
        bool toPixmap;
        const char *path;
        int32_t code;
    } rows[] = {{true, missing.c_str(), bmp::kCannotOpen},
                {true, dir.path.c_str(), bmp::kCannotRead}, /* a directory opens, reads not */
                {true, nullptr, bmp::kCannotOpen},
                {false, good.c_str(), bmp::kCannotOpen}};
    for (size_t row = 0; row < std::size(rows); ++row) {
        Pixmap pixmap = kUntouched;
        EXPECT_EQ(GuiReadBmpFile(rows[row].toPixmap ? &pixmap : nullptr, rows[row].path), 0);
        EXPECT_EQ(ReadBmpErrno, rows[row].code) << "row " << row;
        EXPECT_EQ(pixmap, kUntouched) << "row " << row;
    }
}

TEST_F(BmpReader, UsedColoursAreAskedForInIndexOrderAndDrawnAtTheScreenDepth) {
    bmpw::Indexed pic = pattern(13, 9, 11); /* the file starts with index 8 */
    pic.at(12, 0) = 0;
    pic.palette[200] = {255, 0, 0};
    pic.padding = 200; /* neither counted nor drawn */
    const Load got = load(bmpw::encode(pic));
    ASSERT_EQ(got.result, 1);
    EXPECT_EQ(got.error, 0);
    EXPECT_EQ(grab(got.pixmap).depth, unsigned(DefaultDepth(xt::display(), 0)));
    expectPicture(got.pixmap, pic);
    /* TrueColor: no request per colour, only (on first use) the grey levels that teach the
    ** reader the colormap's channel tables. */
    const bool trueColour = visualIs(TrueColor);
    ASSERT_EQ(gSpy.asked.size(), trueColour ? 256u : 12u);
    for (size_t i = 0; i < gSpy.asked.size(); ++i) {
        const bmpw::Rgb want = trueColour ? bmpw::Rgb{uint8_t(i), uint8_t(i), uint8_t(i)}
                                          : pic.palette[i];
        EXPECT_TRUE(std::equal(&want.red, &want.red + 3, &gSpy.asked[i].red)) << "request " << i;
    }
}

TEST_F(BmpReader, TrueColourPixelsAreTheServersAndTheTablesAreLearnedOnce) {
    if (!visualIs(TrueColor)) GTEST_SKIP() << "needs a TrueColor default visual";
    bmpw::Indexed pic(16, 16); /* every level of every channel, in three orders */
    for (int i = 0; i < 256; ++i) {
        pic.palette[size_t(i)] = {uint8_t(i), uint8_t(255 - i), uint8_t((i * 7) & 0xff)};
        pic.pixels[size_t(i)] = uint8_t(i);
    }
    for (size_t requests : {256u, 0u}) {
        const Load got = load(bmpw::encode(pic));
        ASSERT_EQ(got.result, 1);
        EXPECT_EQ(gSpy.asked.size(), requests);
        expectPicture(got.pixmap, pic);
    }
}

TEST_F(BmpReader, FailedColourAllocationDrawsTheBlackPixel) {
    gSpy.failing = true;
    const Load got = load(bmpw::encode(pattern(6, 3)));
    ASSERT_EQ(got.result, 1);
    for (unsigned long pixel : grab(got.pixmap).pixels) ASSERT_EQ(pixel, black());
}

TEST_F(BmpReader, SizesAtTheLimitsAreReadFromTheFirstMebibyteOnly) {
    const bmpw::Indexed wide = pattern(32767, 1, 4);
    Load got = load(bmpw::encode(wide));
    ASSERT_EQ(got.result, 1);
    expectPicture(got.pixmap, wide);
    /* 1078 + 1024 x 1022 bytes fit in 1 MiB, 1078 + 1024 x 1023 do not. */
    const bmpw::Indexed fits = pattern(1024, 1022, 8);
    std::vector<uint8_t> bytes = bmpw::encode(fits);
    ASSERT_LE(bytes.size(), size_t(1) << 20);
    bytes.resize(size_t(3) << 19, 0xee); /* the file goes on for half a MiB more */
    got = load(bytes);
    ASSERT_EQ(got.result, 1);
    expectPicture(got.pixmap, fits);
    expectRefused(load(bmpw::encode(pattern(1024, 1023))), bmp::kCannotRead);
}

TEST_F(BmpReader, InitWithoutAWidgetKeepsTheDisplay) {
    GuiInitLoadBmps(nullptr);
    EXPECT_EQ(countTrace("GuiInitLoadBmps() without a widget"), 1);
    const bmpw::Indexed pic = pattern(3, 3);
    const Load got = load(bmpw::encode(pic));
    ASSERT_EQ(got.result, 1);
    expectPicture(got.pixmap, pic);
    GuiFilterDummy(); /* only writes its trace line */
    EXPECT_EQ(traces().back().text, "stop compiler bitch");
}

TEST_F(BmpReader, EveryTruncationOfAGoodFileIsRefusedAsUnreadable) {
    const bmpw::Indexed pic = goodPicture();
    const std::vector<uint8_t> whole = bmpw::encode(pic);
    for (size_t length = 0; length < whole.size(); ++length) {
        SCOPED_TRACE("length " + std::to_string(length));
        expectRefused(load(std::vector<uint8_t>(whole.begin(), whole.begin() + long(length))),
                      bmp::kCannotRead);
        if (HasFailure()) return;
    }
    const Load complete = load(whole);
    ASSERT_EQ(complete.result, 1);
    expectPicture(complete.pixmap, pic);
}

TEST_F(BmpReader, SeededMutationsNeverBreakTheReader) {
    const bmpw::Indexed pic = goodPicture();
    const std::vector<uint8_t> whole = bmpw::encode(pic);
    std::mt19937 random(20241122);
    int loaded = 0;
    for (int round = 0; round < 3000 && !HasFailure(); ++round) {
        SCOPED_TRACE("round " + std::to_string(round));
        std::vector<uint8_t> bytes = whole;
        bool headerTouched = false;
        for (int i = 0, changes = 1 + int(random() % 6); i < changes; ++i) {
            /* Half of the changes hit the 54 header bytes, where the decisions are. */
            const size_t at = random() % 2 ? random() % 54 : random() % bytes.size();
            const uint8_t value = random() % 4 ? uint8_t(random()) : random() % 2 ? 0 : 0xff;
            headerTouched |= at < 54 && bytes[at] != value;
            bytes[at] = value;
        }
        if (random() % 8 == 0) {
            bytes.resize(random() % (bytes.size() + 64), uint8_t(random()));
            headerTouched = true;
        }
        const Load got = load(bytes);
        expectConsistent(got, bytes);
        EXPECT_TRUE(headerTouched || got.result == 1) << "palette or pixel change refused";
        EXPECT_TRUE(bytes.empty() || bytes[0] == 'B' || got.error == bmp::kNotB);
        loaded += got.result;
    }
    EXPECT_GT(loaded, 300); /* the sweep reached both outcomes in numbers */
    EXPECT_LT(loaded, 2700);
}

TEST_F(BmpReader, CorpusFilesGiveTheCodeInTheirName) {
    /* Each file is named <what>.<expected code in hex>.bmp; 0 means it loads. */
    std::vector<std::filesystem::path> files;
    for (const auto &entry : std::filesystem::directory_iterator(XC_BMP_CORPUS))
        if (entry.path().extension() == ".bmp") files.push_back(entry.path());
    ASSERT_FALSE(files.empty());
    for (const std::filesystem::path &file : files) {
        SCOPED_TRACE(file.filename().string());
        const Load got = loadPath(file.string());
        EXPECT_EQ(got.error, std::stoi(file.stem().extension().string().substr(1), nullptr, 16));
        expectConsistent(got, bmpw::readFile(file.string()));
    }
}

constexpr const char *kFontPattern = "*helv*med*r*normal*12*";
GC *const kMadeGcs[] = {&gcTop, &gcBot, &gcBlack, &gcWhite, &gcTreeDisabled, &gcProgress};
Pixmap *const kPictures[] = {&upPixmap, &downPixmap, &comboPixmap};

class GcsAndFonts : public BmpReader {
protected:
    void SetUp() override {
        BmpReader::SetUp();
        label_ = XtVaCreateManagedWidget("label", xmLabelWidgetClass, form(), XtVaTypedArg,
                                         XmNbackground, XmRString, "#5f8fbf", 8, nullptr);
        GuiInitLoadBmps(label_);
    }
    void TearDown() override {
        freeMade();
        BmpReader::TearDown();
    }
    void freeMade() {
        for (GC *gc : kMadeGcs)
            if (*gc) XFreeGC(xt::display(), std::exchange(*gc, nullptr));
        for (Pixmap *p : kPictures)
            if (*p) XFreePixmap(xt::display(), std::exchange(*p, 0));
        fontlist = nullptr;
    }
    /* The widget's background and shadows as Motif derives them. */
    struct Colours {
        Pixel background, foreground, top, bottom, select;
    };
    Colours colours() const {
        Colours c = {};
        Colormap cmap = 0;
        XtVaGetValues(label_, XtNbackground, &c.background, XtNcolormap, &cmap, nullptr);
        XmGetColors(XtScreen(label_), cmap, c.background, &c.foreground, &c.top, &c.bottom,
                    &c.select);
        return c;
    }
    /* What the server draws with a GC: a filled pixel in its foreground, and the box of an
    ** image string (a space, in the GC's font) in its background. */
    static std::pair<unsigned long, unsigned long> drawn(GC gc) {
        Display *dpy = xt::display();
        const Pixmap canvas = XCreatePixmap(dpy, DefaultRootWindow(dpy), 32, 32,
                                            unsigned(DefaultDepth(dpy, 0)));
        XFillRectangle(dpy, canvas, gc, 0, 0, 1, 1);
        XDrawImageString(dpy, canvas, gc, 4, 24, " ", 1);
        const Grab g = grab(canvas);
        XFreePixmap(dpy, canvas);
        return {g.at(0, 0), g.at(5, 23)};
    }
    static std::string fontName(GC gc) {
        XFontStruct *font = XQueryFont(xt::display(), XGContextFromGC(gc)); /* the server's */
        unsigned long atom = 0;
        if (font == nullptr || !XGetFontProperty(font, XA_FONT, &atom)) return "";
        char *name = XGetAtomName(xt::display(), Atom(atom));
        const std::string result = name;
        XFree(name);
        XFreeFontInfo(nullptr, font, 1);
        return result;
    }
    Widget label_ = nullptr;
};

TEST_F(GcsAndFonts, SixGcsDrawInTheWidgetsColoursWithAFontOfThePattern) {
    GuiCreateGcsAndFonts(label_);
    EXPECT_EQ(countTrace("GuiCreateGcsAndFonts()"), 1);
    const Colours c = colours();
    const unsigned long white = WhitePixel(xt::display(), 0);
    const std::pair<unsigned long, unsigned long> expected[] = {
        {c.top, c.background}, {c.bottom, c.background}, {black(), c.background},
        {white, black()},      {c.select, black()},      {black(), c.background}};
    for (size_t i = 0; i < std::size(kMadeGcs); ++i) {
        ASSERT_NE(*kMadeGcs[i], nullptr) << "GC " << i;
        EXPECT_EQ(drawn(*kMadeGcs[i]), expected[i]) << "GC " << i;
        EXPECT_EQ(fnmatch(kFontPattern, fontName(*kMadeGcs[i]).c_str(), FNM_CASEFOLD), 0) << i;
    }
    for (GC gc : {gcInvert, gcWizzyScheduledJobs, gcWizzyRunningJobs, gcWizzyCompletedJobs})
        EXPECT_EQ(gc, nullptr) << "a GC of the client's was set";
    EXPECT_EQ(myDefaultFontList, nullptr);
}

TEST_F(GcsAndFonts, FontListIsTheWidgetsOwnOrItsLabelsOrLeftAsItWas) {
    const auto fontList = [](Widget w, const char *resource) {
        XmFontList list = nullptr;
        XtVaGetValues(w, resource, &list, nullptr);
        return list;
    };
    Widget area = XtVaCreateManagedWidget("area", xmDrawingAreaWidgetClass, form(), nullptr);
    const XmFontList own = fontList(label_, XmNfontList);
    /* Shells and managers have no font list of their own: the one of their labels. */
    const struct {
        Widget widget;
        XmFontList before, after;
    } rows[] = {{label_, nullptr, own},
                {shell(), nullptr, fontList(shell(), XmNlabelFontList)},
                {form(), nullptr, fontList(form(), XmNlabelFontList)},
                {area, own, own}};
    for (const auto &row : rows) {
        fontlist = row.before;
        GuiCreateGcsAndFonts(row.widget);
        EXPECT_NE(row.after, nullptr) << XtName(row.widget);
        EXPECT_EQ(fontlist, row.after) << XtName(row.widget);
        for (GC *gc : kMadeGcs) EXPECT_NE(*gc, nullptr) << XtName(row.widget);
        freeMade();
    }
    EXPECT_EQ(countTrace("Widget area has no font list"), 1);
    EXPECT_FALSE(hasTraceContaining("shell has") || hasTraceContaining("form has"));
}

TEST_F(GcsAndFonts, ThreeArrowPicturesComeFromTheHomeDirectory) {
    GuiCreateGcsAndFonts(label_);
    EXPECT_FALSE(hasTraceContaining("Failed to load"));
    const unsigned long grey = pixelOf({0xc4, 0xc4, 0xc4});
    /* An up arrow is wide at the bottom, a down arrow at the top. */
    const struct {
        Pixmap pixmap;
        unsigned width, height, blackX, blackY, greyX, greyY;
    } rows[] = {{upPixmap, 11, 7, 1, 5, 1, 1},
                {downPixmap, 11, 7, 1, 1, 1, 5},
                {comboPixmap, 10, 10, 4, 7, 9, 9}};
    for (const auto &row : rows) {
        const Grab g = grab(row.pixmap);
        ASSERT_EQ(g.pixels.size(), row.width * row.height) << row.width;
        EXPECT_EQ(g.depth, unsigned(DefaultDepth(xt::display(), 0))) << row.width;
        EXPECT_EQ(g.at(0, 0), grey);
        EXPECT_EQ(g.at(row.blackX, row.blackY), black()) << row.blackX << "," << row.blackY;
        EXPECT_EQ(g.at(row.greyX, row.greyY), grey) << row.greyX << "," << row.greyY;
    }
}

TEST_F(GcsAndFonts, MissingPicturesAreTracedAndOnlyTheyStayZero) {
    const std::string savedHome = std::getenv("KX_HOME") ? std::getenv("KX_HOME") : "";
    for (bool someThere : {false, true}) {
        const TempDir home;
        const std::string bmps = home.path + "/gui/bmps/";
        std::filesystem::create_directories(bmps);
        for (const char *name : {"up.bmp", "combo.bmp"}) {
            char *from = PathHomeBuild("gui", "bmps", name, nullptr);
            if (someThere) std::filesystem::copy_file(from, bmps + name);
            MemFreeInternal(&from);
        }
        setenv("KX_HOME", home.path.c_str(), 1);
        GuiCreateGcsAndFonts(label_);
        setenv("KX_HOME", savedHome.c_str(), 1);
        const struct {
            Pixmap pixmap;
            const char *name;
            bool there;
        } rows[] = {{upPixmap, "up.bmp", someThere},
                    {downPixmap, "down.bmp", false},
                    {comboPixmap, "combo.bmp", someThere}};
        for (const auto &row : rows) {
            EXPECT_EQ(row.pixmap != 0, row.there) << row.name;
            EXPECT_EQ(countTrace("Failed to load " + bmps + row.name), row.there ? 0 : 1);
        }
        for (GC *gc : kMadeGcs) EXPECT_NE(*gc, nullptr);
        EXPECT_NE(fontlist, nullptr);
        EXPECT_EQ(ReadBmpErrno, someThere ? 0 : bmp::kCannotOpen); /* the last picture's */
        freeMade();
        clearTraces();
    }
}

TEST_F(GcsAndFonts, NullWidgetMakesNothing) {
    GuiCreateGcsAndFonts(nullptr);
    EXPECT_EQ(countTrace("GuiCreateGcsAndFonts() without a widget"), 1);
    for (GC *gc : kMadeGcs) EXPECT_EQ(*gc, nullptr);
    for (Pixmap *p : kPictures) EXPECT_EQ(*p, Pixmap(0));
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
    GuiCreateGcsAndFonts(label_);
    XSetFontPath(dpy, saved, count);
    XFreeFontPath(saved);
    EXPECT_EQ(countTrace(std::string("No font matches ") + kFontPattern + ", using the default font"), 1);
    EXPECT_EQ(drawn(gcWhite), std::make_pair(WhitePixel(dpy, 0), black()));
    for (GC *gc : kMadeGcs) {
        XGCValues values;
        ASSERT_TRUE(XGetGCValues(dpy, *gc, GCFont, &values));
        EXPECT_EQ(values.font, ~0UL) << "a font was given to the GC";
    }
}

} // namespace
