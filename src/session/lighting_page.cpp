#include "session/lighting_page.h"

#include "i18n/language.h"
#include "session/keyboard_session.h"

namespace qx9 {

LightingPage::LightingPage(KeyboardSession& session) : s_(session) { initLightTableData(); }

void LightingPage::initLightTableData() {
    // Ids 300–318 are in no table, so every row reads the table's tag until the language
    // switch rebuilds the list; mode 20 has no effect of its own.
    rows_.clear();
    for (int i = 0; i < kModeRows; ++i) {
        LightModeRow row;
        row.textId = i < 19 ? 300 + i : 318;
        row.text = localizedText(row.textId);
        row.mode = i + 1;
        rows_.push_back(std::move(row));
    }
    s_.core.notify(SessionAspect::LightModes);
}

void LightingPage::rebuildModeList() {
    rows_.clear();
    for (int r = 0; r < kModeRows; ++r) {
        LightModeRow row;
        row.textId = 500 + r;
        row.text = localizedText(row.textId);
        row.mode = r < 19 ? r + 1 : 0;  // "Close Backlight" (mode 0) is the last row
        rows_.push_back(std::move(row));
    }
    s_.core.notify(SessionAspect::LightModes);
    loadLightModeData();
}

void LightingPage::loadLightModeData() {
    SessionCore& core = s_.core;
    // The selection is kept under profile 1 whatever profile is current.
    if (DeviceSQLite* db = core.db()) {
        db->writeLightProfile(1);
        core.currentLightMode = db->getLightModeSelectIndex(1);
    }
    int row = 0;
    while (row < static_cast<int>(rows_.size()) && rows_[static_cast<std::size_t>(row)].mode != core.currentLightMode) ++row;
    setLightModeTableSelect(row);  // no match: the row count, which highlights nothing
}

void LightingPage::setLightModeTableSelect(int selectIndex) {
    selectedRow_ = selectIndex;
    s_.core.notify(SessionAspect::LightModes);
}

}  // namespace qx9
