#pragma once
// The chart-plotter link over TCP: a client of the endpoint where the chart plotter (or its
// stand-in) sends the item text, one text per line ended by LF, whenever it changes. Each
// line received is one change notification. A refused connection means that no server
// answers; the server closing the connection means that the link was closed.
//
// Reading never holds the event loop for long: at most kMaxBytesPerTurn are handled per turn,
// the rest in later turns, and the socket buffers at most kReadBufferBytes, so a flooding
// server is slowed down by TCP instead of filling memory. A line longer than kMaxLineBytes is
// dropped and reported with lineDropped(). A last line without its LF when the server closes
// is still a line: unendedLastLine() tells of it, then lineReceived() carries it; a close of
// our own (Close()) drops an unfinished line.
//
// Signals are emitted from the event loop; a receiver may call Close() from any of them but
// must not delete the link there (use deleteLater()). A new attempt after a failure or a close
// belongs in a later turn of the loop (the main timer's next tick), not in the slot itself.

#include <QByteArray>
#include <QObject>
#include <QString>
#include <QTcpSocket>
#include <QTimer>

#include "base/line_reader.h"
#include "base/status.h"
#include "livedata/link_endpoint.h"

namespace wakeline {

class TcpLink : public QObject {
    Q_OBJECT

  public:
    static constexpr qint64 kMaxBytesPerTurn = 256 * 1024;
    static constexpr qint64 kReadBufferBytes = 1024 * 1024;
    static constexpr int kDefaultConnectTimeoutMs = 5000;

    explicit TcpLink(LinkEndpoint endpoint, QObject* parent = nullptr);
    // Ends the link without emitting anything.
    ~TcpLink() override;

    // Starts one attempt to connect; its outcome is connected() or connectFailed(). Returns
    // false, and does nothing, while an attempt is under way or the link is up.
    bool Connect();
    // Ends the link or the attempt at once, without emitting closed() or connectFailed().
    void Close();

    bool IsConnected() const { return phase_ == Phase::Connected; }
    bool IsConnecting() const { return phase_ == Phase::Connecting; }
    const LinkEndpoint& Endpoint() const { return endpoint_; }
    // How long an attempt may take (host lookup included) before it counts as failed.
    void SetConnectTimeout(int milliseconds) { connectTimeoutMs_ = milliseconds; }

  signals:
    void connected();
    // Refused, host not found, unreachable or timed out: a failure to "connect to" the
    // endpoint, with the socket's reason, for the log.
    void connectFailed(const wakeline::Status& failure);
    // One line without its end (LF, and a CR right before it, removed).
    void lineReceived(const QByteArray& line);
    // A line longer than kMaxLineBytes was dropped.
    void lineDropped();
    // The server closed the link after a last line without its LF, which follows at once.
    void unendedLastLine();
    // The server closed the link (or it broke); lines received before it were all delivered.
    void closed();

  private:
    enum class Phase { Idle, Connecting, Connected };

    void OnStateChanged(QAbstractSocket::SocketState state);
    void OnError(QAbstractSocket::SocketError error);
    void OnConnectTimeout();
    void OnReadyRead();
    // Reads up to `budget` bytes; true when the link is still up afterwards.
    bool ReadSome(qint64 budget);
    void ReadLater();
    Status Failure(const QString& reason) const;
    void Fail(const QString& reason);
    void HandleClosed();

    LinkEndpoint endpoint_;
    QTcpSocket socket_;
    QTimer connectTimer_;
    LineReader splitter_{LineEnds::LfOptionalCr};
    Phase phase_ = Phase::Idle;
    int connectTimeoutMs_ = kDefaultConnectTimeoutMs;
    bool readScheduled_ = false;
    quint64 connection_ = 0;  // changes whenever the link goes down, so emitting can stop
};

}  // namespace wakeline
