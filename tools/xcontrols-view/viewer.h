/* viewer.h - shows a loaded screen in a window of its own, as a client of the library
** does, and reports how it ended. */
#ifndef XC_VIEWER_H
#define XC_VIEWER_H

#include <string>

#include "screenfile.h"

namespace viewer {

/* Exit statuses of the viewer. */
enum ExitCode {
    kAnswered = 0,  /* a CLOSE action fired (answers printed), or the PNG was written */
    kDismissed = 1, /* the window was closed without a CLOSE action */
    kBadInput = 2,  /* bad arguments or a bad screen file */
    kFailed = 3     /* no display, an X or toolkit error, the library could not build the
                    ** screen, or the PNG could not be made */
};

struct Options {
    std::string pngPath; /* render to this file and leave instead of waiting */
    /* once the screen is laid out, write where each item's outer widget is on the screen
    ** to this file: {"<id>": [x, y, width, height], ...} in root window pixels, for
    ** programs that drive the window (tests) */
    std::string layoutPath;
    /* read update documents from this file ("-": standard input) while the screen is
    ** shown, and apply them (docs/screen-format.md, "Live updates") */
    std::string updatesPath;
    int width = 0;       /* window size; 0: the file's, else the screen's natural size */
    int height = 0;
};

/* Opens the display, builds the screen and runs until it is answered or dismissed (or,
** with a PNG path, until it has been rendered). Answers go to standard output. The
** screen's tree is freed with its widgets before returning. */
ExitCode show(screenfile::Loaded &screen, const Options &options, int argc, char **argv);

} // namespace viewer

#endif
