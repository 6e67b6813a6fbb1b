// The window's pages when the database or the keyboard fails: nothing lost without a word.
#include <fstream>
#include <iterator>

#include "session/session_fixture.h"
#include "hid/virtual_qx9_memory.h"
#include "layout/key_maps.h"
#include "support/sql_value.h"

namespace qx9::test {
namespace {

class FaultsTest : public SessionTest {
protected:
    void chooseKeyA() {
        session_->keys.keyboardKeyAction("a");
        clearWire();
    }
};

TEST_F(FaultsTest, AnUnreadableDatabaseSendsNothingAndSaysWhereItIs) {
    std::string bytes;
    for (int i = 0; i < 8192; ++i) bytes += static_cast<char>((i * 7919 + 13) % 256);
    std::ofstream(dbPath_, std::ios::binary) << bytes;
    connect();
    EXPECT_TRUE(sets().empty());  // an all-zero key map would wipe what the keyboard holds
    ASSERT_EQ(events_.warnings.size(), 1u);
    EXPECT_NE(events_.warnings[0].find(dbPath_.string()), std::string::npos) << events_.warnings[0];
    EXPECT_NE(events_.warnings[0].find("qx9ctl import"), std::string::npos);
    // The pages have nothing to change and send nothing.
    chooseKeyA();
    session_->keys.customKeyFuncAction(5);
    session_->settings.button_action_gamemode(SettingsPage::kGameMode, true);
    EXPECT_TRUE(sets().empty());
    std::ifstream in(dbPath_, std::ios::binary);
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(in), {}), bytes);
}

TEST_F(FaultsTest, AChangeTheDatabaseRefusesIsNotSentAndTheUserIsWarned) {
    connect();
    chooseKeyA();
    ASSERT_TRUE(sqlExec(dbPath_.string(), "CREATE TRIGGER no BEFORE INSERT ON t_keyprofile BEGIN SELECT RAISE(ABORT, 'no'); END"));
    session_->keys.customKeyFuncAction(5);
    EXPECT_TRUE(sets().empty());
    ASSERT_EQ(events_.warnings.size(), 1u);
    EXPECT_EQ(events_.warnings[0].substr(0, 24), "The change was not saved");
    EXPECT_EQ(sql("SELECT COUNT(*) FROM t_keyprofile"), "0");
}

TEST_F(FaultsTest, AChangeTheKeyboardDoesNotTakeIsKeptAndTheUserIsTold) {
    connect();
    chooseKeyA();
    keyboard_->failSetAt(2);  // the key map's header
    session_->keys.customKeyFuncAction(5);
    EXPECT_TRUE(events_.warnings.empty());
    ASSERT_EQ(events_.notices.size(), 1u);
    EXPECT_NE(events_.notices[0].find("did not take"), std::string::npos);
    EXPECT_EQ(sql("SELECT macroValue FROM t_keyprofile WHERE keyvalue = 4"), "5");
}

TEST_F(FaultsTest, DamagedStoredValuesAreLeftOutAndStopNothing) {
    connect();
    session_->userLights.addUserLight();
    for (const char* damage : {
             "UPDATE t_profile SET name = NULL",
             "UPDATE t_configdata SET value = 'abc' WHERE key = 'fnfunction'",
             "UPDATE t_configdata SET value = '300' WHERE key = 'sleeplight'",
             "INSERT INTO t_userlight_leddata (light_id, keyvalue, rgbvalue) VALUES (1, 4, -5), (1, 9999, 255)",
             "INSERT INTO t_keyprofile (profId, fnlayerId, keyvalue, macroType, macroValue, macro2Value, macro3Value,"
             " macroDesc) VALUES (1, 0, 9999, 3, 5, 0, 0, 'x'), (1, 0, 5, 3, -3, 0, 0, 'x'), (1, 0, 6, 3, 7, 0, 0, 'c')",
             "UPDATE t_lightdata SET byte1 = 999"}) {
        ASSERT_TRUE(sqlExec(dbPath_.string(), damage)) << damage;
    }
    // A fresh start on the damaged file: the first connection loads and sends what is sound.
    auto other = std::make_shared<VirtualQX9>();
    session_.reset();
    session_ = openSession(dbPath_, recorder_, events_);
    connect(other);
    const VirtualQX9Memory memory = other->memory();
    EXPECT_EQ(decodeSystemFunctions(memory)->fnFunction, 0);  // "abc" counts as 0
    EXPECT_EQ(decodeSystemFunctions(memory)->sleepTime, 0);   // so does 300
    EXPECT_EQ(keyRecord(memory, 0, G_KB_SuperKeyCodeMap.at(6).key_index)[2], 7);  // c → 7 still goes
    EXPECT_EQ(keyRecord(memory, 0, G_KB_SuperKeyCodeMap.at(5).key_index)[0], 0);  // b → −3 does not
    session_->lighting.lightModeSelectionChanged(2);  // a colour of 999 shows as 255
    EXPECT_EQ(decodeLightMode(other->memory())->red, 255);
}

}  // namespace
}  // namespace qx9::test
