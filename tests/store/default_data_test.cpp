// Lazily written per-profile defaults, first-start data and the profile reset.
#include <gtest/gtest.h>

#include "store_support.h"

namespace qx9::test {
namespace {

Rows configOf(const SqlFile& sql, int profile) {
    return sql.rows("SELECT key, value FROM t_configdata WHERE profId = " +
                    std::to_string(profile) + " ORDER BY keyId");
}

TEST_F(StoreTest, FirstSelectionWritesLightRowsAndLegacyValues) {
    ASSERT_EQ(db_.addProfile("Two"), 2);
    EXPECT_TRUE(db_.writeLightProfile(2));

    Rows expected;
    for (int mode = 0; mode <= 20; ++mode) {
        expected.push_back("radiName|" + std::to_string(mode) + "|202|81|0|0|0|0|0|1|15|12|" +
                           (mode == 10 ? "3" : "0") + "|" + (mode == 11 ? "1" : "0"));
    }
    EXPECT_EQ(sql_.rows("SELECT name, mode, byte1, byte2, byte3, byte4, byte5, byte6, byte7, "
                        "byte8, byte9, byte10, byte11, status FROM t_lightdata WHERE profId = 2 "
                        "ORDER BY lightId"),
              expected);
    // The legacy values, each once; the global settings stay with profile 1.
    EXPECT_EQ(sql_.value("SELECT count(DISTINCT key) || '/' || count(*) FROM t_configdata "
                         "WHERE profId = 2"),
              "15/15");
    EXPECT_EQ(db_.getConfigData(2, "gamemode"), "");
    EXPECT_EQ(console_.text(), "createTable success\ninit: connect success\n");
}

TEST_F(StoreTest, AnyLightRowMeansTheProfileIsSetUp) {
    db_.writeLightProfile(1);
    sql_.exec("DELETE FROM t_lightdata WHERE mode <> 4");
    EXPECT_TRUE(db_.writeLightProfile(1));
    EXPECT_EQ(sql_.value("SELECT count(*) FROM t_lightdata"), "1");
    EXPECT_EQ(sql_.value("SELECT count(*) FROM t_configdata"), "28");
}

TEST_F(StoreTest, RefusedLightRowStopsTheDefaults) {
    sql_.refuse("BEFORE INSERT ON t_lightdata WHEN NEW.mode = 5");
    EXPECT_FALSE(db_.writeLightProfile(1));
    EXPECT_EQ(sql_.value("SELECT group_concat(mode) FROM t_lightdata"), "0,1,2,3,4");
    EXPECT_EQ(configOf(sql_, 1).size(), 13u + 15u);
}

TEST_F(StoreTest, GlobalSettingsOnlyIntoAnEmptyTable) {
    // Into an empty table: the first row follows the argument, the other twelve go to profile 1.
    sql_.exec("DELETE FROM t_configdata");
    db_.initDBdata(7);
    EXPECT_EQ(sql_.rows("SELECT profId, count(*) FROM t_configdata GROUP BY profId"),
              (Rows{"1|12", "7|1"}));
    EXPECT_EQ(sql_.value("SELECT key FROM t_configdata WHERE profId = 7"), "keyboardLayout");
    EXPECT_EQ(sql_.value("SELECT count(*) FROM t_profile"), "1");

    // Any row at all, even of another profile, keeps them out.
    sql_.exec(
        "DELETE FROM t_configdata; DELETE FROM t_profile;"
        "INSERT INTO t_configdata (key, profId, value) VALUES ('x', 9, 'y')");
    db_.initDBdata(1);
    EXPECT_EQ(sql_.rows("SELECT * FROM t_profile"), Rows{"1|Configuration File 1"});
    EXPECT_EQ(sql_.rows("SELECT key FROM t_configdata"), Rows{"x"});
}

TEST_F(StoreTest, RefusedGlobalSettingKeepsTheRowsBeforeIt) {
    sql_.exec("DELETE FROM t_configdata");
    sql_.refuse("BEFORE INSERT ON t_configdata WHEN NEW.key = 'gamemode'");
    console_.clear();
    db_.initDBdata(1);
    EXPECT_EQ(console_.text(), "insertRow  fail refused\n");
    EXPECT_EQ(sql_.rows("SELECT key FROM t_configdata"), (Rows{"keyboardLayout", "language"}));
}

TEST_F(StoreTest, WriteConfigInfoTwiceLeavesTwoRowsPerKey) {
    db_.writeConfigInfo(4);
    db_.writeConfigInfo(4);
    EXPECT_EQ(sql_.value("SELECT count(DISTINCT key) || '/' || count(*) FROM t_configdata "
                         "WHERE profId = 4"),
              "15/30");
}

TEST_F(StoreTest, ResetOfProfileOneDropsGlobalSettingsAndKeepsModeParameters) {
    db_.writeLightProfile(1);
    db_.addProfile("Two");
    for (std::int64_t profile : {1, 2}) {
        for (std::int64_t layer : {0, 1}) {
            db_.addKeyProfile({0, layer, profile, 4, kMacroTypeKey, 5, 0, 0, "B"});
        }
    }
    const LightRecord saved = {3, 10, 20, 30, 0, 0, 0, 0, 0, 9, 2, 1};
    db_.modifyLightData(1, 3, saved);
    db_.selectLightMode(1, 7);

    db_.resetProfile(1);
    EXPECT_EQ(sql_.rows("SELECT profId, fnlayerId FROM t_keyprofile"), (Rows{"2|0", "2|1"}));
    db_.writeConfigInfo(9);
    EXPECT_EQ(configOf(sql_, 1), configOf(sql_, 9));  // the legacy values alone
    EXPECT_EQ(db_.getConfigData(1, "gamemode"), "");
    EXPECT_TRUE(db_.updateConfigData(1, "gamemode", "1"));
    EXPECT_EQ(db_.getConfigData(1, "gamemode"), "");
    EXPECT_EQ(db_.getLightModeSelectIndex(1), 3);
    EXPECT_EQ(sql_.value("SELECT count(*) FROM t_lightdata WHERE status = 1"), "1");
    lightData light;
    ASSERT_TRUE(db_.queryLightInfo(1, 3, light));
    EXPECT_EQ(light.data, saved);
    EXPECT_EQ(console_.text(), "createTable success\ninit: connect success\n");
}

TEST_F(StoreTest, RefusedResetStopsAfterTheKeys) {
    db_.writeLightProfile(1);
    db_.addKeyProfile({0, 0, 1, 4, kMacroTypeKey, 5, 0, 0, "B"});
    sql_.refuse("BEFORE DELETE ON t_configdata");
    console_.clear();
    db_.resetProfile(1);
    EXPECT_EQ(console_.text(), "resetProfile  fail refused\n");
    EXPECT_EQ(sql_.value("SELECT count(*) FROM t_keyprofile"), "0");
    EXPECT_EQ(sql_.value("SELECT count(*) FROM t_configdata"), "28");
    EXPECT_EQ(db_.getLightModeSelectIndex(1), 11);
}

}  // namespace
}  // namespace qx9::test
