/* xsnapshot.h - writes what a window shows on the X server to a PNG file. */
#ifndef XC_XSNAPSHOT_H
#define XC_XSNAPSHOT_H

#include <X11/Xlib.h>

#ifdef __cplusplus
extern "C" {
#endif

/* Reads the window's pixels with XGetImage (the window must be viewable) and writes them
** as an 8-bit RGB PNG. Returns 1, or 0 when the window cannot be read or the file not
** written. */
int XSnapshotWindowToPng(Display *dpy, Window win, const char *path);

#ifdef __cplusplus
}
#endif

#endif
