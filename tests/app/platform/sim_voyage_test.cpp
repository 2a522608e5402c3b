// `wakeline-tool sim` with the real navigation centre: an hour of voyage replayed through
// `wakeline --headless --replay -` must leave the track and the wind history that the settings'
// thresholds call for, with values that hold together as a boat's instruments do; served as the
// chart plotter's link, the voyage reaches the program line for line and its end ends the run.

#include <gtest/gtest.h>

#include <QHostAddress>
#include <QProcess>
#include <QTcpServer>
#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <sstream>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "app/platform/boat_run.h"
#include "base/file_system.h"
#include "livedata/platform/event_loop_wait.h"
#include "livedata/sailing_simulator.h"
#include "performance/polar_file_reader.h"
#include "performance/target_speed.h"
#include "support/tool_run.h"

namespace wakeline::testing {
namespace {

constexpr double kKnotsPerMetrePerSecond = 1.9438444924406;
constexpr double kDegreesPerRadian = 57.2957795130824;
constexpr double kMetresPerMile = 1852;

struct Record {
    std::string stamp;  // "YYYYMMDD HH:MM:SS"
    int second = 0;     // since 10:00:00, the first stamp of `sim --stdout`
    std::vector<double> f;
    std::string name;
};

std::vector<std::string> Fields(const std::string& line) {
    std::vector<std::string> fields;
    std::istringstream in(line + ",");
    for (std::string field; std::getline(in, field, ',');) {
        fields.push_back(field);
    }
    return fields;
}

std::vector<Record> Records(const Boat& boat) {
    std::vector<Record> records;
    for (const std::string& text : TrackRecords(boat)) {
        Record r;
        r.stamp = text.substr(0, 17);
        r.second = (std::stoi(text.substr(9, 2)) - 10) * 3600 + std::stoi(text.substr(12, 2)) * 60 +
                   std::stoi(text.substr(15, 2));
        const std::vector<std::string> fields = Fields(text.substr(21));
        EXPECT_EQ(fields.size(), 23u) << text;
        for (std::size_t i = 0; i < 15 && i < fields.size(); ++i) {
            r.f.push_back(std::atof(fields[i].c_str()));
        }
        r.name = fields.back();
        records.push_back(r);
    }
    return records;
}

// The course as the display shows it and the track writer compares it: whole degrees.
double CourseDegrees(const Record& r) {
    return std::round(r.f[3] * kDegreesPerRadian);
}

bool Finished(QProcess& process, int ms) {
    return WaitUntil([&] { return process.state() == QProcess::NotRunning; }, ms);
}

TEST(SimVoyage, AnHourReplayedLeavesTheTrackAndWindHistoryTheThresholdsCallFor) {
    EnsureCoreApplication();
    Boat boat({"DDE=1", "Track Time=10", "Track Distance=100", "Track CompDev=20"}, false);
    QProcess sim;
    QProcess navigator;
    sim.setStandardOutputProcess(&navigator);
    boat.Start(navigator, {"--replay", "-"});
    sim.start(WAKELINE_TOOL_BINARY, {"sim", "--stdout", "--duration", "3600", "--rate", "1",
                                     "--speedup", "1", "--seed", "3"});
    ASSERT_TRUE(Finished(sim, 30000));
    ASSERT_TRUE(Finished(navigator, 30000));
    EXPECT_EQ(sim.exitCode(), 0);
    EXPECT_EQ(navigator.exitCode(), 0);

    // One line a simulated second, 0 to 3599. Track Time 10 makes a record at least every 10 s
    // from the first line on: 360 at the least (0, 10, ..., 3590). Track Distance 100 m never
    // fires first, since 100 m in 10 s would take 19 kn and the boat's polar tops out near 9.
    // Track CompDev 20 adds records only where the course turns 20 degrees within 10 s: the
    // wind's shifts turn it by a degree or two in that time, so only tacks, gybes and mark
    // roundings do, each a turn of at most 140 degrees, so at most 7 records more apiece.
    const std::vector<Record> records = Records(boat);
    ASSERT_GE(records.size(), 360u);
    EXPECT_EQ(records.front().second, 0);
    EXPECT_GE(records.back().second, 3590);
    int manoeuvres = 0;
    int steadyPairs = 0;
    for (std::size_t k = 1; k < records.size(); ++k) {
        const Record& a = records[k - 1];
        const Record& b = records[k];
        const int gap = b.second - a.second;
        EXPECT_TRUE(gap >= 1 && gap <= 10) << b.stamp;
        if (gap < 10) {  // not a time record, so a course record
            EXPECT_GE(std::fabs(CourseDegrees(b) - CourseDegrees(a)), 20) << b.stamp;
        }
        if (a.f[7] * b.f[7] < 0 || a.name != b.name) {
            ++manoeuvres;
        }
        // Positions move by SOG along COG: between records on a steady course, the mean of the
        // two ends' velocities times the time. Rounding of the fields (a millionth of a degree
        // is 0.1 m) and the sampling (a 0.25 s step) stay well below a metre.
        if (std::fabs(CourseDegrees(b) - CourseDegrees(a)) < 5) {
            ++steadyPairs;
            const double hours = gap / 3600.0;
            const double north = (a.f[2] * std::cos(a.f[3]) + b.f[2] * std::cos(b.f[3])) / 2;
            const double east = (a.f[2] * std::sin(a.f[3]) + b.f[2] * std::sin(b.f[3])) / 2;
            const double movedNorth = (b.f[0] - a.f[0]) * 60 * kMetresPerMile;
            const double movedEast = (b.f[1] - a.f[1]) * 60 * kMetresPerMile *
                                     std::cos((a.f[0] + b.f[0]) / 2 / kDegreesPerRadian);
            EXPECT_NEAR(movedNorth, north * hours * kMetresPerMile, 1.5) << b.stamp;
            EXPECT_NEAR(movedEast, east * hours * kMetresPerMile, 1.5) << b.stamp;
        }
    }
    EXPECT_GE(manoeuvres, 3);
    EXPECT_LE(records.size(), 360u + 7u * static_cast<unsigned>(manoeuvres));
    EXPECT_GE(steadyPairs, 300);

    // Each record's instruments agree: the apparent wind is the true wind plus the head wind
    // of the boat's speed through the water (fields rounded to 0.01 m/s, 0.01 kn and 0.0001
    // rad: 0.02 m/s covers them); TWD is the true heading (compass heading plus variation)
    // plus TWA; VMG is SPD along the wind.
    for (const Record& r : records) {
        const double boatSpeed = r.f[14] / kKnotsPerMetrePerSecond;
        EXPECT_NEAR(r.f[11] * std::cos(r.f[8]), r.f[10] * std::cos(r.f[7]) + boatSpeed, 0.02)
            << r.stamp;
        EXPECT_NEAR(r.f[11] * std::sin(r.f[8]), r.f[10] * std::sin(r.f[7]), 0.02) << r.stamp;
        EXPECT_NEAR(std::remainder(r.f[13] + r.f[5] + r.f[7] - r.f[9], 2 * M_PI), 0, 0.0005)
            << r.stamp;
        EXPECT_NEAR(r.f[12], r.f[14] * std::cos(r.f[7]), 0.01) << r.stamp;
    }

    // The wind history: one observation per record, stamped with it, averaging the lines
    // since the record before (the first, the first line alone).
    const std::string history = boat.TracesPath().toStdString() + "/wakeline_wc.bin";
    const ToolRun wind = RunTool({"wind", "--json", history});
    ASSERT_EQ(wind.status, 0);
    const nlohmann::json observations = nlohmann::json::parse(wind.out)["observations"];
    ASSERT_EQ(observations.size(), records.size());
    for (std::size_t k = 0; k < records.size(); ++k) {
        const nlohmann::json& o = observations[k];
        const Record& r = records[k];
        EXPECT_EQ(o["time"], r.stamp);
        EXPECT_EQ(o["samples"], k == 0 ? 1 : r.second - records[k - 1].second) << r.stamp;
        // The direction turns by under 2 degrees in 10 s; a gust may lift the speed by some
        // 4 kn within them, so the mean may lie that far from the record's own value.
        EXPECT_NEAR(o["direction"].get<double>(), r.f[9] * 180 / 3.141592, 2.0) << r.stamp;
        EXPECT_NEAR(o["speed"].get<double>(), r.f[10] * kKnotsPerMetrePerSecond, 4.0) << r.stamp;
    }
}

quint16 FreePort() {
    QTcpServer reserve;
    return reserve.listen(QHostAddress::LocalHost) ? reserve.serverPort() : 0;
}

TEST(SimVoyage, TheServedVoyageIsTheStampedOneAndItsEndEndsTheRun) {
    EnsureCoreApplication();
    // A record for every line: each line is 6 simulated seconds, some 18 m of sailing.
    Boat boat({"DDE=1", "Track Time=0", "Track Distance=1", "Track CompDev=0"}, false);
    const quint16 port = FreePort();
    ASSERT_NE(port, 0);
    const QStringList pace = {"--rate", "5", "--speedup", "30", "--duration", "120", "--seed", "4"};
    QProcess sim;
    sim.start(WAKELINE_TOOL_BINARY, QStringList{"sim", "--port", QString::number(port)} + pace);
    QByteArray serving;
    ASSERT_TRUE(WaitUntil([&] {
        serving += sim.readAllStandardError();
        return serving.contains('\n');
    }));
    EXPECT_TRUE(
        serving.contains("serving a simulated voyage on 127.0.0.1:" + QByteArray::number(port)))
        << serving.toStdString();

    // The port is taken now: a second server says so and fails.
    QProcess second;
    second.start(WAKELINE_TOOL_BINARY, {"sim", "--port", QString::number(port)});
    ASSERT_TRUE(Finished(second, 10000));
    EXPECT_EQ(second.exitCode(), 1);
    EXPECT_TRUE(second.readAllStandardError().contains(
        "cannot serve on 127.0.0.1:" + QByteArray::number(port) + ": "));

    QProcess navigator;
    boat.Start(navigator, {"--link", "127.0.0.1:" + QString::number(port)});
    // 120 simulated seconds at 30 a second: the link closes after 4 s, and the run ends.
    ASSERT_TRUE(Finished(sim, 15000));
    ASSERT_TRUE(Finished(navigator, 15000));
    EXPECT_EQ(sim.exitCode(), 0);
    EXPECT_EQ(navigator.exitCode(), 0);
    EXPECT_TRUE(navigator.readAllStandardError().contains("ending trace function [OK]"));

    // The lines sent are those of the stamped voyage at the same pace (lines at 0, 6, ...,
    // 114 s): the navigation centre joined a moment late, then missed none, up to the last.
    std::vector<std::string> stampedArgs = {"sim", "--stdout"};
    for (const QString& word : pace) {
        stampedArgs.push_back(word.toStdString());
    }
    const ToolRun stamped = RunTool(stampedArgs);
    ASSERT_EQ(stamped.status, 0);
    std::vector<std::string> voyage;
    for (std::size_t at = 0, end; (end = stamped.out.find("\r\n", at)) != std::string::npos;
         at = end + 2) {
        voyage.push_back(stamped.out.substr(at + 21, end - at - 21));
    }
    ASSERT_EQ(voyage.size(), 20u);
    const std::vector<std::string> recorded = RecordedLines(boat, "5");
    ASSERT_GE(recorded.size(), 10u);
    const std::vector<std::string> tail(voyage.end() - static_cast<long>(recorded.size()),
                                        voyage.end());
    EXPECT_EQ(recorded, tail);
}

// The demo's polar file is the boat the simulator sails: the navigation centre's target speed
// of its current sail is the simulated boat's speed all over the table.
TEST(SimVoyage, TheDemoPolarFileHoldsTheSailTheBoatCarries) {
    StdFileSystem files;
    PerformanceTables tables;
    const PolarReadReport report =
        ReadPolarFile(files, WAKELINE_TEST_DATA "/../../demo/WakelinePolar.txt", tables);
    EXPECT_TRUE(report.messages.empty());
    ASSERT_EQ(tables.Polars.Count, 2);
    ASSERT_GE(tables.Polars.Current, 0);
    const PolarTable& sail = tables.Polars.Tables[static_cast<std::size_t>(tables.Polars.Current)];
    EXPECT_EQ(sail.Name, "Genoa");
    for (int tws = 4; tws <= 20; ++tws) {
        for (int twa = 40; twa <= 180; twa += 5) {
            const auto target =
                TargetSpeedAt(static_cast<float>(twa), static_cast<float>(tws), sail);
            ASSERT_TRUE(target.has_value());
            EXPECT_NEAR(*target, SailingSimulator::PolarSpeed(twa, tws), 0.001)
                << twa << " degrees, " << tws << " kt";
        }
    }
}

TEST(SimVoyage, TheSeedDecidesTheLines) {
    const auto lines = [](const char* seed) {
        return RunTool({"sim", "--stdout", "--duration", "600", "--seed", seed}).out;
    };
    const std::string five = lines("5");
    EXPECT_EQ(std::count(five.begin(), five.end(), '\n'), 600);
    EXPECT_EQ(lines("5"), five);
    EXPECT_NE(lines("6"), five);
}

}  // namespace
}  // namespace wakeline::testing
