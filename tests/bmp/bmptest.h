/* bmptest.h - BMP files on disk, pixmaps read back from the server, and a fixture that
** gives the reader its display and frees the pixmaps a test made. */
#ifndef XC_TEST_BMPTEST_H
#define XC_TEST_BMPTEST_H

#include "xharness.h" /* gtest before Xlib, whose macros clash with it */

#include <X11/Xlib.h>
#include <X11/Xutil.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "bmpwrite.h"
#include "xcontrols/guibmploader.h"

namespace bmpt {

/* A private directory below the system's temporary directory, removed when it goes. */
class TempDir {
public:
    TempDir() {
        std::string pattern = (std::filesystem::temp_directory_path() / "xcbmp-XXXXXX").string();
        if (mkdtemp(pattern.data()) != nullptr) path_ = pattern;
    }
    ~TempDir() {
        std::error_code ignored;
        if (!path_.empty()) std::filesystem::remove_all(path_, ignored);
    }
    TempDir(const TempDir &) = delete;
    TempDir &operator=(const TempDir &) = delete;
    const std::string &path() const { return path_; }
    std::string file(const std::string &name) const { return path_ + "/" + name; }

private:
    std::string path_;
};

/* The pixel values of a drawable's w x h pixels, row by row. */
inline std::vector<unsigned long> readPixels(Drawable d, int width, int height) {
    std::vector<unsigned long> pixels;
    XImage *image = XGetImage(xt::display(), d, 0, 0, unsigned(width), unsigned(height),
                              AllPlanes, ZPixmap);
    if (image == nullptr) return pixels;
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) pixels.push_back(XGetPixel(image, x, y));
    XDestroyImage(image);
    return pixels;
}

struct Geometry {
    unsigned width = 0, height = 0, depth = 0;
};

inline Geometry pixmapGeometry(Pixmap pixmap) {
    Geometry g;
    Window root;
    int x, y;
    unsigned border;
    XGetGeometry(xt::display(), pixmap, &root, &x, &y, &g.width, &g.height, &border, &g.depth);
    return g;
}

/* The pixel that the default colormap gives for a colour (a shared read-only cell, so
** the same one the reader got for it; ask after the reader did). */
inline unsigned long pixelOf(bmpw::Rgb rgb) {
    Display *dpy = xt::display();
    const Colormap cmap = DefaultColormap(dpy, DefaultScreen(dpy));
    char spec[8];
    std::snprintf(spec, sizeof spec, "#%02x%02x%02x", rgb.red, rgb.green, rgb.blue);
    XColor colour = {};
    if (!XParseColor(dpy, cmap, spec, &colour) || !XAllocColor(dpy, cmap, &colour))
        return BlackPixel(dpy, DefaultScreen(dpy));
    XFreeColors(dpy, cmap, &colour.pixel, 1, 0);
    return colour.pixel;
}

/* A palette of distinct, easily told apart colours. */
inline void distinctPalette(bmpw::Indexed &pic) {
    for (int i = 0; i < 256; ++i)
        pic.palette[size_t(i)] = {uint8_t(i * 37 + 11), uint8_t(255 - i), uint8_t(i * 101 + 3)};
}

/* The outcome of one read. */
struct Load {
    int32_t result;
    int32_t error;
    Pixmap pixmap;
};

/* Derives from the harness fixture: the reader draws on the test display, and the
** pixmaps a test loads are freed at the end. */
class BmpTest : public xt::XTest {
protected:
    static constexpr Pixmap kUntouched = 0x5eed;

    void SetUp() override {
        xt::XTest::SetUp();
        GuiInitLoadBmps(form());
    }

    void TearDown() override {
        for (Pixmap p : made_) XFreePixmap(xt::display(), p);
        made_.clear();
        xt::XTest::TearDown();
    }

    Load loadPath(const std::string &path) {
        Load load = {0, 0, kUntouched};
        load.result = GuiReadBmpFile(&load.pixmap, path.c_str());
        load.error = ReadBmpErrno;
        if (load.result == 1 && load.pixmap != kUntouched) made_.push_back(load.pixmap);
        return load;
    }

    Load load(const std::vector<uint8_t> &bytes, const std::string &name = "picture.bmp") {
        const std::string path = dir_.file(name);
        if (!bmpw::writeFile(path, bytes)) ADD_FAILURE() << "cannot write " << path;
        return loadPath(path);
    }

    /* Every pixel of the pixmap against the picture's colours; stops at the first
    ** wrong one. */
    void expectPicture(Pixmap pixmap, const bmpw::Indexed &pic) {
        const Geometry g = pixmapGeometry(pixmap);
        ASSERT_EQ(g.width, unsigned(pic.width));
        ASSERT_EQ(g.height, unsigned(pic.height));
        const std::vector<unsigned long> got = readPixels(pixmap, pic.width, pic.height);
        ASSERT_EQ(got.size(), pic.pixels.size());
        unsigned long expected[256];
        bool known[256] = {};
        for (int y = 0; y < pic.height; ++y)
            for (int x = 0; x < pic.width; ++x) {
                const uint8_t index = pic.at(x, y);
                if (!known[index]) expected[index] = pixelOf(pic.palette[index]);
                known[index] = true;
                ASSERT_EQ(got[size_t(y) * size_t(pic.width) + size_t(x)], expected[index])
                    << "pixel " << x << "," << y << " (palette index " << int(index) << ")";
            }
    }

    const TempDir &dir() const { return dir_; }

private:
    TempDir dir_;
    std::vector<Pixmap> made_;
};

} // namespace bmpt

#endif
