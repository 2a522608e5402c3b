#include "base/number_format.h"

#include <gtest/gtest.h>

#include <clocale>
#include <limits>
#include <string>

#include "base/text_number.h"

namespace wakeline {
namespace {

// Width 0: the mask alone. The exact binary value of the 32-bit float is what gets rounded, so
// the legends give it where it decides the last digit.
TEST(FormatToWidth, MasksRoundTheExactFloatHalvesAwayFromZero) {
    const struct {
        const char* legend;
        float value;
        const char* mask;
        const char* expected;
    } rows[] = {
        {"whole, half not to even", 2.5f, "0", "3"},
        {"whole, negative half away", -7.5f, "0", "-8"},
        {"whole, negative rounding to zero keeps its sign", -0.4f, "0", "-0"},
        {"negative zero itself has no sign", -0.0f, "0.0", "0.0"},
        {"the tiniest negative has", -std::numeric_limits<float>::denorm_min(), "0.0", "-0.0"},
        {"-0.039999999 rounds to zero, keeps sign", -0.04f, "0.0", "-0.0"},
        {"0.15000000596 is above the half", 0.15f, "0.0", "0.2"},
        {"2.67499995 is below the half", 2.675f, "0.00", "2.67"},
        {"59.99959946 rounds up to 60", 59.9996f, "00.000", "60.000"},
        {"optional digits drop leading zeros", 5, "##0.0", "5.0"},
        {"1234.5600586 keeps all integer digits", 1234.56f, "##0.0", "1234.6"},
        {"3.14159274 to four decimals", 3.14159265f, "0.0000", "3.1416"},
        {"1e20 as a float is 100000002004087734272", 1e20f, "0.0", "100000002004087734272.0"},
        {"largest float", std::numeric_limits<float>::max(), "0",
         "340282346638528859811704183484516925440"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(FormatToWidth(row.value, row.mask, 0), row.expected) << row.legend;
    }
}

TEST(FormatToWidth, FitsToTheWidthOrFallsBackToWholeNumber) {
    const struct {
        const char* legend;
        float value;
        const char* mask;
        std::int16_t width;
        const char* expected;
    } rows[] = {
        {"shorter: right-aligned", 7.26f, "0.0", 4, " 7.3"},
        {"cut keeps the whole part and the point", 123.46f, "0.0", 4, "123."},
        {"cut loses a digit: whole number, wider than 4", 12345.6f, "0.0", 4, "12346"},
        {"negative: cut -3. has whole part -3, Int(-3.75) is -4", -3.75f, "0.0", 3, "-4"},
        {"cut to a lone sign reads 0", -5.5f, "0.0", 1, "-6"},
        {"99.96 rounds to 100.0, cut 100. is not Int 99", 99.96f, "0.0", 4, "100"},
        {"negative zero fills the width", -0.04f, "0.0", 4, "-0.0"},
        {"huge value falls back in full", 1e20f, "0.0", 4, "100000002004087734272"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(FormatToWidth(row.value, row.mask, row.width), row.expected) << row.legend;
    }
}

TEST(FormatMask, RoundsTheExactDoubleWhenGivenOne) {
    // The double 0.15 lies below the half (0.1499999999999999944...), its float above it.
    EXPECT_EQ(FormatMask(0.15, "0.0"), "0.1");
    // 0.1 is 0.1000000000000000055511151231...: twenty decimals still show its exact digits.
    EXPECT_EQ(FormatMask(0.1, "0.00000000000000000000"), "0.10000000000000000555");
    EXPECT_EQ(FormatMask(-1e300 * 1e300, "0.0"), "-inf");
}

// A Qt program takes the C locale from the user's environment; "." must stay the point.
TEST(FormatMask, IgnoresADecimalCommaLocale) {
    const std::string before = std::setlocale(LC_ALL, nullptr);
    const char* found = nullptr;
    for (const char* name : {"de_DE.UTF-8", "de_DE.utf8", "fr_FR.UTF-8", "nl_NL.UTF-8"}) {
        found = found != nullptr ? found : std::setlocale(LC_ALL, name);
    }
    if (found == nullptr) {
        GTEST_SKIP() << "no locale with a decimal comma installed";
    }
    const std::string twenty = FormatMask(0.1, "0.00000000000000000000");
    const std::string one = FormatMask(0.15, "0.0");
    const double read = LeadingNumber("12.5");
    std::setlocale(LC_ALL, before.c_str());
    EXPECT_EQ(twenty, "0.10000000000000000555");
    EXPECT_EQ(one, "0.1");
    EXPECT_EQ(read, 12.5);
}

}  // namespace
}  // namespace wakeline
