#pragma once

#include <cstdint>
#include <functional>

#include "ops/history.h"
#include "ops/target.h"
#include "store/records.h"

namespace qx9::ops {

// Effect numbers with a rule of their own (the others are plain coloured effects).
enum Effect : std::int64_t {
    kEffectOff = 0,  // "Close Backlight"
    kEffectStatic = 1,
    kEffectColourful = 6,
    kEffectSpectrum = 8,
    kEffectScrolling = 10,  // up / down
    kEffectRolling = 11,    // left / right
    kEffectFlowing = 16,    // left / right
    kEffectTilt = 18,       // left / right
    kLastEffect = 19,
};

// Directions of the light record.
enum Direction : std::int64_t { kLeft = 0, kRight = 1, kUp = 2, kDown = 3 };

// Bytes of the light record.
inline constexpr std::size_t kLightRed = 1, kLightGreen = 2, kLightBlue = 3;
inline constexpr std::size_t kLightRandom = 8, kLightBrightness = 9, kLightSpeed = 10, kLightDirection = 11;
inline constexpr std::uint8_t kRandomOn = 1;

// The effect list: rows 0–18 are effects 1–19, row 19 is effect 0 ("Close Backlight").
inline constexpr int kEffectRows = 20;
std::int64_t effectOfRow(int row);
int effectTextId(int row);

// Which controls an effect has with its stored record.
struct EffectControls {
    bool known = false;          // effects 0–19; another number changes no control
    bool colour = false;         // the colour fields, swatch and presets
    bool randomSwitch = false;   // the random-colour switch is enabled
    bool randomShownOn = false;  // … and shows on
    bool speed = false;
    bool upDown = false;         // direction buttons
    bool leftRight = false;
    bool colourful = false;      // the preview shows every key's own colour
};
EffectControls effectControls(std::int64_t effect, const LightRecord& record);

// The selected effect (kept under profile 1; its rows are created when missing).
std::int64_t selectedEffect(DeviceSQLite& db);
// Selects an effect: stored under profile 1, its record of `profile` read into `record`, sent.
Outcome selectEffect(const Target& target, std::int64_t profile, std::int64_t effect, LightRecord& record);
bool readLightRecord(const DeviceSQLite& db, std::int64_t profile, std::int64_t effect, LightRecord& record);
// Changes the record of `profile` for the effect selected under `selection` (profile 1, or the
// profile whose own selection the page shows): read, changed by `change` and stored in one
// transaction, then sent.
Outcome changeLightRecord(const Target& target, std::int64_t profile, std::int64_t selection,
                          const std::function<void(LightRecord&)>& change, const StepName& step);
Outcome setLightColour(const Target& target, std::int64_t profile, std::int64_t selection, std::uint8_t red,
                       std::uint8_t green, std::uint8_t blue);
Outcome setRandomColour(const Target& target, std::int64_t profile, std::int64_t selection, bool on);
// Brightness and speed are stored whole (0–255); the sliders show the low four bits.
Outcome setBrightness(const Target& target, std::int64_t profile, std::int64_t selection, std::int64_t value);
Outcome setSpeed(const Target& target, std::int64_t profile, std::int64_t selection, std::int64_t value);
Outcome setDirection(const Target& target, std::int64_t profile, std::int64_t selection, std::int64_t direction);

// Sends the record of `profile` for the effect selected under `selection`.
Outcome sendLightMode(const Target& target, std::int64_t profile, std::int64_t selection);

}  // namespace qx9::ops
