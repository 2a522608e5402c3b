// The durable file writes against a real directory: appends keep order, a replaced file is
// whole, a missing directory is a reported failure with nothing left behind, and an append that
// fails part way leaves the file as it was before it.

#include "base/platform/durable_file_system.h"

#include <gtest/gtest.h>

#include <sys/resource.h>

#include <QTemporaryDir>
#include <csignal>
#include <filesystem>
#include <functional>
#include <vector>

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

// A disk that fills up in the middle of an append, on a real file: the file size limit lets the
// first bytes of the append in and refuses the rest (EFBIG instead of ENOSPC, the same path).
TEST(DurableFileSystem, AnAppendThatFailsPartWayIsCutBack) {
    struct Row {
        const char* legend;
        std::function<Status(FileSystem&, const std::string&, std::string_view)> append;
    };
    const std::vector<Row> rows = {
        {"AppendToFile (the standard library's streams)",
         [](FileSystem& f, const std::string& p, std::string_view b) {
             return f.AppendToFile(p, b);
         }},
        {"AppendDurably (write and fdatasync)",
         [](FileSystem& f, const std::string& p, std::string_view b) {
             return f.AppendDurably(p, b);
         }},
    };
    // Past the limit a write raises SIGXFSZ, which would end the test instead of failing.
    const auto previousHandler = std::signal(SIGXFSZ, SIG_IGN);
    rlimit previous{};
    ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &previous), 0);
    for (const Row& row : rows) {
        SCOPED_TRACE(row.legend);
        QTemporaryDir dir;
        const std::string track = dir.path().toStdString() + "/20261115.TRT";
        DurableFileSystem files;
        ASSERT_TRUE(row.append(files, track, "one\r\n").Ok());

        // Room for 3 of the 12 bytes: "two" would reach the file without its line end.
        rlimit small = previous;
        small.rlim_cur = 8;
        ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &small), 0);
        const Status full = row.append(files, track, "two\r\nthree\r\n");
        ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &previous), 0);
        EXPECT_EQ(full.Reason(), "File too large");
        EXPECT_EQ(files.ReadFile(track).Optional(), "one\r\n");

        // The retry of the whole batch writes it once.
        EXPECT_TRUE(row.append(files, track, "two\r\nthree\r\n").Ok());
        EXPECT_EQ(files.ReadFile(track).Optional(), "one\r\ntwo\r\nthree\r\n");
    }
    std::signal(SIGXFSZ, previousHandler);
}

}  // namespace
}  // namespace wakeline
