#pragma once
// What the live display asks of the sailing performance tables for every data line: whether
// they are in use, the damping weight, the wind corrections and the target boat speed.
// Angles are degrees, speeds knots. An empty optional is an arithmetic fault inside the lookup
// (for example a correction table whose wind speeds are not ascending divides by zero); it ends
// the display of that line. Missing table values are not faults: the target speed is then 0 or
// negative.

#include <optional>

namespace wakeline {

class PerformanceLookup {
  public:
    virtual ~PerformanceLookup() = default;

    // On when the polar file was read at start-up and a current table was chosen. Off means no
    // damping, no corrections and no target speed.
    virtual bool PolarTablesOn() const = 0;
    // Whether a current polar table is chosen (its index is 0 or more).
    virtual bool HasCurrentTable() const = 0;
    // Weight 0..1 of a new reading in the wind damping.
    virtual float DampingFactor() const = 0;
    // Degrees to add to the damped true wind angle, for the damped angle (-180..180) and the
    // damped wind speed.
    virtual std::optional<float> AngleCorrection(float angleDeg, float speedKn) const = 0;
    // Knots to add to the damped true wind speed, for the damped angle before its own
    // correction and the damped wind speed.
    virtual std::optional<float> SpeedCorrection(float angleDeg, float speedKn) const = 0;
    // Target boat speed from the current table for a true wind angle and speed; 0 or negative
    // when the table does not cover the point. Empty on a fault, which includes a current-table
    // index beyond the tables held.
    virtual std::optional<float> TargetSpeed(float angleDeg, float windSpeedKn) const = 0;
};

}  // namespace wakeline
