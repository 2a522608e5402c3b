#include <gtest/gtest.h>

#include <QTemporaryDir>
#include <cmath>
#include <fstream>
#include <numbers>
#include <string>

#include <nlohmann/json.hpp>

#include "base/date_time.h"
#include "support/tool_run.h"
#include "wind/wind_data.h"
#include "wind/wind_file.h"

namespace {

using wakeline::testing::RunTool;

void WriteBytes(const std::string& path, const std::string& bytes) {
    std::ofstream(path, std::ios::binary) << bytes;
}

TEST(WindCommand, JsonShowsTheHistoryItsAveragesAndTheFittedOscillation) {
    // Every 20 s from 12:00 to 12:40, 12.5 kt, 240 + 10 sin(2 pi t / 8 min): at 12:40 (five
    // periods) the direction rises through its mean, so the next maximum is 12:42 and the next
    // minimum 12:46.
    wakeline::WindData history;
    const wakeline::DateTime noon = wakeline::DateTimeFromFields({2026, 11, 15, 12, 0, 0});
    for (int i = 0; i <= 120; ++i) {
        const double seconds = 20.0 * i;
        const double direction = 240.0 + 10.0 * std::sin(2.0 * std::numbers::pi * seconds / 480.0);
        wakeline::AddWindObservation(history, 12.5f, static_cast<float>(direction),
                                     noon + seconds / wakeline::kSecondsPerDay, 1);
    }
    QTemporaryDir dir;
    const std::string file = dir.filePath("wakeline_wc.bin").toStdString();
    WriteBytes(file, wakeline::EncodeWindData(history));

    const auto run = RunTool({"wind", "--json", "--fit", file});
    ASSERT_EQ(run.status, 0);
    const nlohmann::json out = nlohmann::json::parse(run.out);
    ASSERT_EQ(out["observations"].size(), 121u);
    EXPECT_EQ(
        out["observations"][0],
        (nlohmann::json{
            {"time", "20261115 12:00:00"}, {"speed", 12.5}, {"direction", 240}, {"samples", 1}}));
    // 12:35:00 .. 12:40:00 lie within the last 5 minutes: 16 observations.
    EXPECT_EQ(out["average5"]["samples"], 16);
    EXPECT_EQ(out["average5"]["time"], "20261115 12:40:00");
    EXPECT_EQ(out["average15"]["samples"], 46);
    const nlohmann::json& fit = out["fit"];
    ASSERT_TRUE(fit.is_object());
    EXPECT_NEAR(fit["periodMinutes"].get<double>(), 8.0, 0.4);
    EXPECT_NEAR(fit["amplitudeDegrees"].get<double>(), 10.0, 0.5);
    EXPECT_NEAR(fit["meanDirection"].get<double>(), 240.0, 0.5);
    EXPECT_GT(fit["r2"].get<double>(), 0.99);
    EXPECT_EQ(fit["nextMaximum"], "20261115 12:42:00");
    EXPECT_EQ(fit["nextMinimum"], "20261115 12:46:00");

    // A steady wind has no oscillation; without --fit there is no "fit" at all.
    wakeline::WindData steady;
    for (int i = 0; i <= 10; ++i) {
        wakeline::AddWindObservation(steady, 8.0f, 90.0f, noon + i / 1440.0, 1);
    }
    WriteBytes(file, wakeline::EncodeWindData(steady));
    EXPECT_TRUE(
        nlohmann::json::parse(RunTool({"wind", "--json", "--fit", file}).out)["fit"].is_null());
    EXPECT_FALSE(nlohmann::json::parse(RunTool({"wind", "--json", file}).out).contains("fit"));

    // A count the program would refuse, and no file at all.
    std::string bytes = wakeline::EncodeWindData(steady);
    bytes[0] = '\xD0';
    bytes[1] = '\x07';  // 2000
    WriteBytes(file, bytes);
    EXPECT_EQ(RunTool({"wind", file}).status, 1);
    EXPECT_EQ(RunTool({"wind", dir.filePath("missing.bin").toStdString()}).status, 1);
}

}  // namespace
