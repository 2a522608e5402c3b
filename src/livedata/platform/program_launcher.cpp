#include "livedata/platform/program_launcher.h"

#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>
#include <cerrno>

namespace wakeline {

Status ProgramLauncher::StartProgram(const std::string& path) {
    const QString program = QString::fromLocal8Bit(path.data(), qsizetype(path.size()));
    const QFileInfo info(program);
    if (!info.exists()) {
        return Status::FromErrno("start", path, ENOENT);
    }
    QProcess process;
    process.setWorkingDirectory(info.absolutePath());
    if (program.endsWith(QStringLiteral(".exe"), Qt::CaseInsensitive)) {
        const QString wine = QStandardPaths::findExecutable(QStringLiteral("wine"), searchPaths_);
        if (wine.isEmpty()) {
            return Status::Failure(
                "start", path, "wine is not on the PATH, so a Windows program cannot be started");
        }
        process.setProgram(wine);
        process.setArguments({info.absoluteFilePath()});
    } else {
        process.setProgram(info.absoluteFilePath());
    }
    if (!process.startDetached()) {
        return Status::Failure("start", path, process.errorString().toStdString());
    }
    return {};
}

}  // namespace wakeline
