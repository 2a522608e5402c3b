#include "base/file_system.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

namespace wakeline {
namespace {

TEST(StdFileSystem, KeepsBytesReplacesWholeAndReportsFailures) {
    const std::filesystem::path dir =
        std::filesystem::temp_directory_path() /
        ("wakeline_fs_" + std::to_string(::testing::UnitTest::GetInstance()->random_seed()));
    std::filesystem::remove_all(dir);
    std::filesystem::create_directories(dir);
    StdFileSystem files;
    const std::string path = (dir / "wakeline_wc.bin").string();
    EXPECT_FALSE(files.ReadFile(path).has_value());
    ASSERT_TRUE(files.AppendToFile(path, "one\r\n"));
    ASSERT_TRUE(files.AppendToFile(path, std::string("\0\xff\n", 3)));
    EXPECT_EQ(files.ReadFile(path), std::string("one\r\n\0\xff\n", 8));
    ASSERT_TRUE(files.WriteFile(path, "a longer old content"));
    ASSERT_TRUE(files.ReplaceFile(path, std::string("new\0", 4)));
    EXPECT_EQ(files.ReadFile(path), std::string("new\0", 4));
    EXPECT_FALSE(std::filesystem::exists(path + ".tmp"));

    // A directory is no file, and writes into a missing directory fail.
    EXPECT_TRUE(files.DirectoryExists(dir.string()));
    EXPECT_FALSE(files.FileExists(dir.string()));
    const std::string gone = (dir / "missing" / "wakeline_wc.bin").string();
    EXPECT_FALSE(files.AppendToFile(gone, "x"));
    EXPECT_FALSE(files.WriteFile(gone, "x"));
    EXPECT_FALSE(files.ReplaceFile(gone, "x"));
    EXPECT_FALSE(std::filesystem::exists(gone + ".tmp"));
    std::filesystem::remove_all(dir);
}

}  // namespace
}  // namespace wakeline
