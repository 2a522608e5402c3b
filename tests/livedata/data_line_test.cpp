#include "livedata/data_line.h"

#include <gtest/gtest.h>

#include <tuple>

#include "livedata/field_table.h"

namespace wakeline {
namespace {

TEST(DataLine, SplitTakesPiecesUpToTheTwentyThird) {
    const std::string commas(22, ',');
    const struct {
        const char* legend;
        std::string line;
        std::size_t taken;
        std::string value0, value21, value22;
    } rows[] = {
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
        EXPECT_EQ(outcome.Complete(), row.taken == 23) << row.legend;
        EXPECT_EQ(std::tie(outcome.fieldsTaken, table[0].Value, table[21].Value, table[22].Value),
                  std::tie(row.taken, row.value0, row.value21, row.value22))
            << row.legend;
    }
}

}  // namespace
}  // namespace wakeline
