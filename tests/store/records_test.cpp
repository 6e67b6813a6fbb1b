// What each store operation answers and what it leaves in the file: profiles, configuration
// values, key assignments, macros, lighting modes and user-light sets.
#include <gtest/gtest.h>

#include "store_support.h"

namespace qx9::test {
namespace {

ProfileKey key(std::int64_t layer, std::int64_t keyValue, std::int64_t value,
               const char* desc = "X") {
    return {0, layer, 1, keyValue, kMacroTypeKey, value, value + 1, value + 2, desc};
}

TEST_F(StoreTest, DeletingTheLastProfileHandsItsIdAndRowsToTheNextOne) {
    ASSERT_EQ(db_.addProfile("Two"), 2);
    db_.writeLightProfile(2);
    db_.selectLightMode(2, 6);
    db_.addKeyProfile({0, 0, 2, 4, kMacroTypeKey, 5, 0, 0, "B"});

    EXPECT_TRUE(db_.deleteProfile(2));
    EXPECT_TRUE(db_.deleteProfile(42));  // no such profile: still a success

    EXPECT_EQ(db_.addProfile("Newcomer"), 2);
    std::vector<ProfileKey> keys;
    db_.queryKeysProfile(2, 0, keys);
    EXPECT_EQ(strs(keys), Rows{"1|2|0|4|3|5|0|0|B"});
    EXPECT_EQ(db_.getLightModeSelectIndex(2), 6);
}

TEST_F(StoreTest, ValueZeroClearsKeyZeroTouchesNothingAndARefusalClears) {
    db_.addKeyProfile(key(0, 10, 5));
    db_.addKeyProfile(key(1, 10, 5));
    EXPECT_EQ(db_.addKeyProfile(key(0, 10, 0)), 0);
    EXPECT_EQ(sql_.rows("SELECT fnlayerId FROM t_keyprofile"), Rows{"1"});

    sql_.exec(
        "INSERT INTO t_keyprofile (profId, fnlayerId, keyvalue, macroType, macroValue, "
        "macro2Value, macro3Value, macroDesc) VALUES (1, 0, 0, 3, 9, 0, 0, 'zero')");
    EXPECT_EQ(db_.addKeyProfile(key(0, 0, 0)), 0);
    EXPECT_EQ(db_.addKeyProfile(key(0, 0, 4)), 0);
    EXPECT_EQ(sql_.value("SELECT count(*) FROM t_keyprofile"), "2");

    // A refused insert leaves the key with its default: the old row is gone all the same.
    sql_.refuse("BEFORE INSERT ON t_keyprofile");
    EXPECT_EQ(db_.addKeyProfile(key(1, 10, 6)), 0);
    EXPECT_EQ(sql_.rows("SELECT keyvalue FROM t_keyprofile"), Rows{"0"});
}

TEST_F(StoreTest, AMacroGoesWithItsEventsOrNotAtAll) {
    for (const char* name : {"A", "B", "C"}) {
        db_.addMacroRecord(event(db_.addMacroProfile(name), kRecordDelay, 0, 10));
    }
    sql_.refuse("BEFORE DELETE ON t_macro_data WHEN OLD.macro_id = 1");
    sql_.refuse("BEFORE DELETE ON t_macrorecord WHEN OLD.macro_id = 2");

    EXPECT_FALSE(db_.deleteMacroProfile(1));
    EXPECT_FALSE(db_.deleteMacroProfile(2));
    EXPECT_TRUE(db_.deleteMacroProfile(3));
    EXPECT_EQ(sql_.rows("SELECT macro_id FROM t_macro_data"), (Rows{"1", "2"}));
    EXPECT_EQ(sql_.rows("SELECT macro_id FROM t_macrorecord"), (Rows{"1", "2"}));
    EXPECT_EQ(db_.countMacros(), 2);
}

TEST_F(StoreTest, LightRecordIsStoredUnderTheModeArgumentAndReadBack) {
    db_.writeLightProfile(1);
    const LightRecord record = {9, 255, 128, 0, 1, 2, 3, 4, 0, 15, 12, 3};
    EXPECT_TRUE(db_.modifyLightData(1, 5, record));
    EXPECT_TRUE(db_.modifyLightData(1, 30, record));  // no row: nothing, still true
    EXPECT_EQ(sql_.rows("SELECT * FROM t_lightdata WHERE profId = 1 AND mode = 5"),
              Rows{"6|1|radiName|5|255|128|0|1|2|3|4|0|15|12|3|0"});

    lightData light;
    light.profId = 77;
    light.mode = 78;
    ASSERT_TRUE(db_.queryLightInfo(1, 11, light));  // profile and mode stay as the caller set them
    EXPECT_EQ(joined(light.lightId, light.name, light.status, light.profId, light.mode), "12|radiName|1|77|78");

    lightData untouched;
    untouched.name = "caller's";
    EXPECT_FALSE(db_.queryLightInfo(1, 21, untouched));
    EXPECT_FALSE(db_.queryLightInfo(2, 0, untouched));
    EXPECT_EQ(untouched.name, "caller's");
}

TEST_F(StoreTest, UserLightSetsAndAKeyWithItsColourInOneSetOnly) {
    EXPECT_EQ(db_.addUserLight(1, "Sunset"), 1);
    EXPECT_EQ(db_.addUserLight(2, "Other"), 2);
    EXPECT_TRUE(db_.updateUserLightName(1, "Dusk"));
    std::vector<UserLightData> sets(1);
    EXPECT_EQ(db_.getUserLightData(1, sets), 2);
    EXPECT_EQ(strs(sets), (Rows{"0|0||0|0", "1|1|Dusk|15|15"}));

    EXPECT_EQ(db_.addUserLightLEDData({0, 1, 30, 0xFF0000}), 1);
    EXPECT_EQ(db_.addUserLightLEDData({0, 1, 31, 0x00FF00}), 2);
    EXPECT_EQ(db_.addUserLightLEDData({0, 2, 30, 0x0000FF}), 3);
    EXPECT_EQ(db_.addUserLightLEDData({0, 1, 31, 0}), -1);  // colour 0 clears the key
    EXPECT_EQ(db_.addUserLightLEDData({0, 1, 0, 0x123456}), -1);
    EXPECT_EQ(sql_.rows("SELECT * FROM t_userlight_leddata"), Rows{"3|2|30|255"});

    // A deleted set keeps its colours; the next set of that id starts with them.
    EXPECT_TRUE(db_.deleteUserLight(2));
    std::vector<UserLightLEDData> colours;
    EXPECT_EQ(db_.getUserLightLEDData(2, colours), 1);
    EXPECT_EQ(strs(colours), Rows{"3|2|30|255"});
    EXPECT_EQ(db_.addUserLight(1, "Reborn"), 2);
}

}  // namespace
}  // namespace qx9::test
