#include "power/battery_flush.h"

namespace wakeline {

std::optional<std::string> LowBatteryFlush::Check(BatteryLevel level) {
    switch (level) {
        case BatteryLevel::Unknown:
            return std::nullopt;
        case BatteryLevel::Charging:
        case BatteryLevel::OnBattery:
            warningFlushed_ = false;
            escalationFlushed_ = false;
            return std::nullopt;
        case BatteryLevel::Warning:
            if (warningFlushed_ || escalationFlushed_) {
                return std::nullopt;
            }
            warningFlushed_ = true;
            return "battery below 30 % on battery";
        case BatteryLevel::Escalation:
            if (escalationFlushed_) {
                return std::nullopt;
            }
            warningFlushed_ = true;
            escalationFlushed_ = true;
            return "battery below 20 % on battery";
    }
    return std::nullopt;
}

}  // namespace wakeline
