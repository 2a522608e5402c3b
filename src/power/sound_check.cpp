#include "power/sound_check.h"

#include <algorithm>

namespace wakeline {
namespace {

constexpr std::int16_t kLeftAlone = 0;
constexpr std::int16_t kChanged = 1;
constexpr std::int16_t kUnreadable = 3;
constexpr std::int16_t kNoControls = 4;

std::size_t Slot(ControlKind kind) {
    return kind == ControlKind::kVolume ? 0 : 1;
}

// A line's status for a kind is the worst of its controls': one control that could not be
// read outweighs another that was changed.
void Raise(std::int16_t& status, std::int16_t to) {
    status = std::max(status, to);
}

}  // namespace

std::int16_t SoundCheck::CheckSoundLevels(bool loud, bool restore) {
    problem_ = Status();
    if (Status open = mixer_.Open(); !open.Ok()) {
        Note(open);
        return -1;
    }
    LineStatus status[2] = {{kLeftAlone, kLeftAlone}, {kLeftAlone, kLeftAlone}};
    if (restore) {
        Restore(status);
    } else {
        RaiseLine(MixerLine::kSpeakers, loud, status[0]);
        RaiseLine(MixerLine::kWave, loud, status[1]);
    }
    return static_cast<std::int16_t>(status[0][0] + status[0][1] + status[1][0] + status[1][1]);
}

void SoundCheck::RaiseLine(MixerLine line, bool loud, LineStatus& status) {
    Result<std::vector<MixerControl>> controls = mixer_.Controls(line);
    if (!controls.Ok()) {
        Note(controls.GetStatus());
        status[0] = kUnreadable;
        status[1] = kUnreadable;
        return;
    }
    if (controls.Value().empty()) {
        status[0] = kNoControls;
        return;
    }
    for (std::size_t i = 0; i < controls.Value().size(); ++i) {
        const MixerControl& control = controls.Value()[i];
        std::int16_t& kindStatus = status[Slot(control.kind)];
        Result<std::uint32_t> value = mixer_.Value(line, i);
        if (!value.Ok()) {
            Note(value.GetStatus());
            Raise(kindStatus, kUnreadable);
            continue;
        }
        const std::uint32_t now = value.Value();
        const bool quiet = control.kind == ControlKind::kVolume ? now < control.maximum : now != 0;
        if (!loud) {
            continue;
        }
        if (!quiet) {
            // A level this run raised and has not put back still stands changed: the checks
            // that follow the first, one a tick until the sailor answers, keep saying so rather
            // than letting the alarm's state move on under a window that asks about the sound.
            if (StandsRaised(line, i)) {
                Raise(kindStatus, kChanged);
            }
            continue;
        }
        const std::uint32_t target = control.kind == ControlKind::kVolume ? control.maximum : 0;
        if (Status set = mixer_.Set(line, i, target); !set.Ok()) {
            Note(set);
            Raise(kindStatus, kUnreadable);
            continue;
        }
        saved_.values.push_back({line, i, control.kind, now});
        ++saved_.writeCount;
        soundChanged_ = true;
        Raise(kindStatus, kChanged);
    }
}

void SoundCheck::Restore(LineStatus (&status)[2]) {
    for (; saved_.readPosition < saved_.writeCount; ++saved_.readPosition) {
        const SavedMixerValue& saved = saved_.values[saved_.readPosition];
        std::int16_t& kindStatus =
            status[saved.line == MixerLine::kSpeakers ? 0 : 1][Slot(saved.kind)];
        if (Status set = mixer_.Set(saved.line, saved.control, saved.value); !set.Ok()) {
            Note(set);
            Raise(kindStatus, kUnreadable);
            continue;
        }
        Raise(kindStatus, kChanged);
    }
}

bool SoundCheck::StandsRaised(MixerLine line, std::size_t control) const {
    return std::any_of(saved_.values.begin() + static_cast<std::ptrdiff_t>(saved_.readPosition),
                       saved_.values.end(), [&](const SavedMixerValue& saved) {
                           return saved.line == line && saved.control == control;
                       });
}

void SoundCheck::Note(const Status& status) {
    if (problem_.Ok()) {
        problem_ = status;
    }
}

}  // namespace wakeline
