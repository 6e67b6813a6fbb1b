// The per-key lighting editor: selecting keys on the on-screen keyboard and painting them with
// the colour controls. Painting changes only the screen; Apply stores it.
#include <cctype>
#include <cmath>

#include "common/fatal.h"
#include "hid/capture_state.h"
#include "session/keyboard_session.h"
#include "session/light_color.h"
#include "session/user_light_page.h"

namespace qx9 {

namespace {

bool contains(const Rect& r, ViewPoint p) {
    return p.x >= r.x && p.x < r.x + r.width && p.y >= r.y && p.y < r.y + r.height;
}

bool intersects(const Rect& a, const Rect& b) {
    if (a.width <= 0 || a.height <= 0 || b.width <= 0 || b.height <= 0) return false;
    return a.x < b.x + b.width && b.x < a.x + a.width && a.y < b.y + b.height && b.y < a.y + a.height;
}

}  // namespace

// The on-screen keyboard.

void UserLightPage::setKeyColor(std::size_t layoutIndex, const LightColor& color) {
    keyColors_.at(layoutIndex) = color;
    keyColours_.at(layoutIndex) = packedLightColor(color);
}

void UserLightPage::resetKeyColor() {
    for (std::size_t i = 0; i < keyColors_.size(); ++i) setKeyColor(i, LightColor{});
    keyCheck_.assign(keyCheck_.size(), 0);
    s_.core.notify(SessionAspect::UserLights);
}

bool UserLightPage::keyHighlighted(std::size_t layoutIndex) const {
    return keyCheck(layoutIndex) || static_cast<std::int64_t>(layoutIndex) == hoverKeyItem_;
}

int UserLightPage::keyAt(ViewPoint point) const {
    for (const KeyData& k : s_.keys.keys()) {
        if (contains(k.rect, point)) return static_cast<int>(k.index);
    }
    return -1;
}

void UserLightPage::mouseDown(ViewPoint point) {
    ptMouseDown_ = point;
    selectKeyItem_ = keyAt(point);
    if (selectKeyItem_ < 0) return;  // between keys: the selection stays
    if (shiftKeyStatus != 1) keyCheck_.assign(keyCheck_.size(), 0);
    keyCheck_.at(static_cast<std::size_t>(selectKeyItem_)) = 1;
    s_.core.notify(SessionAspect::UserLights);
}

void UserLightPage::mouseDragged(ViewPoint point) {
    const double dx = point.x - ptMouseDown_.x;
    const double dy = point.y - ptMouseDown_.y;
    if (std::abs(dx) <= kDragThreshold && std::abs(dy) <= kDragThreshold) return;
    frameSelect_ = {std::min(point.x, ptMouseDown_.x), std::min(point.y, ptMouseDown_.y), std::abs(dx), std::abs(dy)};
    // The band replaces any earlier selection, Shift or not.
    for (const KeyData& k : s_.keys.keys()) {
        keyCheck_.at(static_cast<std::size_t>(k.index)) = intersects(k.rect, frameSelect_) ? 1 : 0;
    }
    s_.core.notify(SessionAspect::UserLights);
}

void UserLightPage::mouseUp() {
    frameSelect_ = Rect{};
    s_.core.notify(SessionAspect::UserLights);
}

void UserLightPage::mouseMoved(ViewPoint point) {
    hoverKeyItem_ = keyAt(point);
    s_.core.notify(SessionAspect::UserLights);
}

void UserLightPage::setCheckItemColor(const LightColor& color) {
    for (std::size_t i = 0; i < keyCheck_.size(); ++i) {
        if (keyCheck_[i]) setKeyColor(i, color);
    }
    // The last clicked key takes the colour too, even when a drag deselected it.
    if (selectKeyItem_ >= 0 && static_cast<std::size_t>(selectKeyItem_) < keyColors_.size()) {
        setKeyColor(static_cast<std::size_t>(selectKeyItem_), color);
    }
    s_.core.notify(SessionAspect::UserLights);
}

// The colour controls.

void UserLightPage::setUserLightColorFields(int r, int g, int b) {
    fields_ = {std::to_string(r), std::to_string(g), std::to_string(b)};
    s_.core.notify(SessionAspect::UserLights);
}

void UserLightPage::controlTextDidChange(int tag, const std::string& text) {
    if (tag < kFieldRed || tag > kFieldBlue) return;
    std::string& field = fields_[static_cast<std::size_t>(tag - kFieldRed)];
    field = validatedColorField(text);
    const int value = static_cast<int>(*colorFieldInteger(field));
    s_.core.notify(SessionAspect::UserLights);
    setUserLightRGBValue(tag == kFieldRed ? value : 0, tag == kFieldGreen ? value : 0, tag == kFieldBlue ? value : 0);
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

void UserLightPage::userLightPresetColor(int tag) {
    if (tag < kFirstPreset || tag > kLastPreset) return;
    const RgbColor c = presetLightColor(tag - kColorSwatch);
    swatch_ = lightColorOf(c.r, c.g, c.b);
    setUserLightColorFields(c.r, c.g, c.b);
    setCheckItemColor(swatch_);
}

}  // namespace qx9
