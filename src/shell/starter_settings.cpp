#include "shell/starter_settings.h"

#include <string_view>

namespace wakeline {
namespace {

constexpr const char* kSettingsName = "SeaClear_2.ini";

bool Usable(const std::string& base) {
    return !base.empty() && base.front() == '/';
}

// Joins with one "/" whatever `dir` ends with, so "DIR/" and "/" give clean paths.
std::string Join(std::string dir, const std::string& name) {
    while (dir.size() > 1 && dir.back() == '/') {
        dir.pop_back();
    }
    return dir == "/" ? dir + name : dir + "/" + name;
}

// A path as a shell takes it: quoted when it holds anything but the harmless characters.
std::string ShellWord(const std::string& path) {
    for (const char c : path) {
        const bool plain = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') ||
                           (c >= '0' && c <= '9') ||
                           std::string_view("/._-+,:@%").find(c) != std::string_view::npos;
        if (!plain) {
            std::string quoted = "'";
            for (const char q : path) {
                quoted += q == '\'' ? std::string("'\\''") : std::string(1, q);
            }
            return quoted + "'";
        }
    }
    return path;
}

// Every comment line starts with ";": the settings reader makes a key of the text before a
// line's first "=", which then starts with ";" and matches none of the six names, and a line
// that starts with "[" would change the section, so none of these does.
constexpr const char* kHead =
    "; Wakeline's settings, in the form of the chart plotter SeaClear's own\n"
    "; SeaClear_2.ini. Written by wakeline-tool init; Wakeline only reads it.\n"
    ";\n"
    "; Each setting is one line: its name, the equals sign and the value, with no\n"
    "; blank on either side of the sign, the name spelt exactly as below. Lines\n"
    "; starting with a semicolon are notes for you. The settings count only below\n"
    "; the section line [Program Setup], alone on its line as it is here.\n"
    ";\n"
    "; Running SeaClear under wine? Start Wakeline with SeaClear's own file instead\n"
    "; (wakeline ~/.wine/drive_c/SeaClear/SeaClear_2.ini) and copy the DDE and\n"
    "; Track lines below into its [Program Setup] section.\n"
    "\n"
    "[Program Setup]\n"
    "\n"
    "; DDE: 1 switches the chart plotter's link on. Wakeline then takes its data\n"
    "; from the chart plotter, or a bridge to it, that sends one data line per\n"
    "; change to 127.0.0.1 port 20175 (wakeline --link HOST:PORT for another).\n"
    "; 0 or no DDE line: no link and no battery check, and a message says so.\n"
    "; Started with SB or SC (a SeaTalk bus) Wakeline does not use the link.\n"
    "DDE=1\n"
    "\n"
    "; The track: a record of every data line that passes one of the three\n"
    "; thresholds below since the last record. 0 switches a threshold off; with\n"
    "; all three 0 nothing is recorded. The records are written to the disk every\n"
    "; 900 seconds (the third field of the command line), after 60 records, and\n"
    "; when Wakeline is closed.\n"
    ";\n"
    "; Track Time: seconds since the last record.\n"
    "Track Time=60\n"
    "\n"
    "; Track Distance: metres sailed since the last record (great-circle distance\n"
    "; between the GPS positions).\n"
    "Track Distance=100\n"
    "\n"
    "; Track CompDev: degrees of change in the course over ground since the last\n"
    "; record. A plain difference: turning through north from 355 to 5 degrees\n"
    "; counts as 350.\n"
    "Track CompDev=15\n"
    "\n"
    "; Track Dir: where the track files (YYYYMMDD.TRT, one a day), the wind\n"
    "; history (wakeline_wc.bin) and the polar tables (WakelinePolar.txt) are\n"
    "; kept. The directory must exist, else nothing is recorded and a message\n"
    "; says so. Empty: the directory traces beside this file.\n";

constexpr const char* kTail =
    "\n"
    "; SeaClear Dir: the directory of the chart plotter's program SeaClear_2.exe,\n"
    "; which Wakeline starts once (through wine) when nothing answers on the link.\n"
    "; Empty: looked for beside this file, then beside the wakeline program; when\n"
    "; it is not found, a start without a command line says so once.\n"
    "SeaClear Dir=\n";

}  // namespace

std::string UserSettingsPath(const UserHomes& homes) {
    if (Usable(homes.configHome)) {
        return Join(Join(homes.configHome, "Wakeline"), kSettingsName);
    }
    if (Usable(homes.home)) {
        return Join(Join(homes.home, ".config/Wakeline"), kSettingsName);
    }
    return "";
}

Result<StarterPlace> ChooseStarterPlace(const std::optional<std::string>& dir,
                                        const UserHomes& homes, const std::string& currentDir) {
    StarterPlace place;
    if (dir.has_value()) {
        const std::string base =
            !dir->empty() && dir->front() == '/' ? *dir : Join(currentDir, *dir);
        place.settingsPath = Join(base, kSettingsName);
        place.trackDir = Join(base, "traces");
        return place;
    }
    place.userDefault = true;
    place.settingsPath = UserSettingsPath(homes);
    if (Usable(homes.dataHome)) {
        place.trackDir = Join(Join(homes.dataHome, "wakeline"), "traces");
    } else if (Usable(homes.home)) {
        place.trackDir = Join(homes.home, ".local/share/wakeline/traces");
    }
    if (place.settingsPath.empty() || place.trackDir.empty()) {
        return Status::Failure("find", "the home directory",
                               "HOME is not set to an absolute path; name a DIR");
    }
    return place;
}

std::string StarterSettingsText(const std::string& trackDir) {
    return std::string(kHead) + "Track Dir=" + trackDir + "\n" + kTail;
}

std::string StarterReport(const StarterPlace& place) {
    // An empty first field of the command line means the user's own file.
    const std::string settings = place.userDefault ? "" : ShellWord(place.settingsPath);
    std::string report = "wrote " + place.settingsPath + "\n" +
                         "track directory: " + place.trackDir + "\n\nNext:\n" +
                         "  - read the settings file: each setting is explained in it\n";
    if (place.userDefault) {
        report +=
            "  - start the navigation centre: wakeline (or Wakeline in the desktop menu)\n"
            "  - or record the voyage without a window, now and at every login:\n"
            "      systemctl --user enable --now wakeline-logger.service\n";
    } else {
        report += "  - start the navigation centre: wakeline " + settings + "\n";
    }
    report +=
        "  - have the chart plotter send its data lines to 127.0.0.1:20175, one per\n"
        "    line, or listen to a SeaTalk bus on a serial port:\n"
        "      wakeline --serial /dev/ttyUSB0 " +
        settings + ",SC\n" + "  - man wakeline and its Help button tell the rest\n";
    return report;
}

}  // namespace wakeline
