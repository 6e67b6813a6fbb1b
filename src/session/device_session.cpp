#include "session/device_session.h"

#include "common/fatal.h"
#include "hid/device_access.h"
#include "hid/hid_device_monitor.h"
#include "store/database_watcher.h"
#include "i18n/extra_texts.h"
#include "ops/configuration.h"
#include "ops/lighting.h"
#include "ops/settings.h"
#include "ops/user_lights.h"
#include "layout/key_maps.h"
#include "session/keyboard_session.h"

namespace qx9 {

namespace {
constexpr const char* kDisplayName = "HALVORN QX9";
}

DeviceSession::DeviceSession(KeyboardSession& session) : s_(session) {}

DeviceSession::~DeviceSession() {
    stopWatching();
    if (rfDeviceMonitor && rfDeviceMonitor->fd() >= 0 && s_.core.events) s_.core.events->unwatchDescriptor(rfDeviceMonitor->fd());
    if (databaseWatcher_ && databaseWatcher_->fd() >= 0 && s_.core.events) s_.core.events->unwatchDescriptor(databaseWatcher_->fd());
}

void DeviceSession::startMonitor() {
    if (rfDeviceMonitor) return;
    HIDDeviceEvents events;
    events.HIDDeviceConnected = [this](const HIDDevice& record) { arrived(record); };
    events.HIDDeviceDisconnected = [this](const HIDDevice& record) { deviceDisconnected(record); };
    rfDeviceMonitor = std::make_unique<HIDDeviceMonitor>(std::vector<HIDMonitorData>{{kQX9VendorId, kQX9ProductId}},
                                                         kQX9FeatureSize, std::move(events));
    if (rfDeviceMonitor->open() && rfDeviceMonitor->fd() >= 0 && s_.core.events) {
        s_.core.events->watchDescriptor(rfDeviceMonitor->fd(), [this] { rfDeviceMonitor->receive(); });
    }
}

void DeviceSession::arrived(const HIDDevice& record) {
    if (!record.device) return;
    std::lock_guard lock(openMutex_);
    openThreads_.emplace_back([this, record] {
        const OpenedInterface opened = openInterface(record);
        // A node we may not open is not a keyboard we can use: the front end says how to fix it.
        if (opened.accessDenied) {
            return s_.core.post([this, node = opened.node] {
                if (s_.core.events) s_.core.events->accessProblem(node);
            });
        }
        deviceConnected(record);
    });
}

void DeviceSession::stopWatching() {
    std::vector<std::thread> threads;
    {
        std::lock_guard lock(openMutex_);
        threads.swap(openThreads_);
    }
    for (std::thread& t : threads) t.join();
}

void DeviceSession::deviceConnected(const HIDDevice& record) {
    if (!record.device) return;
    SessionCore& core = s_.core;
    {
        std::lock_guard lock(core.mutex);
        if (core.kbHIDdevice && sameDevice(core.kbHIDdevice, record.device)) return;  // reported again
        core.kbHIDdevice = record.device;
    }
    core.post([this, device = record.device] {
        SessionCore& c = s_.core;
        // A keyboard was connected before: point the sender at this one (it opens it on its own
        // thread); nothing is reloaded or sent again.
        if (c.sender && c.device() == device) c.useKeyboard(device);
        refreshUI();
    });
}

void DeviceSession::deviceDisconnected(const HIDDevice& record) {
    if (!record.device) return;
    SessionCore& core = s_.core;
    // Cleared for any matching removal, before it is known whether it is the current device.
    core.initFinish = false;
    {
        std::lock_guard lock(core.mutex);
        if (!core.kbHIDdevice || !sameDevice(core.kbHIDdevice, record.device)) return;
        core.kbHIDdevice.reset();
    }
    core.post([this] {
        s_.core.setKeyboardPresent(false);
        refreshUI();
    });
}

void DeviceSession::refreshUI() {
    SessionCore& core = s_.core;
    if (core.device()) {
        ConnectDevice();
        watchDatabase();
        core.initFinish = true;
    } else {
        g_show_homepage_ = true;  // the start view comes back over the pages
        s_.macros.stopRecordingInProgress();
        core.notify(SessionAspect::Page);
    }
    core.notify(SessionAspect::Connection);
}

void DeviceSession::initSQLite() {
    SessionCore& core = s_.core;
    const HidDeviceRef device = core.device();
    if (!device) fatalError("the database is opened for a keyboard, and none is connected");
    // A sender that reads the database through this object follows it to the new one.
    if (core.sender && !core.queuedSender) {
        core.lightsOff.reset();
        core.sender.reset();
    }
    core.deviceDB = DeviceSQLite::openFile(core.config.databaseFile);
    if (core.deviceDB->readable()) core.useKeyboard(device);
}

void DeviceSession::ConnectDevice() {
    SessionCore& core = s_.core;
    if (connected_ || !core.device()) return;  // only the first keyboard loads
    connected_ = true;
    initSQLite();
    if (!core.deviceDB->readable()) {
        // Nothing of a file that cannot be read may reach the keyboard: the page models get no
        // database, so nothing is stored or sent, and the user is told what to do.
        const std::string message = storeProblemText(core.deviceDB->problem(), core.deviceDB->filePath());
        core.deviceDB.reset();
        core.unreadable = true;
        core.warn(extraText(ExtraText::kUnreadableTitle), message);
        return;
    }
    loadSession();
}

void DeviceSession::loadSession() {
    SessionCore& core = s_.core;
    // The key classes of keystroke capture, from the name map in force.
    core.capture.setKeyClasses(G_KB_SuperKeyNameMap);
    s_.settings.readStoredLanguage();
    // The first connection stores and sends once, as qx9ctl connect does; the pages only load.
    if (const std::optional<ops::Target> target = core.target()) core.report(ops::connectKeyboard(*target));
    getAllProfile();
    s_.profiles.showProfile(ops::kSettingsProfile);
    core.currentLightSelection = ops::kSettingsProfile;
    s_.macros.initMacroList();
    core.initFinish = true;
}

void DeviceSession::getAllProfile() {
    s_.keys.loadFnKeyMode();
    s_.profiles.loadKeyProfile();
    s_.lighting.rebuildModeList();  // in the stored language, with the stored selection
    s_.userLights.loadUserLightData();
    s_.settings.loadGameModeData();
}

void DeviceSession::button_keyboard_connect() {
    if (!s_.core.device()) return;
    g_show_homepage_ = false;
    s_.core.notify(SessionAspect::Page);
}

void DeviceSession::button_action_home() {
    if (s_.lighting.colorPanel() != ColorPanelAction::Closed) s_.lighting.colorPanelClosed();
    g_show_homepage_ = true;
    s_.core.notify(SessionAspect::Page);
}

void DeviceSession::removePreView() {
    if (viewType_ == kPageMacros) s_.macros.leavePage();
    // The colour dialog belongs to the lighting page that opened it.
    if (s_.lighting.colorPanel() != ColorPanelAction::Closed) s_.lighting.colorPanelClosed();
}

void DeviceSession::showPage(int pageCode) {
    if (viewType_ != pageCode) removePreView();
    viewType_ = pageCode;
    s_.core.notify(SessionAspect::Page);
    // Entering these two pages sends their effect, also when the page is already shown.
    if (!s_.core.db()) return;
    const std::optional<ops::Target> target = s_.core.target();
    if (pageCode == kPageBacklight) {
        s_.core.report(ops::sendLightMode(*target, s_.core.currentProfile, s_.core.currentLightSelection));
    }
    if (pageCode == kPageUserLight) s_.core.report(ops::sendUserLightMode(*target));
}

void DeviceSession::watchDatabase() {
    const DeviceSQLite* db = s_.core.db();
    if (databaseWatcher_ || !db) return;
    databaseWatcher_ = std::make_unique<DatabaseWatcher>(db->filePath());
    databaseVersion_ = db->dataVersion();
    if (databaseWatcher_->fd() < 0 || !s_.core.events) return;
    s_.core.events->watchDescriptor(databaseWatcher_->fd(), [this] {
        if (databaseWatcher_->written() && s_.core.events) s_.core.events->databaseWritten();
    });
}

bool DeviceSession::databaseWritten() {
    const DeviceSQLite* db = s_.core.db();
    if (!db) return false;
    // This window's own commits leave the version as it is; another program's change it.
    const std::int64_t version = db->dataVersion();
    if (version == databaseVersion_) return false;
    databaseVersion_ = version;
    s_.databaseChanged();
    return true;
}

bool DeviceSession::keyboardConnected() { return s_.core.device() != nullptr; }

std::string DeviceSession::windowTitle() { return kDisplayName; }

}  // namespace qx9
