#include "livedata/platform/replay_source.h"

#include <string_view>
#include <utility>

namespace wakeline {

ReplaySource::ReplaySource(QString path, QObject* parent)
    : QObject(parent), input_(std::move(path), kBytesPerTurn, this) {
    connect(&input_, &ChunkReader::chunkRead, this, [this](const QByteArray& chunk) {
        Emit(lines_.Feed(std::string_view(chunk.constData(), std::size_t(chunk.size()))));
    });
    connect(&input_, &ChunkReader::finished, this, &ReplaySource::End);
}

ReplaySource::~ReplaySource() = default;

bool ReplaySource::Start() {
    return input_.Start();
}

void ReplaySource::Stop() {
    ++run_;
    input_.Stop();
    lines_.Finish();
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
    if (const std::optional<std::string> last = lines_.Finish()) {
        if (!Emit({LineEvent{LineEvent::Kind::Line, *last}})) {
            return;
        }
    }
    Stop();
    emit finished(problem);
}

}  // namespace wakeline
