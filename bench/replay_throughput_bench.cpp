// Throughput of the whole program on a recorded voyage: `wakeline --headless --replay FILE`
// over 100,000 track records one second apart, a record every 10 seconds, the disk written
// every 900 seconds, the track directory on a tmpfs so that the disk does not set the pace.
// The program runs as a child process; the time is the wall-clock time from its start to
// its close, start-up and the closing flush included.

#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "base/date_time.h"
#include "livedata/voyage_simulator.h"

extern char** environ;

namespace {

namespace fs = std::filesystem;

constexpr std::int64_t kLines = 100000;

// The voyage, its settings and the traces directory, made once for all runs.
struct Boat {
    fs::path dir;
    fs::path replay;
    fs::path ini;

    Boat() {
        const fs::path base = fs::is_directory("/dev/shm") ? "/dev/shm" : fs::temp_directory_path();
        dir = base / ("wakeline_replay_bench_" + std::to_string(::getpid()));
        fs::create_directories(dir / "traces");
        fs::create_directories(dir / "config/Wakeline");
        ini = dir / "SeaClear_2.ini";
        std::ofstream(ini, std::ios::binary)
            << "[Program Setup]\r\nDDE=1\r\nTrack Time=10\r\nTrack Distance=0\r\n"
               "Track CompDev=0\r\nTrack Dir="
            << (dir / "traces").string() << "\r\n";
        std::ofstream(dir / "config/Wakeline/Wakeline.conf") << "[Settings]\nSetLogData=True\n";

        replay = dir / "voyage.TRT";
        std::ofstream out(replay, std::ios::binary);
        wakeline::VoyageSimulator voyage;
        const wakeline::DateTime start = wakeline::DateTimeFromFields({2026, 6, 1, 10, 0, 0});
        for (std::int64_t n = 0; n < kLines; ++n) {
            out << wakeline::FormatStampTime(start +
                                             static_cast<double>(n) / wakeline::kSecondsPerDay)
                << " CZ," << voyage.DataLine(n) << "\r\n";
        }
    }
    ~Boat() { fs::remove_all(dir); }
};

// Runs the program once; its exit status, or -1 when it could not run or was killed.
int RunReplay(const Boat& boat) {
    for (const auto& entry : fs::directory_iterator(boat.dir / "traces")) {
        fs::remove(entry.path());
    }
    std::vector<std::string> env = {"XDG_CONFIG_HOME=" + (boat.dir / "config").string(),
                                    "XDG_STATE_HOME=" + (boat.dir / "state").string(), "TZ=UTC",
                                    "HOME=" + boat.dir.string()};
    std::vector<std::string> args = {WAKELINE_BINARY_PATH, "--headless", "--replay",
                                     boat.replay.string(), boat.ini.string() + ",,900"};
    std::vector<char*> argv;
    for (std::string& arg : args) {
        argv.push_back(arg.data());
    }
    argv.push_back(nullptr);
    std::vector<char*> envp;
    for (std::string& entry : env) {
        envp.push_back(entry.data());
    }
    envp.push_back(nullptr);

    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    pid_t pid = 0;
    const int spawned = posix_spawn(&pid, argv[0], &actions, nullptr, argv.data(), envp.data());
    posix_spawn_file_actions_destroy(&actions);
    if (spawned != 0) {
        return -1;
    }
    int status = 0;
    if (::waitpid(pid, &status, 0) != pid || !WIFEXITED(status)) {
        return -1;
    }
    return WEXITSTATUS(status);
}

void BM_ReplayThroughput(benchmark::State& state) {
    static const Boat boat;
    for (auto _ : state) {
        if (RunReplay(boat) != 0) {
            state.SkipWithError("wakeline did not close cleanly");
            break;
        }
    }
    state.counters["lines_per_second"] =
        benchmark::Counter(static_cast<double>(kLines) * static_cast<double>(state.iterations()),
                           benchmark::Counter::kIsRate);
}
BENCHMARK(BM_ReplayThroughput)->UseRealTime()->Unit(benchmark::kMillisecond)->Iterations(5);

}  // namespace
