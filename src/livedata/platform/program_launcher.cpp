#include "livedata/platform/program_launcher.h"

#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>

namespace wakeline {

std::string ProgramLauncher::StartProgram(const std::string& path) {
    const QString program = QString::fromLocal8Bit(path.data(), qsizetype(path.size()));
    const QFileInfo info(program);
    if (!info.exists()) {
        return "the file does not exist";
    }
    const QString directory = info.absolutePath();
    bool started = false;
    if (program.endsWith(QStringLiteral(".exe"), Qt::CaseInsensitive)) {
        const QString wine = QStandardPaths::findExecutable(QStringLiteral("wine"), searchPaths_);
        if (wine.isEmpty()) {
            return "wine is not on the PATH, so a Windows program cannot be started";
        }
        started = QProcess::startDetached(wine, {info.absoluteFilePath()}, directory);
    } else {
        started = QProcess::startDetached(info.absoluteFilePath(), {}, directory);
    }
    return started ? std::string() : "the program could not be started";
}

}  // namespace wakeline
