// The per-key lighting editor: selecting keys on the on-screen keyboard and painting them with
// the colour controls. Painting changes only the screen; Apply stores it.
#include "common/fatal.h"
#include "session/keyboard_session.h"
#include "session/user_light_page.h"

namespace qx9 {


// The on-screen keyboard.

void UserLightPage::setKeyColor(std::size_t layoutIndex, const LightColor& color) {
    keyColors_.at(layoutIndex) = color;
    keyColours_.at(layoutIndex) = packedLightColor(color);
}

void UserLightPage::resetKeyColor() {
    for (std::size_t i = 0; i < keyColors_.size(); ++i) setKeyColor(i, LightColor{});
    keyCheck_.assign(keyCheck_.size(), 0);
    core_.notify(SessionAspect::UserLights);
}

bool UserLightPage::keyHighlighted(std::size_t layoutIndex) const {
    return keyCheck(layoutIndex) || static_cast<std::int64_t>(layoutIndex) == hoverKeyItem_;
}

void UserLightPage::keyClicked(int layoutIndex, bool extend) {
    selectKeyItem_ = layoutIndex >= 0 && static_cast<std::size_t>(layoutIndex) < keyCheck_.size() ? layoutIndex : -1;
    if (selectKeyItem_ < 0) return;  // between keys: the selection stays
    if (!extend) keyCheck_.assign(keyCheck_.size(), 0);
    keyCheck_.at(static_cast<std::size_t>(selectKeyItem_)) = 1;
    core_.notify(SessionAspect::UserLights);
}

void UserLightPage::keysInBand(const std::vector<int>& layoutIndexes) {
    keyCheck_.assign(keyCheck_.size(), 0);
    for (int i : layoutIndexes) {
        if (i >= 0 && static_cast<std::size_t>(i) < keyCheck_.size()) keyCheck_[static_cast<std::size_t>(i)] = 1;
    }
    core_.notify(SessionAspect::UserLights);
}

void UserLightPage::keyHovered(int layoutIndex) {
    hoverKeyItem_ = layoutIndex;
    core_.notify(SessionAspect::UserLights);
}

void UserLightPage::setCheckItemColor(const LightColor& color) {
    for (std::size_t i = 0; i < keyCheck_.size(); ++i) {
        if (keyCheck_[i]) setKeyColor(i, color);
    }
    // The last clicked key takes the colour too, even when a drag deselected it.
    if (selectKeyItem_ >= 0 && static_cast<std::size_t>(selectKeyItem_) < keyColors_.size()) {
        setKeyColor(static_cast<std::size_t>(selectKeyItem_), color);
    }
    core_.notify(SessionAspect::UserLights);
}

// The colour controls.

void UserLightPage::setUserLightColorFields(int r, int g, int b) {
    fields_ = {std::to_string(r), std::to_string(g), std::to_string(b)};
    core_.notify(SessionAspect::UserLights);
}

void UserLightPage::controlTextDidChange(ColorChannel channel, const std::string& text) {
    std::string& field = fields_[static_cast<std::size_t>(channel)];
    field = validatedColorField(text);
    const int value = static_cast<int>(*colorFieldInteger(field));
    core_.notify(SessionAspect::UserLights);
    setUserLightRGBValue(channel == ColorChannel::kRed ? value : 0, channel == ColorChannel::kGreen ? value : 0,
                         channel == ColorChannel::kBlue ? value : 0);
}

void UserLightPage::setUserLightRGBValue(int r_value, int g_value, int b_value) {
    // 0 means "the field's value"; a real 0 and no change are the same request.
    const auto fieldValue = [this](std::size_t i) {
        const std::optional<long long> v = colorFieldInteger(fields_[i]);
        return v ? static_cast<int>(*v) : 0;
    };
    const int r = r_value != 0 ? r_value : fieldValue(0);
    const int g = g_value != 0 ? g_value : fieldValue(1);
    const int b = b_value != 0 ? b_value : fieldValue(2);
    // Whole-number division: a channel is on only at 255.
    setCheckItemColor({static_cast<double>(r / 255), static_cast<double>(g / 255), static_cast<double>(b / 255)});
}

void UserLightPage::userLightColorPanel(const LightColor& color) {
    setUserLightColorFields(colorComponentByte(color.red), colorComponentByte(color.green), colorComponentByte(color.blue));
    setCheckItemColor(color);
}

void UserLightPage::userLightPresetColor(int preset) {
    if (preset < 1 || preset > kPresetColorCount) return;
    const RgbColor c = presetLightColor(preset);
    swatch_ = lightColorOf(c.r, c.g, c.b);
    setUserLightColorFields(c.r, c.g, c.b);
    setCheckItemColor(swatch_);
}

}  // namespace qx9
