#include "ops/user_lights.h"

#include "i18n/language.h"
#include "i18n/text_ids.h"
#include "layout/key_maps.h"
#include "ops/history.h"
#include "ops/settings.h"

namespace qx9::ops {

namespace {

constexpr std::uint32_t kMaxColour = 0xFFFFFF;

Outcome requireSet(const DeviceSQLite& db, std::int64_t set) {
    if (set >= 1 && userLightExists(db, set)) return Outcome::done();
    return Outcome::refused(Reason::kNoUserLight, {std::to_string(std::max<std::int64_t>(set, 0))});
}

std::string setName(const DeviceSQLite& db, std::int64_t set) {
    std::vector<UserLightData> sets;
    db.getUserLightData(kSettingsProfile, sets);
    for (const UserLightData& s : sets) {
        if (s.userlight_id == set) return s.userlight_name;
    }
    return std::to_string(set);
}

}  // namespace

std::string newUserLightName(std::size_t listedSets) {
    return localizedText(textid::kUserLight) + std::to_string(listedSets + 1);
}

bool userLightExists(const DeviceSQLite& db, std::int64_t set) {
    std::vector<UserLightData> sets;
    db.getUserLightData(kSettingsProfile, sets);
    for (const UserLightData& s : sets) {
        if (s.userlight_id == set) return true;
    }
    return false;
}

const std::vector<KeyData>& paintableKeys() {
    static const std::vector<KeyData> keys = buildKeyboardLayout();
    return keys;
}

std::optional<std::size_t> paintablePosition(std::int64_t keyCode) {
    for (const KeyData& k : paintableKeys()) {
        if (k.keycode == keyCode) return static_cast<std::size_t>(k.index);
    }
    return std::nullopt;
}

std::vector<std::uint32_t> setColours(const DeviceSQLite& db, std::int64_t set) {
    std::vector<std::uint32_t> colours(paintableKeys().size(), 0);
    std::vector<UserLightLEDData> stored;
    db.getUserLightLEDData(set, stored);
    for (const UserLightLEDData& c : stored) {
        const KeyCodeEntry* key =
            c.key_value == static_cast<int>(c.key_value) ? G_KB_SuperKeyCodeMap.find(static_cast<int>(c.key_value)) : nullptr;
        if (!key || key->layout_index < 0 || static_cast<std::size_t>(key->layout_index) >= colours.size()) continue;
        colours[static_cast<std::size_t>(key->layout_index)] = static_cast<std::uint32_t>(c.key_rgbvalue) & kMaxColour;
    }
    return colours;
}

Outcome addUserLight(const Target& target, std::string& name, std::int64_t& id) {
    DeviceSQLite::Transaction transaction = target.db.beginStep();
    std::vector<UserLightData> sets;
    target.db.getUserLightData(kSettingsProfile, sets);
    name = newUserLightName(sets.size());
    id = target.db.addUserLight(kSettingsProfile, name);
    if (id < 1 || !commitStep(transaction, {"add-set", {name}}, {})) {
        id = 0;
        return Outcome::notStored("the database refused the new user light");
    }
    return Outcome::done();
}

Outcome renameUserLight(const Target& target, std::int64_t set, const std::string& name) {
    if (name.empty()) return Outcome::refused(Reason::kEmptyName, {"user light's"});
    DeviceSQLite::Transaction transaction = target.db.beginStep();
    if (Outcome o = requireSet(target.db, set); !o) return o;
    if (!target.db.updateUserLightName(set, name) || !commitStep(transaction, {"rename-set", {name}}, {})) {
        return Outcome::notStored("the database did not take the new name");
    }
    return Outcome::done();
}

Outcome deleteUserLight(const Target& target, std::int64_t set) {
    DeviceSQLite::Transaction transaction = target.db.beginStep();
    if (Outcome o = requireSet(target.db, set); !o) return o;
    const std::string name = setName(target.db, set);
    if (!target.db.deleteUserLight(set) || !commitStep(transaction, {"delete-set", {name}}, {})) {
        return Outcome::notStored("the database refused to delete the user light");
    }
    return Outcome::done();
}

Outcome showUserLight(const Target& target, std::int64_t set) { return sendUserLightColours(target, set); }

Outcome applyUserLight(const Target& target, std::int64_t set, const std::vector<std::uint32_t>& colours,
                       const std::vector<std::uint32_t>* loaded) {
    return changeUserLight(target, set, [&](std::vector<std::uint32_t>& stored) {
        for (std::size_t i = 0; i < stored.size() && i < colours.size(); ++i) {
            // A key the page did not change keeps what the set holds now.
            if (!loaded || i >= loaded->size() || colours[i] != (*loaded)[i]) stored[i] = colours[i] & kMaxColour;
        }
        return Outcome::done();
    }, {"set-colours", {setName(target.db, set)}});
}

Outcome resetUserLight(const Target& target, std::int64_t set) {
    return changeUserLight(target, set, [](std::vector<std::uint32_t>& stored) {
        std::fill(stored.begin(), stored.end(), 0);
        return Outcome::done();
    }, {"reset-set", {setName(target.db, set)}});
}

Outcome paintKeys(const Target& target, std::int64_t set, const std::vector<std::int64_t>& keys, std::uint32_t rgb) {
    if (rgb > kMaxColour) return Outcome::refused(Reason::kNotAColour);
    return changeUserLight(target, set, [&](std::vector<std::uint32_t>& colours) {
        for (std::int64_t code : keys) {
            const std::optional<std::size_t> position = paintablePosition(code);
            if (!position) return Outcome::refused(Reason::kKeyNotShown, {std::to_string(code)});
            colours[*position] = rgb;
        }
        return Outcome::done();
    }, {"paint", {std::to_string(keys.size()), colourName(rgb)}});
}

Outcome changeUserLight(const Target& target, std::int64_t set,
                        const std::function<Outcome(std::vector<std::uint32_t>&)>& change, const StepName& step) {
    {
        DeviceSQLite::Transaction transaction = target.db.beginStep();
        if (Outcome o = requireSet(target.db, set); !o) return o;
        std::vector<std::uint32_t> colours = setColours(target.db, set);
        if (Outcome o = change(colours); !o) return o;
        // Every key of the on-screen keyboard is written: black takes a key out of every set (a
        // key is coloured in at most one set).
        const std::vector<KeyData>& keys = paintableKeys();
        for (std::size_t i = 0; i < keys.size() && i < colours.size(); ++i) {
            target.db.addUserLightLEDData({0, set, keys[i].keycode, colours[i] & kMaxColour});
        }
        if (!commitStep(transaction, step, {SendUserLightLedData(set)})) {
            return Outcome::notStored("the database did not take the colours");
        }
    }
    return sendUserLightColours(target, set);
}

Outcome sendUserLightMode(const Target& target) { return send(target, {SendUserLightModeData()}); }

Outcome sendUserLightColours(const Target& target, std::int64_t setId) {
    return send(target, {SendUserLightLedData(setId)});
}

}  // namespace qx9::ops
