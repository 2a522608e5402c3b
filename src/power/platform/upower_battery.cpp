#include "power/platform/upower_battery.h"

#include <QDBusMessage>
#include <QDBusReply>
#include <QVariantMap>

#include "base/text_number.h"

namespace wakeline {
namespace {

// A hung service must not stall the main timer, which also drives the chart-plotter link.
constexpr int kReplyTimeoutMs = 250;
// UPower's device state 1 is charging; the others (discharging, empty, full, pending)
// are not.
constexpr uint kStateCharging = 1;

}  // namespace

std::optional<BatteryStatus> UPowerBattery::TryRead() {
    if (!bus_.isConnected()) {
        return std::nullopt;
    }
    // A plain method call: a QDBusInterface would first ask the service to describe itself,
    // a blocking round trip without our timeout.
    QDBusMessage call = QDBusMessage::createMethodCall(
        "org.freedesktop.UPower", "/org/freedesktop/UPower/devices/DisplayDevice",
        "org.freedesktop.DBus.Properties", "GetAll");
    call << QStringLiteral("org.freedesktop.UPower.Device");
    const QDBusReply<QVariantMap> reply = bus_.call(call, QDBus::Block, kReplyTimeoutMs);
    if (!reply.isValid()) {
        return std::nullopt;
    }
    const QVariantMap values = reply.value();
    if (!values.value("IsPresent").toBool()) {
        return std::nullopt;
    }
    bool isNumber = false;
    const double percent = values.value("Percentage").toDouble(&isNumber);
    if (!isNumber || percent < 0 || percent > 100) {
        return std::nullopt;
    }
    BatteryStatus status;
    status.BatteryLifePercent = static_cast<int>(RoundHalfEven(percent));
    status.BatteryFlag =
        values.value("State").toUInt() == kStateCharging ? BatteryStatus::kChargingFlag : 0;
    return status;
}

}  // namespace wakeline
