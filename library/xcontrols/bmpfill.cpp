/* bmpfill.cpp - turns a checked BMP picture into the pixels of an X image. */
#include "bmpfill.h"

#include <X11/Xutil.h>

namespace xc::bmp {
namespace {

/* The bytes that the image's put-pixel operation writes for `pixel`, found by letting
** it write into a one-pixel image of the same format. */
PixelBytes pixelBytes(const XImage &image, unsigned long pixel) {
    PixelBytes out = {};
    XImage probe = image;
    probe.width = 1;
    probe.height = 1;
    probe.bytes_per_line = sizeof out.bytes;
    probe.data = reinterpret_cast<char *>(out.bytes);
    XPutPixel(&probe, 0, 0, pixel);
    return out;
}

bool wholeBytesPerPixel(const XImage &image) {
    const int bits = image.bits_per_pixel;
    return image.format == ZPixmap && (bits == 8 || bits == 16 || bits == 24 || bits == 32);
}

} // namespace

void fillImage(XImage *image, const Picture &pic, const unsigned long pixels[256]) {
    if (!wholeBytesPerPixel(*image)) {
        fillImagePerPixel(image, pic, pixels);
        return;
    }
    PixelBytes table[256];
    for (int index = 0; index < 256; ++index)
        table[index] = pic.useCount[index] ? pixelBytes(*image, pixels[index]) : PixelBytes{};
    fillRows(pic, table, image->bits_per_pixel / 8, reinterpret_cast<uint8_t *>(image->data),
             static_cast<size_t>(image->bytes_per_line));
}

void fillImagePerPixel(XImage *image, const Picture &pic, const unsigned long pixels[256]) {
    for (int32_t y = 0; y < pic.height; ++y) {
        const uint8_t *index = pic.rows + size_t(pic.height - 1 - y) * pic.stride;
        for (int32_t x = 0; x < pic.width; ++x) XPutPixel(image, x, y, pixels[index[x]]);
    }
}

} // namespace xc::bmp
