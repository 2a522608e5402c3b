#include "livedata/platform/replay_source.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <QTemporaryFile>
#include <string>
#include <vector>

#include "livedata/platform/event_loop_wait.h"

namespace wakeline {
namespace {

struct Recorder {
    explicit Recorder(ReplaySource& source) {
        QObject::connect(&source, &ReplaySource::lineRead,
                         [this](const QByteArray& line) { lines.push_back(line.toStdString()); });
        QObject::connect(&source, &ReplaySource::lineDropped, [this] { ++dropped; });
        QObject::connect(&source, &ReplaySource::finished, [this](const QString& problem) {
            ++finished;
            this->problem = problem;
        });
    }
    std::vector<std::string> lines;
    int dropped = 0;
    int finished = 0;
    QString problem;
};

TEST(ReplaySourceTest, AFileIsReadLineByLineInBatches) {
    testing::EnsureCoreApplication();
    QTemporaryFile file;
    ASSERT_TRUE(file.open());
    // Every line end, an over-long line, and a last line without an end. The whole file is
    // larger than one batch, so the reading spans several turns of the event loop.
    file.write("20261115 23:42:16 CZ,a\r\nb\rc\n\n");
    file.write(QByteArray(100 * 1024, 'x'));
    file.write("\r\nlast");
    file.close();

    ReplaySource source(file.fileName());
    Recorder recorder(source);
    ASSERT_TRUE(source.Start());
    EXPECT_TRUE(recorder.lines.empty()) << "nothing is read before the event loop runs";
    ASSERT_TRUE(testing::WaitUntil([&] { return recorder.finished == 1; }));
    EXPECT_EQ(recorder.lines,
              (std::vector<std::string>{"20261115 23:42:16 CZ,a", "b", "c", "", "last"}));
    EXPECT_EQ(recorder.dropped, 1);
    EXPECT_EQ(recorder.problem, QString());

    ReplaySource missing(file.fileName() + ".none");
    EXPECT_FALSE(missing.Start());
    EXPECT_TRUE(missing.ErrorText().startsWith("cannot open " + file.fileName() + ".none: "));
}

TEST(ReplaySourceTest, StandardInputIsReadAsItArrivesWithoutBlocking) {
    testing::EnsureCoreApplication();
    int pipeEnds[2];
    ASSERT_EQ(::pipe(pipeEnds), 0);
    const int savedInput = ::dup(STDIN_FILENO);
    ASSERT_GE(::dup2(pipeEnds[0], STDIN_FILENO), 0);
    ::close(pipeEnds[0]);

    {
        ReplaySource source("-");
        Recorder recorder(source);
        ASSERT_TRUE(source.Start());
        ASSERT_EQ(::write(pipeEnds[1], "one\r\ntw", 7), 7);
        EXPECT_TRUE(testing::WaitUntil([&] { return recorder.lines.size() == 1; }));
        // The writer is still there: the loop goes on and the half line waits.
        EXPECT_FALSE(testing::WaitUntil([&] { return recorder.finished > 0; }, 100));
        ASSERT_EQ(::write(pipeEnds[1], "o\n3", 3), 3);
        ::close(pipeEnds[1]);
        EXPECT_TRUE(testing::WaitUntil([&] { return recorder.finished == 1; }));
        EXPECT_EQ(recorder.lines, (std::vector<std::string>{"one", "two", "3"}));
    }
    ::dup2(savedInput, STDIN_FILENO);
    ::close(savedInput);
}

}  // namespace
}  // namespace wakeline
