#pragma once
// The laptop's battery as the operating system reports it, and where such reports come from.

#include <cstdint>

namespace wakeline {

// One reading: the charge in percent and the status flags (only the charging bit is used).
struct BatteryStatus {
    static constexpr int kUnknownPercent = 255;
    static constexpr std::uint8_t kChargingFlag = 8;

    int BatteryLifePercent = kUnknownPercent;  // 0..100, or 255 when not known
    std::uint8_t BatteryFlag = 0;
};

class BatterySource {
  public:
    virtual ~BatterySource() = default;
    virtual BatteryStatus Read() = 0;
};

// A computer without a battery, or without any source that reports one.
class NoBattery : public BatterySource {
  public:
    BatteryStatus Read() override { return {}; }
};

}  // namespace wakeline
