#pragma once
// What steers the track writer for a run: the chart plotter's track thresholds and directory,
// and the command line's trace switch and disk write interval.

#include <cstdint>
#include <string>

namespace wakeline {

struct TrackSettings {
    // Thresholds; 0 switches a criterion off. Seconds, metres, degrees.
    float TrackTime = 0.0f;
    float TrackDistance = 0.0f;
    float TrackCompDev = 0.0f;
    // Directory of the day files and of the wind history; empty means no file is written.
    std::string TrackDir;
    // Seconds between flushes of the pending records.
    std::int16_t DiskWriteInterval = 900;
    // False: records are formed and discarded (the wind history is still saved).
    bool TraceOn = true;
    // Notes reach the file only when set.
    bool SetLogData = false;
};

}  // namespace wakeline
