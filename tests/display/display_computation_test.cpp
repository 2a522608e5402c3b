#include <gtest/gtest.h>

#include <array>
#include <string>
#include <utility>
#include <vector>

#include "display/display_computation.h"
#include "livedata/field_table.h"

namespace wakeline {
namespace {

// A reach off Falmouth: the fields of one data line as the chart plotter sends them.
const std::array<std::string, 23> kReach = {
    "51.95",        "-4.25",  "6.25",  "1.5708", "1.5010", "-0.0349", "12.4",    "-0.7854",
    "-0.5236",      "4.0143", "6.1",   "8.2",    "4.55",   "1.4835",  "6.05",    "51 57.500 N",
    "004 10.250 W", "0.5236", "0.12R", "0.2618", "3.45",   "5.8",     "FALMOUTH"};

// The line with some fields replaced, ended by CR LF as the link hands it on.
std::string Line(const std::vector<std::pair<std::size_t, std::string>>& changes = {}) {
    auto fields = kReach;
    for (const auto& [index, text] : changes) {
        fields[index] = text;
    }
    std::string line;
    for (std::size_t i = 0; i < fields.size(); ++i) {
        line += (i == 0 ? "" : ",") + fields[i];
    }
    return line + "\r\n";
}

std::vector<std::pair<std::size_t, std::string>> NoWaypoint() {
    return {{15, ""}, {16, ""}, {17, ""}, {18, ""}, {19, ""}, {20, ""}, {21, ""}};
}

// Damping factor 1, corrections of +3 degrees and +0.5 kn; records where it was asked.
class FakePerformance : public PerformanceLookup {
  public:
    bool PolarTablesOn() const override { return true; }
    bool HasCurrentTable() const override { return hasTable; }
    float DampingFactor() const override { return 1.0f; }
    std::optional<float> AngleCorrection(float angle, float speed) const override {
        correctedAt = {angle, speed};
        return 3.0f;
    }
    std::optional<float> SpeedCorrection(float, float) const override { return 0.5f; }
    std::optional<float> TargetSpeed(float angle, float speed) const override {
        targetAt = {angle, speed};
        return target;
    }

    bool hasTable = true;
    std::optional<float> target = 6.75f;
    mutable std::pair<float, float> correctedAt, targetAt;
};

class DisplayComputationTest : public ::testing::Test {
  protected:
    DisplayComputationTest() { InitFieldTable(table); }
    std::string Shown(std::size_t i) const { return table[i].Shown; }

    FieldTable table;
    DisplayComputation display{table};
};

TEST_F(DisplayComputationTest, ReachShowsEveryRow) {
    const DisplayOutcome outcome = display.TraceDisplayLine(Line());
    ASSERT_TRUE(outcome.Displayed()) << outcome.error;
    // 51.95 as a float leaves 0.9500008 x 60 = 57.00005 minutes; 6.25 rounds half away from
    // zero; 1.5708, 1.5010, 1.4835, 0.5236 and 0.2618 rad are 90.0002, 86.0010, 84.998, 30.0001
    // and 15.00004 degrees; -0.0349 rad is -1.9996, shown as magnitude and side; 6.1 and 8.2 m/s
    // are 11.857 and 15.940 kn; 4.55 and 6.05 as floats are 4.5500002 and 6.0500002.
    // clang-format off
    const std::array<std::string, 23> expected = {
        "051 57.000 N", "004 15.000 W", " 6.3  ", "  90     ", "  86     ", "2.00 W",
        "12.4   ", " -45", " -30", " 230", "11.9", "15.9   ", " 4.6   ", "  85     ",
        " 6.1   ",  // no polar tables: three blanks
        "51 57.500 N", "004 10.250 W", "  30     ", "0.12R ", "  15     ", "3.45  ", "5.8  ",
        "FALMOUTH\r\n"};
    // clang-format on
    for (std::size_t i = 0; i < 23; ++i) {
        EXPECT_EQ(Shown(i), expected[i]) << "row " << i;
    }
    EXPECT_EQ(outcome.lastRow, 22);
    EXPECT_EQ(outcome.captionsWritten.to_string(), "01111111111111111111111");  // not row 22
    EXPECT_EQ(display.Captions()[21], "5.8  ");
    EXPECT_EQ(display.Captions()[22], "");
    ASSERT_TRUE(outcome.windSample);
    EXPECT_FLOAT_EQ(outcome.windSample->twsKnots, 11.8574514f);
    // 4.0143 x 180 / 3.141592 = 230.0024955, nearest float 230 + 164/65536; the display's
    // exact factor would give 230.0024477, a different float.
    EXPECT_EQ(outcome.windSample->twdDegrees, 230.00250244140625f);
}

// 3.1416 rad is 180.0004 degrees: a course is never folded, a wind angle is.
TEST_F(DisplayComputationTest, CourseStaysButTheWindAngleFolds) {
    ASSERT_TRUE(display.TraceDisplayLine(Line({{3, "3.1416"}, {7, "3.1416"}})).Displayed());
    EXPECT_EQ(Shown(3), " 180     ");
    EXPECT_EQ(Shown(7), "-180");
}

TEST_F(DisplayComputationTest, EmptyFieldsShowZerosAndEmptyWaypoints) {
    // Every empty number is 0: 0 degrees is south and west, angles "0" right-aligned in 4 and
    // the magnetic error "0.00 E"; the waypoint texts stay empty with their blanks.
    const DisplayOutcome outcome = display.TraceDisplayLine(std::string(22, ','));
    ASSERT_TRUE(outcome.Displayed());
    // clang-format off
    const std::array<std::string, 23> expected = {
        "000 00.000 S", "000 00.000 W", " 0.0  ", "   0     ", "   0     ", "0.00 E",
        " 0.0   ", "   0", "   0", "   0", " 0.0", " 0.0   ", " 0.0   ", "   0     ",
        " 0.0   ", "", "", "   0     ", " ", "   0     ", "  ", "  ", ""};
    // clang-format on
    for (std::size_t i = 0; i < 23; ++i) {
        EXPECT_EQ(Shown(i), expected[i]) << "row " << i;
    }
    EXPECT_EQ(outcome.lastRow, 14);
    ASSERT_TRUE(outcome.windSample);
    EXPECT_EQ(outcome.windSample->twsKnots, 0.0f);
    EXPECT_EQ(outcome.windSample->twdDegrees, 0.0f);
}

TEST_F(DisplayComputationTest, WaypointRowsKeepTheirCaptionUntilAValueArrives) {
    display.TraceDisplayLine(Line());
    DisplayOutcome outcome = display.TraceDisplayLine(Line(NoWaypoint()));
    EXPECT_EQ(outcome.lastRow, 14);
    EXPECT_EQ(outcome.captionsWritten.to_string(), "00000000111111111111111");
    EXPECT_EQ(Shown(15), "");
    EXPECT_EQ(display.Captions()[15], "51 57.500 N");
}

TEST_F(DisplayComputationTest, FailedLineKeepsThePreviousDisplay) {
    display.TraceDisplayLine(Line());
    const auto captions = display.Captions();

    DisplayOutcome outcome = display.TraceDisplayLine("1.5,2.5,3.5\r\n");
    EXPECT_EQ(outcome.error,
              "TraceDisplayLine: subscript out of range: field 3 missing, the data line has 3 "
              "of 23 fields");
    EXPECT_EQ(outcome.captionsWritten.count(), 0u);
    EXPECT_FALSE(outcome.windSample);
    EXPECT_EQ(display.Captions(), captions);

    const std::string tooLarge = "1" + std::string(40, '0');
    outcome = display.TraceDisplayLine(Line({{10, tooLarge}}));
    EXPECT_EQ(outcome.error, "TraceDisplayLine: overflow in field 10 (TWS)");
    EXPECT_FALSE(outcome.windSample);
    EXPECT_EQ(display.Captions(), captions);

    // A fault after the wind history's step still leaves the sample to be recorded.
    outcome = display.TraceDisplayLine(Line({{12, tooLarge}}));
    EXPECT_EQ(outcome.error, "TraceDisplayLine: overflow in field 12 (VMG)");
    EXPECT_TRUE(outcome.windSample);
    EXPECT_EQ(display.Captions(), captions);
}

TEST_F(DisplayComputationTest, FeetOptionConvertsDepthAndRepairsWaterSpeed) {
    display.SetFeetOption(true);
    ASSERT_TRUE(display.TraceDisplayLine(Line({{6, "40"}, {14, "612"}})).Displayed());
    EXPECT_EQ(Shown(6), "12.2   ");   // 40 ft x 0.3048 = 12.192 m
    EXPECT_EQ(Shown(14), " 6.1   ");  // integer digits with two implied decimals

    // Without a depth nothing is repaired: 612.0 is cut to four characters.
    ASSERT_TRUE(display.TraceDisplayLine(Line({{6, ""}, {14, "612"}})).Displayed());
    EXPECT_EQ(Shown(14), "612.   ");
}

TEST_F(DisplayComputationTest, PolarTablesAddCorrectedWindAndTarget) {
    FakePerformance performance;
    display.SetPerformance(&performance);
    ASSERT_TRUE(display.TraceDisplayLine(Line()).Displayed());
    // The damped values are the raw -45, 230 and 11.857; the direction turns by the angle's +3.
    EXPECT_EQ(Shown(7), " -45 C: -42");
    EXPECT_EQ(Shown(9), " 230 C: 233");
    EXPECT_EQ(Shown(10), "11.9 C:12.4");
    EXPECT_EQ(Shown(14), " 6.1 T: 6.8");
    EXPECT_FLOAT_EQ(performance.correctedAt.second, 11.8574514f);    // damped speed
    EXPECT_EQ(performance.targetAt, std::make_pair(-45.0f, 11.9f));  // raw speed as shown

    // A target of exactly 0 or below is no target; without a current table none is asked for.
    performance.target = 0.0f;
    ASSERT_TRUE(display.TraceDisplayLine(Line()).Displayed());
    EXPECT_EQ(Shown(14), " 6.1 - ");
    performance.hasTable = false;
    ASSERT_TRUE(display.TraceDisplayLine(Line()).Displayed());
    EXPECT_EQ(Shown(14), " 6.1   ");

    // The corrected direction wraps at north: 6.2483 rad is 358.001, + 3 = 361 shows 1.
    ASSERT_TRUE(display.TraceDisplayLine(Line({{9, "6.2483"}})).Displayed());
    EXPECT_EQ(Shown(9), " 358 C:   1");

    performance.hasTable = true;
    performance.target = std::nullopt;  // a fault inside the lookup fails the line
    EXPECT_EQ(display.TraceDisplayLine(Line()).error,
              "TraceDisplayLine: overflow in the target speed");
}

TEST(LogCleanUp, IntegerDigitsCarryTwoImpliedDecimals) {
    const std::pair<const char*, const char*> rows[] = {
        {"", ""},          {"1234", ""},    {".5", ""},           {"5", "5.00"},   {"12", "1.20"},
        {"123.4", "1.23"}, {"7.9", "7.00"}, {"12.345.6", "1.20"}, {"-5", "-0.50"}, {"a", "0.00"},
    };
    for (const auto& [text, result] : rows) {
        EXPECT_EQ(LogCleanUp(text), result) << '"' << text << '"';
    }
}

}  // namespace
}  // namespace wakeline
