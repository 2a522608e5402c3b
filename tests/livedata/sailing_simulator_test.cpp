#include "livedata/sailing_simulator.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

namespace wakeline {
namespace {

constexpr double kDegrees = 180 / 3.14159265358979323846;
constexpr double kKnots = 1.9438444924406;

TEST(SailingSimulatorTest, PolarSpeedFollowsTheGenoaTable) {
    struct Row {
        const char* legend;
        double twa;
        double tws;
        double knots;
    };
    const Row rows[] = {
        {"a node of the table", 52, 10, 6.4},
        {"the other side the same", -52, 10, 6.4},
        {"half way between 52/60 degrees and 10/12 kt: (6.4+6.7+6.7+7.0)/4", 56, 11, 6.7},
        {"below the smallest angle no speed", 39, 12, 0},
        {"dead downwind, the last column", 180, 20, 6.5},
        {"below 4 kt in proportion: 4.5 x 2/4", 90, 2, 2.25},
        {"above 20 kt as at 20", 90, 25, 8.1},
    };
    for (const Row& row : rows) {
        EXPECT_NEAR(SailingSimulator::PolarSpeed(row.twa, row.tws), row.knots, 1e-9) << row.legend;
    }
}

TEST(SailingSimulatorTest, TheVoyageIsTheSameHoweverItIsPaced) {
    SailingSimulator byTheSecond(7);
    for (int t = 0; t <= 1800; ++t) {
        byTheSecond.AdvanceTo(t);
    }
    SailingSimulator atOnce(7);
    atOnce.AdvanceTo(1800);
    SailingSimulator byFractions(7);
    for (double t = 0; t <= 1800; t += 0.7) {
        byFractions.AdvanceTo(t);
    }
    byFractions.AdvanceTo(1800);
    EXPECT_EQ(byTheSecond.DataLine(), atOnce.DataLine());
    EXPECT_EQ(byFractions.DataLine(), atOnce.DataLine());
    // Going back is not possible: the voyage stays where it is.
    atOnce.AdvanceTo(10);
    EXPECT_EQ(atOnce.DataLine(), byTheSecond.DataLine());
}

// Three hours round the course: the marks are rounded in order, the beats are tacked and the
// run gybed, and what the boat does stays within what a yacht of this polar can do.
TEST(SailingSimulatorTest, SailsTheRouteAsASailorWould) {
    SailingSimulator voyage(1);
    std::vector<std::string> marks;
    int tacks = 0;
    int gybes = 0;
    int offPolar = 0;
    int samples = 0;
    double lastTwa = 0;
    std::string lastMark;
    for (int t = 0; t <= 3 * 3600; ++t) {
        voyage.AdvanceTo(t);
        const VoyageValues v = voyage.Values();
        ++samples;
        if (v.waypointName != lastMark) {
            marks.push_back(v.waypointName);
            lastMark = v.waypointName;
        } else if (lastTwa * v.twa < 0) {
            // A change of side through the wind's eye is a tack, through the stern a gybe.
            (std::fabs(v.twa) < 1.57 ? tacks : gybes) += 1;
        }
        lastTwa = v.twa;
        EXPECT_GE(v.depth, 7.0) << t;
        EXPECT_LE(v.depth, 25.0) << t;
        EXPECT_LE(v.speed, 8.7) << t;  // the fastest cell of the table
        // Away from manoeuvres the log reads the polar speed within the boat's inertia.
        if (std::fabs(v.speed - SailingSimulator::PolarSpeed(v.twa * kDegrees, v.tws * kKnots)) >
            0.5) {
            ++offPolar;
        }
    }
    ASSERT_GE(marks.size(), 4u);
    const std::vector<std::string> order = {"WINDWARD", "WING", "LEEWARD", "WINDWARD"};
    EXPECT_EQ(std::vector<std::string>(marks.begin(), marks.begin() + 4), order);
    EXPECT_GE(tacks, 4);
    EXPECT_GE(gybes, 2);
    EXPECT_LT(offPolar, samples / 10);
}

}  // namespace
}  // namespace wakeline
