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
    const struct { const char *fallback; int32_t number; const char *expected, *why; } rows[] = {
        {"Please choose", 757, "Bitte wählen", "a translation"},
        {"Cancel", 758, "Abbrechen", "blanks trimmed"},
        {"Empty", 759, "", "an empty translation is a translation"},
        {"Other", 760, "Other", "a line without '=' is skipped"},
        {"Help", 761, "Help", "no line for the number"},
        {nullptr, 762, "", "no default at all"},
    };
    for (const auto &row : rows) {
        EXPECT_STREQ(LocaleGetString(row.fallback, row.number), row.expected) << row.why;
        EXPECT_STREQ(LocaleGetStaticString(row.fallback, row.number), row.expected) << row.why;
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
