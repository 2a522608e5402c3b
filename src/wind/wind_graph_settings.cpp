#include "wind/wind_graph_settings.h"

#include <charconv>
#include <cmath>
#include <optional>
#include <string>

#include "base/text_number.h"

namespace wakeline {
namespace {

std::optional<double> Number(const SettingsStore& store, const char* key) {
    const std::optional<std::string> text = store.Get(kWindGraphSection, key);
    if (!text) {
        return std::nullopt;
    }
    const std::optional<double> value = DecimalNumberValue(*text);
    if (!value || !std::isfinite(*value)) {
        return std::nullopt;
    }
    return value;
}

void LoadColour(const SettingsStore& store, const char* key, std::uint32_t& colour) {
    const std::optional<double> value = Number(store, key);
    if (value && *value >= 0 && *value <= 16777215.0 && *value == std::floor(*value)) {
        colour = static_cast<std::uint32_t>(*value);
    }
}

// The shortest decimal that reads back as the same double, never in exponent form, so that
// DecimalNumberValue reads it.
std::string NumberText(double value) {
    char buffer[400];
    const auto result =
        std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::fixed);
    return std::string(buffer, result.ptr);
}

}  // namespace

WindGraphSettings LoadWindGraphSettings(const SettingsStore& store) {
    WindGraphSettings settings;
    LoadColour(store, "colWD", settings.colWD);
    LoadColour(store, "colWS", settings.colWS);
    LoadColour(store, "colSL", settings.colSL);
    if (const auto mean = Number(store, "SineMean")) {
        settings.overlay.meanDirection = *mean;
    }
    if (const auto amplitude = Number(store, "SineAmplitude"); amplitude && *amplitude >= 0) {
        settings.overlay.amplitudeDegrees = *amplitude;
    }
    if (const auto period = Number(store, "SinePeriod"); period && *period > 0) {
        settings.overlay.periodMinutes = *period;
    }
    if (const auto phase = Number(store, "SinePhase")) {
        settings.overlay.phaseTime = *phase;
    }
    const std::optional<std::string> shown = store.Get(kWindGraphSection, "SineShown");
    if (shown == "True") {
        settings.overlayShown = true;
    } else if (shown == "False") {
        settings.overlayShown = false;
    }
    return settings;
}

Status StoreWindGraphSettings(SettingsStore& store, const WindGraphSettings& settings) {
    const std::pair<const char*, std::string> values[] = {
        {"colWD", std::to_string(settings.colWD)},
        {"colWS", std::to_string(settings.colWS)},
        {"colSL", std::to_string(settings.colSL)},
        {"SineMean", NumberText(settings.overlay.meanDirection)},
        {"SineAmplitude", NumberText(settings.overlay.amplitudeDegrees)},
        {"SinePeriod", NumberText(settings.overlay.periodMinutes)},
        {"SinePhase", NumberText(settings.overlay.phaseTime)},
        {"SineShown", settings.overlayShown ? "True" : "False"},
    };
    Status first;
    for (const auto& [key, text] : values) {
        Status status = store.Set(kWindGraphSection, key, text);
        if (first.Ok() && !status.Ok()) {
            first = status;
        }
    }
    return first;
}

}  // namespace wakeline
