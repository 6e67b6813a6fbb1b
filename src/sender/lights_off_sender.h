#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "sender/keyboard_sender.h"

namespace qx9 {

// Keeps the keys dark while asked to (the screen is locked, or the user turned the lights off)
// without storing anything: passes every request on to the sender it wraps, except that while
// dark a request for lighting (the effect, the per-key mode or colours) sends "Close Backlight"
// instead and is kept; when light again, the lighting asked for while dark is sent, or else the
// stored effect.
class LightsOffSender final : public KeyboardSender {
public:
    explicit LightsOffSender(KeyboardSender& inner) : inner_(inner) {}

    SendResult send(const std::vector<BlockRequest>& blocks) override;
    void setDevice(HidDeviceRef device) override { inner_.setDevice(std::move(device)); }
    void setPresent(bool present) override { inner_.setPresent(present); }

    // Dark or light again (nothing is sent when it already is); `profile` is the one whose
    // records are sent (the settings profile, as the backlight page's).
    SendResult setDark(bool dark, std::int64_t profile);
    bool dark() const { return dark_; }

private:
    KeyboardSender& inner_;
    bool dark_ = false;
    std::vector<BlockRequest> keptLighting_;  // asked for while dark, in order
};

}  // namespace qx9
