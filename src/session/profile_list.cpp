#include "session/profile_list.h"

#include "common/fatal.h"
#include "i18n/language.h"
#include "i18n/text_ids.h"
#include "ops/profiles.h"
#include "session/keyboard_session.h"

namespace qx9 {

std::string ProfileList::displayedName(const std::string& stored) { return ops::displayedProfileName(stored); }

void ProfileList::loadKeyProfile() {
    customkey_profilelist_datas_.clear();
    std::vector<ProfileData> profiles;
    if (DeviceSQLite* db = core_.db()) db->queryProfileList(profiles);
    if (profiles.empty()) {
        selectedRow_ = -1;
        core_.notify(SessionAspect::ProfileList);
        return;
    }
    for (const ProfileData& p : profiles) customkey_profilelist_datas_.push_back({p.profId, displayedName(p.name)});
    setKeyProfileTableSelect(0);
}

void ProfileList::reloadFromDatabase() {
    const std::int64_t highlighted = selectedRow_ >= 0 && selectedRow_ < static_cast<int>(customkey_profilelist_datas_.size())
                                         ? customkey_profilelist_datas_[static_cast<std::size_t>(selectedRow_)].profileId
                                         : 0;
    std::vector<ProfileData> profiles;
    if (DeviceSQLite* db = core_.db()) db->queryProfileList(profiles);
    customkey_profilelist_datas_.clear();
    int row = -1;
    for (const ProfileData& p : profiles) {
        if (p.profId == highlighted) row = static_cast<int>(customkey_profilelist_datas_.size());
        customkey_profilelist_datas_.push_back({p.profId, displayedName(p.name)});
    }
    setKeyProfileTableSelect(row);
}

void ProfileList::setKeyProfileTableSelect(int selectIndex) {
    selectedRow_ = selectIndex;
    core_.notify(SessionAspect::ProfileList);
}

void ProfileList::tableSelectionChanged(int row) {
    if (row < 0) return;
    if (core_.profileChosenByHand && row < static_cast<int>(customkey_profilelist_datas_.size())) {
        core_.profileChosenByHand(customkey_profilelist_datas_[static_cast<std::size_t>(row)].profileId);
    }
    setKeyProfileTableSelect(row);
    selectProfileIndex(row);
}

void ProfileList::selectProfileIndex(int index) {
    // A row the list no longer holds (it was reloaded meanwhile) selects nothing.
    if (index < 0 || index >= static_cast<int>(customkey_profilelist_datas_.size())) return;
    selectProfile(customkey_profilelist_datas_[static_cast<std::size_t>(index)].profileId);
}

void ProfileList::showProfile(std::int64_t profile) {
    core_.currentProfile = profile;
    keys_.showKeyMarks();
}

void ProfileList::selectProfile(std::int64_t profile) {
    SessionCore& core = core_;
    showProfile(profile);
    if (const std::optional<ops::Target> target = core.target()) {
        // Stored, then the key map is sent; the effect shown is now the profile's own selection.
        if (core.report(ops::selectProfile(*target, profile, core.currentLightMode))) core.currentLightSelection = profile;
    }
}

void ProfileList::customkey_button_profile(Button button) {
    switch (button) {
        case kAdd: addProfile(); break;
        case kDelete: deleteProfile(); break;
        case kRename: break;  // the row's text field becomes editable; see keyTableItemViewEdit
    }
}

void ProfileList::addProfile() {
    // Named after the number of profiles before adding; duplicate names are accepted.
    std::string name;
    const std::optional<ops::Target> target = core_.target();
    std::int64_t id = 0;
    if (!target || !core_.report(ops::addProfile(*target, name, id))) return;
    customkey_profilelist_datas_.push_back({id, name});
    setKeyProfileTableSelect(static_cast<int>(customkey_profilelist_datas_.size()) - 1);
}

void ProfileList::deleteProfile() {
    const std::optional<ops::Target> target = core_.target();
    if (!target) return;
    // The last profile is refused by the operation, selected or not.
    const int row = customkey_profilelist_datas_.size() == 1 ? 0 : selectedRow_;
    if (row < 0 || row >= static_cast<int>(customkey_profilelist_datas_.size())) return;
    if (!core_.report(ops::deleteProfile(*target, customkey_profilelist_datas_[static_cast<std::size_t>(row)].profileId))) {
        return;
    }
    // The current profile stays as it was, even when it was this one.
    customkey_profilelist_datas_.erase(customkey_profilelist_datas_.begin() + row);
    setKeyProfileTableSelect(row);
}

void ProfileList::keyTableItemViewEdit(int /*index*/, const std::string& text) {
    // The table's selected row counts, not the row that reported the edit.
    const int row = selectedRow_;
    if (row < 0 || row >= static_cast<int>(customkey_profilelist_datas_.size())) return;
    const std::optional<ops::Target> target = core_.target();
    if (!target ||
        !core_.report(ops::renameProfile(*target, customkey_profilelist_datas_[static_cast<std::size_t>(row)].profileId, text))) {
        return;
    }
    std::vector<ProfileData> profiles;
    target->db.queryProfileList(profiles);
    customkey_profilelist_datas_.clear();
    for (const ProfileData& p : profiles) customkey_profilelist_datas_.push_back({p.profId, displayedName(p.name)});
    setKeyProfileTableSelect(row);
}

}  // namespace qx9
