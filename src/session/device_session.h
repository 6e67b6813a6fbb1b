#pragma once

#include <cstdint>
#include <string>

#include "common/notification_center.h"
#include "hid/hid_device.h"

namespace qx9 {

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
    explicit DeviceSession(KeyboardSession& session) : s_(session) {}

    // Device notifications; they may arrive on the monitor's thread.
    void deviceConnected(const Notification& notification);
    void deviceDisconnected(const Notification& notification);

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
    static const HIDDevice* deviceOf(const Notification& notification);
    void loadSession();
    void removePreView();

    KeyboardSession& s_;
    bool connected_ = false;  // the first keyboard has loaded the session
    int viewType_ = kPageKeys;
    bool g_show_homepage_ = true;
};

}  // namespace qx9
