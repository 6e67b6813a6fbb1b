#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "layout/light_colours.h"

namespace qx9 {

class KeyPage;
struct SessionCore;

// A row of the per-key lighting sets.
struct UserLightRow {
    std::int64_t light = 0;
    std::string name;
};

// The per-key lighting page: the sets of profile 1, the loaded set, and its editor — the
// preview colour of every key, the keys selected for painting, and the colour controls.
class UserLightPage {
public:

    UserLightPage(SessionCore& core, const KeyPage& keys);

    // The list of sets and the loaded one.
    const std::vector<UserLightRow>& userlight_datas() const { return rows_; }
    int selectedRow() const { return selectedRow_; }
    std::int64_t userlight_id() const { return userlight_id_; }

    // The on-screen keyboard (layout order). keyColours() holds each key's colour as Apply
    // would store it (0xRRGGBB, 0 black); keyColor() the exact colour of its colour view.
    const std::vector<std::uint32_t>& keyColours() const { return keyColours_; }
    const LightColor& keyColor(std::size_t layoutIndex) const { return keyColors_.at(layoutIndex); }
    bool keyCheck(std::size_t layoutIndex) const { return keyCheck_.at(layoutIndex) != 0; }
    std::int64_t selectKeyItem() const { return selectKeyItem_; }
    std::int64_t hoverKeyItem() const { return hoverKeyItem_; }
    // The key's highlight: selected, or under the pointer.
    bool keyHighlighted(std::size_t layoutIndex) const;

    // The colour controls: the three number fields and the swatch.
    const std::string& userlight_edit_color_r() const { return fields_[0]; }
    const std::string& userlight_edit_color_g() const { return fields_[1]; }
    const std::string& userlight_edit_color_b() const { return fields_[2]; }
    const LightColor& userlight_btn_color() const { return swatch_; }

    // The sets.
    void loadUserLightData();
    void addUserLight();                       // userlight_btn_add
    void delUserLight();                       // userlight_btn_del
    void setUserLightTableSelect(int selectIndex);
    // The row's name edited in place; an empty or refused name keeps the stored one.
    void renameUserLight(int row, const std::string& name);
    void userLightTableSelectionChanged(int row);  // the table "userlightlist": select and load
    void loadUserLightInfo(int index);  // shows the set and sends it
    bool showUserLightInfo(int index);  // shows it only; false when the row is not in the list
    void resetUserLightKeyColor();             // userlight_button_resetcolor
    void applyUserLightKeyColor();             // userlight_button_applycolor
    // Another program changed the database: the list of sets, and the loaded set's colours where
    // the user has not painted since they were loaded.
    void reloadFromDatabase();

    // The on-screen keyboard.
    void resetKeyColor();  // every key black, no key selected
    void setCheckItemColor(const LightColor& color);
    // A click on a key (−1: between keys, where the selection stays); `extend` (left Shift held)
    // adds the key to the selection.
    void keyClicked(int layoutIndex, bool extend);
    // A rubber band over these keys: they replace any earlier selection, Shift or not.
    void keysInBand(const std::vector<int>& layoutIndexes);
    void keyHovered(int layoutIndex);  // −1: none

    // The colour controls.
    void controlTextDidChange(ColorChannel channel, const std::string& text);
    void setUserLightRGBValue(int r_value, int g_value, int b_value);
    void userLightColorPanel(const LightColor& color);
    void userLightPresetColor(int preset);  // 1–14
    // The fields alone (the backlight page's presets write them as well).
    void setUserLightColorFields(int r, int g, int b);

private:
    void setKeyColor(std::size_t layoutIndex, const LightColor& color);
    void showSetColours();
    // The set's stored colours replace the shown ones that still are as loaded.
    void rebase();

    SessionCore& core_;
    const KeyPage& keys_;
    std::vector<UserLightRow> rows_;
    int selectedRow_ = -1;
    std::int64_t userlight_id_ = 0;
    std::vector<std::uint32_t> keyColours_;
    std::vector<std::uint32_t> loaded_;  // the set's colours as last read or stored
    std::vector<LightColor> keyColors_;
    std::vector<char> keyCheck_;
    std::int64_t selectKeyItem_ = -1;
    std::int64_t hoverKeyItem_ = -1;
    std::array<std::string, 3> fields_{"0", "0", "0"};
    LightColor swatch_;
};

}  // namespace qx9
