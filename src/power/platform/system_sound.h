#pragma once
// This machine's sound for the power alarm: the sound check of the speakers and of the alarm's
// own playback, and the chime. Both go through the sound server.

#include <memory>
#include <string>

#include "power/chime_player.h"
#include "power/sound_levels.h"

namespace wakeline {

class SystemSound {
  public:
    // `chimePath` is the chime's sound file. Nothing is connected until first used.
    explicit SystemSound(std::string chimePath);
    ~SystemSound();
    SystemSound(const SystemSound&) = delete;
    SystemSound& operator=(const SystemSound&) = delete;

    SoundLevels& Levels();
    ChimePlayer& Chime();

  private:
    struct Parts;
    std::unique_ptr<Parts> parts_;
};

}  // namespace wakeline
