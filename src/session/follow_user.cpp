#include "session/follow_user.h"

#include "i18n/extra_texts.h"
#include "ops/profiles.h"
#include "session/profile_list.h"
#include "session/session_core.h"
#include "store/config_keys.h"

namespace qx9 {

FollowUser::FollowUser(SessionCore& core, ProfileList& profiles)
    : core_(core),
      profiles_(profiles),
      automatic_({[this] { return core_.currentProfile; },
                  [this](std::int64_t p) { return core_.db() && ops::profileExists(*core_.db(), p); },
                  [this](std::int64_t p) { profiles_.selectProfile(p); }}),
      options_(readDesktopOptions()) {}

std::vector<FollowUser::ProfileItem> FollowUser::profileItems() const {
    std::vector<ProfileItem> items;
    for (const ProfileRow& row : profiles_.rows()) items.push_back({row.profileId, row.name, row.profileId == core_.currentProfile});
    return items;
}

void FollowUser::chooseProfile(std::int64_t profile) {
    profileChosenByHand(profile);
    profiles_.selectProfile(profile);
    core_.notify(SessionAspect::ProfileList);
}

void FollowUser::setLightsOff(bool off) {
    lightsOffChosen_ = off;
    applyDark();
}

void FollowUser::screenLocked(bool locked) {
    locked_ = locked;
    applyDark();
}

bool FollowUser::dark() const { return lightsOffChosen_ || (locked_ && options_.darkWhenLocked); }

void FollowUser::applyDark() {
    if (!core_.lightsOff) return;  // no keyboard yet: the first connection sends the stored effect
    const SendResult result = core_.lightsOff->setDark(dark(), kSettingsProfile);
    if (result.status == SendResult::kNotSent && core_.events) core_.events->notice(extraText(ExtraText::kNotSent));
}

bool FollowUser::setOptions(const DesktopOptions& options) {
    std::string error;
    if (!writeDesktopOptions(options, error)) {
        core_.warn(extraText(ExtraText::kNotStoredTitle), error);
        return false;
    }
    options_ = options;
    applyDark();
    return true;
}

void FollowUser::reloadRules() {
    ops::AppProfileRules rules;
    if (ops::readAppProfiles(ops::appProfilesFile(), rules)) automatic_.setRules(std::move(rules.rules));
}

AutoProfile::Clock::time_point FollowUser::focusChanged(const ops::FocusedWindow& window, AutoProfile::Clock::time_point now) {
    return automatic_.focusChanged(window, now);
}

}  // namespace qx9
