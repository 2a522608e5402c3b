// Reading the battery from a directory laid out like the kernel's power_supply class.

#include "power/platform/sysfs_battery.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QTemporaryDir>
#include <fstream>
#include <map>
#include <string>

namespace wakeline {
namespace {

void Supply(const QTemporaryDir& root, const QString& name,
            const std::map<std::string, std::string>& attributes) {
    QDir(root.path()).mkpath(name);
    for (const auto& [attribute, value] : attributes) {
        std::ofstream(root.filePath(name + "/" + QString::fromStdString(attribute)).toStdString())
            << value << "\n";
    }
}

TEST(SysfsBattery, CombinesTheComputersBatteriesOnly) {
    QTemporaryDir root;
    EXPECT_EQ(SysfsBattery(root.path().toStdString()).Read().BatteryLifePercent, 255);

    Supply(root, "AC", {{"type", "Mains"}, {"online", "1"}});
    Supply(root, "hidpp_battery_0", {{"type", "Battery"}, {"scope", "Device"}, {"capacity", "5"}});
    Supply(root, "BAT2", {{"type", "Battery"}, {"present", "0"}, {"capacity", "3"}});
    Supply(root, "BAT3", {{"type", "Battery"}, {"capacity", "1e2"}, {"status", "Charging"}});
    Supply(root, "BAT0", {{"type", "Battery"}, {"capacity", "47"}, {"status", "Discharging"}});
    BatteryStatus status = SysfsBattery(root.path().toStdString()).Read();
    EXPECT_EQ(status.BatteryLifePercent, 47);
    EXPECT_EQ(status.BatteryFlag, 0);

    // A mean of 48.5 goes to the even percent; one charging battery makes the laptop charge.
    Supply(root, "BAT1", {{"type", "Battery"}, {"capacity", "50"}, {"status", "Charging"}});
    status = SysfsBattery(root.path().toStdString()).Read();
    EXPECT_EQ(status.BatteryLifePercent, 48);
    EXPECT_EQ(status.BatteryFlag, BatteryStatus::kChargingFlag);

    EXPECT_EQ(SysfsBattery(root.filePath("missing").toStdString()).Read().BatteryLifePercent, 255);
}

}  // namespace
}  // namespace wakeline
