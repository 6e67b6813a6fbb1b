// The operations on a database file and a virtual QX9: what each stores, refuses and sends.
#include <gtest/gtest.h>

#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>

#include "hid/virtual_qx9_memory.h"
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
#include <functional>
#include <random>
#include "support/wire_fixture.h"

namespace qx9::test {
namespace {

class OpsTest : public WireFixture {
protected:
    OpsTest()
        : file_(std::filesystem::temp_directory_path() /
                ("qx9-ops-" + std::to_string(::getpid()) + "-" +
                 ::testing::UnitTest::GetInstance()->current_test_info()->name() + ".sqlite3")),
          db_(DeviceSQLite::atPath(file_)) {
        curLanguage = kLanguageEnglish;
        comm_->setDevice(keyboard_);
    }
    ~OpsTest() override {
        for (const char* suffix : {"", "-wal", "-shm"}) std::filesystem::remove(file_.string() + suffix);
    }
    ops::Target target() { return {db_, comm_.get()}; }
    std::string sql(const std::string& query) const { return sqlValue(file_.string(), query); }
    // Runs statements on the file with a connection of its own.
    void exec(const std::string& statements) const {
        sqlite3* db = nullptr;
        sqlite3_open(file_.c_str(), &db);
        EXPECT_EQ(sqlite3_exec(db, statements.c_str(), nullptr, nullptr, nullptr), SQLITE_OK);
        sqlite3_close(db);
    }
    // Command codes (byte 1) of the command reports sent.
    std::vector<int> commands() const {
        std::vector<int> codes;
        for (const Bytes& b : sets()) {
            if (b[0] == 0x04) codes.push_back(b[1]);
        }
        return codes;
    }

    std::filesystem::path file_;
    DeviceSQLite db_;
};

const std::vector<int> kKeyMap = {0x18, 0x11, 0x02};

TEST_F(OpsTest, AKeyGetsItsFunctionStoredAndOneKeyMapSent) {
    // Shift + 1, as the custom key dialog captures it: one transaction, whatever the kind.
    ASSERT_TRUE(ops::assignKey(target(), 1, 0, 41, *ops::capturedKeysFunction({225, 30})));
    EXPECT_EQ(commands(), kKeyMap);
    EXPECT_EQ(sql("SELECT macroType || ' ' || macroValue || ' ' || macro2Value || ' ' || macroDesc FROM t_keyprofile"),
              "3 30 225 Left Shift + 1");
    EXPECT_EQ(keyRecord(keyboard_->memory(), 0, 1), (std::array<std::uint8_t, 4>{2, 2, 0x1E, 0}));
    // A key made Fn is Fn on both layers; the default function takes the row away.
    ASSERT_TRUE(ops::assignKey(target(), 1, 1, 5, *ops::paletteFunction(kFnKeyCode)));
    EXPECT_EQ(sql("SELECT group_concat(fnlayerId) FROM (SELECT fnlayerId FROM t_keyprofile WHERE keyvalue = 5 ORDER BY fnlayerId)"), "0,1");
    ASSERT_TRUE(ops::assignKey(target(), 1, 0, 41, ops::defaultFunction()));
    EXPECT_EQ(sql("SELECT COUNT(*) FROM t_keyprofile WHERE keyvalue = 41"), "0");
}

TEST_F(OpsTest, RefusedAssignmentsStoreAndSendNothing) {
    MacroInfo missing;
    missing.macroId = 7;
    const struct {
        std::int64_t profile, layer, key;
        ProfileKey function;
        const char* message;
    } cases[] = {
        {1, 2, 4, ops::disabledFunction(), "the layer is 0 (base) or 1 (Fn)"},
        {1, 0, 9999, ops::disabledFunction(), "no key 9999 on the QX9"},
        {5, 0, 4, ops::disabledFunction(), "no profile 5"},
        {1, 0, 4, ops::macroFunction(missing, ops::kPlayOnce, 1), "no macro 7"},
    };
    for (const auto& c : cases) {
        const ops::Outcome o = ops::assignKey(target(), c.profile, c.layer, c.key, c.function);
        EXPECT_EQ(o.status, ops::Outcome::kRefused);
        EXPECT_EQ(o.message, c.message);
    }
    EXPECT_EQ(sql("SELECT COUNT(*) FROM t_keyprofile"), "0");
    EXPECT_TRUE(sets().empty());
}

TEST_F(OpsTest, NoMoreMacrosThanTheKeyboardAddresses) {
    for (int i = 0; i < ops::kMaxMacros; ++i) {
        std::int64_t id = 0;
        ASSERT_TRUE(ops::addMacro(target(), ops::newMacroName(static_cast<std::size_t>(i)), id));
    }
    for (int language : {kLanguageEnglish, kLanguageSimplifiedChinese, kLanguageTraditionalChinese}) {
        curLanguage = language;
        std::int64_t id = 0;
        const ops::Outcome o = ops::addMacro(target(), "one more", id);
        EXPECT_EQ(o.status, ops::Outcome::kRefused);
        EXPECT_EQ(id, 0);
        EXPECT_NE(o.text.find("100"), std::string::npos);  // said in every language
        EXPECT_FALSE(o.title.empty());
    }
    EXPECT_EQ(sql("SELECT COUNT(*) FROM t_macro_data"), "100");
    // A key bound to the last one still reaches the keyboard, at directory slot 99.
    ASSERT_TRUE(ops::assignKey(target(), 1, 0, 4, ops::macroFunction({100, 0, 0, 0, "Macro100"}, ops::kPlayOnce, 1)));
    EXPECT_EQ(keyRecord(keyboard_->memory(), 0, 56)[1], 99);
}

TEST_F(OpsTest, EventsAreStoredAllOrNothing) {
    std::int64_t macro = 0;
    ASSERT_TRUE(ops::addMacro(target(), "Macro1", macro));
    ASSERT_TRUE(ops::storeAndSendEvents(target(), macro, *ops::keyPressEvents(4), 1));
    EXPECT_EQ(commands(), (std::vector<int>{0x19, 0x15, 0x02}));
    clearWire();
    // The third row is refused: the two stored before it go back, nothing is sent.
    exec("CREATE TRIGGER refuse BEFORE INSERT ON t_macrorecord WHEN NEW.record_index = 2 "
         "BEGIN SELECT RAISE(ABORT, 'refused'); END");
    std::vector<ops::RecordRow> events = ops::storedEvents(db_, macro);
    ops::insertEvents(events, std::nullopt, false, ops::delayEvents(10));
    EXPECT_EQ(ops::storeAndSendEvents(target(), macro, events, 1).status, ops::Outcome::kNotStored);
    EXPECT_EQ(sql("SELECT group_concat(record_type || ':' || record_value) FROM t_macrorecord"), "2:4,3:4");
    EXPECT_TRUE(sets().empty());
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
    exec("DELETE FROM t_configdata WHERE key = 'language'");
    ASSERT_TRUE(ops::setLanguage({db_}, kLanguageEnglish));
    EXPECT_EQ(sql("SELECT group_concat(value) FROM t_configdata WHERE profId = 1 AND key = 'language'"), "1033");
}

TEST_F(OpsTest, PaintingTakesTheKeysOutOfOtherSets) {
    std::int64_t first = 0, second = 0;
    ASSERT_TRUE(ops::addUserLight(target(), "one", first));
    ASSERT_TRUE(ops::addUserLight(target(), "two", second));
    ASSERT_TRUE(ops::paintKeys(target(), second, {26}, 0x00FF00));  // w
    clearWire();
    ASSERT_TRUE(ops::paintKeys(target(), first, {26, 4, 22, 7}, 0xFF4000));  // w a s d
    EXPECT_EQ(sql("SELECT group_concat(keyvalue) FROM (SELECT keyvalue FROM t_userlight_leddata WHERE light_id = " +
                  std::to_string(first) + " AND rgbvalue = 16728064 ORDER BY keyvalue)"),
              "4,7,22,26");
    EXPECT_EQ(sql("SELECT COUNT(*) FROM t_userlight_leddata WHERE light_id = " + std::to_string(second)), "0");
    EXPECT_EQ(commands(), (std::vector<int>{0x18, 0x23, 0x02, 0xF0, 0x18, 0x13, 0x02, 0xF0}));
    EXPECT_EQ(keyColour(keyboard_->memory(), G_KB_SuperKeyCodeMap.at(26).light_index), 0xFF4000u);
    EXPECT_EQ(ops::paintKeys(target(), first, {61}, 0xFF0000).status, ops::Outcome::kRefused);  // f4: Fn layer only
}

}  // namespace
}  // namespace qx9::test

namespace qx9::test {
namespace {

// A virtual QX9 that fails at the k-th report set: that one report, every call from it on (the
// keyboard unplugged), or by answering busy to the reads after it.
class FaultyKeyboard final : public HidBackend {
public:
    enum Fault { kNone, kFailOnce, kVanish, kBusyOnce, kBusyTwice };
    FaultyKeyboard(std::shared_ptr<VirtualQX9> inner, Fault fault, int k) : inner_(std::move(inner)), fault_(fault), k_(k) {}
    std::string identity() const override { return inner_->identity(); }
    std::int64_t productId() const override { return inner_->productId(); }
    bool open() override { return inner_->open(); }
    void close() override { inner_->close(); }
    bool isOpen() const override { return inner_->isOpen(); }
    std::string lastError() const override { return inner_->lastError(); }
    bool setFeatureReport(std::uint8_t id, const std::uint8_t* data, std::size_t length) override {
        ++sets;
        if (gone_) return false;
        if (sets == k_) {
            if (fault_ == kFailOnce) return false;
            if (fault_ == kVanish) return !(gone_ = true);
            if (fault_ == kBusyOnce || fault_ == kBusyTwice) inner_->setBusyReads(fault_ == kBusyOnce ? 1 : 2);
        }
        return inner_->setFeatureReport(id, data, length);
    }
    bool getFeatureReport(std::uint8_t id, std::uint8_t* data, std::size_t& length) override {
        return !gone_ && inner_->getFeatureReport(id, data, length);
    }
    int sets = 0;

private:
    std::shared_ptr<VirtualQX9> inner_;
    Fault fault_;
    int k_;
    bool gone_ = false;
};

// Every report position of every kind of transaction, under each fault: nothing crashes or
// hangs, the store ends as it does without the fault, and the outcome tells the user.
TEST_F(OpsTest, EveryFaultAtEveryReportIsReported) {
    std::int64_t macro = 0, set = 0;
    ASSERT_TRUE(ops::addMacro({db_}, "Macro1", macro));
    ASSERT_TRUE(ops::addUserLight({db_}, "one", set));
    const std::string clean = file_.string() + ".clean";
    ASSERT_TRUE(sqlExec(file_.string(), "PRAGMA wal_checkpoint(TRUNCATE)"));  // the file alone holds it all
    const std::vector<std::pair<const char*, std::function<ops::Outcome(const ops::Target&)>>> changes = {
        {"key", [](const ops::Target& t) { return ops::assignKey(t, 1, 0, 4, *ops::paletteFunction(5)); }},
        {"macro", [&](const ops::Target& t) { return ops::storeAndSendEvents(t, macro, *ops::keyPressEvents(4), 1); }},
        {"effect", [](const ops::Target& t) { LightRecord r; return ops::selectEffect(t, 1, 9, r); }},
        {"colours", [&](const ops::Target& t) { return ops::paintKeys(t, set, {4}, 0xFF0000); }},
        {"system", [](const ops::Target& t) { return ops::setFnMode(t, true, {}); }},
    };
    for (const auto& [name, change] : changes) {
        // The clean run: how many reports, and the store after it.
        std::filesystem::copy_file(file_, clean, std::filesystem::copy_options::overwrite_existing);
        auto counter = std::make_shared<FaultyKeyboard>(std::make_shared<VirtualQX9>(), FaultyKeyboard::kNone, 0);
        {
            DeviceSQLite db = DeviceSQLite::atPath(clean);
            DeviceComm comm(counter, recorder_.get());
            ASSERT_EQ(change({db, &comm}).message, "") << name;
        }
        const auto expected = dumpDatabase(clean);
        for (int k = 1; k <= counter->sets; ++k) {
            for (auto fault : {FaultyKeyboard::kFailOnce, FaultyKeyboard::kVanish, FaultyKeyboard::kBusyOnce,
                               FaultyKeyboard::kBusyTwice}) {
                SCOPED_TRACE(std::string(name) + " report " + std::to_string(k) + " fault " + std::to_string(fault));
                std::filesystem::copy_file(file_, clean, std::filesystem::copy_options::overwrite_existing);
                std::filesystem::remove(clean + "-wal");
                auto faulty = std::make_shared<FaultyKeyboard>(std::make_shared<VirtualQX9>(), fault, k);
                ops::Outcome outcome;
                {
                    DeviceSQLite db = DeviceSQLite::atPath(clean);
                    DeviceComm comm(faulty, recorder_.get());
                    outcome = change({db, &comm});
                }
                // A busy answer the resend cures is no fault; any other fault is said.
                EXPECT_EQ(outcome.status, fault == FaultyKeyboard::kBusyOnce ? ops::Outcome::kDone : ops::Outcome::kNotSent);
                EXPECT_EQ(dumpDatabase(clean), expected);
            }
        }
    }
    for (const char* suffix : {"", "-wal", "-shm"}) std::filesystem::remove(clean + suffix);
}

}  // namespace
}  // namespace qx9::test

namespace qx9::test {
namespace {

// Recorded macros are keystrokes: the folders the application makes and its database are the
// user's alone, whatever the umask.
TEST(DatabaseFile, FoldersAndFileAreTheUsersAloneWhateverTheUmask) {
    namespace fs = std::filesystem;
    const fs::path base = fs::temp_directory_path() / ("qx9-perm-" + std::to_string(::getpid()));
    fs::create_directories(base);
    const mode_t previous = ::umask(0);
    { DeviceSQLite db = DeviceSQLite::atPath(base / "data" / "db" / "file.sqlite3"); }
    ::umask(previous);
    const auto mode = [](const fs::path& p) { return fs::status(p).permissions() & fs::perms::all; };
    EXPECT_EQ(mode(base / "data"), fs::perms::owner_all);
    EXPECT_EQ(mode(base / "data" / "db"), fs::perms::owner_all);
    EXPECT_EQ(mode(base / "data" / "db" / "file.sqlite3"), fs::perms::owner_read | fs::perms::owner_write);
    EXPECT_NE(mode(base), fs::perms::owner_all);  // a folder that was there stays as it was
    fs::remove_all(base);
}

}  // namespace
}  // namespace qx9::test

namespace qx9::test {
namespace {

// After any sequence of valid changes, an export imports into a fresh database and gives the
// same document back.
TEST_F(OpsTest, AnyConfigurationExportsAndImportsBackUnchanged) {
    std::mt19937 random(7);
    const auto pick = [&](int n) { return std::uniform_int_distribution<int>(0, n - 1)(random); };
    const std::vector<KeyData>& keys = ops::paintableKeys();
    for (int sequence = 0; sequence < 12; ++sequence) {
        const ops::Target t{db_};
        for (int step = 0; step < 30; ++step) {
            std::vector<ProfileData> profiles;
            db_.queryProfileList(profiles);
            const std::int64_t profile = profiles[static_cast<std::size_t>(pick(static_cast<int>(profiles.size())))].profId;
            const std::int64_t key = keys[static_cast<std::size_t>(pick(static_cast<int>(keys.size())))].keycode;
            std::int64_t id = 0, mode = 0;
            switch (pick(9)) {
                case 0: ops::addProfile(t, ops::newProfileName(profiles.size()), id); break;
                case 1: ops::renameProfile(t, profile, "P\\t" + std::to_string(step)); break;
                case 2: ops::deleteProfile(t, profile); break;
                case 3: ops::assignKey(t, profile, pick(2), key, *ops::listFunction(kMacroTypeMouse, static_cast<std::size_t>(pick(8)))); break;
                case 4: ops::assignKey(t, profile, 0, key, *ops::capturedKeysFunction({225, key})); break;
                case 5:
                    if (ops::addMacro(t, ops::newMacroName(static_cast<std::size_t>(db_.countMacros())), id)) {
                        ops::saveMacro(t, id, *ops::keyPressEvents(key), pick(3), pick(500), db_.countMacros());
                    }
                    break;
                case 6: ops::selectProfile(t, profile, mode), ops::setLightColour(t, profile, pick(20), 1, 2, 3); break;
                case 7:
                    if (ops::addUserLight(t, ops::newUserLightName(0), id)) ops::paintKeys(t, id, {key}, 0x010203u * pick(80));
                    break;
                default: ops::setFnMode(t, pick(2) == 1, {}); break;
            }
        }
        std::string error;
        const std::optional<std::string> document = ops::exportConfiguration(db_, error);
        ASSERT_TRUE(document) << error;
        const std::filesystem::path copy = file_.string() + ".copy";
        {
            DeviceSQLite fresh = DeviceSQLite::atPath(copy);
            ASSERT_EQ(ops::importConfiguration({fresh}, *document).message, "") << sequence;
            EXPECT_EQ(ops::exportConfiguration(fresh, error), document) << sequence;
        }
        for (const char* suffix : {"", "-wal", "-shm"}) std::filesystem::remove(copy.string() + suffix);
    }
}

}  // namespace
}  // namespace qx9::test
