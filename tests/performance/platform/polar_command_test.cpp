#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "support/tool_run.h"

namespace {

const std::string kData = std::string(WAKELINE_TEST_DATA) + "/polar_file/";

wakeline::testing::ToolRun RunTool(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), "polar");
    return wakeline::testing::RunTool(arguments);
}

TEST(PolarCommand, ReportsACleanFileWithLookupsAsJson) {
    const auto run =
        RunTool({kData + "WakelinePolar.txt", "--json", "--target", "71,12", "--correct", "120,9"});
    ASSERT_EQ(run.status, 0) << run.out;
    const auto json = nlohmann::json::parse(run.out);
    EXPECT_EQ(json["dampingFactor"], 0.25);
    EXPECT_EQ(json["current"], 1);
    EXPECT_EQ(json["tables"][0]["name"], "G\xC3\xA9nois");  // the file's Latin-1 byte E9
    // Jib at 71 degrees: 8 kt row halfway 52..90 gives (5.0+5.8)/2 = 5.4, 16 kt row (6.3+7.1)/2
    // = 6.7; 12 kt lies halfway: 6.05.
    EXPECT_NEAR(json["target"].get<double>(), 6.05, 1e-5);
    // 120 degrees at 9 kt, halfway between the 6 and 12 kt columns and between the classes 90
    // and 150: (0.5 + 1.0 - 1.0 - 1.5) / 4 = -0.25; the limit is (120+150)/2 = 135 and the
    // speed correction (0.5+1.0)/2 * (120-90)/(135-90) = 0.5.
    EXPECT_EQ(json["angleCorrection"], -0.25);
    EXPECT_EQ(json["speedCorrection"], 0.5);
}

TEST(PolarCommand, WritesTheTablesBackSoTheyReadTheSameAndFailsOnBadFiles) {
    const auto dir = std::filesystem::temp_directory_path() /
                     ("wakeline_polar_command_test_" + std::to_string(getpid()));
    std::filesystem::create_directories(dir);
    const std::string out = (dir / "WakelinePolar.txt").string();
    ASSERT_EQ(RunTool({kData + "WakelinePolar.txt", "--write", out}).status, 0);
    std::ifstream file(out, std::ios::binary);
    const std::string text((std::istreambuf_iterator<char>(file)), {});
    EXPECT_NE(text.find("\r\n[PolarTable=G\xE9nois]\r\n"), std::string::npos);
    const auto again = RunTool({out, "--json"});
    EXPECT_EQ(again.status, 0);
    auto original = nlohmann::json::parse(RunTool({kData + "WakelinePolar.txt", "--json"}).out);
    original["file"] = out;
    EXPECT_EQ(nlohmann::json::parse(again.out), original);
    std::filesystem::remove_all(dir);

    EXPECT_EQ(RunTool({kData + "no_such_file.txt"}).status, 1);
    EXPECT_EQ(RunTool({kData + "corrupt.txt"}).status, 1);
}

TEST(PolarCommand, ImportsAGridAsTheCurrentSailAndRefusesOneItCannotRead) {
    const auto dir = std::filesystem::temp_directory_path() /
                     ("wakeline_polar_import_test_" + std::to_string(getpid()));
    std::filesystem::create_directories(dir);
    const std::string grids = std::string(WAKELINE_TEST_DATA) + "/polar_import/";
    const std::string out = (dir / "WakelinePolar.txt").string();

    // No polar file: the grid becomes the only sail, named after its file, and current.
    ASSERT_EQ(RunTool({"--import", grids + "zero_rows.txt", "--write", out}).status, 0);
    const auto read = RunTool({out, "--json", "--target", "60,12"});
    ASSERT_EQ(read.status, 0) << read.out;
    const auto json = nlohmann::json::parse(read.out);
    EXPECT_EQ(json["dampingFactor"], 1.0);
    EXPECT_EQ(json["correction"]["speedCount"], 6);
    ASSERT_EQ(json["tables"].size(), 1u);
    EXPECT_EQ(json["current"], 0);
    const auto& sail = json["tables"][0];
    EXPECT_EQ(sail["name"], "zero_rows");
    // 0 kt and the 100 degree row left out; 8 kt from 42 degrees, 12 kt from 38.
    EXPECT_EQ(sail["columnAngles"], nlohmann::json::parse("[42, 60, 135]"));
    EXPECT_EQ(sail["rows"], nlohmann::json::parse(R"([{"windSpeed": 8, "twaMin": 42},
                                                      {"windSpeed": 12, "twaMin": 38}])"));
    EXPECT_EQ(sail["cells"], nlohmann::json::parse("[[5.1, 5.1, 6.0, 6.2], [5.0, 5.9, 6.8, 7.6]]"));
    EXPECT_EQ(json["target"], 6.8);

    // Onto a polar file of two sails, under a name of its own: the third sail, current.
    const auto onto = RunTool({kData + "WakelinePolar.txt", "--import", grids + "genoa_tab.txt",
                               "--name", "Code0", "--json"});
    ASSERT_EQ(onto.status, 0);
    const auto three = nlohmann::json::parse(onto.out);
    EXPECT_EQ(three["current"], 2);
    EXPECT_EQ(three["tables"][2]["name"], "Code0");
    EXPECT_EQ(three["tables"][2]["columnCount"], 6);

    // A grid of twelve wind speeds is refused and nothing is written.
    const std::string refused = (dir / "refused.txt").string();
    EXPECT_EQ(RunTool({"--import", grids + "many_speeds.txt", "--write", refused}).status, 1);
    EXPECT_FALSE(std::filesystem::exists(refused));
    std::filesystem::remove_all(dir);
}

}  // namespace
