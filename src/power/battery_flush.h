#pragma once
// A dying battery must not take the last minutes of track with it: the records waiting for
// the disk write interval (up to a quarter of an hour of them) are written as soon as the
// battery reaches the warning, and again when it reaches the escalation, since the laptop may
// switch itself off before the sailor acts. Once per entry, not at every check: a battery that
// wavers around 20 % flushes again only after it has been charged or risen back above 30 %.

#include <optional>
#include <string>

#include "power/power_monitor.h"

namespace wakeline {

class LowBatteryFlush {
  public:
    // The battery's level at a check. Returns why the track is to be flushed now (a line for
    // the log), or nothing. An unknown reading changes nothing.
    std::optional<std::string> Check(BatteryLevel level);

  private:
    bool warningFlushed_ = false;
    bool escalationFlushed_ = false;
};

}  // namespace wakeline
