/* bmp_fuzz.cpp - libFuzzer target: any bytes through the BMP check, the palette count
** and the image fill in every image format, where the direct fill must equal one
** XPutPixel per pixel. Images are made with XInitImage: no display is needed. */
#include <X11/Xlib.h>
#include <X11/Xutil.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "bmpdecode.h"
#include "bmpfill.h"

namespace {

namespace bmp = xc::bmp;

struct Format {
    int depth;
    int bitsPerPixel;
    int byteOrder;
};

constexpr Format kFormats[] = {
    {8, 8, LSBFirst},   {16, 16, LSBFirst}, {16, 16, MSBFirst}, {24, 24, LSBFirst},
    {24, 24, MSBFirst}, {24, 32, LSBFirst}, {24, 32, MSBFirst}, {4, 4, MSBFirst},
};

/* Pictures above this many pixels are checked but not drawn (speed of the search). */
constexpr int64_t kMaxDrawnPixels = 1 << 16;

void check(bool ok) {
    if (!ok) std::abort();
}

std::vector<char> draw(const Format &f, const bmp::Picture &pic, const unsigned long *pixels,
                       bool direct, uint8_t garbage) {
    XImage image = {};
    image.width = pic.width;
    image.height = pic.height;
    image.format = ZPixmap;
    image.byte_order = f.byteOrder;
    image.bitmap_unit = 32;
    image.bitmap_bit_order = MSBFirst;
    image.bitmap_pad = 32;
    image.depth = f.depth;
    image.bits_per_pixel = f.bitsPerPixel;
    image.bytes_per_line = ((pic.width * f.bitsPerPixel + 31) / 32) * 4;
    std::vector<char> data(size_t(image.bytes_per_line) * size_t(pic.height), char(garbage));
    image.data = data.data();
    check(XInitImage(&image) != 0);
    if (direct) {
        bmp::ImageFiller filler(&image, pic, pixels);
        /* In two bands, the second first. */
        const int32_t half = pic.height / 2;
        filler.fill(half, pic.height - half);
        filler.fill(0, half);
    } else {
        bmp::fillImagePerPixel(&image, pic, pixels);
    }
    return data;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    bmp::Picture pic;
    const int32_t code = bmp::decode(data, size, &pic);
    if (code != bmp::kOk) {
        check(code >= bmp::kCannotRead && code <= bmp::kCompressed);
        return 0;
    }
    check(pic.width > 0 && pic.height > 0 && pic.stride % 4 == 0);
    check(bmp::kPixelOffset + uint64_t(pic.stride) * uint64_t(pic.height) <= size);

    bmp::PaletteUse use;
    bmp::countUse(pic, &use);
    uint64_t counted = 0;
    for (uint32_t n : use.count) counted += n;
    check(counted == uint64_t(pic.width) * uint64_t(pic.height));
    char spec[8];
    for (int index = 0; index < 256; ++index) {
        bmp::colourSpec(pic, index, spec);
        check(std::strlen(spec) == 7 && spec[0] == '#');
    }

    if (int64_t(pic.width) * pic.height > kMaxDrawnPixels) return 0;
    unsigned long pixels[256];
    for (int index = 0; index < 256; ++index) pixels[index] = uint32_t(index * 0x9E3779B1u);
    const uint8_t garbage = data[size - 1];
    for (const Format &f : kFormats) {
        unsigned long masked[256];
        const unsigned long mask = (1UL << f.depth) - 1;
        for (int index = 0; index < 256; ++index) masked[index] = pixels[index] & mask;
        check(draw(f, pic, masked, true, garbage) == draw(f, pic, masked, false, uint8_t(~garbage)));
    }
    return 0;
}
