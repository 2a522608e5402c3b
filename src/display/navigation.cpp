#include "display/navigation.h"

#include <cmath>

#include "base/number_format.h"
#include "base/single_precision.h"
#include "base/text_number.h"

namespace wakeline {
namespace {

// pi / 10,800,000 written as the instrument software's own decimal constant.
constexpr double kMilliMinutesToRadians = 2.90888208665722e-7;
// The antipodal central angle, a shorter pi than M_PI, kept as it is.
constexpr double kAntipodalAngle = 3.14159265358979;

// The numeric check of the position and angle formatters. An empty text is the number 0, as
// an empty field of the data line reads everywhere else: a line of empty pieces shows zero
// angles and positions rather than blank rows.
std::optional<double> NumericValue(std::string_view text) {
    if (text.empty()) {
        return 0.0;
    }
    return DecimalNumberValue(text);
}

}  // namespace

double MMtoRad(std::int32_t milliMinutes) {
    return milliMinutes * kMilliMinutesToRadians;
}

std::optional<float> GrCDXY(std::int32_t lon1, std::int32_t lat1, std::int32_t lon2,
                            std::int32_t lat2) {
    const double dLat = MMtoRad(lat1) - MMtoRad(lat2);
    const double dLon = MMtoRad(lon1) - MMtoRad(lon2);
    const double sinLat = std::sin(dLat / 2);
    const double sinLon = std::sin(dLon / 2);
    // The squares come first and the cosines' product then multiplies the longitude's square:
    // each product rounds, and near the antipode the order decides whether a rounds to
    // exactly 1 or just above it, which is an invalid square root.
    const double a =
        sinLat * sinLat + std::cos(MMtoRad(lat1)) * std::cos(MMtoRad(lat2)) * (sinLon * sinLon);
    double c = 0;
    if (a == 1.0) {
        c = kAntipodalAngle;
    } else {
        if (a < 0.0 || a > 1.0) {
            return std::nullopt;  // sqrt of a negative number: an invalid operation
        }
        c = 2 * std::atan(std::sqrt(a) / std::sqrt(1 - a));
    }
    const double distance = c * kEarthRadiusMetres;
    return ToSingle(distance);
}

std::optional<std::string> DDtoDM(std::string_view text, std::string_view kind) {
    const std::optional<double> number = NumericValue(text);
    if (!number) {
        return std::string(text);
    }
    const double parsed = *number;
    const std::optional<float> single = ToSingle(parsed);
    if (!single) {
        return std::nullopt;
    }
    float d = *single;
    const bool southOrWest = d <= 0;
    if (southOrWest) {
        d = -d;
    }
    const float minutesFraction = d - std::floor(d);
    const float degrees = d - minutesFraction;
    const float minutes = minutesFraction * 60;
    std::string result = FormatToWidth(degrees, "000", 0);
    result += ' ';
    result += FormatToWidth(minutes, "00.000", 0);
    const bool isLongitude = kind == "lon";
    if (southOrWest) {
        result += isLongitude ? " W" : " S";
    } else {
        result += isLongitude ? " E" : " N";
    }
    return result;
}

std::optional<std::string> FormatAngle(std::string_view text, std::int16_t fold,
                                       std::string_view side, std::int16_t decimals) {
    // A text with "," is shown as received (a decimal comma is no number here).
    const std::optional<double> radians = NumericValue(text);
    if (!radians) {
        return std::string(text);
    }
    const double exactDegrees = *radians * kRadiansToDegrees;
    const std::optional<float> single = ToSingle(exactDegrees);
    if (!single) {
        return std::nullopt;
    }
    // The degrees are a 32-bit value before the fold is tested. In double precision the pi of
    // the data line (3.14159265358979) times the factor is 180.00000000000006 and would fold to
    // -180, and two pi would fold to a tiny negative shown as "-0"; as a float they are 180 and
    // 360 exactly, which show as 180 and 0.
    float degrees = *single;
    if (std::abs(fold) == 180 && degrees > 180 && degrees <= 360) {
        degrees -= 360;  // exact: both lie within a factor of two
    }
    const std::string_view mask = decimals == 0 ? "0" : "0.00";
    if (!side.empty()) {
        std::string result = FormatToWidth(std::fabs(degrees), mask, 0);
        result += degrees < 0 ? " W" : " E";
        return result;
    }
    return FormatToWidth(degrees, mask, 4);
}

}  // namespace wakeline
