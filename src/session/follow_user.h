#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "ops/app_profiles.h"
#include "session/auto_profile.h"
#include "session/autostart.h"

namespace qx9 {

class ProfileList;
struct SessionCore;

// The keyboard follows the user while the application runs (in the tray): the tray menu's
// profiles and "Lights off", the profile of the application in front, and dark keys while the
// screen is locked. Nothing of it is stored in the database: lights off is sent without storing,
// the rules and options are files of their own.
class FollowUser {
public:
    FollowUser(SessionCore& core, ProfileList& profiles);

    // The tray menu: every profile, the one in force checked.
    struct ProfileItem {
        std::int64_t id = 0;
        std::string name;
        bool current = false;
    };
    std::vector<ProfileItem> profileItems() const;
    // Chosen in the tray: as choosing it in the window (stored, then sent); a choice by hand.
    void chooseProfile(std::int64_t profile);
    // "Lights off": the keys dark until it is unchecked, nothing stored.
    bool lightsOff() const { return lightsOffChosen_; }
    void setLightsOff(bool off);

    // The screen was locked or unlocked (dark while locked when the option is on).
    void screenLocked(bool locked);
    bool dark() const;

    // The options of the settings page; false (and a warning) when the file did not take them.
    const DesktopOptions& options() const { return options_; }
    bool setOptions(const DesktopOptions& options);

    // Automatic profiles: the rules as the file holds them now (read again when it changed).
    void reloadRules();
    const std::vector<ops::AppProfileRule>& rules() const { return automatic_.rules(); }
    // The focused application changed; when settle() is due.
    AutoProfile::Clock::time_point focusChanged(const ops::FocusedWindow& window, AutoProfile::Clock::time_point now);
    void settle(AutoProfile::Clock::time_point now) {
        if (options_.automaticProfiles) automatic_.settle(now);
    }
    // A profile was chosen by hand (the window's table, the tray, another program).
    void profileChosenByHand(std::int64_t profile) { automatic_.profileChosen(profile); }

private:
    void applyDark();

    SessionCore& core_;
    ProfileList& profiles_;
    AutoProfile automatic_;
    DesktopOptions options_;
    bool lightsOffChosen_ = false;
    bool locked_ = false;
};

}  // namespace qx9
