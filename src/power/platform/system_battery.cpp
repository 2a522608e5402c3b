#include "power/platform/system_battery.h"

namespace wakeline {

BatteryStatus SystemBattery::Read() {
    const auto now = std::chrono::steady_clock::now();
    if (last_ && now - lastRead_ < kKeepReading) {
        return *last_;
    }
    last_ = askUPower_ ? upower_.TryRead() : std::nullopt;
    if (!last_) {
        last_ = sysfs_.Read();
    }
    lastRead_ = now;
    return *last_;
}

}  // namespace wakeline
