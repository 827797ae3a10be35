/* bmpcolours.h - the pixel values of a BMP picture's palette (private). */
#ifndef XC_BMPCOLOURS_H
#define XC_BMPCOLOURS_H

#include <X11/Xlib.h>

#include "bmpdecode.h"

namespace xc::bmp {

/* Stores in pixels[index] the pixel value of each palette index, or `fallback` for a
** colour that cannot be had.
**
** On a visual with allocatable cells (PseudoColor, GrayScale, DirectColor, and the
** static ones) it counts the pixels of each index and allocates one read-only cell of
** `colormap` per index that some pixel uses, in index order; unused indices get
** `fallback`. The requests go out in one batch and the replies are collected after, so the
** palette costs one round trip; the server sees the same requests in the same order as
** from one XAllocColor per index.
**
** On a TrueColor visual no cell is ever allocated: the server answers each channel from
** a fixed table of the colormap. Those tables are learned once per display and colormap
** (one batch of 256 grey requests) and every index's pixel is composed from them, which
** gives the values XAllocColor would, without a request per colour and without
** counting. */
void allocateColours(Display *display, Colormap colormap, const Visual *visual,
                     const Picture &pic, unsigned long fallback, unsigned long pixels[256]);

/* Drops the learned TrueColor tables (the display is about to change). */
void forgetLearnedColours();

} // namespace xc::bmp

#endif
