// How long a settings file of 100,000 lines takes to read: a start-up must not stall on a
// settings file that has grown or been replaced by something else.
#include <benchmark/benchmark.h>

#include <string>

#include "shell/configuration.h"

namespace {

class OneFile : public wakeline::FileSystem {
  public:
    explicit OneFile(std::string text) : text_(std::move(text)) {}
    bool FileExists(const std::string&) const override { return true; }
    bool DirectoryExists(const std::string&) const override { return true; }
    wakeline::Result<std::string> ReadFile(const std::string&) const override { return text_; }
    wakeline::Status AppendToFile(const std::string&, std::string_view) override { return {}; }
    wakeline::Status WriteFile(const std::string&, std::string_view) override { return {}; }

  private:
    std::string text_;
};

class NoClock : public wakeline::Clock {
  public:
    wakeline::CalendarFields UtcNow() const override { return {}; }
    wakeline::CalendarDate LocalDateAt(wakeline::DateTime) const override { return {}; }
};

class NoDialogs : public wakeline::UserDialogs {
  public:
    void ShowMessage(const std::string&) override {}
    bool AskOkCancel(const std::string&) override { return true; }
    std::optional<std::string> AskText(const std::string&, const std::string&) override {
        return std::nullopt;
    }
};

void BM_IniFileGet100000Lines(benchmark::State& state) {
    std::string text = "[Program Setup]\r\n";
    for (int i = 0; i < 100000; ++i) {
        text += "Track Time=" + std::to_string(i) + "\r\n";
    }
    OneFile files(text);
    NoClock system;
    wakeline::ProgramClock clock(system);
    NoDialogs dialogs;
    wakeline::DiagnosticLog log(clock, files, dialogs, "/log");
    for (auto _ : state) {
        wakeline::ChartPlotterSettings settings;
        wakeline::IniFileGet("/SeaClear_2.ini", files, log, settings);
        benchmark::DoNotOptimize(settings.TrackTime);
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
}
BENCHMARK(BM_IniFileGet100000Lines)->Unit(benchmark::kMillisecond);

}  // namespace
