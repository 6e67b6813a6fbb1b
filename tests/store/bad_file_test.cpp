// Files the store cannot use as they are, and the broken invariants that stop the program.
#include <grp.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <fstream>
#include <iostream>

#include "store_support.h"

namespace qx9::test {
namespace {

namespace fs = std::filesystem;

// Runs every store operation once and lists the results ("name=result"). Every list starts
// with one element of the caller's, so a size or count of 1 means it came back unchanged.
Rows everyResult(DeviceSQLite& db) {
    Rows r;
    auto put = [&r](const char* name, auto value) {
        std::ostringstream text;
        text << std::boolalpha << name << '=' << value;
        r.push_back(text.str());
    };
    std::vector<ProfileData> profiles(1);
    std::vector<ProfileKey> keys(1);
    std::vector<MacroInfo> macros(1);
    std::vector<RecordInfo> events(1);
    std::vector<UserLightData> sets(1);
    std::vector<UserLightLEDData> colours(1);
    ProfileKey key;
    MacroInfo macro;
    lightData light;
    put("addProfile", db.addProfile("P"));
    put("deleteProfile", db.deleteProfile(1));
    put("updateProfileName", db.updateProfileName(1, "Q"));
    put("queryProfileList", db.queryProfileList(profiles));
    put("profiles", profiles.size());
    put("writeConfigData", db.writeConfigData(1, "k", "v"));
    put("updateConfigData", db.updateConfigData(1, "language", "2052"));
    put("getConfigData", "'" + db.getConfigData(1, "language") + "'");
    put("addKeyProfile", db.addKeyProfile({0, 0, 1, 4, kMacroTypeKey, 5, 0, 0, "B"}));
    put("queryKeysProfile", db.queryKeysProfile(1, 0, keys));
    put("keys", keys.size());
    put("queryKeyProfile", db.queryKeyProfile(1, 0, 4, key));
    put("addMacroProfile", db.addMacroProfile("M"));
    put("updateMacroProfileName", db.updateMacroProfileName(1, "N"));
    put("modifyMacroInfo", db.modifyMacroInfo({1, 2, 0, 0, "N"}));
    put("queryMacroInfo", db.queryMacroInfo(1, macro));
    put("queryAllMacroData", db.queryAllMacroData(macros));
    put("deleteMacroProfile", db.deleteMacroProfile(1));
    put("addMacroRecord", db.addMacroRecord({0, 1, kRecordDelay, 0, 10, "10 ms"}));
    put("deleteMacroRecord", db.deleteMacroRecord(1));
    put("queryMacroRecord", db.queryMacroRecord(1, events));
    put("getRecordCount", db.getRecordCount());
    put("writeLightProfile", db.writeLightProfile(1));
    put("modifyLightData", db.modifyLightData(1, 2, LightRecord{}));
    put("selectLightMode", db.selectLightMode(1, 2));
    put("getLightModeSelectIndex", db.getLightModeSelectIndex(1));
    put("queryLightInfo", db.queryLightInfo(1, 2, light));
    put("addUserLight", db.addUserLight(1, "S"));
    put("deleteUserLight", db.deleteUserLight(1));
    put("getUserLightData", db.getUserLightData(1, sets));
    put("addUserLightLEDData", db.addUserLightLEDData({0, 1, 30, 0xFF0000}));
    put("addUserLightLEDData(0)", db.addUserLightLEDData({0, 1, 30, 0}));
    put("getUserLightLEDData", db.getUserLightLEDData(1, colours));
    put("replaceMacroRecords", db.replaceMacroRecords(1, events));
    put("saveMacro", db.saveMacro(macro, events));
    put("countMacros", db.countMacros());
    std::string error;
    put("readConfiguration", db.readConfiguration(error) ? "read" : error);
    put("replaceConfiguration", db.replaceConfiguration({}, error) ? "replaced" : error);
    put("commit", db.beginTransaction().commit());
    return r;
}

// clang-format off
// Without a connection: nothing happens, the writers report success.
const Rows kNoConnection = {
    "addProfile=0", "deleteProfile=true", "updateProfileName=true", "queryProfileList=true",
    "profiles=1", "writeConfigData=true", "updateConfigData=true", "getConfigData=''",
    "addKeyProfile=0", "queryKeysProfile=true", "keys=1", "queryKeyProfile=false",
    "addMacroProfile=0", "updateMacroProfileName=true", "modifyMacroInfo=true",
    "queryMacroInfo=false", "queryAllMacroData=1", "deleteMacroProfile=true", "addMacroRecord=0",
    "deleteMacroRecord=true", "queryMacroRecord=1", "getRecordCount=0", "writeLightProfile=true",
    "modifyLightData=true", "selectLightMode=true", "getLightModeSelectIndex=0",
    "queryLightInfo=false", "addUserLight=0", "deleteUserLight=true", "getUserLightData=1",
    "addUserLightLEDData=0", "addUserLightLEDData(0)=-1", "getUserLightLEDData=1",
    "replaceMacroRecords=true", "saveMacro=true", "countMacros=0",
    "readConfiguration=no database is open", "replaceConfiguration=no database is open",
    "commit=false",
};
// clang-format on

// clang-format off
// With a connection that refuses every statement: every "nothing" result.
const Rows kRefused = {
    "addProfile=0", "deleteProfile=false", "updateProfileName=false", "queryProfileList=false",
    "profiles=1", "writeConfigData=false", "updateConfigData=false", "getConfigData=''",
    "addKeyProfile=0", "queryKeysProfile=false", "keys=1", "queryKeyProfile=false",
    "addMacroProfile=0", "updateMacroProfileName=false", "modifyMacroInfo=false",
    "queryMacroInfo=false", "queryAllMacroData=1", "deleteMacroProfile=false", "addMacroRecord=0",
    "deleteMacroRecord=false", "queryMacroRecord=1", "getRecordCount=0", "writeLightProfile=false",
    "modifyLightData=false", "selectLightMode=false", "getLightModeSelectIndex=0",
    "queryLightInfo=false", "addUserLight=0", "deleteUserLight=false", "getUserLightData=1",
    "addUserLightLEDData=-1", "addUserLightLEDData(0)=-1", "getUserLightLEDData=1",
    "replaceMacroRecords=false", "saveMacro=false", "countMacros=0",
    "readConfiguration=cannot read the database: file is not a database",
    "replaceConfiguration=cannot write the database: file is not a database", "commit=false",
};
// clang-format on

void writeFile(const fs::path& file, const std::string& bytes) {
    std::ofstream(file, std::ios::binary) << bytes;
}

TEST(StoreBadFiles, DirectoryThatCannotBeCreated) {
    TempDir dir;
    writeFile(dir / "blocker", "not a directory");
    EnvOverride xdg("XDG_DATA_HOME", (dir / "blocker").string());
    ConsoleCapture console;
    DeviceSQLite db(kDeviceDatabaseFileName);
    EXPECT_FALSE(db.isConnected());
    EXPECT_EQ(console.text().rfind("init: connect fail ", 0), 0u) << console.text();
    EXPECT_EQ(everyResult(db), kNoConnection);
    EXPECT_TRUE(db.modifyLightData(1, 0, std::vector<std::uint8_t>(3)));  // nothing to check
    EXPECT_EQ(fileBytes(dir / "blocker"), "not a directory");
}

TEST(StoreBadFiles, PathThatIsADirectory) {
    TempDir dir;
    ConsoleCapture console;
    DeviceSQLite db = DeviceSQLite::atPath(dir.path());
    EXPECT_FALSE(db.isConnected());
    EXPECT_EQ(console.text(), "init: connect fail unable to open database file\n");
}

TEST(StoreBadFiles, FileThatIsNotADatabaseIsNeverOverwritten) {
    TempDir dir;
    const fs::path file = dir / "notes.sqlite3";
    const std::string text = "Shopping list\n" + std::string(8000, '-') + "\n";
    writeFile(file, text);
    ConsoleCapture console;
    DeviceSQLite db = DeviceSQLite::atPath(file);
    EXPECT_EQ(console.text(), "createTable fail file is not a database\ninit: connect success\n");
    EXPECT_EQ(everyResult(db), kRefused);

    console.clear();
    db.initDBdata(1);
    db.resetProfile(1);
    db.dropTable();
    EXPECT_EQ(console.text(),
              "insertRow  fail file is not a database\n"
              "resetProfile  fail file is not a database\n"
              "dropTable table failed file is not a database\n");
    EXPECT_EQ(fileBytes(file), text);
}

TEST(StoreBadFiles, TableThatCannotBeCreatedStopsCreationAndDefaults) {
    TempDir dir;
    const fs::path file = dir / "old.sqlite3";
    {
        SqlFile sql(file);
        sql.exec(
            "CREATE TABLE t_profile (profId INTEGER PRIMARY KEY NOT NULL, name TEXT);"
            "INSERT INTO t_profile VALUES (5, 'Kept');"
            "CREATE TABLE other (a); CREATE INDEX t_keyrgb ON other (a)");
    }
    ConsoleCapture console;
    DeviceSQLite db = DeviceSQLite::atPath(file);
    EXPECT_EQ(console.text(),
              "createTable fail there is already an index named t_keyrgb\n"
              "init: connect success\n");
    SqlFile sql(file);
    EXPECT_EQ(sql.tables(), (Rows{"t_profile", "other", "t_configdata", "t_lightdata"}));
    EXPECT_EQ(sql.value("SELECT count(*) FROM t_configdata"), "0");

    // The tables that exist work; the missing ones give their "nothing" results.
    EXPECT_EQ(db.addProfile("Six"), 6);
    EXPECT_EQ(sql.rows("SELECT * FROM t_profile"), (Rows{"5|Kept", "6|Six"}));
    std::vector<ProfileKey> keys;
    EXPECT_FALSE(db.queryKeysProfile(5, 0, keys));
    EXPECT_EQ(db.addKeyProfile({0, 0, 5, 4, kMacroTypeKey, 5, 0, 0, "B"}), 0);
    EXPECT_EQ(db.addMacroProfile("M"), 0);
    EXPECT_EQ(db.addUserLight(5, "S"), 0);
    EXPECT_EQ(db.addUserLightLEDData({0, 1, 30, 0xFF}), -1);
}

// Opens the file as an ordinary user and checks what reads and writes give; the exit status
// tells the parent (0: as expected), standard error shows what differed.
int readOnlySession(const fs::path& file) {
    if (geteuid() == 0 &&
        (setgroups(0, nullptr) != 0 || setgid(65534) != 0 || setuid(65534) != 0)) {
        return 2;  // root ignores file modes: the check needs an ordinary user
    }
    ConsoleCapture console;
    DeviceSQLite db = DeviceSQLite::atPath(file);
    std::vector<ProfileData> profiles;
    const bool listed = db.queryProfileList(profiles);
    std::string error, replaceError;
    const std::optional<Configuration> exported = db.readConfiguration(error);
    db.replaceConfiguration({}, replaceError);
    const Rows got = {
        console.text(),
        db.getConfigData(1, "language"),
        std::to_string(db.getLightModeSelectIndex(1)),
        std::to_string(listed) + "/" + std::to_string(profiles.size()),
        std::to_string(db.addProfile("Two")),
        std::to_string(db.updateConfigData(1, "language", "2052")),
        std::to_string(db.selectLightMode(1, 3)),
        std::to_string(db.writeLightProfile(2)),
        exported ? std::to_string(exported->lighting.size()) : error,
        replaceError,
    };
    const Rows expected = {"createTable success\ninit: connect success\n",
                           "1033",
                           "11",
                           "1/1",
                           "0",
                           "0",
                           "0",
                           "0",
                           "21",
                           "cannot write the database: attempt to write a readonly database"};
    if (got == expected) return 0;
    for (const std::string& g : got) std::cerr << '[' << g << "] ";
    return 1;
}

TEST(StoreBadFiles, ReadOnlyFileIsReadButNeverWritten) {
    TempDir dir;
    const fs::path file = dir / "ro.sqlite3";
    {
        ConsoleCapture quiet;
        DeviceSQLite db = DeviceSQLite::atPath(file);
        db.writeLightProfile(1);
    }
    fs::permissions(dir.path(), fs::perms(0755));
    fs::permissions(file, fs::perms(0444));
    const std::string before = fileBytes(file);
    EXPECT_EXIT(std::exit(readOnlySession(file)), ::testing::ExitedWithCode(0), "");
    EXPECT_EQ(fileBytes(file), before);
}

using StoreDeathTest = StoreTest;

TEST_F(StoreDeathTest, NamelessProfileOrSetStopsTheProgram) {
    sql_.exec(
        "INSERT INTO t_profile (name) VALUES (NULL);"
        "INSERT INTO t_userlight_data (profile, name, speed, brightness) "
        "VALUES (1, NULL, 15, 15)");
    std::vector<ProfileData> profiles;
    EXPECT_DEATH(db_.queryProfileList(profiles), "profile 2 has no name");
    std::vector<UserLightData> sets;
    EXPECT_DEATH(db_.getUserLightData(1, sets), "user-light set 1 has no name");
}

TEST_F(StoreDeathTest, StoredValueOutsideAByteStopsTheProgram) {
    db_.writeLightProfile(1);
    const std::pair<const char*, int> cases[] = {
        {"UPDATE t_lightdata SET byte5 = 256 WHERE mode = 4", 4},
        {"UPDATE t_lightdata SET byte11 = -1 WHERE mode = 6", 6},
        {"UPDATE t_lightdata SET mode = 300 WHERE mode = 8", 300},
    };
    for (const auto& [update, mode] : cases) {
        sql_.exec(update);
        lightData light;
        EXPECT_DEATH(db_.queryLightInfo(1, mode, light), "not a byte") << update;
    }
}

TEST_F(StoreDeathTest, ShortLightRecordStopsTheProgram) {
    db_.writeLightProfile(1);
    EXPECT_DEATH(db_.modifyLightData(1, 2, std::vector<std::uint8_t>(11)), "11 bytes");
}

}  // namespace
}  // namespace qx9::test
