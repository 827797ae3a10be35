/* test_bmp_reader.cpp - the BMP reader on real files (error codes, pixels read back from
** the server, the colours it asks for; every truncation, seeded mutations, the corpus) and
** the shared GCs, font list and button pictures, checked by their values and pixels. */
#include "xharness.h" /* gtest before Xlib, whose macros clash with it */
#include <Xm/DrawingA.h>
#include <Xm/Label.h>
#include <X11/Xutil.h>
#include <dlfcn.h>
#include <xcb/xproto.h>
#include <filesystem>
#include <random>
#include "bmpdecode.h"
#include "bmpwrite.h"
#include "xcontrols/guibmploader.h"
#include "xcontrols/guimakegcsandfonts.h"

/* The colour replies the library took in the last read; gFailColours fails each one. */
static size_t gReplies = 0;
static bool gFailColours = false;

/* This program exports its own colour allocation reply (tests.cmake), which the library's
** calls reach instead of the X connection library's: it counts the reply or fails it. */
extern "C" __attribute__((visibility("default"))) xcb_alloc_color_reply_t *
xcb_alloc_color_reply(xcb_connection_t *c, xcb_alloc_color_cookie_t k, xcb_generic_error_t **e) {
    static const auto next = reinterpret_cast<decltype(&xcb_alloc_color_reply)>(
        dlsym(RTLD_NEXT, "xcb_alloc_color_reply"));
    ++gReplies;
    xcb_alloc_color_reply_t *reply = next(c, k, e);
    if (!gFailColours) return reply;
    std::free(reply);
    return nullptr;
}

namespace {
namespace bmp = xc::bmp;

unsigned long black() { return BlackPixel(xt::display(), DefaultScreen(xt::display())); }
/* A drawable as the server has it: size and pixel values, row by row. */
struct Grab {
    unsigned width = 0, height = 0;
    std::vector<unsigned long> pixels;
    unsigned long at(unsigned x, unsigned y) const { return pixels.at(y * width + x); }
};
Grab grab(Drawable d) {
    Grab g;
    Window root;
    int x, y;
    unsigned border, depth;
    XGetGeometry(xt::display(), d, &root, &x, &y, &g.width, &g.height, &border, &depth);
    XImage *image = XGetImage(xt::display(), d, 0, 0, g.width, g.height, AllPlanes, ZPixmap);
    for (y = 0; image != nullptr && y < int(g.height); ++y)
        for (x = 0; x < int(g.width); ++x) g.pixels.push_back(XGetPixel(image, x, y));
    if (image != nullptr) XDestroyImage(image);
    return g;
}
/* The pixel of a colour in the default colormap (the reader's shared read-only cell). */
unsigned long pixelOf(bmpw::Rgb rgb) {
    Display *dpy = xt::display();
    const Colormap cmap = DefaultColormap(dpy, DefaultScreen(dpy));
    XColor c = {0, uint16_t(rgb.red << 8), uint16_t(rgb.green << 8), uint16_t(rgb.blue << 8),
                DoRed | DoGreen | DoBlue, 0};
    if (!XAllocColor(dpy, cmap, &c)) return black();
    XFreeColors(dpy, cmap, &c.pixel, 1, 0);
    return c.pixel;
}
/* A picture of w x h whose pixels cycle through indices 1 .. colours of distinct colours;
** with odd padding bytes, which are neither counted nor drawn. */
bmpw::Indexed pattern(int32_t w, int32_t h, int colours = 6) {
    bmpw::Indexed pic(w, h);
    for (int i = 0; i < 256; ++i)
        pic.palette[size_t(i)] = {uint8_t(i * 37 + 11), uint8_t(255 - i), uint8_t(i * 101 + 3)};
    for (int32_t y = 0; y < h; ++y)
        for (int32_t x = 0; x < w; ++x) pic.at(x, y) = uint8_t(1 + (x * 3 + y * 5) % colours);
    pic.padding = 250;
    return pic;
}
GC *const kMadeGcs[] = {&gcTop, &gcBot, &gcBlack, &gcWhite, &gcTreeDisabled, &gcProgress};

struct Load { int32_t result, error; Pixmap pixmap; }; /* the outcome of one read */

/* The reader has the test display and a label of a known background; the pixmaps read and
** the shared resources made are freed at the end. */
class BmpReader : public xt::XTest {
protected:
    static constexpr Pixmap kUntouched = 0x5eed;
    void SetUp() override {
        xt::XTest::SetUp();
        GuiInitLoadBmps(form());
        label_ = XtVaCreateManagedWidget("label", xmLabelWidgetClass, form(), XtVaTypedArg,
                                         XmNbackground, XmRString, "#5f8fbf", 8, nullptr);
    }
    void TearDown() override {
        freeMade();
        for (Pixmap p : made_) XFreePixmap(xt::display(), p);
        std::filesystem::remove_all(dir);
        gFailColours = false;
        xt::XTest::TearDown();
    }
    Load loadPath(const std::string &path) {
        Load load = {0, 0, kUntouched};
        gReplies = 0;
        load.result = GuiReadBmpFile(&load.pixmap, path.c_str());
        load.error = ReadBmpErrno;
        if (load.result == 1 && load.pixmap != kUntouched) made_.push_back(load.pixmap);
        return load;
    }
    Load load(const std::vector<uint8_t> &bytes) {
        EXPECT_TRUE(bmpw::writeFile(dir + "/picture.bmp", bytes));
        return loadPath(dir + "/picture.bmp");
    }
    /* A successful read, every pixel against the picture's colours up to the first wrong one. */
    void expectPicture(const Load &got, const bmpw::Indexed &pic) {
        ASSERT_EQ(got.result, 1);
        EXPECT_EQ(got.error, 0);
        const Grab g = grab(got.pixmap);
        ASSERT_EQ(g.width, unsigned(pic.width));
        ASSERT_EQ(g.height, unsigned(pic.height));
        std::vector<unsigned long> expected(256, ~0UL);
        for (size_t i = 0; i < g.pixels.size(); ++i) {
            const uint8_t index = pic.pixels[i];
            if (expected[index] == ~0UL) expected[index] = pixelOf(pic.palette[index]);
            ASSERT_EQ(g.pixels[i], expected[index])
                << "pixel " << i % g.width << "," << i / g.width << " index " << int(index);
        }
    }
    void expectRefused(const Load &got, int32_t code) {
        EXPECT_EQ(got.result, 0);
        EXPECT_EQ(got.error, code) << std::hex << got.error;
        EXPECT_EQ(got.pixmap, kUntouched);
        EXPECT_EQ(gReplies, 0u) << "colours allocated for a refused file";
    }
    /* Any outcome: refused as above, or a pixmap of the header's size. */
    void expectConsistent(const Load &got, const std::vector<uint8_t> &bytes) {
        if (got.result == 0) return expectRefused(got, got.error);
        EXPECT_EQ(grab(got.pixmap).width, unsigned(bytes[18] | bytes[19] << 8)); /* <= 32767 */
        EXPECT_EQ(grab(got.pixmap).height, unsigned(bytes[22] | bytes[23] << 8));
    }
    void freeMade() {
        for (GC *gc : kMadeGcs)
            if (*gc) XFreeGC(xt::display(), std::exchange(*gc, nullptr));
        for (Pixmap *p : {&upPixmap, &downPixmap, &comboPixmap})
            if (*p) XFreePixmap(xt::display(), std::exchange(*p, 0));
        fontlist = nullptr;
    }
    static XGCValues values(GC gc) {
        XGCValues v = {};
        EXPECT_TRUE(XGetGCValues(xt::display(), gc, GCForeground | GCBackground | GCFont, &v));
        return v;
    }
    Widget label_ = nullptr;
    std::string dirPattern_ = std::filesystem::temp_directory_path() / "xcbmp-XXXXXX";
    const std::string dir = mkdtemp(dirPattern_.data()); /* private, removed at the end */
    std::vector<Pixmap> made_;
};

/* The corpus has a file per refusal code, a zero width and a top-down file; these are the rest. */
TEST_F(BmpReader, HeadersAreCheckedFieldByFieldInOrder) {
    const bmpw::Indexed pic = pattern(4, 4);
    struct Patch { size_t offset, bytes; int64_t value; };
    const struct { std::vector<Patch> patches; int32_t code; } rows[] = {
        {{{0, 1, 'X'}, {1, 1, 'Y'}, {28, 2, 24}, {30, 4, 1}}, bmp::kNotB}, /* first byte first */
        {{{28, 2, 24}, {30, 4, 1}}, bmp::kNot256Colours}, /* depth before compression */
        {{{18, 4, 32768}}, bmp::kNotB}, {{{22, 4, 0}}, bmp::kNotB}, /* sides X cannot take */
        {{{22, 4, 32768}}, bmp::kNotB},
        {{{18, 4, 32767}, {22, 4, 32767}}, bmp::kCannotRead}, /* a GiB that is not there */
        /* Sizes and offsets other than the sides are not trusted; success resets the code. */
        {{{2, 4, 99}, {10, 4, 2000}, {14, 4, 12}, {46, 4, 2}}, 0},
    };
    for (size_t row = 0; row < std::size(rows); ++row) {
        SCOPED_TRACE("row " + std::to_string(row));
        std::vector<uint8_t> bytes = bmpw::encode(pic);
        for (const Patch &p : rows[row].patches)
            for (size_t i = 0; i < p.bytes; ++i) bytes[p.offset + i] = uint8_t(p.value >> 8 * i);
        if (rows[row].code != 0)
            expectRefused(load(bytes), rows[row].code);
        else
            expectPicture(load(bytes), pic);
    }
}

TEST_F(BmpReader, FilesThatCannotBeOpenedOrReadAreTold) {
    expectRefused(loadPath(dir + "/none.bmp"), bmp::kCannotOpen);
    expectRefused(loadPath(dir), bmp::kCannotRead); /* a directory opens, reads not */
    Pixmap pixmap = kUntouched;
    EXPECT_EQ(GuiReadBmpFile(&pixmap, nullptr), 0);
    EXPECT_EQ(GuiReadBmpFile(nullptr, XC_BMP_CORPUS "/good-7x5.0.bmp"), 0);
    EXPECT_EQ(ReadBmpErrno, bmp::kCannotOpen);
    EXPECT_EQ(pixmap, kUntouched);
}

/* TrueColor: only (once) the 256 grey levels that teach the reader the channel tables;
** otherwise one request per colour in use. A colour the server refuses is drawn black. */
TEST_F(BmpReader, OnlyUsedColoursAreAskedForAndRefusedOnesDrawBlack) {
    bmpw::Indexed pic = pattern(13, 9, 11);
    pic.at(12, 0) = 0;
    const bool trueColour =
        DefaultVisual(xt::display(), DefaultScreen(xt::display()))->c_class == TrueColor;
    for (size_t replies : {trueColour ? 256u : 12u, trueColour ? 0u : 12u}) {
        const Load got = load(bmpw::encode(pic));
        EXPECT_EQ(gReplies, replies);
        expectPicture(got, pic);
    }
    gFailColours = true;
    GuiInitLoadBmps(form()); /* forgets the tables */
    for (unsigned long pixel : grab(load(bmpw::encode(pic)).pixmap).pixels)
        ASSERT_EQ(pixel, black());
}

TEST_F(BmpReader, SizesAtTheLimitsAreReadFromTheFirstMebibyteOnly) {
    expectPicture(load(bmpw::encode(pattern(32767, 1, 4))), pattern(32767, 1, 4));
    /* 1078 + 1024 x 1022 bytes fit in 1 MiB, 1078 + 1024 x 1023 do not. */
    const bmpw::Indexed fits = pattern(1024, 1022, 8);
    std::vector<uint8_t> bytes = bmpw::encode(fits);
    bytes.resize(size_t(3) << 19, 0xee); /* the file goes on for half a MiB more */
    expectPicture(load(bytes), fits);
    expectRefused(load(bmpw::encode(pattern(1024, 1023))), bmp::kCannotRead);
}

/* Corpus files give the code in their name (<what>.<code in hex>.bmp, 0: loads). Every
** truncation of a good file is refused as unreadable; seeded mutations of it give a code or
** a picture of the header's size, and never refuse a palette or pixel change. */
TEST_F(BmpReader, CorpusAndBrokenFilesNeverBreakTheReader) {
    for (const auto &entry : std::filesystem::directory_iterator(XC_BMP_CORPUS)) {
        if (entry.path().extension() != ".bmp") continue;
        SCOPED_TRACE(entry.path().filename().string());
        const Load got = loadPath(entry.path().string());
        EXPECT_EQ(got.error, std::stoi(entry.path().stem().extension().string().substr(1),
                                       nullptr, 16));
        expectConsistent(got, bmpw::readFile(entry.path().string()));
    }
    const bmpw::Indexed pic = pattern(7, 5, 35);
    const std::vector<uint8_t> whole = bmpw::encode(pic);
    for (size_t length = 0; length < whole.size() && !HasFailure(); ++length) {
        SCOPED_TRACE("length " + std::to_string(length));
        expectRefused(load(std::vector<uint8_t>(whole.begin(), whole.begin() + long(length))),
                      bmp::kCannotRead);
    }
    expectPicture(load(whole), pic);
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
        EXPECT_TRUE(headerTouched || got.result == 1);
        EXPECT_TRUE(bytes.empty() || bytes[0] == 'B' || got.error == bmp::kNotB);
        loaded += got.result;
    }
    EXPECT_GT(loaded, 300); /* the sweep reached both outcomes in numbers */
    EXPECT_LT(loaded, 2700);
}

TEST_F(BmpReader, GcsHaveTheWidgetsColoursAndAFontAndArrowPicturesComeFromHome) {
    GuiCreateGcsAndFonts(nullptr);
    EXPECT_EQ(countTrace("GuiCreateGcsAndFonts() without a widget"), 1);
    EXPECT_EQ(gcTop, nullptr);
    GuiCreateGcsAndFonts(label_);
    Pixel bg = 0, fg, top, bottom, select;
    Colormap cmap = 0;
    XtVaGetValues(label_, XtNbackground, &bg, XtNcolormap, &cmap, nullptr);
    XmGetColors(XtScreen(label_), cmap, bg, &fg, &top, &bottom, &select);
    const unsigned long white = WhitePixel(xt::display(), 0), colours[][2] = {
        {top, bg}, {bottom, bg}, {black(), bg}, {white, black()}, {select, black()}, {black(), bg}};
    for (size_t i = 0; i < std::size(kMadeGcs); ++i) {
        const XGCValues v = values(*kMadeGcs[i]);
        EXPECT_EQ(v.foreground, colours[i][0]) << "GC " << i;
        EXPECT_EQ(v.background, colours[i][1]) << "GC " << i;
        EXPECT_NE(v.font, ~0UL) << "no font in GC " << i; /* none: the server's default */
    }
    /* An up arrow is wide at the bottom, a down arrow at the top. */
    const struct { Pixmap pixmap; unsigned width, height, blackX, blackY; } rows[] = {
        {upPixmap, 11, 7, 1, 5}, {downPixmap, 11, 7, 1, 1}, {comboPixmap, 10, 10, 4, 7}};
    for (const auto &row : rows) {
        const Grab g = grab(row.pixmap);
        ASSERT_EQ(g.pixels.size(), row.width * row.height) << row.width;
        EXPECT_EQ(g.at(row.blackX, row.blackY), black()) << row.blackX << "," << row.blackY;
        EXPECT_NE(g.at(0, 0), black());
    }
    /* Missing pictures are traced and stay 0; the rest is made all the same. */
    freeMade();
    const std::string savedHome = std::getenv("KX_HOME") ? std::getenv("KX_HOME") : "";
    setenv("KX_HOME", dir.c_str(), 1);
    GuiCreateGcsAndFonts(label_);
    setenv("KX_HOME", savedHome.c_str(), 1);
    for (const char *name : {"up", "down", "combo"})
        EXPECT_EQ(countTrace("Failed to load " + dir + "/gui/bmps/" + name + ".bmp"), 1);
    EXPECT_EQ(upPixmap | downPixmap | comboPixmap, Pixmap(0));
    EXPECT_EQ(ReadBmpErrno, bmp::kCannotOpen);
    EXPECT_TRUE(gcTop != nullptr && fontlist != nullptr);
}

/* Shells and managers have no font list of their own: the one of their labels. */
TEST_F(BmpReader, FontListIsTheWidgetsOwnOrItsLabelsOrLeftAsItWas) {
    Widget area = XtVaCreateManagedWidget("area", xmDrawingAreaWidgetClass, form(), nullptr);
    XmFontList own = nullptr, shells = nullptr;
    XtVaGetValues(label_, XmNfontList, &own, nullptr);
    XtVaGetValues(shell(), XmNlabelFontList, &shells, nullptr);
    const struct { Widget widget; XmFontList before, after; } rows[] = {
        {label_, nullptr, own}, {shell(), nullptr, shells}, {area, own, own}};
    for (const auto &row : rows) {
        fontlist = row.before;
        GuiCreateGcsAndFonts(row.widget);
        EXPECT_NE(row.after, nullptr) << XtName(row.widget);
        EXPECT_EQ(fontlist, row.after) << XtName(row.widget);
        freeMade();
    }
    EXPECT_EQ(countTrace("Widget area has no font list"), 1);
    EXPECT_FALSE(hasTraceContaining("shell has"));
}

/* Runs only on a server of its own (tests.cmake), since it changes the font path. */
TEST_F(BmpReader, WithoutAMatchingFontTheGcsKeepTheDefaultFont) {
    if (!std::getenv("XC_TEST_OWN_SERVER")) GTEST_SKIP() << "changes the server's font path";
    Display *dpy = xt::display();
    int count = 0;
    char **saved = XGetFontPath(dpy, &count);
    char builtIns[] = "built-ins", *onlyBuiltIns[] = {builtIns};
    XSetFontPath(dpy, onlyBuiltIns, 1);
    GuiCreateGcsAndFonts(label_);
    XSetFontPath(dpy, saved, count);
    XFreeFontPath(saved);
    EXPECT_TRUE(hasTraceContaining("No font matches"));
    for (GC *gc : kMadeGcs) EXPECT_EQ(values(*gc).font, ~0UL) << "a font was given to the GC";
}

} // namespace
