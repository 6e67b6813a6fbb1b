// Export and import of the whole configuration as one JSON document.
//
// Import checks the whole document before it touches the database, then has the store replace
// the contents of the application's tables in one transaction of its connection: all or nothing
// (also across a crash), and the tables that hold nothing of the features are left alone.
// (Building a second file and renaming it over the first would leave another process's open
// connection, and the write-ahead log beside the file, pointing at the old one.)
#include "ops/configuration.h"

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <fstream>
#include <nlohmann/json.hpp>
#include <unordered_set>

#include "layout/key_maps.h"
#include "ops/history.h"
#include "ops/key_assignment.h"
#include "ops/settings.h"
#include "ops/user_lights.h"
#include "ops/macros.h"
#include "i18n/language.h"

namespace qx9::ops {

namespace {

using Json = nlohmann::ordered_json;  // written: the parts in their order
using ReadJson = nlohmann::json;      // read: faster lookups

std::string hexColour(std::int64_t v) {
    char buf[24];
    std::snprintf(buf, sizeof buf, v >= 0 ? "%06llX" : "-%06llX",
                  static_cast<unsigned long long>(v >= 0 ? v : -v));
    return buf;
}

// ---- Checking a document -----------------------------------------------------------------

struct Invalid {
    std::string message;
};

class RowReader {
public:
    RowReader(const ReadJson& row, std::string where, std::initializer_list<const char*> fields)
        : row_(row), where_(std::move(where)) {
        if (!row.is_object()) fail("is not an object");
        for (const auto& [name, value] : row.items()) {
            bool known = false;
            for (const char* f : fields) known = known || name == f;
            if (!known) fail("has an unknown field \"" + name + "\"");
        }
    }
    const ReadJson& field(const char* name) const {
        const auto it = row_.find(name);
        if (it == row_.end()) fail("lacks \"" + std::string(name) + "\"");
        return *it;
    }
    std::int64_t integer(const char* name, std::int64_t lo = INT64_MIN, std::int64_t hi = INT64_MAX) const {
        const ReadJson& v = field(name);
        if (!v.is_number_integer() || (v.is_number_unsigned() && v.get<std::uint64_t>() > INT64_MAX)) {
            fail("." + std::string(name) + " is not a whole number");
        }
        const auto n = v.get<std::int64_t>();
        if (n < lo || n > hi) {
            fail("." + std::string(name) + " is " + std::to_string(n) + ", not " + std::to_string(lo) + "-" +
                 (hi == INT64_MAX ? std::string("") : std::to_string(hi)));
        }
        return n;
    }
    std::int64_t id(const char* name = "id") const { return integer(name, 1); }
    std::string text(const char* name) const {
        const ReadJson& v = field(name);
        if (!v.is_string()) fail("." + std::string(name) + " is not a text");
        return v.get<std::string>();
    }
    std::optional<std::string> optionalText(const char* name) const {
        if (field(name).is_null()) return std::nullopt;
        return text(name);
    }
    [[noreturn]] void fail(const std::string& what) const {
        throw Invalid{where_ + (what.starts_with(".") ? "" : " ") + what};
    }
    const std::string& where() const { return where_; }

private:
    const ReadJson& row_;
    std::string where_;
};

const ReadJson& table(const ReadJson& doc, const char* name) {
    const auto it = doc.find(name);
    if (it == doc.end()) throw Invalid{"\"" + std::string(name) + "\" is missing"};
    if (!it->is_array()) throw Invalid{"\"" + std::string(name) + "\" is not a list"};
    return *it;
}

// Reads every row of one table, checking that ids are unique.
template <typename T, typename Read>
std::vector<T> rows(const ReadJson& doc, const char* name, std::initializer_list<const char*> fields, Read read) {
    std::vector<T> out;
    std::unordered_set<std::int64_t> ids;
    const ReadJson& list = table(doc, name);
    out.reserve(list.size());
    for (std::size_t i = 0; i < list.size(); ++i) {
        RowReader r(list[i], std::string(name) + "[" + std::to_string(i) + "]", fields);
        const std::int64_t id = r.id();
        if (!ids.insert(id).second) r.fail("has the id " + std::to_string(id) + " of an earlier row");
        out.push_back(read(r, id));
    }
    return out;
}

bool isDecimal(const std::string& text) {
    if (text.empty()) return true;  // reads as 0
    std::string_view digits = text;
    if (digits.front() == '+') digits.remove_prefix(1);
    std::int64_t v = 0;
    const char* end = digits.data() + digits.size();
    const auto [ptr, ec] = std::from_chars(digits.data(), end, v);
    return !digits.empty() && ec == std::errc() && ptr == end;
}

const KeyCodeMap& keyCodes() { return G_KB_SuperKeyCodeMap.empty() ? KB_108K_SuperKeyCodeMap() : G_KB_SuperKeyCodeMap; }

std::int64_t keyOf(const RowReader& r) {
    const std::int64_t key = r.integer("key");
    if (!keyCodes().contains(static_cast<int>(key)) || key != static_cast<int>(key)) {
        r.fail(".key " + std::to_string(key) + " is not a key of the QX9");
    }
    return key;
}

Configuration parseDocument(const ReadJson& doc) {
    if (!doc.is_object() || !doc.contains("format") || doc["format"] != kConfigurationFormat) {
        throw Invalid{"it is not a QX9 configuration (no \"format\": \"" + std::string(kConfigurationFormat) + "\")"};
    }
    const auto version = doc.find("version");
    if (version == doc.end() || !version->is_number_integer()) throw Invalid{"it has no format version"};
    if (*version != kConfigurationVersion) {
        throw Invalid{"it is of format version " + version->dump() + "; this version reads version " +
                      std::to_string(kConfigurationVersion)};
    }
    for (const auto& [name, value] : doc.items()) {
        static const std::unordered_set<std::string> known = {
            "format", "version", "profiles", "configurationValues", "keyAssignments", "lighting",
            "userLights", "userLightColours", "macros", "macroEvents"};
        if (!known.contains(name)) throw Invalid{"it has an unknown part \"" + name + "\""};
    }

    Configuration c;
    c.profiles = rows<ProfileData>(doc, "profiles", {"id", "name"}, [](const RowReader& r, std::int64_t id) {
        return ProfileData{id, r.text("name")};
    });
    // Profile 1 may be missing: it can be deleted like any other.

    c.configurationValues = rows<ConfigValueRow>(
        doc, "configurationValues", {"id", "profile", "key", "value"}, [](const RowReader& r, std::int64_t id) {
            ConfigValueRow v{id, r.integer("profile"), r.text("key"), r.text("value")};
            if (!isDecimal(v.value)) r.fail(".value \"" + v.value + "\" is not a decimal integer");
            // The application's settings take only the values it writes.
            if (v.profId == kSettingsProfile && !v.value.empty()) {
                std::int64_t n = 0;
                const std::string_view s = v.value.starts_with('+') ? std::string_view(v.value).substr(1) : v.value;
                std::from_chars(s.data(), s.data() + s.size(), n);
                const auto allowed = [&](std::initializer_list<std::int64_t> values, const char* shown) {
                    if (std::find(values.begin(), values.end(), n) == values.end()) {
                        r.fail(".value of \"" + v.key + "\" is " + v.value + ", not " + shown);
                    }
                };
                if (v.key == kLanguage) allowed({kLanguageEnglish, kLanguageSimplifiedChinese, kLanguageTraditionalChinese}, "1033, 2052 or 1028");
                else if (v.key == kSleepLight) allowed({0, 1, 2, 3}, "0-3");
                else if (v.key == kGameMode || v.key == kBlockAltTab || v.key == kBlockAltF4 || v.key == kBlockWin ||
                         v.key == kFnFunction) {
                    allowed({0, 1}, "0 or 1");
                }
            }
            return v;
        });

    c.keyAssignments = rows<ProfileKey>(
        doc, "keyAssignments", {"id", "profile", "layer", "key", "type", "value", "value2", "value3", "text"},
        [](const RowReader& r, std::int64_t id) {
            ProfileKey k;
            k.keyId = id;
            k.profId = r.integer("profile");
            k.fnlayerId = r.integer("layer", 0, 1);
            k.keyValue = keyOf(r);
            k.macroType = r.integer("type");
            static const std::unordered_set<std::int64_t> types = {1, 2, 3, 4, 6, 7, 8, 14};
            if (!types.contains(k.macroType)) r.fail(".type " + std::to_string(k.macroType) + " is not a key function");
            // What the key-mapping block carries as bytes.
            const bool key = k.macroType == kMacroTypeKey, combination = k.macroType == kMacroTypeCombination;
            k.macroValue = combination ? r.integer("value", 0, 255) : r.integer("value");
            if (key && !(k.macroValue >= 0 && k.macroValue <= 255) && !(k.macroValue >= 500 && k.macroValue <= 517)) {
                r.fail(".value " + std::to_string(k.macroValue) + " is not a key code (0-255, 500-517)");
            }
            // The functions of a list take the values of their list.
            if (const auto& list = functionChoices(k.macroType); !list.empty() &&
                                                                  (k.macroValue < 1 || k.macroValue > static_cast<std::int64_t>(list.size()))) {
                r.fail(".value " + std::to_string(k.macroValue) + " is not 1-" + std::to_string(list.size()));
            }
            if (k.macroType == kMacroTypeDisabled && k.macroValue != 0 && k.macroValue != 1) {
                r.fail(".value " + std::to_string(k.macroValue) + " is not 0 or 1");
            }
            const bool macro = k.macroType == kMacroTypeMacro;
            const bool bytes = key || combination || macro;
            k.macro2Value = macro ? r.integer("value2", kPlayOnce, kPlayUntilPressedAgain)
                                  : bytes ? r.integer("value2", 0, 255) : r.integer("value2");
            k.macro3Value = combination || macro ? r.integer("value3", 0, 255) : r.integer("value3");
            k.macroDesc = r.text("text");
            return k;
        });

    c.lighting = rows<LightRow>(doc, "lighting", {"id", "profile", "name", "mode", "bytes", "status"},
                                [](const RowReader& r, std::int64_t id) {
                                    LightRow l;
                                    l.lightId = id;
                                    l.profId = r.integer("profile");
                                    l.name = r.optionalText("name");
                                    l.mode = r.integer("mode", 0, 20);
                                    const ReadJson& bytes = r.field("bytes");
                                    if (!bytes.is_array() || bytes.size() != l.bytes.size()) r.fail(".bytes is not a list of 11 bytes");
                                    for (std::size_t i = 0; i < l.bytes.size(); ++i) {
                                        if (!bytes[i].is_number_integer() || bytes[i].get<std::int64_t>() < 0 ||
                                            bytes[i].get<std::int64_t>() > 255) {
                                            r.fail(".bytes[" + std::to_string(i) + "] is not a byte 0-255");
                                        }
                                        l.bytes[i] = bytes[i].get<std::int64_t>();
                                    }
                                    l.status = r.integer("status", 0, 1);
                                    return l;
                                });

    c.userLights = rows<UserLightData>(doc, "userLights", {"id", "profile", "name", "speed", "brightness"},
                                       [](const RowReader& r, std::int64_t id) {
                                           return UserLightData{id, r.integer("profile"), r.text("name"),
                                                                r.integer("speed", 0, 255), r.integer("brightness", 0, 255)};
                                       });

    c.userLightColours = rows<UserLightLEDData>(
        doc, "userLightColours", {"id", "set", "key", "colour"}, [](const RowReader& r, std::int64_t id) {
            const std::int64_t set = r.integer("set");
            const std::int64_t key = keyOf(r);
            const std::string colour = r.text("colour");
            std::uint32_t v = 0;
            const auto [ptr, ec] = std::from_chars(colour.data(), colour.data() + colour.size(), v, 16);
            if (colour.size() != 6 || ec != std::errc() || ptr != colour.data() + colour.size()) {
                r.fail(".colour \"" + colour + "\" is not RRGGBB");
            }
            return UserLightLEDData{id, set, key, v};
        });

    c.macros = rows<MacroInfo>(doc, "macros", {"id", "name", "playTimes", "delayType", "delayTime"},
                               [](const RowReader& r, std::int64_t id) {
                                   return MacroInfo{id, r.integer("playTimes", 0, kMaxPlayCount),
                                                    r.integer("delayType", kRecordingDelay, kDefaultDelay),
                                                    r.integer("delayTime", 0, kMaxRecordedDelay), r.text("name")};
                               });
    if (static_cast<std::int64_t>(c.macros.size()) > kMaxMacros) {
        throw Invalid{"it has " + std::to_string(c.macros.size()) + " macros; the keyboard holds at most " +
                      std::to_string(kMaxMacros)};
    }

    c.macroEvents = rows<RecordInfo>(
        doc, "macroEvents", {"id", "macro", "type", "index", "value", "text"}, [](const RowReader& r, std::int64_t id) {
            RecordInfo e;
            e.recordId = id;
            e.macroId = r.integer("macro");
            e.recordType = r.integer("type", kRecordDelay, kRecordMouseUp);
            e.recordIndex = r.integer("index");
            const bool key = e.recordType == kRecordKeyDown || e.recordType == kRecordKeyUp;
            constexpr std::int64_t kMouseButtons = 3;  // left, middle, right
            e.recordValue = key                              ? r.integer("value", 0, 255)
                            : e.recordType == kRecordDelay ? r.integer("value", 0, kMaxRecordedDelay)
                                                           : r.integer("value", 1, kMouseButtons);
            e.recordDesc = r.text("text");
            return e;
        });
    return c;
}

}  // namespace

// ---- The document --------------------------------------------------------------------------

std::string configurationDocument(const Configuration& c) {
    Json doc = Json::object();
    doc["format"] = kConfigurationFormat;
    doc["version"] = kConfigurationVersion;
    Json& profiles = doc["profiles"] = Json::array();
    for (const ProfileData& p : c.profiles) profiles.push_back({{"id", p.profId}, {"name", p.name}});
    Json& values = doc["configurationValues"] = Json::array();
    for (const ConfigValueRow& v : c.configurationValues) {
        values.push_back({{"id", v.keyId}, {"profile", v.profId}, {"key", v.key}, {"value", v.value}});
    }
    Json& keys = doc["keyAssignments"] = Json::array();
    for (const ProfileKey& k : c.keyAssignments) {
        keys.push_back({{"id", k.keyId}, {"profile", k.profId}, {"layer", k.fnlayerId}, {"key", k.keyValue},
                        {"type", k.macroType}, {"value", k.macroValue}, {"value2", k.macro2Value},
                        {"value3", k.macro3Value}, {"text", k.macroDesc}});
    }
    Json& lighting = doc["lighting"] = Json::array();
    for (const LightRow& l : c.lighting) {
        lighting.push_back({{"id", l.lightId}, {"profile", l.profId}, {"name", l.name ? Json(*l.name) : Json()},
                            {"mode", l.mode}, {"bytes", l.bytes}, {"status", l.status}});
    }
    Json& sets = doc["userLights"] = Json::array();
    for (const UserLightData& u : c.userLights) {
        sets.push_back({{"id", u.userlight_id}, {"profile", u.profile_id}, {"name", u.userlight_name},
                        {"speed", u.speed}, {"brightness", u.brightness}});
    }
    Json& colours = doc["userLightColours"] = Json::array();
    for (const UserLightLEDData& l : c.userLightColours) {
        colours.push_back({{"id", l.led_id}, {"set", l.userlight_id}, {"key", l.key_value}, {"colour", hexColour(l.key_rgbvalue)}});
    }
    Json& macros = doc["macros"] = Json::array();
    for (const MacroInfo& m : c.macros) {
        macros.push_back({{"id", m.macroId}, {"name", m.macroName}, {"playTimes", m.playTimes},
                          {"delayType", m.delayType}, {"delayTime", m.delayTime}});
    }
    Json& events = doc["macroEvents"] = Json::array();
    for (const RecordInfo& e : c.macroEvents) {
        events.push_back({{"id", e.recordId}, {"macro", e.macroId}, {"type", e.recordType}, {"index", e.recordIndex},
                          {"value", e.recordValue}, {"text", e.recordDesc}});
    }
    return doc.dump(1, '\t', false, Json::error_handler_t::replace) + "\n";
}

std::optional<Configuration> parseConfigurationDocument(std::string_view text, std::string& error) {
    const ReadJson doc = ReadJson::parse(text.begin(), text.end(), nullptr, false);
    if (doc.is_discarded()) {
        error = "not a QX9 configuration: it is not a complete JSON document";
        return std::nullopt;
    }
    try {
        return parseDocument(doc);
    } catch (const Invalid& e) {
        error = "not a valid QX9 configuration: " + e.message;
        return std::nullopt;
    } catch (const ReadJson::exception& e) {
        error = std::string("not a valid QX9 configuration: ") + e.what();
        return std::nullopt;
    }
}

// ---- Export and import ----------------------------------------------------------------------

Outcome readDocumentFile(const std::filesystem::path& file, std::string& text) {
    std::error_code ec;
    const auto status = std::filesystem::status(file, ec);
    if (ec || !std::filesystem::exists(status)) return Outcome::notRead("cannot read " + file.string());
    if (!std::filesystem::is_regular_file(status)) return Outcome::notRead(file.string() + " is not a file");
    const std::uintmax_t size = std::filesystem::file_size(file, ec);
    if (ec || size > kMaxDocumentBytes) {
        return Outcome::notRead(file.string() + " is larger than a configuration can be (" +
                                std::to_string(kMaxDocumentBytes >> 20) + " MiB)");
    }
    std::ifstream in(file, std::ios::binary);
    text.assign(static_cast<std::size_t>(size), '\0');
    if (!in || !in.read(text.data(), static_cast<std::streamsize>(size)) || in.peek() != std::ifstream::traits_type::eof()) {
        return Outcome::notRead("cannot read " + file.string());
    }
    return Outcome::done();
}

Outcome checkConfigurationDocument(std::string_view text) {
    std::string error;
    if (!parseConfigurationDocument(text, error)) return Outcome::refused(Reason::kNotAConfiguration, {error});
    return Outcome::done();
}

Outcome exportConfiguration(const DeviceSQLite& db, std::string& document) {
    std::string error;
    const std::optional<Configuration> c = db.readConfiguration(error);
    if (!c) return Outcome::notRead("cannot export: " + error);
    document = configurationDocument(*c);
    return Outcome::done();
}

Outcome importConfiguration(const Target& target, std::string_view document) {
    std::string error;
    const std::optional<Configuration> c = parseConfigurationDocument(document, error);
    if (!c) return Outcome::refused(Reason::kNotAConfiguration, {error});
    std::vector<BlockRequest> blocks;
    {
        DeviceSQLite::Transaction transaction = target.db.beginStep();
        if (!target.db.replaceConfiguration(*c, error)) return Outcome::notStored(error + "; the database is unchanged");
        // Everything goes to the keyboard again, profile 1's key map with the macros.
        // The effect first: a per-key set, when there is one, is what the keyboard then shows, as
        // after a connection.
        blocks = {SendLightModeData(kSettingsProfile, kSettingsProfile)};
        for (const BlockRequest& b : wholeConfiguration(target.db)) blocks.push_back(b);
        blocks.push_back(SaveMacroToKeyboard());
        if (!storeKeyboardProfile(target.db, kSettingsProfile) || !storeSetting(target.db, kMacroDeletions, "0") ||
            !commitStep(transaction, {"import", {}}, blocks)) {
            return Outcome::notStored("cannot write the database; the database is unchanged");
        }
    }
    return send(target, blocks);
}

std::vector<BlockRequest> wholeConfiguration(const DeviceSQLite& db) {
    std::vector<BlockRequest> blocks;
    std::vector<UserLightData> sets;
    db.getUserLightData(kSettingsProfile, sets);
    if (!sets.empty()) blocks.push_back(SendUserLightLedData(sets.front().userlight_id));
    blocks.push_back(SendSystemFunctionData());
    blocks.push_back(SendKeyMacroData(kSettingsProfile, 0));
    return blocks;
}

Outcome connectKeyboard(const Target& target) {
    std::vector<BlockRequest> blocks;
    {
        DeviceSQLite::Transaction transaction = target.db.beginTransaction();
        target.db.writeLightProfile(kSettingsProfile);
        if (!storeKeyboardProfile(target.db, kSettingsProfile) || !transaction.commit()) {
            return Outcome::notStored("the database did not take the connection");
        }
        blocks = wholeConfiguration(target.db);
    }
    return send(target, blocks);
}

}  // namespace qx9::ops
