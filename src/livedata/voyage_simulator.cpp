#include "livedata/voyage_simulator.h"

#include <algorithm>
#include <cmath>

#include "base/number_format.h"
#include "livedata/chart_arithmetic.h"

namespace wakeline {
namespace {

using namespace chart;  // NOLINT: the voyage is sailed in chart arithmetic throughout

// Off the German Bight; the waypoint lies six miles to windward.
constexpr double kStartLat = 54.1;
constexpr double kStartLon = 7.6;
constexpr double kWaypointLat = 54.05;
constexpr double kWaypointLon = 7.45;
constexpr const char* kWaypointLatText = "54 03.000 N";
constexpr const char* kWaypointLonText = "007 27.000 E";
constexpr const char* kWaypointName = "WINDWARD";

// Two degrees west, as in these waters.
constexpr double kVariationDegrees = -2.0;
// A weak tidal stream setting east-south-east.
constexpr double kStreamKnots = 0.4;
constexpr double kStreamSetDegrees = 100.0;

constexpr double kTackPeriodSeconds = 900;
constexpr double kTackSeconds = 30;
constexpr double kCloseHauledDegrees = 42;

double Wave(double t, double period, double phase = 0) {
    return std::sin(kTwoPi * t / period + phase);
}

// Everything of second t that does not depend on the position.
struct Motion {
    double twd;      // radians
    double tws;      // metres per second
    double twa;      // radians, positive with the wind over the starboard side
    double speed;    // knots through the water
    double heading;  // radians, true
    double sog;      // knots
    double cog;      // radians
    double depth;    // metres
};

Motion MotionAt(double t) {
    Motion m{};
    const double twdDegrees = 240 + 8 * Wave(t, 600) + 2 * Wave(t, 170, 1.0);
    m.twd = Direction(twdDegrees * kRadiansPerDegree);
    m.tws = 6.5 + 1.2 * Wave(t, 1500, 0.5) + 0.3 * Wave(t, 97);

    // Starboard tack first; each tack swings the bow through the wind in kTackSeconds and
    // costs speed on the way.
    const auto leg = static_cast<std::int64_t>(std::floor(t / kTackPeriodSeconds));
    const double intoLeg = t - static_cast<double>(leg) * kTackPeriodSeconds;
    const double side = leg % 2 == 0 ? 1.0 : -1.0;
    double twaDegrees = side * kCloseHauledDegrees;
    double tackFactor = 1.0;
    if (leg > 0 && intoLeg < kTackSeconds) {
        const double f = intoLeg / kTackSeconds;
        twaDegrees = -side * kCloseHauledDegrees * (1 - f) + side * kCloseHauledDegrees * f;
        tackFactor = 1 - 0.6 * std::sin(kPi * f);
    }
    m.twa = twaDegrees * kRadiansPerDegree;

    // A polar-like rule: speed grows with the wind towards some eight knots and is best with the
    // wind abeam.
    const double twsKnots = m.tws * kKnotsPerMetrePerSecond;
    m.speed =
        8.0 * (1 - std::exp(-twsKnots / 8)) * (0.6 + 0.4 * std::fabs(std::sin(m.twa))) * tackFactor;
    m.heading = Direction(m.twd - m.twa);

    const double stream = kStreamSetDegrees * kRadiansPerDegree;
    const double north = m.speed * std::cos(m.heading) + kStreamKnots * std::cos(stream);
    const double east = m.speed * std::sin(m.heading) + kStreamKnots * std::sin(stream);
    m.sog = std::hypot(north, east);
    m.cog = Direction(std::atan2(east, north));

    m.depth = 14 + 7 * Wave(t, 1300) + 2.5 * Wave(t, 211, 2.0);
    return m;
}

}  // namespace

std::string FormatVoyageLine(const VoyageValues& v) {
    const auto angle = [](double radians) { return FormatMask(radians, "0.0000"); };
    std::string line;
    line.reserve(200);
    const auto add = [&line](const std::string& field) {
        line += field;
        line += ',';
    };
    add(FormatMask(v.lat, "0.000000"));
    add(FormatMask(v.lon, "0.000000"));
    add(FormatMask(v.sog, "0.00"));
    add(angle(v.cog));
    add(angle(v.magneticCourse));
    add(angle(v.variation));
    add(FormatMask(v.depth, "0.0"));
    add(angle(v.twa));
    add(angle(v.awa));
    add(angle(v.twd));
    add(FormatMask(v.tws, "0.00"));
    add(FormatMask(v.aws, "0.00"));
    add(FormatMask(v.vmg, "0.00"));
    add(angle(v.heading));
    add(FormatMask(v.speed, "0.00"));
    if (v.waypointActive) {
        add(v.waypointLatText);
        add(v.waypointLonText);
        add(angle(v.bearingOrigin));
        add(FormatMask(std::fabs(v.crossTrack), "0.000") + (v.crossTrack < 0 ? " L" : " R"));
        add(angle(v.bearingWaypoint));
        add(FormatMask(v.distanceWaypoint, "0.00") + " NM");
        add(FormatMask(v.closingSpeed, "0.0") + " kn");
        line += v.waypointName;
    } else {
        line += ",,,,,,,";
    }
    return line;
}

void VoyageSimulator::Restart() {
    second_ = 0;
    lat_ = kStartLat;
    lon_ = kStartLon;
}

VoyageValues VoyageSimulator::At(std::int64_t second) {
    second = std::max<std::int64_t>(second, 0);
    if (second_ < 0 || second < second_) {
        Restart();
    }
    // One second of sailing at a time, at the course and speed over ground of that second.
    while (second_ < second) {
        const Motion m = MotionAt(static_cast<double>(second_));
        const double miles = m.sog / kSecondsPerHour;
        lat_ += miles * std::cos(m.cog) / kMinutesPerDegree;
        lon_ += miles * std::sin(m.cog) / (kMinutesPerDegree * std::cos(lat_ * kRadiansPerDegree));
        ++second_;
    }

    const Motion m = MotionAt(static_cast<double>(second));
    VoyageValues v;
    v.lat = lat_;
    v.lon = lon_;
    v.sog = m.sog;
    v.cog = m.cog;
    v.variation = kVariationDegrees * kRadiansPerDegree;
    // Magnetic = true - variation (east positive).
    v.magneticCourse = Direction(m.cog - v.variation);
    v.heading = Direction(m.heading - v.variation);
    v.depth = m.depth;
    v.twa = Relative(m.twa);
    v.twd = m.twd;
    v.tws = m.tws;
    v.speed = m.speed;
    // The apparent wind: the true wind plus the head wind of the boat's own motion, both
    // measured from the bow.
    const double boat = m.speed / kKnotsPerMetrePerSecond;
    const double ahead = m.tws * std::cos(m.twa) + boat;
    const double abeam = m.tws * std::sin(m.twa);
    v.aws = std::hypot(ahead, abeam);
    v.awa = Relative(std::atan2(abeam, ahead));
    v.vmg = m.speed * std::cos(m.twa);

    v.waypointActive = second >= kWaypointFromSecond;
    if (v.waypointActive) {
        const Leg route = RhumbLeg(kStartLat, kStartLon, kWaypointLat, kWaypointLon);
        const Leg travelled = RhumbLeg(kStartLat, kStartLon, lat_, lon_);
        const Leg ahead = RhumbLeg(lat_, lon_, kWaypointLat, kWaypointLon);
        v.bearingOrigin = route.bearing;
        v.crossTrack = travelled.miles * std::sin(travelled.bearing - route.bearing);
        v.bearingWaypoint = ahead.bearing;
        v.distanceWaypoint = ahead.miles;
        v.closingSpeed = m.sog * std::cos(m.cog - ahead.bearing);
        v.waypointLatText = kWaypointLatText;
        v.waypointLonText = kWaypointLonText;
        v.waypointName = kWaypointName;
    }
    return v;
}

}  // namespace wakeline
