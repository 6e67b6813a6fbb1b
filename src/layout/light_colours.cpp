// The colours both lighting pages and qx9ctl share: the colour-view representation, presets,
// previews, fields.
#include "layout/light_colours.h"

#include <cctype>
#include <cmath>

#include "common/fatal.h"
#include "common/text_number.h"
#include "layout/key_maps.h"

namespace qx9 {

// A field's whole text as an integer, saturated far outside 0–255; none when it is not one.
std::optional<long long> colorFieldInteger(const std::string& text) {
    std::size_t i = 0;
    bool negative = false;
    if (i < text.size() && (text[i] == '+' || text[i] == '-')) negative = text[i++] == '-';
    if (i == text.size()) return std::nullopt;
    long long v = 0;
    for (; i < text.size(); ++i) {
        if (!std::isdigit(static_cast<unsigned char>(text[i]))) return std::nullopt;
        if (v < 1'000'000) v = v * 10 + (text[i] - '0');
    }
    return negative ? -v : v;
}

// A component × 255, truncated; the colour panel only hands out components 0.0–1.0.
int colorComponentByte(double component) {
    const double v = component * 255;
    if (!std::isfinite(v) || v <= -1 || v >= 256) fatalError("colour component " + std::to_string(component) + " is not 0.0-1.0");
    return static_cast<int>(v);
}

LightColor lightColorOf(std::uint8_t r, std::uint8_t g, std::uint8_t b) {
    return {r / 255.0, g / 255.0, b / 255.0};
}

LightColor lightColorOf(std::uint32_t rgb) {
    return lightColorOf(static_cast<std::uint8_t>(rgb >> 16), static_cast<std::uint8_t>(rgb >> 8), static_cast<std::uint8_t>(rgb));
}

std::uint32_t packedLightColor(const LightColor& c) {
    if (c == LightColor{}) return 0;
    return static_cast<std::uint32_t>(colorComponentByte(c.red)) << 16 |
           static_cast<std::uint32_t>(colorComponentByte(c.green)) << 8 |
           static_cast<std::uint32_t>(colorComponentByte(c.blue));
}

RgbColor presetLightColor(int index) {
    static constexpr RgbColor kPresets[14] = {
        {255, 0, 0},   {255, 0, 252},   {126, 0, 255},   {0, 0, 255},    {0, 137, 253},
        {0, 252, 255}, {51, 153, 51},   {0, 255, 0},     {180, 255, 0},  {255, 246, 0},
        {255, 168, 0}, {234, 84, 19},   {255, 255, 255}, {0, 0, 0},
    };
    if (index < 1 || index > 14) return {255, 0, 0};
    return kPresets[index - 1];
}

std::string validatedColorField(const std::string& text) {
    const std::optional<long long> v = colorFieldInteger(text);
    if (!v) return "255";
    if (*v >= 256) return "255";
    if (*v < 0) return "0";
    return text;
}

namespace {

int roundedByte(double component) {
    const double v = std::round(component * 255.0);
    if (!(v >= 0.0)) return 0;
    return v > 255.0 ? 255 : static_cast<int>(v);
}

}  // namespace

LightColor coarseColorFromBytes(std::int64_t red, std::int64_t green, std::int64_t blue) {
    return {static_cast<double>(red / 255), static_cast<double>(green / 255), static_cast<double>(blue / 255)};
}

std::uint32_t rgbValue(const LightColor& c) {
    return static_cast<std::uint32_t>(roundedByte(c.red)) << 16 | static_cast<std::uint32_t>(roundedByte(c.green)) << 8 |
           static_cast<std::uint32_t>(roundedByte(c.blue));
}

LightColor getColorValue(std::int64_t index) {
    const RgbColor c = presetLightColor(index >= 1 && index <= kPresetColorCount ? static_cast<int>(index) : 1);
    return lightColorOf(c.r, c.g, c.b);
}

std::vector<std::uint32_t> colorfulLightColours(const std::vector<KeyData>& keys) {
    std::vector<std::uint32_t> colours;
    colours.reserve(keys.size());
    for (const KeyData& k : keys) {
        const KeyCodeEntry& e = G_KB_SuperKeyCodeMap.at(static_cast<int>(k.keycode));
        colours.push_back(rgbValue(coarseColorFromBytes(e.rgb_r, e.rgb_g, e.rgb_b)));
    }
    return colours;
}

std::int64_t colorFieldValue(const std::string& text) { return leadingInteger(text); }

}  // namespace qx9
