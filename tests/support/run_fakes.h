#pragma once
// Stand-ins for the parts of the outside world that only a whole run needs: the chart
// plotter's program, the battery and the alarm window.

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "livedata/program_starter.h"
#include "power/battery_status.h"
#include "power/power_alarm.h"
#include "power/sound_levels.h"

namespace wakeline::testing {

// Records the programs it was asked to start; starting always works.
class FakeProgramStarter : public ProgramStarter {
  public:
    Status StartProgram(const std::string& path) override {
        started.push_back(path);
        return {};
    }
    std::vector<std::string> started;
};

// A battery that reads what the test set.
class FakeBattery : public BatterySource {
  public:
    BatteryStatus Read() override { return status; }
    BatteryStatus status;
};

// Records the alarm messages that were shown and answers the sound check as told.
class RecordingAlarm : public PowerAlarm {
  public:
    void ShowPowerAlarm(const PowerState& state, DateTime now) override {
        shown.push_back(AlarmMessage(state, now));
    }
    std::int16_t CheckSoundLevels(bool loud, bool restore) override {
        soundChecks.push_back({loud, restore});
        return soundCheckAnswer;
    }

    std::vector<std::string> shown;
    std::vector<std::pair<bool, bool>> soundChecks;  // (loud, restore)
    std::int16_t soundCheckAnswer = 0;
};

// Records the sound checks it was asked for; a check that is not a restore changes the levels
// when `changesLevels` is set, as a sound server at low volume would.
class FakeSoundLevels : public SoundLevels {
  public:
    std::int16_t CheckSoundLevels(bool loud, bool restore) override {
        checks.push_back({loud, restore});
        if (!restore && loud && changesLevels) {
            changed = true;
            return 2;
        }
        return restore && changed ? 2 : 0;
    }
    bool SoundChanged() const override { return changed; }

    std::vector<std::pair<bool, bool>> checks;  // (loud, restore)
    bool changesLevels = false;
    bool changed = false;
};

}  // namespace wakeline::testing
