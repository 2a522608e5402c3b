#pragma once
// A boat computer for running the real `wakeline` program in a test: a temporary directory with
// the chart plotter's settings file, a traces directory beside it, the per-user settings and the
// state directory, and the program started headless on it.

#include <QDir>
#include <QProcess>
#include <QStringList>
#include <QTemporaryDir>
#include <fstream>
#include <map>
#include <sstream>
#include <string>

namespace wakeline::testing {

inline std::string ReadFileBytes(const QString& path) {
    std::ifstream in(path.toStdString(), std::ios::binary);
    std::stringstream bytes;
    bytes << in.rdbuf();
    return bytes.str();
}

class Boat {
  public:
    // `setupLines`: the [Program Setup] lines of SeaClear_2.ini, each ended with CR LF here.
    explicit Boat(const QStringList& setupLines, bool logData = true) {
        QDir(dir_.path()).mkpath("traces");
        QDir(dir_.path()).mkpath("config/Wakeline");
        std::string ini = "[Program Setup]\r\n";
        for (const QString& line : setupLines) {
            ini += line.toStdString() + "\r\n";
        }
        std::ofstream(IniPath().toStdString(), std::ios::binary) << ini;
        std::ofstream(dir_.filePath("config/Wakeline/Wakeline.conf").toStdString())
            << "[Settings]\nSetLogData=" << (logData ? "True" : "False") << "\n";
    }

    QString IniPath() const { return dir_.filePath("SeaClear_2.ini"); }
    QString TracesPath() const { return dir_.filePath("traces"); }
    QString LogPath() const { return dir_.filePath("WakelineDebug.txt"); }

    // Every file of the traces directory by name, with its bytes.
    std::map<std::string, std::string> Traces() const {
        std::map<std::string, std::string> files;
        for (const QString& name : QDir(TracesPath()).entryList(QDir::Files)) {
            files[name.toStdString()] = ReadFileBytes(QDir(TracesPath()).filePath(name));
        }
        return files;
    }

    // Starts `wakeline --headless` with `options` before the command line (the settings file
    // path and `commandTail`), in the time zone `tz`; the diagnostic log is on (mode F).
    void Start(QProcess& process, const QStringList& options, const QString& tz = "UTC",
               const QString& commandTail = ",,,F") const {
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert("XDG_CONFIG_HOME", dir_.filePath("config"));
        env.insert("XDG_STATE_HOME", dir_.filePath("state"));
        env.insert("TZ", tz);
        process.setProcessEnvironment(env);
        process.setWorkingDirectory(dir_.path());
        QStringList args{"--headless", "--log", LogPath()};
        args << options << IniPath() + commandTail;
        process.start(WAKELINE_BINARY, args);
    }

  private:
    QTemporaryDir dir_;
};

}  // namespace wakeline::testing
