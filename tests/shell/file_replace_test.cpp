#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "shell/file_system.h"

namespace wakeline {
namespace {

TEST(StdFileSystemReplaceFile, ReplacesWholeAndLeavesNoTemporary) {
    const std::filesystem::path dir =
        std::filesystem::temp_directory_path() /
        ("wakeline_replace_" + std::to_string(::testing::UnitTest::GetInstance()->random_seed()));
    std::filesystem::remove_all(dir);
    std::filesystem::create_directories(dir);
    const std::string path = (dir / "wakeline_wc.bin").string();
    StdFileSystem files;

    ASSERT_TRUE(files.WriteFile(path, "a longer old content"));
    ASSERT_TRUE(files.ReplaceFile(path, std::string("new\0", 4)));
    EXPECT_EQ(files.ReadFile(path), std::string("new\0", 4));
    EXPECT_FALSE(std::filesystem::exists(path + ".tmp"));

    const std::string gone = (dir / "missing" / "wakeline_wc.bin").string();
    EXPECT_FALSE(files.ReplaceFile(gone, "x"));
    EXPECT_FALSE(std::filesystem::exists(gone + ".tmp"));
    std::filesystem::remove_all(dir);
}

}  // namespace
}  // namespace wakeline
