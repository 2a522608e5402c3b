// Texts from a link or a file can hold anything: none of these may crash, and a text that is
// not a number comes back from the position and angle formatters as it was.

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

#include "display/navigation.h"
#include "display/number_format.h"
#include "display/text_number.h"

namespace wakeline {
namespace {

using namespace std::string_literals;

TEST(OddInput, TextsNeverCrashTheConversions) {
    std::string everyByte;
    for (int c = 0; c < 256; ++c) {
        everyByte.push_back(static_cast<char>(c));
    }
    // "1\0005" is "1", NUL, "5"; "\26012" is the byte 0xB0, then "12".
    std::vector<std::string> texts = {"1\0005"s, "-\000.5"s, "\xff\xfe", "\26012", "-",      ".",
                                      "-.",      "--1",      "+-1",      "1\r\n",  everyByte};
    for (const char c : {'9', '0', '.'}) {
        texts.push_back(std::string(1000, c) + "1");
        texts.push_back("-0." + std::string(1000, c));
    }
    for (const std::string& text : texts) {
        const bool numeric = IsDecimalNumber(text);
        (void)WholeNumber16(text);
        (void)FormatToWidth(static_cast<float>(LeadingNumber(text)), "0.0", 4);
        const auto position = DDtoDM(text, "lat");
        const auto angle = FormatAngle(text, 180, "", 0);
        const auto side = FormatAngle(text, 0, "EW", 2);
        if (!numeric) {
            EXPECT_EQ(position, text);
            EXPECT_EQ(angle, text);
            EXPECT_EQ(side, text);
        }
    }
    EXPECT_EQ(LeadingNumber("1\0005"s), 1) << "a NUL ends the number";
    EXPECT_FALSE(IsDecimalNumber("1\0005"s)) << "a NUL is not a digit";
}

TEST(OddInput, FormatterTakesEveryKindOfFloat) {
    using Limits = std::numeric_limits<float>;
    for (float value : {Limits::infinity(), -Limits::infinity(), Limits::quiet_NaN(),
                        -Limits::max(), Limits::denorm_min()}) {
        for (const char* mask : {"0", "00.000", "##0.0", "", "#", ".", "#.#", "x"}) {
            for (std::int16_t width : {0, 1, 4}) {
                (void)FormatToWidth(value, mask, width);
            }
        }
    }
    EXPECT_EQ(FormatToWidth(-0.0f, "0.0", 0), "0.0") << "negative zero has no sign";
    EXPECT_EQ(FormatToWidth(-Limits::denorm_min(), "0.0", 0), "-0.0") << "a tiny negative has";
}

}  // namespace
}  // namespace wakeline
