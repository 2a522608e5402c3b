#pragma once
// The sound server as the power alarm uses it, through libpulse (PulseAudio, or PipeWire's
// server of the same protocol): the speakers are the default sink, the wave line is the chime's
// own playback stream, and the chime plays on that stream.
//
// libpulse runs its own thread with its own lock inside this object; the calls here are made
// from the program's one thread and never wait more than half a second for the server, so a
// hung or absent server costs at most that much, and after a failed attempt to reach it no
// new attempt is made for three seconds (the alarm chimes every second). Nothing is connected
// until the first call; a server that went away (PipeWire restarts) is connected again on the
// next call. The server is found as libpulse finds it (PULSE_SERVER, XDG_RUNTIME_DIR); none
// is started.

#include <memory>

#include "base/status.h"
#include "power/chime_player.h"
#include "power/sound_check.h"
#include "power/wave_sound.h"

namespace wakeline {

class PulseSound : public SoundMixer, public ChimePlayer {
  public:
    // `chime` is the sound PlayChime plays, or the failure that says why there is none: then
    // PlayChime fails with it, but the playback stream still exists, so that the wave line can
    // be checked.
    explicit PulseSound(Result<WaveSound> chime);
    ~PulseSound() override;
    PulseSound(const PulseSound&) = delete;
    PulseSound& operator=(const PulseSound&) = delete;

    // Connects when needed and reads both lines afresh: the default sink and the chime
    // stream's sink input. Volumes are read as their loudest channel and set by scaling all
    // channels alike, so the balance the sailor set survives a raise and a restore.
    Status Open() override;
    Result<std::vector<MixerControl>> Controls(MixerLine line) override;
    Result<std::uint32_t> Value(MixerLine line, std::size_t control) override;
    // Waits (at most half a second) until the server has taken the value.
    Status Set(MixerLine line, std::size_t control, std::uint32_t value) override;

    // Stops the chime if it is sounding, writes it again from its start and lets it play;
    // returns without waiting for the server. Between chimes the stream is corked, so that it
    // keeps no sound card awake.
    Status PlayChime() override;

  private:
    struct Impl;
    std::unique_ptr<Impl> impl_;
};

}  // namespace wakeline
