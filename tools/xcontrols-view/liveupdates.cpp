/* liveupdates.cpp - the viewer's update feed: update documents read line by line inside
** the Xt loop and applied to the shown screen. */
#include "liveupdates.h"

#include <Xm/Xm.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>

#include "screencheck.h"

namespace liveupdates {

int openSource(const std::string &path, std::string &error) {
    if (path == "-") return dup(STDIN_FILENO);
    struct stat st {};
    const bool pipe = stat(path.c_str(), &st) == 0 && S_ISFIFO(st.st_mode);
    if (!pipe && S_ISDIR(st.st_mode)) {
        error = "it is a directory";
        return -1;
    }
    const int fd = open(path.c_str(), (pipe ? O_RDWR : O_RDONLY) | O_CLOEXEC);
    if (fd < 0) error = std::strerror(errno);
    return fd;
}

Feed::Feed(XtAppContext app, int fd, std::string name, Widget shell, oScreenDef &screen,
           Rebuilt rebuilt)
    : fd_(fd), name_(std::move(name)), shell_(shell), screen_(screen), rebuilt_(rebuilt) {
    if (fd_ >= 0)
        input_ = XtAppAddInput(app, fd_, reinterpret_cast<XtPointer>(XtInputReadMask), onReadable, this);
}

Feed::~Feed() { stop(); }

void Feed::stop() {
    if (input_ != 0) XtRemoveInput(input_);
    if (fd_ >= 0) close(fd_);
    input_ = 0;
    fd_ = -1;
}

void Feed::onReadable(XtPointer self, int *, XtInputId *) { static_cast<Feed *>(self)->read(); }

void Feed::read() {
    char buffer[65536];
    const ssize_t n = ::read(fd_, buffer, sizeof buffer);
    if (n < 0 && (errno == EINTR || errno == EAGAIN)) return;
    if (n <= 0) { /* the end, or an error that will not go away: the screen stays */
        if (!partial_.empty() && !overlong_) apply(partial_);
        partial_.clear();
        stop();
        return;
    }
    for (const char *p = buffer, *end = buffer + n; p < end;) {
        const char *newline = static_cast<const char *>(std::memchr(p, '\n', end - p));
        const char *lineEnd = newline ? newline : end;
        if (!overlong_) partial_.append(p, lineEnd);
        if (partial_.size() > screenfile::kMaxFileBytes && !overlong_) {
            ++lineNo_;
            refuse("longer than " + std::to_string(screenfile::kMaxFileBytes >> 20) +
                   " MiB, the most an update may have");
            partial_.clear();
            overlong_ = true;
        }
        if (newline) {
            if (overlong_) overlong_ = false;
            else apply(partial_);
            partial_.clear();
        }
        p = newline ? newline + 1 : end;
    }
}

void Feed::refuse(const std::string &error) {
    ++refused_;
    // The loader counts lines within the document, which is one line of the feed.
    const std::string lineText = "line " + std::to_string(lineNo_);
    const bool placed = error.rfind("line 1, ", 0) == 0;
    std::fprintf(stderr, "xcontrols-view: %s: %s%s%s\n", name_.c_str(), lineText.c_str(),
                 placed ? ", " : ": ", (placed ? error.substr(8) : error).c_str());
}

/* A whole screen sent as an update is checked as a screen file is before it is shown. */
void Feed::warn(const std::vector<screenfile::Problem> &problems) const {
    for (const screenfile::Problem &problem : problems)
        std::fprintf(stderr, "xcontrols-view: warning: %s: line %ld, column %lu: %s\n", name_.c_str(), lineNo_,
                     static_cast<unsigned long>(problem.place.column), problem.message.c_str());
}

void Feed::apply(const std::string &line) {
    ++lineNo_;
    if (line.find_first_not_of(" \t\r") == std::string::npos) return;
    auto update = std::make_unique<screenfile::Loaded>();
    bool wholeScreen = false;
    std::string error;
    if (!screenfile::parseUpdate(line, *update, wholeScreen, error)) {
        refuse(error);
        return;
    }
    if (wholeScreen) warn(screenfile::check(*update));
    oUpdateScreen record{update->tree(), 0, 0, nullptr};
    GuiUpdatePlgScreen(&screen_, &record, wholeScreen ? 0 : 1);
    ++applied_;
    if (!update->title.empty()) XtVaSetValues(shell_, XmNtitle, update->title.c_str(), nullptr);
    if (!wholeScreen) return; /* the update tree goes: the shown tree keeps what it took */
    shown_ = std::move(update);
    if (rebuilt_) rebuilt_(screen_.oPluginScreenDef);
}

} // namespace liveupdates
