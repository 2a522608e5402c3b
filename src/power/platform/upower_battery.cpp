#include "power/platform/upower_battery.h"

#include <QDBusError>
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

Result<BatteryStatus> UPowerBattery::TryRead() {
    auto failure = [](const QString& reason) {
        return Status::Failure("read the battery from", "org.freedesktop.UPower",
                               reason.toStdString());
    };
    if (!bus_.isConnected()) {
        const QString error = bus_.lastError().message();
        return failure(error.isEmpty() ? QStringLiteral("no connection to the D-Bus") : error);
    }
    // A plain method call: a QDBusInterface would first ask the service to describe itself,
    // a blocking round trip without our timeout.
    QDBusMessage call = QDBusMessage::createMethodCall(
        "org.freedesktop.UPower", "/org/freedesktop/UPower/devices/DisplayDevice",
        "org.freedesktop.DBus.Properties", "GetAll");
    call << QStringLiteral("org.freedesktop.UPower.Device");
    const QDBusReply<QVariantMap> reply = bus_.call(call, QDBus::Block, kReplyTimeoutMs);
    if (!reply.isValid()) {
        return failure(reply.error().message());
    }
    const QVariantMap values = reply.value();
    if (!values.value("IsPresent").toBool()) {
        return failure(QStringLiteral("it knows no battery"));
    }
    bool isNumber = false;
    const double percent = values.value("Percentage").toDouble(&isNumber);
    if (!isNumber || percent < 0 || percent > 100) {
        return failure(QStringLiteral("its percentage is not one from 0 to 100"));
    }
    BatteryStatus status;
    status.BatteryLifePercent = static_cast<int>(RoundHalfEven(percent));
    status.BatteryFlag =
        values.value("State").toUInt() == kStateCharging ? BatteryStatus::kChargingFlag : 0;
    return status;
}

}  // namespace wakeline
