#include "session/lighting_page.h"

#include "common/fatal.h"
#include "i18n/language.h"
#include "session/keyboard_session.h"

namespace qx9 {

LightingPage::LightingPage(KeyboardSession& session)
    : s_(session), keyColours_(s_.keys.keys().size(), 0) {
    initLightTableData();
}

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
    while (row < static_cast<int>(rows_.size()) &&
           rows_[static_cast<std::size_t>(row)].mode != core.currentLightMode)
        ++row;
    setLightModeTableSelect(row);  // no match: the row count, which highlights nothing
}

void LightingPage::setLightModeTableSelect(int selectIndex) {
    selectedRow_ = selectIndex;
    s_.core.notify(SessionAspect::LightModes);
}

void LightingPage::lightModeSelectionChanged(int row) {
    setLightModeTableSelect(row);
    setBacklightMode(row);
}

void LightingPage::setBacklightMode(std::int64_t index) {
    SessionCore& core = s_.core;
    colorPanel_ = ColorPanelAction::Closed;
    if (index < 0 || index >= static_cast<std::int64_t>(rows_.size())) {
        fatalError("backlight mode row " + std::to_string(index) + " is not in the list");
    }
    const std::int64_t mode = rows_[static_cast<std::size_t>(index)].mode;
    // The selection is stored under profile 1; the record is that of the current profile.
    if (DeviceSQLite* db = core.db()) db->selectLightMode(1, mode);
    core.currentLightMode = mode;
    LightRecord record{};
    if (!readRecord(mode, record)) {
        changed();
        return;
    }
    showModeControls(mode, record);
    sendLightMode();
}

bool LightingPage::showCurrentModeControls() {
    LightRecord record{};
    if (!readRecord(s_.core.currentLightMode, record)) return false;
    showModeControls(s_.core.currentLightMode, record);
    return true;
}

void LightingPage::showModeControls(std::int64_t mode, const LightRecord& record) {
    brightness_.value = record[9] & 15;
    const int speedShown = record[10] & 15;
    if (mode < 0 || mode > 19) {
        changed();
        return;
    }
    if (mode == 0) {
        enableColorButton(false);
        setRandomSwitch(false, false);
        paintAllKeys(0x000000);
        speed_ = {false, 0};
        brightness_.value = 0;  // shown only: the stored brightness stays
        hideDirections();
    } else if (mode == 6 || mode == 8) {
        enableColorButton(false);
        setRandomSwitch(true, false);  // shown off whatever is stored
        loadColorfulLight();
        speed_ = {true, speedShown};
        hideDirections();
    } else {
        const bool random = record[8] == 1;
        enableColorButton(!random);
        setRandomSwitch(true, random);
        if (random)
            loadColorfulLight();
        else
            paintAllKeys(rgbValue(coarseColorFromBytes(record[1], record[2], record[3])));
        speed_ = {mode != 1, mode == 1 ? 0 : speedShown};
        hideDirections();
        if (mode == 10) {
            // Direction 3 reads as up here, while the down button stores 3: kept as it is.
            direction_[0].hidden = direction_[3].hidden = false;
            direction_[0].image = record[11] == 3 ? "image_up_check" : "image_up";
            direction_[3].image = record[11] == 3 ? "image_bottom" : "image_bottom_check";
        } else if (mode == 11 || mode == 16 || mode == 18) {
            direction_[1].hidden = direction_[2].hidden = false;
            direction_[1].image = record[11] == 1 ? "image_right_check" : "image_right";
            direction_[2].image = record[11] == 1 ? "image_left" : "image_left_check";
        }
    }
    changed();
}

const LightImageButton& LightingPage::directionButton(int tag) const {
    if (tag < kTagDirectionTop || tag > kTagDirectionBottom)
        fatalError("no direction button " + std::to_string(tag));
    return direction_[static_cast<std::size_t>(tag - kTagDirectionTop)];
}

void LightingPage::hideDirections() {
    for (LightImageButton& b : direction_) b.hidden = true;
}

void LightingPage::setRandomSwitch(bool enabled, bool on) {
    random_.enabled = enabled;
    random_.tag = on ? 1 : 0;
    random_.image = on ? "img_switch_on" : "img_switch_off";
}

void LightingPage::paintAllKeys(std::uint32_t colour) {
    keyColours_.assign(keyColours_.size(), colour);
}

void LightingPage::changed() {
    s_.core.notify(SessionAspect::LightModes);
}

bool LightingPage::readRecord(std::int64_t mode, LightRecord& record) const {
    record.fill(0);
    DeviceSQLite* db = s_.core.db();
    if (!db) return true;
    lightData data;
    if (!db->queryLightInfo(s_.core.currentProfile, mode, data)) return false;
    record = data.data;
    return true;
}

bool LightingPage::writeRecord(const LightRecord& record, const char* what) {
    DeviceSQLite* db = s_.core.db();
    if (!db) fatalError(std::string(what) + " of the backlight without a database");
    return db->modifyLightData(s_.core.currentProfile, s_.core.currentLightMode, record);
}

void LightingPage::sendLightMode() {
    s_.transactions.SendLightModeData(s_.core.currentProfile);
}

}  // namespace qx9
