#include "display/display_computation.h"

#include "base/diagnostic_log.h"
#include "base/number_format.h"
#include "base/single_precision.h"
#include "base/text_number.h"
#include "display/navigation.h"
#include "livedata/data_line.h"

namespace wakeline {
namespace {

constexpr double kMetresPerSecondToKnots = 1.9438444924406;
constexpr double kFeetToMetres = 0.3048;
// The wind history has always taken directions with pi cut to six decimals; its stored hours
// of observations were made that way, so the factor stays beside the exact one of the display.
constexpr double kHistoryPi = 3.141592;

constexpr std::string_view kTwoBlanks = "  ";
constexpr std::string_view kThreeBlanks = "   ";
constexpr std::string_view kFiveBlanks = "     ";

bool ShortLine(DisplayOutcome& outcome, std::size_t missing, std::size_t count) {
    outcome.error = "TraceDisplayLine: subscript out of range: field " + std::to_string(missing) +
                    " missing, the data line has " + std::to_string(count) + " of 23 fields";
    return false;
}

bool Fault(DisplayOutcome& outcome, std::string_view what) {
    outcome.error = "TraceDisplayLine: overflow in ";
    outcome.error += what;
    return false;
}

}  // namespace

DisplayOutcome DisplayComputation::TraceDisplayLine(std::string_view line) {
    DisplayOutcome outcome;
    if (Split(line, outcome) && ShowRows(outcome)) {
        WriteCaptions(outcome);
    }
    return outcome;
}

bool DisplayComputation::Split(std::string_view line, DisplayOutcome& outcome) {
    FieldTable& t = table_;
    if (!feetOption_) {
        const SplitOutcome split = SplitDataLine(line, t);
        return split.Complete() || ShortLine(outcome, split.fieldsTaken, split.fieldsTaken);
    }
    // Depth in feet: the depth and water-speed repairs are made from the pieces in every pass
    // of the split, the first pass included, so a line too short to hold the depth piece, or
    // the speed piece when a depth is given, fails there with only field 0 taken.
    const DataLinePieces pieces = SplitPieces(line);
    t[kFieldLat].Value.assign(pieces.piece[kFieldLat]);
    if (pieces.count <= kFieldDbt) {
        return ShortLine(outcome, kFieldDbt, pieces.count);
    }
    const std::string_view feet = pieces.piece[kFieldDbt];
    const bool repaired = !feet.empty();
    if (repaired) {
        const auto metres = ToSingle(LeadingNumber(feet) * kFeetToMetres);
        if (!metres) {
            return Fault(outcome, "field 6 (DBT)");
        }
        t[kFieldDbt].Value = FormatToWidth(*metres, "0.0", 0);
        if (pieces.count <= kFieldSpd) {
            return ShortLine(outcome, kFieldSpd, pieces.count);
        }
        // Instruments set to feet send the log's speed with its decimals implied in the
        // integer digits.
        t[kFieldSpd].Value = LogCleanUp(pieces.piece[kFieldSpd]);
    }
    for (std::size_t i = 1; i < kFieldCount; ++i) {
        if (i >= pieces.count) {
            return ShortLine(outcome, i, pieces.count);
        }
        if (repaired && (i == kFieldDbt || i == kFieldSpd)) {
            continue;
        }
        t[i].Value.assign(pieces.piece[i]);
    }
    return true;
}

bool DisplayComputation::ShowRows(DisplayOutcome& outcome) {
    FieldTable& t = table_;
    const auto fieldFault = [&](std::size_t i) {
        return Fault(outcome, "field " + std::to_string(i) + " (" + t[i].Code + ")");
    };
    const auto showPosition = [&](std::size_t i, std::string_view kind) {
        auto text = DDtoDM(t[i].Value, kind);
        if (!text) {
            return fieldFault(i);
        }
        t[i].Shown = std::move(*text);
        return true;
    };
    // Speeds and depth: the leading number of the text, one decimal, right-aligned in 4.
    const auto showNumber = [&](std::size_t i, double factor, std::string_view tail) {
        const auto value = ToSingle(LeadingNumber(t[i].Value) * factor);
        if (!value) {
            return fieldFault(i);
        }
        t[i].Shown = FormatToWidth(*value, "0.0", 4);
        t[i].Shown += tail;
        return true;
    };
    const auto showAngle = [&](std::size_t i, std::int16_t fold, std::string_view side,
                               std::int16_t decimals, std::string_view tail) {
        auto text = FormatAngle(t[i].Value, fold, side, decimals);
        if (!text) {
            return fieldFault(i);
        }
        t[i].Shown = std::move(*text);
        t[i].Shown += tail;
        return true;
    };

    if (!showPosition(kFieldLat, "lat") || !showPosition(kFieldLon, "lon") ||
        !showNumber(kFieldSog, 1.0, kTwoBlanks) || !showAngle(kFieldCog, 0, "", 0, kFiveBlanks) ||
        !showAngle(kFieldMag, 0, "", 0, kFiveBlanks) || !showAngle(kFieldMer, 180, "EW", 2, "") ||
        !showNumber(kFieldDbt, 1.0, kThreeBlanks) || !showAngle(kFieldTwa, 180, "", 0, "") ||
        !showAngle(kFieldAwa, 180, "", 0, "") || !showAngle(kFieldTwd, 0, "", 0, "")) {
        return false;
    }

    const auto twsKn = ToSingle(LeadingNumber(t[kFieldTws].Value) * kMetresPerSecondToKnots);
    if (!twsKn) {
        return fieldFault(kFieldTws);
    }
    const double twdDeg = LeadingNumber(t[kFieldTwd].Shown);
    t[kFieldTws].Shown = FormatToWidth(*twsKn, "0.0", 4);

    // The damped and corrected wind follows each raw value after " C:"; the raw values lead
    // so that the instruments' own readings can still be compared at a glance.
    const bool polarTablesOn = performance_ != nullptr && performance_->PolarTablesOn();
    double twaDeg = 0;
    if (polarTablesOn) {
        twaDeg = LeadingNumber(t[kFieldTwa].Shown);
        const float factor = performance_->DampingFactor();
        const auto dA = dampedWind_.DampTWA(twaDeg, factor);
        const auto dD = dA ? dampedWind_.DampTWD(twdDeg, factor) : std::nullopt;
        const auto dS = dD ? dampedWind_.DampTWS(*twsKn, factor) : std::nullopt;
        if (!dS) {
            return Fault(outcome, "the wind damping");
        }
        const auto cA = performance_->AngleCorrection(*dA, *dS);
        const auto angle = cA ? ToSingle(double{*dA} + *cA) : std::nullopt;
        if (!angle) {
            return Fault(outcome, "the wind angle correction");
        }
        t[kFieldTwa].Shown += " C:";
        t[kFieldTwa].Shown += FormatToWidth(*angle, "0", 4);

        // The corrected direction turns by the angle correction; it has no table of its own.
        auto direction = ToSingle(double{*cA} + *dD);
        if (!direction) {
            return Fault(outcome, "the wind direction correction");
        }
        if (*direction > 360) {
            *direction -= 360;
        }
        if (*direction < 0) {
            *direction += 360;
        }
        t[kFieldTwd].Shown += " C:";
        t[kFieldTwd].Shown += FormatToWidth(*direction, "0", 4);

        const auto cS = performance_->SpeedCorrection(*dA, *dS);
        const auto speed = cS ? ToSingle(double{*dS} + *cS) : std::nullopt;
        if (!speed) {
            return Fault(outcome, "the wind speed correction");
        }
        t[kFieldTws].Shown += " C:";
        t[kFieldTws].Shown += FormatToWidth(*speed, "0.0", 4);
    }

    if (!showNumber(kFieldAws, kMetresPerSecondToKnots, kThreeBlanks)) {
        return false;
    }

    const auto historyTwd = ToSingle(LeadingNumber(t[kFieldTwd].Value) * 180 / kHistoryPi);
    if (!historyTwd) {
        return fieldFault(kFieldTwd);
    }
    outcome.windSample = WindSample{*twsKn, *historyTwd};

    if (!showNumber(kFieldVmg, 1.0, kThreeBlanks) || !showAngle(kFieldHdg, 0, "", 0, kFiveBlanks) ||
        !showNumber(kFieldSpd, 1.0, "")) {
        return false;
    }
    if (polarTablesOn && performance_->HasCurrentTable()) {
        // The target is looked up for the raw angle and for the raw wind speed as shown, with
        // one decimal, so that a sailor can repeat the lookup in the tables window.
        const auto angle = ToSingle(twaDeg);
        const auto windSpeed = ToSingle(LeadingNumber(t[kFieldTws].Shown));
        const auto target =
            angle && windSpeed ? performance_->TargetSpeed(*angle, *windSpeed) : std::nullopt;
        if (!target || !ToSingle(*target)) {
            return Fault(outcome, "the target speed");
        }
        if (*target <= 0) {
            t[kFieldSpd].Shown += " - ";
        } else {
            t[kFieldSpd].Shown += " T:";
            t[kFieldSpd].Shown += FormatToWidth(*target, "0.0", 4);
        }
    } else {
        t[kFieldSpd].Shown += kThreeBlanks;
    }

    t[kFieldLatWp].Shown = t[kFieldLatWp].Value;
    t[kFieldLonWp].Shown = t[kFieldLonWp].Value;
    if (!showAngle(kFieldBtwOrig, 0, "", 0, kFiveBlanks)) {
        return false;
    }
    t[kFieldXte].Shown = t[kFieldXte].Value;
    t[kFieldXte].Shown += ' ';
    if (!showAngle(kFieldBtw, 0, "", 0, kFiveBlanks)) {
        return false;
    }
    t[kFieldDtw].Shown = t[kFieldDtw].Value;
    t[kFieldDtw].Shown += kTwoBlanks;
    t[kFieldWpCspd].Shown = t[kFieldWpCspd].Value;
    t[kFieldWpCspd].Shown += kTwoBlanks;
    t[kFieldNameWp].Shown = t[kFieldNameWp].Value;
    return true;
}

void DisplayComputation::WriteCaptions(DisplayOutcome& outcome) {
    for (std::size_t i = 0; i <= kFieldSpd; ++i) {
        captions_[i] = table_[i].Shown;
        outcome.captionsWritten.set(i);
    }
    outcome.lastRow = 14;
    // A waypoint row keeps its last caption until a new value arrives, and the rows show at
    // all only once some waypoint value has come. The name row is never written here.
    for (std::size_t i = kFieldLatWp; i < kFieldNameWp; ++i) {
        if (!table_[i].Value.empty()) {
            captions_[i] = table_[i].Shown;
            outcome.captionsWritten.set(i);
            outcome.lastRow = 22;
        }
    }
}

std::string LogCleanUp(std::string_view text) {
    if (text.empty()) {
        return "";
    }
    const std::string_view integerPart = text.substr(0, text.find('.'));
    const double value = LeadingNumber(integerPart);
    // The reading's integer digits carry two implied decimals: "123" is 1.23, "45" 4.5.
    double scaled = 0;
    switch (integerPart.size()) {
        case 1:
            scaled = value;
            break;
        case 2:
            scaled = value / 10;
            break;
        case 3:
            scaled = value / 100;
            break;
        default:
            return "";
    }
    return FormatToWidth(static_cast<float>(scaled), "0.00", 0);
}

}  // namespace wakeline
