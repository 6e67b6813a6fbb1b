// The file itself: where it lives, its tables, first-start contents, re-opening and dropping.
#include <gtest/gtest.h>

#include "store_support.h"

namespace qx9::test {
namespace {

// Column descriptions as PRAGMA table_info gives them: name|type|notnull|pk.
std::string K(const char* n) {
    return std::string(n) + "|INTEGER|1|1";
}
std::string I(const char* n) {
    return std::string(n) + "|INTEGER|1|0";
}
std::string T(const char* n) {
    return std::string(n) + "|TEXT|1|0";
}
std::string N(const char* n) {
    return std::string(n) + "|TEXT|0|0";
}

const std::vector<std::pair<std::string, Rows>> kSchema = {
    {"t_profile", {K("profId"), N("name")}},
    {"t_configdata", {K("keyId"), T("key"), I("profId"), T("value")}},
    {"t_lightdata",
     {K("lightId"), I("profId"), N("name"), I("mode"), I("byte1"), I("byte2"), I("byte3"),
      I("byte4"), I("byte5"), I("byte6"), I("byte7"), I("byte8"), I("byte9"), I("byte10"),
      I("byte11"), I("status")}},
    {"t_keyrgb", {K("rgbId"), I("lightId"), I("profId"), I("keyvalue"), I("rgbvalue")}},
    {"t_userlight_data", {K("light_id"), I("profile"), N("name"), I("speed"), I("brightness")}},
    {"t_userlight_leddata", {K("ledId"), I("light_id"), I("keyvalue"), I("rgbvalue")}},
    {"t_triggerkey", {K("triggerId"), I("profId"), I("layer"), I("keyvalue"), T("keydesc")}},
    {"t_keyprofile",
     {K("keyId"), I("profId"), I("fnlayerId"), I("keyvalue"), I("macroType"), I("macroValue"),
      I("macro2Value"), I("macro3Value"), T("macroDesc")}},
    {"t_macro_data",
     {K("macro_id"), I("play_times"), I("delay_type"), I("delay_time"), T("macro_name")}},
    {"t_macrorecord",
     {K("record_id"), I("macro_id"), I("record_type"), I("record_index"), T("record_desc"),
      I("record_value")}},
};

TEST_F(StoreTest, TablesColumnsAndTypesInTheirOrder) {
    Rows names;
    for (const auto& [table, columns] : kSchema) {
        names.push_back(table);
        EXPECT_EQ(
            sql_.rows("SELECT name, type, \"notnull\", pk FROM pragma_table_info('" + table + "')"),
            columns)
            << table;
    }
    EXPECT_EQ(sql_.tables(), names);
    EXPECT_EQ(sql_.value("SELECT count(*) FROM sqlite_master WHERE type = 'index'"), "0");
}

TEST_F(StoreTest, FirstStartHoldsOneProfileAndTheGlobalSettings) {
    EXPECT_EQ(console_.text(), "createTable success\ninit: connect success\n");
    EXPECT_EQ(sql_.rows("SELECT * FROM t_profile"), Rows{"1|Configuration File 1"});
    // The global settings: thirteen keys, each once, all under profile 1.
    EXPECT_EQ(sql_.value("SELECT count(DISTINCT key) || '/' || count(*) || '/' || "
                         "group_concat(DISTINCT profId) FROM t_configdata"),
              "13/13/1");
    for (const char* empty : {"t_lightdata", "t_keyrgb", "t_userlight_data", "t_userlight_leddata",
                              "t_triggerkey", "t_keyprofile", "t_macro_data", "t_macrorecord"}) {
        EXPECT_EQ(sql_.value(std::string("SELECT count(*) FROM ") + empty), "0") << empty;
    }
}

TEST_F(StoreTest, ReopeningLeavesTheFileAsItWas) {
    db_.writeLightProfile(1);
    db_.addProfile("Two");
    db_.addKeyProfile({0, 0, 1, 4, kMacroTypeKey, 5, 0, 0, "B"});
    const std::string before = fileBytes(file_);

    DeviceSQLite again = DeviceSQLite::atPath(file_);
    again.createTable();
    EXPECT_EQ(fileBytes(file_), before);
    EXPECT_EQ(sql_.value("SELECT count(*) FROM t_profile"), "2");
    EXPECT_EQ(sql_.value("SELECT count(*) FROM t_configdata"), "28");
}

TEST(StoreLocation, FileLivesInTheDataDirectoryOfTheApplication) {
    // XDG_DATA_HOME as set ("xdg" stands for an absolute path), and the two ways it falls back.
    const std::pair<std::optional<std::string>, std::string> cases[] = {
        {"xdg", "xdg/"}, {std::nullopt, "home/.local/share/"}, {"rel", "home/.local/share/"}};
    for (const auto& [xdg, expected] : cases) {
        TempDir dir;
        EnvOverride home("HOME", (dir / "home").string());
        EnvOverride data("XDG_DATA_HOME", xdg == "xdg" ? (dir / "xdg").string() : xdg);
        ConsoleCapture console;
        DeviceSQLite db(kDeviceDatabaseFileName);
        EXPECT_TRUE(db.isConnected()) << expected;
        EXPECT_TRUE(std::filesystem::is_regular_file(
            dir / (expected + "org.qx9config.Qx9/db/device_keyboard_81k_v2.sqlite3")))
            << expected;
    }
}

TEST(StoreLocation, WithoutApplicationIdNothingIsCreated) {
    TempDir dir;
    EnvOverride xdg("XDG_DATA_HOME", dir.path().string());
    ConsoleCapture console;
    DeviceSQLite db(kDeviceDatabaseFileName, "");
    EXPECT_FALSE(db.isConnected());
    EXPECT_TRUE(std::filesystem::is_empty(dir.path()));
    EXPECT_EQ(console.text(), "");
    EXPECT_EQ(db.addProfile("Two"), 0);
}

TEST_F(StoreTest, DropKeepsTriggerKeysAndReopeningStartsAfresh) {
    const Rows firstStart = sql_.rows("SELECT * FROM t_configdata");
    sql_.exec("INSERT INTO t_triggerkey (profId, layer, keyvalue, keydesc) VALUES (1, 0, 4, 'A')");
    db_.addProfile("Two");
    db_.dropTable();
    EXPECT_EQ(sql_.tables(), Rows{"t_triggerkey"});
    EXPECT_EQ(console_.text(), "createTable success\ninit: connect success\ndropTable  success\n");

    DeviceSQLite fresh = DeviceSQLite::atPath(file_);
    EXPECT_EQ(sql_.rows("SELECT * FROM t_profile"), Rows{"1|Configuration File 1"});
    EXPECT_EQ(sql_.rows("SELECT * FROM t_configdata"), firstStart);
    EXPECT_EQ(sql_.rows("SELECT * FROM t_triggerkey"), Rows{"1|1|0|4|A"});
}

TEST_F(StoreTest, DropStopsAtTheFirstMissingTable) {
    sql_.exec("DROP TABLE t_keyrgb");
    console_.clear();
    db_.dropTable();
    EXPECT_EQ(console_.text(), "dropTable table failed no such table: t_keyrgb\n");
    EXPECT_EQ(sql_.tables(), (Rows{"t_userlight_data", "t_userlight_leddata", "t_triggerkey",
                                   "t_keyprofile", "t_macro_data", "t_macrorecord"}));
}

}  // namespace
}  // namespace qx9::test
