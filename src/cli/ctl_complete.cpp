// qx9ctl __complete WORD…: the words the last word completes to, read from the grammar the
// parse uses, so that the bash completion offers what the command line takes. Ids come from the
// database --db names, read when the file exists (completing never creates one).
#include <filesystem>
#include <set>

#include "cli/ctl_grammar.h"
#include "layout/key_maps.h"
#include "ops/user_lights.h"
#include "store/config_keys.h"

namespace qx9::ctl {

namespace {

// "file names after LEAD": the bash completion lists them.
constexpr const char* kFiles = "FILES\t";
const std::vector<std::string> kMouse = {"mouse:left", "mouse:middle", "mouse:right"};

// Where the words before the last one leave the command line.
struct Position {
    const CLI::App* app = nullptr;
    std::size_t arguments = 0;               // positional words the command took
    const CLI::Option* pending = nullptr;    // an option whose value comes next
    bool positionalOnly = false;             // after --
    std::string db;
};

bool isOption(const std::string& w) { return w.size() > 1 && w[0] == '-' && !parseNumber(w); }

// An option of `app` or of a command above it (the options are read after a command too).
const CLI::Option* findOption(const CLI::App* app, const std::string& name) {
    for (; app; app = app->get_parent()) {
        for (const CLI::Option* o : app->get_options()) {
            if (!o->get_positional() && o->check_name(name)) return o;
        }
    }
    return nullptr;
}

std::vector<const CLI::App*> commands(const CLI::App* app) {
    return app->get_subcommands([](const CLI::App*) { return true; });
}

Position walk(const CLI::App& root, const std::vector<std::string>& words) {
    Position p;
    p.app = &root;
    for (const std::string& w : words) {
        if (p.pending) {
            if (p.pending->check_name("--db")) p.db = w;
            p.pending = nullptr;
        } else if (!p.positionalOnly && w == "--") {
            p.positionalOnly = true;
        } else if (!p.positionalOnly && isOption(w)) {
            const std::size_t equals = w.find('=');
            const CLI::Option* o = findOption(p.app, w.substr(0, equals));
            if (o && equals == std::string::npos && o->get_type_size() > 0) p.pending = o;
            if (o && equals != std::string::npos && o->check_name("--db")) p.db = w.substr(equals + 1);
        } else {
            const CLI::App* next = nullptr;
            for (const CLI::App* sub : commands(p.app)) {
                if (p.arguments == 0 && sub->check_name(w)) next = sub;
            }
            if (next) p = Position{next, 0, nullptr, false, p.db};
            else ++p.arguments;
        }
    }
    return p;
}

std::vector<std::string> ids(const std::string& db, Source source) {
    const std::filesystem::path file = DeviceSQLite::fileFor(db);
    std::error_code ec;
    if (file.empty() || !std::filesystem::is_regular_file(file, ec)) return {};
    const std::unique_ptr<DeviceSQLite> store = DeviceSQLite::openForReading(file);
    std::vector<std::string> words;
    if (source == Source::kProfiles) {
        std::vector<ProfileData> profiles;
        store->queryProfileList(profiles);
        for (const ProfileData& p : profiles) words.push_back(std::to_string(p.profId));
    } else if (source == Source::kMacros) {
        std::vector<MacroInfo> macros;
        store->queryAllMacroData(macros);
        for (const MacroInfo& m : macros) words.push_back(std::to_string(m.macroId));
    } else {
        std::vector<UserLightData> sets;
        store->getUserLightData(kSettingsProfile, sets);
        for (const UserLightData& s : sets) words.push_back(std::to_string(s.userlight_id));
    }
    return words;
}

std::vector<std::string> keyNames(const std::string& lead, bool paintable) {
    std::vector<std::string> words;
    for (const KeyNameEntry& e : G_KB_SuperKeyNameMap.entries()) {
        if (G_KB_SuperKeyCodeMap.contains(e.key_code) && (!paintable || ops::paintablePosition(e.key_code))) {
            words.push_back(lead + e.name);
        }
    }
    return words;
}

std::vector<std::string> prefixed(const std::string& lead, const std::vector<std::string>& words) {
    std::vector<std::string> out;
    for (const std::string& w : words) out.push_back(lead + w);
    return out;
}

// What an argument or option value completes to, given what is typed of it.
std::vector<std::string> values(const Grammar& g, const CLI::Option* option, const std::string& typed, const std::string& db) {
    const Completion* c = g.completion(option);
    if (!c) return {};
    std::vector<std::string> words = c->words;
    const auto add = [&](const std::vector<std::string>& more) { words.insert(words.end(), more.begin(), more.end()); };
    switch (c->source) {
        case Source::kWords: break;
        case Source::kFiles: words.push_back(kFiles); break;
        case Source::kProfiles:
        case Source::kMacros:
        case Source::kSets: add(ids(db, c->source)); break;
        case Source::kKeys:
        case Source::kPaintableKeys: add(keyNames("", c->source == Source::kPaintableKeys)); break;
        case Source::kDevice: {
            if (typed.starts_with("virtual:")) return {std::string(kFiles) + "virtual:"};
            add({"auto", "virtual", "virtual:"});
            std::error_code ec;
            for (const auto& entry : std::filesystem::directory_iterator("/dev", ec)) {
                if (entry.path().filename().string().starts_with("hidraw")) words.push_back(entry.path().string());
            }
            break;
        }
        case Source::kEvent:
            if (typed.starts_with("key:")) return keyNames("key:", false);
            add({"key:", "mouse:", "delay:"});
            add(kMouse);
            break;
        case Source::kFunction:
            if (typed.starts_with("macro:")) return prefixed("macro:", ids(db, Source::kMacros));
            if (typed.starts_with("key:") || typed.starts_with("combo:")) {
                return keyNames(typed.substr(0, typed.find(':') + 1), false);
            }
            add({"default", "disable", "key:", "combo:", "macro:", "mouse:", "media:", "mac:"});
            break;
    }
    return words;
}

// The argument of `app` that the next positional word fills.
const CLI::Option* argumentAt(const CLI::App* app, std::size_t index) {
    for (const CLI::Option* o : app->get_options([](const CLI::Option* o) { return o->get_positional(); })) {
        const auto count = static_cast<std::size_t>(std::max(o->get_items_expected_max(), 0));
        if (index < count) return o;
        index -= count;
    }
    return nullptr;
}

}  // namespace

void complete(const Grammar& g, const std::vector<std::string>& words, std::ostream& out) {
    const std::string typed = words.empty() ? "" : words.back();
    const Position p = walk(g.root(), std::vector<std::string>(words.begin(), words.end() - (words.empty() ? 0 : 1)));
    std::string lead;  // what the candidates start with beyond the option's value
    std::vector<std::string> candidates;
    if (p.pending) {
        candidates = values(g, p.pending, typed, p.db);
    } else if (!p.positionalOnly && typed.starts_with("-")) {
        const std::size_t equals = typed.find('=');
        if (equals != std::string::npos) {
            lead = typed.substr(0, equals + 1);
            if (const CLI::Option* o = findOption(p.app, typed.substr(0, equals))) candidates = values(g, o, typed.substr(equals + 1), p.db);
        } else {
            for (const CLI::App* app = p.app; app; app = app->get_parent()) {
                for (const CLI::Option* o : app->get_options()) {
                    for (const std::string& name : o->get_lnames()) candidates.push_back("--" + name);
                }
            }
        }
    } else {
        if (p.arguments == 0) {
            for (const CLI::App* sub : commands(p.app)) candidates.push_back(sub->get_name());
        }
        if (const CLI::Option* argument = argumentAt(p.app, p.arguments)) {
            const std::vector<std::string> more = values(g, argument, typed, p.db);
            candidates.insert(candidates.end(), more.begin(), more.end());
        }
    }
    std::set<std::string> printed;  // an option of the command and of its parent: once
    for (const std::string& c : candidates) {
        if (!printed.insert(c).second) continue;
        if (c.starts_with(kFiles)) out << kFiles << lead << c.substr(std::string(kFiles).size()) << '\n';
        else if (asciiLower(lead + c).starts_with(asciiLower(typed))) out << lead << c << '\n';
    }
}

}  // namespace qx9::ctl
