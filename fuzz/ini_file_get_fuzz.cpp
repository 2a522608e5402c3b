// Reads arbitrary bytes as the chart plotter's settings file. Half the inputs get the
// "[Program Setup]" section line in front, so the keys and values of the rest are reached as
// well as the section rules. Nothing may crash, and the values keep their types' rules: a
// threshold that is read is a finite number.

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <optional>
#include <string>
#include <string_view>

#include "base/clock.h"
#include "base/diagnostic_log.h"
#include "base/file_system.h"
#include "base/user_dialogs.h"
#include "require.h"
#include "shell/configuration.h"

using wakeline::fuzz::Require;

namespace {

using namespace wakeline;

// One file, held in memory; writes go nowhere.
class OneFile : public FileSystem {
  public:
    explicit OneFile(std::string bytes) : bytes_(std::move(bytes)) {}
    bool FileExists(const std::string&) const override { return true; }
    bool DirectoryExists(const std::string&) const override { return false; }
    Result<std::string> ReadFile(const std::string&) const override { return bytes_; }
    Status AppendToFile(const std::string&, std::string_view) override { return {}; }
    Status WriteFile(const std::string&, std::string_view) override { return {}; }

  private:
    std::string bytes_;
};

class FixedClock : public Clock {
  public:
    CalendarFields UtcNow() const override { return {2026, 6, 1, 12, 0, 0}; }
    CalendarDate LocalDateAt(DateTime) const override { return {2026, 6, 1}; }
};

class NoDialogs : public UserDialogs {
  public:
    void ShowMessage(const std::string&) override {}
    bool AskOkCancel(const std::string&) override { return false; }
    std::optional<std::string> AskText(const std::string&, const std::string&) override {
        return std::nullopt;
    }
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 1) {
        return 0;
    }
    std::string bytes((data[0] & 1) != 0 ? "[Program Setup]\r\n" : "");
    bytes.append(reinterpret_cast<const char*>(data + 1), size - 1);
    OneFile files(std::move(bytes));
    FixedClock system;
    ProgramClock clock(system);
    NoDialogs dialogs;
    DiagnosticLog log(clock, files, dialogs, "WakelineDebug.txt");
    log.SetMode(kDebugLogFile);
    ChartPlotterSettings settings;
    IniFileGet("SeaClear_2.ini", files, log, settings);
    Require(std::isfinite(settings.TrackTime));
    Require(std::isfinite(settings.TrackDistance));
    Require(std::isfinite(settings.TrackCompDev));
    return 0;
}
