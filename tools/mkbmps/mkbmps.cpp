/* mkbmps.cpp - draws the button pictures up.bmp, down.bmp and combo.bmp.
**
**   mkbmps DIR          writes the three pictures into DIR
**   mkbmps --check DIR  exits 1 unless the pictures in DIR are the ones drawn here */
#include <cstdio>
#include <cstring>
#include <string>

#include "bmpwrite.h"

namespace {

constexpr uint8_t kGrey = 0;  /* the button background */
constexpr uint8_t kBlack = 1; /* the arrow */

bmpw::Indexed canvas(int32_t width, int32_t height) {
    bmpw::Indexed pic(width, height, kGrey);
    pic.palette[kGrey] = {0xc4, 0xc4, 0xc4}; /* Motif's default background */
    pic.palette[kBlack] = {0x00, 0x00, 0x00};
    return pic;
}

/* A horizontal run of black pixels centred on the picture. */
void centredRun(bmpw::Indexed &pic, int32_t y, int32_t length) {
    const int32_t left = (pic.width - length) / 2;
    for (int32_t x = left; x < left + length; ++x) pic.at(x, y) = kBlack;
}

/* Runs of `first`, first + step, ... pixels on rows top .. top + count - 1. */
void triangle(bmpw::Indexed &pic, int32_t top, int32_t count, int32_t first, int32_t step) {
    for (int32_t row = 0; row < count; ++row) centredRun(pic, top + row, first + row * step);
}

/* An arrow pointing up: rows of 1, 3, 5, 7 and 9 pixels with a blank row above and below. */
bmpw::Indexed upArrow() {
    bmpw::Indexed pic = canvas(11, 7);
    triangle(pic, 1, 5, 1, 2);
    return pic;
}

bmpw::Indexed downArrow() {
    bmpw::Indexed pic = canvas(11, 7);
    triangle(pic, 1, 5, 9, -2);
    return pic;
}

/* The drop-down mark: a downward arrow over a bar. */
bmpw::Indexed comboArrow() {
    bmpw::Indexed pic = canvas(10, 10);
    triangle(pic, 2, 4, 8, -2);
    centredRun(pic, 7, 8);
    return pic;
}

struct Output {
    const char *file;
    bmpw::Indexed (*draw)();
};

constexpr Output kOutputs[] = {
    {"up.bmp", upArrow},
    {"down.bmp", downArrow},
    {"combo.bmp", comboArrow},
};

} // namespace

int main(int argc, char **argv) {
    const bool check = argc == 3 && std::strcmp(argv[1], "--check") == 0;
    if (argc != 2 && !check) {
        std::fprintf(stderr, "usage: %s [--check] DIR\n", argv[0]);
        return 2;
    }
    const std::string dir = argv[argc - 1];
    int failures = 0;
    for (const Output &out : kOutputs) {
        const std::string path = dir + "/" + out.file;
        const std::vector<uint8_t> bytes = bmpw::encode(out.draw());
        const bool ok = check ? bmpw::readFile(path) == bytes : bmpw::writeFile(path, bytes);
        if (!ok) {
            std::fprintf(stderr, "%s: %s\n", path.c_str(), check ? "differs" : "cannot write");
            ++failures;
        }
    }
    return failures == 0 ? 0 : 1;
}
