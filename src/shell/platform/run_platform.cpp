#include "shell/platform/run_platform.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <cstdlib>

#include "base/file_system.h"
#include "shell/navigation_centre.h"
#include "wakeline_version.h"

namespace wakeline {

MachineParts::MachineParts(const ProgramOptions& options)
    : battery(options.powerSupply), sound(ChimePath(ThisProgram())) {}

void MachineParts::ReportBatteryFailuresTo(NavigationCentre& centre) {
    battery.SetFailureReport([&centre](const Status& failure) {
        centre.DebugWriteLine("Battery: " + failure.Message());
    });
}

void MachineParts::WatchSleepFor(NavigationCentre& centre) {
    const Status watching =
        sleep.Watch([&centre](bool starting) { centre.PrepareForSleep(starting); });
    if (!watching.Ok()) {
        centre.DebugWriteLine(
            "Suspend not watched, the track is flushed only on its own "
            "schedule: " +
            watching.Message());
    }
}

std::string ChimePath(const ProgramInfo& program) {
    const std::string beside = program.programDir + "/chime.wav";
    if (QFileInfo::exists(QString::fromStdString(beside)) || program.dataDir.empty()) {
        return beside;
    }
    return program.dataDir + "/chime.wav";
}

bool HasDisplay() {
    for (const char* name : {"WAYLAND_DISPLAY", "DISPLAY", "QT_QPA_PLATFORM"}) {
        const char* value = std::getenv(name);
        if (value != nullptr && value[0] != '\0') {
            return true;
        }
    }
    return false;
}

ProgramInfo ThisProgram() {
    ProgramInfo program;
    program.title = WAKELINE_TITLE;
    program.major = WAKELINE_VERSION_MAJOR;
    program.minor = WAKELINE_VERSION_MINOR;
    program.revision = WAKELINE_VERSION_PATCH;
    program.programDir = QCoreApplication::applicationDirPath().toStdString();
    program.programName =
        QFileInfo(QCoreApplication::applicationFilePath()).fileName().toStdString();
    program.dataDir = WAKELINE_DATA_DIR;
    program.homepage = WAKELINE_HOMEPAGE;
    program.userIniPath = UserSettingsPath(UserHomesFromEnvironment());
    return program;
}

UserHomes UserHomesFromEnvironment() {
    const auto value = [](const char* name) {
        const char* text = std::getenv(name);
        return std::string(text != nullptr ? text : "");
    };
    return {value("XDG_CONFIG_HOME"), value("XDG_DATA_HOME"), value("HOME")};
}

std::string StateDirectory() {
    const char* state = std::getenv("XDG_STATE_HOME");
    std::string base;
    if (state != nullptr && state[0] == '/') {
        base = state;
    } else {
        const char* home = std::getenv("HOME");
        base = std::string(home != nullptr ? home : ".") + "/.local/state";
    }
    return base + "/wakeline";
}

std::string PrepareLogPath(const std::optional<std::string>& given) {
    const std::string path = given.value_or(StateDirectory() + "/WakelineDebug.txt");
    // Made up front; whether anything is written is the command line's choice. A directory
    // that cannot be made only costs the log lines.
    QDir().mkpath(QFileInfo(QString::fromStdString(path)).absolutePath());
    return path;
}

void SaveUnsaved(const CloseOutcome& outcome, FileSystem& files, NavigationCentre& centre) {
    const std::string dir = StateDirectory();
    QDir().mkpath(QString::fromStdString(dir));
    const std::string path =
        dir + "/unsaved-" + QDateTime::currentDateTime().toString("yyyyMMdd-HHmmss").toStdString() +
        ".TRT";
    const std::string count = std::to_string(outcome.unsavedRecords);
    const Status saved = files.AppendDurably(path, outcome.unsavedText);
    if (saved.Ok()) {
        centre.ShowMessage("The track file cannot be written: " + count +
                           " records were saved to " + path + " instead.");
    } else {
        centre.ShowMessage("The track file cannot be written, and " + count +
                           " records are lost: " + saved.Message());
    }
}

}  // namespace wakeline
