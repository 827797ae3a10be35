/* bench_bmp.cpp - what loading a 1000 x 1000 256-colour BMP costs against the least any
** loader must do: create a pixmap of that size and put an already converted image in it.
** Prints both medians and their ratio (goal: at most 1.5). Run under a display. */
#include <X11/Intrinsic.h>
#include <X11/Shell.h>
#include <X11/Xutil.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "bmpwrite.h"
#include "xcontrols/guibmploader.h"

namespace {

constexpr int kSide = 1000;
constexpr int kRounds = 41;

/* Every palette index in use, in bands and diagonals, as a photograph would. */
bmpw::Indexed picture() {
    bmpw::Indexed pic(kSide, kSide);
    for (int i = 0; i < 256; ++i)
        pic.palette[size_t(i)] = {uint8_t(i), uint8_t((i * 3) & 0xff), uint8_t(255 - i)};
    for (int y = 0; y < kSide; ++y)
        for (int x = 0; x < kSide; ++x) pic.at(x, y) = uint8_t((x / 4 + y / 3) & 0xff);
    return pic;
}

/* The picture as the server wants it, converted before any timing starts. */
XImage *convertedImage(Display *dpy, const bmpw::Indexed &pic) {
    const int screen = DefaultScreen(dpy);
    XImage *image = XCreateImage(dpy, DefaultVisual(dpy, screen), unsigned(DefaultDepth(dpy, screen)),
                                 ZPixmap, 0, nullptr, kSide, kSide, 8, 0);
    image->data = static_cast<char *>(std::calloc(size_t(image->bytes_per_line), kSide));
    unsigned long pixels[256];
    for (int i = 0; i < 256; ++i) {
        XColor c = {};
        c.red = uint16_t(pic.palette[size_t(i)].red << 8);
        c.green = uint16_t(pic.palette[size_t(i)].green << 8);
        c.blue = uint16_t(pic.palette[size_t(i)].blue << 8);
        c.flags = DoRed | DoGreen | DoBlue;
        pixels[i] = XAllocColor(dpy, DefaultColormap(dpy, screen), &c) ? c.pixel : 0;
    }
    for (int y = 0; y < kSide; ++y)
        for (int x = 0; x < kSide; ++x) XPutPixel(image, x, y, pixels[pic.at(x, y)]);
    return image;
}

/* Wall time in ms of `work` up to the server's answer; the pixmap it made is freed
** untimed. */
double timeMs(Display *dpy, const std::function<Pixmap()> &work) {
    const auto start = std::chrono::steady_clock::now();
    const Pixmap made = work();
    XSync(dpy, False);
    const std::chrono::duration<double, std::milli> took = std::chrono::steady_clock::now() - start;
    if (made) XFreePixmap(dpy, made);
    XSync(dpy, False);
    return took.count();
}

double median(std::vector<double> times) {
    std::sort(times.begin(), times.end());
    return times[times.size() / 2];
}

} // namespace

int main(int argc, char **argv) {
    XtAppContext app;
    Widget shell = XtOpenApplication(&app, "BenchBmp", nullptr, 0, &argc, argv, nullptr,
                                     applicationShellWidgetClass, nullptr, 0);
    Display *dpy = XtDisplay(shell);
    GuiInitLoadBmps(shell);

    const bmpw::Indexed pic = picture();
    const std::string path =
        (std::filesystem::temp_directory_path() / ("bench_bmp_" + std::to_string(getpid()) + ".bmp")).string();
    if (!bmpw::writeFile(path, bmpw::encode(pic))) {
        std::fprintf(stderr, "cannot write %s\n", path.c_str());
        return 1;
    }
    XImage *image = convertedImage(dpy, pic);
    const int screen = DefaultScreen(dpy);
    const Window root = RootWindow(dpy, screen);
    GC gc = XCreateGC(dpy, root, 0, nullptr);

    const auto baselineRound = [&] {
        const Pixmap p = XCreatePixmap(dpy, root, kSide, kSide, unsigned(DefaultDepth(dpy, screen)));
        XPutImage(dpy, p, gc, image, 0, 0, 0, 0, kSide, kSide);
        return p;
    };
    bool ok = true;
    const auto loadRound = [&] {
        Pixmap p = 0;
        ok = ok && GuiReadBmpFile(&p, path.c_str()) == 1;
        return p;
    };
    /* Rounds alternate, so that whatever else the machine does weighs on both alike. */
    std::vector<double> baselineTimes, loadTimes;
    timeMs(dpy, loadRound); /* the first load learns the colormap: not counted */
    for (int round = 0; round < kRounds; ++round) {
        baselineTimes.push_back(timeMs(dpy, baselineRound));
        loadTimes.push_back(timeMs(dpy, loadRound));
    }
    const double baseline = median(baselineTimes);
    const double load = median(loadTimes);

    XFreeGC(dpy, gc);
    XDestroyImage(image);
    std::filesystem::remove(path);
    if (!ok) {
        std::fprintf(stderr, "bench_bmp: the picture did not load (code 0x%x)\n", ReadBmpErrno);
        return 1;
    }
    std::printf("bench_bmp: %dx%d 256-colour BMP, depth %d, median of %d\n", kSide, kSide,
                DefaultDepth(dpy, screen), kRounds);
    std::printf("  baseline (create pixmap + put converted image): %8.2f ms\n", baseline);
    std::printf("  GuiReadBmpFile:                                 %8.2f ms\n", load);
    std::printf("  ratio: %.2f (goal <= 1.50)\n", load / baseline);
    return 0;
}
