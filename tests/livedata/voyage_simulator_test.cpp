#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <string>
#include <vector>

#include "livedata/voyage_simulator.h"

namespace wakeline {
namespace {

constexpr double kDegree = 3.14159265358979 / 180;

std::vector<std::string> Split(const std::string& line) {
    std::vector<std::string> fields(1);
    for (const char c : line) {
        if (c == ',') {
            fields.emplace_back();
        } else {
            fields.back() += c;
        }
    }
    return fields;
}

// A number as the data line writes it: optional "-", digits, "." and digits, nothing else.
double Number(const std::string& text) {
    const std::size_t digitsFrom = text.starts_with('-') ? 1 : 0;
    const std::size_t point = text.find('.');
    EXPECT_TRUE(point != std::string::npos && point > digitsFrom && point + 1 < text.size() &&
                text.find_first_not_of("0123456789.", digitsFrom) == std::string::npos)
        << "'" << text << "'";
    return std::strtod(text.c_str(), nullptr);
}

TEST(VoyageSimulatorTest, LinesHoldTheVoyageInTheDataLineUnits) {
    VoyageSimulator voyage;
    // Known at the start: the position, and two degrees west as -0.0349 radians.
    const std::vector<std::string> first = Split(voyage.DataLine(0));
    EXPECT_EQ(first[0], "54.100000");
    EXPECT_EQ(first[1], "7.600000");
    EXPECT_EQ(first[5], "-0.0349");

    // Two hours, so that every tack and every swing of the wind is met.
    for (std::int64_t t = 0; t < 7200; t += 7) {
        SCOPED_TRACE(t);
        const std::vector<std::string> f = Split(voyage.DataLine(t));
        ASSERT_EQ(f.size(), 23u);
        for (std::size_t i = 0; i <= 14; ++i) {
            Number(f[i]);
        }
        EXPECT_NEAR(Number(f[0]), 54.1, 0.2);
        EXPECT_NEAR(Number(f[1]), 7.6, 0.3);
        const double twa = Number(f[7]);
        const double awa = Number(f[8]);
        const double twd = Number(f[9]);
        const double tws = Number(f[10]);
        const double aws = Number(f[11]);
        const double spd = Number(f[14]);
        EXPECT_GE(Number(f[2]), 0.0);
        EXPECT_LE(Number(f[2]), 10.0);
        for (const std::size_t direction : {3, 4, 13}) {
            EXPECT_GE(Number(f[direction]), 0.0);
            EXPECT_LE(Number(f[direction]), 6.2832);
        }
        EXPECT_GE(Number(f[6]), 4.0);
        EXPECT_LE(Number(f[6]), 25.0);
        EXPECT_LE(std::fabs(twa), 42.01 * kDegree);
        EXPECT_GE(twd, 230 * kDegree - 0.0001);
        EXPECT_LE(twd, 250 * kDegree + 0.0001);
        EXPECT_GE(tws, 5.0);
        EXPECT_LE(tws, 8.0);
        EXPECT_GT(spd, 0.0);
        // Beating, the boat's own motion freshens the apparent wind and draws it forward.
        if (std::fabs(twa) > 10 * kDegree) {
            EXPECT_GT(aws, tws);
            EXPECT_LT(std::fabs(awa), std::fabs(twa));
            EXPECT_EQ(awa > 0, twa > 0);
            EXPECT_NEAR(Number(f[12]), spd * std::cos(twa), 0.02);
        }
        // The waypoint part appears after the first minute, the name last.
        for (std::size_t i = 15; i <= 22; ++i) {
            EXPECT_EQ(f[i].empty(), t < 60) << "field " << i;
        }
    }
}

TEST(VoyageSimulatorTest, TacksEveryFifteenMinutesStarboardFirst) {
    VoyageSimulator voyage;
    EXPECT_GT(voyage.At(899).twa, 0);
    EXPECT_LT(voyage.At(930).twa, 0);
    EXPECT_GT(voyage.At(1830).twa, 0);
    // The bow turns through the wind: heading and twa change together by the same angle.
    const VoyageValues before = voyage.At(899);
    const VoyageValues after = voyage.At(930);
    const double turned = std::remainder(after.heading - before.heading, 2 * 3.14159265358979);
    EXPECT_NEAR(turned, (before.twa - after.twa) + (after.twd - before.twd), 0.001);
}

TEST(VoyageSimulatorTest, PositionFollowsCourseAndSpeedAndEverySecondIsRepeatable) {
    VoyageSimulator voyage;
    const VoyageValues a = voyage.At(3000);
    const VoyageValues b = voyage.At(3001);
    // One second at SOG knots along COG, in minutes of latitude and of (shrunk) longitude.
    const double north = (b.lat - a.lat) * 60;
    const double east = (b.lon - a.lon) * 60 * std::cos(a.lat * kDegree);
    EXPECT_NEAR(std::hypot(north, east) * 3600, a.sog, 0.01);
    EXPECT_NEAR(std::atan2(east, north), std::remainder(a.cog, 2 * 3.14159265358979), 0.01);

    // Going back starts over and gives the same lines; so does a second simulator.
    const std::string late = voyage.DataLine(5000);
    const std::string early = voyage.DataLine(120);
    VoyageSimulator other;
    EXPECT_EQ(other.DataLine(120), early);
    EXPECT_EQ(other.DataLine(5000), late);
    EXPECT_NE(early, late);
}

}  // namespace
}  // namespace wakeline
