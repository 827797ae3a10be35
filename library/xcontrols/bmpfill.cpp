/* bmpfill.cpp - turns a checked BMP picture into the pixels of an X image. */
#include "bmpfill.h"

#include <X11/Xutil.h>

#include <cstring>

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

void clearRows(XImage *image, RowSpan rows) {
    const auto bytesPerLine = static_cast<size_t>(image->bytes_per_line);
    std::memset(image->data + size_t(rows.first) * bytesPerLine, 0,
                size_t(rows.end - rows.first) * bytesPerLine);
}

void putPixels(XImage *image, const Picture &pic, const unsigned long pixels[256], RowSpan rows) {
    clearRows(image, rows);
    for (int32_t y = rows.first; y < rows.end; ++y) {
        const uint8_t *index = pic.rows + size_t(pic.height - 1 - y) * pic.stride;
        for (int32_t x = 0; x < pic.width; ++x) XPutPixel(image, x, y, pixels[index[x]]);
    }
}

} // namespace

ImageFiller::ImageFiller(XImage *image, const Picture &pic, const unsigned long pixels[256])
    : image_(image), pic_(pic), pixels_(pixels), direct_(wholeBytesPerPixel(*image)), table_() {
    if (!direct_) return;
    for (int index = 0; index < 256; ++index) table_[index] = pixelBytes(*image, pixels[index]);
}

void ImageFiller::fill(int32_t firstRow, int32_t rowCount) {
    const RowSpan rows = clipRows(firstRow, rowCount, pic_.height);
    if (!direct_) {
        putPixels(image_, pic_, pixels_, rows);
        return;
    }
    const RowsOut out = {reinterpret_cast<uint8_t *>(image_->data),
                         static_cast<size_t>(image_->bytes_per_line), image_->bits_per_pixel / 8};
    fillRows(pic_, table_, out, rows.first, rows.end - rows.first);
    /* Every pixel byte is written: only the bytes after a row's last pixel are cleared. */
    const size_t used = size_t(pic_.width) * size_t(out.bytesPerPixel);
    if (used == out.bytesPerLine) return;
    for (int32_t y = rows.first; y < rows.end; ++y)
        std::memset(out.data + size_t(y) * out.bytesPerLine + used, 0, out.bytesPerLine - used);
}

void fillImagePerPixel(XImage *image, const Picture &pic, const unsigned long pixels[256]) {
    putPixels(image, pic, pixels, clipRows(0, pic.height, pic.height));
}

} // namespace xc::bmp
