#include "session/session_fixture.h"

namespace qx9::test {
namespace {

struct Key { std::int64_t code; std::size_t layout; int light; };  // key code, layout position, light index
constexpr Key kEscape{41, 0, 1};
constexpr Key kFour{33, 4, 23};  // the "4" key (F4 shares its place)
constexpr Key kA{4, 30, 56};
constexpr Key kB{5, 48, 78};
constexpr Key kSpace{44, 60, 94};

const std::vector<int> kColoursThenMode = {0x18, 0x23, 0x02, 0xF0, 0x18, 0x13, 0x02, 0xF0};

class UserLightTest : public ConnectedSessionTest {
protected:
    UserLightPage& page() { return session_->userLights; }
    void click(const Key& k, bool shift = false) { page().keyClicked(static_cast<int>(k.layout), shift); }
    std::vector<std::size_t> selected() {
        std::vector<std::size_t> out;
        for (std::size_t i = 0; i < session_->keys.keys().size(); ++i) {
            if (page().keyCheck(i)) out.push_back(i);
        }
        return out;
    }
    std::string storedColour(std::int64_t set, const Key& k) {
        return sql("SELECT rgbvalue FROM t_userlight_leddata WHERE light_id = " + std::to_string(set) +
                   " AND keyvalue = " + std::to_string(k.code));
    }
    std::uint32_t sentColour(const Key& k) { return keyColour(keyboard_->memory(), k.light).value_or(0xDEAD); }
    std::int64_t newSet(const Key& k, int preset) {
        page().addUserLight();
        click(k);
        page().userLightPresetColor(preset);
        return page().userlight_id();
    }
    std::string fields() {
        return page().userlight_edit_color_r() + " " + page().userlight_edit_color_g() + " " +
               page().userlight_edit_color_b();
    }
};

TEST_F(UserLightTest, SetsBelongToProfileOneWhateverProfileIsCurrentAndLoadWithTheirColours) {
    session_->profiles.customkey_button_profile(ProfileList::kAdd);
    session_->profiles.tableSelectionChanged(1);
    ASSERT_EQ(session_->core.currentProfile, 2);
    clearWire();
    page().addUserLight();
    page().addUserLight();
    ASSERT_EQ(page().userlight_datas().size(), 2u);
    EXPECT_EQ(sql("SELECT group_concat(profile || ':' || name) FROM t_userlight_data"),
              "1:User light1,1:User light2");
    // The new last row is selected and loaded, which sends its (empty) colours and the mode.
    EXPECT_EQ(page().selectedRow(), 1);
    EXPECT_EQ(page().userlight_id(), page().userlight_datas()[1].light);
    EXPECT_EQ(commandCodes(), (std::vector<int>{0x18, 0x23, 0x02, 0xF0, 0x18, 0x13, 0x02, 0xF0,  //
                                                0x18, 0x23, 0x02, 0xF0, 0x18, 0x13, 0x02, 0xF0}));
    EXPECT_EQ(decodeLightMode(keyboard_->memory())->mode, 0x80);

    // A set stored under another profile is not one of the page's. Loading selects the first set
    // and paints its stored colours; a load sends nothing.
    DeviceSQLite::atPath(dbPath_).addUserLight(2, "elsewhere");
    const std::int64_t first = page().userlight_datas()[0].light;
    DeviceSQLite::atPath(dbPath_).addUserLightLEDData({0, first, kA.code, 0x12ABEF});
    clearWire();
    page().loadUserLightData();
    EXPECT_EQ(page().userlight_datas().size(), 2u);
    EXPECT_EQ(page().selectedRow(), 0);
    EXPECT_EQ(page().userlight_id(), first);
    EXPECT_EQ(page().keyColours()[kA.layout], 0x12ABEFu);
    EXPECT_TRUE(commandCodes().empty());
    // Applying unchanged colours stores them exactly as they were, and sends them.
    page().applyUserLightKeyColor();
    EXPECT_EQ(storedColour(first, kA), std::to_string(0x12ABEF));
    EXPECT_EQ(sentColour(kA), 0x12ABEFu);
}

// What Apply stores and sends of keys painted, selected or not: LightingPagesTest::paintSelectDragAndApply.
TEST_F(UserLightTest, ApplyStoresEveryKeyOfTheSetBlackAsNothingAndResetStoresAllDark) {
    newSet(kA, 1);  // red
    page().applyUserLightKeyColor();
    ASSERT_EQ(sql("SELECT COUNT(*) FROM t_userlight_leddata"), "1");
    clearWire();
    page().resetUserLightKeyColor();
    EXPECT_EQ(sql("SELECT COUNT(*) FROM t_userlight_leddata"), "0");
    EXPECT_EQ(commandCodes(), kColoursThenMode);
    EXPECT_EQ(sentColour(kA), 0u);
    EXPECT_TRUE(selected().empty());
    EXPECT_EQ(page().keyColours(), std::vector<std::uint32_t>(page().keyColours().size(), 0));
}

TEST_F(UserLightTest, WithoutASetApplyWarnsAndResetDoesNothing) {
    page().applyUserLightKeyColor();
    page().resetUserLightKeyColor();
    EXPECT_EQ(events_.warnings, (std::vector<std::string>{"Please add user lights | User light"}));
    EXPECT_TRUE(sets().empty());
    EXPECT_EQ(sql("SELECT COUNT(*) FROM t_userlight_leddata"), "0");
}

TEST_F(UserLightTest, DeleteLoadsTheSameRowAndPastTheEndNothing) {
    const std::int64_t first = newSet(kA, 1);
    page().addUserLight();
    const std::int64_t second = page().userlight_id();
    page().addUserLight();
    const std::int64_t third = page().userlight_id();

    page().userLightTableSelectionChanged(0);
    clearWire();
    page().delUserLight();  // the second set moves up into row 0 and is loaded
    EXPECT_EQ(page().userlight_id(), second);
    EXPECT_EQ(page().selectedRow(), 0);
    EXPECT_EQ(commandCodes(), kColoursThenMode);
    EXPECT_EQ(sql("SELECT COUNT(*) FROM t_userlight_data WHERE light_id = " + std::to_string(first)), "0");

    page().userLightTableSelectionChanged(1);
    click(kA);
    page().userLightPresetColor(4);
    clearWire();
    page().delUserLight();  // the last row: nothing loaded, the screen and the id stay
    EXPECT_TRUE(sets().empty());
    EXPECT_EQ(page().userlight_id(), third);
    EXPECT_EQ(page().keyColours()[kA.layout], 0x0000FFu);
    EXPECT_EQ(page().selectedRow(), -1);
    page().delUserLight();  // no row selected: nothing
    EXPECT_EQ(page().userlight_datas().size(), 1u);
}

TEST_F(UserLightTest, ColourFieldsPresetsAndThePanelPaintTheSelectedKeysAndSendNothing) {
    // A channel is on only at 255; a typed field leaves the others' values in force.
    const struct { ColorChannel tag; std::string typed, fields; std::uint32_t colour; } cases[] = {
        {ColorChannel::kRed, "100", "100 0 0", 0x000000},
        {ColorChannel::kRed, "255", "255 0 0", 0xFF0000},
        {ColorChannel::kGreen, "12a", "255 255 0", 0xFFFF00},
        {ColorChannel::kRed, "-4", "0 255 0", 0x00FF00},
    };
    click(kEscape);
    for (const auto& c : cases) {
        page().controlTextDidChange(c.tag, c.typed);
        EXPECT_EQ(fields(), c.fields) << c.typed;
        EXPECT_EQ(page().keyColours()[kEscape.layout], c.colour) << c.typed;
    }
    EXPECT_EQ(page().keyColours()[kFour.layout], 0u);  // not selected
    // A preset paints exactly and shows in the fields and the swatch.
    page().userLightPresetColor(5);
    const LightColor preset{0, 137 / 255.0, 253 / 255.0};
    EXPECT_EQ(fields(), "0 137 253");
    EXPECT_EQ(page().userlight_btn_color(), preset);
    EXPECT_EQ(page().keyColours()[kEscape.layout], 0x0089FDu);
    // The panel's colour is kept exactly: red 100/255 stays 100, and the swatch keeps the preset.
    page().userLightColorPanel({100 / 255.0, 0.5, 0});
    EXPECT_EQ(fields(), "100 127 0");
    EXPECT_EQ(page().keyColours()[kEscape.layout], 0x647F00u);
    EXPECT_EQ(page().userlight_btn_color(), preset);
    EXPECT_TRUE(sets().empty());
}

TEST_F(UserLightTest, SelectingKeysWithClicksShiftAndTheRubberBand) {
    click(kA);
    click(kB, true);
    EXPECT_EQ(selected(), (std::vector<std::size_t>{kA.layout, kB.layout}));
    click(kSpace);
    EXPECT_EQ(selected(), (std::vector<std::size_t>{kSpace.layout}));
    page().keyClicked(-1, false);  // between keys: the selection stays
    EXPECT_EQ(selected(), (std::vector<std::size_t>{kSpace.layout}));
    EXPECT_EQ(page().selectKeyItem(), -1);
    // The rubber band replacing the selection: LightingPagesTest::paintSelectDragAndApply.
    page().keyHovered(static_cast<int>(kEscape.layout));
    EXPECT_TRUE(page().keyHighlighted(kEscape.layout));
    EXPECT_TRUE(page().keyHighlighted(kSpace.layout));
    EXPECT_FALSE(page().keyHighlighted(kA.layout));

    page().userLightPresetColor(1);
    page().resetKeyColor();
    EXPECT_TRUE(selected().empty());
    EXPECT_EQ(page().keyColours()[kSpace.layout], 0u);
}

}  // namespace
}  // namespace qx9::test
