#pragma once

#include <atomic>
#include <chrono>
#include <bitset>
#include <filesystem>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

#include "hid/capture_state.h"
#include "hid/hid_backend.h"
#include "ops/target.h"
#include "sender/lights_off_sender.h"
#include "sender/queued_sender.h"
#include "store/device_sqlite.h"

namespace qx9 {

// What a front end sees change. After a change it re-reads the session's state of that aspect.
// Told in this order: the language first, so that a page made on a change is made in it.
enum class SessionAspect {
    Language,     // every text of the interface
    Connection,   // device present or not, title, start view
    Page,         // page shown, start view
    KeyView,      // texts and marks of the key page's keyboard
    Palette,      // selection of the function palette
    FnLayer,      // layer buttons
    FnMode,       // default-key / Fn-key buttons
    ProfileList,  // rows and highlight of the profile table
    Settings,     // game-mode check boxes
    LightModes,   // backlight mode list and highlight
    UserLights,   // per-key lighting sets, the loaded set, key colours
    Macros,       // macro list and event list
    Desktop,      // what follows the user: the focus source, the rules, the options, the tray
    History,      // the steps undo and redo would take (UndoHistory)
};
inline constexpr int kSessionAspectCount = static_cast<int>(SessionAspect::History) + 1;

// The front end's side of the session: it is told what changed, shows the warnings, and is
// asked to show the two windows the key page opens. All calls come on the main thread. A front
// end whose main thread runs an event loop (SessionConfig::postToMain) is told what changed once
// the action that changed it has returned, each aspect once: a view that reports an action is
// never re-entered while it reports it.
class SessionEvents {
public:
    virtual ~SessionEvents() = default;
    virtual void changed(SessionAspect) {}
    // A warning sheet with its two texts in the current language.
    virtual void warning(const std::string& /*message*/, const std::string& /*informative*/) {}
    // A notice that does not stop the user (the keyboard did not take a change).
    virtual void notice(const std::string& /*text*/) {}
    // The keyboard's sender is busy: reports sent of the current transfer, and the requests
    // waiting behind it; total 0 when it has finished everything.
    virtual void sending(std::size_t /*done*/, std::size_t /*total*/, std::size_t /*waiting*/) {}
    // A key was chosen on the key page: show the key menu at the pointer.
    virtual void showKeyMenu() {}
    // "Custom Function" was chosen: open the custom key dialog.
    virtual void showCustomKeyDialog() {}
    // An arriving keyboard's node exists, and this user may not open it.
    virtual void accessProblem(const std::string& /*node*/) {}
    // The database file was written, by this program or another: once a burst of writes has
    // settled, the front end asks DeviceSession::databaseWritten whether another program committed.
    virtual void databaseWritten() {}
    // Calls `readable` on the main thread whenever `fd` can be read, until unwatchDescriptor(fd)
    // (the device monitor, the keyboards' event nodes, the database's folder).
    virtual void watchDescriptor(int /*fd*/, std::function<void()> /*readable*/) {}
    virtual void unwatchDescriptor(int /*fd*/) {}
    // Calls `work` on the main thread after `delay`, once (a front end without an event loop
    // runs nothing).
    virtual void runAfter(std::chrono::milliseconds /*delay*/, std::function<void()> /*work*/) {}
};

// How a session reaches the outside world.
struct SessionConfig {
    // The database file; empty: the application's own in its data directory.
    std::filesystem::path databaseFile;
    // Pacing of the transport, and the wire log (optional).
    Pacer* pacer = nullptr;
    std::shared_ptr<WireSink> wire{};
    // Runs work on the front end's main thread without waiting. Defaults to running it at once.
    std::function<void(std::function<void()>)> postToMain{};
    // Sends from a thread of the keyboard's own, so that the main thread never waits for the
    // keyboard (the window). Otherwise every change is sent before its action returns.
    bool sendOnWorker = false;
};

// The database file a session configured with `databaseFile` works on (see SessionConfig).
inline std::filesystem::path sessionDatabaseFile(const std::filesystem::path& databaseFile) {
    return DeviceSQLite::fileFor(databaseFile);
}

// What the user reads when the database file cannot be used, in the interface language: the cause,
// and for a damaged or foreign file how to start afresh. %1 is replaced by `file`.
std::string storeProblemText(StoreProblem problem, const std::filesystem::path& file);

// State shared by every part of the session, and the database and transport.
//
// `kbHIDdevice`, `initFinish` and the transport's device and status are written by the device
// notifications, which arrive on the monitor's thread; they are guarded by `mutex` (or atomic).
// Everything else is main-thread only.
struct SessionCore {
    SessionConfig config;
    SessionEvents* events = nullptr;

    std::mutex mutex;
    HidDeviceRef kbHIDdevice;
    std::atomic<bool> initFinish{false};
    std::unique_ptr<DeviceSQLite> deviceDB;  // opened at the first connection
    // The keyboard's sender, created at the first connection: a queued one of its own thread,
    // or one that sends at once.
    std::unique_ptr<KeyboardSender> sender;
    QueuedSender* queuedSender = nullptr;
    // Every change goes through it: it keeps the keys dark while the user wants them dark.
    std::unique_ptr<LightsOffSender> lightsOff;

    std::int64_t currentProfile = 1;
    std::int64_t currentFnLayer = 0;
    std::int64_t currentKeyValue = 0;
    std::int64_t currentLightMode = 0;
    // The profile under which currentLightMode is stored as the selected effect: 1 after the
    // backlight page loads or chooses an effect, the current profile after choosing a profile.
    std::int64_t currentLightSelection = 1;

    // What the keystroke capture knows of the keys held; the window's capture sources feed it.
    CaptureState capture;

    KeyboardSender* keyboard() { return lightsOff.get(); }
    DeviceSQLite* db() { return deviceDB.get(); }
    // What the operations change: none until the database is open; once a keyboard has brought
    // the pages up without a readable database, asking for it warns that nothing was stored.
    // Every change takes it, so the history's next steps are told with it (once the change is
    // done, where the front end has an event loop).
    std::optional<ops::Target> target() {
        if (!deviceDB) {
            if (unreadable) warnNotStored();
            return std::nullopt;
        }
        notify(SessionAspect::History);
        return ops::Target{*deviceDB, keyboard()};
    }
    // The first connection found the database unreadable: the pages have nothing to change.
    bool unreadable = false;
    // The warning for a change the database did not take, naming the cause.
    void warnNotStored();
    // Tells the user why a change was refused.
    void refused(const ops::Outcome& outcome);
    // Creates the sender for `device` once the database is open; points it at a new device later.
    void useKeyboard(const HidDeviceRef& device);
    // The keyboard came or went: writes are refused at once while it is away.
    void setKeyboardPresent(bool present);
    // Waits until the sender has sent everything queued, at most `timeout` (true at once when it
    // sends directly).
    bool finishSending(std::chrono::milliseconds timeout);
    // Drops what is still waiting to be sent; how many requests.
    std::size_t abandonSending() { return queuedSender ? queuedSender->abandon() : 0; }
    // Nothing waits to be sent.
    bool sendingIdle() { return !queuedSender || queuedSender->idle(); }
    HidDeviceRef device() {
        std::lock_guard lock(mutex);
        return kbHIDdevice;
    }

    // Tells the front end that `aspect` changed (see SessionEvents).
    void notify(SessionAspect aspect);
    void warn(const std::string& message, const std::string& informative) {
        if (events) events->warning(message, informative);
    }
    // Tells the user about an operation that did not go through: a refusal or a change that was
    // not stored as a warning, a change the keyboard did not take as a notice. Returns whether
    // the change was stored. A change refused because another program changed its base also
    // reloads the pages (through `reload`, set by the session).
    bool report(const ops::Outcome& outcome);
    std::function<void()> reload;
    // The user chose a profile by hand (automatic profiles leave that choice alone).
    std::function<void(std::int64_t)> profileChosenByHand;
    std::bitset<kSessionAspectCount> changedAspects;  // told at the next delivery
    bool deliveryPosted = false;
    void post(std::function<void()> work) {
        if (config.postToMain) config.postToMain(std::move(work));
        else work();
    }
};

}  // namespace qx9
