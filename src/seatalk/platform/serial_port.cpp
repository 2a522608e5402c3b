#include "seatalk/platform/serial_port.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

#include <QSocketNotifier>
#include <cerrno>
#include <cstring>
#include <string>
#include <utility>

namespace wakeline {
namespace {

std::string ErrnoText(int error) {
    return std::strerror(error);
}

// The port's settings: 4800 baud, 8 data bits, space parity (PARENB with CMSPAR and PARODD
// clear), one stop bit, receiver on, modem lines ignored; input raw, parity checked and errors
// marked in the stream (INPCK, PARMRK), nothing stripped, translated or used for flow control.
void Configure(termios& t) {
    t.c_iflag &= ~tcflag_t(IGNBRK | BRKINT | IGNPAR | ISTRIP | INLCR | IGNCR | ICRNL | IXON |
                           IXOFF | IXANY | IMAXBEL);
    t.c_iflag |= INPCK | PARMRK;
    t.c_oflag &= ~tcflag_t(OPOST);
    t.c_lflag &= ~tcflag_t(ECHO | ECHONL | ICANON | ISIG | IEXTEN);
    t.c_cflag &= ~tcflag_t(CSIZE | PARODD | CSTOPB | CRTSCTS);
    t.c_cflag |= CS8 | PARENB | CMSPAR | CLOCAL | CREAD;
    // One byte at least per read; with O_NONBLOCK an empty port gives EAGAIN, so a read of 0
    // bytes can only mean the device hung up.
    t.c_cc[VMIN] = 1;
    t.c_cc[VTIME] = 0;
    cfsetispeed(&t, B4800);
    cfsetospeed(&t, B4800);
}

// What of Configure's settings the device did not keep.
QStringList Refusals(const termios& t) {
    QStringList refused;
    if (!(t.c_cflag & PARENB)) {
        refused << QStringLiteral("space parity (PARENB)");
    }
    if (!(t.c_cflag & CMSPAR)) {
        refused << QStringLiteral("space parity (CMSPAR)");
    }
    if (t.c_cflag & PARODD) {
        refused << QStringLiteral("space parity (PARODD set)");
    }
    if ((t.c_cflag & CSIZE) != CS8) {
        refused << QStringLiteral("8 data bits");
    }
    if (!(t.c_iflag & INPCK)) {
        refused << QStringLiteral("parity checking (INPCK)");
    }
    if (!(t.c_iflag & PARMRK)) {
        refused << QStringLiteral("parity marking (PARMRK)");
    }
    if (t.c_iflag & (IGNPAR | ISTRIP)) {
        refused << QStringLiteral("keeping errored bytes (IGNPAR/ISTRIP set)");
    }
    if (cfgetispeed(&t) != B4800) {
        refused << QStringLiteral("4800 baud");
    }
    return refused;
}

}  // namespace

SeaTalkSerialPort::SeaTalkSerialPort(QString device, QObject* parent)
    : QObject(parent), device_(std::move(device)), retryTimer_(this) {
    retryTimer_.setInterval(kDefaultRetryMs);
    connect(&retryTimer_, &QTimer::timeout, this, &SeaTalkSerialPort::Retry);
}

SeaTalkSerialPort::~SeaTalkSerialPort() {
    Close();
}

Status SeaTalkSerialPort::Start() {
    running_ = true;
    if (IsOpen()) {
        return {};
    }
    Status opened = Open();
    if (opened.Ok()) {
        return opened;
    }
    Report(QStringLiteral("SeaTalk port %1 cannot be opened: %2; trying again every %3 seconds"),
           QString::fromStdString(opened.Reason()));
    retryTimer_.start();
    return opened;
}

void SeaTalkSerialPort::Stop() {
    running_ = false;
    retryTimer_.stop();
    Close();
}

Status SeaTalkSerialPort::Open() {
    const QByteArray path = device_.toLocal8Bit();
    const std::string device = device_.toStdString();
    const std::string busy = "it is in use by another program";
    const int fd = ::open(path.constData(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
    if (fd < 0) {
        const int error = errno;
        return error == EBUSY ? Status::Failure("open", device, busy)
                              : Status::FromErrno("open", device, error);
    }
    // Another program holding the device (a lock on it, or exclusive mode) means it is busy.
    if (::flock(fd, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK) {
        ::close(fd);
        return Status::Failure("open", device, busy);
    }
    termios t{};
    if (::tcgetattr(fd, &t) != 0) {
        const Status failure =
            Status::Failure("open", device, "not a serial port (" + ErrnoText(errno) + ")");
        ::close(fd);
        return failure;
    }
    Configure(t);
    if (::tcsetattr(fd, TCSANOW, &t) != 0) {
        const Status failure = Status::Failure(
            "open", device, "its settings cannot be changed (" + ErrnoText(errno) + ")");
        ::close(fd);
        return failure;
    }
    ::ioctl(fd, TIOCEXCL);  // keep other programs out while it is ours; not all devices can
    termios kept{};
    ::tcgetattr(fd, &kept);
    refused_ = Refusals(kept);
    ::tcflush(fd, TCIFLUSH);  // what waited before the port was set up is not SeaTalk data

    fd_ = fd;
    notifier_ = new QSocketNotifier(fd_, QSocketNotifier::Read, this);
    connect(notifier_, &QSocketNotifier::activated, this, &SeaTalkSerialPort::ReadAvailable);
    // What the device refused comes first, so that no line claims space parity it has not got.
    if (refused_.isEmpty()) {
        Q_EMIT logLine(
            QStringLiteral("SeaTalk port %1 opened: 4800 baud, space parity, 8 data bits")
                .arg(device_));
    } else {
        const QString text =
            QStringLiteral(
                "SeaTalk port %1 refused %2: command bytes cannot be told from data "
                "bytes, so datagrams may not be recognised")
                .arg(device_, refused_.join(QStringLiteral(", ")));
        if (!refusalTold_) {
            refusalTold_ = true;
            Q_EMIT userMessage(text);
        } else {
            Q_EMIT logLine(text);
        }
        Q_EMIT logLine(
            QStringLiteral("SeaTalk port %1 opened with the settings it kept").arg(device_));
    }
    Q_EMIT opened();
    return {};
}

void SeaTalkSerialPort::Close() {
    if (notifier_) {
        notifier_->setEnabled(false);
        notifier_->deleteLater();
        notifier_ = nullptr;
    }
    if (fd_ >= 0) {
        ::close(fd_);
        fd_ = -1;
    }
}

void SeaTalkSerialPort::ReadAvailable() {
    // A bounded number of reads per turn, so a flood cannot hold the event loop.
    for (int turn = 0; turn < 16 && fd_ >= 0; ++turn) {
        QByteArray chunk(kReadChunk, Qt::Uninitialized);
        const ssize_t got = ::read(fd_, chunk.data(), std::size_t(kReadChunk));
        if (got > 0) {
            chunk.resize(qsizetype(got));
            Q_EMIT bytesReceived(chunk);
            continue;
        }
        if (got == 0) {
            Lose(QStringLiteral("the device hung up"));
            return;
        }
        const int error = errno;
        if (error == EINTR) {
            continue;
        }
        if (error != EAGAIN && error != EWOULDBLOCK) {
            Lose(QStringLiteral("read error: %1").arg(QString::fromLocal8Bit(ErrnoText(error))));
        }
        return;
    }
}

void SeaTalkSerialPort::Report(const QString& pattern, const QString& why) {
    Q_EMIT userMessage(pattern.arg(device_, why).arg(retryTimer_.interval() / 1000.0));
}

void SeaTalkSerialPort::Lose(const QString& why) {
    Close();
    Report(
        QStringLiteral("SeaTalk port %1 was lost (%2); trying to open it again every %3 seconds"),
        why);
    Q_EMIT lost();
    if (running_) {
        retryTimer_.start();
    }
}

void SeaTalkSerialPort::Retry() {
    if (!running_ || IsOpen()) {
        retryTimer_.stop();
        return;
    }
    if (Open().Ok()) {
        retryTimer_.stop();
    }
}

}  // namespace wakeline
