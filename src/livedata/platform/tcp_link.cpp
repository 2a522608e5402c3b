#include "livedata/platform/tcp_link.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace wakeline {
namespace {

constexpr qint64 kReadChunkBytes = 64 * 1024;

}  // namespace

TcpLink::TcpLink(LinkEndpoint endpoint, QObject* parent)
    : QObject(parent), endpoint_(std::move(endpoint)), socket_(this), connectTimer_(this) {
    socket_.setReadBufferSize(kReadBufferBytes);
    connectTimer_.setSingleShot(true);
    connect(&socket_, &QAbstractSocket::stateChanged, this, &TcpLink::OnStateChanged);
    connect(&socket_, &QAbstractSocket::errorOccurred, this, &TcpLink::OnError);
    connect(&socket_, &QIODevice::readyRead, this, &TcpLink::OnReadyRead);
    connect(&connectTimer_, &QTimer::timeout, this, &TcpLink::OnConnectTimeout);
}

TcpLink::~TcpLink() {
    // The socket reports its own destruction as a state change; nobody should hear of it.
    disconnect(&socket_, nullptr, this, nullptr);
    phase_ = Phase::Idle;
}

bool TcpLink::Connect() {
    if (phase_ != Phase::Idle) {
        return false;
    }
    phase_ = Phase::Connecting;
    splitter_.Finish();
    connectTimer_.start(connectTimeoutMs_);
    socket_.connectToHost(QString::fromStdString(endpoint_.host), endpoint_.port);
    return true;
}

void TcpLink::Close() {
    phase_ = Phase::Idle;
    connectTimer_.stop();
    ++connection_;
    socket_.abort();
    splitter_.Finish();
}

void TcpLink::OnStateChanged(QAbstractSocket::SocketState state) {
    if (state == QAbstractSocket::ConnectedState && phase_ == Phase::Connecting) {
        connectTimer_.stop();
        phase_ = Phase::Connected;
        ++connection_;
        emit connected();
    } else if (state == QAbstractSocket::UnconnectedState) {
        if (phase_ == Phase::Connecting) {
            Fail(socket_.errorString());
        } else if (phase_ == Phase::Connected) {
            HandleClosed();
        }
    }
}

void TcpLink::OnError(QAbstractSocket::SocketError) {
    // Once linked, every error ends in the unconnected state, which reports the close.
    if (phase_ == Phase::Connecting) {
        const QString reason = socket_.errorString();
        socket_.abort();
        if (phase_ == Phase::Connecting) {
            Fail(reason);
        }
    }
}

void TcpLink::OnConnectTimeout() {
    if (phase_ != Phase::Connecting) {
        return;
    }
    phase_ = Phase::Idle;
    socket_.abort();
    emit connectFailed(Failure(QStringLiteral("no answer within %1 ms").arg(connectTimeoutMs_)));
}

Status TcpLink::Failure(const QString& reason) const {
    const std::string& host = endpoint_.host;
    // An IPv6 address is written in brackets, as the user gives it.
    const std::string where = (host.find(':') == std::string::npos ? host : "[" + host + "]") +
                              ":" + std::to_string(endpoint_.port);
    return Status::Failure("connect to", where, reason.toStdString());
}

void TcpLink::Fail(const QString& reason) {
    phase_ = Phase::Idle;
    connectTimer_.stop();
    emit connectFailed(Failure(reason));
}

void TcpLink::OnReadyRead() {
    if (phase_ == Phase::Connected && !readScheduled_ && ReadSome(kMaxBytesPerTurn)) {
        ReadLater();
    }
}

void TcpLink::ReadLater() {
    if (readScheduled_ || socket_.bytesAvailable() <= 0) {
        return;
    }
    // The rest waits for the next turn of the event loop, so that timers and windows get theirs.
    // A turn still pending when the link closes and comes back serves the new connection.
    readScheduled_ = true;
    QTimer::singleShot(0, this, [this] {
        readScheduled_ = false;
        if (phase_ == Phase::Connected && ReadSome(kMaxBytesPerTurn)) {
            ReadLater();
        }
    });
}

bool TcpLink::ReadSome(qint64 budget) {
    const quint64 connection = connection_;
    char chunk[kReadChunkBytes];
    while (budget > 0) {
        const qint64 got = socket_.read(chunk, std::min(budget, kReadChunkBytes));
        if (got <= 0) {
            break;
        }
        budget -= got;
        for (LineEvent& event : splitter_.Feed(std::string_view(chunk, std::size_t(got)))) {
            if (event.kind == LineEvent::Kind::Line) {
                emit lineReceived(QByteArray::fromStdString(event.text));
            } else {
                emit lineDropped();
            }
            // A receiver may have closed the link.
            if (connection != connection_) {
                return false;
            }
        }
    }
    return true;
}

void TcpLink::HandleClosed() {
    // What arrived before the close is delivered first; the socket holds at most its buffer.
    phase_ = Phase::Idle;
    const quint64 connection = ++connection_;
    std::vector<LineEvent> events;
    char chunk[kReadChunkBytes];
    while (socket_.isOpen() && socket_.bytesAvailable() > 0) {
        const qint64 got = socket_.read(chunk, kReadChunkBytes);
        if (got <= 0) {
            break;
        }
        auto more = splitter_.Feed(std::string_view(chunk, std::size_t(got)));
        std::move(more.begin(), more.end(), std::back_inserter(events));
    }
    // A server may end its last text with the close instead of an LF; that text was sent whole.
    const std::optional<std::string> unended = splitter_.Finish();
    if (unended) {
        events.push_back(LineEvent{LineEvent::Kind::Line, *unended});
    }
    for (LineEvent& event : events) {
        if (unended && &event == &events.back()) {
            emit unendedLastLine();
            if (connection != connection_) {
                return;
            }
        }
        if (event.kind == LineEvent::Kind::Line) {
            emit lineReceived(QByteArray::fromStdString(event.text));
        } else {
            emit lineDropped();
        }
        if (connection != connection_) {
            return;
        }
    }
    emit closed();
}

}  // namespace wakeline
