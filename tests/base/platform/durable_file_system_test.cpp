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
    EXPECT_TRUE(files.AppendDurably(track, "one\r\n"));
    EXPECT_TRUE(files.AppendDurably(track, "two\r\n"));
    EXPECT_EQ(files.ReadFile(track), "one\r\ntwo\r\n");

    const std::string history = base + "/wakeline_wc.bin";
    EXPECT_TRUE(files.ReplaceFile(history, std::string(18020, 'a')));
    EXPECT_TRUE(files.ReplaceFile(history, std::string("\0b", 2)));
    EXPECT_EQ(files.ReadFile(history), std::string("\0b", 2));
    EXPECT_FALSE(std::filesystem::exists(history + ".tmp"));

    const std::string gone = base + "/no/such/dir/file";
    EXPECT_FALSE(files.AppendDurably(gone, "x"));
    EXPECT_FALSE(files.ReplaceFile(gone, "x"));
    EXPECT_FALSE(std::filesystem::exists(gone + ".tmp"));
}

}  // namespace
}  // namespace wakeline
