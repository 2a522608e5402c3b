#pragma once
// This machine's sound for the power alarm: the sound check of the speakers and of the alarm's
// own playback, and the chime. Both go through the sound server (libpulse: PulseAudio or
// PipeWire), on one connection made on first use; no call waits more than half a second.

#include <memory>
#include <string>

#include "base/status.h"
#include "power/chime_player.h"
#include "power/sound_levels.h"

namespace wakeline {

class SystemSound {
  public:
    // `chimePath` is the chime's WAV file (16-bit PCM). It is read here, once; a missing or
    // broken file does not stop the sound check, but every PlayChime then fails with the path
    // and what is wrong. Nothing is connected until first used.
    explicit SystemSound(std::string chimePath);
    ~SystemSound();
    SystemSound(const SystemSound&) = delete;
    SystemSound& operator=(const SystemSound&) = delete;

    SoundLevels& Levels();
    ChimePlayer& Chime();

    // Why the last sound check gave -1 or found a line it could not read or set (the first
    // failure, in the sound server's words), ok when nothing went wrong: for the log.
    Status LevelsProblem() const;

  private:
    struct Parts;
    std::unique_ptr<Parts> parts_;
};

}  // namespace wakeline
