// The sound check and the chime against a real PulseAudio, started for each test on a null
// sink in a runtime directory of its own, and against no server at all.

#include "power/platform/system_sound.h"

#include <gtest/gtest.h>
#include <pulse/error.h>
#include <pulse/simple.h>
#include <unistd.h>

#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <iterator>
#include <optional>
#include <string>
#include <thread>
#include <vector>

namespace wakeline {
namespace {

namespace fs = std::filesystem;

std::string ChimePath() {
    return (fs::path(WAKELINE_BINARY).parent_path() / "chime.wav").string();
}

// Runs a shell command, bounded by `timeout`, and returns its standard output, or nothing when
// it failed.
std::optional<std::string> Shell(const std::string& command) {
    FILE* pipe = ::popen(("timeout 10 " + command + " 2>/dev/null").c_str(), "r");
    if (pipe == nullptr) {
        return std::nullopt;
    }
    std::string out;
    char buffer[4096];
    while (std::size_t n = std::fread(buffer, 1, sizeof buffer, pipe)) {
        out.append(buffer, n);
    }
    return ::pclose(pipe) == 0 ? std::optional(out) : std::nullopt;
}

// Points libpulse (ours and pactl's) at a runtime directory of the test's own, and starts a
// PulseAudio there with one null sink when asked. Everything is undone on destruction,
// whatever the test's outcome.
class PulseServer {
  public:
    explicit PulseServer(bool start) {
        dir_ = fs::temp_directory_path() / ("wakeline_pulse_" + std::to_string(::getpid()));
        std::error_code ignored;
        fs::remove_all(dir_, ignored);
        fs::create_directories(dir_);
        ::setenv("XDG_RUNTIME_DIR", dir_.c_str(), 1);
        ::unsetenv("PULSE_SERVER");  // a server named here keeps pulseaudio from starting
        if (start) {
            Start();
        } else {
            // Nor may libpulse find a system-wide server.
            ::setenv("PULSE_SERVER", ("unix:" + (dir_ / "none").string()).c_str(), 1);
        }
    }
    ~PulseServer() {
        Kill();
        std::error_code ignored;
        fs::remove_all(dir_, ignored);
        ::unsetenv("PULSE_SERVER");
        ::unsetenv("XDG_RUNTIME_DIR");
    }

    void Start() {
        if (!Shell("pulseaudio --version")) {
            why_ = "pulseaudio is not installed";
            return;
        }
        running_ = Shell(
                       "pulseaudio --start --exit-idle-time=-1 -n "
                       "--load=module-native-protocol-unix "
                       "--load='module-null-sink sink_name=test_sink'") &&
                   Shell("pactl set-default-sink test_sink");
        if (!running_) {
            why_ = "PulseAudio does not start here";
        }
    }
    // Ends the server and waits (at most 5 s) until it is gone: `--kill` only asks.
    void Kill() {
        Shell("pulseaudio --kill");
        for (int i = 0; i < 100 && Shell("pulseaudio --check"); ++i) {
            std::this_thread::sleep_for(std::chrono::milliseconds(50));
        }
    }

    bool Running() const { return running_; }
    const std::string& Why() const { return why_; }

  private:
    fs::path dir_;
    bool running_ = false;
    std::string why_;
};

// The first channel's volume in percent and the mute switch of a `pactl list` section.
struct Level {
    double percent = -1;
    bool muted = false;
};

Level ParseLevel(const std::string& listing) {
    Level level;
    const std::size_t volume = listing.find("Volume: ");
    if (volume != std::string::npos) {
        const std::size_t colon = listing.find(": ", volume + 8);
        level.percent = std::strtod(listing.c_str() + colon + 2, nullptr) * 100.0 / 65536;
    }
    level.muted = listing.find("Mute: yes") != std::string::npos;
    return level;
}

Level SinkLevel() {
    return ParseLevel(Shell("pactl get-sink-volume test_sink").value_or("") +
                      Shell("pactl get-sink-mute test_sink").value_or(""));
}

// Our chime stream is the only sink input.
std::string SinkInput() {
    const std::string list = Shell("pactl list short sink-inputs").value_or("");
    return list.substr(0, list.find('\t'));
}

Level SinkInputLevel() {
    return ParseLevel(Shell("pactl list sink-inputs").value_or(""));
}

// Records the null sink's monitor, mono 44100 Hz, for `seconds` while `during` runs. The null
// sink runs in real time, so each 10 ms read returns within about 10 ms; a server gone away
// ends the recording.
std::vector<std::int16_t> Record(double seconds, const std::function<void()>& during) {
    const pa_sample_spec spec{PA_SAMPLE_S16LE, 44100, 1};
    pa_buffer_attr attr{};
    attr.maxlength = static_cast<std::uint32_t>(-1);
    attr.fragsize = 882;  // 10 ms
    int error = 0;
    pa_simple* monitor =
        pa_simple_new(nullptr, "wakeline test", PA_STREAM_RECORD, "test_sink.monitor", "monitor",
                      &spec, nullptr, &attr, &error);
    if (monitor == nullptr) {
        ADD_FAILURE() << "cannot record: " << pa_strerror(error);
        during();
        return {};
    }
    std::vector<std::int16_t> samples;
    std::thread recorder([&] {
        std::int16_t chunk[441];
        for (int i = 0; i < seconds * 100; ++i) {
            if (pa_simple_read(monitor, chunk, sizeof chunk, &error) < 0) {
                break;
            }
            samples.insert(samples.end(), std::begin(chunk), std::end(chunk));
        }
    });
    during();
    recorder.join();
    pa_simple_free(monitor);
    return samples;
}

// The loudest 10 ms in a recording, as RMS.
double LoudestRms(const std::vector<std::int16_t>& samples) {
    double loudest = 0;
    for (std::size_t at = 0; at + 441 <= samples.size(); at += 441) {
        double sum = 0;
        for (std::size_t i = at; i < at + 441; ++i) {
            sum += double(samples[i]) * samples[i];
        }
        loudest = std::max(loudest, std::sqrt(sum / 441));
    }
    return loudest;
}

TEST(SystemSound, RaisesBothLinesPutsThemBackAndChimesOnTheSpeakers) {
    PulseServer server(true);
    if (!server.Running()) {
        GTEST_SKIP() << server.Why();
    }
    ASSERT_TRUE(Shell("pactl set-sink-volume test_sink 30%"));
    ASSERT_TRUE(Shell("pactl set-sink-mute test_sink 1"));
    SystemSound sound(ChimePath());
    SoundLevels& levels = sound.Levels();

    // Loud off: nothing changes, but the chime's stream now exists.
    EXPECT_EQ(levels.CheckSoundLevels(false, false), 0) << sound.LevelsProblem().Message();
    EXPECT_NEAR(SinkLevel().percent, 30, 1);
    EXPECT_TRUE(SinkLevel().muted);
    const std::string input = SinkInput();
    ASSERT_FALSE(input.empty());
    ASSERT_TRUE(Shell("pactl set-sink-input-volume " + input + " 20%"));
    EXPECT_NEAR(SinkInputLevel().percent, 20, 1);

    // Speakers: volume and mute; wave line: volume.
    EXPECT_EQ(levels.CheckSoundLevels(true, false), 3) << sound.LevelsProblem().Message();
    EXPECT_TRUE(levels.SoundChanged());
    EXPECT_NEAR(SinkLevel().percent, 100, 1);
    EXPECT_FALSE(SinkLevel().muted);
    EXPECT_NEAR(SinkInputLevel().percent, 100, 1);
    EXPECT_FALSE(SinkInputLevel().muted);

    // Loud, the chime sounds in the null sink's monitor, and played out, its stream corks itself
    // again so that the sink may sleep.
    const auto chime = Record(1.5, [&] {
        std::this_thread::sleep_for(std::chrono::milliseconds(300));
        const Status played = sound.Chime().PlayChime();
        EXPECT_TRUE(played.Ok()) << played.Message();
    });
    EXPECT_GT(LoudestRms(chime), 3000);
    bool corked = false;
    for (int i = 0; i < 30 && !corked; ++i) {
        corked =
            Shell("pactl list sink-inputs").value_or("").find("Corked: yes") != std::string::npos;
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
    }
    EXPECT_TRUE(corked);

    EXPECT_EQ(levels.CheckSoundLevels(true, true), 3) << sound.LevelsProblem().Message();
    EXPECT_NEAR(SinkLevel().percent, 30, 1);
    EXPECT_TRUE(SinkLevel().muted);
    EXPECT_NEAR(SinkInputLevel().percent, 20, 1);

    // The server restarts (as PipeWire does): the next check connects again and finds the new
    // server's sink at full volume.
    server.Kill();
    server.Start();
    ASSERT_TRUE(server.Running());
    EXPECT_EQ(levels.CheckSoundLevels(true, false), 0) << sound.LevelsProblem().Message();
}

TEST(SystemSound, WithoutAServerOrAChimeFileSaysWhy) {
    PulseServer nothing(false);
    SystemSound sound(ChimePath());
    EXPECT_EQ(sound.Levels().CheckSoundLevels(true, false), -1);
    EXPECT_NE(sound.LevelsProblem().Message().find("could not connect to the sound server: "),
              std::string::npos)
        << sound.LevelsProblem().Message();
    const Status played = sound.Chime().PlayChime();
    EXPECT_FALSE(played.Ok());
    EXPECT_FALSE(played.Reason().empty());
    EXPECT_FALSE(sound.Levels().SoundChanged());

    SystemSound missing("/nonexistent/chime.wav");
    EXPECT_EQ(missing.Chime().PlayChime().Message(),
              "could not read /nonexistent/chime.wav: No such file or directory");
}

}  // namespace
}  // namespace wakeline
