#include "seatalk/seatalk_decoder.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <string>
#include <string_view>
#include <variant>

namespace wakeline {
namespace {

// A datagram written in hex: "84 42 03".
DatagramBuffer Datagram(std::string_view hex) {
    DatagramBuffer buffer{};
    for (std::size_t i = 0; i * 3 < hex.size(); ++i) {
        buffer[i] =
            static_cast<std::uint8_t>(std::stoi(std::string(hex.substr(i * 3, 2)), nullptr, 16));
    }
    return buffer;
}

using FloatField = float SeaTalkValues::*;
using DoubleField = double SeaTalkValues::*;

double Read(const SeaTalkValues& v, const std::variant<FloatField, DoubleField>& field) {
    return std::visit([&](auto member) { return static_cast<double>(v.*member); }, field);
}

// Each row decodes one datagram into fresh values and reads back one value it stores.
TEST(DecodeDatagram, EachKindStoresItsValueAndDescribesIt) {
    using V = SeaTalkValues;
    const char* total = "25 14 10 00 E8 03 00";
    const char* position = "58 25 34 75 30 04 3A 98";
    const char* nav = "85 56 01 31 4A 02 10";
    const struct {
        const char* legend;
        const char* datagram;
        const char* description;
        std::variant<FloatField, DoubleField> field;
        double value;
    } rows[] = {
        // clang-format off
        {"depth 100 tenths of feet x 0.3", "00 02 00 64 00", "DBT 00: 3 feet 2", &V::depth, 3.0},
        {"AWA 360 halves", "10 01 01 68", "AWA 10: 180 degrees right of bow", &V::apparentWindAngle, 180.0},
        {"AWS 5 + 3/10, display bit set", "11 01 85 03", "AWS 11: 5.3 knots, display meters/second", &V::apparentWindSpeed, 5.3f},
        {"AWS display bit clear", "11 01 05 03", "AWS 11: 5.3 knots, display knots", &V::apparentWindSpeed, 5.3f},
        {"water speed 50 tenths", "20 01 32 00", "WS  20: 5 knots", &V::speedThroughWater, 5.0},
        {"trip 0x100000 hundredths: the whole top byte counts", "21 02 00 00 10", "Trip21: 10485.76 NM", &V::tripLog, 10485.76f},
        {"total log 1000 tenths", "22 02 E8 03 00", "TLOG20: 100 NM", &V::totalLog, 100.0},
        {"temperature: text only", "23 01 0C 36", "Temp : 12 C, 54 F", &V::waterTemperature, 0.0},
        {"display units km", "24 02 00 00 86", "Display Units = km/kmh", &V::speedThroughWater, 0.0},
        {"display units unknown", "24 02 00 00 01", "", &V::speedThroughWater, 0.0},
        {"total (1 x 4096 + 16) / 10", total, "Total & Trip 25: 411.2   10 NM", &V::totalLog, 411.2f},
        {"trip of 0x25, 1000 hundredths", total, "Total & Trip 25: 411.2   10 NM", &V::tripLog, 10},
        {"water speeds, second missing: text only", "26 04 F4 01 00 00 00 40", "WS  26: 5 N/A knots", &V::speedThroughWater, 0.0},
        {"water temperature (226 - 100) / 10", "27 01 E2 00", "MTW 27: 12.6 deg Celsius", &V::waterTemperature, 12.6f},
        {"latitude 52 + 5000/6000", "50 02 34 88 13", "LAT: 52 N 50", &V::latitude, 52.0 + 5000.0 / 6000.0},
        {"latitude south", "50 02 34 88 93", "LAT: 52 S 50", &V::latitude, -(52.0 + 5000.0 / 6000.0)},
        {"longitude west is negated", "51 02 04 E8 83", "LON: 4 W 10", &V::longitude, -(4.0 + 1000.0 / 6000.0)},
        {"SOG 60 tenths", "52 01 3C 00", "SOG 52: 6 knots", &V::speedOverGround, 6.0},
        {"COG 11 x 8 + 4 / 2, not the quadrant rule", "53 40 0B", "COG 53: 90 degrees - check if this is really COG", &V::courseOverGround, 90.0},
        {"52 30.000 N: stored negative", position, "POS: 52 N 30 4 E 15", &V::latitude, -52.5},
        {"4 15.000 E: stored negative", position, "POS: 52 N 30 4 E 15", &V::longitude, -4.25},
        {"heading 1 x 90 + 5 x 2 + 8 / 8", "84 96 05", "HDG 84: 101 degrees - check if this is really HDG", &V::heading, 101.0},
        {"XTE (256 + 5) / 100, positive", nav, "NAV 85: XTE=2.61 BTW=171.5 DTW=0.36", &V::crossTrackError, 2.61f},
        {"BTW (10 x 16 + 3) / 2 + 90", nav, "NAV 85: XTE=2.61 BTW=171.5 DTW=0.36", &V::bearingToWaypoint, 171.5},
        {"DTW 36 hundredths", nav, "NAV 85: XTE=2.61 BTW=171.5 DTW=0.36", &V::distanceToWaypoint, 0.36f},
        {"XTE negative, DTW 32 tenths", "85 56 01 31 0A 02 00", "NAV 85: XTE=-2.61 BTW=171.5 DTW=3.2", &V::distanceToWaypoint, 3.2f},
        {"unknown command", "99 00 07", "", &V::depth, 0.0},
        // clang-format on
    };
    for (const auto& row : rows) {
        SeaTalkValues values;
        EXPECT_EQ(DecodeDatagram(Datagram(row.datagram), values), row.description) << row.legend;
        EXPECT_DOUBLE_EQ(Read(values, row.field), row.value) << row.legend;
    }
}

TEST(DecodeDatagram, WaypointNameNeedsItsComplements) {
    SeaTalkValues values;
    EXPECT_EQ(DecodeDatagram(Datagram("82 05 27 D8 08 F7 04 FB"), values), "WPN 82: WP01");
    EXPECT_EQ(values.waypointName, "WP01");
    EXPECT_EQ(DecodeDatagram(Datagram("82 05 21 DE 08 F7 04 FA"), values), "");
    EXPECT_EQ(values.waypointName, "WP01");
}

TEST(DecodeDatagram, TimeAndDateEachKeepTheOtherHalf) {
    SeaTalkValues values;
    EXPECT_EQ(DecodeDatagram(Datagram("54 81 79 0E"), values), "GMT :14:30:24");
    EXPECT_DOUBLE_EQ(values.utcDateTime, 52224.0 / 86400.0);  // on day 0
    EXPECT_EQ(DecodeDatagram(Datagram("56 31 0F 18"), values), "GMT :20240315");
    EXPECT_DOUBLE_EQ(values.utcDateTime, 45366.0 + 52224.0 / 86400.0);
    DecodeDatagram(Datagram("56 31 10 18"), values);  // 2024-03-16
    EXPECT_DOUBLE_EQ(values.utcDateTime, 45367.0 + 52224.0 / 86400.0);
    DecodeDatagram(Datagram("54 10 00 00"), values);  // 00:00:01
    EXPECT_DOUBLE_EQ(values.utcDateTime, 45367.0 + 1.0 / 86400.0);

    // 24 o'clock and 2023-02-29 do not exist: nothing is stored.
    EXPECT_EQ(DecodeDatagram(Datagram("54 00 00 18"), values).substr(0, 7), "error: ");
    EXPECT_EQ(DecodeDatagram(Datagram("56 21 1D 17"), values).substr(0, 7), "error: ");
    EXPECT_DOUBLE_EQ(values.utcDateTime, 45367.0 + 1.0 / 86400.0);
}

TEST(ComputeTrueWind, FromApparentWindAndTheBoat) {
    // At rest the true wind is the apparent wind; the direction rounds halves to even.
    // Downwind faster than the wind: AWA 10, AWS 3, 5 kn on heading 0 gives
    // b = atan(5 sin 10 / (3 - 5 cos 10)) = -0.4239009 rad, TWA -14.287732, TWS -2.1108689.
    const struct {
        const char* legend;
        float awa, aws, speed, direction;
        float angle, trueSpeed, trueDirection;
    } rows[] = {
        {"22.5 rounds down to even", 22.5f, 4, 0, 0, 22.5f, 4, 22},
        {"23.5 rounds up to even", 23.5f, 4, 0, 0, 23.5f, 4, 24},
        {"350 + 30.5 = 380.5 -> 380 -> 20", 30.5f, 4, 0, 350, 30.5f, 4, 20},
        {"left of north stays negative", -20.5f, 4, 0, 0, -20.5f, 4, -20},
        {"no wind, no speed", 60, 0, 0, 10, 60, 0, 70},
        {"downwind faster than the wind", 10, 3, 5, 0, -14.287732f, -2.1108689f, -14},
    };
    for (const auto& row : rows) {
        const auto wind = ComputeTrueWind(row.awa, row.aws, row.speed, row.direction);
        ASSERT_TRUE(wind) << row.legend;
        EXPECT_FLOAT_EQ(wind->angle, row.angle) << row.legend;
        EXPECT_FLOAT_EQ(wind->speed, row.trueSpeed) << row.legend;
        EXPECT_EQ(wind->direction, row.trueDirection) << row.legend;
    }
    EXPECT_FALSE(ComputeTrueWind(std::numeric_limits<float>::quiet_NaN(), 1, 1, 0));
}

TEST(UpdateTrueWind, UsesWaterSpeedAndHeadingOnlyWhileSogIsZero) {
    // Apparent 6 kn on the beam at 6 kn: b = atan(6 / 6) = 45 degrees, TWA 135,
    // TWS = 6 cos 45 - 6 cos 135 = 8.4852814, direction 135 + 90 = 225; the other pair of speed
    // and direction would give another wind.
    for (const bool overGround : {false, true}) {
        SeaTalkValues values;
        values.apparentWindAngle = 90;
        values.apparentWindSpeed = 6;
        values.speedThroughWater = overGround ? 3 : 6;
        values.heading = overGround ? 10 : 90;
        values.speedOverGround = overGround ? 6 : 0;
        values.courseOverGround = overGround ? 90 : 0;
        UpdateTrueWind(values);
        EXPECT_NEAR(values.trueWindAngle, 135.0, 1e-4) << overGround;
        EXPECT_NEAR(values.trueWindSpeed, 8.4852814, 1e-5) << overGround;
        EXPECT_EQ(values.trueWindDirection, 225) << overGround;
    }
}

}  // namespace
}  // namespace wakeline
