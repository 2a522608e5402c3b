#include <gtest/gtest.h>

#include <initializer_list>
#include <string>
#include <string_view>

#include "performance/polar_file_reader.h"
#include "performance/polar_file_writer.h"
#include "performance/table_defaults.h"
#include "shell/date_time.h"
#include "support/fakes.h"

namespace wakeline {
namespace {

std::string CrLfLines(std::initializer_list<std::string_view> lines) {
    std::string text;
    for (std::string_view line : lines) {
        text.append(line).append("\r\n");
    }
    return text;
}

// Two wind-speed columns in the correction table, one sail of one row and two angle columns.
PerformanceTables SmallTables() {
    PerformanceTables tables;
    tables.DampingFactor = 0.3f;
    CorrectionTable& c = tables.Correction;
    c.SpeedCount = 2;
    c.ClassCount = 3;
    c.WindSpeed = {0, 6, 12};
    c.ClassAngle = {0, 45, 90, 150};
    c.AngleCorrection[1] = {0, 3.0f, 1.0f, -1.0f};
    c.AngleCorrection[2] = {0, 2.0f, 0.5f, -1.5f};
    c.SpeedCorrectionKt = {0, 0.5f, 1.0f};
    c.SpeedCorrectionAngle = {0, 120, 150};
    PolarTable& genoa = tables.Polars.Tables[0];
    genoa.Name = "Genoa";
    genoa.ColumnCount = 2;
    genoa.RowCount = 1;
    genoa.ColumnAngle = {0, 52, 90};
    genoa.RowWindSpeed[1] = 6;
    genoa.RowTwaMin[1] = 40;
    genoa.Cell[1] = {4.8f, 5.3f, 6.1f};
    tables.Polars.Count = 1;
    tables.Polars.Current = 0;
    return tables;
}

const DateTime kWrittenAt = DateTimeFromFields({2005, 6, 14, 18, 3, 27});

const std::string kSmallFile = CrLfLines({
    "'Wakeline Correction and Polar Tables written at 20050614 18:03:27",
    "[DampingFactor=0.3000]",
    "[CorrectionTable]",
    "       06,   12",
    "045,  3.0,  2.0",
    "090,  1.0,  0.5",
    "150,  -1.0,  -1.5",
    "      0.5,  1.0",
    "      120,  150",
    "[PolarTable=Genoa]",
    "                 52,   90",
    "06,  40,  4.8,  5.3,  6.1",
    "[PolarTableCurrent=Genoa]",
});

TEST(PolarFileWriter, WritesTheLayoutByteForByte) {
    EXPECT_EQ(PolarFileText(SmallTables(), kWrittenAt), kSmallFile);

    // Without a current sail the last line is left out.
    PerformanceTables none = SmallTables();
    none.Polars.Current = -1;
    const std::string withoutCurrent = kSmallFile.substr(0, kSmallFile.rfind("[PolarTableCurrent"));
    EXPECT_EQ(PolarFileText(none, kWrittenAt), withoutCurrent);
}

TEST(PolarFileWriter, ReadsBackWhatItWroteRoundedToTheMasks) {
    PerformanceTables written = SmallTables();
    PolarTable& genoa = written.Polars.Tables[0];
    genoa.RowWindSpeed[1] = 6.4f;                       // "00": 06
    genoa.RowTwaMin[1] = 39.6f;                         // "#00": 40
    genoa.Cell[1][2] = 6.06f;                           // "#0.0": 6.1
    written.Correction.AngleCorrection[2][3] = -1.46f;  // "##0.0": -1.5

    PerformanceTables read;
    const PolarReadReport report =
        ReadPolarText(*PolarFileText(written, kWrittenAt), "WakelinePolar.txt", read);
    EXPECT_TRUE(report.messages.empty());
    // Everything comes back as the masks wrote it, so writing again gives the same bytes.
    EXPECT_EQ(PolarFileText(read, kWrittenAt), kSmallFile);
    const PolarTable& back = read.Polars.Tables[0];
    EXPECT_EQ(back.RowWindSpeed[1], 6.0f);
    EXPECT_EQ(back.RowTwaMin[1], 40.0f);
    EXPECT_EQ(back.Cell[1][2], 6.1f);
    EXPECT_EQ(read.Correction.AngleCorrection[2][3], -1.5f);
    EXPECT_EQ(read.DampingFactor, 0.3f);
}

TEST(PolarFileWriter, RefusesTablesWhoseCountsOverrunTheirArrays) {
    testing::FakeFileSystem files;
    files.files["/boat/WakelinePolar.txt"] = "old";
    PerformanceTables overrun = SmallTables();
    overrun.Polars.Tables[0].RowCount = 12;  // as a corrupt file with a twelfth row leaves it
    EXPECT_FALSE(WritePolarFile(files, "/boat/WakelinePolar.txt", overrun, kWrittenAt));
    EXPECT_EQ(files.files["/boat/WakelinePolar.txt"], "old");

    EXPECT_TRUE(WritePolarFile(files, "/boat/WakelinePolar.txt", SmallTables(), kWrittenAt));
    EXPECT_EQ(files.files["/boat/WakelinePolar.txt"], kSmallFile);
    files.failWrites = true;
    EXPECT_FALSE(WritePolarFile(files, "/boat/WakelinePolar.txt", SmallTables(), kWrittenAt));
}

}  // namespace
}  // namespace wakeline
