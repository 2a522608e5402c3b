#include "shell/configuration.h"

#include <cmath>
#include <optional>
#include <string_view>

#include "base/ascii_case.h"
#include "base/line_reader.h"
#include "base/text_number.h"

namespace wakeline {
namespace {

constexpr std::string_view kSection = "[Program Setup]";
// The name Windows gave the file; both cuts below count its characters, "/" included or not.
constexpr std::string_view kIniName = "SEACLEAR_2.INI";
constexpr std::string_view kIniNameWithSlash = "/seaclear_2.ini";
constexpr std::string_view kExeName = "/SeaClear_2.exe";
constexpr std::string_view kLineEnd = "\r\n";

bool EndsWith(std::string_view text, std::string_view end) {
    return text.size() >= end.size() && text.substr(text.size() - end.size()) == end;
}

void SetThreshold(std::string_view name, std::string_view value, DiagnosticLog& log,
                  float& threshold) {
    const auto number = static_cast<float>(LeadingNumber(value));
    if (!std::isfinite(number)) {
        log.DebugWriteLine("IniFileGet " + std::string(name) +
                           " is no usable number, kept: " + std::string(value));
        return;
    }
    threshold = number;
}

}  // namespace

void IniFileGet(const std::string& path, const FileSystem& files, DiagnosticLog& log,
                ChartPlotterSettings& settings) {
    const Result<std::string> text = files.ReadFile(path);
    if (!text.Ok()) {
        log.DebugWriteLine("IniFileGet cannot read " + path + ": " + text.GetStatus().Reason());
        return;
    }
    std::string section;
    for (const std::string& line : SplitLines(text.Value())) {
        if (!line.empty() && line[0] == '[') {
            section = line;
            continue;
        }
        const std::size_t equals = line.find('=');
        if (equals == std::string::npos) {
            continue;
        }
        // Keys and sections are compared exactly as written, spaces and case included, the way
        // the chart plotter itself reads them: "DDE = 1" is not the DDE key.
        if (section != kSection) {
            continue;
        }
        const std::string_view name = std::string_view(line).substr(0, equals);
        const std::size_t secondEquals = line.find('=', equals + 1);
        const std::string_view value = std::string_view(line).substr(
            equals + 1,
            secondEquals == std::string::npos ? std::string::npos : secondEquals - equals - 1);
        if (name == "DDE") {
            if (const std::optional<std::int16_t> dde = WholeNumber16(value)) {
                settings.Dde = *dde;
            } else {
                log.DebugWriteLine("IniFileGet DDE does not fit, kept: " + std::string(value));
            }
        } else if (name == "Track Time") {
            SetThreshold(name, value, log, settings.TrackTime);
        } else if (name == "Track Distance") {
            SetThreshold(name, value, log, settings.TrackDistance);
        } else if (name == "Track CompDev") {
            SetThreshold(name, value, log, settings.TrackCompDev);
        } else if (name == "Track Dir") {
            settings.TrackDir = std::string(value);
        } else if (name == "SeaClear Dir") {
            settings.SeaClearDir = std::string(value);
        }
    }
}

bool DetermineFiles(const DetermineFilesInput& input, const FileSystem& files, UserDialogs& dialogs,
                    DiagnosticLog& log, ProgramFiles& out) {
    log.DebugWriteLine("DetermineFiles starts");
    out = ProgramFiles{};

    const bool hasCommandLine = !input.commandLine.empty();
    const std::string field0 = input.commandLine.substr(0, input.commandLine.find(','));
    out.IniPath = field0;

    if (out.IniPath.empty()) {
        out.IniPath = input.programDir + "/" + std::string(kIniName);
        // A build tree carries its settings beside the program; an installed program in
        // /usr/bin cannot, so it takes the user's file, which `wakeline-tool init` writes.
        if (!files.FileExists(out.IniPath) && !input.userIniPath.empty()) {
            out.IniPath = input.userIniPath;
        }
        if (!files.FileExists(out.IniPath)) {
            dialogs.ShowMessage("Seaclear ini file cannot be found: " + std::string(kLineEnd) +
                                std::string(kLineEnd) + out.IniPath);
            out.IniPath.clear();
        }
    } else if (!files.FileExists(out.IniPath)) {
        dialogs.ShowMessage("ini file in command line does not exist: " + std::string(kLineEnd) +
                            std::string(kLineEnd) + out.IniPath);
        out.IniPath.clear();
    }

    if (out.IniPath.empty()) {
        dialogs.ShowMessage("Cannot start, no seaclear inifile found:" + std::string(kLineEnd) +
                            out.IniPath);
        return false;
    }
    IniFileGet(out.IniPath, files, log, out.Ini);
    log.DebugWriteLine("DetermineFiles Inifile selected: " + out.IniPath);

    // Without a "Track Dir" the tracks go to "traces" beside the settings file. The cut counts
    // characters and does not look at the name, so a settings file of another name loses part
    // of its directory: kept, as the chart plotter's users know it.
    out.TrackDir = out.Ini.TrackDir;
    if (out.TrackDir.empty()) {
        const std::size_t keep =
            out.IniPath.size() > kIniName.size() ? out.IniPath.size() - kIniName.size() : 0;
        out.TrackDir = out.IniPath.substr(0, keep) + "traces";
    }
    if (!files.DirectoryExists(out.TrackDir)) {
        dialogs.ShowMessage("Directory for tracking does not exist, no trackingfile created" +
                            std::string(kLineEnd) + std::string(kLineEnd) + out.TrackDir);
        out.TrackDir.clear();
    }
    log.DebugWriteLine("DetermineFiles Trackfile selected: " + out.TrackDir);

    out.SeaClearDir = out.Ini.SeaClearDir;
    if (!out.SeaClearDir.empty()) {
        const std::string exe = out.SeaClearDir + std::string(kExeName);
        if (files.FileExists(exe)) {
            out.SeaClearExe = exe;
        } else {
            dialogs.ShowMessage(
                "SeaClear_2.exe not found in  directory specified in Wakeplot "
                ".inifile" +
                std::string(kLineEnd) + out.IniPath + std::string(kLineEnd) + out.SeaClearDir);
        }
    } else {
        if (!hasCommandLine) {
            out.SeaClearDir = input.programDir;
        } else {
            // The chart plotter's program is looked for beside the settings file named on the
            // command line, then beside this program.
            if (EndsWith(LowerCase(field0), kIniNameWithSlash)) {
                out.SeaClearDir =
                    input.commandLine.substr(0, field0.size() - kIniNameWithSlash.size());
            }
            if (!files.FileExists(out.SeaClearDir + std::string(kExeName))) {
                out.SeaClearDir = input.programDir;
            }
        }
        const std::string exe = out.SeaClearDir + std::string(kExeName);
        if (files.FileExists(exe)) {
            out.SeaClearExe = exe;
        } else if (!hasCommandLine) {
            dialogs.ShowMessage("SeaClear_2.exe not found in Wakeplot directory" +
                                std::string(kLineEnd) + out.IniPath + std::string(kLineEnd) +
                                out.SeaClearDir);
        }
    }
    log.DebugWriteLine("DetermineFiles SeaClear file: " + out.SeaClearExe);
    return true;
}

}  // namespace wakeline
