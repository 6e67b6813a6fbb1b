#include "session/session_fixture.h"

namespace qx9::test {
namespace {

class ProfilesTest : public ConnectedSessionTest {
protected:
    ProfileList& p = session_->profiles;
};

TEST_F(ProfilesTest, NewProfileIsNamedAfterTheRowCountAndTranslatedWhenShown) {
    p.customkey_button_profile(ProfileList::kAdd);
    p.customkey_button_profile(ProfileList::kAdd);
    ASSERT_EQ(p.rows().size(), 3u);
    EXPECT_EQ(p.rows()[1].name, "Configuration File 1");
    EXPECT_EQ(p.rows()[2].name, "Configuration File 2");
    EXPECT_EQ(p.selectedRow(), 2);
    EXPECT_EQ(session_->core.currentProfile, 1);  // not made current
    EXPECT_EQ(sql("SELECT COUNT(*) FROM t_lightdata WHERE profId = 2"), "0");  // lighting on first choice
    // In Chinese the default names are shown translated; a new one is stored in Chinese, and kept.
    session_->settings.comboBoxSelectionDidChange(1);  // Simplified Chinese
    EXPECT_EQ(p.rows()[0].name, "配置文件1");
    EXPECT_EQ(p.rows()[2].name, "配置文件2");
    p.customkey_button_profile(ProfileList::kAdd);
    EXPECT_EQ(p.rows()[3].name, "配置文件 3");
    session_->settings.comboBoxSelectionDidChange(0);
    EXPECT_EQ(p.rows()[3].name, "配置文件 3");
    EXPECT_EQ(p.rows()[2].name, "Configuration File 2");
}

TEST_F(ProfilesTest, SwitchingSendsTheKeyMapAndDeletingTheCurrentProfileKeepsItCurrentButNotTheLast) {
    p.customkey_button_profile(ProfileList::kAdd);
    clearWire();
    p.tableSelectionChanged(1);
    EXPECT_EQ(commandCodes(), (std::vector<int>{0x18, 0x11, 0x02}));  // switching sends only the key map
    const std::int64_t second = p.rows()[1].profileId;
    EXPECT_EQ(session_->core.currentProfile, second);
    EXPECT_EQ(sql("SELECT COUNT(*) FROM t_lightdata WHERE profId = " + std::to_string(second)), "21");
    p.customkey_button_profile(ProfileList::kDelete);
    EXPECT_EQ(p.rows().size(), 1u);
    EXPECT_EQ(session_->core.currentProfile, second);
    EXPECT_EQ(sql("SELECT COUNT(*) FROM t_lightdata WHERE profId = " + std::to_string(second)), "21");
    curLanguage = kLanguageTraditionalChinese;
    p.customkey_button_profile(ProfileList::kDelete);
    EXPECT_EQ(events_.warnings, (std::vector<std::string>{"刪除配置方案 | 不能刪除最後一個配置方案"}));
    EXPECT_EQ(sql("SELECT COUNT(*) FROM t_profile"), "1");
}

TEST_F(ProfilesTest, RenameTakesTheSelectedRowAndIgnoresEmptyText) {
    p.customkey_button_profile(ProfileList::kAdd);  // selects row 1
    p.keyTableItemViewEdit(0, "Games");             // the index carried does not count
    EXPECT_EQ(p.rows()[1].name, "Games");
    EXPECT_EQ(p.rows()[0].name, "Configuration File 1");
    p.keyTableItemViewEdit(1, "");
    EXPECT_EQ(sql("SELECT name FROM t_profile WHERE profId = 2"), "Games");
}

}  // namespace
}  // namespace qx9::test
