#pragma once
// Replays a recorded SeaTalk stream: a file (or a FIFO, or standard input "-") holding exactly
// the bytes the port delivers under parity marking. The bytes go out through bytesReceived()
// as the port's would, in reads of at most kBytesPerTurn; a file is read one chunk per turn of
// the event loop, anything else as its bytes arrive (see ChunkReader).

#include <QByteArray>
#include <QObject>
#include <QString>

#include "base/platform/chunk_reader.h"

namespace wakeline {

class SeaTalkReplayStream : public QObject {
    Q_OBJECT

  public:
    static constexpr qint64 kBytesPerTurn = 4096;

    explicit SeaTalkReplayStream(QString path, QObject* parent = nullptr);

    // False, with ErrorText(), when the file cannot be opened.
    bool Start();
    void Stop();
    QString ErrorText() const { return input_.ErrorText(); }

  Q_SIGNALS:
    void bytesReceived(const QByteArray& bytes);
    // The end of the stream; `problem` is empty at a clean end.
    void finished(const QString& problem);

  private:
    ChunkReader input_;
};

}  // namespace wakeline
