// The file itself: where it lives, first-start contents, the defaults written later, the profile
// reset, re-opening and dropping.
#include <gtest/gtest.h>

#include "store_support.h"

namespace qx9::test {
namespace {

Rows configOf(const SqlFile& sql, int profile) {
    return sql.rows("SELECT key, value FROM t_configdata WHERE profId = " +
                    std::to_string(profile) + " ORDER BY keyId");
}

TEST(StoreLocation, FileLivesInTheDataDirectoryOfTheApplication) {
    // XDG_DATA_HOME as set ("xdg" stands for an absolute path), the two ways it falls back, and no
    // application id (""): nothing is created.
    const std::pair<std::optional<std::string>, std::string> cases[] = {
        {"xdg", "xdg/"}, {std::nullopt, "home/.local/share/"}, {"rel", "home/.local/share/"}, {"xdg", ""}};
    for (const auto& [xdg, expected] : cases) {
        TempDir dir;
        EnvOverride home("HOME", (dir / "home").string());
        EnvOverride data("XDG_DATA_HOME", xdg == "xdg" ? (dir / "xdg").string() : xdg);
        ConsoleCapture console;
        DeviceSQLite db(kDeviceDatabaseFileName, expected.empty() ? "" : kApplicationId);
        EXPECT_EQ(db.isConnected(), !expected.empty()) << expected;
        EXPECT_EQ(std::filesystem::is_regular_file(
                      dir / (expected + "org.qx9config.qx9/db/device_keyboard_81k_v2.sqlite3")),
                  !expected.empty())
            << expected;
        if (expected.empty()) {
            EXPECT_EQ(std::filesystem::is_empty(dir.path()) ? console.text() : "files", "");
        }
    }
}

TEST(StoreLocation, TheDataFolderOfEarlierBuildsMovesUnlessThereIsOneAlready) {
    for (const bool current : {false, true}) {
        TempDir dir;
        EnvOverride data("XDG_DATA_HOME", dir.path().string());
        std::filesystem::create_directories(dir / "org.qx9config.Qx9/db");
        std::ofstream(dir / "org.qx9config.Qx9/db/device_keyboard_81k_v2.sqlite3") << "kept";
        if (current) std::filesystem::create_directories(dir / "org.qx9config.qx9/db");
        ConsoleCapture console;
        EXPECT_EQ(DeviceSQLite::fileFor({}), dir / "org.qx9config.qx9/db/device_keyboard_81k_v2.sqlite3");
        EXPECT_EQ(std::filesystem::exists(dir / "org.qx9config.Qx9"), current);
        EXPECT_EQ(std::filesystem::exists(dir / "org.qx9config.qx9/db/device_keyboard_81k_v2.sqlite3"), !current);
    }
}

TEST_F(StoreTest, FirstSelectionWritesTheModesAndLegacyValues) {
    ASSERT_EQ(db_.addProfile("Two"), 2);
    EXPECT_TRUE(db_.writeLightProfile(2));
    // Modes 0 to 20, mode 11 selected.
    EXPECT_EQ(sql_.value("SELECT count(DISTINCT mode) || '/' || min(mode) || '/' || max(mode) || "
                         "'/' || group_concat(mode) FILTER (WHERE status = 1) FROM t_lightdata "
                         "WHERE profId = 2"),
              "21/0/20/11");
    // The legacy values, each once; the global settings stay with profile 1.
    EXPECT_EQ(sql_.value("SELECT count(DISTINCT key) || '/' || count(*) FROM t_configdata "
                         "WHERE profId = 2"),
              "15/15");
    EXPECT_EQ(console_.text(), "createTable success\ninit: connect success\n");

    // Any light row means the profile is set up; the legacy values alone are added again.
    sql_.exec("DELETE FROM t_lightdata WHERE mode <> 4");
    EXPECT_TRUE(db_.writeLightProfile(2));
    db_.writeConfigInfo(2);
    EXPECT_EQ(sql_.value("SELECT count(*) FROM t_lightdata"), "1");
    EXPECT_EQ(sql_.value("SELECT count(*) FROM t_configdata WHERE profId = 2"), "30");

    // A refused row stops the modes after the legacy values.
    sql_.refuse("BEFORE INSERT ON t_lightdata WHEN NEW.mode = 5");
    EXPECT_FALSE(db_.writeLightProfile(3));
    EXPECT_EQ(sql_.value("SELECT group_concat(mode) FROM t_lightdata WHERE profId = 3"),
              "0,1,2,3,4");
    EXPECT_EQ(sql_.value("SELECT count(*) FROM t_configdata WHERE profId = 3"), "15");
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
    lightData light;
    ASSERT_TRUE(db_.queryLightInfo(1, 3, light));
    EXPECT_EQ(light.data, saved);
    EXPECT_EQ(console_.text(), "createTable success\ninit: connect success\n");

    // A refused reset stops after the keys.
    db_.addKeyProfile({0, 0, 1, 4, kMacroTypeKey, 5, 0, 0, "B"});
    db_.selectLightMode(1, 7);
    sql_.refuse("BEFORE DELETE ON t_configdata");
    console_.clear();
    db_.resetProfile(1);
    EXPECT_EQ(console_.text(), "resetProfile  fail refused\n");
    EXPECT_EQ(sql_.value("SELECT count(*) FROM t_keyprofile WHERE profId = 1"), "0");
    EXPECT_EQ(configOf(sql_, 1).size(), 15u);
    EXPECT_EQ(db_.getLightModeSelectIndex(1), 7);
}

TEST_F(StoreTest, DropKeepsTriggerKeysAndReopeningStartsAfresh) {
    const Rows firstStart = sql_.rows("SELECT * FROM t_configdata");
    sql_.exec("INSERT INTO t_triggerkey (profId, layer, keyvalue, keydesc) VALUES (1, 0, 4, 'A')");
    db_.addProfile("Two");
    db_.dropTable();
    EXPECT_EQ(sql_.tables(), Rows{"t_triggerkey"});
    EXPECT_EQ(console_.text(), "createTable success\ninit: connect success\ndropTable  success\n");

    DeviceSQLite fresh = DeviceSQLite::atPath(file_);
    EXPECT_EQ(sql_.rows("SELECT * FROM t_configdata"), firstStart);
    EXPECT_EQ(sql_.rows("SELECT * FROM t_triggerkey"), Rows{"1|1|0|4|A"});

    // Dropping stops at the first table that is missing.
    sql_.exec("DROP TABLE t_keyrgb");
    console_.clear();
    fresh.dropTable();
    EXPECT_EQ(console_.text(), "dropTable table failed no such table: t_keyrgb\n");
    EXPECT_EQ(sql_.tables(), (Rows{"t_triggerkey", "t_userlight_data", "t_userlight_leddata",
                                   "t_keyprofile", "t_macro_data", "t_macrorecord"}));
}

}  // namespace
}  // namespace qx9::test
