#pragma once
// Replays a recorded SeaTalk stream: a file holding exactly the bytes the port delivers under
// parity marking. The bytes go out through bytesReceived() as the port's would, in reads of at
// most kBytesPerTurn, one per turn of the event loop, so the program stays responsive; standard
// input ("-") is read only when it has something.

#include <QByteArray>
#include <QFile>
#include <QObject>
#include <QString>
#include <QTimer>

class QSocketNotifier;

namespace wakeline {

class SeaTalkReplayStream : public QObject {
    Q_OBJECT

  public:
    static constexpr qint64 kBytesPerTurn = 4096;

    explicit SeaTalkReplayStream(QString path, QObject* parent = nullptr);

    // False, with ErrorText(), when the file cannot be opened.
    bool Start();
    void Stop();
    QString ErrorText() const { return errorText_; }

  Q_SIGNALS:
    void bytesReceived(const QByteArray& bytes);
    // The end of the stream; `problem` is empty at a clean end.
    void finished(const QString& problem);

  private:
    void ReadTurn();
    void End(const QString& problem);

    QString path_;
    QString errorText_;
    QFile file_;
    QTimer turnTimer_;
    QSocketNotifier* inputNotifier_ = nullptr;
    bool running_ = false;
};

}  // namespace wakeline
