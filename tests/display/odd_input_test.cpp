// Texts from a link or a file can hold anything; the fuzz targets look for crashes, these rows
// pin the answers that matter.

#include <gtest/gtest.h>

#include <limits>
#include <string>

#include "base/number_format.h"
#include "base/text_number.h"
#include "display/navigation.h"

namespace wakeline {
namespace {

using namespace std::string_literals;

TEST(OddInput, TextsThatAreNoNumbersComeBackAsTheyWere) {
    // "1\0005" is "1", NUL, "5"; "\26012" is the byte 0xB0, then "12".
    for (const std::string& text : {"1\0005"s, "\xff\xfe"s, "\26012"s, "-."s, "+-1"s, "1\r\n"s}) {
        EXPECT_FALSE(IsDecimalNumber(text)) << text;
        EXPECT_EQ(DDtoDM(text, "lat"), text);
        EXPECT_EQ(FormatAngle(text, 180, "", 0), text);
        EXPECT_EQ(FormatAngle(text, 0, "EW", 2), text);
    }
    EXPECT_EQ(LeadingNumber("1\0005"s), 1) << "a NUL ends the number";
    EXPECT_EQ(FormatToWidth(-0.0f, "0.0", 0), "0.0") << "negative zero has no sign";
    EXPECT_EQ(FormatToWidth(-std::numeric_limits<float>::denorm_min(), "0.0", 0), "-0.0")
        << "a tiny negative has";
}

}  // namespace
}  // namespace wakeline
