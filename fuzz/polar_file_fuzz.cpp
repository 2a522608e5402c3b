// Feeds arbitrary bytes to the polar file reader as the text of "WakelinePolar.txt", then
// looks values up in whatever was read and writes it back. Beyond the sanitizers' checks it
// insists that reading leaves a usable set (at most five tables, a current index among them)
// and that a written file reads back without complaint and with the same sails, and that each
// sail's polar diagram stays on its half circle with a handful of rings.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <optional>
#include <string>
#include <string_view>

#include "performance/polar_diagram.h"
#include "performance/polar_file_reader.h"
#include "performance/polar_file_writer.h"
#include "performance/table_defaults.h"
#include "performance/target_speed.h"
#include "performance/wind_correction.h"
#include "require.h"

using wakeline::fuzz::Require;

namespace {

using namespace wakeline;

void LookUpEverywhere(const PerformanceTables& tables) {
    for (float angle : {-180.0f, -40.0f, 0.0f, 45.0f, 90.0f, 135.0f, 180.0f}) {
        for (float speed : {-1.0f, 0.0f, 5.0f, 12.5f, 30.0f}) {
            (void)AngleCorrectionAt(angle, speed, tables.Correction);
            (void)SpeedCorrectionAt(angle, speed, tables.Correction);
            for (int p = 0; p < tables.Polars.Count; ++p) {
                const PolarTable& table = tables.Polars.Tables[static_cast<std::size_t>(p)];
                (void)TargetSpeedAt(angle, speed, table);
                (void)RowSpeedAt(angle, table.RowCount, table);
                (void)LivePolarPoint(table, angle, speed);
            }
        }
    }
}

void DrawEveryDiagram(const PolarSet& set) {
    for (int p = 0; p < set.Count; ++p) {
        const PolarDiagram d = MakePolarDiagram(set.Tables[static_cast<std::size_t>(p)]);
        Require(d.maxSpeed >= 1.0 && d.ringStep > 0.0 && d.maxSpeed / d.ringStep <= 7.0);
        for (const PolarCurve& curve : d.curves) {
            Require(!curve.samples.empty() && curve.samples.size() <= 200);
            double previous = -1.0;
            for (const PolarSample& s : curve.samples) {
                Require(s.angle > previous && s.angle <= 180.0);
                Require(s.speed >= 0.0 && s.speed <= d.maxSpeed);
                previous = s.angle;
            }
        }
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    PerformanceTables tables;
    tables.Correction = DefaultCorrectionTable();
    (void)ReadPolarText(text, "WakelinePolar.txt", tables);
    const PolarSet& set = tables.Polars;
    Require(set.Count >= 0 && set.Count <= 5);
    Require(set.Current >= -1 && set.Current < set.Count);
    LookUpEverywhere(tables);
    DrawEveryDiagram(set);

    const std::optional<std::string> written = PolarFileText(tables, 38517.75);
    if (!written) {
        return 0;  // counts overran their arrays: such tables are not written
    }
    PerformanceTables again;
    again.Correction = DefaultCorrectionTable();
    const PolarReadReport report = ReadPolarText(*written, "WakelinePolar.txt", again);
    Require(report.messages.empty());
    Require(again.Polars.Count == set.Count);
    Require((again.Polars.Current >= 0) == (set.Current >= 0));
    for (int p = 0; p < set.Count; ++p) {
        const auto index = static_cast<std::size_t>(p);
        Require(again.Polars.Tables[index].Name == set.Tables[index].Name);
        Require(again.Polars.Tables[index].RowCount == set.Tables[index].RowCount);
    }
    return 0;
}
