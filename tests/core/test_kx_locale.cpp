/* test_kx_locale.cpp - message texts from the catalogue, or the default text. The
** catalogue is read once per process, so this program names it before any text is asked. */
#include "kxtest.h"
#include <cstring>
#include <fstream>
namespace {
using LocaleTest = kxtest::PoolTest;
TEST_F(LocaleTest, CatalogueTextsReplaceTheDefaultAndAreReadOnce) {
    const std::string catalogue = kxtest::tempFile();
    std::ofstream(catalogue) << "# messages of the screens\n757 = Bitte wählen\n"
                                "  758=  Abbrechen  \n\n759 =\nnot a number = ignored\n"
                                "760 ignored too\n99999999999 = out of range\n";
    kxtest::ScopedEnv env("KX_MESSAGES", catalogue.c_str());
    /* Blanks trimmed; an empty translation is one; a line without '=' is skipped. */
    const struct { const char *fallback; int32_t number; const char *expected; } rows[] = {
        {"Please choose", 757, "Bitte wählen"}, {"Cancel", 758, "Abbrechen"}, {"Empty", 759, ""},
        {"Other", 760, "Other"}, {"Help", 761, "Help"}, {nullptr, 762, ""}};
    for (const auto &row : rows) {
        EXPECT_STREQ(LocaleGetString(row.fallback, row.number), row.expected) << row.number;
        EXPECT_STREQ(LocaleGetStaticString(row.fallback, row.number), row.expected) << row.number;
    }
    char buffer[32] = "Transient";
    const char *text = LocaleGetString(buffer, 770);
    std::strcpy(buffer, "Overwritten");
    EXPECT_STREQ(text, "Transient") << "a result outlives the caller's buffer";
    EXPECT_EQ(LocaleGetString("Transient", 770), text) << "one copy per text";
    std::ofstream(catalogue) << "757 = changed\n";
    EXPECT_STREQ(LocaleGetString("Please choose", 757), "Bitte wählen") << "read once";
    std::remove(catalogue.c_str());
}
} // namespace
