/* bmpdecode.h - checks a 256-colour BMP held in memory and lays its pixels into image
** rows (private; no X and no allocation, so the reader, the tests and the fuzzer share it). */
#ifndef XC_BMPDECODE_H
#define XC_BMPDECODE_H

#include <cstddef>
#include <cstdint>

namespace xc::bmp {

/* The reader takes a file in one read of at most this many bytes. */
constexpr size_t kReadLimit = size_t(1) << 20;
/* The palette follows a 14-byte file header and a 40-byte info header; the pixel
** indices follow the 256-entry palette, whatever the header's data offset says. */
constexpr size_t kPaletteOffset = 54;
constexpr size_t kPixelOffset = 1078;
/* Widths and heights above this cannot be given to X (signed 16-bit coordinates). */
constexpr int32_t kMaxSide = 32767;

/* Outcome codes, the same as in ReadBmpErrnoMsgs. */
enum : int32_t {
    kOk = 0,
    kCannotOpen = 0x80001,
    kCannotRead = 0x80002,     /* also: the file ends before the data it announces */
    kNotB = 0x80003,           /* also: a width or height of 0, < 0 or > kMaxSide */
    kNotM = 0x80004,
    kNot256Colours = 0x80005,
    kCompressed = 0x80006,
};

/* A checked picture: views into the caller's bytes. */
struct Picture {
    int32_t width;
    int32_t height;
    uint32_t stride;            /* bytes of a stored row: width rounded up to 4 */
    const uint8_t *palette;     /* 256 entries of blue, green, red, reserved */
    const uint8_t *rows;        /* the first stored row, which is the bottom row */
};

/* How many pixels use each palette index (row padding is not counted). */
struct PaletteUse {
    uint32_t count[256];
};

/* Checks the `size` bytes at `data` (null counts as empty) and fills *pic.
** The tests run in this order, and the first that fails gives the result: first byte
** "B" (else kNotB), second byte "M" (else kNotM), 8 bits per pixel (else
** kNot256Colours), no compression (else kCompressed); a field lying beyond `size`
** fails its test with kCannotRead. Then a width or height that is not in
** 1..kMaxSide gives kNotB, and fewer than kPixelOffset + stride x height bytes give
** kCannotRead. Returns kOk when the picture can be drawn; *pic is then complete. */
int32_t decode(const uint8_t *data, size_t size, Picture *pic);

/* Counts the pixels of each palette index of a decoded picture. */
void countUse(const Picture &pic, PaletteUse *use);

/* The palette entry `index` as an X colour string "#rrggbb". */
void colourSpec(const Picture &pic, int index, char spec[8]);

/* One palette index as the bytes of one image pixel, in image memory order. */
struct PixelBytes {
    uint8_t bytes[4];
};

/* Rows first .. end - 1 of a band of rows, clipped to a picture of `height` rows. */
struct RowSpan {
    int32_t first;
    int32_t end;
};
RowSpan clipRows(int32_t firstRow, int32_t rowCount, int32_t height);

/* Where fillRows writes: picture row y (0 = top) at data + y x bytesPerLine, each pixel
** as the first bytesPerPixel (1 to 4) bytes of its palette index's PixelBytes. */
struct RowsOut {
    uint8_t *data;
    size_t bytesPerLine;
    int bytesPerPixel;
};

/* Writes the picture rows firstRow .. firstRow + rowCount - 1 (clipped to the picture)
** through `table`. Bytes past a row's last pixel are left as they are; other
** bytesPerPixel values write nothing. */
void fillRows(const Picture &pic, const PixelBytes table[256], const RowsOut &out,
              int32_t firstRow, int32_t rowCount);

} // namespace xc::bmp

#endif
