/* xsnapshot.cpp - writes what a window shows on the X server to a PNG file. */
#include "xsnapshot.h"

#include <X11/Xutil.h>
#include <png.h>

#include <cstdio>
#include <memory>
#include <vector>

namespace {

/* Channel value (0-255) of a pixel for a TrueColor mask such as 0xff0000 or 0xf800. */
unsigned channel(unsigned long pixel, unsigned long mask) {
    if (mask == 0) return 0;
    int shift = 0;
    while (!((mask >> shift) & 1)) ++shift;
    unsigned long max = mask >> shift;
    return static_cast<unsigned>(((pixel & mask) >> shift) * 255 / max);
}

bool writePng(const char *path, int width, int height, const std::vector<unsigned char> &rgb) {
    std::unique_ptr<FILE, int (*)(FILE *)> file(std::fopen(path, "wb"), std::fclose);
    if (!file) return false;
    png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    png_infop info = png ? png_create_info_struct(png) : nullptr;
    if (!info || setjmp(png_jmpbuf(png))) {
        png_destroy_write_struct(&png, info ? &info : nullptr);
        return false;
    }
    png_init_io(png, file.get());
    png_set_IHDR(png, info, width, height, 8, PNG_COLOR_TYPE_RGB, PNG_INTERLACE_NONE,
                 PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    png_write_info(png, info);
    for (int y = 0; y < height; ++y)
        png_write_row(png, const_cast<png_bytep>(&rgb[static_cast<size_t>(y) * width * 3]));
    png_write_end(png, nullptr);
    png_destroy_write_struct(&png, &info);
    return true;
}

} // namespace

extern "C" int XSnapshotWindowToPng(Display *dpy, Window win, const char *path) {
    XWindowAttributes attrs;
    if (!dpy || !win || !XGetWindowAttributes(dpy, win, &attrs) || attrs.map_state != IsViewable)
        return 0;
    XImage *image = XGetImage(dpy, win, 0, 0, attrs.width, attrs.height, AllPlanes, ZPixmap);
    if (!image) return 0;
    std::vector<unsigned char> rgb(static_cast<size_t>(attrs.width) * attrs.height * 3);
    const bool trueColour = attrs.visual->c_class == TrueColor || attrs.visual->c_class == DirectColor;
    std::vector<XColor> colours;
    if (!trueColour) {
        colours.resize(static_cast<size_t>(attrs.visual->map_entries));
        for (size_t i = 0; i < colours.size(); ++i) colours[i].pixel = i;
        XQueryColors(dpy, attrs.colormap, colours.data(), static_cast<int>(colours.size()));
    }
    unsigned char *out = rgb.data();
    for (int y = 0; y < attrs.height; ++y) {
        for (int x = 0; x < attrs.width; ++x, out += 3) {
            unsigned long p = XGetPixel(image, x, y);
            if (trueColour) {
                out[0] = channel(p, attrs.visual->red_mask);
                out[1] = channel(p, attrs.visual->green_mask);
                out[2] = channel(p, attrs.visual->blue_mask);
            } else if (p < colours.size()) {
                out[0] = colours[p].red >> 8;
                out[1] = colours[p].green >> 8;
                out[2] = colours[p].blue >> 8;
            }
        }
    }
    XDestroyImage(image);
    return writePng(path, attrs.width, attrs.height, rgb) ? 1 : 0;
}
