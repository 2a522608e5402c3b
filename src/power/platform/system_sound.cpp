#include "power/platform/system_sound.h"

#include <utility>

namespace wakeline {
namespace {

// Stands in until the sound server is reached: nothing can be checked or played.
class SilentChime : public ChimePlayer {
  public:
    explicit SilentChime(std::string path) : path_(std::move(path)) {}
    Status PlayChime() override { return Status::Failure("play", path_, "no sound server"); }

  private:
    std::string path_;
};

}  // namespace

struct SystemSound::Parts {
    explicit Parts(std::string chimePath) : chime(std::move(chimePath)) {}
    NoSoundLevels levels;
    SilentChime chime;
};

SystemSound::SystemSound(std::string chimePath)
    : parts_(std::make_unique<Parts>(std::move(chimePath))) {}

SystemSound::~SystemSound() = default;

SoundLevels& SystemSound::Levels() {
    return parts_->levels;
}

ChimePlayer& SystemSound::Chime() {
    return parts_->chime;
}

}  // namespace wakeline
