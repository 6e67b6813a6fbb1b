// qx9ctl settings and fn-mode: the keyboard's system functions and the application's language.
// `settings show` prints each setting as the words that set it: `qx9ctl settings SETTING VALUE`.
#include <algorithm>

#include "cli/ctl_context.h"
#include "cli/ctl_grammar.h"
#include "i18n/language.h"
#include "ops/settings.h"

namespace qx9::ctl {

namespace {

const std::vector<std::string> kOnOff = {"on", "off"};
const std::vector<std::string> kFnModes = {"default", "fn"};
const std::vector<std::string> kBlocks = {"alttab", "altf4", "win"};
// The language words and the stored ids, in the same order.
const std::vector<std::string> kLanguages = {"en", "zh-CN", "zh-TW"};
constexpr int kLanguageIds[] = {kLanguageEnglish, kLanguageSimplifiedChinese, kLanguageTraditionalChinese};

struct Setting {
    std::string name;
    Field value;
};

std::vector<Setting> settings(Context& c) {
    DeviceSQLite& db = c.database();
    const auto on = [&](const char* key) { return db.getConfigData(ops::kSettingsProfile, key) == "1"; };
    std::string language = kLanguages.front();
    for (std::size_t i = 0; i < kLanguages.size(); ++i) {
        if (kLanguageIds[i] == ops::languageInUse(db)) language = kLanguages[i];
    }
    return {{"language", language},
            {"gamemode", on(ops::kGameMode) ? "on" : "off"},
            {"block alttab", on(ops::kBlockAltTab) ? "on" : "off"},
            {"block altf4", on(ops::kBlockAltF4) ? "on" : "off"},
            {"block win", on(ops::kBlockWin) ? "on" : "off"},
            {"fn-mode", on(ops::kFnFunction) ? "fn" : "default"},
            {"sleep", std::max(ops::storedSleepTime(db), 0)}};
}

// The setting a write changed, printed with --json.
void printSetting(Context& c, const std::string& name) {
    Table table({"setting", "value"});
    for (const Setting& s : settings(c)) {
        if (s.name == name) table.add({s.name, s.value});
    }
    printRecord(c, table);
}

void setFnMode(Context& c, const CLI::App& a) {
    const ops::Target target = c.target();
    check(ops::setFnMode(target, text(a, "MODE") == "fn", ops::storedSwitches(target.db)));
    printSetting(c, "fn-mode");
}

void addFnMode(Grammar& g, CLI::App* parent) {
    CLI::App* fn = g.command(parent, "fn-mode", "default|fn", "What the top row sends without Fn");
    g.word(fn, "MODE", "default: the top row's own keys; fn: as with Fn", kFnModes);
    g.action(fn, setFnMode);
}

}  // namespace

Table settingsTable(Context& c) {
    Table table({"setting", "value"});
    for (const Setting& s : settings(c)) table.add({s.name, s.value});
    return table;
}

void addSettingsCommands(Grammar& g) {
    addFnMode(g, &g.root());
    CLI::App* group = g.command(&g.root(), "settings",
                                "show | language en|zh-CN|zh-TW | gamemode on|off | block alttab|altf4|win on|off |\n"
                                "       fn-mode default|fn | sleep 0-3 | reset-keys | reset-all",
                                "The keyboard's and the application's settings");
    g.action(g.command(group, "show", "", "The settings, each as the words that set it"),
             [](Context& c, const CLI::App&) { settingsTable(c).print(c.out, c.format()); });
    CLI::App* language = g.command(group, "language", "en|zh-CN|zh-TW", "The interface language");
    g.word(language, "LANGUAGE", "en, zh-CN or zh-TW", kLanguages);
    g.action(language, [](Context& c, const CLI::App& a) {
        const auto word = std::find(kLanguages.begin(), kLanguages.end(), text(a, "LANGUAGE"));
        check(ops::setLanguage({c.database()}, kLanguageIds[word - kLanguages.begin()]));
        printSetting(c, "language");
    });
    CLI::App* gamemode = g.command(group, "gamemode", "on|off", "Game mode");
    g.word(gamemode, "SWITCH", "on or off", kOnOff);
    g.action(gamemode, [](Context& c, const CLI::App& a) {
        ops::GameModeSwitches shown;
        check(ops::setGameMode(c.target(), text(a, "SWITCH") == "on", shown));
        printSetting(c, "gamemode");
    });
    CLI::App* block = g.command(group, "block", "alttab|altf4|win on|off", "Block Alt+Tab, Alt+F4 or the Windows key");
    g.word(block, "KEYS", "alttab, altf4 or win", kBlocks);
    g.word(block, "SWITCH", "on or off", kOnOff);
    g.action(block, [](Context& c, const CLI::App& a) {
        const std::string which = text(a, "KEYS");
        const ops::Block keys = which == "alttab" ? ops::Block::kAltTab : which == "altf4" ? ops::Block::kAltF4 : ops::Block::kWin;
        const ops::Target target = c.target();
        ops::GameModeSwitches shown = ops::storedSwitches(target.db);
        check(ops::setBlock(target, keys, text(a, "SWITCH") == "on", shown));
        printSetting(c, "block " + which);
    });
    addFnMode(g, group);
    CLI::App* sleep = g.command(group, "sleep", "0-3", "When the backlight goes out (also: light sleep)");
    g.argument(sleep, "TIME", "0-3", numberIn(0, ops::kSleepTimeCount - 1), {Source::kWords, {"0", "1", "2", "3"}});
    g.action(sleep, [](Context& c, const CLI::App& a) {
        const ops::Target target = c.target();
        check(ops::setSleepTime(target, number(a, "TIME"), ops::storedSwitches(target.db)));
        printSetting(c, "sleep");
    });
    g.action(g.command(group, "reset-keys", "", "Every key of profile 1 back to its default, and the settings"),
             [](Context& c, const CLI::App&) {
                 std::int64_t lightMode = 0;
                 check(ops::resetKeys(c.target(), ops::kSettingsProfile, lightMode));
                 printResult(c, settingsTable(c));
             });
    g.action(g.command(group, "reset-all", "", "Everything back to the factory state"), [](Context& c, const CLI::App&) {
        check(ops::resetAll(c.target()));
        printResult(c, settingsTable(c));
    });
}

}  // namespace qx9::ctl
