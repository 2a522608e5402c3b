// Texts from a link or a file can hold anything. None of these may crash or hang; the
// results are checked only where a rule fixes them.

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

#include "display/navigation.h"
#include "display/number_format.h"
#include "display/text_number.h"

namespace wakeline {
namespace {

std::vector<std::string> OddTexts() {
    std::vector<std::string> texts = {
        std::string("1\0"
                    "5",
                    3),
        std::string("\0", 1),
        std::string("-\0.5", 4),
        "\xff\xfe",
        "1.5\xe9",
        "\xb0"
        "12",
        "-",
        "+",
        ".",
        "-.",
        "+.",
        "..",
        "--1",
        "+-1",
        std::string(1000, '9'),
        "-" + std::string(1000, '9'),
        "0." + std::string(1000, '0') + "1",
        std::string(1000, '0') + "1",
        std::string(1000, '.'),
        std::string(1000, ' '),
        "1" + std::string(1000, '0') + ".5",
        std::string(1000, '-'),
        "\r\n",
        "1\r\n",
    };
    std::string everyByte;
    for (int c = 0; c < 256; ++c) {
        everyByte.push_back(static_cast<char>(c));
    }
    texts.push_back(everyByte);
    return texts;
}

TEST(OddInput, NeverCrashes) {
    for (const std::string& text : OddTexts()) {
        const double value = LeadingNumber(text);
        const bool numeric = IsDecimalNumber(text);
        (void)WholeNumber16(text);
        const auto latitude = DDtoDM(text, "lat");
        const auto angle = FormatAngle(text, 180, "", 0);
        const auto side = FormatAngle(text, 0, "EW", 2);
        // A text that is not a number comes back as it was, NUL bytes included.
        if (!numeric) {
            EXPECT_EQ(latitude, text);
            EXPECT_EQ(angle, text);
            EXPECT_EQ(side, text);
        }
        (void)FormatToWidth(static_cast<float>(value), "0.0", 4);
    }
    EXPECT_EQ(LeadingNumber(std::string("1\0"
                                        "5",
                                        3)),
              1);
    EXPECT_FALSE(
        IsDecimalNumber(std::string("1\0"
                                    "5",
                                    3)));
}

TEST(OddInput, FormatterTakesEveryKindOfFloat) {
    const float values[] = {
        std::numeric_limits<float>::infinity(),    -std::numeric_limits<float>::infinity(),
        std::numeric_limits<float>::quiet_NaN(),   std::numeric_limits<float>::max(),
        -std::numeric_limits<float>::max(),        std::numeric_limits<float>::denorm_min(),
        -std::numeric_limits<float>::denorm_min(), -0.0f,
    };
    const char* masks[] = {"0", "0.0", "00.000", "##0.0", "0.0000", "", "#", ".", "#.#", "x"};
    for (float value : values) {
        for (const char* mask : masks) {
            for (std::int16_t width : {std::int16_t{0}, std::int16_t{1}, std::int16_t{4}}) {
                (void)FormatToWidth(value, mask, width);
            }
        }
    }
    EXPECT_EQ(FormatToWidth(-0.0f, "0.0", 0), "0.0");
    EXPECT_EQ(FormatToWidth(-std::numeric_limits<float>::denorm_min(), "0.0", 0), "-0.0");
}

}  // namespace
}  // namespace wakeline
