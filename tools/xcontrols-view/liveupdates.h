/* liveupdates.h - applies update documents, read line by line from a file or a pipe
** inside the Xt event loop, to the screen that the viewer shows. */
#ifndef XC_LIVEUPDATES_H
#define XC_LIVEUPDATES_H

#include <X11/Intrinsic.h>

#include <memory>
#include <string>
#include <vector>

#include "guiscreendef.h"
#include "screencheck.h"
#include "screenfile.h"

namespace liveupdates {

/* Opens the update source: "-" is standard input; a named pipe is opened for reading
** and writing, so that opening never waits for a writer and the pipe never ends while
** the viewer runs. Returns the descriptor, or -1 with the reason in `error`. */
int openSource(const std::string &path, std::string &error);

/* Reads update documents from `fd` whenever the Xt loop finds it readable (one read per
** turn, so the window never waits on the source), keeps a partial line until its end
** arrives, and applies each complete line to `screen` with GuiUpdatePlgScreen. A line
** that is not an update document gets one message on standard error naming `name`, its
** line number and the place in it, and changes nothing; a whole screen that loads gets
** the checks of a screen file, each problem a warning there, and is shown. At the end of the input the
** feed stops reading; the screen stays. After a whole-screen update, `rebuilt` (if
** given) is called with the new tree. The feed closes `fd` when it goes. */
class Feed {
public:
    using Rebuilt = void (*)(void *tree);
    Feed(XtAppContext app, int fd, std::string name, Widget shell, oScreenDef &screen,
         Rebuilt rebuilt = nullptr);
    ~Feed();
    Feed(const Feed &) = delete;
    Feed &operator=(const Feed &) = delete;

    long linesApplied() const { return applied_; }
    long linesRefused() const { return refused_; }
    bool ended() const { return fd_ < 0; }

private:
    static void onReadable(XtPointer self, int *fd, XtInputId *id);
    void read();
    void stop();
    void apply(const std::string &line);
    void refuse(const std::string &error);
    void warn(const std::vector<screenfile::Problem> &problems) const;

    int fd_;
    XtInputId input_ = 0;
    std::string name_;
    Widget shell_;
    oScreenDef &screen_;
    Rebuilt rebuilt_;
    std::string partial_;    /* bytes of the line not yet ended */
    bool overlong_ = false;  /* the line being read passed the limit: skip to its end */
    long lineNo_ = 0, applied_ = 0, refused_ = 0;
    /* The screen that the last whole-screen update built: its attachment records must
    ** live as long as its tree is shown. */
    std::unique_ptr<screenfile::Loaded> shown_;
};

} // namespace liveupdates

#endif
