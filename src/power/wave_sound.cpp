#include "power/wave_sound.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace wakeline {
namespace {

void PutLe(std::string& out, std::uint32_t value, int bytes) {
    for (int i = 0; i < bytes; ++i) {
        out.push_back(static_cast<char>((value >> (8 * i)) & 0xFF));
    }
}

std::uint32_t GetLe(std::string_view bytes, std::size_t at, int count) {
    std::uint32_t value = 0;
    for (int i = count - 1; i >= 0; --i) {
        value = (value << 8) | static_cast<unsigned char>(bytes[at + static_cast<std::size_t>(i)]);
    }
    return value;
}

}  // namespace

WaveSound MakeChime() {
    constexpr double kPi = 3.14159265358979323846;
    constexpr double kFundamental = 880.0;  // A5: cuts through wind and engine noise
    // Partials of a small bell (ratio to the fundamental, loudness, seconds to fall to 1/e):
    // the higher ones are the strike and fade first, the fundamental rings on.
    struct Partial {
        double ratio, amplitude, decay;
    };
    constexpr Partial kPartials[] = {
        {1.0, 1.0, 0.30}, {2.0, 0.5, 0.18}, {2.76, 0.35, 0.10}, {5.4, 0.2, 0.05}};
    constexpr double kSeconds = 0.8;
    constexpr double kAttack = 0.005;  // a hammer is not a step: 5 ms up
    constexpr double kRelease = 0.05;  // and the last 50 ms down to silence

    WaveSound sound;
    const std::size_t count = static_cast<std::size_t>(kSeconds * sound.rate);
    std::vector<double> wave(count);
    double peak = 0;
    for (std::size_t i = 0; i < count; ++i) {
        const double t = static_cast<double>(i) / sound.rate;
        double v = 0;
        for (const Partial& p : kPartials) {
            v += p.amplitude * std::exp(-t / p.decay) *
                 std::sin(2 * kPi * kFundamental * p.ratio * t);
        }
        v *= std::min({1.0, t / kAttack, (kSeconds - t) / kRelease});
        wave[i] = v;
        peak = std::max(peak, std::abs(v));
    }
    const double scale = 0.8 * 32767 / peak;
    sound.samples.reserve(count);
    for (double v : wave) {
        sound.samples.push_back(static_cast<std::int16_t>(std::lround(v * scale)));
    }
    return sound;
}

std::string WaveFileBytes(const WaveSound& sound) {
    const std::uint32_t dataBytes = static_cast<std::uint32_t>(sound.samples.size() * 2);
    std::string out = "RIFF";
    PutLe(out, 36 + dataBytes, 4);
    out += "WAVEfmt ";
    PutLe(out, 16, 4);
    PutLe(out, 1, 2);  // PCM
    PutLe(out, sound.channels, 2);
    PutLe(out, sound.rate, 4);
    PutLe(out, sound.rate * sound.channels * 2u, 4);
    PutLe(out, sound.channels * 2u, 2);
    PutLe(out, 16, 2);
    out += "data";
    PutLe(out, dataBytes, 4);
    for (std::int16_t s : sound.samples) {
        PutLe(out, static_cast<std::uint16_t>(s), 2);
    }
    return out;
}

Result<WaveSound> ParseWaveFile(std::string_view bytes, const std::string& path) {
    auto broken = [&path](const std::string& why) { return Status::Failure("read", path, why); };
    if (bytes.size() < 12 || bytes.substr(0, 4) != "RIFF" || bytes.substr(8, 4) != "WAVE") {
        return broken("not a WAV file");
    }
    WaveSound sound;
    bool haveFormat = false;
    std::size_t at = 12;
    while (at + 8 <= bytes.size()) {
        const std::string_view id = bytes.substr(at, 4);
        const std::uint32_t size = GetLe(bytes, at + 4, 4);
        at += 8;
        const std::size_t available = std::min<std::size_t>(size, bytes.size() - at);
        if (id == "fmt ") {
            if (available < 16) {
                return broken("its format chunk is cut short");
            }
            const std::uint32_t format = GetLe(bytes, at, 2);
            sound.channels = static_cast<std::uint16_t>(GetLe(bytes, at + 2, 2));
            sound.rate = GetLe(bytes, at + 4, 4);
            const std::uint32_t bits = GetLe(bytes, at + 14, 2);
            if (format != 1 || bits != 16 || sound.channels < 1 || sound.channels > 2 ||
                sound.rate < 1000 || sound.rate > 192000) {
                return broken("not 16-bit PCM in one or two channels (format " +
                              std::to_string(format) + ", " + std::to_string(bits) + " bits, " +
                              std::to_string(sound.channels) + " channels, " +
                              std::to_string(sound.rate) + " Hz)");
            }
            haveFormat = true;
        } else if (id == "data") {
            if (!haveFormat) {
                return broken("its sound data come before its format");
            }
            const std::size_t frame = 2u * sound.channels;
            const std::size_t whole = available / frame * frame;
            sound.samples.resize(whole / 2);
            for (std::size_t i = 0; i < sound.samples.size(); ++i) {
                sound.samples[i] = static_cast<std::int16_t>(GetLe(bytes, at + 2 * i, 2));
            }
            if (sound.samples.empty()) {
                return broken("it holds no sound");
            }
            return sound;
        }
        at += available + (size & 1);
    }
    return broken(haveFormat ? "it has no sound data" : "it has no format chunk");
}

}  // namespace wakeline
