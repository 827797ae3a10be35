/* guibmploader.h - reads 256-colour uncompressed BMP files into X pixmaps. */
#ifndef XC_GUIBMPLOADER_H
#define XC_GUIBMPLOADER_H

#include <stdint.h>
#include <X11/Intrinsic.h>

#include "xcexport.h"

XC_BEGIN_DECLS

/* One row of the message table: an error code and its text. */
typedef struct ReadBmpErrnoMsg {
    int32_t code;
    const char *message;
} ReadBmpErrnoMsg;

/* The outcome of the last GuiReadBmpFile call: 0 after a success, else one of
**   0x80001 "Cannot open file"   the file cannot be opened (also: a null path, a null
**                                pixmap pointer, or no display given yet);
**   0x80002 "Cannot read file"   the read failed, or the file ends before the pixel
**                                data that its header announces (pictures whose data
**                                lies beyond the first 1 MiB included), or memory for
**                                the picture could not be had;
**   0x80003 "Not a BMP file"     the first byte is not "B", or the width or height is
**                                0, negative (top-down files) or above 32767;
**   0x80004 "Not a BMP file"     the second byte is not "M";
**   0x80005 "Not a 256 Color BMP" not 8 bits per pixel;
**   0x80006 "Cannot cope with RLE BMP" any compression. */
XC_API extern int32_t ReadBmpErrno;

/* The codes above with their texts, in that order, closed by {0, NULL}. The library
** never reads it; it is there to turn ReadBmpErrno into a message. */
XC_API extern const ReadBmpErrnoMsg ReadBmpErrnoMsgs[7];

/* Keeps the display of widget `w` for every later GuiReadBmpFile call; call it before
** the first read (and so before GuiCreateGcsAndFonts). Calling it again switches the
** display. A null widget is traced and the display kept. */
XC_API void GuiInitLoadBmps(Widget w);

/* Reads the 256-colour uncompressed BMP file at `path` into a new pixmap of the
** default screen's depth, stores it through `pixmap` and returns 1. The pixmap and
** the colours allocated for it in the default colormap (one read-only cell per palette
** index that some pixel uses, in index order; the screen's black pixel where
** allocation fails) belong to the caller. On a TrueColor default visual, where no cell
** can be allocated, the pixels are the values allocation gives, composed from the
** colormap's fixed channel tables, which the first read on a display learns. On
** failure it returns 0, leaves *pixmap untouched and sets ReadBmpErrno; nothing is
** traced. The file is taken in one read of at most 1 MiB; rows are stored bottom-up
** and padded to 4 bytes, the pixel data starts at byte 1078. */
XC_API int32_t GuiReadBmpFile(Pixmap *pixmap, const char *path);

/* Writes the trace line "stop compiler bitch" and does nothing else. */
XC_API void GuiFilterDummy(void);

XC_END_DECLS

#endif
