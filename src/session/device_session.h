#pragma once

#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "hid/hid_device.h"

namespace qx9 {

class DatabaseWatcher;
class HIDDeviceMonitor;
class KeyboardSession;

// Page codes of `viewType`.
enum PageCode : int {
    kPageKeys = 1,
    kPageMacros = 2,
    kPageBacklight = 3,
    kPageUserLight = 5,
    kPageSettings = 7,
};

// The keyboard coming and going, the first connection's load, and page switching.
class DeviceSession {
public:
    explicit DeviceSession(KeyboardSession& session);
    ~DeviceSession();

    // Watches udev for the keyboard (through the front end's loop); nodes already there arrive first.
    void startMonitor();
    // An interface arrived: its node is opened away from the main thread (its permissions can lag
    // behind its arrival), then it is connected, or the front end is told that access is denied.
    void arrived(const HIDDevice& record);
    // Waits for the nodes being opened; nothing arrives after it.
    void stopWatching();

    // The keyboard came or went; they may be called on any thread. A record without a device is ignored.
    void deviceConnected(const HIDDevice& record);
    void deviceDisconnected(const HIDDevice& record);

    // The database file was written: when another program committed, the pages reload. True then.
    bool databaseWritten();

    // Main thread.
    void refreshUI();
    void ConnectDevice();
    void initSQLite();
    void getAllProfile();

    // Start view and pages.
    void button_keyboard_connect();
    void button_action_home();
    void showPage(int pageCode);  // the page buttons
    int viewType() const { return viewType_; }
    bool showingHomePage() const { return g_show_homepage_; }
    bool keyboardConnected();     // the start view's picture
    bool loaded() const { return connected_; }  // the first keyboard has loaded the pages
    std::string windowTitle();

private:
    void loadSession();
    void removePreView();
    void watchDatabase();

    KeyboardSession& s_;
    std::unique_ptr<HIDDeviceMonitor> rfDeviceMonitor;
    std::mutex openMutex_;
    std::vector<std::thread> openThreads_;
    std::unique_ptr<DatabaseWatcher> databaseWatcher_;
    std::int64_t databaseVersion_ = 0;
    bool connected_ = false;  // the first keyboard has loaded the session
    int viewType_ = kPageKeys;
    bool g_show_homepage_ = true;
};

}  // namespace qx9
