#include "base/platform/chunk_reader.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <QTemporaryDir>

#include "livedata/platform/event_loop_wait.h"

namespace wakeline {
namespace {

// A FIFO written one line at a time: each line must come through while the writer still holds
// the rest back, which a reader that waits for a full buffer (or blocks in read()) fails.
TEST(ChunkReader, HandsOnEachLineOfAFifoBeforeTheNextIsWritten) {
    testing::EnsureCoreApplication();
    QTemporaryDir dir;
    ASSERT_TRUE(dir.isValid());
    const QByteArray fifo = QFile::encodeName(dir.filePath(QStringLiteral("replay")));
    ASSERT_EQ(::mkfifo(fifo.constData(), 0600), 0);

    ChunkReader reader(QString::fromLocal8Bit(fifo), 64 * 1024);
    QByteArray received;
    int finished = 0;
    QString problem = QStringLiteral("not finished");
    QObject::connect(&reader, &ChunkReader::chunkRead,
                     [&](const QByteArray& bytes) { received += bytes; });
    QObject::connect(&reader, &ChunkReader::finished, [&](const QString& why) {
        ++finished;
        problem = why;
    });
    ASSERT_TRUE(reader.Start());  // a FIFO without a writer yet opens without waiting
    const int writer = ::open(fifo.constData(), O_WRONLY);
    ASSERT_GE(writer, 0);

    QByteArray written;
    for (const QByteArray& line : {QByteArray("first\r\n"), QByteArray("second\r\n")}) {
        ASSERT_EQ(::write(writer, line.constData(), std::size_t(line.size())), line.size());
        written += line;
        ASSERT_TRUE(testing::WaitUntil([&] { return received.size() >= written.size(); }))
            << "still waiting for " << line.constData();
        EXPECT_EQ(received, written);
        EXPECT_EQ(finished, 0);
    }
    ::close(writer);
    ASSERT_TRUE(testing::WaitUntil([&] { return finished > 0; }));
    EXPECT_EQ(problem, QString());
    EXPECT_EQ(received, written);
}

}  // namespace
}  // namespace wakeline
