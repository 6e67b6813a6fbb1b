#include "ops/key_assignment.h"

#include <algorithm>

#include "i18n/language.h"
#include "i18n/text_ids.h"
#include "layout/custom_key_func.h"
#include "layout/key_maps.h"
#include "ops/history.h"
#include "ops/profiles.h"
#include "ops/settings.h"

namespace qx9::ops {

namespace {

std::vector<FunctionChoice> numbered(int firstTextId, int count) {
    std::vector<FunctionChoice> list;
    for (int i = 0; i < count; ++i) list.push_back({firstTextId + i, i + 1});
    return list;
}

ProfileKey function(std::int64_t type, std::int64_t value, std::string text) {
    ProfileKey k;
    k.macroType = type;
    k.macroValue = value;
    k.macroDesc = std::move(text);
    return k;
}

bool validLayer(std::int64_t layer) { return layer == 0 || layer == 1; }

}  // namespace

const std::vector<FunctionChoice>& functionTypeChoices() {
    static const std::vector<FunctionChoice> types = {
        {textid::kFunctionTypeDefault, kMacroTypeDefault},     {textid::kFunctionTypeDefault + 1, kMacroTypeKey},
        {textid::kFunctionTypeDefault + 2, kMacroTypeMouse},   {textid::kFunctionTypeDefault + 3, kMacroTypeMacro},
        {textid::kFunctionTypeDefault + 4, kMacroTypeMultimedia}, {textid::kFunctionTypeDefault + 5, kMacroTypeMacShortcut}};
    return types;
}

const std::vector<FunctionChoice>& functionChoices(std::int64_t macroType) {
    static const std::vector<FunctionChoice> mouse = numbered(textid::kMouseFirst, 8);
    static const std::vector<FunctionChoice> multimedia = numbered(textid::kMultimediaFirst, 7);
    static const std::vector<FunctionChoice> mac = numbered(textid::kMacShortcutFirst, 6);
    static const std::vector<FunctionChoice> none;
    switch (macroType) {
        case kMacroTypeMouse: return mouse;
        case kMacroTypeMultimedia: return multimedia;
        case kMacroTypeMacShortcut: return mac;
        default: return none;
    }
}

const std::vector<FunctionChoice>& playModeChoices() {
    static const std::vector<FunctionChoice> modes = {
        {textid::kPlayOnce, kPlayOnce}, {textid::kPlayOnce + 1, kPlayRepeat}, {textid::kPlayOnce + 2, kPlayUntilPressedAgain}};
    return modes;
}

ProfileKey defaultFunction() { return function(kMacroTypeDefault, 0, ""); }

ProfileKey disabledFunction() { return function(kMacroTypeDisabled, 1, localizedText(textid::kDisableKeys)); }

std::optional<ProfileKey> paletteFunction(std::int64_t code) {
    const auto* entry = code == static_cast<int>(code) ? CustomKeyFuncCodeMap().find(static_cast<int>(code)) : nullptr;
    if (!entry) return std::nullopt;
    return function(kMacroTypeKey, code, entry->short_name);
}

std::optional<ProfileKey> capturedKeysFunction(const std::vector<std::int64_t>& keys) {
    if (keys.empty()) return std::nullopt;
    ProfileKey k = function(kMacroTypeKey, keys.size() == 1 ? keys[0] : keys[1], "");
    if (keys.size() > 1) k.macro2Value = keys[0];
    for (std::size_t i = 0; i < keys.size(); ++i) {
        const KeyCodeEntry* entry =
            keys[i] == static_cast<int>(keys[i]) ? G_KB_SuperKeyCodeMap.find(static_cast<int>(keys[i])) : nullptr;
        if (!entry) return std::nullopt;
        k.macroDesc += (i ? " + " : "") + entry->full_name;
    }
    return k;
}

ProfileKey macroFunction(const MacroInfo& macro, std::int64_t playMode, std::int64_t playCount) {
    ProfileKey k = function(kMacroTypeMacro, macro.macroId, macro.macroName);
    k.macro2Value = playMode;
    if (playMode == kPlayRepeat) k.macro3Value = std::clamp<std::int64_t>(playCount, 1, kMaxPlayCount);
    return k;
}

std::optional<ProfileKey> listFunction(std::int64_t macroType, std::size_t index) {
    const auto& list = functionChoices(macroType);
    if (index >= list.size()) return std::nullopt;
    return function(macroType, list[index].value, localizedText(list[index].textId));
}

namespace {

// The key as its cap names it ("Caps Lock").
std::string keyFullName(std::int64_t key) {
    const KeyCodeEntry* entry = G_KB_SuperKeyCodeMap.find(static_cast<int>(key));
    return entry && !entry->full_name.empty() ? entry->full_name : std::to_string(key);
}

}  // namespace

Outcome assignKey(const Target& target, std::int64_t profile, std::int64_t layer, std::int64_t key,
                  ProfileKey function) {
    if (!validLayer(layer)) return Outcome::refused(Reason::kNoLayer);
    if (key != static_cast<int>(key) || !G_KB_SuperKeyCodeMap.contains(static_cast<int>(key))) {
        return Outcome::refused(Reason::kNoKey, {std::to_string(key)});
    }
    function.keyId = 0;
    function.profId = profile;
    function.fnlayerId = layer;
    function.keyValue = key;
    {
        DeviceSQLite::Transaction transaction = target.db.beginStep();
        // What the assignment names must still be there when it is stored.
        if (!profileExists(target.db, profile)) return Outcome::refused(Reason::kNoProfile, {std::to_string(profile)});
        if (function.macroType == kMacroTypeMacro) {
            MacroInfo macro;
            if (!target.db.queryMacroInfo(function.macroValue, macro)) {
                return Outcome::refused(Reason::kNoMacro, {std::to_string(function.macroValue)});
            }
        }
        // A value of 0 is the key's default function, stored as the absence of a row.
        const auto store = [&] { return target.db.addKeyProfile(function) >= 1 || function.macroValue == 0; };
        bool stored = store();
        if (stored && function.macroType == kMacroTypeKey && function.macroValue == kFnKeyCode) {
            // A key made Fn is Fn on both layers.
            function.fnlayerId = layer == 0 ? 1 : 0;
            stored = store();
        }
        stored = stored && storeKeyboardProfile(target.db, profile);
        if (!stored || !commitStep(transaction, {"assign", {keyFullName(key)}}, {SendKeyMacroData(profile, 0)})) {
            return Outcome::notStored("the database did not take the assignment");
        }
    }
    return send(target, {SendKeyMacroData(profile, 0)});
}

Outcome sendKeyMap(const Target& target, std::int64_t profile, std::int64_t layer) {
    return send(target, {SendKeyMacroData(profile, layer)});
}

bool storeKeyboardProfile(DeviceSQLite& db, std::int64_t profile) {
    return storeSetting(db, kKeyboardProfile, std::to_string(profile));
}

}  // namespace qx9::ops
