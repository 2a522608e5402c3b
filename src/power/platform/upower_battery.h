#pragma once
// The battery as the desktop's power service UPower sees it over the system D-Bus: its
// display device, which already combines all of the computer's batteries.

#include <QDBusConnection>
#include <optional>
#include <utility>

#include "power/battery_status.h"

namespace wakeline {

class UPowerBattery : public BatterySource {
  public:
    // `bus` is the system bus unless a test hands it a private one.
    explicit UPowerBattery(QDBusConnection bus = QDBusConnection::systemBus())
        : bus_(std::move(bus)) {}

    // Nothing when there is no system bus, UPower does not answer in time, or it knows no
    // battery.
    std::optional<BatteryStatus> TryRead();
    BatteryStatus Read() override { return TryRead().value_or(BatteryStatus{}); }

  private:
    QDBusConnection bus_;
};

}  // namespace wakeline
