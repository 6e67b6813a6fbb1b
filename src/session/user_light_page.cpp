#include "session/user_light_page.h"

#include "layout/key_maps.h"
#include "session/keyboard_session.h"

namespace qx9 {

UserLightPage::UserLightPage(KeyboardSession& session)
    : s_(session), keyColours_(s_.keys.keys().size(), 0) {}

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

void UserLightPage::setUserLightTableSelect(int selectIndex) {
    selectedRow_ = selectIndex;
    s_.core.notify(SessionAspect::UserLights);
}

void UserLightPage::resetKeyColor() {
    keyColours_.assign(keyColours_.size(), 0);
    s_.core.notify(SessionAspect::UserLights);
}

void UserLightPage::loadUserLightInfo(int index) {
    if (index < 0 || index >= static_cast<int>(rows_.size())) return;
    userlight_id_ = rows_[static_cast<std::size_t>(index)].light;
    resetKeyColor();
    std::vector<UserLightLEDData> colours;
    if (DeviceSQLite* db = s_.core.db()) db->getUserLightLEDData(userlight_id_, colours);
    for (const UserLightLEDData& c : colours) {
        const auto p = static_cast<std::size_t>(G_KB_SuperKeyCodeMap.at(static_cast<int>(c.key_value)).layout_index);
        if (p < keyColours_.size()) keyColours_[p] = static_cast<std::uint32_t>(c.key_rgbvalue) & 0xFFFFFF;
    }
    s_.core.notify(SessionAspect::UserLights);
    s_.transactions.SendUserLightLedData(userlight_id_);
}

}  // namespace qx9
