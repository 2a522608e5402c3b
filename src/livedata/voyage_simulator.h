#pragma once
// A made-up voyage for trying the navigation centre out without a chart plotter: a yacht beating
// to windward in a shifting breeze, one data line per second. The wind direction swings about
// 240 degrees by up to 10 degrees over some ten minutes, the wind speed stays between 5 and 8
// metres per second, the yacht tacks every 15 minutes (starboard first), sails at a boat speed
// from a simple polar-like rule, sets a little with a tidal stream and heads for a waypoint to
// windward. The waypoint fields stay empty during the first minute, as when a route is only
// activated after the start, so that the display's waypoint rows appear later.
//
// Every value is a function of the second alone: two simulators give the same line for the same
// second. Numbers are written with "." as decimal point whatever the locale.

#include <cstdint>
#include <string>

namespace wakeline {

// The values of one second, in the data line's units: positions in decimal degrees (north and
// east positive), every other angle in radians (directions 0..2 pi, angles to the bow and the
// magnetic variation -pi..pi, east positive), TWS and AWS in metres per second, SOG, VMG and SPD
// in knots, DBT in metres, distances in nautical miles.
struct VoyageValues {
    double lat = 0;
    double lon = 0;
    double sog = 0;
    double cog = 0;
    double magneticCourse = 0;
    double variation = 0;
    double depth = 0;
    double twa = 0;
    double awa = 0;
    double twd = 0;
    double tws = 0;
    double aws = 0;
    double vmg = 0;
    double heading = 0;  // compass (magnetic) heading
    double speed = 0;    // through the water
    bool waypointActive = false;
    double bearingOrigin = 0;    // origin to waypoint
    double crossTrack = 0;       // nautical miles, positive right of the track
    double bearingWaypoint = 0;  // from here to the waypoint
    double distanceWaypoint = 0;
    double closingSpeed = 0;  // knots
    // The waypoint's position as the chart plotter writes it ("54 03.000 N", "007 27.000 E")
    // and its name; free text of the line, written as they stand.
    std::string waypointLatText;
    std::string waypointLonText;
    std::string waypointName;
};

// The data line of the values: 23 fields, no line end.
std::string FormatVoyageLine(const VoyageValues& values);

class VoyageSimulator {
  public:
    // The second from which the waypoint fields are filled.
    static constexpr std::int64_t kWaypointFromSecond = 60;

    // Second `second` (0 or more; a negative second is taken as 0) of the voyage. The position
    // is found by stepping second by second from the start, so asking for the seconds in
    // increasing order is cheap and going back starts over.
    VoyageValues At(std::int64_t second);
    // The data line of that second.
    std::string DataLine(std::int64_t second) { return FormatVoyageLine(At(second)); }

  private:
    void Restart();

    std::int64_t second_ = -1;  // the second that lat_ and lon_ belong to; -1 before the start
    double lat_ = 0;
    double lon_ = 0;
};

}  // namespace wakeline
