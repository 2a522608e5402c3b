#include "seatalk/seatalk_decoder.h"

#include <cmath>
#include <cstdio>
#include <numbers>

#include "base/single_precision.h"
#include "base/text_number.h"

namespace wakeline {
namespace {

int Hi(std::uint8_t b) {
    return b >> 4;
}
int Lo(std::uint8_t b) {
    return b & 0x0F;
}

// Numbers in the descriptions: up to seven significant digits, as a 32-bit value prints.
std::string Number(double value) {
    char text[64];
    std::snprintf(text, sizeof text, "%.7g", value);
    return text;
}

std::string Whole(int value) {
    return std::to_string(value);
}

std::string TwoDigits(int value) {
    char text[16];
    std::snprintf(text, sizeof text, "%02d", value);
    return text;
}

// Degrees and minutes of a 0x50/0x51 coordinate: minutes in hundredths, sign in bit 7 of
// byte 4.
struct Coordinate {
    double value;
    bool negative;
    double minutes;
};

Coordinate DecodeCoordinate(const DatagramBuffer& d) {
    const double hundredths = (d[4] & 0x7F) * 256.0 + d[3];
    double value = d[2] + hundredths / 6000.0;
    const bool negative = (d[4] & 0x80) != 0;
    if (negative) {
        value = -value;
    }
    return {value, negative, hundredths / 100.0};
}

std::string DecodeTime(const DatagramBuffer& d, SeaTalkValues& values) {
    const int hours = d[3];
    const int minutes = d[2] >> 2;
    const int seconds = (d[2] & 3) * 16 + Hi(d[1]);
    if (hours > 23 || minutes > 59 || seconds > 59) {
        return "error: no time of day " + Whole(hours) + ":" + Whole(minutes) + ":" +
               Whole(seconds);
    }
    const double timeOfDay = (hours * 3600.0 + minutes * 60.0 + seconds) / kSecondsPerDay;
    values.utcDateTime = std::floor(values.utcDateTime) + timeOfDay;
    return "GMT :" + TwoDigits(hours) + ":" + TwoDigits(minutes) + ":" + TwoDigits(seconds);
}

std::string DecodeDate(const DatagramBuffer& d, SeaTalkValues& values) {
    const int year = d[3] + 2000;
    const int month = Hi(d[1]);
    const int day = d[2];
    char text[32];
    std::snprintf(text, sizeof text, "%04d%02d%02d", year, month, day);
    if (!IsValidDate(year, month, day)) {
        return std::string("error: no date ") + text;
    }
    const double timeOfDay = values.utcDateTime - std::floor(values.utcDateTime);
    values.utcDateTime = DateTimeFromFields({year, month, day, 0, 0, 0}) + timeOfDay;
    return std::string("GMT :") + text;
}

std::string DecodePosition(const DatagramBuffer& d, SeaTalkValues& values) {
    const double latitudeMinutes = d[3] * 256.0 + d[4];
    const double longitudeMinutes = d[6] * 256.0 + d[7];
    double latitude = d[2] + latitudeMinutes / 60000.0;
    double longitude = d[5] + longitudeMinutes / 60000.0;
    // The sign test looks at the whole attribute byte, which always holds the length code, so
    // both coordinates come out negative; the letters below use the proper bits.
    if (d[1] != 0) {
        latitude = -latitude;
        longitude = -longitude;
    }
    values.latitude = latitude;
    values.longitude = longitude;
    return "POS: " + Whole(d[2]) + ((d[1] & 0x10) ? " S " : " N ") +
           Number(latitudeMinutes / 1000.0) + " " + Whole(d[5]) + ((d[1] & 0x20) ? " E " : " W ") +
           Number(longitudeMinutes / 1000.0);
}

std::string DecodeWaypointName(const DatagramBuffer& d, SeaTalkValues& values) {
    if (d[2] + d[3] != 0xFF || d[4] + d[5] != 0xFF || d[6] + d[7] != 0xFF) {
        return "";
    }
    std::string name;
    name += static_cast<char>((d[2] & 0x3F) + 0x30);
    name += static_cast<char>((d[4] & 0x0F) * 4 + (d[2] & 0xC0) / 64 + 0x30);
    name += static_cast<char>((d[6] & 0x03) * 16 + (d[4] & 0xF0) / 16 + 0x30);
    name += static_cast<char>((d[6] & 0xFC) / 4 + 0x30);
    values.waypointName = name;
    return "WPN 82: " + name;
}

std::string DecodeNavigation(const DatagramBuffer& d, SeaTalkValues& values) {
    // Byte 2 counts 256 hundredths here, not 16: the instrument's reading is kept as it is.
    double crossTrack = (d[2] * 256.0 + Hi(d[1])) / 100.0;
    if ((d[4] & 0x40) == 0) {
        crossTrack = -crossTrack;
    }
    const double bearing = (Lo(d[4]) * 16.0 + Hi(d[3])) / 2.0 + (d[3] & 3) * 90.0;
    const double tenths = d[5] * 16.0 + Hi(d[4]);
    const double distance = (Hi(d[6]) & 1) ? tenths / 100.0 : tenths / 10.0;
    values.crossTrackError = static_cast<float>(crossTrack);
    values.bearingToWaypoint = static_cast<float>(bearing);
    values.distanceToWaypoint = static_cast<float>(distance);
    return "NAV 85: XTE=" + Number(values.crossTrackError) +
           " BTW=" + Number(values.bearingToWaypoint) + " DTW=" + Number(values.distanceToWaypoint);
}

// Stores a value decoded from bytes (always finite and small) and returns its text.
std::string Store(float& field, double value) {
    field = static_cast<float>(value);
    return Number(field);
}

std::string Decode(const DatagramBuffer& d, SeaTalkValues& v) {
    switch (d[0]) {
        case 0x00: {
            // 0.3 is the depth instrument's own feet factor, kept on purpose.
            const std::string depth = Store(v.depth, (d[4] * 256.0 + d[3]) / 10.0 * 0.3);
            return "DBT 00: " + depth + " feet " + Whole(d[1]);
        }
        case 0x10:
            return "AWA 10: " + Store(v.apparentWindAngle, (d[2] * 256.0 + d[3]) / 2.0) +
                   " degrees right of bow";
        case 0x11:
            return "AWS 11: " + Store(v.apparentWindSpeed, (d[2] & 0x7F) + d[3] / 10.0) +
                   " knots, display " + ((d[2] & 0x80) ? "meters/second" : "knots");
        case 0x20:
            return "WS  20: " + Store(v.speedThroughWater, (d[3] * 256.0 + d[2]) / 10.0) + " knots";
        case 0x21:
            // The whole top byte counts, not only its low nibble.
            return "Trip21: " + Store(v.tripLog, (d[4] * 65536.0 + d[3] * 256.0 + d[2]) / 100.0) +
                   " NM";
        case 0x22:
            return "TLOG20: " + Store(v.totalLog, (d[4] * 65536.0 + d[3] * 256.0 + d[2]) / 10.0) +
                   " NM";
        case 0x23:
            return "Temp : " + Whole(d[2]) + " C, " + Whole(d[3]) + " F";
        case 0x24:
            switch (d[4]) {
                case 0x00:
                    return "Display Units = nm/knots";
                case 0x06:
                    return "Display Units = sm/mph";
                case 0x86:
                    return "Display Units = km/kmh";
                default:
                    return "";
            }
        case 0x25: {
            const std::string total =
                Store(v.totalLog, (Hi(d[1]) * 4096.0 + d[3] * 256.0 + d[2]) / 10.0);
            const std::string trip =
                Store(v.tripLog, (d[6] * 65536.0 + d[5] * 256.0 + d[4]) / 100.0);
            return "Total & Trip 25: " + total + "   " + trip + " NM";
        }
        case 0x26: {
            const std::string first =
                (d[7] & 0x40) ? Number((d[3] * 256.0 + d[2]) / 100.0) : std::string("N/A");
            const std::string second =
                (d[7] & 0x80) ? Number((d[5] * 256.0 + d[4]) / 100.0) : std::string("N/A");
            return "WS  26: " + first + " " + second + " knots";
        }
        case 0x27:
            return "MTW 27: " + Store(v.waterTemperature, (d[3] * 256.0 + d[2] - 100.0) / 10.0) +
                   " deg Celsius";
        case 0x50: {
            const Coordinate c = DecodeCoordinate(d);
            v.latitude = c.value;
            return "LAT: " + Whole(d[2]) + (c.negative ? " S " : " N ") + Number(c.minutes);
        }
        case 0x51: {
            const Coordinate c = DecodeCoordinate(d);
            v.longitude = c.value;
            return "LON: " + Whole(d[2]) + (c.negative ? " W " : " E ") + Number(c.minutes);
        }
        case 0x52:
            return "SOG 52: " + Store(v.speedOverGround, (d[3] * 256.0 + d[2]) / 10.0) + " knots";
        case 0x53:
            // Course over ground is read with this simpler formula, unlike the heading.
            return "COG 53: " + Store(v.courseOverGround, d[2] * 8.0 + Hi(d[1]) / 2.0) +
                   " degrees - check if this is really COG";
        case 0x54:
            return DecodeTime(d, v);
        case 0x56:
            return DecodeDate(d, v);
        case 0x58:
            return DecodePosition(d, v);
        case 0x82:
            return DecodeWaypointName(d, v);
        case 0x84:
            return "HDG 84: " +
                   Store(v.heading,
                         (Hi(d[1]) & 3) * 90.0 + (d[2] & 0x3F) * 2.0 + (Hi(d[1]) & 0x0C) / 8.0) +
                   " degrees - check if this is really HDG";
        case 0x85:
            return DecodeNavigation(d, v);
        default:
            return "";
    }
}

}  // namespace

std::optional<TrueWind> ComputeTrueWind(float apparentAngle, float apparentSpeed, float boatSpeed,
                                        float boatDirection) {
    const double a = apparentAngle * std::numbers::pi / 180.0;
    const double aws = apparentSpeed;
    const double speed = boatSpeed;
    double b = 0;
    double trueSpeed = 0;
    if (speed * std::cos(a) != aws) {
        b = std::atan(speed * std::sin(a) / (aws - speed * std::cos(a)));
        trueSpeed = aws * std::cos(b) - speed * std::cos(a + b);
    }
    const std::optional<float> angle = ToSingle((a + b) * 180.0 / std::numbers::pi);
    const std::optional<float> speedOut = ToSingle(trueSpeed);
    if (!angle || !speedOut) {
        return std::nullopt;
    }
    const double whole = RoundHalfEven(static_cast<double>(*angle) + boatDirection);
    if (!std::isfinite(whole) || std::fabs(whole) > 2147483647.0) {
        return std::nullopt;
    }
    // fmod keeps the sign of the dividend: a true wind left of north stays negative.
    return TrueWind{*angle, *speedOut, static_cast<float>(std::fmod(whole, 360.0))};
}

void UpdateTrueWind(SeaTalkValues& values) {
    const bool fromWater = values.speedOverGround == 0;
    const float boatSpeed = fromWater ? values.speedThroughWater : values.speedOverGround;
    const float boatDirection = fromWater ? values.heading : values.courseOverGround;
    const std::optional<TrueWind> wind = ComputeTrueWind(
        values.apparentWindAngle, values.apparentWindSpeed, boatSpeed, boatDirection);
    if (wind) {
        values.trueWindAngle = wind->angle;
        values.trueWindSpeed = wind->speed;
        values.trueWindDirection = wind->direction;
    }
}

std::string DecodeDatagram(const DatagramBuffer& buffer, SeaTalkValues& values) {
    std::string description = Decode(buffer, values);
    if (!description.starts_with("error: ")) {
        UpdateTrueWind(values);
    }
    return description;
}

}  // namespace wakeline
