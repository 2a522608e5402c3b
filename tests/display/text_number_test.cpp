#include "display/text_number.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>

namespace wakeline {
namespace {

TEST(LeadingNumber, ReadsTheNumberAtTheStartOfATextOnly) {
    const std::string hugeDigits(400, '9');
    const struct {
        const char* legend;
        std::string text;
        double expected;
    } rows[] = {
        {"blanks skipped, stops at a letter", " 12.5abc", 12.5},
        {"point without an integer digit", "-.5", -0.5},
        {"plus sign", "+3", 3},
        {"trailing point", "5.", 5},
        {"second point ends the number", "1.2.3", 1.2},
        {"comma ends the number", "12,5", 12},
        {"no exponent", "1e3", 1},
        {"letters", "abc", 0},
        {"empty", "", 0},
        {"lone minus", "-", 0},
        {"lone point", ".", 0},
        {"blank after the sign", "- 5", 0},
        {"nan is not a number here", "nan", 0},
        {"inf is not a number here", "inf", 0},
        {"400 leading zeros", std::string(400, '0') + "1.5", 1.5},
        {"400 digits overflow", hugeDigits, INFINITY},
        {"400 negative digits overflow", "-" + hugeDigits, -INFINITY},
        {"too small to hold", "0." + std::string(400, '0') + "1", 0},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(LeadingNumber(row.text), row.expected) << row.legend;
    }
}

TEST(IsDecimalNumber, AcceptsOneSignedDecimalNumberAndNothingElse) {
    const struct {
        const char* legend;
        const char* text;
        bool expected;
    } rows[] = {
        {"plain", "52.5", true},
        {"negative with blanks around", " -4.25 ", true},
        {"tabs around", "\t3\t", true},
        {"plus sign", "+1", true},
        {"trailing point", "5.", true},
        {"leading point", ".5", true},
        {"empty", "", false},
        {"lone sign", "-", false},
        {"decimal comma", "1,5", false},
        {"two points", "1.2.3", false},
        {"exponent", "1e3", false},
        {"trailing letter", "12a", false},
        {"blank inside", "- 5", false},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(IsDecimalNumber(row.text), row.expected) << row.legend;
    }
}

TEST(RoundHalfEven, RoundsHalvesToTheEvenNeighbour) {
    const struct {
        const char* legend;
        double value;
        double expected;
    } rows[] = {
        {"half down to even 0", 0.5, 0},   {"half up to even 2", 1.5, 2},
        {"half down to even 2", 2.5, 2},   {"half up to even 4", 3.5, 4},
        {"negative half to -2", -2.5, -2}, {"negative half to -2 from -1.5", -1.5, -2},
        {"negative half to 0", -0.5, 0},   {"just below half", 2.4999999, 2},
        {"just above half", 2.5000001, 3}, {"negative just past half", -2.5000001, -3},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(RoundHalfEven(row.value), row.expected) << row.legend;
    }
}

TEST(WholeNumber16, IsEmptyWhenTheRoundedValueLeavesSixteenBits) {
    const struct {
        const char* legend;
        std::string text;
        std::optional<std::int16_t> expected;
    } rows[] = {
        {"half to even", "12.5", 12},
        {"half to even upwards", "13.5", 14},
        {"largest, rounded down", "32767.4", 32767},
        {"rounds to 32768", "32767.5", std::nullopt},
        {"smallest, half to even -32768", "-32768.5", -32768},
        {"rounds to -32769", "-32768.6", std::nullopt},
        {"not a number reads 0", "abc", 0},
        {"overflowing digits", std::string(400, '9'), std::nullopt},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(WholeNumber16(row.text), row.expected) << row.legend;
    }
}

}  // namespace
}  // namespace wakeline
