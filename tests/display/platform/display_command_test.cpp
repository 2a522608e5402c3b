#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

namespace {

struct ToolRun {
    int status = -1;
    std::vector<nlohmann::json> objects;
};

// Runs `wakeline-tool display` with the input bytes on standard input.
ToolRun RunDisplay(const std::string& input, const std::string& options = "") {
    const auto dir =
        std::filesystem::temp_directory_path() / ("wakeline_display_" + std::to_string(::getpid()));
    std::filesystem::create_directories(dir);
    std::ofstream(dir / "in", std::ios::binary) << input;
    const std::string command = std::string(WAKELINE_TOOL_BINARY) + " display " + options + " <" +
                                (dir / "in").string() + " >" + (dir / "out").string() +
                                " 2>/dev/null";
    ToolRun run;
    const int raw = std::system(command.c_str());
    run.status = WIFEXITED(raw) ? WEXITSTATUS(raw) : -1;
    std::ifstream out(dir / "out", std::ios::binary);
    for (std::string line; std::getline(out, line);) {
        run.objects.push_back(nlohmann::json::parse(line));
    }
    std::filesystem::remove_all(dir);
    return run;
}

TEST(DisplayCommand, PrintsTheShownTextsOrTheErrorPerLine) {
    // A reach with a waypoint named in 8-bit text, then a line cut short; CR LF and LF ends.
    const ToolRun run = RunDisplay(
        "51.95,-4.25,6.25,1.5708,1.5010,-0.0349,12.4,-0.7854,-0.5236,4.0143,6.1,8.2,4.55,"
        "1.4835,6.05,,,,,,3.45,,Cap Fr\xe9hel\r\n"
        "1.5,2.5,3.5\n");
    EXPECT_EQ(run.status, 1);  // a line failed
    ASSERT_EQ(run.objects.size(), 2u);
    EXPECT_EQ(run.objects[0]["lastRow"], 22);
    const auto& shown = run.objects[0]["shown"];
    ASSERT_EQ(shown.size(), 23u);
    EXPECT_EQ(shown[0], "051 57.000 N");
    EXPECT_EQ(shown[20], "3.45  ");
    EXPECT_EQ(shown[22], "Cap Fr\u00e9hel\r\n");
    EXPECT_EQ(run.objects[1],
              (nlohmann::json{{"error",
                               "TraceDisplayLine: subscript out of range: field 3 missing, the "
                               "data line has 3 of 23 fields"}}));
}

TEST(DisplayCommand, PolarFileAddsCorrectionsAndTargetSpeedAndStatusTellsFailures) {
    const ToolRun run = RunDisplay(
        "52.5,-4.25,6.5,1.5708,1.5708,0,10,0.7854,0.5236,2.3562,5,7,4,1.5708,6.2,,,,,,,,\n",
        "--polar " WAKELINE_TEST_DATA "/polar_file/WakelinePolar.txt");
    EXPECT_EQ(run.status, 0);
    ASSERT_EQ(run.objects.size(), 1u);
    // The fixture's current sail is the Jib, whose rows of 8 and 16 knots cover 9.7 knots.
    EXPECT_EQ(run.objects[0]["shown"][14].get<std::string>().substr(0, 7), " 6.2 T:");

    EXPECT_EQ(RunDisplay("", "--polar missing.txt").status, 1);
    EXPECT_EQ(RunDisplay("", "--no-such-option").status, 2);
}

}  // namespace
