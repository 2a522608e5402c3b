#pragma once
// The wind graph's per-user settings, section "WindGraph" of the settings store: the three
// colours and the sine overlay the sailor last set, so the graph opens as it was left.
//
// Keys and texts (all decimal, "." as decimal point):
//   "colWD", "colWS", "colSL"  colours, whole numbers 0..16777215 (blue*65536 + green*256 + red)
//   "SineMean"                 overlay mean direction, degrees
//   "SineAmplitude"            overlay amplitude, degrees, 0 or more
//   "SinePeriod"               overlay period ("wavelength"), minutes, more than 0
//   "SinePhase"                a time the overlay rises through its mean, UTC date-time in days
//                              since 1899-12-30
//   "SineShown"                "True" or "False"

#include <cstdint>

#include "base/settings_store.h"
#include "base/status.h"
#include "wind/wind_fit.h"

namespace wakeline {

inline constexpr const char* kWindGraphSection = "WindGraph";

struct WindGraphSettings {
    std::uint32_t colWD = 0;  // direction curve, blue*65536 + green*256 + red (default black)
    std::uint32_t colWS = 16711680;  // speed curve (default blue)
    std::uint32_t colSL = 16776960;  // sine overlay (default cyan)
    SineOverlay overlay;
    bool overlayShown = false;
};

// Missing keys and texts that are not a value of the key's kind (a colour out of range, a
// negative amplitude, a period of 0, "yes") keep the defaults above, each key on its own.
WindGraphSettings LoadWindGraphSettings(const SettingsStore& store);

// Writes every key; the first failure is returned after the remaining keys have been tried.
Status StoreWindGraphSettings(SettingsStore& store, const WindGraphSettings& settings);

}  // namespace wakeline
