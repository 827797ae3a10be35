/* bmpfill.h - turns a checked BMP picture into the pixels of an X image (private). */
#ifndef XC_BMPFILL_H
#define XC_BMPFILL_H

#include <X11/Xlib.h>

#include "bmpdecode.h"

namespace xc::bmp {

/* Lays a picture into `image` (a ZPixmap of the picture's size), top row first, a band
** of rows at a time; pixels[i] is the X pixel value of palette index i, and bytes that
** are no pixel's are 0. Formats with whole bytes per pixel (8, 16, 24 and 32 bits,
** either byte order) are written directly through a table of each index's pixel
** bytes, laid out once by the image's own put-pixel operation; any other format goes
** pixel by pixel. The rows come out byte for byte as fillImagePerPixel lays them,
** whatever the buffer held before. The image, picture and pixels must outlive it. */
class ImageFiller {
public:
    ImageFiller(XImage *image, const Picture &pic, const unsigned long pixels[256]);
    void fill(int32_t firstRow, int32_t rowCount);

private:
    XImage *image_;
    const Picture &pic_;
    const unsigned long *pixels_;
    bool direct_;
    PixelBytes table_[256];
};

/* The whole picture by clearing the buffer and calling XPutPixel once per pixel. */
void fillImagePerPixel(XImage *image, const Picture &pic, const unsigned long pixels[256]);

} // namespace xc::bmp

#endif
