#include <gtest/gtest.h>

#include <string>

#include "shell/diagnostic_log.h"
#include "support/fakes.h"

namespace wakeline {
namespace {

class DiagnosticLogTest : public ::testing::Test {
  protected:
    const std::string path_ = "/state/WakelineDebug.txt";
    testing::FakeClock system_;
    ProgramClock clock_{system_};
    testing::FakeFileSystem files_;
    testing::RecordingDialogs dialogs_;
    DiagnosticLog log_{clock_, files_, dialogs_, path_};
};

TEST_F(DiagnosticLogTest, ModesOtherThanTheFileLeaveTheDiskAlone) {
    for (std::int16_t mode : {0, 3, 4, -1}) {
        log_.SetMode(mode);
        log_.DebugWriteLine("Form_Load complete");
        log_.DebugWriteLine("piece", 1);
    }
    EXPECT_TRUE(dialogs_.messages.empty());

    // Message boxes skip blank texts and ignore the kind.
    log_.SetMode(kDebugMessageBox);
    log_.DebugWriteLine("");
    log_.DebugWriteLine("    ");
    log_.DebugWriteLine(" DetermineFiles starts ", 3);
    EXPECT_EQ(dialogs_.messages, std::vector<std::string>{" DetermineFiles starts "});
    EXPECT_EQ(files_.appendCalls, 0);
    EXPECT_TRUE(files_.files.empty());
}

TEST_F(DiagnosticLogTest, FileModeAppendsOneStampedLinePerCall) {
    log_.SetMode(kDebugLogFile);
    system_.now = {2026, 11, 15, 23, 42, 16};
    log_.DebugWriteLine("Form_Load complete");
    log_.DebugWriteLine("  text kept as given ");
    system_.now = {2026, 11, 16, 0, 0, 0};
    log_.DebugWriteLine("after midnight");
    EXPECT_EQ(files_.appendCalls, 3);
    EXPECT_EQ(files_.files[path_],
              "15-11-2026 23:42:16 Form_Load complete\r\n"
              "15-11-2026 23:42:16   text kept as given \r\n"
              "16-11-2026 00:00:00 after midnight\r\n");
}

TEST_F(DiagnosticLogTest, KindsBuildOneLineFromPieces) {
    log_.SetMode(kDebugLogFile);
    log_.DebugWriteLine("Port", 1);   // stamp, blank, text
    log_.DebugWriteLine(" COM1", 3);  // text
    log_.DebugWriteLine(" open", 2);  // text, line end
    log_.DebugWriteLine("lost", 4);   // opens and closes, writes nothing
    log_.DebugWriteLine("", -1);
    EXPECT_EQ(files_.appendCalls, 5);
    EXPECT_EQ(files_.files[path_], "15-11-2026 23:42:16 Port COM1 open\r\n");
}

TEST_F(DiagnosticLogTest, ALineThatCannotBeWrittenIsDroppedAndCounted) {
    log_.SetMode(kDebugLogFile);
    files_.failWrites = true;
    log_.DebugWriteLine("first");
    log_.DebugWriteLine("second");
    EXPECT_EQ(log_.DroppedLines(), 2u);
    EXPECT_TRUE(files_.files.empty());

    files_.failWrites = false;
    log_.DebugWriteLine("third");
    EXPECT_EQ(files_.files[path_], "15-11-2026 23:42:16 third\r\n");
    EXPECT_EQ(log_.DroppedLines(), 2u);
}

TEST(LogCleanUp, IntegerDigitsCarryTwoImpliedDecimals) {
    struct Row {
        const char* text;
        const char* result;
    };
    const Row rows[] = {
        {"", ""},       {"1234", ""},         {"1234.5", ""},  {"5", "5.00"}, {"12", "1.20"},
        {"45", "4.50"}, {"123.4", "1.23"},    {"7.9", "7.00"}, {"0", "0.00"}, {"999", "9.99"},
        {".5", ""},     {"12.345.6", "1.20"}, {"-5", "-0.50"}, {"a", "0.00"},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(LogCleanUp(row.text), row.result) << '"' << row.text << '"';
    }
}

}  // namespace
}  // namespace wakeline
