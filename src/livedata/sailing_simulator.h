#pragma once
// A yacht sailing a route of waypoints, for a live voyage without a boat: the data source of
// `wakeline-tool sim`. The true wind blows from a steady direction with oscillating shifts
// (a period of eight to twelve minutes) and gusts; the boat sails at the speed of its polar
// table (the demo's sail "Genoa"), beats to a waypoint to windward and runs to one dead to
// leeward at the angles of best VMG, tacking or gybing on the layline or when it strays too
// far from the rhumb line, and sails straight for a waypoint it can lay. Around the boat: a
// weak tidal stream, a magnetic variation of two degrees west and a sea floor that rises and
// falls with the position.
//
// The values hold together as instruments would show them: the apparent wind is the true wind
// plus the head wind of the boat's motion through the water (SPD), TWD is the true heading plus
// TWA, VMG is SPD times the cosine of TWA, and the position moves by SOG along COG (the boat's
// motion through the water plus the stream).
//
// Deterministic: the voyage is a function of the seed alone. Time advances in fixed steps of
// kStepSeconds whatever the caller asks for, and the random draws belong to the steps, so the
// values at a simulated time are the same however the caller paces its questions.

#include <cstdint>
#include <random>
#include <string>

#include "livedata/voyage_simulator.h"

namespace wakeline {

class SailingSimulator {
  public:
    static constexpr double kStepSeconds = 0.25;
    // A waypoint is reached within this many nautical miles; the next one is then steered for.
    static constexpr double kArrivalMiles = 0.05;

    explicit SailingSimulator(std::uint64_t seed);

    // Moves the voyage on to `seconds` of simulated time since the start (a time already
    // passed leaves it where it is: the voyage never goes back).
    void AdvanceTo(double seconds);
    double Seconds() const { return static_cast<double>(steps_) * kStepSeconds; }

    // The values of the present moment, in the data line's units (see VoyageValues).
    VoyageValues Values() const;
    std::string DataLine() const { return FormatVoyageLine(Values()); }

    // The boat's speed through the water in knots at a true wind angle (degrees, either side)
    // and true wind speed (knots): the polar table of the sail it carries, interpolated
    // linearly along the angles and between the wind speeds, 0 below the table's smallest
    // angle; below the lightest row in proportion to the wind, above the strongest as the
    // strongest.
    static double PolarSpeed(double twaDegrees, double twsKnots);

  private:
    struct Waypoint {
        const char* name;
        double lat;
        double lon;
    };

    void Step();
    void StepWind();
    double SteeringTarget() const;  // the true heading wanted now, radians

    std::mt19937_64 random_;
    std::int64_t steps_ = 0;

    // Wind: the steady direction and the shape of its shifts, drawn once from the seed.
    double baseDirection_ = 0;  // radians
    double shiftAmplitude_ = 0;
    double shiftPeriod_ = 0;  // seconds
    double shiftPhase_ = 0;
    double baseSpeed_ = 0;  // metres per second
    double gust_ = 0;       // metres per second added now
    double gustTarget_ = 0;
    double gustLeft_ = 0;  // seconds the present gust still blows
    double twd_ = 0;
    double tws_ = 0;

    // The boat.
    double lat_ = 0;
    double lon_ = 0;
    double heading_ = 0;  // true, radians
    double speed_ = 0;    // knots through the water
    int side_ = 1;        // +1 with the wind over starboard, -1 over port
    double sinceManoeuvre_ = 0;
    std::size_t waypoint_ = 0;  // index in the route of the waypoint steered for
    double originLat_ = 0;
    double originLon_ = 0;
    double depthPhase_ = 0;
};

}  // namespace wakeline
