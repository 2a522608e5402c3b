#include "performance/polar_import.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "performance/polar_file_reader.h"
#include "performance/polar_file_writer.h"
#include "performance/table_defaults.h"

namespace wakeline {
namespace {

std::string Fixture(const std::string& name) {
    std::ifstream file(std::string(WAKELINE_TEST_DATA) + "/polar_import/" + name, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

// A table written out by hand: the row keys, then per row its speed at TWA_min and at each
// column angle.
struct Expected {
    std::vector<float> windSpeeds;
    std::vector<float> twaMin;
    std::vector<float> angles;
    std::vector<std::vector<float>> cells;  // [row][0..columns]
};

void ExpectTable(const PolarTable& t, const Expected& e, const std::string& what) {
    SCOPED_TRACE(what);
    ASSERT_EQ(t.RowCount, static_cast<int>(e.windSpeeds.size()));
    ASSERT_EQ(t.ColumnCount, static_cast<int>(e.angles.size()));
    EXPECT_EQ(t.ColumnAngle[0], 0.0f);
    EXPECT_EQ(t.RowWindSpeed[0], 0.0f);
    for (std::size_t c = 0; c < e.angles.size(); ++c) {
        EXPECT_EQ(t.ColumnAngle[c + 1], e.angles[c]) << "column " << c + 1;
    }
    for (std::size_t r = 0; r < e.windSpeeds.size(); ++r) {
        EXPECT_EQ(t.RowWindSpeed[r + 1], e.windSpeeds[r]) << "row " << r + 1;
        EXPECT_EQ(t.RowTwaMin[r + 1], e.twaMin[r]) << "row " << r + 1;
        for (std::size_t c = 0; c <= e.angles.size(); ++c) {
            EXPECT_EQ(t.Cell[r + 1][c], e.cells[r][c]) << "row " << r + 1 << " column " << c;
        }
    }
}

// The genoa fixtures: 6 kt is best upwind at 40 degrees, 10 kt at 45, 16 kt at 52 (its 45
// degree cell is empty); the 0-degree row of zeros lies below them all. The columns are the
// angles above 40.
const Expected kGenoa{{6, 10, 16},
                      {40, 45, 52},
                      {45, 52, 60, 90, 120, 150},
                      {{4.2f, 4.8f, 5.3f, 5.7f, 6.1f, 5.8f, 4.6f},
                       {5.9f, 5.9f, 6.4f, 6.8f, 7.4f, 7.2f, 6.3f},
                       {6.9f, 0.0f, 6.9f, 7.3f, 7.9f, 8.1f, 7.6f}}};

TEST(PolarImport, EverySeparatorAndLineEndGivesTheSameTable) {
    struct Case {
        const char* file;
        const char* message;
    };
    const Case cases[] = {
        {"genoa_tab.txt", ""},
        // Rounded as the polar file writes: 40.4 -> 40, 52.2 -> 52, 4.84 -> 4.8, 5.26 -> 5.3.
        {"genoa_semicolon.csv", ""},
        {"genoa_comma.csv", "1 cell not a number taken as no speed, the first at line 4 '-'"},
        {"genoa_blanks.pol", ""},
    };
    for (const Case& c : cases) {
        const Result<PolarImport> import = ImportPolarGrid(Fixture(c.file), "Genoa");
        ASSERT_TRUE(import.Ok()) << c.file << ": " << import.GetStatus().Message();
        EXPECT_EQ(import.Value().table.Name, "Genoa");
        EXPECT_EQ(import.Value().message, c.message) << c.file;
        ExpectTable(import.Value().table, kGenoa, c.file);
    }
}

TEST(PolarImport, RowsAndColumnsWithoutSpeedsAreLeftOutAndSaid) {
    // The 0 kt column and the 100 degree row hold only zeros; the 0 degree row too, but it
    // lies below 12 kt's best upwind angle of 38 and goes without a word. 8 kt starts at 42.
    const Result<PolarImport> import = ImportPolarGrid(Fixture("zero_rows.txt"), "Main");
    ASSERT_TRUE(import.Ok()) << import.GetStatus().Message();
    EXPECT_EQ(import.Value().message,
              "wind speed 0 was left out: it has no boat speed above 0\n"
              "true wind angles left out, no boat speed above 0: 100");
    ExpectTable(
        import.Value().table,
        {{8, 12}, {42, 38}, {42, 60, 135}, {{5.1f, 5.1f, 6.0f, 6.2f}, {5.0f, 5.9f, 6.8f, 7.6f}}},
        "zero rows");

    // Eleven wind speeds with speeds fit even when the grid names a twelfth without any.
    std::string grid = "TWA\\TWS;0";
    std::string row = "50;0";
    for (int s = 1; s <= 11; ++s) {
        grid += ";" + std::to_string(2 * s);
        row += ";5";
    }
    const Result<PolarImport> eleven =
        ImportPolarGrid(grid + "\n40" + row.substr(2) + "\n" + row, "X");
    ASSERT_TRUE(eleven.Ok()) << eleven.GetStatus().Message();
    EXPECT_EQ(eleven.Value().table.RowCount, 11);
    EXPECT_EQ(eleven.Value().table.RowWindSpeed[11], 22.0f);
    EXPECT_EQ(eleven.Value().table.ColumnCount, 1);
}

TEST(PolarImport, MoreThanTenAnglesKeepTenSpreadEvenly) {
    // Twelve angles above 40: positions round(i * 11 / 9) = 0 1 2 4 5 6 7 9 10 11 are kept,
    // so the fourth (60) and the ninth (110) go.
    const Result<PolarImport> import = ImportPolarGrid(Fixture("many_angles.txt"), "Jib");
    ASSERT_TRUE(import.Ok()) << import.GetStatus().Message();
    EXPECT_EQ(import.Value().message,
              "12 true wind angles above the best upwind angle, a sail table holds 10: left out "
              "60, 110");
    ExpectTable(import.Value().table,
                {{8, 14},
                 {40, 40},
                 {45, 50, 55, 70, 80, 90, 100, 120, 135, 150},
                 {{4.0f, 4.1f, 4.2f, 4.3f, 4.5f, 4.6f, 4.7f, 4.8f, 5.0f, 5.1f, 5.2f},
                  {6.0f, 6.1f, 6.2f, 6.3f, 6.5f, 6.6f, 6.7f, 6.8f, 7.0f, 7.1f, 7.2f}}},
                "twelve angles");

    // Twenty angles 41..60: round(i * 19 / 9) = 0 2 4 6 8 11 13 15 17 19.
    std::string grid = "TWA\\TWS\t10\n40\t5\n";
    for (int a = 41; a <= 60; ++a) {
        grid += std::to_string(a) + "\t6\n";
    }
    const Result<PolarImport> twenty = ImportPolarGrid(grid, "Code0");
    ASSERT_TRUE(twenty.Ok()) << twenty.GetStatus().Message();
    const std::vector<float> kept{41, 43, 45, 47, 49, 52, 54, 56, 58, 60};
    EXPECT_EQ(std::vector<float>(twenty.Value().table.ColumnAngle.begin() + 1,
                                 twenty.Value().table.ColumnAngle.end()),
              kept);
}

TEST(PolarImport, GridsThatCannotBeReadAreRefusedWithTheReason) {
    struct Case {
        std::string grid;
        std::string name;
        std::string reason;
    };
    const Case cases[] = {
        {"", "A", "the grid is empty: its first line must hold the wind speeds"},
        {"\n  \nTWA\\TWS\n40\t5", "A", "line 3 holds no wind speeds after its corner cell"},
        {"TWA;6;kt\n40;5;6", "A", "line 1: 'kt' is not a wind speed"},
        {"TWA;6;-8\n40;5;6", "A", "line 1: '-8' is not a wind speed"},
        {"TWA;10;8\n40;5;6", "A",
         "line 1: the wind speeds must ascend in whole knots, not 8 after 10"},
        // 6.4 rounds to 6, which the polar file could not tell from the 6 before it.
        {"TWA;6;6.4\n40;5;6", "A",
         "line 1: the wind speeds must ascend in whole knots, not 6 after 6"},
        {[] {
             std::string many = "TWA";
             for (int s = 1; s <= 51; ++s) {
                 many += ";" + std::to_string(s);
             }
             return many + "\n40;5";
         }(),
         "A", "line 1 holds 51 wind speeds; a sail table holds at most 11"},
        {"TWA;6;8\n\n", "A", "the grid has no lines of true wind angles after the wind speeds"},
        {"TWA;6\n90;5\n60;6", "A",
         "line 3: the true wind angles must ascend in whole degrees, not 60 after 90"},
        {"TWA;6\n40;5\n190;6", "A",
         "line 3: the true wind angle '190' lies outside 0 to 180 degrees"},
        {"TWA;6\n40;5\n60;" + std::string(40, '9'), "A",
         "line 3: the boat speed '" + std::string(24, '9') + "...' is too large"},
        {"TWA;6;8\n40;0;0\n60;-1;0.04", "A", "no wind speed of the grid has a boat speed above 0"},
        {Fixture("many_speeds.txt"), "A",
         "the grid has 12 wind speeds with boat speeds; a sail table holds at most 11"},
        {"TWA;6;8\n40;5;0\n60;0;0", "A",
         "the grid has no true wind angle with boat speeds above 40, the smallest best upwind "
         "angle"},
        {"TWA;6\n40;5\n60;6", "", "the sail needs a name"},
        {"TWA;6\n40;5\n60;6", "J=2",
         "the sail name 'J=2' holds '=' or a line end, which the polar file cannot hold"},
        {"TWA;6\n40;5\n60;6", "J\r",
         "the sail name 'J\r' holds '=' or a line end, which the polar file cannot hold"},
    };
    for (const Case& c : cases) {
        const Result<PolarImport> import = ImportPolarGrid(c.grid, c.name);
        ASSERT_FALSE(import.Ok()) << c.grid;
        EXPECT_EQ(import.GetStatus().Message(), "could not import the polar grid: " + c.reason);
    }
    // Cells that are not numbers as a whole ("1e3", a decimal comma) are no speed, and lines
    // that start without an angle are left out; both are said.
    const Result<PolarImport> lax =
        ImportPolarGrid("TWA;6\nBeat VMG;4.1\n40;5\n60;1e3\n90;6\n120;6,5", "A");
    ASSERT_TRUE(lax.Ok()) << lax.GetStatus().Message();
    EXPECT_EQ(lax.Value().message,
              "line 2 'Beat VMG;4.1' was left out: it does not start with a true wind angle\n"
              "2 cells not a number taken as no speed, the first at line 4 '1e3'\n"
              "true wind angles left out, no boat speed above 0: 60, 120");
    EXPECT_EQ(lax.Value().table.ColumnCount, 1);
    EXPECT_EQ(lax.Value().table.ColumnAngle[1], 90.0f);
}

TEST(PolarImport, TheImportBecomesCurrentAndReadsBackFromThePolarFileAsInMemory) {
    PerformanceTables tables;
    tables.Correction = DefaultCorrectionTable();
    tables.Polars = PlaceholderPolarSet(8, 7);
    // Values the masks round: 7.5 kt -> 8, 52.5 degrees -> 53, 5.25 kt -> 5.3 (halves away
    // from zero), 6.349 -> 6.3.
    Result<PolarImport> import =
        ImportPolarGrid("TWS,7.5,12\n38,0,5.25\n52.5,5.25,6.349\n150,4.96,7.05", "G\xE9nois");
    ASSERT_TRUE(import.Ok()) << import.GetStatus().Message();
    ExpectTable(import.Value().table,
                {{8, 12}, {53, 38}, {53, 150}, {{5.3f, 5.3f, 5.0f}, {5.3f, 6.3f, 7.1f}}},
                "rounded");
    const Result<std::string> added = AddImportedTable(tables.Polars, import.Value().table);
    ASSERT_TRUE(added.Ok()) << added.GetStatus().Message();
    EXPECT_EQ(added.Value(), "");
    EXPECT_EQ(tables.Polars.Count, 3);
    EXPECT_EQ(tables.Polars.Current, 2);

    PerformanceTables again;
    const std::optional<std::string> text = PolarFileText(tables, 45000.0);
    ASSERT_TRUE(text);
    EXPECT_TRUE(ReadPolarText(*text, "p", again).messages.empty());
    EXPECT_EQ(again.Polars.Current, 2);
    ExpectTable(again.Polars.Tables[2],
                {{8, 12}, {53, 38}, {53, 150}, {{5.3f, 5.3f, 5.0f}, {5.3f, 6.3f, 7.1f}}},
                "read back");
    EXPECT_EQ(again.Polars.Tables[2].Name, "G\xE9nois");

    // A second sail of the same name is refused; a sixth is taken with a warning; a seventh
    // is refused, and neither refusal changes the set.
    const Result<std::string> same = AddImportedTable(tables.Polars, import.Value().table);
    EXPECT_EQ(same.GetStatus().Message(),
              "could not add the sail 'G\xE9nois': a sail of that name is in the tables already");
    EXPECT_EQ(tables.Polars.Count, 3);
    PolarTable other = import.Value().table;
    for (const char* name : {"Four", "Five"}) {
        other.Name = name;
        ASSERT_EQ(AddImportedTable(tables.Polars, other).Value(), "");
    }
    other.Name = "Six";
    EXPECT_EQ(AddImportedTable(tables.Polars, other).Value(),
              "sail 'Six' is the sixth: the polar file is read back with five sails only, so it "
              "is lost at the next start");
    EXPECT_EQ(tables.Polars.Current, 5);
    other.Name = "Seven";
    const Result<std::string> full = AddImportedTable(tables.Polars, other);
    EXPECT_EQ(full.GetStatus().Message(),
              "could not add the sail 'Seven': the tables hold six sails already, the most they "
              "can");
    EXPECT_EQ(tables.Polars.Count, 6);
    EXPECT_EQ(tables.Polars.Current, 5);
    EXPECT_EQ(tables.Polars.Tables[5].Name, "Six");
}

}  // namespace
}  // namespace wakeline
