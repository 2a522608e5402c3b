#pragma once
// The battery as the desktop's power service UPower sees it over the system D-Bus: its
// display device, which already combines all of the computer's batteries.

#include <QDBusConnection>
#include <utility>

#include "base/status.h"
#include "power/battery_status.h"

namespace wakeline {

class UPowerBattery : public BatterySource {
  public:
    // `bus` is the system bus unless a test hands it a private one.
    explicit UPowerBattery(QDBusConnection bus = QDBusConnection::systemBus())
        : bus_(std::move(bus)) {}

    // The battery, or a failure to "read the battery from" UPower saying why: there is no
    // system bus, UPower does not answer in time (the bus's error text), or it knows no
    // battery.
    Result<BatteryStatus> TryRead();
    BatteryStatus Read() override { return TryRead().Optional().value_or(BatteryStatus{}); }

  private:
    QDBusConnection bus_;
};

}  // namespace wakeline
