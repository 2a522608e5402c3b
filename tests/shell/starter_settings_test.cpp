// The starter settings file: where it goes, and that the settings reader takes from it exactly
// the values it states and nothing from its comments.

#include "shell/starter_settings.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <tuple>
#include <vector>

#include "base/line_reader.h"
#include "shell/configuration.h"
#include "support/harness.h"

namespace wakeline {
namespace {

TEST(StarterSettings, Places) {
    const UserHomes xdg{"/cfg", "/data", "/home/u"};
    const UserHomes homeOnly{"", "", "/home/u"};
    const UserHomes relative{"cfg", "data", "/home/u"};
    const struct {
        const char* legend;
        std::optional<std::string> dir;
        UserHomes homes;
        std::string settings, traces;
        bool userDefault;
    } rows[] = {
        {"XDG directories", std::nullopt, xdg, "/cfg/Wakeline/SeaClear_2.ini",
         "/data/wakeline/traces", true},
        {"their defaults under HOME", std::nullopt, homeOnly,
         "/home/u/.config/Wakeline/SeaClear_2.ini", "/home/u/.local/share/wakeline/traces", true},
        {"relative XDG values are ignored", std::nullopt, relative,
         "/home/u/.config/Wakeline/SeaClear_2.ini", "/home/u/.local/share/wakeline/traces", true},
        {"an absolute DIR, trailing slash", "/boat/", xdg, "/boat/SeaClear_2.ini", "/boat/traces",
         false},
        {"a relative DIR from the current directory", "log book", xdg,
         "/work/log book/SeaClear_2.ini", "/work/log book/traces", false},
        {"the root", "/", xdg, "/SeaClear_2.ini", "/traces", false},
    };
    for (const auto& row : rows) {
        const Result<StarterPlace> place = ChooseStarterPlace(row.dir, row.homes, "/work");
        ASSERT_TRUE(place.Ok()) << row.legend;
        EXPECT_EQ(place.Value().settingsPath, row.settings) << row.legend;
        EXPECT_EQ(place.Value().trackDir, row.traces) << row.legend;
        EXPECT_EQ(place.Value().userDefault, row.userDefault) << row.legend;
    }
    EXPECT_FALSE(ChooseStarterPlace(std::nullopt, {"", "/data", ""}, "/work").Ok())
        << "no home and no XDG_CONFIG_HOME";
    EXPECT_TRUE(ChooseStarterPlace("/boat", {}, "/work").Ok()) << "a DIR needs no home";
    EXPECT_EQ(UserSettingsPath({}), "");
}

TEST(StarterSettings, TheReaderTakesTheStatedValuesAndNoComment) {
    const std::string trackDir = "/home/skipper/.local/share/wakeline/traces";
    const std::string text = StarterSettingsText(trackDir);
    testing::Harness run;
    run.files.files["/s.ini"] = text;
    // Every key the reader knows, as (DDE, Track Time, Track Distance, Track CompDev, Track Dir,
    // SeaClear Dir).
    const auto read = [&](const std::string& path) {
        ChartPlotterSettings settings;
        IniFileGet(path, run.files, run.log, settings);
        return std::tuple(settings.Dde, settings.TrackTime, settings.TrackDistance,
                          settings.TrackCompDev, settings.TrackDir, settings.SeaClearDir);
    };
    EXPECT_EQ(read("/s.ini"),
              std::tuple(std::int16_t{1}, 60.0f, 100.0f, 15.0f, trackDir, std::string()));

    // The comments alone below the section set nothing (none may start a section: only the
    // section line starts with "[").
    std::string comments = "[Program Setup]\n";
    int count = 0;
    for (const std::string& line : SplitLines(text)) {
        for (const char c : line) {
            EXPECT_TRUE(c >= 0x20 && c < 0x7f) << "plain ASCII: " << line;
        }
        EXPECT_TRUE(!line.starts_with("[") || line == "[Program Setup]") << line;
        EXPECT_LE(line.size(), 80u) << "fits a terminal: " << line;
        if (line.starts_with(";")) {
            comments += line + "\n";
            ++count;
        }
    }
    EXPECT_GT(count, 30) << "each setting explained";
    run.files.files["/comments.ini"] = comments;
    EXPECT_EQ(read("/comments.ini"),
              std::tuple(std::int16_t{0}, 0.0f, 0.0f, 0.0f, std::string(), std::string()));
}

}  // namespace
}  // namespace wakeline
