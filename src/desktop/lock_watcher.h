#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace qx9::desktop {

// Tells when the screen locks and unlocks, from whichever of these answer:
//   logind's LockedHint of this process's session (system bus; the session of XDG_SESSION_ID,
//   or else the one this process belongs to)
//   the ActiveChanged signal of org.freedesktop.ScreenSaver (KDE Plasma, among others) and of
//   org.gnome.ScreenSaver (GNOME), on the session bus
// The screen counts as locked while any of them says so. A missing bus or service is no error:
// the watcher watches what there is, perhaps nothing.
//
// Like FocusSource, it never blocks and runs only in dispatch(): the constructor sends its
// questions, and the answers come through the descriptors like any news. It starts unlocked,
// so a screen already locked is reported by the first dispatches.
class LockWatcher {
public:
    LockWatcher();
    ~LockWatcher();
    LockWatcher(const LockWatcher&) = delete;
    LockWatcher& operator=(const LockWatcher&) = delete;

    // What has answered so far, for the user: "logind LockedHint, org.gnome.ScreenSaver", or
    // "nothing".
    std::string name() const;
    // The bus connections to watch for reading; fixed for the watcher's life.
    std::vector<int> descriptors() const;
    // Reads what the buses sent; calls onLockChanged when the screen's state changed.
    void dispatch();
    bool locked() const;
    // A bus connection closed: dispatch() does nothing more, and the owner stops watching.
    bool broken() const;

    // Called from dispatch() only; it must not destroy the watcher.
    std::function<void(bool locked)> onLockChanged;

private:
    struct Buses;
    std::unique_ptr<Buses> buses_;
};

}  // namespace qx9::desktop
