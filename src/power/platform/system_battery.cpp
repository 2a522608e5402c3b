#include "power/platform/system_battery.h"

#include <utility>

namespace wakeline {

BatteryStatus SystemBattery::Read() {
    const auto now = std::chrono::steady_clock::now();
    if (last_ && now - lastRead_ < kKeepReading) {
        return *last_;
    }
    last_.reset();
    if (askUPower_) {
        Result<BatteryStatus> read = upower_.TryRead();
        const std::string failure = read.GetStatus().Message();
        if (report_ && failure != reported_ && !failure.empty()) {
            report_(read.GetStatus());
        }
        reported_ = failure;
        last_ = std::move(read).Optional();
    }
    if (!last_) {
        last_ = sysfs_.Read();
    }
    lastRead_ = now;
    return *last_;
}

}  // namespace wakeline
