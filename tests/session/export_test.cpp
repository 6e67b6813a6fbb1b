#include "session/session_fixture.h"

#include <nlohmann/json.hpp>

#include "ops/configuration.h"

namespace qx9::test {
namespace {

using Json = nlohmann::ordered_json;

struct OtherSession {
    explicit OtherSession(const std::filesystem::path& file) : session(openSession(file, recorder, events)) {
        connectKeyboard(*session, keyboard);
    }
    std::shared_ptr<VirtualQX9> keyboard = std::make_shared<VirtualQX9>();
    std::shared_ptr<WireRecorder> recorder = std::make_shared<WireRecorder>();
    RecordingEvents events;
    std::unique_ptr<KeyboardSession> session;
};

class ExportTest : public ConnectedSessionTest {
protected:
    // Something of everything kept, including rows whose owner was deleted.
    void fill() {
        KeyboardSession& s = *session_;
        DeviceSQLite& db = *s.core.db();
        s.profiles.customkey_button_profile(ProfileList::kAdd);  // 2
        s.profiles.customkey_button_profile(ProfileList::kAdd);  // 3
        s.profiles.setKeyProfileTableSelect(1);
        s.profiles.keyTableItemViewEdit(1, "Games");
        db.writeLightProfile(2);
        db.addKeyProfile({.profId = 1, .keyValue = 4, .macroType = kMacroTypeKey, .macroValue = 5, .macroDesc = ""});  // a → b
        db.addKeyProfile({.fnlayerId = 1, .profId = 1, .keyValue = 41, .macroType = kMacroTypeCombination,
                          .macroValue = 30, .macro2Value = 225, .macroDesc = ""});
        db.addKeyProfile({.profId = 3, .keyValue = 44, .macroType = kMacroTypeDisabled, .macroValue = 1, .macroDesc = ""});
        db.updateConfigData(1, "gamemode", "1");
        db.modifyLightData(2, 4, std::vector<std::uint8_t>{4, 1, 2, 3, 0, 0, 0, 0, 0, 9, 8, 1});
        const std::int64_t macro = db.addMacroProfile("Macro1");
        db.addMacroRecord({0, macro, kRecordKeyDown, 0, 4, "A"});
        db.addMacroRecord({0, macro, kRecordDelay, 1, 120, "120"});
        db.addMacroRecord({0, macro, kRecordKeyUp, 2, 4, "A"});
        db.modifyMacroInfo({macro, 3, 2, 15, ""});
        db.addKeyProfile({.profId = 1, .keyValue = 5, .macroType = kMacroTypeMacro, .macroValue = macro,
                          .macro2Value = 1, .macro3Value = 3, .macroDesc = ""});
        s.userLights.addUserLight();
        s.userLights.addUserLight();
        const std::int64_t gone = s.userLights.userlight_id();
        db.addUserLightLEDData({0, gone, 44, 0x00FF00});  // space, in a set deleted below
        s.userLights.delUserLight();
        db.addUserLightLEDData({0, s.userLights.userlight_datas()[0].light, 41, 0x12ABEF});  // escape
        s.profiles.setKeyProfileTableSelect(2);
        s.profiles.customkey_button_profile(ProfileList::kDelete);  // profile 3: its key stays
    }
    std::string exported() {
        std::string doc;
        const ops::Outcome exported = ops::exportConfiguration(*session_->core.db(), doc);
        EXPECT_TRUE(exported) << ops::describe(exported);
        return doc;
    }
};

TEST_F(ExportTest, ImportIntoAnotherDatabaseGivesTheSameOneAndSendsWhatAFirstConnectionSends) {
    fill();
    for (const bool withoutProfileOne : {false, true}) {
        if (withoutProfileOne) {
            session_->profiles.setKeyProfileTableSelect(0);
            session_->profiles.customkey_button_profile(ProfileList::kDelete);
            ASSERT_EQ(sql("SELECT COUNT(*) FROM t_profile WHERE profId = 1"), "0");
        }
        const std::string doc = exported();
        const auto file = dir_ / (withoutProfileOne ? "other2.sqlite3" : "other1.sqlite3");
        std::vector<Bytes> imported;
        VirtualQX9Memory memory;
        {
            OtherSession other(file);
            other.session->core.db()->addMacroProfile("replaced");  // gone after the import
            other.recorder->events.clear();
            ASSERT_TRUE(ops::importConfiguration(*other.session->core.target(), doc));
            imported = setsOf(other.recorder->events);
            memory = other.keyboard->memory();
            // The same configuration; what each keyboard was last sent is each database's own.
            for (const auto& f : {file, dbPath_}) {
                ASSERT_TRUE(sqlExec(f.string(), "DELETE FROM t_configdata WHERE key IN ('keyboard_profile', 'macro_deletions')"));
            }
            EXPECT_EQ(dumpDatabase(file), dumpDatabase(dbPath_)) << withoutProfileOne;
        }
        OtherSession fresh(file);  // a first connection to the imported database
        // The effect, then what a first connection sends, then the macros.
        const std::vector<Bytes> first = setsOf(fresh.recorder->events);
        constexpr std::size_t kLightModeReports = 5;
        ASSERT_GT(imported.size(), kLightModeReports + first.size());
        EXPECT_EQ(imported[1], report("04 13 00 00 00 00 00 00 01"));
        EXPECT_EQ(std::vector<Bytes>(imported.begin() + kLightModeReports, imported.begin() + kLightModeReports + static_cast<std::ptrdiff_t>(first.size())), first);
        EXPECT_EQ(imported[kLightModeReports + first.size()], report("04 19"));
        if (withoutProfileOne) continue;
        ASSERT_EQ(decodeMacros(memory).size(), 1u);
        EXPECT_EQ(decodeMacros(memory)[0].events.size(), 3u);  // down, 120 ms, up
        EXPECT_EQ(keyColour(memory, 1), 0x12ABEFu);
        EXPECT_EQ(decodeLightMode(memory)->mode, 0x80);
        EXPECT_EQ(decodeSystemFunctions(memory)->gameMode, 1);
        EXPECT_EQ(keyRecord(memory, 0, 56), (std::array<std::uint8_t, 4>{2, 0, 5, 0}));  // a → b
    }
}

TEST_F(ExportTest, DamagedOrForeignDocumentsAreRefusedAndChangeNothing) {
    fill();
    const std::string good = exported();
    struct Case { const char* name; std::function<std::string(Json&)> damage; const char* message; };
    const auto setting = [](Json& d, const char* key, const char* value) {
        for (Json& row : d["configurationValues"]) {
            if (row["profile"] == 1 && row["key"] == key) row["value"] = value;
        }
        return d.dump();
    };
    const auto tooManyMacros = [](Json& d) {
        for (int id = 2; id <= ops::kMaxMacros + 1; ++id)
            d["macros"].push_back({{"id", id}, {"name", "M"}, {"playTimes", 0}, {"delayType", 0}, {"delayTime", 0}});
        return d.dump();
    };
    const Case cases[] = {
        {"not JSON", [](Json&) { return std::string("profiles: 1"); }, "not a complete JSON document"},
        {"cut short", [&](Json&) { return good.substr(0, good.size() / 2); }, "not a complete JSON document"},
        {"foreign", [](Json&) { return std::string(R"({"name": "Sunset", "colors": []})"); }, "not a QX9 configuration"},
        {"newer version", [](Json& d) { d["version"] = 2; return d.dump(); }, "format version 2"},
        {"part missing", [](Json& d) { d.erase("macros"); return d.dump(); }, "\"macros\" is missing"},
        {"unknown part", [](Json& d) { d["extras"] = Json::array(); return d.dump(); }, "unknown part \"extras\""},
        {"profile name", [](Json& d) { d["profiles"][0]["name"] = nullptr; return d.dump(); }, "profiles[0].name is not a text"},
        {"colour", [](Json& d) { d["userLightColours"][0]["colour"] = "GG0000"; return d.dump(); }, "userLightColours[0].colour \"GG0000\" is not RRGGBB"},
        {"colour key", [](Json& d) { d["userLightColours"][0]["key"] = 104; return d.dump(); }, "key 104 is not a key of the QX9"},
        {"assigned key", [](Json& d) { d["keyAssignments"][0]["key"] = 9999; return d.dump(); }, "keyAssignments[0].key 9999"},
        {"layer", [](Json& d) { d["keyAssignments"][0]["layer"] = 2; return d.dump(); }, "keyAssignments[0].layer is 2"},
        {"key function", [](Json& d) { d["keyAssignments"][0]["type"] = 5; return d.dump(); }, "not a key function"},
        {"light byte", [](Json& d) { d["lighting"][0]["bytes"][2] = 300; return d.dump(); }, "lighting[0].bytes[2] is not a byte"},
        {"light mode", [](Json& d) { d["lighting"][0]["mode"] = 21; return d.dump(); }, "lighting[0].mode is 21"},
        {"event type", [](Json& d) { d["macroEvents"][0]["type"] = 9; return d.dump(); }, "macroEvents[0].type is 9"},
        {"event key", [](Json& d) { d["macroEvents"][0]["value"] = 256; return d.dump(); }, "macroEvents[0].value is 256"},
        {"duplicate id", [](Json& d) { d["macroEvents"][2]["id"] = d["macroEvents"][0]["id"]; return d.dump(); }, "macroEvents[2] has the id"},
        {"fraction", [](Json& d) { d["macros"][0]["playTimes"] = 1.5; return d.dump(); }, "macros[0].playTimes is not a whole number"},
        {"text value", [](Json& d) { d["configurationValues"][2]["value"] = "on"; return d.dump(); }, "is not a decimal integer"},
        {"fn mode", [&](Json& d) { return setting(d, "fnfunction", "256"); }, "\"fnfunction\" is 256, not 0 or 1"},
        {"sleep time", [&](Json& d) { return setting(d, "sleeplight", "4"); }, "\"sleeplight\" is 4, not 0-3"},
        {"game mode", [&](Json& d) { return setting(d, "gamemode", "99999999999"); }, "is 99999999999, not 0 or 1"},
        {"language", [&](Json& d) { return setting(d, "language", "1031"); }, "not 1033, 2052 or 1028"},
        {"set speed", [](Json& d) { d["userLights"][0]["speed"] = -7; return d.dump(); }, "userLights[0].speed is -7"},
        {"mouse", [](Json& d) { d["keyAssignments"][0]["type"] = 6; d["keyAssignments"][0]["value"] = 99999; return d.dump(); },
         ".value 99999 is not 1-8"},
        {"play mode", [](Json& d) { d["keyAssignments"][3]["value2"] = 3; return d.dump(); }, "value2 is 3"},
        {"repeat count", [](Json& d) { d["macros"][0]["playTimes"] = 100000; return d.dump(); }, "playTimes is 100000"},
        {"unknown field", [](Json& d) { d["macros"][0]["colour"] = "red"; return d.dump(); }, "unknown field \"colour\""},
        {"row not object", [](Json& d) { d["userLights"][0] = 7; return d.dump(); }, "userLights[0] is not an object"},
        {"too many macros", tooManyMacros, "at most 100"},
    };
    const auto before = dumpDatabase(dbPath_);
    clearWire();
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        Json doc = Json::parse(good);
        const std::string text = c.damage(doc);
        const ops::Outcome refused = ops::importConfiguration(*session_->core.target(), text);
        EXPECT_EQ(refused.status, ops::Outcome::kRefused);
        EXPECT_NE(ops::describe(refused).find(c.message), std::string::npos) << ops::describe(refused);
        EXPECT_EQ(ops::describe(refused).find('\n'), std::string::npos);
    }
    EXPECT_EQ(dumpDatabase(dbPath_), before);
    EXPECT_TRUE(sets().empty());
    Json hundred = Json::parse(good);  // exactly as many as it addresses
    tooManyMacros(hundred);
    hundred["macros"].erase(ops::kMaxMacros);
    EXPECT_TRUE(ops::importConfiguration(*session_->core.target(), hundred.dump()));
}

}  // namespace
}  // namespace qx9::test
