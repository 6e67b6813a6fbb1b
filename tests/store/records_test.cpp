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

TEST_F(StoreTest, ProfileListAppendsInIdOrder) {
    EXPECT_EQ(db_.addProfile("x'); DROP TABLE t_profile; --"), 2);
    EXPECT_TRUE(db_.updateProfileName(1, "Game \"quoted\""));
    std::vector<ProfileData> list = {{99, "already there"}};
    EXPECT_TRUE(db_.queryProfileList(list));
    Rows got;
    for (const ProfileData& p : list) got.push_back(joined(p.profId, p.name));
    const Rows stored = {"1|Game \"quoted\"", "2|x'); DROP TABLE t_profile; --"};
    EXPECT_EQ(got, (Rows{"99|already there", stored[0], stored[1]}));
    EXPECT_EQ(sql_.rows("SELECT * FROM t_profile"), stored);
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

TEST_F(StoreTest, ConfigValuesByProfileAndKey) {
    EXPECT_TRUE(db_.writeConfigData(2, "onlytwo", ""));
    EXPECT_EQ(db_.getConfigData(1, "onlytwo"), "");  // only under another profile
    EXPECT_FALSE(db_.hasConfigData(1, "onlytwo"));
    EXPECT_TRUE(db_.hasConfigData(2, "onlytwo"));  // an empty value has its row

    EXPECT_TRUE(db_.updateConfigData(1, "missing", "1"));  // never adds a key
    EXPECT_EQ(sql_.value("SELECT count(*) FROM t_configdata WHERE key = 'missing'"), "0");

    // Duplicates: every one changes, the first one is read.
    EXPECT_TRUE(db_.writeConfigData(3, "dup", "a"));
    EXPECT_TRUE(db_.writeConfigData(3, "dup", "b"));
    EXPECT_EQ(db_.getConfigData(3, "dup"), "a");
    EXPECT_TRUE(db_.updateConfigData(3, "dup", "c"));
    EXPECT_EQ(sql_.rows("SELECT value FROM t_configdata WHERE key = 'dup'"), (Rows{"c", "c"}));
}

TEST_F(StoreTest, ReassignedKeyGetsANewerRowAndLayersStaySeparate) {
    EXPECT_EQ(db_.addKeyProfile(key(0, 10, 5, "first")), 1);
    db_.addKeyProfile(key(0, 20, 6));
    db_.addKeyProfile(key(1, 10, 9, "fn"));
    EXPECT_EQ(db_.addKeyProfile(key(0, 10, 7, "second")), 4);

    // Appended after the caller's entry, in the order of the last assignment.
    std::vector<ProfileKey> base(1);
    EXPECT_TRUE(db_.queryKeysProfile(1, 0, base));
    const Rows stored = {"2|1|0|20|3|6|7|8|X", "4|1|0|10|3|7|8|9|second"};
    EXPECT_EQ(strs(base), (Rows{"0|0|0|0|0|0|0|0|", stored[0], stored[1]}));
    EXPECT_EQ(sql_.rows("SELECT * FROM t_keyprofile WHERE fnlayerId = 0"), stored);

    ProfileKey record = key(1, 77, 77, "caller's");
    EXPECT_FALSE(db_.queryKeyProfile(1, 1, 20, record));
    EXPECT_EQ(record.macroDesc, "caller's");
    EXPECT_TRUE(db_.queryKeyProfile(1, 1, 10, record));
    EXPECT_EQ(str(record), "3|1|1|10|3|9|10|11|fn");
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

TEST_F(StoreTest, MacroHeaderDefaultsAndItsWriter) {
    EXPECT_EQ(db_.addMacroProfile("Combo"), 1);
    EXPECT_EQ(sql_.rows("SELECT * FROM t_macro_data"), Rows{"1|1|0|0|Combo"});
    EXPECT_TRUE(db_.modifyMacroInfo({1, 3, 2, 50, "ignored"}));
    MacroInfo info;
    EXPECT_TRUE(db_.queryMacroInfo(1, info));
    EXPECT_EQ(str(info), "1|3|2|50|Combo");
    EXPECT_FALSE(db_.queryMacroInfo(2, info));

    std::vector<MacroInfo> list(2);
    db_.addMacroProfile("Second");
    EXPECT_EQ(db_.queryAllMacroData(list), 4);
    EXPECT_EQ(str(list[3]), "2|1|0|0|Second");
}

TEST_F(StoreTest, EventsComeBackInInsertionOrder) {
    const std::int64_t a = db_.addMacroProfile("A");
    const std::int64_t b = db_.addMacroProfile("B");
    db_.addMacroRecord(event(a, kRecordKeyDown, 2, 4));
    db_.addMacroRecord(event(a, kRecordDelay, 0, 30));
    db_.addMacroRecord(event(b, kRecordMouseDown, 0, 1));
    db_.addMacroRecord(event(a, kRecordKeyUp, 1, 4));

    std::vector<RecordInfo> events;
    EXPECT_EQ(db_.queryMacroRecord(a, events), 3);
    const Rows expected = {"1|1|2|2|e2|4", "2|1|1|0|e0|30", "4|1|3|1|e1|4"};
    EXPECT_EQ(strs(events), expected);
    EXPECT_EQ(sql_.rows("SELECT * FROM t_macrorecord WHERE macro_id = 1"), expected);
    EXPECT_EQ(db_.getRecordCount(), 4);
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

TEST_F(StoreTest, OneSelectedModeAndARefusedSelectionLeavesNone) {
    db_.writeLightProfile(1);
    EXPECT_EQ(db_.getLightModeSelectIndex(3), 0);  // no rows at all
    EXPECT_TRUE(db_.selectLightMode(1, 7));
    EXPECT_EQ(db_.getLightModeSelectIndex(1), 7);
    EXPECT_EQ(sql_.rows("SELECT profId, mode FROM t_lightdata WHERE status = 1"), Rows{"1|7"});
    sql_.refuse("BEFORE UPDATE OF status ON t_lightdata WHEN NEW.status = 1");
    EXPECT_FALSE(db_.selectLightMode(1, 4));
    EXPECT_EQ(db_.getLightModeSelectIndex(1), 0);
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
