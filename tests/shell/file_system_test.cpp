#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "shell/file_system.h"

namespace wakeline {
namespace {

TEST(SplitLines, EveryLineEndingEndsALine) {
    using Lines = std::vector<std::string>;
    struct Row {
        const char* legend;
        std::string text;
        Lines lines;
    };
    const Row rows[] = {
        {"nothing", "", {}},
        {"no ending", "a", {"a"}},
        {"LF, CR LF and CR", "a\nb\r\nc\rd", {"a", "b", "c", "d"}},
        {"a final ending adds no line", "a\r\n", {"a"}},
        {"LF CR is two endings", "a\n\rb", {"a", "", "b"}},
        {"CR CR LF is two endings", "a\r\r\nb", {"a", "", "b"}},
        {"empty lines stay", "\n\nx\n", {"", "", "x"}},
        {"other bytes are kept", std::string("a\0b\t\xff", 5), {std::string("a\0b\t\xff", 5)}},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(SplitLines(row.text), row.lines) << row.legend;
    }
}

class StdFileSystemTest : public ::testing::Test {
  protected:
    void SetUp() override {
        dir_ = std::filesystem::temp_directory_path() /
               ("wakeline_fs_" + std::to_string(::testing::UnitTest::GetInstance()->random_seed()) +
                "_" + ::testing::UnitTest::GetInstance()->current_test_info()->name());
        std::filesystem::remove_all(dir_);
        std::filesystem::create_directories(dir_);
    }
    void TearDown() override { std::filesystem::remove_all(dir_); }
    std::string Path(const std::string& name) const { return (dir_ / name).string(); }

    std::filesystem::path dir_;
    StdFileSystem files_;
};

TEST_F(StdFileSystemTest, WritesAppendsAndReadsBytesUnchanged) {
    const std::string path = Path("log.txt");
    EXPECT_FALSE(files_.FileExists(path));
    EXPECT_FALSE(files_.ReadFile(path).has_value());

    ASSERT_TRUE(files_.AppendToFile(path, "one\r\n"));
    ASSERT_TRUE(files_.AppendToFile(path, std::string("\0\xff\n", 3)));
    EXPECT_TRUE(files_.FileExists(path));
    EXPECT_EQ(files_.ReadFile(path), std::string("one\r\n\0\xff\n", 8));

    ASSERT_TRUE(files_.WriteFile(path, "new"));
    EXPECT_EQ(files_.ReadFile(path), "new");
}

TEST_F(StdFileSystemTest, DirectoriesAreNoFilesAndFailedWritesReportFalse) {
    EXPECT_TRUE(files_.DirectoryExists(dir_.string()));
    EXPECT_FALSE(files_.FileExists(dir_.string()));
    EXPECT_FALSE(files_.ReadFile(dir_.string()).has_value());
    const std::string missingDir = Path("missing/log.txt");
    EXPECT_FALSE(files_.AppendToFile(missingDir, "x"));
    EXPECT_FALSE(files_.WriteFile(missingDir, "x"));
    // A directory in the way of the file.
    EXPECT_FALSE(files_.AppendToFile(dir_.string(), "x"));
}

}  // namespace
}  // namespace wakeline
