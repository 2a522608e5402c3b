// The per-line cost of the track writer and the wind history work done on each track record.

#include <benchmark/benchmark.h>

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <string>

#include "base/clock.h"
#include "base/diagnostic_log.h"
#include "base/file_system.h"
#include "base/user_dialogs.h"
#include "track/track_writer.h"
#include "wind/wind_data.h"
#include "wind/wind_file.h"

namespace wakeline {
namespace {

class StillClock : public Clock {
  public:
    CalendarFields UtcNow() const override { return {2026, 11, 15, 12, 0, 0}; }
    CalendarDate LocalDateAt(DateTime) const override { return {2026, 11, 15}; }
};

class NoFiles : public FileSystem {
  public:
    bool FileExists(const std::string&) const override { return false; }
    bool DirectoryExists(const std::string&) const override { return false; }
    wakeline::Result<std::string> ReadFile(const std::string&) const override {
        return wakeline::Status::FromErrno("open", "", ENOENT);
    }
    wakeline::Status AppendToFile(const std::string&, std::string_view) override { return {}; }
    wakeline::Status WriteFile(const std::string&, std::string_view) override { return {}; }
};

class NoDialogs : public UserDialogs {
  public:
    void ShowMessage(const std::string&) override {}
    bool AskOkCancel(const std::string&) override { return true; }
    std::optional<std::string> AskText(const std::string&, const std::string&) override {
        return {};
    }
};

WindData FullBuffer() {
    WindData data;
    for (int k = 0; k < kWindCapacity; ++k) {
        AddWindObservation(data, 10.0f + k % 7, 350.0f + k % 20, 46341.5 + k / 86400.0, 1);
    }
    return data;
}

// A data line that meets no threshold: the position, course and distance work of every line.
void BM_TraceWriteLineDecision(benchmark::State& state) {
    StillClock system;
    ProgramClock clock(system);
    NoFiles files;
    NoDialogs dialogs;
    DiagnosticLog log(clock, files, dialogs, "");
    WindData history;
    WindData samples;
    TrackSettings settings;
    settings.TrackDir = "/boat/track";
    settings.TrackDistance = 1.0e7f;
    settings.TrackCompDev = 360.0f;
    TrackWriter writer(settings, clock, files, log, dialogs, history, samples);
    const std::string line =
        "52.5012,-4.2519,6.2,0.52,3.1,12.5,0.8,5.1,1.2,7.3,2.3,0.1,4.4,,,6.0,1.0,WP1,0.2,"
        "0.3,0.4,0.5,0.6\r\n";
    for (auto _ : state) {
        writer.TraceWriteLine(line, false, " 123");
    }
    benchmark::DoNotOptimize(writer.PendingCount());
}
BENCHMARK(BM_TraceWriteLineDecision);

void BM_AddWindObservationFull(benchmark::State& state) {
    WindData data = FullBuffer();
    double time = 46342.0;
    for (auto _ : state) {
        AddWindObservation(data, 12.0f, 5.0f, time, 1);
        time += 1.0 / 86400.0;
    }
    benchmark::DoNotOptimize(data.Obs[1000]);
}
BENCHMARK(BM_AddWindObservationFull);

void BM_AverageWindFull(benchmark::State& state) {
    const WindData data = FullBuffer();
    for (auto _ : state) {
        float reference = kNoReference;
        benchmark::DoNotOptimize(AverageWind(data, 0, reference));
    }
}
BENCHMARK(BM_AverageWindFull);

void BM_EncodeWindData(benchmark::State& state) {
    const WindData data = FullBuffer();
    for (auto _ : state) {
        benchmark::DoNotOptimize(EncodeWindData(data));
    }
}
BENCHMARK(BM_EncodeWindData);

// The crash journal's cost per record: one plain append (open, write, close; no fdatasync) of a
// record of 170 bytes to a real file in the temporary directory, as every kept record costs.
// Every 60 appends the file is emptied, as a flush does, outside the timing.
void BM_JournalAppendRealFile(benchmark::State& state) {
    StdFileSystem files;
    const std::string path =
        (std::filesystem::temp_directory_path() / "wakeline_bench_pending.txt").string();
    const std::string record =
        "20261115 12:00:00 CZ,52.5012,-4.2519,6.2,0.52,3.1,12.5,0.8,5.1,1.2,7.3,2.3,0.1,4.4,,,"
        "6.0,1.0,WP1,0.2,0.3,0.4,0.5,0.6,,,,,,,,,,,,,,,,,,,,,,,,,,,,,,,,,,,,,,,\r\n";
    int kept = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(files.AppendToFile(path, record).Ok());
        if (++kept == 60) {
            state.PauseTiming();
            (void)files.WriteFile(path, "");
            kept = 0;
            state.ResumeTiming();
        }
    }
    std::remove(path.c_str());
}
BENCHMARK(BM_JournalAppendRealFile);

// The flush's share: emptying the journal (open with truncation, close).
void BM_JournalEmptyRealFile(benchmark::State& state) {
    StdFileSystem files;
    const std::string path =
        (std::filesystem::temp_directory_path() / "wakeline_bench_pending.txt").string();
    for (auto _ : state) {
        benchmark::DoNotOptimize(files.WriteFile(path, "").Ok());
    }
    std::remove(path.c_str());
}
BENCHMARK(BM_JournalEmptyRealFile);

}  // namespace
}  // namespace wakeline
