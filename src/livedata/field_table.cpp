#include "livedata/field_table.h"

namespace wakeline {
namespace {

struct CodeAndDescription {
    const char* code;
    const char* description;
};

// The texts are the ones sailors know from the chart plotter's display, spelling included
// ("knts", "Speed Parallel to Wind" for VMG).
constexpr std::array<CodeAndDescription, kFieldCount> kFields = {{
    {"Lat", "GPS Lat position"},
    {"Lon", "GPS Long position"},
    {"SOG", "GPS Speed knts"},
    {"COG", "True heading from GPS"},
    {"Mag", "Magnetic Heading from GPS"},
    {"Mer", "Magnetic error from GPS"},
    {"DBT", "Depth m"},
    {"TWA", "True wind dir relative to heading"},
    {"AWA", "Relative wind dir"},
    {"TWD", "Geographical wind dir"},
    {"TWS", "True wind speed knts"},
    {"AWS", "Relative wind speed knts"},
    {"VMG", "Speed Parallel to Wind knts"},
    {"HDG", "Compass Heading"},
    {"SPD", "Water Speed"},
    {"Lat WP", "WP Lat position"},
    {"Lon WP", "WP Long position"},
    {"BTW ORIG", "RL Bearing origin to destination WP"},
    {"XTE", "Current XTE"},
    {"BTW", "RL Heading from current position to WP"},
    {"DTW", "Distance to WP"},
    {"WP CSPD", "Waypoint Closure Velocity (speed made good)"},
    {"Name WP ", "Target WP Name"},
}};

}  // namespace

void InitFieldTable(FieldTable& table) {
    for (std::size_t i = 0; i < kFieldCount; ++i) {
        table[i].Code = kFields[i].code;
        table[i].Description = kFields[i].description;
    }
}

}  // namespace wakeline
