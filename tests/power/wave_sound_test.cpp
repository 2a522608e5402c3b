// The chime's sound and the WAV form it is kept in: a file worked out byte by byte, and broken
// files that must be refused with a reason or read as far as they hold whole samples.

#include "power/wave_sound.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <string>

namespace wakeline {
namespace {

using namespace std::string_literals;

// 8000 Hz mono, samples 1 and -2.
const std::string kTiny =
    "RIFF\x28\0\0\0WAVEfmt \x10\0\0\0\x01\0\x01\0\x40\x1f\0\0\x80\x3e\0\0\x02\0\x10\0"
    "data\x04\0\0\0\x01\0\xfe\xff"s;

TEST(WaveSound, WritesAndReadsTheCanonicalFile) {
    WaveSound tiny{8000, 1, {1, -2}};
    EXPECT_EQ(WaveFileBytes(tiny), kTiny);
    Result<WaveSound> read = ParseWaveFile(kTiny, "tiny.wav");
    ASSERT_TRUE(read.Ok()) << read.GetStatus().Message();
    EXPECT_EQ(read.Value().rate, 8000u);
    EXPECT_EQ(read.Value().channels, 1);
    EXPECT_EQ(read.Value().samples, (std::vector<std::int16_t>{1, -2}));
}

TEST(WaveSound, BrokenFiles) {
    const std::string fmt = kTiny.substr(12, 24);  // "fmt " chunk
    const std::string data = kTiny.substr(36);     // "data" chunk
    std::string eightBit = kTiny;
    eightBit[34] = 8;
    struct Row {
        const char* legend;
        std::string bytes;
        const char* error;  // "" when read, then `samples` whole samples
        std::size_t samples;
    };
    const Row rows[] = {
        {"empty", "", "could not read x.wav: not a WAV file", 0},
        {"big-endian RIFX", "RIFX" + kTiny.substr(4), "could not read x.wav: not a WAV file", 0},
        {"8-bit samples", eightBit,
         "could not read x.wav: not 16-bit PCM in one or two channels (format 1, 8 bits, 1 "
         "channels, 8000 Hz)",
         0},
        {"data before format", kTiny.substr(0, 12) + data + fmt,
         "could not read x.wav: its sound data come before its format", 0},
        {"no data chunk", kTiny.substr(0, 36), "could not read x.wav: it has no sound data", 0},
        {"format cut short", kTiny.substr(0, 30),
         "could not read x.wav: its format chunk is cut short", 0},
        {"data cut inside the second sample", kTiny.substr(0, 47), "", 1},
        {"data cut inside the first sample", kTiny.substr(0, 45),
         "could not read x.wav: it holds no sound", 0},
        {"an odd-sized chunk before the data is skipped with its pad byte",
         kTiny.substr(0, 36) + "LIST\x03\0\0\0abc\0"s + data, "", 2},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.legend);
        Result<WaveSound> read = ParseWaveFile(row.bytes, "x.wav");
        EXPECT_EQ(read.GetStatus().Message(), row.error);
        if (read.Ok()) {
            EXPECT_EQ(read.Value().samples.size(), row.samples);
        }
    }
}

double Rms(const std::vector<std::int16_t>& s, std::size_t from, std::size_t count) {
    double sum = 0;
    for (std::size_t i = from; i < from + count; ++i) {
        sum += double(s[i]) * s[i];
    }
    return std::sqrt(sum / count);
}

TEST(WaveSound, TheChimeIsAShortBellThatDiesAway) {
    const WaveSound chime = MakeChime();
    ASSERT_EQ(chime.samples.size(), 35280u);  // 0.8 s at 44100 Hz
    int peak = 0;
    for (std::int16_t s : chime.samples) {
        peak = std::max(peak, std::abs(int(s)));
    }
    EXPECT_EQ(peak, 26214);  // 80 % of 32767, rounded
    EXPECT_EQ(chime.samples.front(), 0);
    EXPECT_LE(std::abs(int(chime.samples.back())), 1);
    const std::size_t tenth = 4410;
    EXPECT_LT(Rms(chime.samples, chime.samples.size() - tenth, tenth),
              Rms(chime.samples, 0, tenth) / 10);
}

}  // namespace
}  // namespace wakeline
