#include <gtest/gtest.h>

#include "livedata/data_line.h"
#include "livedata/field_table.h"

namespace wakeline {
namespace {

TEST(FieldTable, CodesAndDescriptionsKeepTheirOwnSpelling) {
    FieldTable table;
    InitFieldTable(table);
    EXPECT_EQ(table[0].Code, "Lat");
    EXPECT_EQ(table[2].Description, "GPS Speed knts");
    EXPECT_EQ(table[12].Code, "VMG");
    EXPECT_EQ(table[12].Description, "Speed Parallel to Wind knts");
    EXPECT_EQ(table[17].Code, "BTW ORIG");
    EXPECT_EQ(table[21].Description, "Waypoint Closure Velocity (speed made good)");
    // The trailing blank sets the width of the code column.
    EXPECT_EQ(table[22].Code, "Name WP ");
    EXPECT_EQ(table[22].Description, "Target WP Name");
}

TEST(DataLine, SplitTakesPiecesUpToTheTwentyThird) {
    struct Row {
        const char* legend;
        std::string line;
        std::size_t taken;
        std::string value0, value21, value22;
    };
    const std::string commas(22, ',');
    const Row rows[] = {
        {"22 commas: 23 empty pieces", commas, 23, "", "", ""},
        {"line end belongs to the last field", "a" + commas + "Name\r\n", 23, "a", "", "Name\r\n"},
        {"pieces beyond 22 ignored", commas + "N,x,y", 23, "", "", "N"},
        {"blanks kept", " 1 " + commas + " ", 23, " 1 ", "", " "},
        {"short line stops at the first missing piece", "p,q,r", 3, "p", "old21", "old22"},
        {"empty line is one empty piece", "", 1, "", "old21", "old22"},
    };
    for (const auto& row : rows) {
        FieldTable table;
        table[21].Value = "old21";
        table[22].Value = "old22";
        const SplitOutcome outcome = SplitDataLine(row.line, table);
        EXPECT_EQ(outcome.fieldsTaken, row.taken) << row.legend;
        EXPECT_EQ(outcome.Complete(), row.taken == 23) << row.legend;
        EXPECT_EQ(table[0].Value, row.value0) << row.legend;
        EXPECT_EQ(table[21].Value, row.value21) << row.legend;
        EXPECT_EQ(table[22].Value, row.value22) << row.legend;
    }
}

}  // namespace
}  // namespace wakeline
