#include "livedata/platform/replay_source.h"

#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <utility>

namespace wakeline {

ReplaySource::ReplaySource(QString path, QObject* parent)
    : QObject(parent), path_(std::move(path)), batchTimer_(this) {
    // Interval 0: one batch per turn of the event loop, after the events waiting.
    batchTimer_.setInterval(0);
    connect(&batchTimer_, &QTimer::timeout, this, &ReplaySource::ReadFileBatch);
}

ReplaySource::~ReplaySource() = default;

bool ReplaySource::Start() {
    if (running_) {
        return true;
    }
    errorText_.clear();
    if (path_ == QStringLiteral("-")) {
        inputNotifier_ = std::make_unique<QSocketNotifier>(STDIN_FILENO, QSocketNotifier::Read);
        connect(inputNotifier_.get(), &QSocketNotifier::activated, this,
                &ReplaySource::ReadStandardInput);
    } else {
        file_.setFileName(path_);
        if (!file_.open(QIODevice::ReadOnly)) {
            errorText_ = QStringLiteral("cannot open %1: %2").arg(path_, file_.errorString());
            return false;
        }
        batchTimer_.start();
    }
    running_ = true;
    return true;
}

void ReplaySource::Stop() {
    running_ = false;
    ++run_;
    batchTimer_.stop();
    inputNotifier_.reset();
    file_.close();
    splitter_.Finish();
}

void ReplaySource::ReadFileBatch() {
    char chunk[kBytesPerTurn];
    const qint64 got = file_.read(chunk, kBytesPerTurn);
    if (got < 0) {
        End(file_.errorString());
    } else if (got == 0) {
        End(QString());
    } else {
        Emit(splitter_.Feed(std::string_view(chunk, std::size_t(got))));
    }
}

void ReplaySource::ReadStandardInput() {
    char chunk[kBytesPerTurn];
    ssize_t got = 0;
    do {
        got = ::read(STDIN_FILENO, chunk, sizeof chunk);
    } while (got < 0 && errno == EINTR);
    if (got < 0) {
        if (errno == EAGAIN || errno == EWOULDBLOCK) {
            return;
        }
        End(QString::fromLocal8Bit(std::strerror(errno)));
    } else if (got == 0) {
        End(QString());
    } else {
        Emit(splitter_.Feed(std::string_view(chunk, std::size_t(got))));
    }
}

bool ReplaySource::Emit(std::vector<LineEvent> events) {
    const quint64 run = run_;
    for (LineEvent& event : events) {
        if (event.kind == LineEvent::Kind::Line) {
            emit lineRead(QByteArray::fromStdString(event.text));
        } else {
            emit lineDropped();
        }
        if (run != run_) {
            return false;
        }
    }
    return true;
}

void ReplaySource::End(const QString& problem) {
    const std::optional<std::string> last = splitter_.Finish();
    if (last) {
        if (!Emit({LineEvent{LineEvent::Kind::Line, *last}})) {
            return;
        }
    }
    Stop();
    emit finished(problem);
}

}  // namespace wakeline
