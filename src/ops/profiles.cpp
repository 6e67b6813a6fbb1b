#include "ops/profiles.h"

#include "i18n/language.h"
#include "i18n/text_ids.h"
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

Outcome addProfile(const Target& target, const std::string& name, std::int64_t& id) {
    id = target.db.addProfile(name);
    if (id < 1) return Outcome::notStored("the database refused the new profile");
    return Outcome::done();
}

Outcome renameProfile(const Target& target, std::int64_t profile, const std::string& name) {
    if (name.empty()) return Outcome::refused("a profile name cannot be empty");
    if (!profileExists(target.db, profile)) return Outcome::refused("no profile " + std::to_string(profile));
    if (!target.db.updateProfileName(profile, name)) return Outcome::notStored("the database refused the new name");
    return Outcome::done();
}

Outcome deleteProfile(const Target& target, std::int64_t profile) {
    std::vector<ProfileData> profiles;
    target.db.queryProfileList(profiles);
    if (profiles.size() <= 1) {
        return Outcome::refused("the last profile cannot be deleted", localizedText(textid::kDeleteProfile),
                                localizedText(textid::kLastProfile));
    }
    if (!profileExists(target.db, profile)) return Outcome::refused("no profile " + std::to_string(profile));
    if (!target.db.deleteProfile(profile)) return Outcome::notStored("the database refused to delete the profile");
    return Outcome::done();
}

Outcome selectProfile(const Target& target, std::int64_t profile, std::int64_t& lightMode) {
    const bool sent = sendKeyMap(target, profile, 0);
    {
        DeviceSQLite::Transaction transaction = target.db.beginTransaction();
        target.db.writeLightProfile(profile);
        if (!transaction.commit()) return Outcome::notStored("the database did not take the profile's lighting");
    }
    lightMode = target.db.getLightModeSelectIndex(profile);
    return sentOrNot(sent, "the key map");
}

}  // namespace qx9::ops
