// The operations on a database file and a virtual QX9: what each stores, refuses and sends.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <functional>

#include "virtual/virtual_qx9_memory.h"
#include "i18n/language.h"
#include "layout/key_maps.h"
#include "ops/configuration.h"
#include "ops/key_assignment.h"
#include "ops/lighting.h"
#include "ops/macros.h"
#include "ops/profiles.h"
#include "ops/settings.h"
#include "ops/user_lights.h"
#include "support/sql_value.h"
#include "support/wire_fixture.h"

namespace qx9::test {
namespace {

class OpsTest : public WireFixture {
protected:
    OpsTest() : db_(DeviceSQLite::atPath(file_)) {
        curLanguage = kLanguageEnglish;
        comm_->setDevice(keyboard_);
        sender_ = std::make_unique<DirectSender>(*comm_, db_);
    }
    ops::Target target() { return {db_, sender_.get()}; }
    std::int64_t addSet(const ops::Target& t) {
        std::string name;
        std::int64_t id = 0;
        return ops::addUserLight(t, name, id) ? id : 0;
    }
    std::int64_t addMacro(const ops::Target& t) {
        std::string name;
        std::int64_t id = 0;
        return ops::addMacro(t, name, id) ? id : 0;
    }
    std::string sql(const std::string& query) const { return sqlValue(file_.string(), query); }

    TempDir dir_;
    std::filesystem::path file_ = dir_ / "ops.sqlite3";
    DeviceSQLite db_;
    std::unique_ptr<DirectSender> sender_;
};

TEST_F(OpsTest, RefusedChangesStoreAndSendNothing) {
    const std::int64_t set = addSet({db_});
    ASSERT_NE(set, 0);
    const auto assign = [this](std::int64_t profile, std::int64_t layer, std::int64_t key, const ProfileKey& f) {
        return ops::assignKey(target(), profile, layer, key, f);
    };
    const std::pair<std::function<ops::Outcome()>, const char*> cases[] = {
        {[&] { return assign(1, 2, 4, ops::disabledFunction()); }, "the layer is 0 (base) or 1 (Fn)"},
        {[&] { return assign(1, 0, 9999, ops::disabledFunction()); }, "no key 9999 on the QX9"},
        {[&] { return assign(5, 0, 4, ops::disabledFunction()); }, "no profile 5"},
        {[&] { return assign(1, 0, 4, ops::macroFunction({7, 0, 0, 0, "M"}, ops::kPlayOnce, 1)); }, "no macro 7"},
        {[&] { return ops::paintKeys(target(), set, {61}, 0xFF0000); },  // f4: Fn layer only
         "the key 61 is not on the on-screen keyboard"},
    };
    for (const auto& [change, message] : cases) {
        const ops::Outcome o = change();
        EXPECT_EQ(o.status, ops::Outcome::kRefused) << message;
        EXPECT_EQ(ops::describe(o), message);
    }
    EXPECT_EQ(sql("SELECT (SELECT COUNT(*) FROM t_keyprofile) + (SELECT COUNT(*) FROM t_userlight_leddata)"), "0");
    EXPECT_TRUE(sets().empty());
}

TEST_F(OpsTest, AKeyMadeFnIsFnOnBothLayersAndOneKeyMapGoesOut) {
    ASSERT_TRUE(ops::assignKey(target(), 1, 1, 5, *ops::paletteFunction(kFnKeyCode)));
    EXPECT_EQ(sql("SELECT group_concat(fnlayerId) FROM (SELECT fnlayerId FROM t_keyprofile WHERE keyvalue = 5 "
                  "ORDER BY fnlayerId)"), "0,1");
    clearWire();
    ASSERT_TRUE(ops::assignKey(target(), 1, 0, 41, *ops::capturedKeysFunction({225, 30})));
    std::vector<int> codes;
    for (const Bytes& b : sets()) {
        if (b[0] == 0x04) codes.push_back(b[1]);
    }
    EXPECT_EQ(codes, (std::vector<int>{0x18, 0x11, 0x02}));
    ASSERT_TRUE(ops::assignKey(target(), 1, 0, 41, ops::defaultFunction()));
    EXPECT_EQ(sql("SELECT COUNT(*) FROM t_keyprofile WHERE keyvalue = 41"), "0");
}

TEST_F(OpsTest, NoMoreMacrosThanTheKeyboardAddresses) {
    for (int i = 0; i < ops::kMaxMacros; ++i) ASSERT_NE(addMacro(target()), 0);
    std::int64_t id = 0;
    std::string name;
    const ops::Outcome o = ops::addMacro(target(), name, id);
    EXPECT_EQ(id, 0);
    EXPECT_EQ(ops::describe(o), "the keyboard holds at most 100 macros");
    EXPECT_EQ(sql("SELECT COUNT(*) FROM t_macro_data"), "100");
    // A key bound to the last one still reaches the keyboard, at directory slot 99.
    ASSERT_TRUE(ops::assignKey(target(), 1, 0, 4, ops::macroFunction({100, 0, 0, 0, "Macro100"}, ops::kPlayOnce, 1)));
    EXPECT_EQ(keyRecord(keyboard_->memory(), 0, 56)[1], 99);
}

TEST_F(OpsTest, ALanguageChosenAfterResettingProfileOneIsStored) {
    std::int64_t lightMode = 0;
    ASSERT_TRUE(ops::resetKeys(target(), 1, lightMode));
    EXPECT_EQ(sql("SELECT COUNT(*) FROM t_configdata WHERE key = 'language'"), "0");
    // The next start finds no language: it uses Simplified Chinese and writes it back.
    ops::LanguageChoice choice;
    ASSERT_TRUE(ops::applyStoredLanguage(db_, choice));
    EXPECT_EQ(choice.language, kLanguageSimplifiedChinese);
    EXPECT_EQ(sql("SELECT value FROM t_configdata WHERE profId = 1 AND key = 'language'"), "2052");
    ASSERT_TRUE(sqlExec(file_.string(), "DELETE FROM t_configdata WHERE key = 'language'"));
    ASSERT_TRUE(ops::setLanguage({db_}, kLanguageEnglish));
    EXPECT_EQ(sql("SELECT group_concat(value) FROM t_configdata WHERE profId = 1 AND key = 'language'"), "1033");
}

// Every report position of every kind of transaction, under each fault: nothing crashes or
// hangs, the store ends as it does without the fault, and the outcome tells the user.
TEST_F(OpsTest, EveryFaultAtEveryReportIsReported) {
    const std::int64_t macro = addMacro({db_}), set = addSet({db_});
    const std::string clean = (dir_ / "clean.sqlite3").string();
    ASSERT_TRUE(sqlExec(file_.string(), "PRAGMA wal_checkpoint(TRUNCATE)"));  // the file alone holds it all
    const std::vector<std::pair<const char*, std::function<ops::Outcome(const ops::Target&)>>> changes = {
        {"key", [](const ops::Target& t) { return ops::assignKey(t, 1, 0, 4, *ops::paletteFunction(5)); }},
        {"macro", [&](const ops::Target& t) { return ops::storeAndSendEvents(t, macro, *ops::keyPressEvents(4)); }},
        {"effect", [](const ops::Target& t) { LightRecord r; return ops::selectEffect(t, 1, 9, r); }},
        {"colours", [&](const ops::Target& t) { return ops::paintKeys(t, set, {4}, 0xFF0000); }},
        {"system", [](const ops::Target& t) { return ops::setFnMode(t, true, {}); }},
    };
    for (const auto& [name, change] : changes) {
        const auto runOn = [&, &change = change](std::optional<VirtualQX9::SetFault> fault, int k) {
            std::filesystem::copy_file(file_, clean, std::filesystem::copy_options::overwrite_existing);
            std::filesystem::remove(clean + "-wal");
            auto keyboard = std::make_shared<VirtualQX9>();
            if (fault) keyboard->failSetAt(k, *fault);
            DeviceSQLite db = DeviceSQLite::atPath(clean);
            DeviceComm comm(keyboard, recorder_.get());
            DirectSender sender(comm, db);
            return std::pair(change({db, &sender}), keyboard);
        };
        // The clean run: how many reports, and the store after it.
        const auto [cleanOutcome, counter] = runOn(std::nullopt, 0);
        ASSERT_TRUE(cleanOutcome) << ops::describe(cleanOutcome) << name;
        const auto expected = dumpDatabase(clean);
        using F = VirtualQX9::SetFault;
        for (int k = 1; k <= static_cast<int>(counter->setCount()); ++k) {
            for (F fault : {F::kFail, F::kVanish, F::kBusyOnce, F::kBusyTwice}) {
                // A busy answer the resend cures is no fault; any other fault is said.
                EXPECT_EQ(runOn(fault, k).first.status, fault == F::kBusyOnce ? ops::Outcome::kDone : ops::Outcome::kNotSent)
                    << name << " report " << k << " fault " << int(fault);
                EXPECT_EQ(dumpDatabase(clean), expected) << name << " report " << k << " fault " << int(fault);
            }
        }
    }
}

// Recorded macros are keystrokes: the folders the application makes and its database are the
// user's alone, whatever the umask.
TEST(DatabaseFile, FoldersAndFileAreTheUsersAloneWhateverTheUmask) {
    namespace fs = std::filesystem;
    const TempDir scratch;
    const fs::path base = scratch / "home";  // made under the umask in force
    fs::create_directories(base);
    const mode_t previous = ::umask(0);
    { DeviceSQLite db = DeviceSQLite::atPath(base / "data" / "db" / "file.sqlite3"); }
    ::umask(previous);
    const auto mode = [](const fs::path& p) { return fs::status(p).permissions() & fs::perms::all; };
    EXPECT_EQ(mode(base / "data"), fs::perms::owner_all);
    EXPECT_EQ(mode(base / "data" / "db"), fs::perms::owner_all);
    EXPECT_EQ(mode(base / "data" / "db" / "file.sqlite3"), fs::perms::owner_read | fs::perms::owner_write);
    EXPECT_NE(mode(base), fs::perms::owner_all);  // a folder that was there stays as it was
}

}  // namespace
}  // namespace qx9::test
