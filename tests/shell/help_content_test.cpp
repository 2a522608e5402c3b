// The help window's texts: the information and threshold labels, the help file beside the
// program or installed, and the built-in help when there is none.

#include "shell/help_content.h"

#include <gtest/gtest.h>

#include "base/line_reader.h"
#include "support/fakes.h"

namespace wakeline {
namespace {

HelpInput Input() {
    HelpInput input;
    input.title = "Wakeline";
    input.version = "1.1.35";
    input.programDir = "/opt/wakeline";
    input.programName = "wakeline";
    input.dataDir = "/usr/share/wakeline";
    input.homepage = "https://wakeline.org";
    input.iniPath = "/boat/SeaClear_2.ini";
    input.trackDir = "/boat/traces";
    input.commandLine = "/boat/SeaClear_2.ini,,600";
    input.trackTime = 10;
    input.trackCompDev = 0.1F;
    input.diskWriteInterval = 600;
    return input;
}

TEST(HelpContent, LabelsAndTheBuiltInHelpWhenNoFileHasTheExactName) {
    testing::FakeFileSystem files;
    files.files["/opt/wakeline/wakeline.txt"] = "not this one\n";
    HelpInput input = Input();
    input.traceOn = false;
    const HelpContent help = MakeHelpContent(input, files);
    EXPECT_EQ(help.title, "Wakeline  1.1.35\r\n/opt/wakeline/wakeline");
    EXPECT_EQ(help.information[0], ".ini file used:\r\n/boat/SeaClear_2.ini");
    EXPECT_EQ(help.information[1],
              "directory where track file will be stored:\r\nno tracefile will be made");
    EXPECT_EQ(help.information[3], "command line arguments:\r\n/boat/SeaClear_2.ini,,600");
    EXPECT_EQ(help.thresholds, (std::array<std::string, 4>{"Time 10", "CompDev 0.1", "Distance 0",
                                                           "Disk write interval (sec.) 600"}));
    EXPECT_TRUE(help.textSource.empty());
    const std::vector<std::string> lines = SplitLines(help.text);
    ASSERT_EQ(lines.size(), 16U);
    EXPECT_EQ(lines[0], "THIS IS A BRIEF HELP, SINCE I CANNOT FIND FILE \"Wakeline.txt\" ");
    EXPECT_EQ(lines[3], "the SeaClear II chart plotter, see https://wakeline.org/seaclear. ");
    EXPECT_EQ(lines[8], "DDE = 1");
    // The last line has no line end of its own.
    EXPECT_EQ(help.text.substr(help.text.size() - 30), "\r\nauthor: https://wakeline.org");
}

TEST(HelpContent, TheFileBesideTheProgramComesBeforeTheInstalledOne) {
    testing::FakeFileSystem files;
    files.files["/usr/share/wakeline/Wakeline.txt"] = "installed\r\nhelp";
    HelpContent help = MakeHelpContent(Input(), files);
    EXPECT_EQ(help.text, "installed\r\nhelp\r\n");
    EXPECT_EQ(help.textSource, "/usr/share/wakeline/Wakeline.txt");
    files.files["/opt/wakeline/Wakeline.txt"] = "own\rlines\n";
    help = MakeHelpContent(Input(), files);
    EXPECT_EQ(help.text, "own\r\nlines\r\n");
}

}  // namespace
}  // namespace wakeline
