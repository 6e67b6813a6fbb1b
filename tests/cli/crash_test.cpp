// qx9ctl killed at random moments of writes that change many rows: the database afterwards is
// sound and holds either what it held before or the whole change, never a mix.
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <iostream>
#include <random>
#include <thread>

#include "support/scratch.h"
#include "support/sql_value.h"

namespace qx9::test {
namespace {

namespace fs = std::filesystem;

class CrashTest : public ::testing::Test {
protected:
    // Runs qx9ctl on `db` with a virtual keyboard as `uid` (0: as is), killing it after `killAfter`
    // unless negative; its exit status and, with `capture`, its output.
    std::pair<int, std::string> run(const fs::path& db, const std::vector<std::string>& args,
                                    std::chrono::microseconds killAfter, bool capture = false, uid_t uid = 0) {
        std::vector<std::string> full = {QX9CTL, "--db", db.string(), "--device", "virtual"};
        full.insert(full.end(), args.begin(), args.end());
        std::vector<char*> argv;
        for (std::string& a : full) argv.push_back(a.data());
        argv.push_back(nullptr);
        int pipes[2];
        EXPECT_EQ(::pipe(pipes), 0);
        const pid_t child = ::fork();
        if (child == 0) {
            if (capture) ::dup2(pipes[1], 1), ::dup2(pipes[1], 2);
            if (uid != 0 && ::setuid(uid) != 0) ::_exit(126);
            ::execv(argv[0], argv.data());
            ::_exit(127);
        }
        ::close(pipes[1]);
        if (killAfter.count() >= 0) {
            std::this_thread::sleep_for(killAfter);
            ::kill(child, SIGKILL);
        }
        std::string output;
        char buf[4096];
        for (ssize_t n; (n = ::read(pipes[0], buf, sizeof buf)) > 0;) output.append(buf, static_cast<std::size_t>(n));
        ::close(pipes[0]);
        int status = 0;
        ::waitpid(child, &status, 0);
        return {WEXITSTATUS(status), output};
    }
    // The database as it reads after a crash: sound (SQLite replays its log), every row.
    std::map<std::string, std::string> afterCrash(const fs::path& db) {
        EXPECT_EQ(sqlValue(db.string(), "PRAGMA integrity_check"), "ok");
        sqlExec(db.string(), "PRAGMA wal_checkpoint(TRUNCATE)");
        return dumpDatabase(db.string());
    }
    fs::path copyOf(const fs::path& from, const std::string& name) {
        const fs::path to = dir_ / name;
        for (const char* suffix : {"", "-wal", "-shm"}) fs::remove(to.string() + suffix);
        fs::copy_file(from, to);
        return to;
    }

    TempDir dir_;
};

TEST_F(CrashTest, AKilledWriteLeavesTheOldOrTheNewStateAndASoundFile) {
    const fs::path base = dir_ / "base.sqlite3";
    const auto zero = std::chrono::microseconds(-1);
    run(base, {"macro", "add"}, zero);
    for (int i = 0; i < 20; ++i) run(base, {"macro", "insert", "1", "key:a"}, zero);
    run(base, {"userlight", "add"}, zero);
    run(base, {"export", (dir_ / "doc.json").string()}, zero);
    run(base, {"macro", "add"}, zero);  // the document has one macro fewer than the file
    sqlExec(base.string(), "PRAGMA wal_checkpoint(TRUNCATE)");
    const auto before = dumpDatabase(base.string());

    const std::vector<std::vector<std::string>> changes = {
        {"macro", "insert", "1", "delay:7", "--before", "0"},  // 41 events stored again
        {"light", "select", "9"},                              // the selection moves
        {"userlight", "paint", "1", "w", "a", "s", "d", "--color", "FF4000"},  // 66 colours
        {"import", (dir_ / "doc.json").string()},              // every table
    };
    std::mt19937 random(20261123);
    int trials = 0, old = 0, changed = 0;
    for (const auto& change : changes) {
        const fs::path done = copyOf(base, "done.sqlite3");
        run(done, change, zero);
        const auto after = afterCrash(done);
        ASSERT_NE(after, before) << change[0];
        for (int trial = 0; trial < 25; ++trial, ++trials) {
            const fs::path db = copyOf(base, "trial.sqlite3");
            run(db, change, std::chrono::microseconds(std::uniform_int_distribution<int>(0, 20000)(random)));
            const auto state = afterCrash(db);
            EXPECT_TRUE(state == before || state == after) << change[0] << " trial " << trial;
            (state == before ? old : changed) += 1;
        }
    }
    std::cout << trials << " kills: " << old << " left the old state, " << changed << " the new\n";
}

// A database another program holds locked, and one this user may only read: every write (an import
// too) is refused with one line naming the cause and status 1, nothing reaches the keyboard, and the
// file stays as it was; a file that can be read is still exported.
TEST_F(CrashTest, LockedAndReadOnlyDatabasesRefuseWritesAndSendNothing) {
    const EnvOverride wait = shortLockWait();
    const fs::path db = dir_ / "locked.sqlite3";
    const std::string backup = (dir_ / "backup.json").string();
    run(db, {"userlight", "add"}, std::chrono::microseconds(-1));
    run(db, {"export", backup}, std::chrono::microseconds(-1));
    fs::permissions(backup, fs::perms(0644));
    sqlExec(db.string(), "PRAGMA wal_checkpoint(TRUNCATE)");
    const auto before = dumpDatabase(db.string());
    const std::vector<std::vector<std::string>> writes = {
        {"key", "set", "1", "0", "a", "key:5"}, {"macro", "add"}, {"light", "select", "3"},
        {"settings", "gamemode", "on"}, {"userlight", "paint", "1", "w", "--color", "FF0000"},
        {"profile", "select", "1"}, {"import", backup}};  // stored first: sends nothing when the store refuses
    const auto refused = [&](std::vector<std::string> args, uid_t uid, const std::string& cause) {
        args.insert(args.begin(), {"--wire", "-"});
        const auto [status, output] = run(db, args, std::chrono::microseconds(-1), true, uid);
        EXPECT_EQ(status, 1) << args[2] << ": " << output;
        EXPECT_EQ(output.find("SET "), std::string::npos) << args[2];  // nothing on the wire
        EXPECT_EQ(std::count(output.begin(), output.end(), '\n'), 1) << output;
        EXPECT_NE(output.find(cause), std::string::npos) << output;
        EXPECT_EQ(output.find("move it aside"), std::string::npos) << output;
    };
    {
        sqlite3* lock = nullptr;
        ASSERT_EQ(sqlite3_open(db.c_str(), &lock), SQLITE_OK);
        ASSERT_EQ(sqlite3_exec(lock, "BEGIN EXCLUSIVE", nullptr, nullptr, nullptr), SQLITE_OK);
        for (const auto& w : writes) refused(w, 0, "in use by another program");
        sqlite3_close(lock);
    }
    EXPECT_EQ(dumpDatabase(db.string()), before);
    // Read-only: for root by running as nobody, since root may write any file.
    fs::permissions(db, fs::perms::owner_read | fs::perms::group_read | fs::perms::others_read);
    fs::permissions(dir_.path(), fs::perms::all);
    const uid_t user = ::geteuid() == 0 ? 65534 : 0;
    for (const auto& w : writes) refused(w, user, "the file or its folder is not writable");
    EXPECT_EQ(dumpDatabase(db.string()), before);
    const auto [status, exported] = run(db, {"export", "-"}, std::chrono::microseconds(-1), true, user);
    EXPECT_EQ(status, 0) << exported;
    EXPECT_NE(exported.find("\"profiles\""), std::string::npos);
}

}  // namespace
}  // namespace qx9::test
