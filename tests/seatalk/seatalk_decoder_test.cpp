#include "seatalk/seatalk_decoder.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <initializer_list>
#include <limits>
#include <string>
#include <variant>

namespace wakeline {
namespace {

DatagramBuffer Datagram(std::initializer_list<std::uint8_t> bytes) {
    DatagramBuffer buffer{};
    std::size_t i = 0;
    for (const std::uint8_t b : bytes) {
        buffer[i++] = b;
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
    const DatagramBuffer total = Datagram({0x25, 0x14, 0x10, 0x00, 0xE8, 0x03, 0x00});
    const DatagramBuffer position = Datagram({0x58, 0x25, 0x34, 0x75, 0x30, 0x04, 0x3A, 0x98});
    const DatagramBuffer nav = Datagram({0x85, 0x56, 0x01, 0x31, 0x4A, 0x02, 0x10});
    const struct {
        const char* legend;
        DatagramBuffer datagram;
        const char* description;
        std::variant<FloatField, DoubleField> field;
        double value;
    } rows[] = {
        {"depth 100 tenths of feet x 0.3", Datagram({0x00, 0x02, 0x00, 0x64, 0x00}),
         "DBT 00: 3 feet 2", &V::depth, 3.0},
        {"AWA 90 halves", Datagram({0x10, 0x01, 0x00, 0x5A}), "AWA 10: 45 degrees right of bow",
         &V::apparentWindAngle, 45.0},
        {"AWA 360 halves", Datagram({0x10, 0x01, 0x01, 0x68}), "AWA 10: 180 degrees right of bow",
         &V::apparentWindAngle, 180.0},
        {"AWS 5 + 3/10, display bit set", Datagram({0x11, 0x01, 0x85, 0x03}),
         "AWS 11: 5.3 knots, display meters/second", &V::apparentWindSpeed, 5.3f},
        {"AWS display bit clear", Datagram({0x11, 0x01, 0x05, 0x03}),
         "AWS 11: 5.3 knots, display knots", &V::apparentWindSpeed, 5.3f},
        {"water speed 50 tenths", Datagram({0x20, 0x01, 0x32, 0x00}), "WS  20: 5 knots",
         &V::speedThroughWater, 5.0},
        {"trip 0x100000 hundredths: the whole top byte counts",
         Datagram({0x21, 0x02, 0x00, 0x00, 0x10}), "Trip21: 10485.76 NM", &V::tripLog, 10485.76f},
        {"total log 1000 tenths", Datagram({0x22, 0x02, 0xE8, 0x03, 0x00}), "TLOG20: 100 NM",
         &V::totalLog, 100.0},
        {"temperature: text only", Datagram({0x23, 0x01, 0x0C, 0x36}), "Temp : 12 C, 54 F",
         &V::waterTemperature, 0.0},
        {"display units km", Datagram({0x24, 0x02, 0x00, 0x00, 0x86}), "Display Units = km/kmh",
         &V::speedThroughWater, 0.0},
        {"display units unknown", Datagram({0x24, 0x02, 0x00, 0x00, 0x01}), "",
         &V::speedThroughWater, 0.0},
        {"total (1 x 4096 + 16) / 10", total, "Total & Trip 25: 411.2   10 NM", &V::totalLog,
         411.2f},
        {"trip of 0x25, 1000 hundredths", total, "Total & Trip 25: 411.2   10 NM", &V::tripLog, 10},
        {"water speeds, second missing: text only",
         Datagram({0x26, 0x04, 0xF4, 0x01, 0x00, 0x00, 0x00, 0x40}), "WS  26: 5 N/A knots",
         &V::speedThroughWater, 0.0},
        {"water temperature (226 - 100) / 10", Datagram({0x27, 0x01, 0xE2, 0x00}),
         "MTW 27: 12.6 deg Celsius", &V::waterTemperature, 12.6f},
        {"latitude 52 + 5000/6000", Datagram({0x50, 0x02, 0x34, 0x88, 0x13}), "LAT: 52 N 50",
         &V::latitude, 52.0 + 5000.0 / 6000.0},
        {"latitude south", Datagram({0x50, 0x02, 0x34, 0x88, 0x93}), "LAT: 52 S 50", &V::latitude,
         -(52.0 + 5000.0 / 6000.0)},
        {"longitude west is negated", Datagram({0x51, 0x02, 0x04, 0xE8, 0x83}), "LON: 4 W 10",
         &V::longitude, -(4.0 + 1000.0 / 6000.0)},
        {"SOG 60 tenths", Datagram({0x52, 0x01, 0x3C, 0x00}), "SOG 52: 6 knots",
         &V::speedOverGround, 6.0},
        {"COG 11 x 8 + 4 / 2, not the quadrant rule", Datagram({0x53, 0x40, 0x0B}),
         "COG 53: 90 degrees - check if this is really COG", &V::courseOverGround, 90.0},
        {"time 14:30:24 onto day 0", Datagram({0x54, 0x81, 0x79, 0x0E}), "GMT :14:30:24",
         &V::utcDateTime, 52224.0 / 86400.0},
        {"date 2024-03-15 at time 0", Datagram({0x56, 0x31, 0x0F, 0x18}), "GMT :20240315",
         &V::utcDateTime, 45366.0},
        {"52 30.000 N: stored negative", position, "POS: 52 N 30 4 E 15", &V::latitude, -52.5},
        {"4 15.000 E: stored negative", position, "POS: 52 N 30 4 E 15", &V::longitude, -4.25},
        {"heading 1 x 90 + 5 x 2 + 8 / 8", Datagram({0x84, 0x96, 0x05}),
         "HDG 84: 101 degrees - check if this is really HDG", &V::heading, 101.0},
        {"XTE (256 + 5) / 100, positive", nav, "NAV 85: XTE=2.61 BTW=171.5 DTW=0.36",
         &V::crossTrackError, 2.61f},
        {"BTW (10 x 16 + 3) / 2 + 90", nav, "NAV 85: XTE=2.61 BTW=171.5 DTW=0.36",
         &V::bearingToWaypoint, 171.5},
        {"DTW 36 hundredths", nav, "NAV 85: XTE=2.61 BTW=171.5 DTW=0.36", &V::distanceToWaypoint,
         0.36f},
        {"XTE negative, DTW 32 tenths", Datagram({0x85, 0x56, 0x01, 0x31, 0x0A, 0x02, 0x00}),
         "NAV 85: XTE=-2.61 BTW=171.5 DTW=3.2", &V::distanceToWaypoint, 3.2f},
        {"unknown command", Datagram({0x99, 0x00, 0x07}), "", &V::depth, 0.0},
    };
    for (const auto& row : rows) {
        SeaTalkValues values;
        EXPECT_EQ(DecodeDatagram(row.datagram, values), row.description) << row.legend;
        EXPECT_DOUBLE_EQ(Read(values, row.field), row.value) << row.legend;
    }
}

TEST(DecodeDatagram, WaypointNameNeedsItsComplements) {
    SeaTalkValues values;
    EXPECT_EQ(DecodeDatagram(Datagram({0x82, 0x05, 0x27, 0xD8, 0x08, 0xF7, 0x04, 0xFB}), values),
              "WPN 82: WP01");
    EXPECT_EQ(values.waypointName, "WP01");
    EXPECT_EQ(DecodeDatagram(Datagram({0x82, 0x05, 0x21, 0xDE, 0x08, 0xF7, 0x04, 0xFA}), values),
              "");
    EXPECT_EQ(values.waypointName, "WP01");
}

TEST(DecodeDatagram, TimeAndDateEachKeepTheOtherHalf) {
    SeaTalkValues values;
    DecodeDatagram(Datagram({0x54, 0x81, 0x79, 0x0E}), values);  // 14:30:24
    DecodeDatagram(Datagram({0x56, 0x31, 0x0F, 0x18}), values);  // 2024-03-15
    EXPECT_DOUBLE_EQ(values.utcDateTime, 45366.0 + 52224.0 / 86400.0);
    DecodeDatagram(Datagram({0x56, 0x31, 0x10, 0x18}), values);  // 2024-03-16
    EXPECT_DOUBLE_EQ(values.utcDateTime, 45367.0 + 52224.0 / 86400.0);
    DecodeDatagram(Datagram({0x54, 0x10, 0x00, 0x00}), values);  // 00:00:01
    EXPECT_DOUBLE_EQ(values.utcDateTime, 45367.0 + 1.0 / 86400.0);

    // 24 o'clock and 2023-02-29 do not exist: nothing is stored.
    EXPECT_EQ(DecodeDatagram(Datagram({0x54, 0x00, 0x00, 0x18}), values).substr(0, 7), "error: ");
    EXPECT_EQ(DecodeDatagram(Datagram({0x56, 0x21, 0x1D, 0x17}), values).substr(0, 7), "error: ");
    EXPECT_DOUBLE_EQ(values.utcDateTime, 45367.0 + 1.0 / 86400.0);
}

TEST(ComputeTrueWind, FromApparentWindAndTheBoat) {
    // At rest the true wind is the apparent wind; the direction rounds halves to even.
    const struct {
        const char* legend;
        float awa, aws, speed, direction;
        float angle, trueSpeed, trueDirection;
    } rows[] = {
        {"at rest", 45, 10, 0, 0, 45, 10, 45},
        {"22.5 rounds down to even", 22.5f, 4, 0, 0, 22.5f, 4, 22},
        {"23.5 rounds up to even", 23.5f, 4, 0, 0, 23.5f, 4, 24},
        {"350 + 30.5 = 380.5 -> 380 -> 20", 30.5f, 4, 0, 350, 30.5f, 4, 20},
        {"left of north stays negative", -20.5f, 4, 0, 0, -20.5f, 4, -20},
        {"no wind, no speed", 60, 0, 0, 10, 60, 0, 70},
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

TEST(ComputeTrueWind, UsesWaterSpeedAndHeadingOnlyWhileSogIsZero) {
    // Apparent 6 kn on the beam at 6 kn: b = atan(6 / 6) = 45 degrees, TWA 135,
    // TWS = 6 cos 45 - 6 cos 135 = 8.4852814, direction 135 + 90 = 225.
    SeaTalkValues values;
    values.apparentWindAngle = 90;
    values.apparentWindSpeed = 6;
    values.speedThroughWater = 6;
    values.heading = 90;
    values.courseOverGround = 0;
    UpdateTrueWind(values);
    EXPECT_NEAR(values.trueWindAngle, 135.0, 1e-4);
    EXPECT_NEAR(values.trueWindSpeed, 8.4852814, 1e-5);
    EXPECT_EQ(values.trueWindDirection, 225);

    values.speedThroughWater = 3;
    values.heading = 10;
    values.speedOverGround = 6;
    values.courseOverGround = 90;
    UpdateTrueWind(values);
    EXPECT_EQ(values.trueWindDirection, 225);

    // Downwind faster than the wind: AWA 10, AWS 3, 5 kn on heading 0 gives
    // b = atan(5 sin 10 / (3 - 5 cos 10)) = -0.4239009 rad, TWA -14.287732, TWS -2.1108689,
    // and the direction -14 keeps its sign.
    values = SeaTalkValues{};
    DecodeDatagram(Datagram({0x10, 0x01, 0x00, 0x14}), values);
    DecodeDatagram(Datagram({0x11, 0x01, 0x03, 0x00}), values);
    DecodeDatagram(Datagram({0x20, 0x01, 0x32, 0x00}), values);
    EXPECT_NEAR(values.trueWindAngle, -14.287732, 1e-4);
    EXPECT_NEAR(values.trueWindSpeed, -2.1108689, 1e-5);
    EXPECT_EQ(values.trueWindDirection, -14);
}

}  // namespace
}  // namespace wakeline
