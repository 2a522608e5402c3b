// The time from a data line's arrival on the chart plotter link to the repaint of what it
// changed: the navigation centre's window in this process (under Xvfb, or Qt's offscreen
// platform), its link connected to a stand-in chart plotter here too. Each iteration writes
// the voyage's next line and stops the clock once the first value label whose text changed
// has painted itself. Besides the time, it counts the value labels painted per line: a label
// whose text stayed must not be painted again, or 23 labels repaint at every line on a slow
// chart-table computer.

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QElapsedTimer>
#include <QEvent>
#include <QLabel>
#include <QTcpServer>
#include <QTcpSocket>
#include <QWindow>
#include <algorithm>
#include <array>
#include <chrono>
#include <cstdint>
#include <optional>
#include <string>

#include "bench_boat.h"
#include "display/window/main_window.h"
#include "livedata/field_table.h"
#include "shell/window/window_run.h"
#include "window_benchmarks.h"

namespace wakeline::bench {
namespace {

using Clock = std::chrono::steady_clock;

constexpr int kStartTimeoutMs = 10000;
// A line whose repaint takes this long has surely changed nothing that is shown.
constexpr auto kLineTimeout = std::chrono::seconds(1);

// Watches the paint events of the value labels: counts them per row, and notes when the first
// label whose text differs from the one noted before the line has finished painting.
class PaintWatch : public QObject {
  public:
    // The window's rows must all exist (they do once the layout has been applied).
    explicit PaintWatch(const MainWindow& window) {
        for (std::size_t row = 0; row < kFieldCount; ++row) {
            labels_[row] = window.ValueLabel(row);
            labels_[row]->installEventFilter(this);
        }
    }

    void NoteTexts() {
        for (std::size_t row = 0; row < kFieldCount; ++row) {
            before_[row] = labels_[row]->text();
        }
        painted_.fill(0);
        repainted_.reset();
    }
    bool Repainted() const { return repainted_.has_value(); }
    Clock::time_point RepaintedAt() const { return *repainted_; }
    bool Changed(std::size_t row) const { return labels_[row]->text() != before_[row]; }
    int Paints(std::size_t row) const { return painted_[row]; }

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() != QEvent::Paint) {
            return false;
        }
        for (std::size_t row = 0; row < kFieldCount; ++row) {
            if (watched != labels_[row]) {
                continue;
            }
            ++painted_[row];
            if (!repainted_ && Changed(row)) {
                // The label paints itself here and now, so that the clock stops after its paint
                // rather than before it.
                static_cast<QObject*>(labels_[row])->event(event);
                repainted_ = Clock::now();
                return true;
            }
        }
        return false;
    }

  private:
    std::array<QLabel*, kFieldCount> labels_{};
    std::array<QString, kFieldCount> before_;
    std::array<int, kFieldCount> painted_{};
    std::optional<Clock::time_point> repainted_;
};

// Runs the event loop until `done` or the time is up.
template <typename Done>
bool RunUntil(Done done, Clock::duration timeout) {
    const Clock::time_point until = Clock::now() + timeout;
    while (!done()) {
        if (Clock::now() >= until) {
            return false;
        }
        QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
    }
    return true;
}

void BM_LineToRepaint(benchmark::State& state, const BenchBoat& boat) {
    QTcpServer plotter;
    if (!plotter.listen(QHostAddress::LocalHost, 0)) {
        state.SkipWithError("no loopback port for the chart plotter link");
        return;
    }
    ProgramOptions options;
    options.link = "127.0.0.1:" + std::to_string(plotter.serverPort());
    options.commandLine = boat.Ini().string();
    WindowRun run(options);
    if (run.Start() >= 0) {
        state.SkipWithError("the window's run did not start");
        return;
    }
    MainWindow& window = run.Window();
    QTcpSocket* link = nullptr;
    const bool up = RunUntil(
        [&] {
            if (link == nullptr && plotter.hasPendingConnections()) {
                link = plotter.nextPendingConnection();
            }
            return link != nullptr && window.windowHandle() != nullptr &&
                   window.windowHandle()->isExposed();
        },
        std::chrono::milliseconds(kStartTimeoutMs));
    if (!up) {
        state.SkipWithError("the link did not connect or the window was not shown");
        return;
    }

    std::size_t next = 0;
    const auto send = [&] {
        link->write(QByteArray::fromStdString(boat.Line(next++) + "\n"));
        link->flush();
    };
    // The first lines lay the rows out and start the track; they are not what a line costs.
    for (int warm = 0; warm < 5; ++warm) {
        send();
        RunUntil([] { return false; }, std::chrono::milliseconds(100));
    }

    if (window.ValueLabel(kFieldCount - 1) == nullptr) {
        state.SkipWithError("the window's rows were not laid out");
        return;
    }
    PaintWatch watch(window);
    std::int64_t lines = 0;
    std::int64_t changed = 0;
    std::int64_t painted = 0;
    std::int64_t paintedUnchanged = 0;
    double slowest = 0;
    for (auto _ : state) {
        watch.NoteTexts();
        const Clock::time_point sent = Clock::now();
        send();
        if (!RunUntil([&] { return watch.Repainted(); }, kLineTimeout)) {
            state.SkipWithError("a data line changed no value label on the screen");
            return;
        }
        const double seconds = std::chrono::duration<double>(watch.RepaintedAt() - sent).count();
        state.SetIterationTime(seconds);
        slowest = std::max(slowest, seconds);
        // The other labels of the same repaint, and whatever else the line left to do.
        QCoreApplication::processEvents();
        ++lines;
        for (std::size_t row = 0; row < kFieldCount; ++row) {
            const bool rowChanged = watch.Changed(row);
            changed += rowChanged ? 1 : 0;
            painted += watch.Paints(row) > 0 ? 1 : 0;
            paintedUnchanged += !rowChanged && watch.Paints(row) > 0 ? 1 : 0;
        }
    }
    const auto perLine = [&](std::int64_t count) {
        return static_cast<double>(count) / static_cast<double>(std::max<std::int64_t>(lines, 1));
    };
    state.counters["labels_changed_per_line"] = perLine(changed);
    state.counters["labels_painted_per_line"] = perLine(painted);
    state.counters["unchanged_labels_painted_per_line"] = perLine(paintedUnchanged);
    state.counters["slowest_ms"] = slowest * 1e3;
}

}  // namespace

void RegisterRepaintLatencyBenchmark(const BenchBoat& boat) {
    benchmark::RegisterBenchmark(
        "BM_LineToRepaint", [&boat](benchmark::State& state) { BM_LineToRepaint(state, boat); })
        ->UseManualTime()
        ->Unit(benchmark::kMicrosecond);
}

}  // namespace wakeline::bench
