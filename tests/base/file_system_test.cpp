#include "base/file_system.h"

#include <unistd.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

namespace wakeline {
namespace {

// The errno form is checked through StdFileSystem below; these are the parts a message can lack.
TEST(Status, MessageSaysWhatFailedOnWhatAndWhy) {
    EXPECT_EQ(Status().Message(), "") << "ok says nothing";
    EXPECT_EQ(Status::Failure("start", "", "wine is missing").Message(),
              "could not start: wine is missing");
    const Status noReason = Status::Failure("open", "/dev/ttyS0", "");
    EXPECT_FALSE(noReason.Ok()) << "a failure without a reason is still one";
    EXPECT_EQ(noReason.Message(), "could not open /dev/ttyS0");
}

TEST(StdFileSystem, KeepsBytesReplacesWholeAndReportsFailures) {
    const std::filesystem::path dir =
        std::filesystem::temp_directory_path() / ("wakeline_fs_" + std::to_string(::getpid()));
    std::filesystem::remove_all(dir);
    std::filesystem::create_directories(dir);
    StdFileSystem files;
    const std::string path = (dir / "wakeline_wc.bin").string();
    EXPECT_EQ(files.ReadFile(path).GetStatus().Message(),
              "could not open " + path + ": No such file or directory");
    ASSERT_TRUE(files.AppendToFile(path, "one\r\n").Ok());
    ASSERT_TRUE(files.AppendToFile(path, std::string("\0\xff\n", 3)).Ok());
    EXPECT_EQ(files.ReadFile(path).Optional(), std::string("one\r\n\0\xff\n", 8));
    EXPECT_EQ(files.ReadFileStart(path, 5).Optional(), "one\r\n");
    EXPECT_EQ(files.ReadFileStart(path, 18020).Optional(), std::string("one\r\n\0\xff\n", 8));
    ASSERT_TRUE(files.WriteFile(path, "a longer old content").Ok());
    ASSERT_TRUE(files.ReplaceFile(path, std::string("new\0", 4)).Ok());
    EXPECT_EQ(files.ReadFile(path).Optional(), std::string("new\0", 4));
    EXPECT_FALSE(std::filesystem::exists(path + ".tmp"));

    // A directory is no file, and writes into a missing directory fail; each failure names
    // the step, the path and the system's reason.
    EXPECT_TRUE(files.DirectoryExists(dir.string()));
    EXPECT_FALSE(files.FileExists(dir.string()));
    EXPECT_EQ(files.ReadFile(dir.string()).GetStatus().Message(),
              "could not read " + dir.string() + ": Is a directory");
    const std::string gone = (dir / "missing" / "wakeline_wc.bin").string();
    EXPECT_EQ(files.AppendToFile(gone, "x").Message(),
              "could not open " + gone + ": No such file or directory");
    EXPECT_EQ(files.ReplaceFile(gone, "x").Message(),
              "could not open " + gone + ".tmp: No such file or directory");
    EXPECT_FALSE(std::filesystem::exists(gone + ".tmp"));
    std::filesystem::remove_all(dir);
}

}  // namespace
}  // namespace wakeline
