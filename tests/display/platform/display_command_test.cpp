#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "support/tool_run.h"

namespace {

struct DisplayRun {
    int status = -1;
    std::vector<nlohmann::json> objects;  // one per output line
};

// Runs `wakeline-tool display` with the input bytes on standard input.
DisplayRun RunDisplay(const std::string& input, std::vector<std::string> options = {}) {
    options.insert(options.begin(), "display");
    const wakeline::testing::ToolRun run = wakeline::testing::RunTool(options, input);
    DisplayRun display{run.status, {}};
    std::istringstream out(run.out);
    for (std::string line; std::getline(out, line);) {
        display.objects.push_back(nlohmann::json::parse(line));
    }
    return display;
}

TEST(DisplayCommand, PrintsTheShownTextsOrTheErrorPerLine) {
    // A reach with a waypoint named in 8-bit text, then a line cut short; CR LF and LF ends.
    const DisplayRun run = RunDisplay(
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
    EXPECT_EQ(shown[22], "Cap Fr\u00e9hel");  // its CR LF ended the line, none is added
    EXPECT_EQ(run.objects[1],
              (nlohmann::json{{"error",
                               "TraceDisplayLine: subscript out of range: field 3 missing, the "
                               "data line has 3 of 23 fields"}}));
}

TEST(DisplayCommand, StatusTellsFailures) {
    EXPECT_EQ(RunDisplay("", {"--polar", "missing.txt"}).status, 1);
}

}  // namespace
