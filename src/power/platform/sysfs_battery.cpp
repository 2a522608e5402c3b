#include "power/platform/sysfs_battery.h"

#include <filesystem>
#include <fstream>
#include <optional>
#include <string>

#include "base/text_number.h"

namespace wakeline {
namespace {

// The first line of an attribute file, without its line end; nothing when it cannot be read.
std::optional<std::string> ReadAttribute(const std::filesystem::path& file) {
    std::ifstream in(file);
    std::string line;
    if (!in || !std::getline(in, line)) {
        return std::nullopt;
    }
    while (!line.empty() && (line.back() == '\n' || line.back() == '\r' || line.back() == ' ')) {
        line.pop_back();
    }
    return line;
}

std::optional<int> ReadPercent(const std::filesystem::path& file) {
    const auto text = ReadAttribute(file);
    if (!text || text->empty() || text->size() > 3) {
        return std::nullopt;
    }
    int value = 0;
    for (const char c : *text) {
        if (c < '0' || c > '9') {
            return std::nullopt;
        }
        value = value * 10 + (c - '0');
    }
    return value <= 100 ? std::optional(value) : std::nullopt;
}

}  // namespace

BatteryStatus SysfsBattery::Read() {
    namespace fs = std::filesystem;
    std::error_code error;
    fs::directory_iterator entries(root_, error);
    if (error) {
        return {};
    }
    int total = 0;
    int batteries = 0;
    bool charging = false;
    for (const fs::directory_entry& entry : entries) {
        const fs::path dir = entry.path();
        if (ReadAttribute(dir / "type") != "Battery") {
            continue;
        }
        // A peripheral's battery says so; the computer's own have no scope or "System".
        if (const auto scope = ReadAttribute(dir / "scope"); scope && *scope == "Device") {
            continue;
        }
        if (ReadAttribute(dir / "present") == "0") {
            continue;
        }
        const auto capacity = ReadPercent(dir / "capacity");
        if (!capacity) {
            continue;
        }
        total += *capacity;
        ++batteries;
        charging = charging || ReadAttribute(dir / "status") == "Charging";
    }
    if (batteries == 0) {
        return {};
    }
    BatteryStatus status;
    // Halves of the mean go to the even percent, as every "whole number" of the program does.
    status.BatteryLifePercent =
        static_cast<int>(RoundHalfEven(static_cast<double>(total) / batteries));
    status.BatteryFlag = charging ? BatteryStatus::kChargingFlag : 0;
    return status;
}

}  // namespace wakeline
