// Decodes arbitrary bytes as a wind history and makes the wind graph of it, fits its
// oscillation and reads the bytes after the history as a start-time entry. Beyond the
// sanitizers' checks it insists that the graph holds only observations from its start, that its
// axes have a handful of ticks, and that a fit explains at least the share it promises and turns
// after the newest observation.

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "require.h"
#include "wind/wind_file.h"
#include "wind/wind_fit.h"
#include "wind/wind_graph.h"

using wakeline::fuzz::Require;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace wakeline;
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    const WindDecode decoded = DecodeWindData(bytes);
    const WindData& history = decoded.data;
    const DateTime start = DefaultGraphStart(history);

    const WindGraphModel model = MakeWindGraph(history, start);
    Require(model.empty == model.points.empty());
    for (const WindGraphPoint& p : model.points) {
        Require(p.time >= start && p.time <= model.end);
    }
    if (!model.empty) {
        Require(model.directionTicks.size() >= 4 && model.directionTicks.size() <= 8);
        Require(model.speedTicks.size() >= 4 && model.speedTicks.size() <= 8);
        Require(model.timeTicks.size() <= 8);
    }

    if (const auto fit = FitWindOscillation(history, start)) {
        Require(fit->r2 >= kMinimumFitR2 && fit->r2 <= 1.0);
        Require(fit->overlay.periodMinutes >= kShortestPeriodMinutes * 0.999 &&
                fit->overlay.periodMinutes <= kLongestPeriodMinutes * 1.001);
        const DateTime last = history.Obs[std::size_t(history.Count - 1)].Time;
        Require(fit->nextMaximum >= last && fit->nextMinimum >= last);
    }
    (void)AverageLastMinutes(history, 5);

    const std::string_view entry =
        size > kWindFileSize ? std::string_view(bytes).substr(kWindFileSize) : std::string_view();
    if (const auto parsed = ParseGraphStart(entry, start)) {
        Require(std::isfinite(*parsed));
    }
    return 0;
}
