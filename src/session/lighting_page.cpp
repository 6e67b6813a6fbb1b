#include "session/lighting_page.h"

#include "common/fatal.h"
#include "i18n/language.h"
#include "ops/settings.h"
#include "session/keyboard_session.h"

namespace qx9 {

namespace {
// The first build's text ids, held by no table: every row reads the table's tag until the
// language switch rebuilds the list.
constexpr int kPlaceholderTextFirst = 300;
constexpr int kPlaceholderTextLast = 318;
}  // namespace

LightingPage::LightingPage(SessionCore& core, const KeyPage& keys, const SettingsPage& settings, UserLightPage& userLights)
    : core_(core), keys_(keys), settings_(settings), userLights_(userLights), keyColours_(keys_.keys().size(), 0) {
    initLightTableData();
}

void LightingPage::initLightTableData() {
    // Mode 20 has no effect of its own; it goes when the list is rebuilt.
    rows_.clear();
    for (int i = 0; i < kModeRows; ++i) {
        LightModeRow row;
        row.textId = std::min(kPlaceholderTextFirst + i, kPlaceholderTextLast);
        row.text = localizedText(row.textId);
        row.mode = i + 1;
        rows_.push_back(std::move(row));
    }
    core_.notify(SessionAspect::LightModes);
}

void LightingPage::rebuildModeList() {
    rows_.clear();
    for (int r = 0; r < kModeRows; ++r) {
        LightModeRow row;
        row.textId = ops::effectTextId(r);
        row.text = localizedText(row.textId);
        row.mode = ops::effectOfRow(r);  // "Close Backlight" (effect 0) is the last row
        rows_.push_back(std::move(row));
    }
    core_.notify(SessionAspect::LightModes);
    loadLightModeData();
}

void LightingPage::loadLightModeData() {
    SessionCore& core = core_;
    // The selection is kept under profile 1 whatever profile is current.
    if (DeviceSQLite* db = core.db()) {
        core.currentLightMode = ops::selectedEffect(*db);
        core.currentLightSelection = ops::kSettingsProfile;
        sleepChoice_ = ops::storedSleepTime(*db);  // the choice in force shows from the start
    }
    int row = 0;
    while (row < static_cast<int>(rows_.size()) &&
           rows_[static_cast<std::size_t>(row)].mode != core.currentLightMode)
        ++row;
    setLightModeTableSelect(row);  // no match: the row count, which highlights nothing
}

void LightingPage::reloadFromDatabase() {
    SessionCore& core = core_;
    DeviceSQLite* db = core.db();
    if (!db) return;
    core.currentLightMode = db->getLightModeSelectIndex(core.currentLightSelection);
    sleepChoice_ = ops::storedSleepTime(*db);
    int row = 0;
    while (row < static_cast<int>(rows_.size()) && rows_[static_cast<std::size_t>(row)].mode != core.currentLightMode) ++row;
    selectedRow_ = row;
    LightRecord record{};
    readRecord(core.currentLightMode, record);
    showModeControls(core.currentLightMode, record);
}

void LightingPage::setLightModeTableSelect(int selectIndex) {
    selectedRow_ = selectIndex;
    core_.notify(SessionAspect::LightModes);
}

void LightingPage::lightModeSelectionChanged(int row) {
    setLightModeTableSelect(row);
    setBacklightMode(row);
}

void LightingPage::setBacklightMode(std::int64_t index) {
    SessionCore& core = core_;
    colorPanel_ = ColorPanelAction::Closed;
    if (index < 0 || index >= static_cast<std::int64_t>(rows_.size())) return;  // not in the list (any more)
    const std::int64_t mode = rows_[static_cast<std::size_t>(index)].mode;
    core.currentLightMode = mode;
    core.currentLightSelection = ops::kSettingsProfile;
    const std::optional<ops::Target> target = core.target();
    LightRecord record{};
    if (target && !core.report(ops::selectEffect(*target, core.currentProfile, mode, record))) {
        changed();
        return;
    }
    showModeControls(mode, record);
}

void LightingPage::showModeControls(std::int64_t mode, const LightRecord& record) {
    const ops::EffectControls c = ops::effectControls(mode, record);
    brightness_.value = record[ops::kLightBrightness] & kSliderMaximum;
    if (!c.known) {
        changed();
        return;
    }
    enableColorButton(c.colour);
    random_ = {c.randomSwitch, false, c.randomShownOn};
    speed_ = {c.speed, c.speed ? record[ops::kLightSpeed] & kSliderMaximum : 0};
    if (mode == ops::kEffectOff) brightness_.value = 0;  // shown only: the stored brightness stays
    if (c.colourful) {
        loadColorfulLight();
    } else if (mode == ops::kEffectOff) {
        paintAllKeys(0x000000);
    } else {
        paintAllKeys(rgbValue(coarseColorFromBytes(record[ops::kLightRed], record[ops::kLightGreen], record[ops::kLightBlue])));
    }
    for (LightToggle& b : direction_) b.hidden = true;
    direction_[ops::kUp].hidden = direction_[ops::kDown].hidden = !c.upDown;
    direction_[ops::kLeft].hidden = direction_[ops::kRight].hidden = !c.leftRight;
    if (c.upDown) {
        // Direction 3 (down) reads as up here, while the down button stores 3: kept as it is.
        direction_[ops::kUp].on = record[ops::kLightDirection] == ops::kDown;
        direction_[ops::kDown].on = !direction_[ops::kUp].on;
    } else if (c.leftRight) {
        direction_[ops::kRight].on = record[ops::kLightDirection] == ops::kRight;
        direction_[ops::kLeft].on = !direction_[ops::kRight].on;
    }
    changed();
}

const LightToggle& LightingPage::directionButton(ops::Direction direction) const {
    if (direction < ops::kLeft || direction > ops::kDown) fatalError("no direction button " + std::to_string(direction));
    return direction_[static_cast<std::size_t>(direction)];
}

void LightingPage::paintAllKeys(std::uint32_t colour) {
    keyColours_.assign(keyColours_.size(), colour);
}

void LightingPage::changed() {
    core_.notify(SessionAspect::LightModes);
}

bool LightingPage::readRecord(std::int64_t mode, LightRecord& record) const {
    record.fill(0);
    DeviceSQLite* db = core_.db();
    return !db || ops::readLightRecord(*db, core_.currentProfile, mode, record);
}

void LightingPage::changeRecord(const std::function<ops::Outcome(const ops::Target&)>& change) {
    const std::optional<ops::Target> target = core_.target();
    if (target) core_.report(change(*target));
}

}  // namespace qx9
