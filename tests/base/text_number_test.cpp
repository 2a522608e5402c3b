#include "base/text_number.h"

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
        {"second point ends the number", "1.2.3", 1.2},
        {"no exponent", "1e3", 1},
        {"blank after the sign", "- 5", 0},
        {"inf is not a number here", "inf", 0},
        {"400 negative digits overflow", "-" + hugeDigits, -INFINITY},
        {"too small to hold", "0." + std::string(400, '0') + "1", 0},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(LeadingNumber(row.text), row.expected) << row.legend;
    }
}

TEST(IsDecimalNumber, AcceptsOneSignedDecimalNumberAndNothingElse) {
    const std::pair<const char*, bool> rows[] = {
        {" -4.25 ", true}, {"\t3\t", true}, {"+1", true},   {"5.", true},
        {".5", true},      {"", false},     {"-", false},   {"1,5", false},
        {"1.2.3", false},  {"1e3", false},  {"12a", false}, {"- 5", false},
    };
    for (const auto& [text, expected] : rows) {
        EXPECT_EQ(IsDecimalNumber(text), expected) << '"' << text << '"';
    }
}

TEST(WholeNumber16, IsEmptyWhenTheRoundedValueLeavesSixteenBits) {
    const std::pair<const char*, std::optional<std::int16_t>> rows[] = {
        {"13.5", 14},         {"32767.4", 32767}, {"32767.5", {}},
        {"-32768.5", -32768}, {"-32768.6", {}},   {"abc", 0}};
    for (const auto& [text, expected] : rows) {
        EXPECT_EQ(WholeNumber16(text), expected) << text;
    }
    EXPECT_EQ(WholeNumber16(std::string(400, '9')), std::nullopt);
}

}  // namespace
}  // namespace wakeline
