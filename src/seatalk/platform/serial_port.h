#pragma once
// The SeaTalk port on Linux: a serial device set to 4800 baud, 8 data bits and space parity,
// with parity errors marked in the input (PARMRK), so a command byte arrives as FF 00 b. The
// raw stream goes out unchanged through bytesReceived(); ParmrkDecoder takes it apart.
//
// The device is read when it has bytes (a socket notifier), never blocking the event loop.
// Each text goes out once, through one signal: userMessage for what the user is to be told
// (its receiver logs it too, as a run logs every message), logLine for the log alone. What goes
// wrong is told to the user:
// - a device that is missing, busy or not permitted: the port keeps trying to open it;
// - settings the device did not keep (read back after setting them: a pseudo-terminal drops
//   the parity, some USB adapters refuse space parity): named once (the log alone at later
//   openings), before the line that the port was opened, and the port runs as it is;
// - a device lost while running (read error, end of file, hang-up: a USB adapter pulled out):
//   closed and tried again every retry interval, so an adapter that comes back is used again.

#include <QByteArray>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QTimer>

#include "base/status.h"

class QSocketNotifier;

namespace wakeline {

class SeaTalkSerialPort : public QObject {
    Q_OBJECT

  public:
    static constexpr int kDefaultRetryMs = 5000;
    static constexpr qint64 kReadChunk = 4096;

    explicit SeaTalkSerialPort(QString device, QObject* parent = nullptr);
    ~SeaTalkSerialPort() override;

    void SetRetryInterval(int milliseconds) { retryTimer_.setInterval(milliseconds); }

    // Opens the device and starts reading. A failure to "open" the device, with why, when it
    // could not be opened now; the port then tries again every retry interval until Stop().
    Status Start();
    void Stop();

    bool IsOpen() const { return fd_ >= 0; }
    const QString& Device() const { return device_; }
    // The settings the device did not keep at the last opening, e.g. "space parity (PARENB)";
    // empty when it kept them all.
    const QStringList& Refused() const { return refused_; }
    // The open descriptor (-1 when closed), for tests that inspect the settings.
    int Descriptor() const { return fd_; }

  Q_SIGNALS:
    void bytesReceived(const QByteArray& bytes);
    void logLine(const QString& text);
    void userMessage(const QString& text);
    void opened();
    void lost();

  private:
    // Opens and configures the device; a failure says why (errno text and context).
    Status Open();
    void Close();
    void ReadAvailable();
    void Lose(const QString& why);
    // Tells the user `pattern` filled with the device, `why` and the retry seconds.
    void Report(const QString& pattern, const QString& why);
    void Retry();

    QString device_;
    int fd_ = -1;
    QSocketNotifier* notifier_ = nullptr;  // a child; deleted later, as it may be signalling
    QTimer retryTimer_;
    QStringList refused_;
    bool refusalTold_ = false;  // the user heard about refused settings once
    bool running_ = false;
};

}  // namespace wakeline
