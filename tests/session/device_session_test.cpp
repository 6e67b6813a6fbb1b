// Arrival and departure of the keyboard, the first connection's load, page switching.
#include "session/session_fixture.h"

#include "hid/capture_state.h"
#include "i18n/language.h"

namespace qx9::test {
namespace {

using DeviceSessionTest = SessionTest;

TEST_F(DeviceSessionTest, FirstConnectionSendsSystemFunctionsThenProfileOnesKeyMap) {
    connect();
    // No user-light set yet: system functions, then the key map.
    EXPECT_EQ(commandCodes(), (std::vector<int>{0x18, 0x17, 0x02, 0x18, 0x11, 0x02}));
    EXPECT_TRUE(session_->core.initFinish);
    EXPECT_EQ(session_->core.currentProfile, 1);
    EXPECT_EQ(session_->core.currentLightMode, 11);  // the fresh database's selection
    EXPECT_EQ(curLanguage, kLanguageEnglish);  // the stored "1033"
    // The capture's key classes come from the name map: the nine flag keys are modifiers.
    EXPECT_EQ(session_->core.capture.G_KB_FlagKeys.size(), 9u);
    EXPECT_EQ(session_->core.capture.G_KB_NormalKeys.size(), 100u);
}

TEST_F(DeviceSessionTest, StoredUserLightSetIsSentFirst) {
    {
        DeviceSQLite db = DeviceSQLite::atPath(dbPath_);
        const auto set = db.addUserLight(1, "User light1");
        db.addUserLightLEDData({0, set, 61, 0x12ABEF});  // f4, light index 5
    }
    connect();
    EXPECT_EQ(commandCodes(), (std::vector<int>{0x18, 0x23, 0x02, 0xF0, 0x18, 0x13, 0x02, 0xF0,
                                                0x18, 0x17, 0x02, 0x18, 0x11, 0x02}));
    EXPECT_EQ(keyColour(keyboard_->memory(), 5), 0x12ABEFu);
    EXPECT_EQ(decodeLightMode(keyboard_->memory())->mode, 0x80);
    EXPECT_EQ(session_->userLights.keyColours()[4], 0x12ABEFu);  // f4 is layout position 4
}

TEST_F(DeviceSessionTest, LaterArrivalsSendNothingAndWritesGoToTheKeyboardThere) {
    connect();
    clearWire();
    connect();  // the same interface again: ignored
    EXPECT_TRUE(sets().empty());
    disconnect(std::make_shared<VirtualQX9>());  // not the current interface
    EXPECT_FALSE(session_->core.initFinish);     // cleared for any removal of a QX9
    EXPECT_TRUE(session_->device.keyboardConnected());
    session_->keys.textButtonAction(0);
    EXPECT_EQ(keyboard_->setCount(), 16u + 4);  // the first connection's reports, then open, header, record, end

    disconnect(keyboard_);
    EXPECT_FALSE(session_->device.keyboardConnected());
    EXPECT_TRUE(session_->device.showingHomePage());
    clearWire();
    auto second = std::make_shared<VirtualQX9>();
    connect(second);
    EXPECT_TRUE(sets().empty());
    EXPECT_TRUE(session_->core.initFinish);
    session_->keys.textButtonAction(1);
    EXPECT_EQ(second->setCount(), 4u);
    EXPECT_EQ(keyboard_->setCount(), 20u);
}

TEST_F(DeviceSessionTest, PagesAndTheirSends) {
    // Notifications without a device, and the start view's button without a keyboard: nothing.
    session_->device.deviceConnected(Notification{kHIDDeviceConnected, std::string("device")});
    session_->device.deviceConnected(Notification{kHIDDeviceConnected, HIDDeviceDictionary{}});
    EXPECT_FALSE(session_->device.keyboardConnected());
    EXPECT_EQ(session_->core.db(), nullptr);
    session_->device.button_keyboard_connect();
    EXPECT_TRUE(session_->device.showingHomePage());
    connect();
    session_->device.button_keyboard_connect();
    EXPECT_FALSE(session_->device.showingHomePage());
    const std::pair<int, std::vector<int>> cases[] = {
        {kPageMacros, {}},
        {kPageBacklight, {0x18, 0x13, 0x02, 0xF0}},
        {kPageBacklight, {0x18, 0x13, 0x02, 0xF0}},  // again, though already shown
        {kPageUserLight, {0x18, 0x13, 0x02, 0xF0}},
        {kPageSettings, {}},
        {kPageKeys, {}},
    };
    for (const auto& [page, codes] : cases) {
        clearWire();
        session_->device.showPage(page);
        EXPECT_EQ(commandCodes(), codes) << page;
    }
    // The backlight page sends the current effect of the current profile: mode 11.
    session_->device.showPage(kPageBacklight);
    EXPECT_EQ(decodeLightMode(keyboard_->memory())->mode, 11);
    session_->device.button_action_home();
    EXPECT_TRUE(session_->device.showingHomePage());
}

TEST_F(DeviceSessionTest, ArrivalOnAnotherThreadHandsTheLoadToTheMainThread) {
    std::vector<std::function<void()>> mainQueue;
    session_->core.config.postToMain = [&](std::function<void()> work) { mainQueue.push_back(std::move(work)); };
    std::thread monitor([&] { connect(); });
    monitor.join();
    EXPECT_TRUE(sets().empty());  // nothing ran on the monitor's thread
    ASSERT_EQ(mainQueue.size(), 1u);
    mainQueue.front()();
    EXPECT_FALSE(sets().empty());
}

}  // namespace
}  // namespace qx9::test
