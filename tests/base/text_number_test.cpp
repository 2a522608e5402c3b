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
        {"a NUL ends the number", std::string("1\0005", 3), 1},
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
    using namespace std::string_literals;
    for (const std::string& text : {" -4.25 "s, "\t3\t"s, "+1"s, "5."s, ".5"s}) {
        EXPECT_TRUE(IsDecimalNumber(text)) << '"' << text << '"';
    }
    // Texts from a link or a file can hold anything: a NUL inside, 8-bit bytes ("\260" is the
    // byte 0xB0), a sign without digits, two signs, a line end.
    for (const std::string& text : {""s, "-"s, "1,5"s, "1.2.3"s, "1e3"s, "12a"s, "- 5"s, "1\0005"s,
                                    "\xff\xfe"s, "\26012"s, "-."s, "+-1"s, "1\r\n"s}) {
        EXPECT_FALSE(IsDecimalNumber(text)) << '"' << text << '"';
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
