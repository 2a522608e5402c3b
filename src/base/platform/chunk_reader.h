#pragma once
// Reads a file, a FIFO or standard input ("-") in the event loop, never blocking in read():
// each chunk is handed on as soon as it is read, so a replay from a FIFO or `<(command)` that
// is written slowly shows each line as it arrives, and the loop stays free for signals.
//
// A regular file is read in chunks of at most maxChunkBytes, one per turn of the event loop (a
// zero timer). Anything else (a FIFO, a pipe, a terminal) is opened with O_NONBLOCK and read
// when the loop reports it readable, taking what is there. Standard input is reopened through
// /proc/self/fd/0 so that O_NONBLOCK does not change the descriptor the program shares with its
// shell; where that cannot be done (a socket), it is read only when it is readable.
// A FIFO nobody has opened for writing yet is waited for; it ends when its writer closes it.

#include <QByteArray>
#include <QObject>
#include <QString>
#include <QTimer>
#include <vector>

class QSocketNotifier;

namespace wakeline {

class ChunkReader : public QObject {
    Q_OBJECT

  public:
    // `path` is a file's path or "-" for standard input; `maxChunkBytes` (at least 1) is the
    // most one chunkRead() carries.
    ChunkReader(QString path, qint64 maxChunkBytes, QObject* parent = nullptr);
    ~ChunkReader() override;

    // Opens the input and starts reading in the event loop. False, with ErrorText()
    // ("cannot open PATH: REASON"), when it cannot be opened or is a directory.
    bool Start();
    // Stops reading and closes the input; no further signals. Receivers may call it from a
    // slot of either signal.
    void Stop();
    QString ErrorText() const { return errorText_; }

  signals:
    // The next bytes of the input, never empty.
    void chunkRead(const QByteArray& bytes);
    // Once, at the end of the input: `problem` is empty at a clean end, otherwise the system's
    // text for the read error that stopped it. The input is closed by then.
    void finished(const QString& problem);

  private:
    void ReadOnce();
    void End(const QString& problem);

    QString path_;
    std::vector<char> buffer_;
    QString errorText_;
    int fd_ = -1;
    QTimer fileTimer_;
    QSocketNotifier* notifier_ = nullptr;  // a child, deleted later: Stop() may run in its slot
};

}  // namespace wakeline
