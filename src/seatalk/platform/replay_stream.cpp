#include "seatalk/platform/replay_stream.h"

#include <utility>

namespace wakeline {

SeaTalkReplayStream::SeaTalkReplayStream(QString path, QObject* parent)
    : QObject(parent), input_(std::move(path), kBytesPerTurn, this) {
    connect(&input_, &ChunkReader::chunkRead, this, &SeaTalkReplayStream::bytesReceived);
    connect(&input_, &ChunkReader::finished, this, &SeaTalkReplayStream::finished);
}

bool SeaTalkReplayStream::Start() {
    return input_.Start();
}

void SeaTalkReplayStream::Stop() {
    input_.Stop();
}

}  // namespace wakeline
