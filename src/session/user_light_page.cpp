// The per-key lighting sets of profile 1: the list, the loaded set, Apply and Reset.
#include "session/user_light_page.h"

#include "i18n/language.h"
#include "i18n/text_ids.h"
#include "layout/key_maps.h"
#include "ops/settings.h"
#include "ops/user_lights.h"
#include "session/keyboard_session.h"

namespace qx9 {

UserLightPage::UserLightPage(SessionCore& core, const KeyPage& keys)
    : core_(core), keys_(keys),
      keyColours_(keys_.keys().size(), 0),
      keyColors_(keys_.keys().size()),
      keyCheck_(keys_.keys().size(), 0) {}

void UserLightPage::loadUserLightData() {
    rows_.clear();
    std::vector<UserLightData> sets;
    // The sets belong to profile 1, whatever profile is current.
    if (DeviceSQLite* db = core_.db()) db->getUserLightData(1, sets);
    for (const UserLightData& set : sets) rows_.push_back({set.userlight_id, set.userlight_name});
    core_.notify(SessionAspect::UserLights);
    setUserLightTableSelect(0);
    showUserLightInfo(0);  // shown only: the first connection sent it
}

void UserLightPage::addUserLight() {
    const std::optional<ops::Target> target = core_.target();
    std::int64_t id = 0;
    std::string name;
    if (!target || !core_.report(ops::addUserLight(*target, name, id))) return;
    rows_.push_back({id, name});
    core_.notify(SessionAspect::UserLights);
    const int last = static_cast<int>(rows_.size()) - 1;
    setUserLightTableSelect(last);
    loadUserLightInfo(last);
}

void UserLightPage::delUserLight() {
    const int row = selectedRow_;
    if (row < 0 || row >= static_cast<int>(rows_.size())) return;
    const std::optional<ops::Target> target = core_.target();
    if (!target || !core_.report(ops::deleteUserLight(*target, rows_[static_cast<std::size_t>(row)].light))) return;
    rows_.erase(rows_.begin() + row);
    core_.notify(SessionAspect::UserLights);
    // The same index again; past the end nothing is selected or loaded, and the screen keeps
    // the deleted set's colours (and `userlight_id` its id).
    setUserLightTableSelect(row);
    loadUserLightInfo(row);
}

void UserLightPage::renameUserLight(int row, const std::string& name) {
    const std::optional<ops::Target> target = core_.target();
    if (target && row >= 0 && row < static_cast<int>(rows_.size())) {
        UserLightRow& r = rows_[static_cast<std::size_t>(row)];
        if (core_.report(ops::renameUserLight(*target, r.light, name))) r.name = name;
    }
    core_.notify(SessionAspect::UserLights);
}

void UserLightPage::setUserLightTableSelect(int selectIndex) {
    selectedRow_ = selectIndex >= 0 && selectIndex < static_cast<int>(rows_.size()) ? selectIndex : -1;
    core_.notify(SessionAspect::UserLights);
}

void UserLightPage::userLightTableSelectionChanged(int row) {
    setUserLightTableSelect(row);
    loadUserLightInfo(row);
}

bool UserLightPage::showUserLightInfo(int index) {
    if (index < 0 || index >= static_cast<int>(rows_.size())) return false;
    userlight_id_ = rows_[static_cast<std::size_t>(index)].light;
    showSetColours();
    return true;
}

void UserLightPage::loadUserLightInfo(int index) {
    if (!showUserLightInfo(index)) return;
    if (const std::optional<ops::Target> target = core_.target()) core_.report(ops::showUserLight(*target, userlight_id_));
}

void UserLightPage::showSetColours() {
    resetKeyColor();
    if (DeviceSQLite* db = core_.db()) {
        const std::vector<std::uint32_t> colours = ops::setColours(*db, userlight_id_);
        for (std::size_t p = 0; p < colours.size() && p < keyColors_.size(); ++p) {
            if (colours[p] != 0) setKeyColor(p, lightColorOf(colours[p]));
        }
    }
    loaded_ = keyColours_;
    core_.notify(SessionAspect::UserLights);
}

void UserLightPage::rebase() {
    DeviceSQLite* db = core_.db();
    if (!db || userlight_id_ < 1) return;
    const std::vector<std::uint32_t> stored = ops::setColours(*db, userlight_id_);
    for (std::size_t p = 0; p < stored.size() && p < keyColours_.size() && p < loaded_.size(); ++p) {
        if (keyColours_[p] == loaded_[p] && stored[p] != keyColours_[p]) setKeyColor(p, lightColorOf(stored[p]));
    }
    loaded_ = stored;
    core_.notify(SessionAspect::UserLights);
}

void UserLightPage::applyUserLightKeyColor() {
    const std::optional<ops::Target> target = core_.target();
    if (!target) return;
    // The keys the user painted since the set was loaded; the others keep what is stored now.
    if (core_.report(ops::applyUserLight(*target, userlight_id_, keyColours_, &loaded_))) rebase();
}

void UserLightPage::resetUserLightKeyColor() {
    if (userlight_id_ < 1) return;
    resetKeyColor();
    const std::optional<ops::Target> target = core_.target();
    if (target && core_.report(ops::applyUserLight(*target, userlight_id_, keyColours_))) rebase();
}

void UserLightPage::reloadFromDatabase() {
    const std::int64_t shown = userlight_id_;
    const std::int64_t selected = selectedRow_ >= 0 && selectedRow_ < static_cast<int>(rows_.size())
                                      ? rows_[static_cast<std::size_t>(selectedRow_)].light
                                      : 0;
    rows_.clear();
    std::vector<UserLightData> sets;
    if (DeviceSQLite* db = core_.db()) db->getUserLightData(ops::kSettingsProfile, sets);
    int row = -1;
    for (const UserLightData& set : sets) {
        if (set.userlight_id == selected) row = static_cast<int>(rows_.size());
        rows_.push_back({set.userlight_id, set.userlight_name});
    }
    setUserLightTableSelect(row);
    // The colours follow the set shown; one that is gone keeps showing, as after a deletion.
    if (const DeviceSQLite* db = core_.db(); db && shown >= 1 && ops::userLightExists(*db, shown)) rebase();
    core_.notify(SessionAspect::UserLights);
}

}  // namespace qx9
