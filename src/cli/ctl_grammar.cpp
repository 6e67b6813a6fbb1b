#include "cli/ctl_grammar.h"

#include <cctype>
#include <charconv>

#include "layout/key_maps.h"
#include "ops/user_lights.h"

namespace qx9::ctl {

namespace {

const char* const kSynopsis =
    "[--db FILE] [--device auto|virtual|virtual:STATE.json|/dev/hidrawN]\n"
    "              [--wire FILE|-] [--json] [--header] [--verbose] COMMAND ...";

// Help as the usage line first, then what the command does.
class HelpFormatter : public CLI::Formatter {
public:
    explicit HelpFormatter(std::shared_ptr<std::map<const CLI::App*, std::string>> synopsis)
        : synopsis_(std::move(synopsis)) {}
    std::string make_description(const CLI::App*) const override { return ""; }
    std::string make_usage(const CLI::App* app, std::string name) const override {
        const auto s = synopsis_->find(app);
        const std::string usage = "usage: " + name + (s == synopsis_->end() || s->second.empty() ? "" : " " + s->second);
        return usage + "\n" + app->get_description() + "\n";
    }

private:
    std::shared_ptr<std::map<const CLI::App*, std::string>> synopsis_;
};

std::string inQuotes(const std::string& word) { return "\"" + word + "\""; }

// --device: what openDevice takes; whether a node or state file is there is the run's to say.
std::string readDevice(std::string& device) {
    if (device == "auto" || device == "virtual" || (device.starts_with("virtual:") && device.size() > 8) ||
        device.find('/') != std::string::npos) {
        return "";
    }
    return inQuotes(device) + " is not auto, virtual, virtual:STATE.json or a hidraw node (/dev/hidrawN)";
}

}  // namespace

std::optional<std::int64_t> parseNumber(std::string_view digits) {
    int base = 10;
    if (digits.size() > 2 && (digits.substr(0, 2) == "0x" || digits.substr(0, 2) == "0X")) {
        digits.remove_prefix(2);
        base = 16;
    }
    std::int64_t v = 0;
    const auto [ptr, ec] = std::from_chars(digits.data(), digits.data() + digits.size(), v, base);
    if (digits.empty() || ec != std::errc() || ptr != digits.data() + digits.size()) return std::nullopt;
    return v;
}

Reader numberIn(std::int64_t lo, std::int64_t hi) {
    return [lo, hi](std::string& word) -> std::string {
        const std::optional<std::int64_t> v = parseNumber(word);
        if (!v) return inQuotes(word) + " is not a number";
        if (*v < lo || *v > hi) {
            return word + (hi == INT64_MAX ? " is less than " + std::to_string(lo) : " is not in " + std::to_string(lo) + "-" + std::to_string(hi));
        }
        word = std::to_string(*v);
        return "";
    };
}

std::string alternatives(const std::vector<std::string>& words) {
    std::string text;
    for (std::size_t i = 0; i < words.size(); ++i) text += (i == 0 ? "" : i + 1 == words.size() ? " or " : ", ") + words[i];
    return text;
}

Reader oneOf(std::vector<std::string> words) {
    return [words = std::move(words)](std::string& word) -> std::string {
        for (const std::string& w : words) {
            if (sameIgnoringCase(w, word)) {
                word = w;
                return "";
            }
        }
        return inQuotes(word) + " is not " + alternatives(words);
    };
}

std::optional<std::int64_t> keyCode(const std::string& word) {
    const std::string wanted = asciiLower(word);
    for (const KeyNameEntry& e : G_KB_SuperKeyNameMap.entries()) {
        if (asciiLower(e.name) == wanted && G_KB_SuperKeyCodeMap.contains(e.key_code)) return e.key_code;
    }
    const std::optional<std::int64_t> code = word.empty() || !std::isdigit(static_cast<unsigned char>(word[0]))
                                                 ? std::nullopt : parseNumber(word);
    if (code && *code == static_cast<int>(*code) && G_KB_SuperKeyCodeMap.contains(static_cast<int>(*code))) return code;
    return std::nullopt;
}

Reader keyReader(bool paintable) {
    return [paintable](std::string& word) -> std::string {
        const std::optional<std::int64_t> code = keyCode(word);
        if (!code) return "no key " + inQuotes(word) + " on the QX9 (see: qx9ctl key names)";
        if (paintable && !ops::paintablePosition(*code)) return "the key " + inQuotes(word) + " is not on the on-screen keyboard";
        word = std::to_string(*code);
        return "";
    };
}

Reader colorReader() {
    return [](std::string& word) -> std::string {
        std::string_view hex = word;
        if (hex.starts_with('#')) hex.remove_prefix(1);
        std::uint32_t v = 0;
        const auto [ptr, ec] = std::from_chars(hex.data(), hex.data() + hex.size(), v, 16);
        if (hex.size() != 6 || ec != std::errc() || ptr != hex.data() + hex.size()) {
            return inQuotes(word) + " is not a color (RRGGBB in hex, such as FF8000)";
        }
        char digits[8];
        std::snprintf(digits, sizeof digits, "%06X", v);
        word = digits;
        return "";
    };
}

Grammar::Grammar(Options& options)
    : root_("Configures the HALVORN QX9 keyboard: profiles, keys, macros, lighting.", "qx9ctl"),
      synopsis_(std::make_shared<std::map<const CLI::App*, std::string>>()) {
    root_.formatter(std::make_shared<HelpFormatter>(synopsis_));
    (*synopsis_)[&root_] = kSynopsis;
    // Inherited by every command: the options are read before and after it, one command each,
    // and words left over are the run's to name (unknown command, option or argument).
    root_.fallthrough();
    root_.allow_extras();
    root_.require_subcommand(0, 1);
    root_.set_version_flag("-V,--version", "qx9ctl " QX9_VERSION);
    completions_[root_.add_option("--db", options.db, "The database (default: the window's)")->type_name("FILE")] = {
        Source::kFiles, {}};
    completions_[root_.add_option("--device", options.device, "The keyboard: auto (default), virtual[:STATE.json] or /dev/hidrawN")
                     ->type_name("DEVICE")
                     ->transform(CLI::Validator(readDevice, ""))] = {Source::kDevice, {}};
    completions_[root_.add_option("--wire", options.wire, "Log every report to FILE (- for standard output)")->type_name("FILE")] = {
        Source::kFiles, {"-"}};
    root_.add_flag("--json", options.json, "Output as JSON; a change prints what it changed");
    root_.add_flag("--header", options.header, "Tab-separated output starts with the column names");
    root_.add_flag("--verbose", options.verbose, "Diagnostics on standard error (also QX9_VERBOSE=1)");
}

CLI::App* Grammar::command(CLI::App* parent, const std::string& name, const std::string& synopsis, const std::string& about) {
    CLI::App* app = parent->add_subcommand(name, about);
    (*synopsis_)[app] = synopsis;
    if (parent != &root_) parent->require_subcommand(1, 1);  // a group needs one of its commands
    return app;
}

CLI::App* Grammar::commandWithId(CLI::App* group, const std::string& name, const std::string& synopsis,
                                 const std::string& about, const std::string& idAbout, Source source) {
    CLI::App* app = command(group, name, synopsis, about);
    id(app, "ID", idAbout, source);
    return app;
}

void Grammar::action(CLI::App* app, Action run, std::function<void(const CLI::App&)> check) {
    app->callback([this, app, run = std::move(run), check = std::move(check)] {
        if (check) check(*app);
        chosen = [app, run](Context& c) { run(c, *app); };
    });
}

CLI::Option* Grammar::argument(CLI::App* app, const std::string& name, const std::string& about, Reader reader,
                               Completion completion) {
    CLI::Option* option = app->add_option(name, CLI::callback_t{}, about)->required()->type_name("");
    if (reader) option->transform(CLI::Validator(std::move(reader), ""));
    completions_[option] = std::move(completion);
    return option;
}

CLI::Option* Grammar::id(CLI::App* app, const std::string& name, const std::string& about, Source source) {
    const std::string list = source == Source::kProfiles ? "profile" : source == Source::kMacros ? "macro" : "userlight";
    return argument(app, name, about, [list](std::string& word) -> std::string {
        const std::optional<std::int64_t> v = parseNumber(word);
        if (!v || *v < 0) return inQuotes(word) + " is not a number (see: qx9ctl " + list + " list)";
        word = std::to_string(*v);
        return "";
    }, {source, {}});
}

CLI::Option* Grammar::word(CLI::App* app, const std::string& name, const std::string& about,
                           const std::vector<std::string>& words) {
    return argument(app, name, about, oneOf(words), {Source::kWords, words});
}

const Completion* Grammar::completion(const CLI::Option* option) const {
    const auto c = completions_.find(option);
    return c == completions_.end() ? nullptr : &c->second;
}

std::string Grammar::usage(const CLI::App* app) const {
    std::string path;
    for (const CLI::App* a = app; a; a = a->get_parent()) path = a->get_name() + (path.empty() ? "" : " ") + path;
    const auto s = synopsis_->find(app);
    std::string synopsis = s == synopsis_->end() ? "" : s->second;
    // On one line: continued lines joined, the lines that explain the arguments left out.
    for (std::size_t at; (at = synopsis.find('\n')) != std::string::npos;) {
        const std::size_t next = synopsis.find_first_not_of(' ', at + 1);
        if (next - at <= 3) synopsis.erase(at);
        else synopsis.replace(at, next - at, " ");
    }
    return "usage: " + path + (synopsis.empty() ? "" : " " + synopsis);
}

}  // namespace qx9::ctl
