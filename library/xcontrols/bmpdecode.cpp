/* bmpdecode.cpp - checks a 256-colour BMP held in memory and lays its pixels into rows. */
#include "bmpdecode.h"

#include <cstdio>
#include <cstring>

namespace xc::bmp {
namespace {

/* A header field that must hold one value; the tests run in table order. */
struct HeaderTest {
    size_t offset;
    size_t width;
    uint32_t expected;
    int32_t failure;
};

constexpr HeaderTest kHeaderTests[] = {
    {0, 1, 'B', kNotB},
    {1, 1, 'M', kNotM},
    {28, 2, 8, kNot256Colours},
    {30, 4, 0, kCompressed},
};

constexpr size_t kWidthOffset = 18;
constexpr size_t kHeightOffset = 22;

/* Little-endian unsigned field of 1 to 4 bytes. */
uint32_t field(const uint8_t *data, size_t offset, size_t width) {
    uint32_t value = 0;
    for (size_t i = width; i-- > 0;) value = value << 8 | data[offset + i];
    return value;
}

int32_t signedField(const uint8_t *data, size_t offset) {
    return static_cast<int32_t>(field(data, offset, 4));
}

bool sideFits(int32_t side) { return side > 0 && side <= kMaxSide; }

void countUse(Picture *pic) {
    std::memset(pic->useCount, 0, sizeof pic->useCount);
    for (int32_t row = 0; row < pic->height; ++row) {
        const uint8_t *index = pic->rows + size_t(row) * pic->stride;
        for (int32_t x = 0; x < pic->width; ++x) ++pic->useCount[index[x]];
    }
}

/* Row by row, pixel by pixel; N is a constant so that each copy is one or two stores. */
template <int N>
void fillRowsOf(const Picture &pic, const PixelBytes table[256], uint8_t *data,
                size_t bytesPerLine) {
    for (int32_t y = 0; y < pic.height; ++y) {
        const uint8_t *index = pic.rows + size_t(pic.height - 1 - y) * pic.stride;
        uint8_t *out = data + size_t(y) * bytesPerLine;
        for (int32_t x = 0; x < pic.width; ++x, out += N)
            std::memcpy(out, table[index[x]].bytes, N);
    }
}

} // namespace

int32_t decode(const uint8_t *data, size_t size, Picture *pic) {
    if (data == nullptr) size = 0;
    for (const HeaderTest &test : kHeaderTests) {
        if (size < test.offset + test.width) return kCannotRead;
        if (field(data, test.offset, test.width) != test.expected) return test.failure;
    }
    const int32_t width = signedField(data, kWidthOffset);
    const int32_t height = signedField(data, kHeightOffset);
    if (!sideFits(width) || !sideFits(height)) return kNotB;
    /* Both sides are at most 32767, so the product cannot overflow 64 bits. */
    const uint64_t stride = (uint64_t(width) + 3) & ~uint64_t(3);
    if (uint64_t(size) < kPixelOffset + stride * uint64_t(height)) return kCannotRead;

    pic->width = width;
    pic->height = height;
    pic->stride = static_cast<uint32_t>(stride);
    pic->palette = data + kPaletteOffset;
    pic->rows = data + kPixelOffset;
    countUse(pic);
    return kOk;
}

void colourSpec(const Picture &pic, int index, char spec[8]) {
    const uint8_t *entry = pic.palette + 4 * (index & 0xff);
    std::snprintf(spec, 8, "#%02x%02x%02x", entry[2], entry[1], entry[0]);
}

void fillRows(const Picture &pic, const PixelBytes table[256], int bytesPerPixel,
              uint8_t *data, size_t bytesPerLine) {
    switch (bytesPerPixel) {
    case 1: fillRowsOf<1>(pic, table, data, bytesPerLine); break;
    case 2: fillRowsOf<2>(pic, table, data, bytesPerLine); break;
    case 3: fillRowsOf<3>(pic, table, data, bytesPerLine); break;
    case 4: fillRowsOf<4>(pic, table, data, bytesPerLine); break;
    default: break;
    }
}

} // namespace xc::bmp
