// Reading the battery from UPower: a stand-in display device on a private message bus, served
// from its own thread because the reader waits for the answer.

#include "power/platform/upower_battery.h"

#include <gtest/gtest.h>

#include <QDBusConnection>
#include <QProcess>
#include <QThread>
#include <atomic>

#include "livedata/platform/event_loop_wait.h"

namespace wakeline {
namespace {

class FakeDisplayDevice : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.UPower.Device")
    Q_PROPERTY(bool IsPresent READ IsPresent)
    Q_PROPERTY(double Percentage READ Percentage)
    Q_PROPERTY(uint State READ State)

  public:
    bool IsPresent() const { return present; }
    double Percentage() const { return percentage; }
    uint State() const { return state; }

    std::atomic<bool> present = true;
    std::atomic<double> percentage = 0;
    std::atomic<uint> state = 0;
};

// A private bus with UPower's name owned by a display device that lives in its own thread.
class PrivateUPower {
  public:
    PrivateUPower() {
        testing::EnsureCoreApplication();
        daemon_.start("dbus-daemon", {"--session", "--nofork", "--print-address=1"});
        if (!daemon_.waitForReadyRead(5000)) {
            return;
        }
        address_ = QString::fromUtf8(daemon_.readLine()).trimmed();
        thread_.start();
        device_.moveToThread(&thread_);
        QDBusConnection service = QDBusConnection::connectToBus(address_, "upower-service");
        service.registerService("org.freedesktop.UPower");
        service.registerObject("/org/freedesktop/UPower/devices/DisplayDevice", &device_,
                               QDBusConnection::ExportAllProperties);
    }
    ~PrivateUPower() {
        QDBusConnection::disconnectFromBus("upower-service");
        QDBusConnection::disconnectFromBus("upower-client");
        thread_.quit();
        thread_.wait();
        daemon_.kill();
        daemon_.waitForFinished();
    }

    void Withdraw() {
        QDBusConnection("upower-service").unregisterService("org.freedesktop.UPower");
    }
    bool Running() const { return !address_.isEmpty(); }
    QDBusConnection Client() { return QDBusConnection::connectToBus(address_, "upower-client"); }
    FakeDisplayDevice& Device() { return device_; }

  private:
    QProcess daemon_;
    QString address_;
    QThread thread_;
    FakeDisplayDevice device_;
};

TEST(UPowerBattery, ReadsTheDisplayDeviceAndFallsSilentWithoutIt) {
    PrivateUPower upower;
    ASSERT_TRUE(upower.Running());
    UPowerBattery battery(upower.Client());

    upower.Device().percentage = 48.5;  // a half goes to the even percent
    upower.Device().state = 2;          // discharging
    auto status = battery.TryRead().Optional();
    ASSERT_TRUE(status.has_value());
    EXPECT_EQ(status->BatteryLifePercent, 48);
    EXPECT_EQ(status->BatteryFlag, 0);

    upower.Device().percentage = 99.6;
    upower.Device().state = 1;  // charging
    status = battery.TryRead().Optional();
    ASSERT_TRUE(status.has_value());
    EXPECT_EQ(status->BatteryLifePercent, 100);
    EXPECT_EQ(status->BatteryFlag, BatteryStatus::kChargingFlag);

    // A desktop: UPower answers, but there is no battery.
    upower.Device().present = false;
    EXPECT_EQ(battery.TryRead().GetStatus().Message(),
              "could not read the battery from org.freedesktop.UPower: it knows no battery");
    EXPECT_EQ(battery.Read().BatteryLifePercent, 255);

    // UPower is not running, or there is no system bus at all.
    upower.Withdraw();
    EXPECT_FALSE(battery.TryRead().Ok());
    EXPECT_FALSE(UPowerBattery(QDBusConnection("no-such-connection")).TryRead().Ok());
}

}  // namespace
}  // namespace wakeline

#include "upower_battery_test.moc"
