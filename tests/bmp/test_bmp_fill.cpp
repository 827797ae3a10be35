/* test_bmp_fill.cpp - the fuzz target's checks of the decoding and image fill over the
** corpus and a random picture, and a read before the reader was given a display (in this
** program no test gives it one). */
#include "xharness.h" /* gtest before Xlib, whose macros clash with it */

#include <filesystem>
#include <random>

#include "bmpwrite.h"
#include "xcontrols/guibmploader.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size);

namespace {

class BmpFill : public xt::XTest {};

TEST_F(BmpFill, CorpusAndARandomPictureFillEveryImageFormat) {
    for (const auto &entry : std::filesystem::directory_iterator(XC_BMP_CORPUS)) {
        SCOPED_TRACE(entry.path().filename().string()); /* the target aborts on a failure */
        const std::vector<uint8_t> bytes = bmpw::readFile(entry.path().string());
        LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
    }
    std::mt19937 random(7);
    bmpw::Indexed pic(13, 7); /* odd width: rows of every format end in padding */
    for (uint8_t &index : pic.pixels) index = uint8_t(random());
    pic.padding = 0xff; /* not counted as a pixel */
    const std::vector<uint8_t> bytes = bmpw::encode(pic);
    LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
}

TEST_F(BmpFill, ReadBeforeInitFailsWithATraceAndTouchesNothing) {
    const std::string path = XC_BMP_CORPUS "/good-7x5.0.bmp";
    Pixmap pixmap = 0x5eed;
    EXPECT_EQ(GuiReadBmpFile(&pixmap, path.c_str()), 0);
    EXPECT_EQ(ReadBmpErrno, 0x80001);
    EXPECT_EQ(pixmap, Pixmap(0x5eed));
    EXPECT_TRUE(hasTrace("No display to load " + path + ": GuiInitLoadBmps() not called"));
    GuiInitLoadBmps(form());
    EXPECT_EQ(GuiReadBmpFile(&pixmap, path.c_str()), 1);
    EXPECT_EQ(ReadBmpErrno, 0);
    XFreePixmap(xt::display(), pixmap);
}

} // namespace
