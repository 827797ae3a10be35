/* test_bmp_noinit.cpp - a read before the reader was given a display fails cleanly.
** (Its own program: every other test gives the reader a display first.) */
#include "bmptest.h"

namespace {

class BmpNoInit : public xt::XTest {};

TEST_F(BmpNoInit, ReadBeforeInitFailsWithATraceAndTouchesNothing) {
    bmpt::TempDir dir;
    const std::string path = dir.file("good.bmp");
    bmpw::Indexed pic(4, 4, 1);
    ASSERT_TRUE(bmpw::writeFile(path, bmpw::encode(pic)));
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
