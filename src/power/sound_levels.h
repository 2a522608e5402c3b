#pragma once
// The check that the battery alarm can be heard: the speakers' and the alarm's own volume and
// mute on whatever the machine plays sound through. The values it changes are kept for the
// whole run so that the close can put the sailor's own levels back exactly.

#include <cstdint>

namespace wakeline {

class SoundLevels {
  public:
    virtual ~SoundLevels() = default;
    // With `loud` and not `restore`: every volume below its maximum is raised to it and every
    // mute switch that is on is cleared, the old values saved. With `restore`: the saved values
    // are written back in the order they were saved. Returns -1 when no sound server (or mixer)
    // answers, otherwise the sum of the two lines' statuses: 0 left alone, 1 changed or
    // restored, 3 unreadable, 4 a line without controls. Non-zero means the sailor is asked to
    // check the levels.
    virtual std::int16_t CheckSoundLevels(bool loud, bool restore) = 0;
    // True once a check has changed any level: the close then restores them.
    virtual bool SoundChanged() const = 0;
};

// A machine where nothing can be heard or checked (tests, a build without a sound server).
class NoSoundLevels : public SoundLevels {
  public:
    std::int16_t CheckSoundLevels(bool, bool) override { return -1; }
    bool SoundChanged() const override { return false; }
};

}  // namespace wakeline
