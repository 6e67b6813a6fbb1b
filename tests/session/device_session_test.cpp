#include "session/session_fixture.h"

#include <set>
#include <utility>

namespace qx9::test {
namespace {

using DeviceSessionTest = SessionTest;

TEST_F(DeviceSessionTest, FirstConnectionSendsSystemFunctionsThenProfileOnesKeyMap) {
    connect();  // no user-light set yet
    EXPECT_EQ(commandCodes(), (std::vector<int>{0x18, 0x17, 0x02, 0x18, 0x11, 0x02}));
    EXPECT_TRUE(session_->core.initFinish);
    EXPECT_EQ(session_->core.currentProfile, 1);
    EXPECT_EQ(session_->core.currentLightMode, 11);
    EXPECT_EQ(curLanguage, kLanguageEnglish);  // the stored "1033"
}

TEST_F(DeviceSessionTest, StoredUserLightSetIsSentFirst) {
    {
        DeviceSQLite db = DeviceSQLite::atPath(dbPath_);
        db.addUserLightLEDData({0, db.addUserLight(1, "User light1"), 61, 0x12ABEF});
    }
    connect();
    EXPECT_EQ(commandCodes(), (std::vector<int>{0x18, 0x23, 0x02, 0xF0, 0x18, 0x13, 0x02, 0xF0,
                                                0x18, 0x17, 0x02, 0x18, 0x11, 0x02}));
    EXPECT_EQ(keyColour(keyboard_->memory(), 5), 0x12ABEFu);  // f4
    EXPECT_EQ(decodeLightMode(keyboard_->memory())->mode, 0x80);
    EXPECT_EQ(session_->userLights.keyColours()[4], 0x12ABEFu);  // f4 is layout position 4
}

TEST_F(DeviceSessionTest, LaterArrivalsSendNothingAndWritesGoToTheKeyboardThere) {
    connect();
    clearWire();
    connect();  // the same interface again: ignored
    disconnect(std::make_shared<VirtualQX9>());  // not the current interface
    EXPECT_TRUE(sets().empty());
    EXPECT_FALSE(session_->core.initFinish);     // cleared for any removal of a QX9
    EXPECT_TRUE(session_->device.keyboardConnected());
    session_->keys.textButtonAction(0);
    EXPECT_EQ(keyboard_->setCount(), 16u + 4);  // the first connection's reports, then open, header, record, end

    disconnect(keyboard_);
    EXPECT_TRUE(!session_->device.keyboardConnected() && session_->device.showingHomePage());
    clearWire();
    auto second = std::make_shared<VirtualQX9>();
    connect(second);
    EXPECT_TRUE(sets().empty() && session_->core.initFinish);
    session_->keys.textButtonAction(1);
    EXPECT_EQ(second->setCount(), 4u);
    EXPECT_EQ(keyboard_->setCount(), 20u);
}

TEST_F(DeviceSessionTest, PagesAndTheirSends) {
    session_->device.deviceConnected(HIDDevice{});  // a record without a device
    EXPECT_FALSE(session_->device.keyboardConnected());
    EXPECT_EQ(session_->core.db(), nullptr);
    session_->device.button_keyboard_connect();
    EXPECT_TRUE(session_->device.showingHomePage());
    connect();
    session_->device.button_keyboard_connect();
    EXPECT_FALSE(session_->device.showingHomePage());
    const std::pair<int, std::vector<int>> cases[] = {
        {kPageMacros, {}},
        {kPageBacklight, {0x18, 0x13, 0x02, 0xF0}},  // the current effect, mode 11
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
    session_->device.showPage(kPageBacklight);
    EXPECT_EQ(decodeLightMode(keyboard_->memory())->mode, 11);
    session_->device.button_action_home();
    EXPECT_TRUE(session_->device.showingHomePage());
}

// With an event loop, the front end hears what changed once the action has returned, each aspect once.
TEST(SessionEvents, ChangesAreToldAfterTheActionEachAspectOnce) {
    struct Loop final : SessionEvents {
        void changed(SessionAspect a) override { told.push_back(a); }
        void run() {
            while (!queue.empty()) std::exchange(queue, {}).front()();
        }
        std::vector<std::function<void()>> queue;
        std::vector<SessionAspect> told;
    } loop;
    TempDir dir;
    SessionConfig config{.databaseFile = dir / "db.sqlite3", .postToMain = [&](std::function<void()> w) { loop.queue.push_back(std::move(w)); }};
    KeyboardSession session(config, &loop);
    session.device.deviceConnected(virtualQX9Record(std::make_shared<VirtualQX9>()));
    EXPECT_TRUE(loop.told.empty());
    loop.run();
    EXPECT_EQ(std::set<SessionAspect>(loop.told.begin(), loop.told.end()).size(), loop.told.size());
    loop.told.clear();
    session.lighting.lightModeSelectionChanged(3);
    EXPECT_TRUE(loop.told.empty());
    loop.run();
    // The effect, and the step it adds to the history.
    EXPECT_EQ(loop.told, (std::vector<SessionAspect>{SessionAspect::LightModes, SessionAspect::History}));
}

// Every refusal reaches the user: a warning, or for something another program removed a notice
// and the pages reloaded.
TEST_F(DeviceSessionTest, EveryRefusalIsTold) {
    connect();
    using ops::Reason;
    const std::pair<ops::Outcome, bool> cases[] = {  // the outcome, told as a warning
        {ops::Outcome::refused(Reason::kLastProfile), true},
        {ops::Outcome::refused(Reason::kTooManyMacros, {"100"}), true},
        {ops::Outcome::refused(Reason::kNoUserLight, {"0"}), true},
        {ops::Outcome::refused(Reason::kByteRange, {"red", "256"}), true},
        {ops::Outcome::refused(Reason::kNoProfile, {"5"}), false},
        {ops::Outcome::refused(Reason::kNoMacro, {"7"}), false},
        {ops::Outcome::refused(Reason::kNoUserLight, {"3"}), false},
    };
    for (const auto& [outcome, warning] : cases) {
        events_ = {};
        EXPECT_FALSE(session_->core.report(outcome));
        EXPECT_EQ(events_.warnings.size(), warning ? 1u : 0u) << ops::describe(outcome);
        EXPECT_EQ(events_.notices.size(), warning ? 0u : 1u) << ops::describe(outcome);
    }
}

}  // namespace
}  // namespace qx9::test
