#pragma once
// The sound check over whatever mixer the machine has: two lines, the speakers (where all sound
// goes out) and the wave line (the alarm's own playback), each with its volume and mute
// controls. At start-up it turns both up and unmutes them so the battery alarm is heard; at
// the close it puts back exactly the values it changed, in the order it changed them.

#include <cstddef>
#include <cstdint>
#include <vector>

#include "base/status.h"
#include "power/sound_levels.h"

namespace wakeline {

enum class MixerLine { kSpeakers, kWave };
enum class ControlKind { kVolume, kMute };

// One control of a line. A volume runs from 0 to `maximum` (full volume, not the loudest value
// the hardware could be pushed to); a mute switch is 0 (sound on) or 1 (`maximum`).
struct MixerControl {
    ControlKind kind = ControlKind::kVolume;
    std::uint32_t maximum = 0;
};

// The mixer as the check sees it. Controls are named by their place in their line's list.
class SoundMixer {
  public:
    virtual ~SoundMixer() = default;
    // Reaches the sound server and finds both lines; a failure when no server answers or a line
    // is missing. Called at the start of every check, so it may reconnect.
    virtual Status Open() = 0;
    virtual Result<std::vector<MixerControl>> Controls(MixerLine line) = 0;
    virtual Result<std::uint32_t> Value(MixerLine line, std::size_t control) = 0;
    virtual Status Set(MixerLine line, std::size_t control, std::uint32_t value) = 0;
};

// One value the check changed, with where it belongs.
struct SavedMixerValue {
    MixerLine line = MixerLine::kSpeakers;
    std::size_t control = 0;
    ControlKind kind = ControlKind::kVolume;
    std::uint32_t value = 0;
};

// The values changed during the run, oldest first. `writeCount` is how many were saved;
// `readPosition` how many have been written back.
struct SavedMixerValues {
    std::vector<SavedMixerValue> values;
    std::size_t writeCount = 0;
    std::size_t readPosition = 0;
};

class SoundCheck : public SoundLevels {
  public:
    // `mixer` must outlive the check.
    explicit SoundCheck(SoundMixer& mixer) : mixer_(mixer) {}

    // A volume below its maximum is raised to it and a mute switch that is on is cleared; a
    // volume above full (a boost the sailor chose) is left, as it is loud already. A control
    // that cannot be set counts as unreadable (3), and nothing is saved for it. A control an
    // earlier check raised, and that no restore has put back, counts as changed (1) again, so
    // that every check until the close reports the levels it stands at.
    std::int16_t CheckSoundLevels(bool loud, bool restore) override;
    bool SoundChanged() const override { return soundChanged_; }

    const SavedMixerValues& Saved() const { return saved_; }
    // What went wrong in the last check (the first failure), ok when nothing did: for the log.
    const Status& Problem() const { return problem_; }

  private:
    // Statuses of one line: [0] volume, [1] mute.
    using LineStatus = std::int16_t[2];
    void RaiseLine(MixerLine line, bool loud, LineStatus& status);
    void Restore(LineStatus (&status)[2]);
    // True when this run raised the control and has not put it back yet.
    bool StandsRaised(MixerLine line, std::size_t control) const;
    void Note(const Status& status);

    SoundMixer& mixer_;
    SavedMixerValues saved_;
    bool soundChanged_ = false;
    Status problem_;
};

}  // namespace wakeline
