// The tables window's texts and edits, on tables small enough to follow by hand.

#include "performance/tables_editor.h"

#include <gtest/gtest.h>

namespace wakeline {
namespace {

using Row = std::vector<std::string>;

PerformanceTables SmallTables() {
    PerformanceTables tables;
    CorrectionTable& c = tables.Correction;
    c.SpeedCount = 2;
    c.ClassCount = 3;
    c.WindSpeed = {0, 6, 12.5F};
    c.ClassAngle = {0, 45, 90, 150};
    c.AngleCorrection[1] = {0, 3, 2, 1};
    c.SpeedCorrectionKt[2] = -0.25F;
    c.SpeedCorrectionAngle[2] = 120;
    PolarSet& set = tables.Polars;
    set.Count = 2;
    set.Current = 1;
    PolarTable& jib = set.Tables[1];
    jib.Name = "Jib";
    jib.ColumnCount = 1;
    jib.RowCount = 1;
    jib.RowWindSpeed[1] = 8;
    jib.RowTwaMin[1] = 42;
    jib.ColumnAngle[1] = 90;
    jib.Cell[1] = {4.55F, 5.04F};
    return tables;
}

TEST(TablesEditor, GridsShowTheTablesThroughTheMasks) {
    PerformanceTables tables = SmallTables();
    const TablesEditor editor(tables);
    const GridTexts angles = editor.Grid(TablesGrid::AngleCorrection);
    EXPECT_EQ(angles.headingRowFactor, 2);
    EXPECT_EQ(angles.cells[0],
              (Row{"   / TWS", "Upwind       45", "Reaching    90", "Downwind 150"}));
    EXPECT_EQ(angles.cells[1], (Row{"6.0", "3.0", "2.0", "1.0"}));
    EXPECT_EQ(angles.Rows(), 3);
    const GridTexts speeds = editor.Grid(TablesGrid::SpeedCorrection);
    EXPECT_EQ(speeds.cells[0], (Row{"   / TWS", "corr kt", "corr angle"}));
    // 12.5 and -0.25 round halves away from zero.
    EXPECT_EQ(speeds.cells[2], (Row{"12.5", "-0.3", "120"}));
    // The current sail is the one shown; its cells keep one decimal.
    const GridTexts polar = editor.Grid(TablesGrid::Polar);
    EXPECT_EQ(polar.cells, (std::vector<Row>{{"", "TWA_min", "TWA / TSP", "90"},
                                             {"8.0", "42.0", "4.6", "5.0"}}));
    EXPECT_EQ(SailNames(tables.Polars), (Row{"Dummy01", "Jib"}));
}

TEST(TablesEditor, EditsStartCommitAndMarkTheTablesChanged) {
    PerformanceTables tables = SmallTables();
    TablesEditor editor(tables);
    EXPECT_FALSE(editor.StartEdit(0, 2, '7', "90"));
    EXPECT_FALSE(editor.StartEdit(1, 0, '7', "8.0"));
    EXPECT_EQ(editor.StartEdit(1, 2, '7', "4.6")->text, "7");
    EXPECT_FALSE(editor.StartEdit(1, 2, '7', "4.6")->selectAll);
    // 32 and below load the text: the space bar, Enter, a double click (no key).
    for (const std::optional<int> key :
         {std::optional<int>(32), std::optional<int>(13), std::optional<int>()}) {
        EXPECT_TRUE(editor.StartEdit(1, 2, key, "4.6")->selectAll);
    }
    EXPECT_EQ(editor.StartEdit(1, 2, 233, "")->text, "\xE9");

    EXPECT_FALSE(editor.Commit(TablesGrid::Polar, 1, 2, ""));
    EXPECT_FALSE(editor.TablesChanged());
    EXPECT_FALSE(editor.Commit(TablesGrid::Polar, 1, 2, std::string(40, '9')));
    EXPECT_FALSE(editor.TablesChanged());
    // Column 1 is TWA_min, column c >= 2 the cell c - 2; bad text reads as its leading number.
    EXPECT_TRUE(editor.Commit(TablesGrid::Polar, 1, 1, "40.5 deg"));
    EXPECT_TRUE(editor.Commit(TablesGrid::Polar, 1, 3, "1e40"));
    EXPECT_TRUE(editor.TablesChanged());
    EXPECT_EQ(tables.Polars.Tables[1].RowTwaMin[1], 40.5F);
    EXPECT_EQ(tables.Polars.Tables[1].Cell[1][1], 1.0F);
    EXPECT_TRUE(editor.Commit(TablesGrid::AngleCorrection, 2, 3, "abc"));
    EXPECT_TRUE(editor.Commit(TablesGrid::SpeedCorrection, 1, 2, "100"));
    EXPECT_EQ(tables.Correction.AngleCorrection[2][3], 0.0F);
    EXPECT_EQ(tables.Correction.SpeedCorrectionAngle[1], 100.0F);
    // Edits go to the sail shown, not the current one.
    editor.SelectSail(0);
    EXPECT_TRUE(editor.Commit(TablesGrid::Polar, 1, 2, "3"));
    EXPECT_EQ(tables.Polars.Tables[0].Cell[1][0], 3.0F);

    EXPECT_EQ(TablesEditor::RowAfterMove(1, 3, -1), 1);
    EXPECT_EQ(TablesEditor::RowAfterMove(1, 3, +1), 2);
    EXPECT_EQ(TablesEditor::RowAfterMove(2, 3, +1), 2);
}

TEST(TablesEditor, SailsAndDampingChangeTheTablesOnlyWhenTouched) {
    PerformanceTables tables = SmallTables();
    tables.DampingFactor = 0.25F;
    TablesEditor editor(tables);
    EXPECT_EQ(editor.SelectedSail(), 1);
    editor.TakeDampingText("0.2500");
    EXPECT_FALSE(editor.TablesChanged());
    editor.TakeDampingText("2");
    EXPECT_EQ(tables.DampingFactor, 1.0F);
    EXPECT_TRUE(editor.TablesChanged());

    TablesEditor sails(tables);
    sails.CheckSail(1, false);  // the current sail unchecked: none is current
    EXPECT_EQ(tables.Polars.Current, -1);
    sails.CheckSail(0, true);
    EXPECT_EQ(tables.Polars.Current, 0);
    sails.CheckSail(1, false);  // a sail that is not current: the current one stays
    EXPECT_EQ(tables.Polars.Current, 0);
    sails.CheckSail(0, false);
    EXPECT_EQ(tables.Polars.Current, -1);
    EXPECT_TRUE(sails.TablesChanged());
}

}  // namespace
}  // namespace wakeline
