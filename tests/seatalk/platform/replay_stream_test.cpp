#include "seatalk/platform/replay_stream.h"

#include <gtest/gtest.h>

#include <QTemporaryDir>
#include <QTemporaryFile>
#include <vector>

#include "livedata/platform/event_loop_wait.h"

namespace wakeline {
namespace {

TEST(SeaTalkReplayStream, DeliversTheFileInBoundedReadsThenFinishes) {
    testing::EnsureCoreApplication();
    QTemporaryFile file;
    ASSERT_TRUE(file.open());
    QByteArray recorded;
    for (int i = 0; i < 10000; ++i) {
        recorded.append(char(i % 256));
    }
    file.write(recorded);
    file.close();

    SeaTalkReplayStream replay(file.fileName());
    std::vector<QByteArray> reads;
    int finished = 0;
    QString problem = QStringLiteral("not finished");
    QObject::connect(&replay, &SeaTalkReplayStream::bytesReceived,
                     [&](const QByteArray& bytes) { reads.push_back(bytes); });
    QObject::connect(&replay, &SeaTalkReplayStream::finished, [&](const QString& why) {
        ++finished;
        problem = why;
    });
    ASSERT_TRUE(replay.Start());
    ASSERT_TRUE(testing::WaitUntil([&] { return finished > 0; }));
    EXPECT_EQ(problem, QString());
    ASSERT_EQ(reads.size(), 3u);  // 4096 + 4096 + 1808
    EXPECT_EQ(reads[0].size(), SeaTalkReplayStream::kBytesPerTurn);
    EXPECT_EQ(reads[0] + reads[1] + reads[2], recorded);

    QTemporaryDir dir;
    SeaTalkReplayStream missing(dir.filePath(QStringLiteral("none.bin")));
    EXPECT_FALSE(missing.Start());
    EXPECT_TRUE(missing.ErrorText().contains(QStringLiteral("none.bin")));
}

}  // namespace
}  // namespace wakeline
