#include "seatalk/platform/replay_stream.h"

#include <unistd.h>

#include <QSocketNotifier>
#include <cerrno>
#include <cstring>
#include <utility>

namespace wakeline {

SeaTalkReplayStream::SeaTalkReplayStream(QString path, QObject* parent)
    : QObject(parent), path_(std::move(path)), turnTimer_(this) {
    turnTimer_.setInterval(0);  // one read per turn, after the events waiting
    connect(&turnTimer_, &QTimer::timeout, this, &SeaTalkReplayStream::ReadTurn);
}

bool SeaTalkReplayStream::Start() {
    if (running_) {
        return true;
    }
    errorText_.clear();
    if (path_ == QStringLiteral("-")) {
        inputNotifier_ = new QSocketNotifier(STDIN_FILENO, QSocketNotifier::Read, this);
        connect(inputNotifier_, &QSocketNotifier::activated, this, &SeaTalkReplayStream::ReadTurn);
    } else {
        file_.setFileName(path_);
        if (!file_.open(QIODevice::ReadOnly)) {
            errorText_ = QStringLiteral("cannot open %1: %2").arg(path_, file_.errorString());
            return false;
        }
        turnTimer_.start();
    }
    running_ = true;
    return true;
}

void SeaTalkReplayStream::Stop() {
    running_ = false;
    turnTimer_.stop();
    if (inputNotifier_) {
        inputNotifier_->setEnabled(false);
        inputNotifier_->deleteLater();
        inputNotifier_ = nullptr;
    }
    file_.close();
}

void SeaTalkReplayStream::ReadTurn() {
    if (!running_) {
        return;
    }
    QByteArray chunk(kBytesPerTurn, Qt::Uninitialized);
    qint64 got = 0;
    if (inputNotifier_) {
        do {
            got = ::read(STDIN_FILENO, chunk.data(), std::size_t(kBytesPerTurn));
        } while (got < 0 && errno == EINTR);
        if (got < 0 && (errno == EAGAIN || errno == EWOULDBLOCK)) {
            return;
        }
        if (got < 0) {
            End(QString::fromLocal8Bit(std::strerror(errno)));
            return;
        }
    } else {
        got = file_.read(chunk.data(), kBytesPerTurn);
        if (got < 0) {
            End(file_.errorString());
            return;
        }
    }
    if (got == 0) {
        End(QString());
        return;
    }
    chunk.resize(qsizetype(got));
    Q_EMIT bytesReceived(chunk);
}

void SeaTalkReplayStream::End(const QString& problem) {
    Stop();
    Q_EMIT finished(problem);
}

}  // namespace wakeline
