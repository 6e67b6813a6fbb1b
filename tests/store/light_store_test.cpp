// Built-in lighting modes and user-light sets.
#include <gtest/gtest.h>

#include "store_support.h"

namespace qx9::test {
namespace {

UserLightLEDData led(std::int64_t set, std::int64_t keyValue, std::int64_t rgb) {
    return {0, set, keyValue, rgb};
}

TEST_F(StoreTest, OneSelectedModePerProfile) {
    db_.writeLightProfile(1);
    db_.writeLightProfile(2);
    EXPECT_EQ(db_.getLightModeSelectIndex(3), 0);  // no rows at all

    EXPECT_TRUE(db_.selectLightMode(1, 7));
    EXPECT_EQ(db_.getLightModeSelectIndex(1), 7);
    EXPECT_TRUE(db_.selectLightMode(2, 42));  // no such mode: none selected
    EXPECT_EQ(db_.getLightModeSelectIndex(2), 0);
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
    EXPECT_EQ(sql_.value("SELECT name, mode, byte1, byte2, byte3, byte4, byte5, byte6, byte7, "
                         "byte8, byte9, byte10, byte11, status FROM t_lightdata "
                         "WHERE profId = 1 AND mode = 5"),
              "radiName|5|255|128|0|1|2|3|4|0|15|12|3|0");
    EXPECT_EQ(sql_.value("SELECT byte1 FROM t_lightdata WHERE mode = 9"), "202");

    lightData light;
    light.profId = 77;
    light.mode = 78;
    ASSERT_TRUE(db_.queryLightInfo(1, 11, light));
    EXPECT_EQ(light.lightId, 12);
    EXPECT_EQ(light.name, "radiName");
    EXPECT_EQ(light.status, 1);
    EXPECT_EQ(light.profId * 100 + light.mode, 7778);  // left as the caller set them
    EXPECT_EQ(light.data, (LightRecord{11, 202, 81, 0, 0, 0, 0, 0, 1, 15, 12, 0}));
    ASSERT_TRUE(db_.queryLightInfo(1, 5, light));
    EXPECT_EQ(light.data, (LightRecord{5, 255, 128, 0, 1, 2, 3, 4, 0, 15, 12, 3}));

    lightData untouched;
    untouched.name = "caller's";
    EXPECT_FALSE(db_.queryLightInfo(1, 21, untouched));
    EXPECT_FALSE(db_.queryLightInfo(2, 0, untouched));
    EXPECT_EQ(untouched.name, "caller's");
}

TEST_F(StoreTest, UserLightSetsPerProfile) {
    EXPECT_EQ(db_.addUserLight(1, "Sunset"), 1);
    EXPECT_EQ(db_.addUserLight(2, "Other"), 2);
    EXPECT_EQ(db_.addUserLight(1, "Ocean"), 3);
    std::vector<UserLightData> sets(1);
    EXPECT_EQ(db_.getUserLightData(1, sets), 3);
    const Rows stored = {"1|1|Sunset|15|15", "3|1|Ocean|15|15"};
    EXPECT_EQ(strs(sets), (Rows{"0|0||0|0", stored[0], stored[1]}));
    EXPECT_EQ(sql_.rows("SELECT * FROM t_userlight_data WHERE profile = 1"), stored);
    EXPECT_EQ(db_.getUserLightData(9, sets), 3);
}

TEST_F(StoreTest, AKeyHasItsColourInOneSetOnly) {
    const std::int64_t a = db_.addUserLight(1, "A");
    const std::int64_t b = db_.addUserLight(2, "B");
    EXPECT_EQ(db_.addUserLightLEDData(led(a, 30, 0xFF0000)), 1);
    EXPECT_EQ(db_.addUserLightLEDData(led(a, 31, 0x00FF00)), 2);
    EXPECT_EQ(db_.addUserLightLEDData(led(b, 30, 0x0000FF)), 3);
    EXPECT_EQ(sql_.rows("SELECT * FROM t_userlight_leddata"), (Rows{"2|1|31|65280", "3|2|30|255"}));

    EXPECT_EQ(db_.addUserLightLEDData(led(a, 30, 0)), -1);  // colour 0 clears it everywhere
    EXPECT_EQ(db_.addUserLightLEDData(led(a, 0, 0x123456)), -1);
    std::vector<UserLightLEDData> colours;
    EXPECT_EQ(db_.getUserLightLEDData(b, colours), 0);
    EXPECT_EQ(db_.getUserLightLEDData(a, colours), 1);
    EXPECT_EQ(strs(colours), Rows{"2|1|31|65280"});

    // A deleted set keeps its colours; the next set of that id starts with them.
    EXPECT_EQ(db_.addUserLightLEDData(led(b, 32, 0xABCDEF)), 3);
    EXPECT_TRUE(db_.deleteUserLight(b));
    colours.clear();
    EXPECT_EQ(db_.getUserLightLEDData(b, colours), 1);
    EXPECT_EQ(db_.addUserLight(1, "Reborn"), b);
}

}  // namespace
}  // namespace qx9::test
