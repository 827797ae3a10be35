/* test_kx_locale.cpp - message texts from the catalogue, or the default text. The
** catalogue is read once per process, so this program sets KX_MESSAGES before any
** text is asked for. */
#include "kxtest.h"

#include <cstdio>
#include <cstring>
#include <fstream>
#include <string>
#include <unistd.h>

namespace {

class LocaleTest : public kxtest::PoolTest {
protected:
    static void SetUpTestSuite() {
        char path[] = "/tmp/kxmsgXXXXXX";
        const int fd = mkstemp(path);
        ASSERT_GE(fd, 0);
        close(fd);
        catalogue_ = path;
        std::ofstream(catalogue_) << "# messages of the screens\n"
                                     "757 = Bitte wählen\n"
                                     "  758=  Abbrechen  \n"
                                     "\n"
                                     "759 =\n"
                                     "not a number = ignored\n"
                                     "760 ignored too\n"
                                     "99999999999 = out of range\n";
        setenv("KX_MESSAGES", catalogue_.c_str(), 1);
    }
    static void TearDownTestSuite() {
        unsetenv("KX_MESSAGES");
        std::remove(catalogue_.c_str());
    }
    static std::string catalogue_;
};

std::string LocaleTest::catalogue_;

TEST_F(LocaleTest, CatalogueTextsReplaceTheDefault) {
    EXPECT_STREQ(LocaleGetString("Please choose", 757), "Bitte wählen");
    EXPECT_STREQ(LocaleGetStaticString("Cancel", 758), "Abbrechen") << "blanks trimmed";
    EXPECT_STREQ(LocaleGetString("Empty", 759), "") << "an empty translation is a translation";
}

TEST_F(LocaleTest, NumbersWithoutATextGiveTheDefault) {
    EXPECT_STREQ(LocaleGetString("Help", 761), "Help");
    EXPECT_STREQ(LocaleGetString("Other", 760), "Other") << "a line without '=' is skipped";
    EXPECT_STREQ(LocaleGetString(nullptr, 762), "");
}

TEST_F(LocaleTest, ResultsOutliveTheCallersBuffer) {
    char buffer[32];
    std::strcpy(buffer, "Transient");
    const char *text = LocaleGetString(buffer, 770);
    std::strcpy(buffer, "Overwritten");
    EXPECT_STREQ(text, "Transient");
    EXPECT_EQ(LocaleGetString("Transient", 770), text) << "one copy per text";
    std::ofstream(catalogue_) << "757 = changed\n";
    EXPECT_STREQ(LocaleGetString("Please choose", 757), "Bitte wählen") << "read once";
}

} // namespace
