/* test_monthnames.cpp - the date input's month names come from the message catalogue.
** The names are read once per process, so this program sets its catalogue up before any
** test runs. */
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>

#include <unistd.h>

#include "inputs_support.h"
#include "xcontrols/guidateinput.h"

namespace {

/* A catalogue with some names translated, named by KX_MESSAGES before main. */
const std::string gCatalogue = [] {
    std::string path = "/tmp/xcinputs-months-" + std::to_string(getpid()) + ".txt";
    std::ofstream(path) << "# month names\n757 = FALSCH\n763 = Juni\n767 = Okt\n769 = Dez\n";
    setenv("KX_MESSAGES", path.c_str(), 1);
    return path;
}();

class MonthNamesTest : public inputs::InputsTest {
protected:
    void SetUp() override {
        InputsTest::SetUp();
        const inputs::DateWidgets w = dateWidgets();
        month = w.month;
        input = GuiManageDateInput(w.year, w.month, w.day, w.up, w.down);
        realize();
    }
    void TearDown() override {
        GuiDateInputDestroy(input);
        InputsTest::TearDown();
    }
    static void TearDownTestSuite() { std::remove(gCatalogue.c_str()); }

    int32_t shownMonth() {
        int32_t m = -1;
        GuiDateInputGetMonth(&m, input);
        return m;
    }

    Widget month = nullptr;
    GuiDateInput *input = nullptr;
};

TEST_F(MonthNamesTest, TranslatedNamesAreShownAndUntranslatedOnesKeepTheirDefault) {
    const std::pair<int32_t, const char *> cases[] = {
        {0, "FALSCH"}, {1, "Jan"}, {6, "Juni"}, {10, "Okt"}, {12, "Dez"}};
    for (const auto &[number, name] : cases) {
        GuiDateInputSet(input, 2024, number, 1);
        EXPECT_EQ(inputs::textOf(month), name) << number;
    }
}

TEST_F(MonthNamesTest, TypedNamesAreMatchedAgainstTheTranslations) {
    GuiDateInputSet(input, 2024, 1, 1);
    retype(month, "okt");
    leaveField();
    EXPECT_EQ(shownMonth(), 10);
    retype(month, "d");
    leaveField();
    EXPECT_EQ(shownMonth(), 12);
    EXPECT_EQ(inputs::textOf(month), "Dez");
    retype(month, "Oct");
    leaveField();
    EXPECT_EQ(shownMonth(), 10) << "the default English name now matches by its first letter";
}

} // namespace
