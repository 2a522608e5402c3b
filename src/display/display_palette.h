#pragma once
// The window's colours for night watches: red on black keeps the eye adapted to the dark, so
// the sailor can look from the screen to the sea and still see. Colours are blue x 65536 +
// green x 256 + red, as the settings store keeps them.

#include <cstdint>

namespace wakeline {

struct WindowColours {
    std::uint32_t background;
    std::uint32_t text;
    std::uint32_t buttonBackground;
    std::uint32_t buttonText;
    std::uint32_t disabledText;
};

// Dim red rather than pure red: at full brightness red still dazzles on a dark night.
inline constexpr WindowColours kNightColours{0x000000, 0x0000B4, 0x000018, 0x0000B4, 0x000070};

// Pure red, the status label's colour in SeaTalk mode.
inline constexpr std::uint32_t kStatusRed = 255;

}  // namespace wakeline
