#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "layout/custom_key_func.h"
#include "layout/keyboard_layout.h"
#include "store/records.h"

namespace qx9 {

class SettingsPage;
struct SessionCore;

// The key-assignment page: the keyboard's assignment texts and marks, the palette's selection,
// the key menu's choices, the layer and Fn-mode buttons, and the inputs of the custom key
// dialog.
class KeyPage {
public:
    // Ids of the key menu's rows.
    static constexpr int kMenuDefault = 101;
    static constexpr int kMenuDisable = 102;
    static constexpr int kMenuCustom = 103;

    KeyPage(SessionCore& core, const SettingsPage& settings);

    // The keyboard view: one KeyData per key of the layout (its `keyMacro` is the text shown)
    // and whether the key carries an assignment mark.
    const std::vector<KeyData>& keys() const { return keys_; }
    bool isMacro(std::size_t layoutIndex) const { return marks_.at(layoutIndex); }
    void setKeyMacro(std::int64_t layoutIndex, const std::string& text, bool macroState);
    void resetKeyMacro();

    // The palette and its selection (`isSelect` of each palette key).
    const std::vector<keyFunc>& palette() const { return palette_; }
    std::optional<std::size_t> selectedPaletteKey() const;

    // Actions.
    void keyboardKeyAction(const std::string& keyName);
    void MenuItemMouseUpAction(int menuid);
    void customKeyFuncAction(std::int64_t keyCode);
    void addCustomKey(ProfileKey& keydata);
    void loadKeyMacroData();  // showKeyMarks, then the key map is sent
    // The marks and texts of the current profile and layer, from the store.
    void showKeyMarks();
    void selectButtonAction(std::int64_t value);  // layer buttons: 0 base, other Fn
    void textButtonAction(std::int64_t value);    // Fn-key mode: 0 default key, other Fn key
    void customKeywindowCloseDid();

    // Marks the Fn-mode buttons from the stored "fnfunction" (the connection's load).
    void loadFnKeyMode();
    bool fnKeyActive() const { return fnKeyActive_; }

    // What the custom key dialog is opened for.
    std::int64_t customKeyValue = 0;
    std::string customKeyDesc;
    std::int64_t customKeyProfile = 0;

private:
    void clearPaletteSelection();
    void selectFirstPaletteKey(std::int64_t keyCode);

    SessionCore& core_;
    const SettingsPage& settings_;
    std::vector<KeyData> keys_;
    std::vector<bool> marks_;
    std::vector<keyFunc> palette_;
    std::vector<bool> paletteSelect_;
    bool fnKeyActive_ = false;
};

}  // namespace qx9
