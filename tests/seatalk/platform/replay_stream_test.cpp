#include "seatalk/platform/replay_stream.h"

#include <gtest/gtest.h>

#include <QTemporaryDir>
#include <QTemporaryFile>
#include <optional>
#include <vector>

#include "livedata/platform/event_loop_wait.h"

namespace wakeline {
namespace {

TEST(SeaTalkReplayStream, DeliversTheFileInBoundedReadsThenFinishes) {
    testing::EnsureCoreApplication();
    QTemporaryFile file;
    ASSERT_TRUE(file.open());
    // In reads of at most 4096 bytes: 4096 + 4096 + 1808.
    const std::vector<QByteArray> expected = {QByteArray(4096, 'a'), QByteArray(4096, 'b'),
                                              QByteArray(1808, 'c')};
    file.write(expected[0] + expected[1] + expected[2]);
    file.close();

    SeaTalkReplayStream replay(file.fileName());
    std::vector<QByteArray> reads;
    std::optional<QString> problem;  // set when finished
    QObject::connect(&replay, &SeaTalkReplayStream::bytesReceived,
                     [&](const QByteArray& bytes) { reads.push_back(bytes); });
    QObject::connect(&replay, &SeaTalkReplayStream::finished,
                     [&](const QString& why) { problem = why; });
    ASSERT_TRUE(replay.Start());
    ASSERT_TRUE(testing::WaitUntil([&] { return problem.has_value(); }));
    EXPECT_EQ(*problem, QString());
    EXPECT_EQ(reads, expected);

    QTemporaryDir dir;
    SeaTalkReplayStream missing(dir.filePath(QStringLiteral("none.bin")));
    EXPECT_FALSE(missing.Start());
    EXPECT_TRUE(missing.ErrorText().contains(QStringLiteral("none.bin")));
}

}  // namespace
}  // namespace wakeline
