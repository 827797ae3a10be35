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

/* Row by row, pixel by pixel, each pixel one Word (1 to 4 bytes) from a local copy of
** the table, which nothing the loop writes can alias. */
template <typename Word>
void fillWords(const Picture &pic, const PixelBytes table[256], const RowsOut &out,
               RowSpan rows) {
    Word local[256];
    for (int i = 0; i < 256; ++i) std::memcpy(&local[i], table[i].bytes, sizeof(Word));
    const int32_t width = pic.width;
    for (int32_t y = rows.first; y < rows.end; ++y) {
        const uint8_t *index = pic.rows + size_t(pic.height - 1 - y) * pic.stride;
        uint8_t *row = out.data + size_t(y) * out.bytesPerLine;
        int32_t x = 0;
        /* Four pixels a step, written with one store. */
        for (; x + 4 <= width; x += 4) {
            const Word quad[4] = {local[index[x]], local[index[x + 1]], local[index[x + 2]],
                                  local[index[x + 3]]};
            std::memcpy(row + size_t(x) * sizeof(Word), quad, sizeof quad);
        }
        for (; x < width; ++x)
            std::memcpy(row + size_t(x) * sizeof(Word), &local[index[x]], sizeof(Word));
    }
}

/* A pixel of three bytes, copied as it is. */
struct Triple {
    uint8_t bytes[3];
};

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
    return kOk;
}

/* Four partial counts, so that runs of one index do not wait on each other's stores. */
void countUse(const Picture &pic, PaletteUse *use) {
    uint32_t lanes[4][256] = {};
    const int32_t width = pic.width;
    const int32_t quads = width / 4;
    for (int32_t row = 0; row < pic.height; ++row) {
        const uint8_t *index = pic.rows + size_t(row) * pic.stride;
        for (int32_t q = 0; q < quads; ++q, index += 4) {
            ++lanes[0][index[0]];
            ++lanes[1][index[1]];
            ++lanes[2][index[2]];
            ++lanes[3][index[3]];
        }
        for (int32_t x = quads * 4; x < width; ++x, ++index) ++lanes[0][*index];
    }
    for (int i = 0; i < 256; ++i)
        use->count[i] = lanes[0][i] + lanes[1][i] + lanes[2][i] + lanes[3][i];
}

void colourSpec(const Picture &pic, int index, char spec[8]) {
    const uint8_t *entry = pic.palette + 4 * (index & 0xff);
    std::snprintf(spec, 8, "#%02x%02x%02x", entry[2], entry[1], entry[0]);
}

RowSpan clipRows(int32_t firstRow, int32_t rowCount, int32_t height) {
    const int64_t end = int64_t(firstRow) + (rowCount > 0 ? rowCount : 0);
    const RowSpan span = {firstRow < 0 ? 0 : firstRow,
                          end > height ? height : static_cast<int32_t>(end)};
    return span.first < span.end ? span : RowSpan{0, 0};
}

void fillRows(const Picture &pic, const PixelBytes table[256], const RowsOut &out,
              int32_t firstRow, int32_t rowCount) {
    const RowSpan rows = clipRows(firstRow, rowCount, pic.height);
    switch (out.bytesPerPixel) {
    case 1: fillWords<uint8_t>(pic, table, out, rows); break;
    case 2: fillWords<uint16_t>(pic, table, out, rows); break;
    case 3: fillWords<Triple>(pic, table, out, rows); break;
    case 4: fillWords<uint32_t>(pic, table, out, rows); break;
    default: break;
    }
}

} // namespace xc::bmp
