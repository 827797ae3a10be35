/* bmp_fuzz.cpp - libFuzzer target, and over the corpus a test (test_bmp_fill): any bytes
** through the BMP check, the palette count and the image fill in every ZPixmap format a
** server may ask for, where the direct fill (in two bands, the second first, over garbage)
** must equal one XPutPixel per pixel and show the rows bottom-up. No display needed. */
#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <vector>
#include "bmpdecode.h"
#include "bmpfill.h"

namespace bmp = xc::bmp;

namespace {
constexpr int64_t kMaxDrawnPixels = 1 << 16; /* larger ones are checked, not drawn (speed) */
/* Depth, bits per pixel, byte order; the last two go pixel by pixel. */
constexpr int kFormats[][3] = {{8, 8, LSBFirst},   {15, 16, LSBFirst}, {16, 16, LSBFirst},
                               {16, 16, MSBFirst}, {24, 24, LSBFirst}, {24, 24, MSBFirst},
                               {24, 32, LSBFirst}, {24, 32, MSBFirst}, {32, 32, LSBFirst},
                               {32, 32, MSBFirst}, {4, 4, MSBFirst},   {1, 1, MSBFirst}};
void check(bool ok) { if (!ok) std::abort(); }
/* A ZPixmap image of the format over `data` filled with `fill` (XImage's fields in order). */
XImage imageOver(std::vector<char> &data, const int format[3], const bmp::Picture &pic, char fill) {
    const int bytesPerLine = (pic.width * format[1] + 31) / 32 * 4;
    data.assign(size_t(bytesPerLine) * size_t(pic.height), fill);
    XImage image = {pic.width, pic.height, 0, ZPixmap, data.data(), format[2], 32, MSBFirst,
                    32, format[0], bytesPerLine, format[1], 0, 0, 0, nullptr, {}};
    check(XInitImage(&image) != 0);
    return image;
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
    const char garbage = char(data[size - 1]);
    for (const int *format : kFormats) {
        const unsigned long mask = format[0] >= 32 ? 0xffffffffUL : (1UL << format[0]) - 1;
        unsigned long pixels[256];
        for (int i = 0; i < 256; ++i) pixels[i] = uint32_t(i * 0x9E3779B1u) & mask;
        std::vector<char> directData, perPixelData;
        XImage direct = imageOver(directData, format, pic, garbage);
        XImage perPixel = imageOver(perPixelData, format, pic, char(~garbage));
        bmp::ImageFiller filler(&direct, pic, pixels);
        filler.fill(pic.height / 2, pic.height - pic.height / 2);
        filler.fill(0, pic.height / 2);
        bmp::fillImagePerPixel(&perPixel, pic, pixels);
        check(directData == perPixelData);
        for (int32_t y = 0; y < pic.height; ++y) {
            const uint8_t *row = pic.rows + size_t(pic.height - 1 - y) * pic.stride;
            for (int32_t x = 0; x < pic.width; ++x)
                check(XGetPixel(&direct, x, y) == pixels[row[x]]);
        }
    }
    return 0;
}
