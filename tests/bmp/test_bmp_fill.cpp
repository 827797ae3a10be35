/* test_bmp_fill.cpp - the fuzz target's checks over the corpus, and reads before the
** reader was given a display (in this program no test gives it one). */
#include "xharness.h" /* gtest before Xlib, whose macros clash with it */
#include <filesystem>
#include "bmpwrite.h"
#include "xcontrols/guibmploader.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size);

namespace {

class BmpFill : public xt::XTest {};

TEST_F(BmpFill, CorpusFillsEveryImageFormat) {
    for (const auto &entry : std::filesystem::directory_iterator(XC_BMP_CORPUS)) {
        const std::vector<uint8_t> bytes = bmpw::readFile(entry.path().string());
        LLVMFuzzerTestOneInput(bytes.data(), bytes.size()); /* aborts on a failure */
    }
}

TEST_F(BmpFill, ReadsBeforeInitWithAWidgetFailWithATraceAndTouchNothing) {
    const std::string path = XC_BMP_CORPUS "/good-7x5.0.bmp";
    Pixmap pixmap = 0x5eed;
    GuiInitLoadBmps(nullptr);
    EXPECT_EQ(countTrace("GuiInitLoadBmps() without a widget"), 1);
    EXPECT_EQ(GuiReadBmpFile(&pixmap, path.c_str()), 0);
    EXPECT_EQ(ReadBmpErrno, 0x80001);
    EXPECT_EQ(pixmap, Pixmap(0x5eed));
    EXPECT_TRUE(hasTrace("No display to load " + path + ": GuiInitLoadBmps() not called"));
    GuiFilterDummy(); /* only writes its trace line */
    EXPECT_EQ(traces().back().text, "stop compiler bitch");
}

} // namespace
