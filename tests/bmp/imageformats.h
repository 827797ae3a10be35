/* imageformats.h - the ZPixmap formats a server may ask for, and images of them made
** without a server (XInitImage), for the fill tests and the fuzzer. */
#ifndef XC_TEST_IMAGEFORMATS_H
#define XC_TEST_IMAGEFORMATS_H

#include <X11/Xlib.h>
#include <X11/Xutil.h>

#include <vector>

namespace bmpt {

struct Format {
    int depth;
    int bitsPerPixel;
    int byteOrder;
    const char *name;
};

constexpr Format kFormats[] = {
    {8, 8, LSBFirst, "8 bits"},
    {15, 16, LSBFirst, "15 in 16 bits, LSB first"},
    {16, 16, LSBFirst, "16 bits, LSB first"},
    {16, 16, MSBFirst, "16 bits, MSB first"},
    {24, 24, LSBFirst, "24 bits, LSB first"},
    {24, 24, MSBFirst, "24 bits, MSB first"},
    {24, 32, LSBFirst, "24 in 32 bits, LSB first"},
    {24, 32, MSBFirst, "24 in 32 bits, MSB first"},
    {32, 32, LSBFirst, "32 bits, LSB first"},
    {32, 32, MSBFirst, "32 bits, MSB first"},
    /* Not whole bytes per pixel: these go pixel by pixel. */
    {4, 4, MSBFirst, "4 bits"},
    {1, 1, MSBFirst, "1 bit"},
};

/* The largest pixel value of a format's depth. */
inline unsigned long pixelMask(const Format &f) {
    return f.depth >= 32 ? 0xffffffffUL : (1UL << f.depth) - 1;
}

/* A ZPixmap image over memory filled with `fill`; `valid` tells whether Xlib took it. */
struct TestImage {
    std::vector<char> data;
    XImage image = {};
    bool valid = false;

    TestImage(const Format &f, int width, int height, char fill = 0) {
        image.width = width;
        image.height = height;
        image.format = ZPixmap;
        image.byte_order = f.byteOrder;
        image.bitmap_unit = 32;
        image.bitmap_bit_order = MSBFirst;
        image.bitmap_pad = 32;
        image.depth = f.depth;
        image.bits_per_pixel = f.bitsPerPixel;
        image.bytes_per_line = ((width * f.bitsPerPixel + 31) / 32) * 4;
        data.assign(size_t(image.bytes_per_line) * size_t(height), fill);
        image.data = data.data();
        valid = XInitImage(&image) != 0;
    }
    TestImage(const TestImage &) = delete;
    TestImage &operator=(const TestImage &) = delete;
};

} // namespace bmpt

#endif
