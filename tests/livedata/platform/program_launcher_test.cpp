#include "livedata/platform/program_launcher.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include "livedata/platform/event_loop_wait.h"

namespace wakeline {
namespace {

// Writes an executable shell script that records its directory and arguments in `record`.
void WriteRecordingScript(const QString& path, const QString& record) {
    QFile script(path);
    ASSERT_TRUE(script.open(QIODevice::WriteOnly));
    script.write(("#!/bin/sh\necho \"$(pwd) $*\" > '" + record + "'\n").toLocal8Bit());
    script.close();
    script.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
}

QString ReadWhenWritten(const QString& path) {
    QFile file(path);
    testing::WaitUntil([&] { return file.exists() && file.size() > 0; }, 10000);
    if (!file.open(QIODevice::ReadOnly)) {
        return {};
    }
    return QString::fromLocal8Bit(file.readAll()).trimmed();
}

TEST(ProgramLauncherTest, WindowsProgramsGoThroughWineOthersStartAsTheyAre) {
    testing::EnsureCoreApplication();
    QTemporaryDir root;
    ASSERT_TRUE(root.isValid());
    const QString bin = root.filePath("bin");
    const QString seaclear = root.filePath("seaclear");
    ASSERT_TRUE(QDir().mkpath(bin) && QDir().mkpath(seaclear) &&
                QDir().mkpath(root.filePath("empty")));
    WriteRecordingScript(bin + "/wine", root.filePath("wine.txt"));
    const QString exe = seaclear + "/SeaClear_2.EXE";
    QFile(exe).open(QIODevice::WriteOnly);

    // Through wine, in the program's own directory, whatever the case of ".exe".
    ProgramLauncher withWine({bin});
    EXPECT_TRUE(withWine.StartProgram(exe.toStdString()).Ok());
    EXPECT_EQ(ReadWhenWritten(root.filePath("wine.txt")), seaclear + " " + exe);

    ProgramLauncher withoutWine({root.filePath("empty")});
    EXPECT_EQ(withoutWine.StartProgram(exe.toStdString()).Reason(),
              "wine is not on the PATH, so a Windows program cannot be started");
    EXPECT_EQ(withoutWine.StartProgram(root.filePath("none.exe").toStdString()).Reason(),
              "No such file or directory");

    // A native program needs no wine.
    const QString native = seaclear + "/seaclear.sh";
    WriteRecordingScript(native, root.filePath("native.txt"));
    EXPECT_TRUE(withoutWine.StartProgram(native.toStdString()).Ok());
    // A file that may not be run: the system's own reason (EACCES), in Qt's words around it.
    QFile(seaclear + "/notes.txt").open(QIODevice::WriteOnly);
    EXPECT_NE(withoutWine.StartProgram((seaclear + "/notes.txt").toStdString())
                  .Reason()
                  .find("Permission denied"),
              std::string::npos);
    EXPECT_EQ(ReadWhenWritten(root.filePath("native.txt")), seaclear);
}

}  // namespace
}  // namespace wakeline
