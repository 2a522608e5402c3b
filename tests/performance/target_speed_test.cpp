#include <gtest/gtest.h>

#include <optional>
#include <vector>

#include "performance/table_defaults.h"
#include "performance/target_speed.h"

namespace wakeline {
namespace {

// Columns 50, 90, 150 degrees; column 0 is the speed at the row's TWA_min.
//   TWS  TWA_min   @min   50    90   150
//    6     40      4.0   5.0   6.0   5.5
//   12     36      5.0   6.2   7.0   6.8
//   20     34      5.5   6.6   7.6   7.8
PolarTable ThreeRowTable() {
    PolarTable t = EmptyPolarTable("Genoa", 3, 3);
    t.ColumnAngle = {0, 50, 90, 150};
    t.RowWindSpeed = {0, 6, 12, 20};
    t.RowTwaMin = {0, 40, 36, 34};
    t.Cell[1] = {4.0f, 5.0f, 6.0f, 5.5f};
    t.Cell[2] = {5.0f, 6.2f, 7.0f, 6.8f};
    t.Cell[3] = {5.5f, 6.6f, 7.6f, 7.8f};
    return t;
}

struct Row {
    float angle, speed, expected;
    const char* legend;
};

TEST(TargetSpeed, AlongOneRow) {
    const PolarTable t = ThreeRowTable();
    const std::vector<Row> rows = {
        {70, 1, 5.5f, "halfway between 50 and 90"},
        {45, 1, 4.5f, "halfway between TWA_min 40 and 50"},
        {40, 1, 4.0f, "at TWA_min: column 0"},
        {39, 1, -2.0f, "below TWA_min"},
        {151, 1, -3.0f, "beyond the last column"},
        {90, 0, -3.0f, "row 0"},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(RowSpeedAt(row.angle, static_cast<int>(row.speed), t), row.expected)
            << row.legend;
    }
    // A column below the row's TWA_min stands for TWA_min: with TWA_min 60 the 50 column drops
    // out and 70 lies a third of the way from 60 (4.0) to 90 (6.0).
    PolarTable high = t;
    high.RowTwaMin[1] = 60;
    EXPECT_FLOAT_EQ(*RowSpeedAt(70, 1, high), 4.0f + 2.0f / 3.0f);
}

TEST(TargetSpeed, BetweenRows) {
    const PolarTable t = ThreeRowTable();
    const std::vector<Row> rows = {
        {90, 12, 7.0f, "exactly a row's speed: that row alone"},
        {90, 20, 7.6f, "top row: f = 1 on it"},
        {90, 5.9f, -1.0f, "below the first row"},
        // t = 0.5, best upwind m = 38; (70-38)/(50-38) > 1 so 70 is used in both rows:
        // 0.5 * 5.5 + 0.5 * (7.0+6.2)/2
        {70, 9, 6.05f, "no mapping above the first column"},
        // u = (45-38)/(50-38) = 7/12 in both rows' own ranges: row 6 at 40 + 10u gives
        // 4.0 + u = 4.58333, row 12 at 36 + 14u gives 5.0 + 1.2u = 5.7; halfway 5.141667
        {45, 9, 5.1416667f, "mapped into each row's upwind range"},
        // u = 1/12: row 6 at 40.8333 gives 4.083333, row 12 at 37.1667 gives 5.1; halfway
        // 4.591667. Unmapped, 39 would lie below row 6's TWA_min.
        {39, 9, 4.5916667f, "mapping rescues an angle below the lower row's TWA_min"},
        {37, 9, -1.0f, "below the interpolated best upwind angle"},
        // At the top row's speed t = 0 and m = 34: u = 1/16; row 12 at 36.875 gives
        // 5.0 + 0.0625 * 1.2 = 5.075, row 20 at 35 gives 5.5 + 1.1/16 = 5.56875, taken whole.
        {35, 20, 5.56875f, "top row, mapped"},
    };
    for (const Row& row : rows) {
        const std::optional<float> target = TargetSpeedAt(row.angle, row.speed, t);
        ASSERT_TRUE(target) << row.legend;
        EXPECT_FLOAT_EQ(*target, row.expected) << row.legend;
    }
}

TEST(TargetSpeed, SmallAndBrokenTables) {
    // One row has no row below it to pair with: row 0 answers -3, so even its own speed gives
    // -1 (a speed of 0 would find row 0's speed equal and answer -3).
    PolarTable oneRow = EmptyPolarTable("Genoa", 1, 2);
    oneRow.ColumnAngle = {0, 52, 90};
    oneRow.RowWindSpeed[1] = 6;
    oneRow.RowTwaMin[1] = 40;
    oneRow.Cell[1] = {4.8f, 5.3f, 6.1f};
    EXPECT_EQ(TargetSpeedAt(52, 6, oneRow), -1.0f);
    EXPECT_EQ(RowSpeedAt(52, 1, oneRow), 5.3f);

    PolarTable overrun = ThreeRowTable();
    overrun.RowCount = 12;  // as a file with twelve rows leaves it
    EXPECT_EQ(TargetSpeedAt(90, 12, overrun), std::nullopt);
    overrun = ThreeRowTable();
    overrun.ColumnCount = 11;
    EXPECT_EQ(RowSpeedAt(90, 1, overrun), std::nullopt);
}

}  // namespace
}  // namespace wakeline
