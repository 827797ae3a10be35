/* bmpfill.h - turns a checked BMP picture into the pixels of an X image (private). */
#ifndef XC_BMPFILL_H
#define XC_BMPFILL_H

#include <X11/Xlib.h>

#include "bmpdecode.h"

namespace xc::bmp {

/* Fills `image` (a ZPixmap at least as large as the picture) top row first; pixels[i]
** is the X pixel value of palette index i. Formats with whole bytes per pixel (8, 16,
** 24 and 32 bits, either byte order) are written directly through a table of each
** index's pixel bytes, laid out by the image's own put-pixel operation; any other
** format goes pixel by pixel. The result is the same as fillImagePerPixel's. */
void fillImage(XImage *image, const Picture &pic, const unsigned long pixels[256]);

/* The same through one XPutPixel call per pixel. */
void fillImagePerPixel(XImage *image, const Picture &pic, const unsigned long pixels[256]);

} // namespace xc::bmp

#endif
