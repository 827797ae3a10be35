/* test_bmp_reader.cpp - the BMP reader on real files: error codes, pixels read back from
** the server, and the colours it allocates. Runs at every screen depth (tests.cmake). */
#include "bmptest.h"

#include <dlfcn.h>
#include <xcb/xproto.h>

#include <climits>

namespace {

/* The colours the library asks the server to allocate, in the order asked; optionally
** every allocation fails. */
struct AllocSpy {
    bool recording = false;
    bool failing = false;
    std::vector<bmpw::Rgb> asked;
};
AllocSpy gSpy;

template <typename Fn>
Fn nextDefinition(const char *name) {
    return reinterpret_cast<Fn>(dlsym(RTLD_NEXT, name));
}

} // namespace

/* This program exports its own colour allocation request and reply functions
** (tests.cmake; visible despite the hidden default), which the library's calls reach
** instead of the X connection library's: they note the request, or turn the reply
** into a failure, and otherwise forward to the real functions. */
extern "C" __attribute__((visibility("default"))) xcb_alloc_color_cookie_t
xcb_alloc_color(xcb_connection_t *c, xcb_colormap_t cmap, uint16_t red, uint16_t green,
                uint16_t blue) {
    using Fn = xcb_alloc_color_cookie_t (*)(xcb_connection_t *, xcb_colormap_t, uint16_t,
                                            uint16_t, uint16_t);
    static const Fn real = nextDefinition<Fn>("xcb_alloc_color");
    if (gSpy.recording)
        gSpy.asked.push_back({uint8_t(red >> 8), uint8_t(green >> 8), uint8_t(blue >> 8)});
    return real(c, cmap, red, green, blue);
}

extern "C" __attribute__((visibility("default"))) xcb_alloc_color_reply_t *
xcb_alloc_color_reply(xcb_connection_t *c, xcb_alloc_color_cookie_t cookie,
                      xcb_generic_error_t **e) {
    using Fn = xcb_alloc_color_reply_t *(*)(xcb_connection_t *, xcb_alloc_color_cookie_t,
                                            xcb_generic_error_t **);
    static const Fn real = nextDefinition<Fn>("xcb_alloc_color_reply");
    xcb_alloc_color_reply_t *reply = real(c, cookie, e);
    if (gSpy.failing) {
        std::free(reply);
        reply = nullptr;
    }
    return reply;
}

namespace {

using bmpt::Load;

constexpr int32_t kCannotOpen = 0x80001;
constexpr int32_t kCannotRead = 0x80002;
constexpr int32_t kNotB = 0x80003;
constexpr int32_t kNotM = 0x80004;
constexpr int32_t kNot256 = 0x80005;
constexpr int32_t kRle = 0x80006;

bool sameRgb(bmpw::Rgb a, bmpw::Rgb b) {
    return a.red == b.red && a.green == b.green && a.blue == b.blue;
}

/* A picture of `w` x `h` whose pixels cycle through palette indices 1 .. colours. */
bmpw::Indexed pattern(int32_t w, int32_t h, int colours = 6) {
    bmpw::Indexed pic(w, h);
    bmpt::distinctPalette(pic);
    for (int32_t y = 0; y < h; ++y)
        for (int32_t x = 0; x < w; ++x) pic.at(x, y) = uint8_t(1 + (x * 3 + y * 5) % colours);
    return pic;
}

/* A genuine uncompressed 24-bit file: no palette, three bytes per pixel. */
std::vector<uint8_t> trueColourFile(int32_t w, int32_t h) {
    const uint32_t rowBytes = (uint32_t(w) * 3 + 3) & ~3u;
    std::vector<uint8_t> out(54 + size_t(rowBytes) * size_t(h), 0x7f);
    out[0] = 'B';
    out[1] = 'M';
    bmpw::put32(out, 2, uint32_t(out.size()));
    bmpw::put32(out, 6, 0);
    bmpw::put32(out, 10, 54);
    bmpw::put32(out, 14, 40);
    bmpw::put32(out, 18, uint32_t(w));
    bmpw::put32(out, 22, uint32_t(h));
    bmpw::put16(out, 26, 1);
    bmpw::put16(out, 28, 24);
    bmpw::put32(out, 30, 0);
    bmpw::put32(out, 34, rowBytes * uint32_t(h));
    for (size_t i = 38; i < 54; ++i) out[i] = 0;
    return out;
}

/* A genuine 8-bit run-length encoded file: each row one run of index 1. */
std::vector<uint8_t> rleFile(int32_t w, int32_t h) {
    std::vector<uint8_t> out = bmpw::encode(pattern(w, h));
    out.resize(1078);
    for (int32_t y = 0; y < h; ++y) out.insert(out.end(), {uint8_t(w), 1, 0, 0});
    out.insert(out.end(), {0, 1});
    bmpw::put32(out, 30, 1);
    bmpw::put32(out, 34, uint32_t(out.size() - 1078));
    bmpw::put32(out, 2, uint32_t(out.size()));
    return out;
}

class BmpReader : public bmpt::BmpTest {
protected:
    void TearDown() override {
        gSpy = AllocSpy();
        bmpt::BmpTest::TearDown();
    }

    /* A read with the colour requests watched. */
    Load loadWatched(const std::vector<uint8_t> &bytes) {
        gSpy.asked.clear();
        gSpy.recording = true;
        Load result = load(bytes);
        gSpy.recording = false;
        return result;
    }

    /* The colour requests of the last watched read: on a visual with allocatable cells
    ** exactly `expected`, in order; on TrueColor none per colour (at most the grey
    ** levels with which the reader learns the colormap's fixed channel tables). */
    void expectColourRequests(const std::vector<bmpw::Rgb> &expected) {
        if (!trueColour()) {
            ASSERT_EQ(gSpy.asked.size(), expected.size());
            for (size_t i = 0; i < expected.size(); ++i)
                EXPECT_TRUE(sameRgb(gSpy.asked[i], expected[i])) << "request " << i;
            return;
        }
        EXPECT_TRUE(gSpy.asked.empty() || gSpy.asked.size() == 256);
        for (const bmpw::Rgb &rgb : gSpy.asked)
            EXPECT_TRUE(rgb.red == rgb.green && rgb.green == rgb.blue) << "a colour was requested";
    }

    static bool trueColour() {
        Display *dpy = xt::display();
        return DefaultVisual(dpy, DefaultScreen(dpy))->c_class == TrueColor;
    }

    void expectRefused(const std::vector<uint8_t> &bytes, int32_t code, const char *what) {
        const Load got = loadWatched(bytes);
        EXPECT_EQ(got.result, 0) << what;
        EXPECT_EQ(got.error, code) << what << ": code 0x" << std::hex << got.error;
        EXPECT_EQ(got.pixmap, kUntouched) << what;
        EXPECT_TRUE(gSpy.asked.empty()) << what << ": colours allocated for a refused file";
    }
};

TEST_F(BmpReader, MessageTableHoldsTheSixCodesInOrder) {
    const ReadBmpErrnoMsg expected[] = {
        {kCannotOpen, "Cannot open file"}, {kCannotRead, "Cannot read file"},
        {kNotB, "Not a BMP file"},         {kNotM, "Not a BMP file"},
        {kNot256, "Not a 256 Color BMP"},  {kRle, "Cannot cope with RLE BMP"},
    };
    for (size_t i = 0; i < 6; ++i) {
        EXPECT_EQ(ReadBmpErrnoMsgs[i].code, expected[i].code) << "row " << i;
        ASSERT_NE(ReadBmpErrnoMsgs[i].message, nullptr) << "row " << i;
        EXPECT_STREQ(ReadBmpErrnoMsgs[i].message, expected[i].message) << "row " << i;
    }
    EXPECT_EQ(ReadBmpErrnoMsgs[6].code, 0);
    EXPECT_EQ(ReadBmpErrnoMsgs[6].message, nullptr);
}

TEST_F(BmpReader, SignatureIsTestedByteByByteBeforeAnythingElse) {
    std::vector<uint8_t> ba = bmpw::encode(pattern(4, 4));
    ba[1] = 'A';
    expectRefused(ba, kNotM, "\"BA\"");

    std::vector<uint8_t> am = bmpw::encode(pattern(4, 4));
    am[0] = 'A';
    expectRefused(am, kNotB, "\"AM\"");

    /* A bad first byte wins over a bad second byte, depth and compression. */
    std::vector<uint8_t> allBad = trueColourFile(4, 4);
    allBad[0] = 'X';
    allBad[1] = 'Y';
    bmpw::put32(allBad, 30, 1);
    expectRefused(allBad, kNotB, "\"XY\", 24 bits, compressed");
}

TEST_F(BmpReader, OnlyUncompressedEightBitFilesAreTaken) {
    expectRefused(trueColourFile(5, 3), kNot256, "24-bit uncompressed");
    expectRefused(rleFile(5, 3), kRle, "8-bit RLE");

    std::vector<uint8_t> rle4 = rleFile(5, 3);
    bmpw::put32(rle4, 30, 2);
    expectRefused(rle4, kRle, "8-bit with compression 2");

    /* Depth is tested before compression. */
    std::vector<uint8_t> compressed24 = trueColourFile(5, 3);
    bmpw::put32(compressed24, 30, 1);
    expectRefused(compressed24, kNot256, "24-bit compressed");

    for (uint16_t bits : {1, 4, 16, 32}) {
        std::vector<uint8_t> other = bmpw::encode(pattern(5, 3));
        bmpw::put16(other, 28, bits);
        expectRefused(other, kNot256, "other depth");
    }
}

TEST_F(BmpReader, FilesThatCannotBeOpenedOrReadAreTold) {
    Load missing = loadPath(dir().file("no-such-file.bmp"));
    EXPECT_EQ(missing.result, 0);
    EXPECT_EQ(missing.error, kCannotOpen);
    EXPECT_EQ(missing.pixmap, kUntouched);

    /* A directory opens but does not read. */
    Load directory = loadPath(dir().path());
    EXPECT_EQ(directory.result, 0);
    EXPECT_EQ(directory.error, kCannotRead);
    EXPECT_EQ(directory.pixmap, kUntouched);

    Pixmap pixmap = kUntouched;
    EXPECT_EQ(GuiReadBmpFile(&pixmap, nullptr), 0);
    EXPECT_EQ(ReadBmpErrno, kCannotOpen);
    EXPECT_EQ(pixmap, kUntouched);

    const std::string good = dir().file("good.bmp");
    ASSERT_TRUE(bmpw::writeFile(good, bmpw::encode(pattern(3, 3))));
    EXPECT_EQ(GuiReadBmpFile(nullptr, good.c_str()), 0);
    EXPECT_EQ(ReadBmpErrno, kCannotOpen);
}

TEST_F(BmpReader, PictureIsDrawnPixelByPixelAtTheScreenDepth) {
    const bmpw::Indexed pic = pattern(13, 9, 11);
    const Load got = load(bmpw::encode(pic));
    ASSERT_EQ(got.result, 1);
    EXPECT_EQ(got.error, 0);
    Display *dpy = xt::display();
    EXPECT_EQ(bmpt::pixmapGeometry(got.pixmap).depth, unsigned(DefaultDepth(dpy, DefaultScreen(dpy))));
    expectPicture(got.pixmap, pic);
}

TEST_F(BmpReader, RowPaddingIsNeitherCountedNorDrawn) {
    bmpw::Indexed pic = pattern(5, 4, 3); /* indices 1..3; stride 8 */
    const bmpw::Rgb paddingColour = {255, 0, 0};
    pic.palette[200] = paddingColour;
    pic.padding = 200;
    const std::vector<uint8_t> bytes = bmpw::encode(pic);
    ASSERT_EQ(bytes.size(), 1078u + 8u * 4u);
    ASSERT_EQ(bytes[1078 + 5], 200); /* the padding really holds index 200 */

    const Load got = loadWatched(bytes);
    ASSERT_EQ(got.result, 1);
    expectPicture(got.pixmap, pic);
    expectColourRequests({pic.palette[1], pic.palette[2], pic.palette[3]});
}

TEST_F(BmpReader, FirstStoredRowIsTheBottomRow) {
    bmpw::Indexed pic(4, 3);
    bmpt::distinctPalette(pic);
    for (int32_t x = 0; x < 4; ++x) {
        pic.at(x, 0) = 1; /* top */
        pic.at(x, 1) = 2;
        pic.at(x, 2) = 3; /* bottom */
    }
    pic.at(0, 0) = 4; /* the top left corner stands out */
    const std::vector<uint8_t> bytes = bmpw::encode(pic);
    ASSERT_EQ(bytes[1078], 3); /* the file starts with the bottom row */

    const Load got = load(bytes);
    ASSERT_EQ(got.result, 1);
    expectPicture(got.pixmap, pic);
    const std::vector<unsigned long> pixels = bmpt::readPixels(got.pixmap, 4, 3);
    EXPECT_EQ(pixels[0], bmpt::pixelOf(pic.palette[4]));
    EXPECT_EQ(pixels[8], bmpt::pixelOf(pic.palette[3]));
}

TEST_F(BmpReader, ColoursAreAllocatedOnlyForUsedIndicesInIndexOrder) {
    bmpw::Indexed pic(6, 4, 7); /* index 7 comes first in the file as on screen */
    bmpt::distinctPalette(pic);
    pic.at(5, 0) = 0;
    pic.at(2, 3) = 0;
    const Load got = loadWatched(bmpw::encode(pic));
    ASSERT_EQ(got.result, 1);
    expectColourRequests({pic.palette[0], pic.palette[7]});
    expectPicture(got.pixmap, pic);
}

TEST_F(BmpReader, TrueColourPixelsAreTheOnesTheServerAllocates) {
    if (!trueColour()) GTEST_SKIP() << "needs a TrueColor default visual";
    /* Every level of every channel, in three different orders. */
    bmpw::Indexed pic(16, 16);
    for (int i = 0; i < 256; ++i) {
        pic.palette[size_t(i)] = {uint8_t(i), uint8_t(255 - i), uint8_t((i * 7) & 0xff)};
        pic.pixels[size_t(i)] = uint8_t(i);
    }
    const Load first = loadWatched(bmpw::encode(pic));
    ASSERT_EQ(first.result, 1);
    EXPECT_EQ(gSpy.asked.size(), 256u) << "the channel tables are learned on first use";
    expectPicture(first.pixmap, pic);

    const Load again = loadWatched(bmpw::encode(pic));
    ASSERT_EQ(again.result, 1);
    EXPECT_TRUE(gSpy.asked.empty()) << "learned once per display";
    expectPicture(again.pixmap, pic);
}

/* Cells of the default colormap that a client can still allocate (it takes and gives
** back read-only cells of colours nobody uses). */
int freeCells() {
    Display *dpy = xt::display();
    const Colormap cmap = DefaultColormap(dpy, DefaultScreen(dpy));
    std::vector<unsigned long> taken;
    for (int i = 0; i < 4096; ++i) {
        XColor c = {};
        c.red = uint16_t(0x1111 * (i % 16) + 7);
        c.green = uint16_t(0x1111 * ((i / 16) % 16) + 3);
        c.blue = uint16_t(0x1111 * (i / 256) + 5);
        c.flags = DoRed | DoGreen | DoBlue;
        if (!XAllocColor(dpy, cmap, &c)) break;
        taken.push_back(c.pixel);
    }
    if (!taken.empty()) XFreeColors(dpy, cmap, taken.data(), int(taken.size()), 0);
    return int(taken.size());
}

TEST_F(BmpReader, PseudoColourCellsAreTakenForUsedIndicesOnlyInIndexOrder) {
    Display *dpy = xt::display();
    if (DefaultVisual(dpy, DefaultScreen(dpy))->c_class != PseudoColor)
        GTEST_SKIP() << "needs a PseudoColor default visual (the depth 8 run)";
    bmpw::Indexed pic(6, 4, 7);
    pic.palette[0] = {0x12, 0x9a, 0x56};
    pic.palette[7] = {0x65, 0x43, 0xe1};
    pic.palette[3] = {0x31, 0x41, 0x59}; /* present in the palette, used by no pixel */
    pic.at(4, 2) = 0;
    const int before = freeCells();
    const Load got = load(bmpw::encode(pic));
    ASSERT_EQ(got.result, 1);
    EXPECT_EQ(freeCells(), before - 2);
    /* The server hands out the lowest free cell first: index 0 was allocated first. */
    const std::vector<unsigned long> pixels = bmpt::readPixels(got.pixmap, 6, 4);
    EXPECT_LT(pixels[2 * 6 + 4], pixels[0]);
    expectPicture(got.pixmap, pic);
}

TEST_F(BmpReader, FailedColourAllocationDrawsTheBlackPixel) {
    const bmpw::Indexed pic = pattern(6, 3);
    gSpy.failing = true;
    const Load got = load(bmpw::encode(pic));
    gSpy.failing = false;
    ASSERT_EQ(got.result, 1);
    Display *dpy = xt::display();
    for (unsigned long pixel : bmpt::readPixels(got.pixmap, 6, 3))
        ASSERT_EQ(pixel, BlackPixel(dpy, DefaultScreen(dpy)));
}

TEST_F(BmpReader, SuccessResetsTheErrorCode) {
    std::vector<uint8_t> bad = bmpw::encode(pattern(3, 2));
    bad[1] = 'X';
    EXPECT_EQ(load(bad, "bad.bmp").error, kNotM);
    const Load good = load(bmpw::encode(pattern(3, 2)), "good.bmp");
    EXPECT_EQ(good.result, 1);
    EXPECT_EQ(good.error, 0);
    EXPECT_EQ(ReadBmpErrno, 0);
}

TEST_F(BmpReader, OnlyTheFirstMebibyteOfTheFileIsRead) {
    /* 1078 + 1024 x 1022 bytes fit in 1 MiB, 1078 + 1024 x 1023 do not. */
    bmpw::Indexed fits(1024, 1022);
    bmpt::distinctPalette(fits);
    for (int32_t y = 0; y < fits.height; ++y)
        for (int32_t x = 0; x < fits.width; ++x)
            fits.at(x, y) = uint8_t(1 + (x / 128 + y / 128) % 8);
    std::vector<uint8_t> bytes = bmpw::encode(fits);
    ASSERT_LE(bytes.size(), size_t(1) << 20);
    bytes.resize((size_t(3) << 20) / 2, 0xee); /* the file goes on for half a MiB more */
    const Load got = load(bytes, "fits.bmp");
    ASSERT_EQ(got.result, 1);
    expectPicture(got.pixmap, fits);

    bmpw::Indexed beyond = fits;
    beyond.height = 1023;
    beyond.pixels.resize(size_t(1024) * 1023, 1);
    std::vector<uint8_t> whole = bmpw::encode(beyond);
    ASSERT_GT(whole.size(), size_t(1) << 20);
    expectRefused(whole, kCannotRead, "picture data beyond the first MiB");
}

TEST_F(BmpReader, SizesThatXCannotTakeAreRefused) {
    const std::vector<uint8_t> base = bmpw::encode(pattern(4, 4));
    const struct {
        size_t offset;
        int32_t value;
        const char *what;
    } cases[] = {
        {18, 0, "width 0"},         {18, -4, "negative width"},
        {18, INT_MIN, "width INT_MIN"}, {18, 32768, "width 32768"},
        {22, 0, "height 0"},        {22, -4, "top-down (negative height)"},
        {22, 32768, "height 32768"}, {22, INT_MAX, "height INT_MAX"},
    };
    for (const auto &c : cases) {
        std::vector<uint8_t> bytes = base;
        bmpw::put32(bytes, c.offset, uint32_t(c.value));
        expectRefused(bytes, kNotB, c.what);
    }
}

TEST_F(BmpReader, FilesShorterThanTheirPixelDataAreRefused) {
    const std::vector<uint8_t> whole = bmpw::encode(pattern(5, 3));
    const size_t lengths[] = {0, 1, 2, 29, 33, 54, 1077, 1078, whole.size() - 1};
    for (size_t length : lengths) {
        const std::vector<uint8_t> cut(whole.begin(), whole.begin() + long(length));
        expectRefused(cut, kCannotRead, ("cut to " + std::to_string(length)).c_str());
    }
    /* The largest sides announce a GiB of data that is not there. */
    std::vector<uint8_t> huge = whole;
    bmpw::put32(huge, 18, 32767);
    bmpw::put32(huge, 22, 32767);
    expectRefused(huge, kCannotRead, "32767 x 32767 in a small file");
}

TEST_F(BmpReader, LargestWidthXTakesIsDrawn) {
    bmpw::Indexed wide = pattern(32767, 1, 4);
    const Load got = load(bmpw::encode(wide));
    ASSERT_EQ(got.result, 1);
    expectPicture(got.pixmap, wide);
}

TEST_F(BmpReader, HeaderSizeAndOffsetFieldsAreNotTrusted) {
    const bmpw::Indexed pic = pattern(6, 5);
    std::vector<uint8_t> bytes = bmpw::encode(pic);
    bmpw::put32(bytes, 2, 99);    /* file size */
    bmpw::put32(bytes, 10, 2000); /* data offset */
    bmpw::put32(bytes, 14, 12);   /* info header size */
    bmpw::put32(bytes, 46, 2);    /* colours used */
    const Load got = load(bytes);
    ASSERT_EQ(got.result, 1);
    expectPicture(got.pixmap, pic);
}

TEST_F(BmpReader, InitWithoutAWidgetKeepsTheDisplay) {
    GuiInitLoadBmps(nullptr);
    EXPECT_EQ(countTrace("GuiInitLoadBmps() without a widget"), 1);
    const bmpw::Indexed pic = pattern(3, 3);
    const Load got = load(bmpw::encode(pic));
    ASSERT_EQ(got.result, 1);
    expectPicture(got.pixmap, pic);
}

TEST_F(BmpReader, FilterDummyOnlyWritesItsTraceLine) {
    GuiFilterDummy();
    ASSERT_EQ(traces().size(), 1u);
    EXPECT_EQ(traces()[0].component, "GUI");
    EXPECT_EQ(traces()[0].level, 1);
    EXPECT_EQ(traces()[0].text, "stop compiler bitch");
}

} // namespace
