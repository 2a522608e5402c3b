// CPU time of the navigation centre's window while it is at sea: `wakeline --link` as a child
// process, fed by a chart plotter stand-in on a loopback port with one data line a second for
// WAKELINE_BENCH_SECONDS (default 60), against `wakeline_empty_window` for the same time. The
// ratio tells what the window costs beyond what any Qt window costs on this display.
//
// Start-up is left out: both programs have a few seconds to settle after they are up (the
// link connected, the empty window shown) before the clock starts. The CPU time is read from
// the child's process CPU clock, which counts every thread to the nanosecond; /proc's ticks
// are too coarse for an empty window's few milliseconds a minute.

#include <arpa/inet.h>
#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

#include "bench_boat.h"
#include "window_benchmarks.h"

extern char** environ;

namespace wakeline::bench {
namespace {

constexpr int kDefaultSeconds = 60;
// Long enough for the first lines' layout, the first track record and the fonts' caches.
constexpr int kSettleSeconds = 3;
constexpr int kStartTimeoutMs = 15000;

int MeasuredSeconds() {
    const char* text = std::getenv("WAKELINE_BENCH_SECONDS");
    if (text == nullptr || *text == '\0') {
        return kDefaultSeconds;
    }
    const int seconds = std::atoi(text);
    return seconds > 0 ? seconds : kDefaultSeconds;
}

timespec Now() {
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return now;
}

double Seconds(const timespec& t) {
    return static_cast<double>(t.tv_sec) + static_cast<double>(t.tv_nsec) * 1e-9;
}

void SleepUntil(const timespec& start, int wholeSeconds) {
    timespec at = start;
    at.tv_sec += wholeSeconds;
    while (clock_nanosleep(CLOCK_MONOTONIC, TIMER_ABSTIME, &at, nullptr) == EINTR) {
    }
}

// The child's CPU time so far, user and system, all threads; from /proc's clock ticks when the
// kernel does not lend out the process's CPU clock.
std::optional<double> CpuSeconds(pid_t pid) {
    clockid_t clock{};
    timespec used{};
    if (clock_getcpuclockid(pid, &clock) == 0 && clock_gettime(clock, &used) == 0) {
        return Seconds(used);
    }
    std::ifstream stat("/proc/" + std::to_string(pid) + "/stat");
    std::string text((std::istreambuf_iterator<char>(stat)), std::istreambuf_iterator<char>());
    const std::size_t end = text.rfind(')');
    if (end == std::string::npos) {
        return std::nullopt;
    }
    std::istringstream fields(text.substr(end + 1));
    std::string field;
    std::vector<std::string> values;
    while (fields >> field) {
        values.push_back(field);
    }
    // After the command come the state (field 3) ... utime (field 14) and stime (field 15).
    if (values.size() < 13) {
        return std::nullopt;
    }
    const double ticks = std::stod(values[11]) + std::stod(values[12]);
    return ticks / static_cast<double>(sysconf(_SC_CLK_TCK));
}

// The chart plotter's side of the link: a listening socket on a free loopback port.
class PlotterStandIn {
  public:
    PlotterStandIn() {
        listen_ = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t length = sizeof address;
        if (listen_ < 0 || ::bind(listen_, reinterpret_cast<sockaddr*>(&address), length) != 0 ||
            ::listen(listen_, 1) != 0 ||
            ::getsockname(listen_, reinterpret_cast<sockaddr*>(&address), &length) != 0) {
            return;
        }
        port_ = ntohs(address.sin_port);
    }
    ~PlotterStandIn() {
        for (const int fd : {peer_, listen_}) {
            if (fd >= 0) {
                ::close(fd);
            }
        }
    }
    PlotterStandIn(const PlotterStandIn&) = delete;
    PlotterStandIn& operator=(const PlotterStandIn&) = delete;

    int Port() const { return port_; }
    bool Accept(int timeoutMs) {
        pollfd waiting{listen_, POLLIN, 0};
        if (port_ == 0 || ::poll(&waiting, 1, timeoutMs) != 1) {
            return false;
        }
        peer_ = ::accept4(listen_, nullptr, nullptr, SOCK_CLOEXEC);
        return peer_ >= 0;
    }
    bool Send(const std::string& line) {
        const std::string sent = line + "\n";
        return ::send(peer_, sent.data(), sent.size(), MSG_NOSIGNAL) ==
               static_cast<ssize_t>(sent.size());
    }

  private:
    int listen_ = -1;
    int peer_ = -1;
    int port_ = 0;
};

// A program started for a measurement; ended with SIGTERM and reaped when it goes.
class Child {
  public:
    // `stdoutFd`, when not -1, becomes the child's standard output; standard error and
    // otherwise standard output go to `logPath`.
    Child(std::vector<std::string> args, const std::string& logPath, int stdoutFd = -1) {
        std::vector<char*> argv;
        for (std::string& arg : args) {
            argv.push_back(arg.data());
        }
        argv.push_back(nullptr);
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, logPath.c_str(),
                                         O_WRONLY | O_CREAT | O_TRUNC, 0644);
        if (stdoutFd >= 0) {
            posix_spawn_file_actions_adddup2(&actions, stdoutFd, STDOUT_FILENO);
        } else {
            posix_spawn_file_actions_adddup2(&actions, STDERR_FILENO, STDOUT_FILENO);
        }
        if (posix_spawn(&pid_, argv[0], &actions, nullptr, argv.data(), environ) != 0) {
            pid_ = -1;
        }
        posix_spawn_file_actions_destroy(&actions);
    }
    ~Child() { Stop(); }
    Child(const Child&) = delete;
    Child& operator=(const Child&) = delete;

    pid_t Pid() const { return pid_; }
    bool Running() {
        int status = 0;
        if (pid_ > 0 && ::waitpid(pid_, &status, WNOHANG) == pid_) {
            pid_ = -1;
        }
        return pid_ > 0;
    }
    // SIGTERM, then the child's whole CPU time (start-up and close included) once it has gone.
    std::optional<double> Stop() {
        if (pid_ <= 0) {
            return std::nullopt;
        }
        ::kill(pid_, SIGTERM);
        int status = 0;
        rusage usage{};
        const pid_t reaped = ::wait4(pid_, &status, 0, &usage);
        pid_ = -1;
        if (reaped <= 0) {
            return std::nullopt;
        }
        return static_cast<double>(usage.ru_utime.tv_sec + usage.ru_stime.tv_sec) +
               static_cast<double>(usage.ru_utime.tv_usec + usage.ru_stime.tv_usec) * 1e-6;
    }

  private:
    pid_t pid_ = -1;
};

struct CpuUse {
    double seconds = 0;   // over the measured time
    double wall = 0;      // the measured time
    double startup = 0;   // before the measured time
    double wholeRun = 0;  // start to end, the close included
    std::string error;    // not empty when the measurement failed
};

// Lets the child settle, then measures `seconds` of its CPU time, calling `second` at the start
// of each whole second from the moment it was up (the settling included).
CpuUse Measure(Child& child, int seconds, const std::function<bool(int)>& second) {
    CpuUse use;
    const timespec up = Now();
    std::optional<double> before;
    std::optional<double> after;
    timespec from{};
    timespec to{};
    for (int k = 0;; ++k) {
        SleepUntil(up, k);
        if (!child.Running()) {
            use.error = "the program ended before the measurement did";
            return use;
        }
        if (k == kSettleSeconds) {
            from = Now();
            before = CpuSeconds(child.Pid());
        }
        if (k == kSettleSeconds + seconds) {
            to = Now();
            after = CpuSeconds(child.Pid());
            break;
        }
        if (!second(k)) {
            use.error = "the program stopped taking data lines";
            return use;
        }
    }
    const std::optional<double> whole = child.Stop();
    if (!before || !after || !whole) {
        use.error = "the program's CPU time cannot be read";
        return use;
    }
    use.seconds = *after - *before;
    use.wall = Seconds(to) - Seconds(from);
    use.startup = *before;
    use.wholeRun = *whole;
    return use;
}

CpuUse MeasureWakeline(const BenchBoat& boat, int seconds) {
    PlotterStandIn plotter;
    if (plotter.Port() == 0) {
        return {.error = "no loopback port for the chart plotter link"};
    }
    Child wakeline({WAKELINE_BINARY_PATH, "--link", "127.0.0.1:" + std::to_string(plotter.Port()),
                    boat.Ini().string()},
                   (boat.Dir() / "wakeline.log").string());
    if (wakeline.Pid() <= 0) {
        return {.error = "wakeline cannot be started"};
    }
    if (!plotter.Accept(kStartTimeoutMs)) {
        return {.error = "wakeline's link did not connect (see " +
                         (boat.Dir() / "wakeline.log").string() + ")"};
    }
    // Each second a new line, as the chart plotter sends one whenever its data change.
    return Measure(wakeline, seconds,
                   [&](int k) { return plotter.Send(boat.Line(static_cast<std::size_t>(k))); });
}

CpuUse MeasureEmptyWindow(const BenchBoat& boat, int seconds) {
    int pipeFds[2];
    if (::pipe2(pipeFds, O_CLOEXEC) != 0) {
        return {.error = "no pipe for the empty window"};
    }
    Child empty({EMPTY_WINDOW_BINARY_PATH}, (boat.Dir() / "empty_window.log").string(), pipeFds[1]);
    ::close(pipeFds[1]);
    pollfd shown{pipeFds[0], POLLIN, 0};
    char said[16] = {};
    const bool up = empty.Pid() > 0 && ::poll(&shown, 1, kStartTimeoutMs) == 1 &&
                    ::read(pipeFds[0], said, sizeof said - 1) > 0;
    ::close(pipeFds[0]);
    if (!up) {
        return {.error = "the empty window did not come up"};
    }
    return Measure(empty, seconds, [](int) { return true; });
}

void Report(benchmark::State& state, const std::string& prefix, const CpuUse& use) {
    state.counters[prefix + "cpu_seconds"] = use.seconds;
    state.counters[prefix + "cpu_percent"] = 100.0 * use.seconds / use.wall;
    state.counters[prefix + "startup_cpu_seconds"] = use.startup;
    state.counters[prefix + "whole_run_cpu_seconds"] = use.wholeRun;
}

void BM_WindowCpu(benchmark::State& state, const BenchBoat& boat) {
    const int seconds = MeasuredSeconds();
    for (auto _ : state) {
        const CpuUse window = MeasureWakeline(boat, seconds);
        if (!window.error.empty()) {
            state.SkipWithError(("wakeline: " + window.error).c_str());
            return;
        }
        const CpuUse empty = MeasureEmptyWindow(boat, seconds);
        if (!empty.error.empty()) {
            state.SkipWithError(("empty window: " + empty.error).c_str());
            return;
        }
        state.SetIterationTime(window.wall + empty.wall);
        Report(state, "wakeline_", window);
        Report(state, "empty_", empty);
        state.counters["measured_seconds"] = window.wall;
        // CPU per wall second of each, so that a few milliseconds more or less of either's
        // measured time do not tip the ratio.
        state.counters["cpu_ratio"] = (window.seconds / window.wall) / (empty.seconds / empty.wall);
    }
}

}  // namespace

void RegisterWindowCpuBenchmark(const BenchBoat& boat) {
    benchmark::RegisterBenchmark("BM_WindowCpu",
                                 [&boat](benchmark::State& state) { BM_WindowCpu(state, boat); })
        ->Iterations(1)
        ->UseManualTime()
        ->Unit(benchmark::kSecond);
}

}  // namespace wakeline::bench
