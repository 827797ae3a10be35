/* bmpcolours.cpp - the pixel values of a BMP picture's palette, in one round trip or none. */
#include "bmpcolours.h"

#include <X11/Xlib-xcb.h>
#include <xcb/xproto.h>

#include <cstdlib>

namespace xc::bmp {
namespace {

/* One colour request per palette index, sent in one batch; replies are taken in order. */
class ColourBatch {
public:
    ColourBatch(Display *display, Colormap colormap)
        : connection_(XGetXCBConnection(display)), colormap_(xcb_colormap_t(colormap)) {}

    void send(int slot, const XColor &colour) {
        cookies_[slot] = xcb_alloc_color(connection_, colormap_, colour.red, colour.green,
                                         colour.blue);
        sent_[slot] = true;
    }

    /* The pixel the server gave for the slot; false when it was not sent or failed. */
    bool take(int slot, unsigned long *pixel) {
        if (!sent_[slot]) return false;
        xcb_generic_error_t *error = nullptr;
        xcb_alloc_color_reply_t *reply = xcb_alloc_color_reply(connection_, cookies_[slot], &error);
        const bool ok = reply != nullptr;
        if (ok) *pixel = reply->pixel;
        std::free(reply);
        std::free(error);
        return ok;
    }

private:
    xcb_connection_t *connection_;
    xcb_colormap_t colormap_;
    xcb_alloc_color_cookie_t cookies_[256] = {};
    bool sent_[256] = {};
};

/* What the server answers for each 8-bit level of each channel on a TrueColor colormap. */
struct ChannelTables {
    Display *display = nullptr;
    Colormap colormap = 0;
    unsigned long red[256] = {};
    unsigned long green[256] = {};
    unsigned long blue[256] = {};
    unsigned long rest = 0; /* bits outside the three masks (alpha), the same for all */
};

ChannelTables gLearned;

XColor level(int value) {
    XColor colour = {};
    colour.red = colour.green = colour.blue = static_cast<unsigned short>(value << 8);
    return colour;
}

bool learn(Display *display, Colormap colormap, const Visual *visual) {
    ColourBatch batch(display, colormap);
    for (int value = 0; value < 256; ++value) batch.send(value, level(value));
    ChannelTables learned;
    const unsigned long masks = visual->red_mask | visual->green_mask | visual->blue_mask;
    bool complete = true;
    for (int value = 0; value < 256; ++value) {
        unsigned long pixel = 0;
        complete = batch.take(value, &pixel) && complete;
        learned.red[value] = pixel & visual->red_mask;
        learned.green[value] = pixel & visual->green_mask;
        learned.blue[value] = pixel & visual->blue_mask;
        learned.rest = pixel & ~masks;
    }
    if (!complete) return false;
    learned.display = display;
    learned.colormap = colormap;
    gLearned = learned;
    return true;
}

bool tablesFor(Display *display, Colormap colormap, const Visual *visual) {
    if (visual->c_class != TrueColor) return false;
    if (gLearned.display == display && gLearned.colormap == colormap) return true;
    return learn(display, colormap, visual);
}

void composeColours(const Picture &pic, unsigned long pixels[256]) {
    for (int index = 0; index < 256; ++index) {
        const uint8_t *entry = pic.palette + 4 * index; /* blue, green, red */
        pixels[index] =
            gLearned.red[entry[2]] | gLearned.green[entry[1]] | gLearned.blue[entry[0]] | gLearned.rest;
    }
}

void requestColours(Display *display, Colormap colormap, const Picture &pic,
                    unsigned long pixels[256]) {
    PaletteUse use;
    countUse(pic, &use);
    ColourBatch batch(display, colormap);
    for (int index = 0; index < 256; ++index) {
        if (use.count[index] == 0) continue;
        char spec[8];
        colourSpec(pic, index, spec);
        XColor colour = {};
        if (XParseColor(display, colormap, spec, &colour)) batch.send(index, colour);
    }
    for (int index = 0; index < 256; ++index) batch.take(index, &pixels[index]);
}

} // namespace

void allocateColours(Display *display, Colormap colormap, const Visual *visual,
                     const Picture &pic, unsigned long fallback, unsigned long pixels[256]) {
    for (int index = 0; index < 256; ++index) pixels[index] = fallback;
    if (tablesFor(display, colormap, visual))
        composeColours(pic, pixels);
    else
        requestColours(display, colormap, pic, pixels);
}

void forgetLearnedColours() { gLearned = ChannelTables(); }

} // namespace xc::bmp
