#include "session/profile_list.h"

#include "common/fatal.h"
#include "i18n/language.h"
#include "session/keyboard_session.h"

namespace qx9 {

std::string ProfileList::displayedName(const std::string& stored) {
    if (curLanguage != kLanguageSimplifiedChinese && curLanguage != kLanguageTraditionalChinese) {
        return stored;
    }
    // Only the display changes; the database keeps the English default names.
    if (stored == "Configuration File 1") return localizedText(67);
    if (stored == "Configuration File 2") return localizedText(68);
    if (stored == "Configuration File 3") return localizedText(69);
    return stored;
}

void ProfileList::loadKeyProfile() {
    customkey_profilelist_datas_.clear();
    std::vector<ProfileData> profiles;
    if (DeviceSQLite* db = s_.core.db()) db->queryProfileList(profiles);
    if (profiles.empty()) {
        selectedRow_ = -1;
        s_.core.notify(SessionAspect::ProfileList);
        return;
    }
    for (const ProfileData& p : profiles) customkey_profilelist_datas_.push_back({p.profId, displayedName(p.name)});
    setKeyProfileTableSelect(0);
    s_.core.currentKBProfile = customkey_profilelist_datas_[0].profileId;
}

void ProfileList::setKeyProfileTableSelect(int selectIndex) {
    selectedRow_ = selectIndex;
    s_.core.notify(SessionAspect::ProfileList);
}

void ProfileList::tableSelectionChanged(int row) {
    if (row < 0) return;
    setKeyProfileTableSelect(row);
    selectProfileIndex(row);
}

void ProfileList::selectProfileIndex(int index) {
    s_.core.currentProfileIndex = index;
    if (index < 0 || index >= static_cast<int>(customkey_profilelist_datas_.size())) {
        fatalError("profile row " + std::to_string(index) + " is not in the list");
    }
    selectProfile(customkey_profilelist_datas_[static_cast<std::size_t>(index)].profileId);
}

void ProfileList::selectProfile(std::int64_t profile) {
    SessionCore& core = s_.core;
    core.currentKBProfile = profile;
    core.currentProfile = profile;
    s_.keys.loadKeyMacroData();
    if (DeviceSQLite* db = core.db()) {
        db->writeLightProfile(profile);
        core.currentLightMode = db->getLightModeSelectIndex(profile);
    }
}

void ProfileList::customkey_button_profile(int tag) {
    switch (tag) {
        case kAdd: addProfile(); break;
        case kDelete: deleteProfile(); break;
        case kRename: break;  // the row's text field becomes editable; see keyTableItemViewEdit
        default: break;
    }
}

void ProfileList::addProfile() {
    // Named after the number of rows before adding, so that with one profile the new one is
    // "Configuration File 1" again; duplicate names are accepted.
    const std::string name =
        localizedText(70) + " " + std::to_string(customkey_profilelist_datas_.size());
    DeviceSQLite* db = s_.core.db();
    const std::int64_t id = db ? db->addProfile(name) : 0;
    if (id < 1) return;
    customkey_profilelist_datas_.push_back({id, name});
    setKeyProfileTableSelect(static_cast<int>(customkey_profilelist_datas_.size()) - 1);
}

void ProfileList::deleteProfile() {
    if (customkey_profilelist_datas_.size() > 1) {
        const int row = selectedRow_;
        if (row < 0 || row >= static_cast<int>(customkey_profilelist_datas_.size())) return;
        DeviceSQLite* db = s_.core.db();
        const auto id = customkey_profilelist_datas_[static_cast<std::size_t>(row)].profileId;
        if (!db || !db->deleteProfile(id)) return;
        // The current profile stays as it was, even when it was this one.
        customkey_profilelist_datas_.erase(customkey_profilelist_datas_.begin() + row);
        setKeyProfileTableSelect(row);
        return;
    }
    s_.core.warn(localizedText(71), localizedText(72));
}

void ProfileList::keyTableItemViewEdit(int /*index*/, const std::string& text) {
    if (text.empty()) return;
    // The table's selected row counts, not the row that reported the edit.
    const int row = selectedRow_;
    if (row < 0 || row >= static_cast<int>(customkey_profilelist_datas_.size())) return;
    DeviceSQLite* db = s_.core.db();
    if (!db || !db->updateProfileName(customkey_profilelist_datas_[static_cast<std::size_t>(row)].profileId, text)) {
        return;
    }
    std::vector<ProfileData> profiles;
    db->queryProfileList(profiles);
    customkey_profilelist_datas_.clear();
    for (const ProfileData& p : profiles) customkey_profilelist_datas_.push_back({p.profId, displayedName(p.name)});
    setKeyProfileTableSelect(row);
}

}  // namespace qx9
