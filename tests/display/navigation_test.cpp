#include "display/navigation.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <optional>
#include <string>

namespace wakeline {
namespace {

// Positions are milli-minutes, longitude first: 60,000 to a degree. The rows whose haversine
// term rounds past 0 or 1 were worked out with the sin and cos of glibc, which the program uses.
TEST(GrCDXY, HaversineDistanceInMetres) {
    const struct {
        const char* legend;
        std::int32_t lon1, lat1, lon2, lat2;
        std::optional<float> expected;
    } rows[] = {
        {"identical points", 100000, 3000000, 100000, 3000000, 0.0f},
        // 6.367e6 x 3.14159265358979 = 20002520.425..., and floats near it are 2 apart.
        {"antipodes on the equator", 0, 0, 10800000, 0, 20002520.0f},
        // 6.367e6 x 2.90888208665722e-4 = 1852.0852245746..., nearest float 1852.085205078125.
        {"one minute of latitude", 0, 0, 0, 1000, 1852.085205078125f},
        // The haversine term rounds to 1.0000000000000002 here, and 1 - a has no square root.
        {"nearly antipodal, a above 1", -1464209, 2304907, 9335791, -2304907, std::nullopt},
        // cos x cos times the squared sine is 1.0000000000000002 here; times the sine twice, it
        // would be 1 and give the antipodal distance.
        {"squared sine taken first", -724844, 5306016, 10075155, -5306016, std::nullopt},
        // A latitude past the pole makes the term round to -1.4e-17.
        {"past the pole, a below 0", 2255663, 6583111, 13055663, 4216889, std::nullopt},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(GrCDXY(row.lon1, row.lat1, row.lon2, row.lat2), row.expected) << row.legend;
    }
    // Longitude comes first: a minute of longitude at 60 degrees north is half a minute of arc.
    const std::optional<float> atSixty = GrCDXY(0, 3600000, 1000, 3600000);
    ASSERT_TRUE(atSixty.has_value());
    EXPECT_NEAR(*atSixty, 926.0426, 0.001);
}

TEST(DDtoDM, DegreesAndMinutesWithHemisphere) {
    const struct {
        const char* legend;
        std::string text;
        const char* kind;
        std::optional<std::string> expected;
    } rows[] = {
        {"north", "52.5", "lat", "052 30.000 N"},
        {"west", "-4.25", "lon", "004 15.000 W"},
        {"zero latitude counts as south", "0", "lat", "000 00.000 S"},
        // 33.8568 as a float is 33.8568000793..., its minutes 51.4080047607...
        {"south", "-33.8568", "lat", "033 51.408 S"},
        // 0.999995 as a float is 0.99999499321..., times 60 is 59.9996986...: no carry.
        {"minutes round up to 60", "0.999995", "lat", "000 60.000 N"},
        {"not a number", "abc", "lat", "abc"},
        {"empty is 0", "", "lon", "000 00.000 W"},
        {"beyond the largest float", "1" + std::string(40, '0'), "lat", std::nullopt},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(DDtoDM(row.text, row.kind), row.expected) << row.legend;
    }
}

// Degrees are radians x 57.2957795130824.
TEST(FormatAngle, RadianTextToDegreeText) {
    const struct {
        const char* legend;
        std::string text;
        std::int16_t fold;
        const char* side;
        std::int16_t decimals;
        std::optional<std::string> expected;
    } rows[] = {
        {"pi gives 180, not folded", "3.14159265358979", 180, "", 0, " 180"},
        {"negative with side", "-1", 0, "EW", 2, "57.30 W"},
        {"zero with side is east", "0", 180, "EW", 2, "0.00 E"},
        {"not a number: unchanged", "abc", 0, "", 0, "abc"},
        {"empty is 0", "", 180, "", 0, "   0"},
        {"180.0004 as a course", "3.1416", 0, "", 0, " 180"},
        {"180.0004 as a wind angle", "3.1416", 180, "", 0, "-180"},
        {"fold 90 does not fold", "3.1416", 90, "", 0, " 180"},
        {"179.9998 as a wind angle", "3.14159", 180, "", 0, " 180"},
        {"above 360 is not folded", "7", 180, "", 0, " 401"},
        {"two decimals cut to the width", "1", 0, "", 2, "57.3"},
        {"beyond the largest float", "1" + std::string(40, '0'), 0, "", 0, std::nullopt},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(FormatAngle(row.text, row.fold, row.side, row.decimals), row.expected)
            << row.legend;
    }
}

}  // namespace
}  // namespace wakeline
