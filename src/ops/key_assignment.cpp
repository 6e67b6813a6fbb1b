#include "ops/key_assignment.h"

#include <algorithm>

#include "common/console.h"
#include "i18n/language.h"
#include "i18n/text_ids.h"
#include "layout/custom_key_func.h"
#include "layout/key_maps.h"
#include "protocol/key_mapping.h"
#include "ops/profiles.h"

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

Outcome assignKey(const Target& target, std::int64_t profile, std::int64_t layer, std::int64_t key,
                  ProfileKey function) {
    if (!validLayer(layer)) return Outcome::refused("the layer is 0 (base) or 1 (Fn)");
    if (key != static_cast<int>(key) || !G_KB_SuperKeyCodeMap.contains(static_cast<int>(key))) {
        return Outcome::refused("no key " + std::to_string(key) + " on the QX9");
    }
    if (!profileExists(target.db, profile)) return Outcome::refused("no profile " + std::to_string(profile));
    if (function.macroType == kMacroTypeMacro) {
        MacroInfo macro;
        if (!target.db.queryMacroInfo(function.macroValue, macro)) {
            return Outcome::refused("no macro " + std::to_string(function.macroValue));
        }
    }
    function.keyId = 0;
    function.profId = profile;
    function.fnlayerId = layer;
    function.keyValue = key;
    {
        // A value of 0 is the key's default function, stored as the absence of a row.
        const auto store = [&] { return target.db.addKeyProfile(function) >= 1 || function.macroValue == 0; };
        DeviceSQLite::Transaction transaction = target.db.beginTransaction();
        bool stored = store();
        if (stored && function.macroType == kMacroTypeKey && function.macroValue == kFnKeyCode) {
            // A key made Fn is Fn on both layers.
            function.fnlayerId = layer == 0 ? 1 : 0;
            stored = store();
        }
        if (!stored || !transaction.commit()) return Outcome::notStored("the database did not take the assignment");
    }
    return sentOrNot(sendKeyMap(target, profile, 0), "the key map");
}

namespace {

bool isByte(std::int64_t v) { return v >= 0 && v <= 255; }

// Whether a stored assignment can be written into the key-mapping block; a damaged row (a key
// the QX9 lacks, a value outside what its record holds) is left out with a console line.
bool encodable(const ProfileKey& k, const std::vector<MacroInfo>& macros) {
    if (k.keyValue != static_cast<int>(k.keyValue) || !G_KB_SuperKeyCodeMap.contains(static_cast<int>(k.keyValue))) {
        return false;
    }
    switch (k.macroType) {
        case kMacroTypeKey: return (k.macroValue >= protocol::kFirstApplicationCode || isByte(k.macroValue)) && isByte(k.macro2Value);
        case kMacroTypeCombination: return isByte(k.macroValue) && isByte(k.macro2Value) && isByte(k.macro3Value);
        case kMacroTypeMacro:
            for (std::size_t pos = 0; pos < macros.size(); ++pos) {
                if (macros[pos].macroId == k.macroValue) return pos <= 255 && isByte(k.macro2Value) && isByte(k.macro3Value);
            }
            return true;  // a macro that is gone leaves the record as it is
        default: return true;
    }
}

}  // namespace

bool sendKeyMap(const Target& target, std::int64_t profile, std::int64_t layer) {
    protocol::KeyMappingInput input;
    target.db.queryKeysProfile(profile, layer, input.keys);
    target.db.queryAllMacroData(input.macros);
    std::erase_if(input.keys, [&](const ProfileKey& k) {
        if (encodable(k, input.macros)) return false;
        console() << "key assignment " << k.keyId << " is damaged and is not sent\n";
        return true;
    });
    return transfer(target, [&] { protocol::SendKeyMacroData(target.keyboard, layer, input); });
}

}  // namespace qx9::ops
