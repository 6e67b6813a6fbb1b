#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "desktop/focus_source.h"
#include "desktop/lock_watcher.h"

#include "ops/app_profiles.h"
#include "session/auto_profile.h"
#include "session/autostart.h"
#include "store/database_watcher.h"

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
    ~FollowUser();

    // Starts following, once the front end's loop runs: reads the rules and watches their file,
    // the desktop's focused application and the screen lock (through SessionEvents'
    // watchDescriptor and runAfter).
    void start();
    // Stops watching (the front end's loop is going); nothing follows any more.
    void stop();
    // What tells the focused application ("X11 (EWMH)", …), or empty with why not (English).
    const std::string& focusSource() const { return focusSource_; }
    const std::string& focusUnavailable() const { return focusUnavailable_; }
    // The application in front, as last told (not this application's own window).
    const ops::FocusedWindow& inFront() const { return inFront_; }

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

    // Starting at login, hidden in the tray: the autostart entry for `program`, written or removed
    // (a warning when it could not be).
    bool startAtLogin() const { return autostartEnabled(); }
    void setStartAtLogin(bool on, const std::string& program);

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
    // The rules edited in the window: stored in their file (reported when it did not take them).
    void addRule(const ops::AppProfileRule& rule);
    void removeRule(std::size_t index);

private:
    void select(std::int64_t profile);
    void applyDark();
    void focused(const desktop::FocusedApplication& application);
    void watch(const std::vector<int>& fds, std::function<void()> readable);
    void stopWatching(const std::vector<int>& fds);

    SessionCore& core_;
    ProfileList& profiles_;
    AutoProfile automatic_;
    DesktopOptions options_;
    bool lightsOffChosen_ = false;
    bool locked_ = false;
    std::unique_ptr<DatabaseWatcher> rulesWatcher_;
    std::unique_ptr<desktop::FocusSource> focus_;
    std::unique_ptr<desktop::LockWatcher> lock_;
    std::string focusSource_, focusUnavailable_;
    ops::FocusedWindow inFront_;
};

}  // namespace qx9
