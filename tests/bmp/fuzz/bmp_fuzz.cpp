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
#include "imageformats.h"

namespace {

namespace bmp = xc::bmp;

/* Pictures above this many pixels are checked but not drawn (speed of the search). */
constexpr int64_t kMaxDrawnPixels = 1 << 16;

void check(bool ok) {
    if (!ok) std::abort();
}

std::vector<char> draw(const bmpt::Format &f, const bmp::Picture &pic,
                       const unsigned long *pixels, bool direct, uint8_t garbage) {
    bmpt::TestImage out(f, pic.width, pic.height, char(garbage));
    check(out.valid);
    if (direct) {
        bmp::ImageFiller filler(&out.image, pic, pixels);
        /* In two bands, the second first. */
        const int32_t half = pic.height / 2;
        filler.fill(half, pic.height - half);
        filler.fill(0, half);
    } else {
        bmp::fillImagePerPixel(&out.image, pic, pixels);
    }
    return out.data;
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
    for (const bmpt::Format &f : bmpt::kFormats) {
        unsigned long masked[256];
        for (int index = 0; index < 256; ++index) masked[index] = pixels[index] & bmpt::pixelMask(f);
        check(draw(f, pic, masked, true, garbage) == draw(f, pic, masked, false, uint8_t(~garbage)));
    }
    return 0;
}
