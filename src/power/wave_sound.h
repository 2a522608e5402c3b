#pragma once
// A short sound as 16-bit PCM samples, the alarm's chime made from nothing but arithmetic, and
// the WAV file form it is kept in beside the programs.

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "base/status.h"

namespace wakeline {

struct WaveSound {
    std::uint32_t rate = 44100;  // samples per second per channel
    std::uint16_t channels = 1;  // 1 or 2; stereo samples are interleaved left, right
    std::vector<std::int16_t> samples;
};

// The chime: a struck bell, its four partials each dying away at its own pace, 0.8 seconds at
// 44100 Hz mono, peaking at 80 % of full scale, starting and ending at silence so that a
// restart in the middle of it does not click more than a bell would.
WaveSound MakeChime();

// The bytes of a canonical 44-byte-header RIFF WAVE file holding `sound`.
std::string WaveFileBytes(const WaveSound& sound);

// Reads the bytes of a WAV file. Only 16-bit PCM with one or two channels is taken; chunks
// other than "fmt " and "data" are skipped. A failure names `path` and what is wrong (not a
// WAV file, its format, a chunk cut short); a data chunk cut short keeps the whole samples it
// has, as players do.
Result<WaveSound> ParseWaveFile(std::string_view bytes, const std::string& path);

}  // namespace wakeline
