#pragma once
// Reads recorded data lines from a file, or from standard input ("-"), for a replay. Lines end
// at LF, CR LF or CR and come out without their ends; a line longer than kMaxLineBytes is
// dropped and reported with lineDropped(); a last line without an end is still a line.
//
// The event loop keeps running while a replay is read: a file is read in batches of at most
// kBytesPerTurn per turn of the loop, and standard input (a pipe, a terminal or a file) only
// when it has something to read, so a slow writer never blocks the program.

#include <QByteArray>
#include <QFile>
#include <QObject>
#include <QSocketNotifier>
#include <QString>
#include <QTimer>
#include <memory>

#include "livedata/line_splitter.h"

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
    QString ErrorText() const { return errorText_; }

  signals:
    void lineRead(const QByteArray& line);
    void lineDropped();
    // The end of the input; `problem` is empty at a clean end, otherwise why reading stopped.
    void finished(const QString& problem);

  private:
    void ReadFileBatch();
    void ReadStandardInput();
    // Emits the lines of `bytes`; false when a receiver stopped the replay.
    bool Emit(std::vector<LineEvent> events);
    void End(const QString& problem);

    QString path_;
    QString errorText_;
    QFile file_;
    QTimer batchTimer_;
    std::unique_ptr<QSocketNotifier> inputNotifier_;
    LineSplitter splitter_{LineEnds::LfCrLfOrCr};
    quint64 run_ = 0;  // changes on Stop(), so emission stops when a receiver stops the replay
    bool running_ = false;
};

}  // namespace wakeline
