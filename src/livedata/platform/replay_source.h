#pragma once
// Reads recorded data lines from a file, a FIFO or standard input ("-") for a replay. Lines end
// at LF, CR LF or CR and come out without their ends; a line longer than kMaxLineBytes is
// dropped and reported with lineDropped(); a last line without an end is still a line.
//
// The event loop keeps running while a replay is read (see ChunkReader): a file is read in
// batches of at most kBytesPerTurn per turn of the loop, anything else when it has something
// to read, and each line goes out as soon as its end has arrived.

#include <QByteArray>
#include <QObject>
#include <QString>
#include <vector>

#include "base/line_reader.h"
#include "base/platform/chunk_reader.h"

namespace wakeline {

class ReplaySource : public QObject {
    Q_OBJECT

  public:
    static constexpr qint64 kBytesPerTurn = 64 * 1024;

    // `path` is a file's path or "-" for standard input.
    explicit ReplaySource(QString path, QObject* parent = nullptr);
    ~ReplaySource() override;

    // Opens the input and starts reading in the event loop. False, with ErrorText(), when the
    // file cannot be opened.
    bool Start();
    // Stops reading; no further signals.
    void Stop();
    QString ErrorText() const { return input_.ErrorText(); }

  signals:
    void lineRead(const QByteArray& line);
    void lineDropped();
    // The end of the input; `problem` is empty at a clean end, otherwise why reading stopped.
    void finished(const QString& problem);

  private:
    // Emits the lines of `events`; false when a receiver stopped the replay.
    bool Emit(std::vector<LineEvent> events);
    void End(const QString& problem);

    ChunkReader input_;
    LineReader lines_{LineEnds::LfCrLfOrCr};
    quint64 run_ = 0;  // changes on Stop(), so emission stops when a receiver stops the replay
};

}  // namespace wakeline
