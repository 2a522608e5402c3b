#include "performance/table_lookup.h"

#include "performance/target_speed.h"
#include "performance/wind_correction.h"

namespace wakeline {

std::optional<float> TableLookup::AngleCorrection(float angleDeg, float speedKn) const {
    return AngleCorrectionAt(angleDeg, speedKn, tables_.Correction);
}

std::optional<float> TableLookup::SpeedCorrection(float angleDeg, float speedKn) const {
    return SpeedCorrectionAt(angleDeg, speedKn, tables_.Correction);
}

std::optional<float> TableLookup::TargetSpeed(float angleDeg, float windSpeedKn) const {
    const std::int16_t current = tables_.Polars.Current;
    if (current < 0 || static_cast<std::size_t>(current) >= tables_.Polars.Tables.size()) {
        return std::nullopt;
    }
    return TargetSpeedAt(angleDeg, windSpeedKn,
                         tables_.Polars.Tables[static_cast<std::size_t>(current)]);
}

}  // namespace wakeline
