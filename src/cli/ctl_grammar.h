#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <CLI/CLI.hpp>

#include "cli/ctl_context.h"
#include "common/ascii_case.h"

namespace qx9::ctl {

// Reads one word of the command line into its canonical form, in place, or returns why it
// cannot: a CLI11 validator, so that a word that cannot be read stops the parse (status 2)
// before anything is opened.
using Reader = std::function<std::string(std::string&)>;

// A decimal number, or 0x and hex digits.
std::optional<std::int64_t> parseNumber(std::string_view text);
// A number in [lo, hi], read as decimal.
Reader numberIn(std::int64_t lo, std::int64_t hi);
// One of `words`, in any case; read as `words` writes it.
Reader oneOf(std::vector<std::string> words);
// A key of the QX9 by name, in any case, or by code; read as its code. With `paintable`, only a
// key of the on-screen keyboard.
Reader keyReader(bool paintable);
// RRGGBB in hex, with or without #; read as six upper-case digits.
Reader colorReader();
// The code of a key of the QX9 by name (any case) or code.
std::optional<std::int64_t> keyCode(const std::string& word);
// "a, b or c", for messages.
std::string alternatives(const std::vector<std::string>& words);

// What a word of the command line completes to (qx9ctl __complete).
enum class Source { kWords, kFiles, kProfiles, kMacros, kSets, kKeys, kPaintableKeys, kDevice, kEvent, kFunction };
struct Completion {
    Source source = Source::kWords;
    std::vector<std::string> words;
};

// A command's work, given its parsed arguments.
using Action = std::function<void(Context&, const CLI::App&)>;

// The command line: CLI11's tree of commands with the options before and after them, each
// command's usage line, what each argument completes to, and the action the parse chose.
class Grammar {
public:
    explicit Grammar(Options& options);

    CLI::App& root() { return root_; }
    const CLI::App& root() const { return root_; }
    // A command under `parent`; its usage line is its words and `synopsis`.
    CLI::App* command(CLI::App* parent, const std::string& name, const std::string& synopsis, const std::string& about);
    // A command of `group` whose first argument is ID, an id of what `source` lists (`idAbout`).
    CLI::App* commandWithId(CLI::App* group, const std::string& name, const std::string& synopsis, const std::string& about,
                            const std::string& idAbout, Source source);
    // What `app` does when it is the command given. `check`, run during the parse, refuses a
    // combination of arguments (CLI::ValidationError: status 2).
    void action(CLI::App* app, Action run, std::function<void(const CLI::App&)> check = {});
    // A required argument NAME (or an option, --name) read by `reader`.
    CLI::Option* argument(CLI::App* app, const std::string& name, const std::string& about, Reader reader,
                          Completion completion = {});
    // An id of what `source` lists: a number (whether one exists is the command's to say).
    CLI::Option* id(CLI::App* app, const std::string& name, const std::string& about, Source source);
    CLI::Option* word(CLI::App* app, const std::string& name, const std::string& about, const std::vector<std::string>& words);

    const Completion* completion(const CLI::Option* option) const;
    // "usage: qx9ctl profile rename ID NAME"
    std::string usage(const CLI::App* app) const;

    // The chosen command's action, once the parse succeeded.
    std::function<void(Context&)> chosen;

private:
    CLI::App root_;
    std::shared_ptr<std::map<const CLI::App*, std::string>> synopsis_;
    std::map<const CLI::Option*, Completion> completions_;
};

// The commands of each family.
void addDeviceCommands(Grammar& g);    // devices, connect, keyboard-state
void addProfileCommands(Grammar& g);   // profile
void addSettingsCommands(Grammar& g);  // fn-mode, settings (ctl_settings.cpp)
void addKeyCommands(Grammar& g);       // ctl_keys.cpp
void addMacroCommands(Grammar& g);     // ctl_macros.cpp
void addLightCommands(Grammar& g);     // ctl_lighting.cpp
void addUserLightCommands(Grammar& g); // ctl_userlight.cpp
void addFileCommands(Grammar& g);      // export, import (ctl_export.cpp)
void addAppProfileCommands(Grammar& g);  // app-profile (ctl_app_profiles.cpp)
void addHistoryCommands(Grammar& g);  // history, undo, redo (ctl_history.cpp)

// The words that complete the last of `words` (the command line after the program's name),
// one per line; "FILES\tLEAD" stands for the file names after LEAD.
void complete(const Grammar& g, const std::vector<std::string>& words, std::ostream& out);

}  // namespace qx9::ctl
