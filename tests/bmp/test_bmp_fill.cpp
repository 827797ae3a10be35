/* test_bmp_fill.cpp - the direct image fill lays out exactly the bytes that one
** XPutPixel per pixel would, in every image format a server may ask for. */
#include "bmptest.h"

#include <algorithm>
#include <random>

#include "bmpdecode.h"
#include "bmpfill.h"
#include "imageformats.h"

namespace {

namespace bmp = xc::bmp;

using bmpt::Format;
using bmpt::kFormats;

/* An image of the format, checked to be one Xlib takes. */
struct TestImage : bmpt::TestImage {
    TestImage(const Format &f, int width, int height) : bmpt::TestImage(f, width, height) {
        EXPECT_TRUE(valid) << f.name;
    }
};

class BmpFill : public xt::XTest {};

TEST_F(BmpFill, DirectFillEqualsOnePutPixelPerPixelInEveryFormat) {
    std::mt19937 random(7);
    bmpw::Indexed pic(13, 7); /* odd width: rows of every format end in padding */
    bmpt::distinctPalette(pic);
    for (uint8_t &index : pic.pixels) index = uint8_t(random());
    pic.padding = 0xff;
    const std::vector<uint8_t> file = bmpw::encode(pic);
    bmp::Picture decoded;
    ASSERT_EQ(bmp::decode(file.data(), file.size(), &decoded), bmp::kOk);

    for (const Format &f : kFormats) {
        const unsigned long mask = bmpt::pixelMask(f);
        unsigned long pixels[256];
        for (unsigned long &p : pixels) p = random() & mask;

        TestImage direct(f, pic.width, pic.height);
        TestImage perPixel(f, pic.width, pic.height);
        for (char &byte : direct.data) byte = char(random());
        bmp::ImageFiller(&direct.image, decoded, pixels).fill(0, pic.height);
        bmp::fillImagePerPixel(&perPixel.image, decoded, pixels);
        EXPECT_EQ(direct.data, perPixel.data) << f.name;

        /* Band by band, in any order, the same again. */
        TestImage banded(f, pic.width, pic.height);
        bmp::ImageFiller filler(&banded.image, decoded, pixels);
        for (int32_t first : {4, 0, 2, 6}) filler.fill(first, 2);
        EXPECT_EQ(banded.data, perPixel.data) << f.name << ", in bands";

        /* And the result is the picture, top row first. */
        for (int32_t y = 0; y < pic.height; ++y)
            for (int32_t x = 0; x < pic.width; ++x)
                ASSERT_EQ(XGetPixel(&direct.image, x, y), pixels[pic.at(x, y)])
                    << f.name << " at " << x << "," << y;
    }
}

TEST_F(BmpFill, WhatTheBufferHeldBeforeDoesNotShow) {
    bmpw::Indexed pic(3, 2, 1);
    const std::vector<uint8_t> file = bmpw::encode(pic);
    bmp::Picture decoded;
    ASSERT_EQ(bmp::decode(file.data(), file.size(), &decoded), bmp::kOk);
    unsigned long pixels[256] = {};
    pixels[1] = 0xab;
    for (const Format &f : {kFormats[0], kFormats[10]}) {
        TestImage direct(f, 3, 2);
        TestImage perPixel(f, 3, 2);
        std::fill(direct.data.begin(), direct.data.end(), char(0x5a));
        std::fill(perPixel.data.begin(), perPixel.data.end(), char(0x5a));
        bmp::ImageFiller(&direct.image, decoded, pixels).fill(0, 2);
        bmp::fillImagePerPixel(&perPixel.image, decoded, pixels);
        EXPECT_EQ(direct.data, perPixel.data) << f.name;
        EXPECT_EQ(std::count(direct.data.begin(), direct.data.end(), char(0x5a)), 0) << f.name;
    }
    /* 8 bits: three pixels and a cleared padding byte per row. */
    TestImage eight(kFormats[0], 3, 2);
    std::fill(eight.data.begin(), eight.data.end(), char(0x5a));
    bmp::ImageFiller(&eight.image, decoded, pixels).fill(0, 2);
    const std::vector<char> expected = {char(0xab), char(0xab), char(0xab), 0,
                                        char(0xab), char(0xab), char(0xab), 0};
    EXPECT_EQ(eight.data, expected);
}

TEST_F(BmpFill, EachPixelIsCountedOnceAndPaddingNever) {
    bmpw::Indexed pic(5, 3, 2);
    pic.at(4, 0) = 9;
    pic.padding = 9; /* padding bytes are not pixels */
    const std::vector<uint8_t> file = bmpw::encode(pic);
    bmp::Picture decoded;
    ASSERT_EQ(bmp::decode(file.data(), file.size(), &decoded), bmp::kOk);
    EXPECT_EQ(decoded.stride, 8u);
    bmp::PaletteUse use;
    bmp::countUse(decoded, &use);
    EXPECT_EQ(use.count[2], 14u);
    EXPECT_EQ(use.count[9], 1u);
    uint32_t total = 0;
    for (uint32_t count : use.count) total += count;
    EXPECT_EQ(total, 15u);
}

} // namespace
