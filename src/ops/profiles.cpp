#include "ops/profiles.h"

#include "i18n/language.h"
#include "i18n/text_ids.h"
#include "ops/history.h"
#include "ops/key_assignment.h"

namespace qx9::ops {

std::string newProfileName(std::size_t profilesBefore) {
    return localizedText(textid::kConfigurationFile) + " " + std::to_string(profilesBefore);
}

std::string displayedProfileName(const std::string& stored) {
    if (curLanguage != kLanguageSimplifiedChinese && curLanguage != kLanguageTraditionalChinese) return stored;
    for (int n = 0; n < 3; ++n) {
        if (stored == "Configuration File " + std::to_string(n + 1)) return localizedText(textid::kConfigurationFile1 + n);
    }
    return stored;
}

bool profileExists(const DeviceSQLite& db, std::int64_t profile) {
    std::vector<ProfileData> profiles;
    db.queryProfileList(profiles);
    for (const ProfileData& p : profiles) {
        if (p.profId == profile) return true;
    }
    return false;
}

Outcome addProfile(const Target& target, std::string& name, std::int64_t& id) {
    DeviceSQLite::Transaction transaction = target.db.beginStep();
    std::vector<ProfileData> profiles;
    target.db.queryProfileList(profiles);
    name = newProfileName(profiles.size());
    id = target.db.addProfile(name);
    if (id < 1 || !commitStep(transaction, {"add-profile", {displayedProfileName(name)}}, {})) {
        id = 0;
        return Outcome::notStored("the database refused the new profile");
    }
    return Outcome::done();
}

Outcome renameProfile(const Target& target, std::int64_t profile, const std::string& name) {
    if (name.empty()) return Outcome::refused(Reason::kEmptyName, {"profile"});
    DeviceSQLite::Transaction transaction = target.db.beginStep();
    if (!profileExists(target.db, profile)) return Outcome::refused(Reason::kNoProfile, {std::to_string(profile)});
    if (!target.db.updateProfileName(profile, name) ||
        !commitStep(transaction, {"rename-profile", {displayedProfileName(name)}}, {})) {
        return Outcome::notStored("the database did not take the new name");
    }
    return Outcome::done();
}

Outcome deleteProfile(const Target& target, std::int64_t profile) {
    DeviceSQLite::Transaction transaction = target.db.beginStep();
    std::vector<ProfileData> profiles;
    target.db.queryProfileList(profiles);
    std::string name = std::to_string(profile);
    for (const ProfileData& p : profiles) {
        if (p.profId == profile) name = displayedProfileName(p.name);
    }
    if (profiles.size() <= 1) {
        return Outcome::refused(Reason::kLastProfile);
    }
    if (!profileExists(target.db, profile)) return Outcome::refused(Reason::kNoProfile, {std::to_string(profile)});
    if (!target.db.deleteProfile(profile) || !commitStep(transaction, {"delete-profile", {name}}, {})) {
        return Outcome::notStored("the database refused to delete the profile");
    }
    return Outcome::done();
}

Outcome selectProfile(const Target& target, std::int64_t profile, std::int64_t& lightMode) {
    {
        DeviceSQLite::Transaction transaction = target.db.beginTransaction();
        target.db.writeLightProfile(profile);  // a profile's lighting rows are made when first needed
        if (!storeKeyboardProfile(target.db, profile) || !transaction.commit()) {
            return Outcome::notStored("the database did not take the profile's lighting");
        }
        lightMode = target.db.getLightModeSelectIndex(profile);
    }
    return send(target, {SendKeyMacroData(profile, 0)});
}

}  // namespace qx9::ops
