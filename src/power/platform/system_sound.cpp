#include "power/platform/system_sound.h"

#include <cerrno>
#include <fstream>
#include <iterator>
#include <utility>

#include "power/platform/pulse_sound.h"
#include "power/sound_check.h"
#include "power/wave_sound.h"

namespace wakeline {
namespace {

Result<WaveSound> ReadChime(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    if (!in) {
        return Status::FromErrno("read", path, errno);
    }
    const std::string bytes{std::istreambuf_iterator<char>(in), {}};
    if (in.bad()) {
        return Status::FromErrno("read", path, errno);
    }
    return ParseWaveFile(bytes, path);
}

}  // namespace

struct SystemSound::Parts {
    explicit Parts(const std::string& chimePath) : pulse(ReadChime(chimePath)), check(pulse) {}
    PulseSound pulse;
    SoundCheck check;
};

SystemSound::SystemSound(std::string chimePath) : parts_(std::make_unique<Parts>(chimePath)) {}

SystemSound::~SystemSound() = default;

SoundLevels& SystemSound::Levels() {
    return parts_->check;
}

ChimePlayer& SystemSound::Chime() {
    return parts_->pulse;
}

Status SystemSound::LevelsProblem() const {
    return parts_->check.Problem();
}

}  // namespace wakeline
