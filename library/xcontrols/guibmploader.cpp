/* guibmploader.cpp - reads 256-colour uncompressed BMP files into X pixmaps. */
#include "xcontrols/guibmploader.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <memory>

#include <X11/Xutil.h>

#include "bmpcolours.h"
#include "bmpdecode.h"
#include "bmpfill.h"
#include "guicommon.h"

namespace bmp = xc::bmp;

extern "C" {

int32_t ReadBmpErrno = 0;

const ReadBmpErrnoMsg ReadBmpErrnoMsgs[7] = {
    {bmp::kCannotOpen, "Cannot open file"},
    {bmp::kCannotRead, "Cannot read file"},
    {bmp::kNotB, "Not a BMP file"},
    {bmp::kNotM, "Not a BMP file"},
    {bmp::kNot256Colours, "Not a 256 Color BMP"},
    {bmp::kCompressed, "Cannot cope with RLE BMP"},
    {0, nullptr},
};

} // extern "C"

namespace {

enum TraceNo : int32_t { kTraceFilterDummy = 11, kTraceNoWidget = 12, kTraceNoDisplay = 13 };

/* Every picture is made on this display. */
Display *gDisplay = nullptr;

/* The image goes to the server in bands of about this many bytes. */
constexpr int kBandBytes = 256 * 1024;

/* What a picture is made with: the default screen's visual, depth, colormap, root. */
struct Target {
    Display *display;
    Visual *visual;
    int depth;
    Colormap colormap;
    Window root;
    unsigned long black;
};

Target defaultTarget(Display *display) {
    const int screen = DefaultScreen(display);
    return {display,
            DefaultVisual(display, screen),
            DefaultDepth(display, screen),
            DefaultColormap(display, screen),
            RootWindow(display, screen),
            BlackPixel(display, screen)};
}

/* A block of the default pool, given back when the guard goes. */
class PoolBlock {
public:
    explicit PoolBlock(size_t size) : block_(MemAllocateFromPool(size, xc::pool())) {}
    ~PoolBlock() { MemFreeInternal(&block_); }
    PoolBlock(const PoolBlock &) = delete;
    PoolBlock &operator=(const PoolBlock &) = delete;
    uint8_t *get() const { return static_cast<uint8_t *>(block_); }

private:
    void *block_;
};

/* An image whose data buffer comes from the pool: the buffer goes back to the pool and
** the structure is freed as plain memory, never through Xlib's image destructor. */
struct ImageRelease {
    void operator()(XImage *image) const {
        MemFreeInternal(&image->data);
        XtFree(reinterpret_cast<char *>(image));
    }
};
using Image = std::unique_ptr<XImage, ImageRelease>;

/* The file's first bytes, in one read of at most 1 MiB. */
int32_t readFile(const char *path, const PoolBlock &buffer, size_t *size) {
    const int fd = ::open(path, O_RDONLY | O_CLOEXEC);
    if (fd < 0) return bmp::kCannotOpen;
    const ssize_t got = buffer.get() ? ::read(fd, buffer.get(), bmp::kReadLimit) : -1;
    ::close(fd);
    if (got < 0) return bmp::kCannotRead;
    *size = static_cast<size_t>(got);
    return bmp::kOk;
}

/* A ZPixmap image of the picture's size with its data from the pool. */
Image createImage(const Target &target, const bmp::Picture &pic) {
    Image image(XCreateImage(target.display, target.visual, target.depth, ZPixmap, 0, nullptr,
                             pic.width, pic.height, 8, 0));
    if (!image || image->bytes_per_line <= 0) return nullptr;
    const size_t bytes = size_t(image->bytes_per_line) * size_t(pic.height);
    image->data = static_cast<char *>(MemAllocateFromPool(bytes, xc::pool()));
    if (image->data == nullptr) return nullptr;
    return image;
}

int32_t drawPicture(const Target &target, const bmp::Picture &pic, Pixmap *pixmap) {
    unsigned long pixels[256];
    bmp::allocateColours(target.display, target.colormap, target.visual, pic, target.black,
                         pixels);
    Image image = createImage(target, pic);
    if (!image) return bmp::kCannotRead;

    GC gc = XCreateGC(target.display, target.root, 0, nullptr);
    *pixmap = XCreatePixmap(target.display, target.root, static_cast<unsigned>(pic.width),
                            static_cast<unsigned>(pic.height), static_cast<unsigned>(target.depth));
    /* Band by band: the server copies one band into the pixmap while the next is filled. */
    bmp::ImageFiller filler(image.get(), pic, pixels);
    const int32_t band = std::max(1, kBandBytes / image->bytes_per_line);
    for (int32_t first = 0; first < pic.height; first += band) {
        const int32_t rows = std::min(band, pic.height - first);
        filler.fill(first, rows);
        XPutImage(target.display, *pixmap, gc, image.get(), 0, first, 0, first,
                  static_cast<unsigned>(pic.width), static_cast<unsigned>(rows));
    }
    XFreeGC(target.display, gc);
    return bmp::kOk;
}

int32_t readBmp(Pixmap *pixmap, const char *path) {
    if (gDisplay == nullptr) {
        xc::trace(kTraceNoDisplay, 0, "No display to load %s: GuiInitLoadBmps() not called",
                  path ? path : "(null)");
        return bmp::kCannotOpen;
    }
    if (pixmap == nullptr || path == nullptr) return bmp::kCannotOpen;
    const Target target = defaultTarget(gDisplay);

    PoolBlock buffer(bmp::kReadLimit);
    size_t size = 0;
    const int32_t readResult = readFile(path, buffer, &size);
    if (readResult != bmp::kOk) return readResult;

    bmp::Picture pic;
    const int32_t checked = bmp::decode(buffer.get(), size, &pic);
    if (checked != bmp::kOk) return checked;
    return drawPicture(target, pic, pixmap);
}

} // namespace

extern "C" {

void GuiInitLoadBmps(Widget w) {
    if (w == nullptr) {
        xc::trace(kTraceNoWidget, 0, "GuiInitLoadBmps() without a widget");
        return;
    }
    gDisplay = XtDisplay(w);
    bmp::forgetLearnedColours();
}

int32_t GuiReadBmpFile(Pixmap *pixmap, const char *path) {
    ReadBmpErrno = 0;
    ReadBmpErrno = readBmp(pixmap, path);
    return ReadBmpErrno == bmp::kOk ? 1 : 0;
}

void GuiFilterDummy(void) { xc::trace(kTraceFilterDummy, 1, "stop compiler bitch"); }

} // extern "C"
