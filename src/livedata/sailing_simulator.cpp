#include "livedata/sailing_simulator.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <iterator>

#include "base/number_format.h"
#include "livedata/chart_arithmetic.h"

namespace wakeline {
namespace {

using namespace chart;  // NOLINT: the voyage is sailed in chart arithmetic throughout

// Off the German Bight.
constexpr double kStartLat = 54.1;
constexpr double kStartLon = 7.6;
constexpr double kVariationDegrees = -2.0;
constexpr double kStreamKnots = 0.4;
constexpr double kStreamSetDegrees = 100.0;

// The route, in nautical miles north and east of the start, sailed round and round: a beat to
// windward, a beam reach, a run dead before the wind, and the beat again. The wind blows from
// about 240 degrees, so no leg's course lies near north, where the course over ground would
// flicker between 359 and 0 degrees.
struct RoutePoint {
    const char* name;
    double north;
    double east;
};
constexpr std::array<RoutePoint, 3> kRoute = {{
    {"WINDWARD", -1.100, -1.905},  // 2.2 miles at 240 degrees from the start
    {"WING", -2.399, -1.155},      // 1.5 miles at 150 degrees from WINDWARD
    {"LEEWARD", -1.149, 1.010},    // 2.5 miles at 60 degrees from WING
}};

// The boat leaves the rhumb line by at most this much on a beat or a run before it tacks or
// gybes back towards it, and holds a new tack for at least a minute.
constexpr double kCorridorMiles = 0.35;
constexpr double kMinSecondsBetweenManoeuvres = 60;
constexpr double kTurnDegreesPerSecond = 8;
// How quickly the boat gathers or loses speed towards its polar speed.
constexpr double kSpeedTimeConstant = 12;

// The sail "Genoa": boat speed in knots by true wind speed (rows) and true wind angle (columns).
// demo/WakelinePolar.txt holds this table as the navigation centre reads it.
constexpr std::array<double, 7> kPolarWind = {4, 6, 8, 10, 12, 16, 20};
constexpr std::array<double, 11> kPolarAngle = {40, 45, 52, 60, 75, 90, 120, 135, 150, 165, 180};
constexpr std::array<std::array<double, 11>, 7> kPolarSpeed = {{
    {2.8, 3.3, 3.8, 4.1, 4.4, 4.5, 4.2, 3.7, 3.1, 2.4, 2.0},
    {4.0, 4.6, 5.1, 5.5, 5.8, 5.9, 5.6, 5.0, 4.3, 3.4, 3.0},
    {4.9, 5.5, 6.0, 6.3, 6.6, 6.7, 6.5, 6.0, 5.3, 4.4, 3.9},
    {5.5, 6.0, 6.4, 6.7, 7.0, 7.1, 7.1, 6.7, 6.1, 5.1, 4.6},
    {5.8, 6.3, 6.7, 7.0, 7.3, 7.4, 7.5, 7.2, 6.7, 5.6, 5.1},
    {6.1, 6.6, 7.0, 7.3, 7.6, 7.8, 8.1, 7.9, 7.4, 6.3, 5.8},
    {6.2, 6.8, 7.2, 7.5, 7.9, 8.1, 8.6, 8.5, 8.1, 7.0, 6.5},
}};

double RouteLat(std::size_t index) {
    return kStartLat + kRoute[index].north / kMinutesPerDegree;
}

double RouteLon(std::size_t index) {
    return kStartLon +
           kRoute[index].east / (kMinutesPerDegree * std::cos(kStartLat * kRadiansPerDegree));
}

// "54 03.000 N" or "007 27.000 E", as the chart plotter writes a waypoint's position.
std::string DegreesMinutes(double value, const char* degreeMask, char positive, char negative) {
    const double magnitude = std::fabs(value);
    const double degrees = std::floor(magnitude);
    return FormatMask(degrees, degreeMask) + " " +
           FormatMask((magnitude - degrees) * kMinutesPerDegree, "00.000") + " " +
           (value < 0 ? negative : positive);
}

// Uniform in [0, 1) from the generator's bits: the standard's distributions are not the same
// on every library, the generator's numbers are.
double Uniform(std::mt19937_64& random) {
    return static_cast<double>(random() >> 11) * 0x1.0p-53;
}

double Between(std::mt19937_64& random, double low, double high) {
    return low + (high - low) * Uniform(random);
}

double RowSpeed(std::size_t row, double angle) {
    const auto& speeds = kPolarSpeed[row];
    if (angle >= kPolarAngle.back()) {
        return speeds.back();
    }
    const auto upper = std::upper_bound(kPolarAngle.begin(), kPolarAngle.end(), angle);
    const auto hi = static_cast<std::size_t>(std::distance(kPolarAngle.begin(), upper));
    const std::size_t lo = hi - 1;
    const double f = (angle - kPolarAngle[lo]) / (kPolarAngle[hi] - kPolarAngle[lo]);
    return speeds[lo] + f * (speeds[hi] - speeds[lo]);
}

// The angles of best speed towards (upwind) or away from (downwind) the wind, in degrees.
double BestAngle(double twsKnots, double from, double to, double towards) {
    double best = from;
    double bestVmg = -1;
    for (double angle = from; angle <= to; angle += 0.5) {
        const double vmg = towards * SailingSimulator::PolarSpeed(angle, twsKnots) *
                           std::cos(angle * kRadiansPerDegree);
        if (vmg > bestVmg) {
            bestVmg = vmg;
            best = angle;
        }
    }
    return best;
}

}  // namespace

double SailingSimulator::PolarSpeed(double twaDegrees, double twsKnots) {
    const double angle = std::fabs(Relative(twaDegrees * kRadiansPerDegree)) / kRadiansPerDegree;
    if (!(angle >= kPolarAngle.front()) || !(twsKnots > 0)) {
        return 0;
    }
    if (twsKnots <= kPolarWind.front()) {
        return RowSpeed(0, angle) * twsKnots / kPolarWind.front();
    }
    if (twsKnots >= kPolarWind.back()) {
        return RowSpeed(kPolarWind.size() - 1, angle);
    }
    const auto upper = std::upper_bound(kPolarWind.begin(), kPolarWind.end(), twsKnots);
    const auto hi = static_cast<std::size_t>(std::distance(kPolarWind.begin(), upper));
    const std::size_t lo = hi - 1;
    const double f = (twsKnots - kPolarWind[lo]) / (kPolarWind[hi] - kPolarWind[lo]);
    return RowSpeed(lo, angle) + f * (RowSpeed(hi, angle) - RowSpeed(lo, angle));
}

SailingSimulator::SailingSimulator(std::uint64_t seed) : random_(seed) {
    baseDirection_ = Between(random_, 235, 245) * kRadiansPerDegree;
    shiftAmplitude_ = Between(random_, 6, 10) * kRadiansPerDegree;
    shiftPeriod_ = Between(random_, 480, 720);
    shiftPhase_ = Between(random_, 0, kTwoPi);
    baseSpeed_ = Between(random_, 6.0, 7.0);
    depthPhase_ = Between(random_, 0, kTwoPi);
    lat_ = originLat_ = kStartLat;
    lon_ = originLon_ = kStartLon;
    StepWind();
    // Under way on starboard tack towards the first mark, to windward.
    const double up = BestAngle(tws_ * kKnotsPerMetrePerSecond, 40, 60, 1);
    heading_ = Direction(twd_ - up * kRadiansPerDegree);
    speed_ = PolarSpeed(up, tws_ * kKnotsPerMetrePerSecond);
}

void SailingSimulator::AdvanceTo(double seconds) {
    const double target = std::floor(seconds / kStepSeconds + 1e-9);
    if (!(target < 1e12)) {  // not a number, or beyond any voyage
        return;
    }
    while (static_cast<double>(steps_) < target) {
        Step();
    }
}

void SailingSimulator::StepWind() {
    const double t = Seconds();
    // A gust may set in at each whole second, about one every ninety seconds, and blows for
    // twenty to fifty seconds; the wind takes some seconds to rise and to fall again.
    if (steps_ % 4 == 0) {
        const double chance = Uniform(random_);
        const double strength = Between(random_, 1.0, 2.5);
        const double length = Between(random_, 20, 50);
        if (gustLeft_ <= 0 && chance < 1.0 / 90) {
            gustTarget_ = strength;
            gustLeft_ = length;
        }
    }
    gustLeft_ -= kStepSeconds;
    if (gustLeft_ <= 0) {
        gustTarget_ = 0;
    }
    gust_ += (gustTarget_ - gust_) * (1 - std::exp(-kStepSeconds / 5));

    twd_ = Direction(baseDirection_ +
                     shiftAmplitude_ * std::sin(kTwoPi * t / shiftPeriod_ + shiftPhase_) +
                     2 * kRadiansPerDegree * std::sin(kTwoPi * t / 170 + 1.7 * shiftPhase_));
    tws_ = baseSpeed_ + 0.8 * std::sin(kTwoPi * t / 1500 + shiftPhase_) + gust_;
}

double SailingSimulator::SteeringTarget() const {
    const Leg ahead = RhumbLeg(lat_, lon_, RouteLat(waypoint_), RouteLon(waypoint_));
    const double twsKnots = tws_ * kKnotsPerMetrePerSecond;
    const double up = BestAngle(twsKnots, 40, 60, 1) * kRadiansPerDegree;
    const double down = BestAngle(twsKnots, 120, 180, -1) * kRadiansPerDegree;
    const double direct = std::fabs(Relative(twd_ - ahead.bearing));
    if (direct >= up && direct <= down) {
        return ahead.bearing;
    }
    return Direction(twd_ - side_ * (direct < up ? up : down));
}

void SailingSimulator::Step() {
    ++steps_;
    StepWind();
    sinceManoeuvre_ += kStepSeconds;

    // Which side to sail on. A mark that can be laid is steered for, and the side is the one
    // its course gives: when that side changes, the boat tacks or gybes (on the layline).
    // Beating or running, the boat keeps its side until it is too far off the rhumb line
    // and still going away from it.
    const double markLat = RouteLat(waypoint_);
    const double markLon = RouteLon(waypoint_);
    const Leg ahead = RhumbLeg(lat_, lon_, markLat, markLon);
    const double twsKnots = tws_ * kKnotsPerMetrePerSecond;
    const double up = BestAngle(twsKnots, 40, 60, 1) * kRadiansPerDegree;
    const double down = BestAngle(twsKnots, 120, 180, -1) * kRadiansPerDegree;
    const double direct = Relative(twd_ - ahead.bearing);
    int side = side_;
    if (std::fabs(direct) >= up && std::fabs(direct) <= down) {
        side = direct >= 0 ? 1 : -1;
    } else if (sinceManoeuvre_ >= kMinSecondsBetweenManoeuvres) {
        const Leg route = RhumbLeg(originLat_, originLon_, markLat, markLon);
        const Leg travelled = RhumbLeg(originLat_, originLon_, lat_, lon_);
        const double crossTrack = travelled.miles * std::sin(travelled.bearing - route.bearing);
        const double angle = std::fabs(direct) < up ? up : down;
        const double drift = std::sin(twd_ - side_ * angle - route.bearing);
        if (std::fabs(crossTrack) > kCorridorMiles && crossTrack * drift > 0) {
            side = -side_;
        }
    }
    if (side != side_) {
        side_ = side;
        sinceManoeuvre_ = 0;
    }

    // The helm turns the bow at a steady rate the short way round, which takes a tack through
    // the wind and a gybe through the stern.
    const double turn = Relative(SteeringTarget() - heading_);
    const double most = kTurnDegreesPerSecond * kRadiansPerDegree * kStepSeconds;
    heading_ = Direction(heading_ + std::clamp(turn, -most, most));

    const double polar = PolarSpeed(Relative(twd_ - heading_) / kRadiansPerDegree, twsKnots);
    speed_ += (polar - speed_) * (1 - std::exp(-kStepSeconds / kSpeedTimeConstant));

    const double stream = kStreamSetDegrees * kRadiansPerDegree;
    const double north = speed_ * std::cos(heading_) + kStreamKnots * std::cos(stream);
    const double east = speed_ * std::sin(heading_) + kStreamKnots * std::sin(stream);
    const double miles = kStepSeconds / kSecondsPerHour;
    lat_ += north * miles / kMinutesPerDegree;
    lon_ += east * miles / (kMinutesPerDegree * std::cos(lat_ * kRadiansPerDegree));

    if (RhumbLeg(lat_, lon_, markLat, markLon).miles < kArrivalMiles) {
        originLat_ = markLat;
        originLon_ = markLon;
        waypoint_ = (waypoint_ + 1) % kRoute.size();
    }
}

VoyageValues SailingSimulator::Values() const {
    VoyageValues v;
    v.lat = lat_;
    v.lon = lon_;
    const double stream = kStreamSetDegrees * kRadiansPerDegree;
    const double north = speed_ * std::cos(heading_) + kStreamKnots * std::cos(stream);
    const double east = speed_ * std::sin(heading_) + kStreamKnots * std::sin(stream);
    v.sog = std::hypot(north, east);
    v.cog = Direction(std::atan2(east, north));
    v.variation = kVariationDegrees * kRadiansPerDegree;
    // Magnetic = true - variation (east positive).
    v.magneticCourse = Direction(v.cog - v.variation);
    v.heading = Direction(heading_ - v.variation);

    // The sea floor: ridges and hollows across the sailing area, never shallower than 7 m.
    const double x = (lon_ - kStartLon) * kMinutesPerDegree * std::cos(lat_ * kRadiansPerDegree);
    const double y = (lat_ - kStartLat) * kMinutesPerDegree;
    v.depth = 16 + 6 * std::sin(1.1 * x + depthPhase_) * std::cos(0.8 * y) +
              3 * std::sin(2.3 * (x - y) + 0.5 * depthPhase_);

    const double twa = Relative(twd_ - heading_);
    v.twa = twa;
    v.twd = twd_;
    v.tws = tws_;
    v.speed = speed_;
    // The apparent wind: the true wind plus the head wind of the boat's motion through the
    // water, both measured from the bow.
    const double boat = speed_ / kKnotsPerMetrePerSecond;
    const double ahead = tws_ * std::cos(twa) + boat;
    const double abeam = tws_ * std::sin(twa);
    v.aws = std::hypot(ahead, abeam);
    v.awa = Relative(std::atan2(abeam, ahead));
    v.vmg = speed_ * std::cos(twa);

    const double markLat = RouteLat(waypoint_);
    const double markLon = RouteLon(waypoint_);
    const Leg route = RhumbLeg(originLat_, originLon_, markLat, markLon);
    const Leg travelled = RhumbLeg(originLat_, originLon_, lat_, lon_);
    const Leg toMark = RhumbLeg(lat_, lon_, markLat, markLon);
    v.waypointActive = true;
    v.bearingOrigin = route.bearing;
    v.crossTrack = travelled.miles * std::sin(travelled.bearing - route.bearing);
    v.bearingWaypoint = toMark.bearing;
    v.distanceWaypoint = toMark.miles;
    v.closingSpeed = v.sog * std::cos(v.cog - toMark.bearing);
    v.waypointLatText = DegreesMinutes(markLat, "00", 'N', 'S');
    v.waypointLonText = DegreesMinutes(markLon, "000", 'E', 'W');
    v.waypointName = kRoute[waypoint_].name;
    return v;
}

}  // namespace wakeline
