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
                  [this](std::int64_t p) { select(p); }}),
      options_(readDesktopOptions()) {}

FollowUser::~FollowUser() { stop(); }

void FollowUser::stop() {
    if (focus_) stopWatching(focus_->descriptors());
    if (lock_) stopWatching(lock_->descriptors());
    if (rulesWatcher_) stopWatching({rulesWatcher_->fd()});
    focus_.reset();
    lock_.reset();
    rulesWatcher_.reset();
}

void FollowUser::watch(const std::vector<int>& fds, std::function<void()> readable) {
    if (!core_.events) return;
    for (int fd : fds) {
        if (fd >= 0) core_.events->watchDescriptor(fd, readable);
    }
}

void FollowUser::stopWatching(const std::vector<int>& fds) {
    if (!core_.events) return;
    for (int fd : fds) {
        if (fd >= 0) core_.events->unwatchDescriptor(fd);
    }
}

void FollowUser::start() {
    if (rulesWatcher_) return;  // started already
    reloadRules();
    // The rules' folder is watched, so that a rule set by qx9ctl applies at once.
    const std::filesystem::path rules = ops::appProfilesFile();
    std::error_code ec;
    if (!rules.empty()) std::filesystem::create_directories(rules.parent_path(), ec);
    rulesWatcher_ = std::make_unique<DatabaseWatcher>(rules);
    watch({rulesWatcher_->fd()}, [this] {
        if (!rulesWatcher_->written()) return;
        reloadRules();
        core_.notify(SessionAspect::Desktop);
    });

    focus_ = desktop::openFocusSource(focusUnavailable_);
    if (focus_) {
        focusSource_ = focus_->name();
        focus_->onFocus = [this](const desktop::FocusedApplication& application) { focused(application); };
        watch(focus_->descriptors(), [this] {
            focus_->dispatch();
            if (!focus_->broken()) return;
            stopWatching(focus_->descriptors());
            focusUnavailable_ = focusSource_ + ": the connection to the desktop closed";
            focusSource_.clear();
            focus_.reset();
            core_.notify(SessionAspect::Desktop);
        });
        focused(focus_->current());
    }

    lock_ = std::make_unique<desktop::LockWatcher>();
    lock_->onLockChanged = [this](bool locked) { screenLocked(locked); };
    watch(lock_->descriptors(), [this] {
        lock_->dispatch();
        if (lock_->broken()) stopWatching(lock_->descriptors());
    });
    core_.notify(SessionAspect::Desktop);
}

void FollowUser::focused(const desktop::FocusedApplication& application) {
    const ops::FocusedWindow window{application.appId, application.windowClass, application.title};
    const auto now = AutoProfile::Clock::now();
    const auto due = automatic_.focusChanged(window, now);
    if (due == now) return;  // this application's own window
    inFront_ = window;
    if (core_.events) {
        core_.events->runAfter(std::chrono::duration_cast<std::chrono::milliseconds>(due - now),
                               [this] { settle(AutoProfile::Clock::now()); });
    }
}

void FollowUser::addRule(const ops::AppProfileRule& rule) {
    if (!core_.db()) return;
    core_.report(ops::setAppProfile(ops::appProfilesFile(), *core_.db(), rule));
    reloadRules();
    core_.notify(SessionAspect::Desktop);
}

void FollowUser::removeRule(std::size_t index) {
    if (index >= rules().size()) return;
    const ops::AppProfileRule rule = rules()[index];
    core_.report(ops::removeAppProfile(ops::appProfilesFile(), rule.application, rule.title));
    reloadRules();
    core_.notify(SessionAspect::Desktop);
}

std::vector<FollowUser::ProfileItem> FollowUser::profileItems() const {
    std::vector<ProfileItem> items;
    for (const ProfileRow& row : profiles_.rows()) items.push_back({row.profileId, row.name, row.profileId == core_.currentProfile});
    return items;
}

void FollowUser::chooseProfile(std::int64_t profile) {
    profileChosenByHand(profile);
    select(profile);
}

void FollowUser::select(std::int64_t profile) {
    // The key page's table shows it chosen, as if the user had clicked its row.
    const std::vector<ProfileRow>& rows = profiles_.rows();
    for (std::size_t row = 0; row < rows.size(); ++row) {
        if (rows[row].profileId == profile) profiles_.setKeyProfileTableSelect(static_cast<int>(row));
    }
    profiles_.selectProfile(profile);
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

void FollowUser::setStartAtLogin(bool on, const std::string& program) {
    std::string error;
    if (!setAutostart(on, program, error)) core_.warn(extraText(ExtraText::kNotStoredTitle), error);
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
