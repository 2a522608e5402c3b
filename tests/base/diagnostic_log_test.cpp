#include "base/diagnostic_log.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/harness.h"

namespace wakeline {
namespace {

using testing::kLogStamp;

TEST(DiagnosticLog, OnlyTheFileModeTouchesTheDiskAndMessageBoxesSkipBlanks) {
    testing::Harness h;
    for (std::int16_t mode : {0, 3, 4, -1}) {
        h.log.SetMode(mode);
        h.log.DebugWriteLine("Form_Load complete");
        h.log.DebugWriteLine("piece", 1);
    }
    h.log.SetMode(kDebugMessageBox);
    h.log.DebugWriteLine("    ");
    h.log.DebugWriteLine(" DetermineFiles starts ", 3);  // the kind is ignored
    EXPECT_EQ(h.dialogs.messages, std::vector<std::string>{" DetermineFiles starts "});
    EXPECT_EQ(h.files.appendCalls, 0);
}

TEST(DiagnosticLog, FileModeAppendsStampedLinesBuiltFromPiecesByKind) {
    testing::Harness h;
    h.log.DebugWriteLine("  text kept as given ");
    h.log.DebugWriteLine("Port", 1);   // stamp, blank, text
    h.log.DebugWriteLine(" COM1", 3);  // text
    h.log.DebugWriteLine(" open", 2);  // text, line end
    h.log.DebugWriteLine("lost", 4);   // opens and closes, writes nothing
    h.log.DebugWriteLine("", -1);
    // A text of several lines stays one record: CR LF, LF then CR, lone CR each one space.
    h.log.DebugWriteLine(
        "Directory for tracking does not exist, no trackingfile created\r\n\r\n/boat/track");
    h.log.DebugWriteLine("a\n\rb\rc");
    h.system.now = {2026, 11, 16, 0, 0, 0};
    h.log.DebugWriteLine("after midnight");
    EXPECT_EQ(h.files.appendCalls, 9);
    EXPECT_EQ(
        h.Log(),
        std::string(kLogStamp) + "  text kept as given \r\n" + kLogStamp + "Port COM1 open\r\n" +
            kLogStamp +
            "Directory for tracking does not exist, no trackingfile created  /boat/track\r\n" +
            kLogStamp + "a  b c\r\n16-11-2026 00:00:00 after midnight\r\n");
}

TEST(DiagnosticLog, ALineThatCannotBeWrittenIsDroppedCountedAndToldOnce) {
    testing::Harness h;
    h.files.failWrites = true;
    h.log.DebugWriteLine("first");
    h.log.DebugWriteLine("second");
    EXPECT_EQ(h.log.DroppedLines(), 2u);
    EXPECT_EQ(h.dialogs.messages,
              std::vector<std::string>{"Diagnostic log cannot be written, its lines are dropped: "
                                       "could not append to /log/WakelineDebug.txt: No space "
                                       "left on device"});
    h.files.failWrites = false;
    h.log.DebugWriteLine("third");
    EXPECT_EQ(h.Log(), std::string(kLogStamp) + "third\r\n");
}

}  // namespace
}  // namespace wakeline
