#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace qx9 {

class KeyboardSession;

// A row of the backlight mode list.
struct LightModeRow {
    std::string icon_n = "icon_circle_n";
    std::string icon_h = "icon_circle_h";
    int textId = 0;
    std::string text;
    std::int64_t mode = 0;
};

// The backlight page: the mode catalogue and its highlight.
class LightingPage {
public:
    static constexpr int kModeRows = 20;

    explicit LightingPage(KeyboardSession& session);

    const std::vector<LightModeRow>& light_mode_datas() const { return rows_; }
    int selectedRow() const { return selectedRow_; }

    // The first build, before any language is applied: modes 1–20 with placeholder texts.
    void initLightTableData();
    // The catalogue in the current language (rows 0–18 modes 1–19, row 19 mode 0), then the
    // highlight from the store.
    void rebuildModeList();
    void loadLightModeData();
    void setLightModeTableSelect(int selectIndex);

private:
    KeyboardSession& s_;
    std::vector<LightModeRow> rows_;
    int selectedRow_ = -1;
};

}  // namespace qx9
