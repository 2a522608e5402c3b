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
#include <vector>

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
    // $XDG_STATE_HOME/wakeline of the run.
    QString StatePath() const { return dir_.filePath("state/wakeline"); }

    // Every file of the traces directory by name, with its bytes.
    std::map<std::string, std::string> Traces() const {
        std::map<std::string, std::string> files;
        for (const QString& name : QDir(TracesPath()).entryList(QDir::Files)) {
            files[name.toStdString()] = ReadFileBytes(QDir(TracesPath()).filePath(name));
        }
        return files;
    }

    // Starts `wakeline --headless` with `options` before the command line (the settings file
    // path and `commandTail`), in the time zone `tz`; the diagnostic log is on (mode F). With
    // `window`, the run has its window instead, on Qt's offscreen platform.
    void Start(QProcess& process, const QStringList& options, const QString& tz = "UTC",
               const QString& commandTail = ",,,F", bool window = false) const {
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert("XDG_CONFIG_HOME", dir_.filePath("config"));
        env.insert("XDG_STATE_HOME", dir_.filePath("state"));
        env.insert("TZ", tz);
        if (window) {
            env.insert("QT_QPA_PLATFORM", "offscreen");
        }
        process.setProcessEnvironment(env);
        process.setWorkingDirectory(dir_.path());
        QStringList args{"--log", LogPath()};
        if (!window) {
            args.prepend("--headless");
        }
        args << options << IniPath() + commandTail;
        process.start(WAKELINE_BINARY, args);
    }

  private:
    QTemporaryDir dir_;
};

// A data line at latitude 55 + index / 10000 degrees (some 11 metres apart) with course over
// ground `cog` radians, without line end.
inline std::string DataLine(int index, const std::string& name = "",
                            const std::string& cog = "3.4152") {
    std::string fraction = std::to_string(index % 10000);
    fraction.insert(0, 4 - fraction.size(), '0');
    return std::to_string(55 + index / 10000) + "." + fraction + ",7.0,5.64," + cog +
           ",3.4501,-0.0349,16.3,0.7330,0.5242,4.2182,7.08,9.46,4.23,3.5200,5.70,"
           ",,,,,,," +
           name;
}

// Every data line the program handled (the log's "lblDDE_LinkNotify " lines) that starts with
// `prefix`, in order, without the CR LF that the link adds (one space in the log, whose
// records are one line each).
inline std::vector<std::string> HandledLines(const std::string& log, const std::string& prefix) {
    std::vector<std::string> lines;
    const std::string mark = "lblDDE_LinkNotify " + prefix;
    for (std::size_t at = log.find(mark); at != std::string::npos; at = log.find(mark, at)) {
        at += mark.size() - prefix.size();
        std::string line = log.substr(at, log.find("\r\n", at) - at);
        if (line.ends_with(' ')) {
            line.pop_back();
        }
        lines.push_back(std::move(line));
    }
    return lines;
}

// Every track record of the traces directory, stamp and data line, in file order.
inline std::vector<std::string> TrackRecords(const Boat& boat) {
    std::vector<std::string> records;
    for (const auto& [name, bytes] : boat.Traces()) {
        for (std::size_t at = 0, end;
             name.ends_with(".TRT") && (end = bytes.find("\r\n", at)) != std::string::npos;
             at = end + 2) {
            records.push_back(bytes.substr(at, end - at));
        }
    }
    return records;
}

// The track records whose data lines start with `prefix`, in file order, without their stamps.
inline std::vector<std::string> RecordedLines(const Boat& boat, const std::string& prefix) {
    std::vector<std::string> lines;
    for (const std::string& record : TrackRecords(boat)) {
        if (record.size() > 21 && record.compare(21, prefix.size(), prefix) == 0) {
            lines.push_back(record.substr(21));
        }
    }
    return lines;
}

}  // namespace wakeline::testing
