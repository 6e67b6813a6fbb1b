// The per-key lighting sets of profile 1: the list, the loaded set, Apply and Reset.
#include "session/user_light_page.h"

#include "i18n/language.h"
#include "layout/key_maps.h"
#include "session/keyboard_session.h"

namespace qx9 {

namespace {
// Text ids of the page.
constexpr int kTextUserLight = 566;
constexpr int kTextPleaseAddUserLights = 567;
}  // namespace

UserLightPage::UserLightPage(KeyboardSession& session)
    : s_(session),
      keyColours_(s_.keys.keys().size(), 0),
      keyColors_(s_.keys.keys().size()),
      keyCheck_(s_.keys.keys().size(), 0) {}

void UserLightPage::loadUserLightData() {
    rows_.clear();
    std::vector<UserLightData> sets;
    // The sets belong to profile 1, whatever profile is current.
    if (DeviceSQLite* db = s_.core.db()) db->getUserLightData(1, sets);
    for (const UserLightData& set : sets) rows_.push_back({set.userlight_id, set.userlight_name});
    s_.core.notify(SessionAspect::UserLights);
    setUserLightTableSelect(0);
    loadUserLightInfo(0);
}

void UserLightPage::addUserLight() {
    const std::string name = localizedText(kTextUserLight) + std::to_string(rows_.size() + 1);
    DeviceSQLite* db = s_.core.db();
    const std::int64_t id = db ? db->addUserLight(1, name) : 0;
    if (id < 1) return;
    rows_.push_back({id, name});
    s_.core.notify(SessionAspect::UserLights);
    const int last = static_cast<int>(rows_.size()) - 1;
    setUserLightTableSelect(last);
    loadUserLightInfo(last);
}

void UserLightPage::delUserLight() {
    const int row = selectedRow_;
    if (row < 0 || row >= static_cast<int>(rows_.size())) return;
    DeviceSQLite* db = s_.core.db();
    if (!db || !db->deleteUserLight(rows_[static_cast<std::size_t>(row)].light)) return;
    rows_.erase(rows_.begin() + row);
    s_.core.notify(SessionAspect::UserLights);
    // The same index again; past the end nothing is selected or loaded, and the screen keeps
    // the deleted set's colours (and `userlight_id` its id).
    setUserLightTableSelect(row);
    loadUserLightInfo(row);
}

void UserLightPage::setUserLightTableSelect(int selectIndex) {
    selectedRow_ = selectIndex >= 0 && selectIndex < static_cast<int>(rows_.size()) ? selectIndex : -1;
    s_.core.notify(SessionAspect::UserLights);
}

void UserLightPage::userLightTableSelectionChanged(int row) {
    setUserLightTableSelect(row);
    loadUserLightInfo(row);
}

void UserLightPage::loadUserLightInfo(int index) {
    if (index < 0 || index >= static_cast<int>(rows_.size())) return;
    userlight_id_ = rows_[static_cast<std::size_t>(index)].light;
    resetKeyColor();
    std::vector<UserLightLEDData> colours;
    if (DeviceSQLite* db = s_.core.db()) db->getUserLightLEDData(userlight_id_, colours);
    for (const UserLightLEDData& c : colours) {
        const auto p = static_cast<std::size_t>(G_KB_SuperKeyCodeMap.at(static_cast<int>(c.key_value)).layout_index);
        const auto v = static_cast<std::uint32_t>(c.key_rgbvalue);
        if (p < keyColors_.size()) {
            setKeyColor(p, lightColorOf(static_cast<std::uint8_t>(v >> 16), static_cast<std::uint8_t>(v >> 8),
                                        static_cast<std::uint8_t>(v)));
        }
    }
    s_.core.notify(SessionAspect::UserLights);
    s_.transactions.SendUserLightLedData(userlight_id_);
}

void UserLightPage::storeKeyColours() {
    DeviceSQLite* db = s_.core.db();
    if (!db) return;
    // One row per key; a black key stores 0, which also takes the key's colour out of every
    // other set (a key is coloured in at most one set).
    const std::vector<KeyData>& keys = s_.keys.keys();
    for (std::size_t i = 0; i < keys.size() && i < keyColours_.size(); ++i) {
        db->addUserLightLEDData({0, userlight_id_, keys[i].keycode, keyColours_[i]});
    }
}

void UserLightPage::applyUserLightKeyColor() {
    if (userlight_id_ < 1) {
        s_.core.warn(localizedText(kTextPleaseAddUserLights), localizedText(kTextUserLight));
        return;
    }
    storeKeyColours();
    s_.transactions.SendUserLightLedData(userlight_id_);
}

void UserLightPage::resetUserLightKeyColor() {
    if (userlight_id_ < 1) return;
    resetKeyColor();
    storeKeyColours();
    s_.transactions.SendUserLightLedData(userlight_id_);
}

void UserLightPage::unloadUserLight() {
    rows_.clear();
    selectedRow_ = -1;
    userlight_id_ = 0;
    resetKeyColor();
}

}  // namespace qx9
