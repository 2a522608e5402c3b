#include <gtest/gtest.h>

#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "performance/polar_file_reader.h"
#include "performance/table_defaults.h"
#include "support/fakes.h"

namespace wakeline {
namespace {

using Messages = std::vector<std::string>;

const std::string kPath = "/boat/WakelinePolar.txt";
const std::string kMissing = "Polar File corrupt, added one cell with value -1";
const std::string kCorrupt = "Polar File is corrupt, check with documentation\r\n" + kPath;
const std::string kTooMany = "Too many Polar tables !";

std::string CrLfLines(std::initializer_list<std::string_view> lines) {
    std::string text;
    for (std::string_view line : lines) {
        text.append(line).append("\r\n");
    }
    return text;
}

// Reading starts, as at start-up, from the correction defaults.
struct Read {
    explicit Read(const std::string& text) {
        tables.Correction = DefaultCorrectionTable();
        report = ReadPolarText(text, kPath, tables);
    }
    PerformanceTables tables;
    PolarReadReport report;
    const PolarSet& set() const { return tables.Polars; }
    const PolarTable& table(int i) const { return tables.Polars.Tables[i]; }
};

TEST(PolarFileReader, DampingFactorAloneLeavesNoTablesAndTheDefaultCorrections) {
    const Read read(CrLfLines({"'Wakeline Correction and Polar Tables written at 20050614 18:03:27",
                               "[DampingFactor=0.5000]"}));
    EXPECT_EQ(read.tables.DampingFactor, 0.5f);
    EXPECT_EQ(read.set().Count, 0);
    EXPECT_EQ(read.set().Current, -1);
    EXPECT_EQ(read.tables.Correction.SpeedCount, 6);
    EXPECT_EQ(read.tables.Correction.ClassAngle[3], 165.0f);
    EXPECT_TRUE(read.report.messages.empty());
}

TEST(PolarFileReader, KeysIgnoreCaseButTheCurrentSailsNameDoesNot) {
    const Read read(CrLfLines(
        {"[polartable=Jib]", "  52, 90", "06, 40, 4.8, 5.3, 6.1", "[PolarTableCurrent=jib]"}));
    ASSERT_EQ(read.set().Count, 1);
    EXPECT_EQ(read.table(0).Name, "Jib");
    EXPECT_EQ(read.table(0).ColumnCount, 2);
    EXPECT_EQ(read.table(0).ColumnAngle[2], 90.0f);
    EXPECT_EQ(read.table(0).Cell[1][2], 6.1f);
    EXPECT_EQ(read.set().Current, -1);
}

TEST(PolarFileReader, SectionsAndNames) {
    // Names lose their last character, bracket or not; a blank line ends a table's rows (the
    // row after it is skipped as a stray line); the last sail of the current name wins; the
    // same file with LF or CR line ends reads the same.
    const std::vector<std::string_view> lines = {"[PolarTable=Main]",
                                                 " 60, 120",
                                                 "08, 42, 5.0, 5.5, 6.5",
                                                 "",
                                                 "10, 40, 6.0, 6.5, 7.5",
                                                 "[PolarTable=Jib",
                                                 " 60",
                                                 "[PolarTable=Main]",
                                                 "[PolarTableCurrent=Main]"};
    for (const char* end : {"\r\n", "\n", "\r"}) {
        std::string text;
        for (auto line : lines) {
            text.append(line).append(end);
        }
        const Read read(text);
        ASSERT_EQ(read.set().Count, 3) << "line end " << static_cast<int>(end[0]);
        EXPECT_EQ(read.table(0).Name, "Main");
        EXPECT_EQ(read.table(0).RowCount, 1);
        EXPECT_EQ(read.table(0).RowWindSpeed[1], 8.0f);
        EXPECT_EQ(read.table(1).Name, "Ji");
        EXPECT_EQ(read.table(1).ColumnCount, 1);
        EXPECT_EQ(read.table(1).RowCount, 0);
        EXPECT_EQ(read.table(2).ColumnCount, 0);  // no heading: the next line starts a section
        EXPECT_EQ(read.set().Current, 2);
        EXPECT_TRUE(read.report.messages.empty());
    }
}

TEST(PolarFileReader, MissingCellsAreReportedAndTakenAsMinusOne) {
    // A row of two angle columns needs five fields; a comment inside a table is a row too.
    const Read read(CrLfLines({"[PolarTable=Genoa]", " 52, 90", "06, 40, 4.8", "'note"}));
    const PolarTable& genoa = read.table(0);
    ASSERT_EQ(genoa.RowCount, 2);
    EXPECT_EQ(genoa.Cell[1][0], 4.8f);
    EXPECT_EQ(genoa.Cell[1][1], -1.0f);
    EXPECT_EQ(genoa.Cell[1][2], -1.0f);
    EXPECT_EQ(genoa.RowWindSpeed[2], 0.0f);
    EXPECT_EQ(genoa.RowTwaMin[2], -1.0f);
    EXPECT_EQ(read.report.messages, Messages(6, kMissing));  // 2 in the first row, 4 in the note
}

TEST(PolarFileReader, ASixthTableStopsTheReading) {
    std::string text;
    for (const char* name : {"A", "B", "C", "D", "E", "F"}) {
        text += CrLfLines({std::string("[PolarTable=") + name + "]", " 52", "06, 40, 4, 5"});
    }
    text += CrLfLines({"[PolarTableCurrent=A]", "[DampingFactor=0.5]"});
    const Read read(text);
    EXPECT_EQ(read.set().Count, 5);
    EXPECT_EQ(read.table(4).Name, "E");
    EXPECT_EQ(read.table(4).Cell[1][1], 5.0f);
    EXPECT_EQ(read.set().Current, -1);  // never reached
    EXPECT_EQ(read.tables.DampingFactor, 0.0f);
    EXPECT_EQ(read.report.messages, Messages{kTooMany});
}

TEST(PolarFileReader, FaultsEndTheReadingAndKeepWhatWasStored) {
    const std::string twelve = "1,2,3,4,5,6,7,8,9,10,11,12";
    const std::string huge = "1" + std::string(39, '0');  // 1e39 does not fit a 32-bit float
    struct Case {
        const char* legend;
        std::string text;
        float dampingFactor;  // set only when its line comes before the fault
    };
    const std::vector<Case> cases = {
        {"12 wind speeds", CrLfLines({"[CorrectionTable]", twelve, "[DampingFactor=0.5]"}), 0},
        {"11 columns",
         CrLfLines(
             {"[PolarTable=Main]", twelve.substr(0, twelve.size() - 3), "[DampingFactor=0.5]"}),
         0},
        {"12 rows", CrLfLines({"[PolarTable=Main]", "90"}), 0},
        {"file ends in correction table", CrLfLines({"[CorrectionTable]", " 06, 12", "045, 3, 2"}),
         0},
        {"number too large", CrLfLines({"[DampingFactor=0.25]", "[PolarTable=Main]", huge}), 0.25f},
        {"no name to drop a bracket from", CrLfLines({"[PolarTable=", "[DampingFactor=0.5]"}), 0},
    };
    std::vector<Read> reads;
    for (const Case& c : cases) {
        std::string text = c.text;
        if (std::string(c.legend) == "12 rows") {
            for (int r = 1; r <= 12; ++r) {
                text += CrLfLines({std::to_string(r) + ", 40, 1, 2"});
            }
        }
        reads.emplace_back(text);
        EXPECT_EQ(reads.back().report.messages, Messages{kCorrupt}) << c.legend;
        EXPECT_EQ(reads.back().tables.DampingFactor, c.dampingFactor) << c.legend;
    }
    // The count set before the overrun stays; the values stored before it stay too.
    const CorrectionTable& speeds = reads[0].tables.Correction;
    EXPECT_EQ(speeds.SpeedCount, 12);
    EXPECT_EQ(speeds.WindSpeed[11], 11.0f);
    EXPECT_EQ(speeds.ClassAngle[1], 45.0f);  // default, not reached
    EXPECT_EQ(reads[1].table(0).ColumnCount, 11);
    EXPECT_EQ(reads[1].table(0).ColumnAngle[10], 10.0f);
    EXPECT_EQ(reads[2].table(0).RowCount, 12);
    EXPECT_EQ(reads[2].table(0).RowWindSpeed[11], 11.0f);
    EXPECT_EQ(reads[2].table(0).Cell[11][1], 2.0f);
    const CorrectionTable& cut = reads[3].tables.Correction;
    EXPECT_EQ(cut.SpeedCount, 2);
    EXPECT_EQ(cut.WindSpeed[2], 12.0f);
    EXPECT_EQ(cut.AngleCorrection[2][1], 2.0f);
    EXPECT_EQ(cut.ClassAngle[2], 90.0f);  // default
    EXPECT_EQ(reads[4].set().Count, 1);
}

TEST(PolarFileReader, ACorrectionTableCutShortByASectionKeepsTheRestAsItWas) {
    const Read read(CrLfLines(
        {"[CorrectionTable]", "  06,  12", "045, 3.0, 2.0", "[DampingFactor=0.2]", "090, 9, 9"}));
    const CorrectionTable& c = read.tables.Correction;
    EXPECT_EQ(c.SpeedCount, 2);
    EXPECT_EQ(c.ClassCount, 3);
    EXPECT_EQ(c.AngleCorrection[1][1], 3.0f);
    EXPECT_EQ(c.ClassAngle[2], 90.0f);
    EXPECT_EQ(c.AngleCorrection[1][2], 0.0f);  // the stray class line after the section
    EXPECT_EQ(c.SpeedCorrectionAngle[1], 165.0f);
    EXPECT_EQ(read.tables.DampingFactor, 0.2f);
    EXPECT_TRUE(read.report.messages.empty());
}

TEST(PolarFileReader, AFileThatCannotBeReadIsReportedAndLeavesNoTables) {
    testing::FakeFileSystem files;
    PerformanceTables tables;
    tables.Polars = PlaceholderPolarSet(8, 7);
    const PolarReadReport report = ReadPolarFile(files, kPath, tables);
    EXPECT_FALSE(report.fileOpened);
    EXPECT_EQ(report.messages, Messages{kCorrupt});
    EXPECT_EQ(tables.Polars.Count, 0);
}

}  // namespace
}  // namespace wakeline
