#include <gtest/gtest.h>

#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "base/date_time.h"
#include "performance/polar_file_reader.h"
#include "performance/polar_file_writer.h"
#include "performance/table_defaults.h"
#include "support/fakes.h"

namespace wakeline {
namespace {

using Messages = std::vector<std::string>;

const std::string kPath = "/boat/WakelinePolar.txt";
const std::string kCorrupt = "Polar File is corrupt, check with documentation\r\n" + kPath;

std::string Lines(std::initializer_list<std::string_view> lines, const char* end = "\r\n") {
    std::string text;
    for (std::string_view line : lines) {
        text.append(line).append(end);
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

TEST(PolarFileReader, SectionsAndNames) {
    // Keys ignore case but the current sail's name does not ("ji" is not "Ji"); names lose their
    // last character, bracket or not; a blank line ends a table's rows (the row after it is
    // skipped as a stray line); the last sail of the current name wins; the same file with LF
    // or CR line ends reads the same.
    for (const char* end : {"\r\n", "\n", "\r"}) {
        const Read read(
            Lines({"[PolarTable=Main]", " 60, 120", "08, 42, 5.0, 5.5, 6.5", "",
                   "10, 40, 6.0, 6.5, 7.5", "[polartable=Jib", " 60", "[PolarTable=Main]",
                   "[PolarTableCurrent=Main]", "[PolarTableCurrent=ji]"},
                  end));
        ASSERT_EQ(read.set().Count, 3) << "line end " << static_cast<int>(end[0]);
        EXPECT_EQ(read.table(0).Name, "Main");
        EXPECT_EQ(read.table(0).RowCount, 1);
        EXPECT_EQ(read.table(0).ColumnAngle[2], 120.0f);
        EXPECT_EQ(read.table(0).Cell[1][2], 6.5f);
        EXPECT_EQ(read.table(1).Name, "Ji");
        EXPECT_EQ(read.table(1).ColumnCount, 1);
        EXPECT_EQ(read.table(2).ColumnCount, 0);  // no heading: the next line starts a section
        EXPECT_EQ(read.set().Current, 2);
        EXPECT_TRUE(read.report.messages.empty());
    }
}

TEST(PolarFileReader, MissingCellsAreReportedAndTakenAsMinusOne) {
    // A row of two angle columns needs five fields; a comment inside a table is a row too.
    const Read read(Lines({"[PolarTable=Genoa]", " 52, 90", "06, 40, 4.8", "'note"}));
    const PolarTable& genoa = read.table(0);
    ASSERT_EQ(genoa.RowCount, 2);
    EXPECT_EQ(genoa.Cell[1][0], 4.8f);
    EXPECT_EQ(genoa.Cell[1][2], -1.0f);
    EXPECT_EQ(genoa.RowTwaMin[2], -1.0f);
    // Two in the first row, four in the note.
    EXPECT_EQ(read.report.messages,
              Messages(6, "Polar File corrupt, added one cell with value -1"));
}

TEST(PolarFileReader, ASixthTableStopsTheReading) {
    std::string text;
    for (const char* name : {"A", "B", "C", "D", "E", "F"}) {
        text += Lines({std::string("[PolarTable=") + name + "]", " 52", "06, 40, 4, 5"});
    }
    const Read read(text + Lines({"[PolarTableCurrent=A]", "[DampingFactor=0.5]"}));
    EXPECT_EQ(read.set().Count, 5);
    EXPECT_EQ(read.table(4).Cell[1][1], 5.0f);
    EXPECT_EQ(read.set().Current, -1);           // never reached
    EXPECT_EQ(read.tables.DampingFactor, 1.0f);  // never reached: undamped
    EXPECT_EQ(read.report.messages, Messages{"Too many Polar tables !"});
}

TEST(PolarFileReader, FaultsEndTheReadingAndKeepWhatWasStored) {
    const std::string twelve = "1,2,3,4,5,6,7,8,9,10,11,12";
    std::string rowsText = Lines({"[PolarTable=Main]", "90"});
    for (int r = 1; r <= 12; ++r) {
        rowsText += Lines({std::to_string(r) + ", 40, 1, 2"});
    }
    const Read speeds(Lines({"[CorrectionTable]", twelve, "[DampingFactor=0.5]"}));
    const Read rows(rowsText);
    const Read cut(Lines({"[CorrectionTable]", " 06, 12", "045, 3, 2"}));
    // 1e39 does not fit a 32-bit float.
    const Read huge(Lines({"[DampingFactor=0.25]", "[PolarTable=M]", "1" + std::string(39, '0')}));
    for (const Read* read : {&speeds, &rows, &cut, &huge}) {
        EXPECT_EQ(read->report.messages, Messages{kCorrupt});
        EXPECT_EQ(read->tables.DampingFactor, read == &huge ? 0.25f : 1.0f);
    }
    // The count set before the overrun stays; the values stored before it stay too.
    EXPECT_EQ(speeds.tables.Correction.SpeedCount, 12);
    EXPECT_EQ(speeds.tables.Correction.WindSpeed[11], 11.0f);
    EXPECT_EQ(speeds.tables.Correction.ClassAngle[1], 45.0f);  // default, not reached
    EXPECT_EQ(rows.table(0).RowCount, 12);
    EXPECT_EQ(rows.table(0).Cell[11][1], 2.0f);
    EXPECT_EQ(cut.tables.Correction.SpeedCount, 2);
    EXPECT_EQ(cut.tables.Correction.AngleCorrection[2][1], 2.0f);
    EXPECT_EQ(cut.tables.Correction.ClassAngle[2], 90.0f);  // default
    EXPECT_EQ(huge.set().Count, 1);
}

TEST(PolarFileReader, AFileThatCannotBeReadIsReportedAndLeavesNoTables) {
    testing::FakeFileSystem files;
    PerformanceTables tables;
    tables.Polars = PlaceholderPolarSet(8, 7);
    const PolarReadReport report = ReadPolarFile(files, kPath, tables);
    EXPECT_EQ(report.fileStatus.Message(),
              "could not open " + kPath + ": No such file or directory");
    EXPECT_EQ(report.messages, Messages{kCorrupt});
    EXPECT_EQ(tables.Polars.Count, 0);
}

const DateTime kWrittenAt = DateTimeFromFields({2005, 6, 14, 18, 3, 27});

// Two wind speeds in the correction table, one sail of one row and two angle columns.
const std::string kSmallFile = Lines(
    {"'Wakeline Correction and Polar Tables written at 20050614 18:03:27", "[DampingFactor=0.3000]",
     "[CorrectionTable]", "       06,   12", "045,  3.0,  2.0", "090,  1.0,  0.5",
     "150,  -1.0,  -1.5", "      0.5,  1.0", "      120,  150", "[PolarTable=Genoa]",
     "                 52,   90", "06,  40,  4.8,  5.3,  6.1", "[PolarTableCurrent=Genoa]"});

TEST(PolarFileWriter, WritesTheLayoutByteForByteRoundedToTheMasks) {
    PerformanceTables tables = Read(kSmallFile).tables;
    PolarTable& genoa = tables.Polars.Tables[0];
    genoa.RowWindSpeed[1] = 6.4f;                      // "00": 06
    genoa.RowTwaMin[1] = 39.6f;                        // "#00": 40
    genoa.Cell[1][2] = 6.06f;                          // "#0.0": 6.1
    tables.Correction.AngleCorrection[2][3] = -1.46f;  // "##0.0": -1.5
    EXPECT_EQ(PolarFileText(tables, kWrittenAt), kSmallFile);

    // Without a current sail the last line is left out.
    tables.Polars.Current = -1;
    EXPECT_EQ(PolarFileText(tables, kWrittenAt),
              kSmallFile.substr(0, kSmallFile.rfind("[PolarTableCurrent")));
}

TEST(PolarFileWriter, RefusesTablesWhoseCountsOverrunTheirArrays) {
    testing::FakeFileSystem files;
    files.files[kPath] = "old";
    PerformanceTables tables = Read(kSmallFile).tables;
    tables.Polars.Tables[0].RowCount = 12;  // as a corrupt file with a twelfth row leaves it
    EXPECT_FALSE(WritePolarFile(files, kPath, tables, kWrittenAt).Ok());
    EXPECT_EQ(files.files[kPath], "old");

    tables.Polars.Tables[0].RowCount = 1;
    EXPECT_TRUE(WritePolarFile(files, kPath, tables, kWrittenAt).Ok());
    EXPECT_EQ(files.files[kPath], kSmallFile);
    // The disk's own reason comes back to the caller.
    files.failWrites = true;
    EXPECT_EQ(WritePolarFile(files, kPath, tables, kWrittenAt).Message(),
              "could not write " + kPath + ": No space left on device");
}

}  // namespace
}  // namespace wakeline
