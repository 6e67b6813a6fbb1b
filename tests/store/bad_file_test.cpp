// Files the store cannot use as they are, and the broken invariants that stop the program.
#include <tuple>
#include <grp.h>
#include <sys/resource.h>
#include <unistd.h>

#include <csignal>

#include <gtest/gtest.h>

#include <functional>
#include <iostream>

#include "store_support.h"

namespace qx9::test {
namespace {

namespace fs = std::filesystem;

// A result as text; with a list of one element of the caller's, "/" and its size after.
template <typename T>
std::string text(const T& value) {
    std::ostringstream out;
    out << std::boolalpha << value;
    return out.str();
}
template <typename R, typename T>
std::string text(const R& result, const std::vector<T>& list) {
    return text(result) + "/" + std::to_string(list.size());
}

// A store operation and its result without a connection and when every statement is refused (a
// file that is not a database).
struct Op {
    const char* call;
    std::function<std::string(DeviceSQLite&)> run;
    const char* noConnection;
    const char* notADatabase;
};
// clang-format off
#define OP(call) #call, [](DeviceSQLite& db) { return text(db.call); }
#define OUT(T, call) #call, [](DeviceSQLite& db) { T out; return text(db.call); }
#define LIST(T, call) \
    #call, [](DeviceSQLite& db) { std::vector<T> list(1); return text(db.call, list); }

const Op kOps[] = {
    {OP(addProfile("P")), "0", "0"},
    {OP(deleteProfile(1)), "false", "false"},
    {OP(updateProfileName(1, "Q")), "false", "false"},
    {LIST(ProfileData, queryProfileList(list)), "false/1", "false/1"},
    {OP(writeConfigData(1, "k", "v")), "false", "false"},
    {OP(updateConfigData(1, "language", "2052")), "false", "false"},
    {OP(getConfigData(1, "language")), "", ""},
    {OP(hasConfigData(1, "language")), "false", "false"},
    {OP(addKeyProfile({0, 0, 1, 4, kMacroTypeKey, 5, 0, 0, "B"})), "0", "0"},
    {LIST(ProfileKey, queryKeysProfile(1, 0, list)), "false/1", "false/1"},
    {OUT(ProfileKey, queryKeyProfile(1, 0, 4, out)), "false", "false"},
    {OP(addMacroProfile("M")), "0", "0"},
    {OP(updateMacroProfileName(1, "N")), "false", "false"},
    {OP(modifyMacroInfo({1, 2, 0, 0, "N"})), "false", "false"},
    {OUT(MacroInfo, queryMacroInfo(1, out)), "false", "false"},
    {LIST(MacroInfo, queryAllMacroData(list)), "1/1", "1/1"},
    {OP(deleteMacroProfile(1)), "false", "false"},
    {OP(addMacroRecord({0, 1, kRecordDelay, 0, 10, "10 ms"})), "0", "0"},
    {OP(deleteMacroRecord(1)), "false", "false"},
    {LIST(RecordInfo, queryMacroRecord(1, list)), "1/1", "1/1"},
    {OP(getRecordCount()), "0", "0"},
    {LIST(RecordInfo, replaceMacroRecords(1, list)), "false/1", "false/1"},
    {OP(saveMacro({1, 2, 0, 0, "N"}, {})), "false", "false"},
    {OP(countMacros()), "0", "0"},
    {OP(writeLightProfile(2)), "false", "false"},
    {OP(modifyLightData(1, 2, LightRecord{})), "false", "false"},
    {OP(selectLightMode(1, 2)), "false", "false"},
    {OP(getLightModeSelectIndex(1)), "0", "0"},
    {OUT(lightData, queryLightInfo(1, 2, out)), "false", "false"},
    {OP(addUserLight(1, "S")), "0", "0"},
    {OP(updateUserLightName(1, "T")), "false", "false"},
    {OP(deleteUserLight(1)), "false", "false"},
    {LIST(UserLightData, getUserLightData(1, list)), "1/1", "1/1"},
    {OP(addUserLightLEDData({0, 1, 30, 0xFF0000})), "0", "-1"},
    {OP(addUserLightLEDData({0, 1, 30, 0})), "-1", "-1"},
    {LIST(UserLightLEDData, getUserLightLEDData(1, list)), "1/1", "1/1"},
    {OP(beginTransaction().commit()), "false", "false"},
    {"readConfiguration", [](DeviceSQLite& db) {
         std::string e;
         const auto read = db.readConfiguration(e);
         return read ? text(read->lighting.size()) : e;
     }, "no database is open", "cannot read the database: file is not a database"},
    {"replaceConfiguration",
     [](DeviceSQLite& db) { std::string e; return db.replaceConfiguration({}, e) ? "ok" : e; },
     "no database is open",
     "cannot write the database: file is not a database"},
};
// clang-format on

// "call=result" for each operation with a result in `column`: on `db`, or the expected one.
Rows results(DeviceSQLite* db, const char* Op::*column) {
    Rows r;
    for (const Op& op : kOps) {
        if (op.*column) r.push_back(std::string(op.call) + "=" + (db ? op.run(*db) : op.*column));
    }
    return r;
}

void writeFile(const fs::path& file, const std::string& bytes) {
    std::ofstream(file, std::ios::binary) << bytes;
}

TEST(StoreBadFiles, PlaceThatCannotBeOpenedLeavesNoConnection) {
    TempDir dir;
    writeFile(dir / "blocker", "not a directory");
    EnvOverride xdg("XDG_DATA_HOME", (dir / "blocker").string());
    ConsoleCapture console;
    DeviceSQLite db(kDeviceDatabaseFileName);  // its directory cannot be created
    EXPECT_FALSE(db.isConnected());
    EXPECT_EQ(console.text().rfind("init: connect fail ", 0), 0u) << console.text();
    EXPECT_EQ(results(&db, &Op::noConnection), results(nullptr, &Op::noConnection));
    EXPECT_FALSE(db.modifyLightData(1, 0, std::vector<std::uint8_t>(3)));
    EXPECT_EQ(fileBytes(dir / "blocker"), "not a directory");

    console.clear();
    EXPECT_FALSE(DeviceSQLite::atPath(dir.path()).isConnected());  // a directory
    EXPECT_EQ(console.text(), "init: connect fail unable to open database file\n");
}

TEST(StoreBadFiles, FileThatIsNotADatabaseIsNeverOverwritten) {
    TempDir dir;
    const fs::path file = dir / "notes.sqlite3";
    const std::string text = "Shopping list\n" + std::string(8000, '-') + "\n";
    writeFile(file, text);
    ConsoleCapture console;
    DeviceSQLite db = DeviceSQLite::atPath(file);
    EXPECT_EQ(console.text(), "init: connect fail file is not a database\n");
    EXPECT_FALSE(db.readable());
    EXPECT_EQ(results(&db, &Op::notADatabase), results(nullptr, &Op::notADatabase));

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

// A file in each state a user's machine can leave it in: what the store makes of it, whether its
// settings can still be read (and exported), and that a file not of this application is never
// written. The cases that need an ordinary user or a file size limit run in a child process.
struct FileState {
    const char* name;
    std::function<void(const fs::path& file)> prepare;
    const char* held = nullptr;      // SQL another program runs and holds meanwhile
    bool asNobody = false;           // run as an ordinary user (root ignores file modes)
    long fileSizeLimit = -1;         // RLIMIT_FSIZE in bytes (a full disk), -1: none
    StoreProblem atOpen;             // the problem on opening
    bool readable;                   // its settings can be read
    StoreProblem onWrite;            // the problem a write then meets
};

int openAndWrite(const fs::path& file, const FileState& state) {
    if (state.asNobody && geteuid() == 0 && (setgroups(0, nullptr) || setgid(65534) || setuid(65534))) return 9;
    if (state.fileSizeLimit >= 0) {
        std::signal(SIGXFSZ, SIG_IGN);
        const rlimit limit{static_cast<rlim_t>(state.fileSizeLimit), static_cast<rlim_t>(state.fileSizeLimit)};
        if (setrlimit(RLIMIT_FSIZE, &limit) != 0) return 9;
    }
    ConsoleCapture quiet;
    DeviceSQLite db = DeviceSQLite::atPath(file);
    std::string error;
    const bool read = db.readable() && db.readConfiguration(error).has_value();
    const StoreProblem atOpen = db.problem();
    const bool wrote = db.addProfile("P") != 0;
    const StoreProblem onWrite = wrote ? StoreProblem::kNone : db.problem();
    const bool ok = atOpen == state.atOpen && read == state.readable && onWrite == state.onWrite;
    if (!ok) std::cerr << int(atOpen) << ' ' << read << ' ' << int(onWrite) << '\n';
    return ok ? 0 : 1;
}

TEST(StoreFileStates, TheCauseIsNamedAndAFileNotOursIsLeftUntouched) {
    const EnvOverride wait = shortLockWait();
    using P = StoreProblem;
    const auto ours = [](const fs::path& file) {
        ConsoleCapture quiet;
        DeviceSQLite::atPath(file).writeLightProfile(1);
    };
    const FileState states[] = {
        {"Missing", [](const fs::path&) {}, nullptr, false, -1, P::kNone, true, P::kNone},
        {"Empty", [](const fs::path& f) { writeFile(f, ""); }, nullptr, false, -1, P::kNotOurs, false, P::kNotOurs},
        {"Foreign", [](const fs::path& f) { SqlFile(f).exec("CREATE TABLE notes (text)"); }, nullptr, false, -1,
         P::kNotOurs, false, P::kNotOurs},
        {"Damaged", [](const fs::path& f) { writeFile(f, std::string(4096, 'x')); }, nullptr, false, -1, P::kDamaged,
         false, P::kDamaged},
        // Another program writes in rollback-journal mode and holds the file past the wait.
        {"InUse", [&](const fs::path& f) {
             ours(f);
             SqlFile(f).exec("PRAGMA journal_mode=DELETE");
         }, "BEGIN EXCLUSIVE; INSERT INTO t_profile (name) VALUES ('x')", false, -1, P::kInUse, false, P::kInUse},
        {"ReadOnlyFolder", [&](const fs::path& f) {
             ours(f);
             fs::permissions(f, fs::perms(0666));
             fs::permissions(f.parent_path(), fs::perms(0555));
         }, nullptr, true, -1, P::kNone, true, P::kNotWritable},
        {"DiskFull", ours, nullptr, false, 1024, P::kNone, true, P::kDiskFull},
    };
    for (const FileState& state : states) {
        TempDir dir;
        const fs::path file = dir / "device.sqlite3";
        state.prepare(file);
        {
            std::optional<SqlFile> other;
            if (state.held) other.emplace(file).exec(state.held);
            const std::string before = fileBytes(file);
            EXPECT_EXIT(std::exit(openAndWrite(file, state)), ::testing::ExitedWithCode(0), "") << state.name;
            if (state.atOpen != P::kNone) {
                EXPECT_TRUE(fileBytes(file) == before) << state.name;
            }
        }
        fs::permissions(dir.path(), fs::perms(0755));
    }
}

using StoreDeathTest = StoreTest;

// Damaged rows are read as the nearest sound value; only a caller's own mistake stops.
TEST_F(StoreDeathTest, DamagedRowsAreReadSoundlyAndBrokenInvariantsStop) {
    db_.writeLightProfile(1);
    sql_.exec(
        "INSERT INTO t_profile (name) VALUES (NULL);"
        "INSERT INTO t_userlight_data (profile, name, speed, brightness) VALUES (1, NULL, 15, 15);"
        "UPDATE t_lightdata SET byte5 = 256 WHERE mode = 4;"
        "UPDATE t_lightdata SET byte11 = -1 WHERE mode = 6;"
        "UPDATE t_lightdata SET mode = 300 WHERE mode = 8");
    std::vector<ProfileData> profiles;
    ASSERT_TRUE(db_.queryProfileList(profiles));
    EXPECT_EQ(profiles.back().name, "");
    std::vector<UserLightData> sets;
    db_.getUserLightData(1, sets);
    EXPECT_EQ(sets.at(0).userlight_name, "");
    for (auto [mode, byte, value] : {std::tuple{4, 5, 255}, {6, 11, 0}, {300, 0, 255}}) {
        lightData light;
        ASSERT_TRUE(db_.queryLightInfo(1, mode, light)) << mode;
        EXPECT_EQ(light.data[static_cast<std::size_t>(byte)], value) << mode;
    }
}

}  // namespace
}  // namespace qx9::test
