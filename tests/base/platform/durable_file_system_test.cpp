// The durable file writes against a real directory: appends keep order, a replaced file is
// whole, and a missing directory is a reported failure with nothing left behind.

#include "base/platform/durable_file_system.h"

#include <gtest/gtest.h>

#include <QTemporaryDir>
#include <filesystem>

namespace wakeline {
namespace {

TEST(DurableFileSystem, AppendsReplacesAndReportsMissingDirectories) {
    QTemporaryDir dir;
    const std::string base = dir.path().toStdString();
    DurableFileSystem files;

    const std::string track = base + "/20261115.TRT";
    EXPECT_TRUE(files.AppendDurably(track, "one\r\n").Ok());
    EXPECT_TRUE(files.AppendDurably(track, "two\r\n").Ok());
    EXPECT_EQ(files.ReadFile(track).Optional(), "one\r\ntwo\r\n");

    const std::string history = base + "/wakeline_wc.bin";
    EXPECT_TRUE(files.ReplaceFile(history, std::string(18020, 'a')).Ok());
    EXPECT_TRUE(files.ReplaceFile(history, std::string("\0b", 2)).Ok());
    EXPECT_EQ(files.ReadFile(history).Optional(), std::string("\0b", 2));
    EXPECT_FALSE(std::filesystem::exists(history + ".tmp"));

    const std::string gone = base + "/no/such/dir/file";
    EXPECT_EQ(files.AppendDurably(gone, "x").Message(),
              "could not open " + gone + ": No such file or directory");
    EXPECT_EQ(files.ReplaceFile(gone, "x").Message(),
              "could not open " + gone + ".tmp: No such file or directory");
    EXPECT_FALSE(std::filesystem::exists(gone + ".tmp"));
}

}  // namespace
}  // namespace wakeline
