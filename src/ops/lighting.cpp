#include "ops/lighting.h"

#include "i18n/text_ids.h"
#include "ops/history.h"
#include "ops/settings.h"

namespace qx9::ops {

namespace {

Outcome byteValue(std::int64_t value, const char* what) {
    if (value < 0 || value > 255) return Outcome::refused(Reason::kByteRange, {what, std::to_string(value)});
    return Outcome::done();
}

}  // namespace

std::int64_t effectOfRow(int row) { return row < kEffectRows - 1 ? std::int64_t{row} + 1 : std::int64_t{kEffectOff}; }

int effectTextId(int row) { return textid::kEffectFirst + row; }

EffectControls effectControls(std::int64_t effect, const LightRecord& record) {
    EffectControls c;
    if (effect < kEffectOff || effect > kLastEffect) return c;
    c.known = true;
    if (effect == kEffectOff) return c;
    c.speed = effect != kEffectStatic;
    c.randomSwitch = true;
    if (effect == kEffectColourful || effect == kEffectSpectrum) {
        c.colourful = true;  // the switch shows off whatever is stored
        return c;
    }
    c.randomShownOn = record[kLightRandom] == kRandomOn;
    c.colour = !c.randomShownOn;
    c.colourful = c.randomShownOn;
    c.upDown = effect == kEffectScrolling;
    c.leftRight = effect == kEffectRolling || effect == kEffectFlowing || effect == kEffectTilt;
    return c;
}

std::int64_t selectedEffect(DeviceSQLite& db) {
    db.writeLightProfile(kSettingsProfile);
    return db.getLightModeSelectIndex(kSettingsProfile);
}

bool readLightRecord(const DeviceSQLite& db, std::int64_t profile, std::int64_t effect, LightRecord& record) {
    lightData data;
    if (!db.queryLightInfo(profile, effect, data)) return false;
    record = data.data;
    return true;
}

Outcome selectEffect(const Target& target, std::int64_t profile, std::int64_t effect, LightRecord& record) {
    // The selection is one for the application; the record is that of the current profile.
    record.fill(0);
    {
        DeviceSQLite::Transaction transaction = target.db.beginStep();
        target.db.writeLightProfile(profile);  // a profile's lighting rows are made when first needed
        if (!target.db.selectLightMode(kSettingsProfile, effect) ||
            !commitStep(transaction, {"effect", {std::to_string(effect)}}, {SendLightModeData(profile, kSettingsProfile)})) {
            return Outcome::notStored("the database did not take the effect");
        }
        if (!readLightRecord(target.db, profile, effect, record)) {
            return Outcome::refused(Reason::kUnreadableEffect, {std::to_string(effect)});
        }
    }
    return send(target, {SendLightModeData(profile, kSettingsProfile)});
}

Outcome changeLightRecord(const Target& target, std::int64_t profile, std::int64_t selection,
                          const std::function<void(LightRecord&)>& change, const StepName& step) {
    {
        // The effect and its record as they are now, whatever another program did before.
        DeviceSQLite::Transaction transaction = target.db.beginStep();
        target.db.writeLightProfile(profile);
        const std::int64_t effect = target.db.getLightModeSelectIndex(selection);
        LightRecord record{};
        if (!readLightRecord(target.db, profile, effect, record)) {
            return Outcome::refused(Reason::kUnreadableEffect, {std::to_string(effect)});
        }
        change(record);
        if (!target.db.modifyLightData(profile, effect, record) ||
            !commitStep(transaction, step, {SendLightModeData(profile, selection)})) {
            return Outcome::notStored("the database did not take the change");
        }
    }
    return sendLightMode(target, profile, selection);
}

Outcome setLightColour(const Target& target, std::int64_t profile, std::int64_t selection, std::uint8_t red,
                       std::uint8_t green, std::uint8_t blue) {
    return changeLightRecord(target, profile, selection, [&](LightRecord& r) {
        r[kLightRed] = red;
        r[kLightGreen] = green;
        r[kLightBlue] = blue;
    }, {"light-colour", {colourName(std::uint32_t{red} << 16 | std::uint32_t{green} << 8 | blue)}});
}

Outcome setRandomColour(const Target& target, std::int64_t profile, std::int64_t selection, bool on) {
    return changeLightRecord(target, profile, selection, [&](LightRecord& r) { r[kLightRandom] = on ? kRandomOn : 0; },
                             {on ? "random-colour-on" : "random-colour-off", {}});
}

Outcome setBrightness(const Target& target, std::int64_t profile, std::int64_t selection, std::int64_t value) {
    if (Outcome o = byteValue(value, "the brightness"); !o) return o;
    return changeLightRecord(target, profile, selection,
                             [&](LightRecord& r) { r[kLightBrightness] = static_cast<std::uint8_t>(value); },
                             {"brightness", {std::to_string(value)}});
}

Outcome setSpeed(const Target& target, std::int64_t profile, std::int64_t selection, std::int64_t value) {
    if (Outcome o = byteValue(value, "the speed"); !o) return o;
    return changeLightRecord(target, profile, selection,
                             [&](LightRecord& r) { r[kLightSpeed] = static_cast<std::uint8_t>(value); },
                             {"speed", {std::to_string(value)}});
}

Outcome setDirection(const Target& target, std::int64_t profile, std::int64_t selection, std::int64_t direction) {
    if (Outcome o = byteValue(direction, "the direction"); !o) return o;
    return changeLightRecord(target, profile, selection,
                             [&](LightRecord& r) { r[kLightDirection] = static_cast<std::uint8_t>(direction); },
                             {"direction", {std::to_string(direction)}});
}

Outcome sendLightMode(const Target& target, std::int64_t profile, std::int64_t selection) {
    return send(target, {SendLightModeData(profile, selection)});
}

}  // namespace qx9::ops
