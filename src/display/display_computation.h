#pragma once
// The live display's computation: each data line is split into the field table, every field is
// turned into the text shown beside its code, the wind is damped and corrected and the target
// boat speed looked up when polar tables are in use, and the value labels' captions are set.
// The window only copies the captions it is told were written.

#include <array>
#include <bitset>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "display/damped_wind.h"
#include "display/performance_lookup.h"
#include "livedata/field_table.h"

namespace wakeline {

// One wind observation for the wind history, to be added with the current UTC time and the
// count 1. The direction is not folded or damped.
struct WindSample {
    float twsKnots = 0;
    float twdDegrees = 0;
};

// What one data line did.
struct DisplayOutcome {
    // Empty when the line was displayed. Otherwise the reason, for the diagnostic log: the
    // line had fewer than 23 fields, or a value overflowed (a number too large for a 32-bit
    // float, or a fault inside a performance lookup). The captions then keep their previous
    // texts, and the entries of the field table keep what was stored before the fault.
    std::string error;
    // Set once the line reached the wind history's step, which comes before the VMG, heading,
    // water speed and waypoint rows: a fault in those still leaves this sample to be added.
    std::optional<WindSample> windSample;
    // Rows whose caption this line wrote: 0 to 14 always, 15 to 21 when their value is not
    // empty, 22 never. None on an error.
    std::bitset<kFieldCount> captionsWritten;
    // The last row to show: 22 once a waypoint value arrived in this line, else 14. The
    // window's height follows it.
    std::int16_t lastRow = 14;

    bool Displayed() const { return error.empty(); }
};

class DisplayComputation {
  public:
    // `table` is the run's field table and must outlive this object; only its `Value` and
    // `Shown` texts are written.
    explicit DisplayComputation(FieldTable& table) : table_(table) {}

    // The "M" start option: depth arrives in feet and the water-speed text needs repair.
    void SetFeetOption(bool on) { feetOption_ = on; }
    // The performance tables; null (the default) or one whose PolarTablesOn is false shows
    // the raw wind only. The object must outlive its use here.
    void SetPerformance(const PerformanceLookup* performance) { performance_ = performance; }

    // Handles one data line (see data_line.h): a short line fails at its first missing field,
    // a value too large fails the line, a numeric field that is not a number reads as 0 and
    // an angle field that is not a number is shown as received.
    DisplayOutcome TraceDisplayLine(std::string_view line);

    // The value labels' captions as the lines so far have left them; empty at the start.
    const std::array<std::string, kFieldCount>& Captions() const { return captions_; }
    const DampedWind& Damped() const { return dampedWind_; }

  private:
    bool Split(std::string_view line, DisplayOutcome& outcome);
    bool ShowRows(DisplayOutcome& outcome);
    void WriteCaptions(DisplayOutcome& outcome);

    FieldTable& table_;
    const PerformanceLookup* performance_ = nullptr;
    bool feetOption_ = false;
    DampedWind dampedWind_;
    std::array<std::string, kFieldCount> captions_;
};

// The integer digits of a reading as a value with implied decimals, "0.00": "123.4" gives
// "1.23", "45" "4.50", "7.9" "7.00"; an empty text, or an integer part of 4 or more
// characters, gives "". Used to repair the water-speed text under the feet option.
std::string LogCleanUp(std::string_view text);

}  // namespace wakeline
