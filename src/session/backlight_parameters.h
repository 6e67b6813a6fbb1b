#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "layout/keyboard_layout.h"
// LightColor, lightColorOf (exact fractions), presetLightColor and validatedColorField: the
// colour, presets and number-field rule both lighting pages share.
#include "session/light_color.h"

namespace qx9 {

// Bytes divided by 255 in whole numbers: a channel is 1.0 only at 255 (or more), else 0.0.
LightColor coarseColorFromBytes(std::int64_t red, std::int64_t green, std::int64_t blue);
// A component × 255, truncated. Not finite or not in (−1, 256): fatal error.
int componentByte(double component);
// A colour for the screen as 0xRRGGBB (components rounded to the nearest byte).
std::uint32_t rgbValue(const LightColor& color);

// The fourteen preset colours (presetLightColor) as colours: index 1–14; any other index gives
// preset 1 (red).
inline constexpr int kPresetColorCount = 14;
LightColor getColorValue(std::int64_t index);

// The colourful preview: each key's default colour from the key-code map in force, divided by
// 255 in whole numbers (a channel shows only at 255), as 0xRRGGBB in the keys' order. A key
// missing from the map is a fatal error.
std::vector<std::uint32_t> colorfulLightColours(const std::vector<KeyData>& keys);

// The integer value a colour number field holds for its text: leading blanks, an optional sign
// and the digits that follow; 0 when there are none. (The text itself is kept valid by
// validatedColorField.)
std::int64_t colorFieldValue(const std::string& text);

}  // namespace qx9
