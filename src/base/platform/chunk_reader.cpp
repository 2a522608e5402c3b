#include "base/platform/chunk_reader.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QFile>
#include <QSocketNotifier>
#include <cerrno>
#include <cstring>
#include <utility>

namespace wakeline {
namespace {

QString ErrnoText(int error) {
    return QString::fromLocal8Bit(std::strerror(error));
}

// A descriptor of our own for standard input: -1 with errno on failure. `regular` tells whether
// it is a regular file (read by turns) rather than something to wait on.
int OpenStandardInput(bool& regular) {
    struct stat info {};
    if (::fstat(STDIN_FILENO, &info) != 0) {
        return -1;
    }
    regular = S_ISREG(info.st_mode);
    if (!regular) {
        // A new open file description: O_NONBLOCK on it leaves the shell's terminal or pipe end
        // as it was.
        const int own = ::open("/proc/self/fd/0", O_RDONLY | O_NONBLOCK | O_CLOEXEC);
        if (own >= 0) {
            return own;
        }
    }
    // A regular file keeps its shared offset (input already consumed stays consumed); a socket
    // cannot be reopened and is read only when the loop says it is readable.
    return ::fcntl(STDIN_FILENO, F_DUPFD_CLOEXEC, 0);
}

int OpenPath(const QString& path, bool& regular) {
    const int fd = ::open(QFile::encodeName(path).constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (fd < 0) {
        return -1;
    }
    struct stat info {};
    if (::fstat(fd, &info) != 0 || S_ISDIR(info.st_mode)) {
        const int error = S_ISDIR(info.st_mode) ? EISDIR : errno;
        ::close(fd);
        errno = error;
        return -1;
    }
    regular = S_ISREG(info.st_mode);
    return fd;
}

}  // namespace

ChunkReader::ChunkReader(QString path, qint64 maxChunkBytes, QObject* parent)
    : QObject(parent),
      path_(std::move(path)),
      buffer_(std::size_t(maxChunkBytes > 0 ? maxChunkBytes : 1)),
      fileTimer_(this) {
    // Interval 0: one chunk per turn of the event loop, after the events waiting.
    fileTimer_.setInterval(0);
    connect(&fileTimer_, &QTimer::timeout, this, &ChunkReader::ReadOnce);
}

ChunkReader::~ChunkReader() {
    Stop();
}

bool ChunkReader::Start() {
    if (fd_ >= 0) {
        return true;
    }
    errorText_.clear();
    bool regular = false;
    fd_ = path_ == QStringLiteral("-") ? OpenStandardInput(regular) : OpenPath(path_, regular);
    if (fd_ < 0) {
        errorText_ = QStringLiteral("cannot open %1: %2").arg(path_, ErrnoText(errno));
        return false;
    }
    if (regular) {
        fileTimer_.start();
    } else {
        notifier_ = new QSocketNotifier(fd_, QSocketNotifier::Read, this);
        connect(notifier_, &QSocketNotifier::activated, this, &ChunkReader::ReadOnce);
    }
    return true;
}

void ChunkReader::Stop() {
    fileTimer_.stop();
    if (notifier_ != nullptr) {
        notifier_->setEnabled(false);
        notifier_->deleteLater();
        notifier_ = nullptr;
    }
    if (fd_ >= 0) {
        ::close(fd_);
        fd_ = -1;
    }
}

void ChunkReader::ReadOnce() {
    if (fd_ < 0) {
        return;
    }
    ssize_t got = 0;
    do {
        got = ::read(fd_, buffer_.data(), buffer_.size());
    } while (got < 0 && errno == EINTR);
    if (got < 0) {
        if (errno == EAGAIN || errno == EWOULDBLOCK) {
            return;  // woken for nothing; the notifier calls again when there is more
        }
        End(ErrnoText(errno));
    } else if (got == 0) {
        End(QString());
    } else {
        emit chunkRead(QByteArray(buffer_.data(), qsizetype(got)));
    }
}

void ChunkReader::End(const QString& problem) {
    Stop();
    emit finished(problem);
}

}  // namespace wakeline
