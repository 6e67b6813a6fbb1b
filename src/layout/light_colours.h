#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include <vector>

#include "layout/geometry.h"
#include "layout/keyboard_layout.h"

namespace qx9 {

// A colour as the colour views and the colour panel hold it: components 0.0–1.0.
struct LightColor {
    double red = 0;
    double green = 0;
    double blue = 0;

    friend bool operator==(const LightColor&, const LightColor&) = default;
};

// The three colour number fields of a lighting page.
enum class ColorChannel { kRed = 0, kGreen = 1, kBlue = 2 };

// The colour of a byte triple, each component exactly value / 255.
LightColor lightColorOf(std::uint8_t r, std::uint8_t g, std::uint8_t b);
// The same for 0xRRGGBB.
LightColor lightColorOf(std::uint32_t rgb);
// 0xRRGGBB of a colour as Apply stores it: 0 for black, otherwise each component × 255 truncated.
std::uint32_t packedLightColor(const LightColor& color);
// The fourteen preset colours of both lighting pages (index 1–14; any other index is red).
RgbColor presetLightColor(int index);
// A colour number field after an edit: a text that is not a whole integer becomes "255", a
// value above 255 becomes 255, one below 0 becomes 0.
std::string validatedColorField(const std::string& text);

// Bytes divided by 255 in whole numbers: a channel is 1.0 only at 255 (or more), else 0.0.
LightColor coarseColorFromBytes(std::int64_t red, std::int64_t green, std::int64_t blue);
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

// A colour field's whole text as an integer (saturated far outside 0–255); none when the text
// is not a whole integer.
std::optional<long long> colorFieldInteger(const std::string& text);
// A colour component (0.0–1.0) × 255, truncated; anything else stops the program.
int colorComponentByte(double component);

}  // namespace qx9
