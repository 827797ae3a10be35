/* test_bmp_sweep.cpp - the reader on broken files: every truncation of a good file,
** seeded random mutations, and the regression corpus (files the fuzzer found or that
** seed it). None may crash, raise an X error, leak, or touch the pixmap on failure. */
#include <algorithm>
#include <random>

#include "bmptest.h"

namespace {

using bmpt::Load;

constexpr int32_t kCannotRead = 0x80002;
constexpr int32_t kNotB = 0x80003;

bool knownCode(int32_t code) {
    for (const ReadBmpErrnoMsg *row = ReadBmpErrnoMsgs; row->message; ++row)
        if (row->code == code) return true;
    return false;
}

int32_t headerWord(const std::vector<uint8_t> &bytes, size_t offset) {
    uint32_t v = 0;
    for (size_t i = 4; i-- > 0;) v = v << 8 | (offset + i < bytes.size() ? bytes[offset + i] : 0);
    return int32_t(v);
}

bmpw::Indexed goodPicture() {
    bmpw::Indexed pic(7, 5);
    bmpt::distinctPalette(pic);
    for (int32_t y = 0; y < 5; ++y)
        for (int32_t x = 0; x < 7; ++x) pic.at(x, y) = uint8_t(x + 7 * y);
    pic.padding = 250;
    return pic;
}

class BmpSweep : public bmpt::BmpTest {
protected:
    /* The invariants of any outcome; on success the pixmap has the header's size. */
    void expectConsistent(const Load &got, const std::vector<uint8_t> &bytes,
                          const std::string &what) {
        ASSERT_TRUE(got.result == 0 || got.result == 1) << what;
        if (got.result == 0) {
            EXPECT_TRUE(knownCode(got.error)) << what << ": code 0x" << std::hex << got.error;
            EXPECT_EQ(got.pixmap, kUntouched) << what;
            return;
        }
        EXPECT_EQ(got.error, 0) << what;
        const bmpt::Geometry g = bmpt::pixmapGeometry(got.pixmap);
        EXPECT_EQ(int32_t(g.width), headerWord(bytes, 18)) << what;
        EXPECT_EQ(int32_t(g.height), headerWord(bytes, 22)) << what;
    }
};

TEST_F(BmpSweep, EveryTruncationOfAGoodFileIsRefusedAsUnreadable) {
    const bmpw::Indexed pic = goodPicture();
    const std::vector<uint8_t> whole = bmpw::encode(pic);
    for (size_t length = 0; length < whole.size(); ++length) {
        const Load got = load(std::vector<uint8_t>(whole.begin(), whole.begin() + long(length)));
        ASSERT_EQ(got.result, 0) << "length " << length;
        ASSERT_EQ(got.error, kCannotRead) << "length " << length;
        ASSERT_EQ(got.pixmap, kUntouched) << "length " << length;
    }
    const Load complete = load(whole);
    ASSERT_EQ(complete.result, 1);
    expectPicture(complete.pixmap, pic);
}

TEST_F(BmpSweep, SeededMutationsNeverBreakTheReader) {
    const std::vector<uint8_t> whole = bmpw::encode(goodPicture());
    std::mt19937 random(20241122);
    int loaded = 0;
    for (int round = 0; round < 3000; ++round) {
        std::vector<uint8_t> bytes = whole;
        bool headerTouched = false;
        const int changes = 1 + int(random() % 6);
        for (int i = 0; i < changes; ++i) {
            /* Half of the changes hit the 54 header bytes, where the decisions are. */
            const size_t at = random() % 2 ? random() % 54 : random() % bytes.size();
            const uint8_t value = random() % 4 ? uint8_t(random()) : uint8_t(random() % 2 ? 0 : 0xff);
            headerTouched |= at < 54 && bytes[at] != value;
            bytes[at] = value;
        }
        if (random() % 8 == 0) {
            bytes.resize(random() % (bytes.size() + 64), uint8_t(random()));
            headerTouched = true;
        }
        const std::string what = "round " + std::to_string(round);
        const Load got = load(bytes);
        expectConsistent(got, bytes, what);
        if (!headerTouched) {
            ASSERT_EQ(got.result, 1) << what << ": palette or pixel change refused";
        }
        if (!bytes.empty() && bytes[0] != 'B') {
            ASSERT_EQ(got.error, kNotB) << what;
        }
        loaded += got.result;
    }
    /* The sweep reached both outcomes in numbers. */
    EXPECT_GT(loaded, 300);
    EXPECT_LT(loaded, 2700);
}

TEST_F(BmpSweep, CorpusFilesGiveTheCodeInTheirName) {
    /* Each file is named <what>.<expected code in hex>.bmp; 0 means it loads. */
    std::vector<std::filesystem::path> files;
    for (const auto &entry : std::filesystem::directory_iterator(XC_BMP_CORPUS))
        if (entry.path().extension() == ".bmp") files.push_back(entry.path());
    std::sort(files.begin(), files.end());
    ASSERT_FALSE(files.empty());
    for (const std::filesystem::path &file : files) {
        const std::string code = file.stem().extension().string();
        ASSERT_GT(code.size(), 1u) << file << ": no expected code in the name";
        const int32_t expected = int32_t(std::stoul(code.substr(1), nullptr, 16));
        const Load got = loadPath(file.string());
        EXPECT_EQ(got.error, expected) << file.filename();
        expectConsistent(got, bmpw::readFile(file.string()), file.filename().string());
    }
}

} // namespace
