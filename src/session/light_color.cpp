// The colours both lighting pages share: the colour-view representation, presets, fields.
#include "session/light_color.h"

#include <cctype>
#include <cmath>

#include "common/fatal.h"

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

}  // namespace qx9
