#include "cli/ctl.h"

#include <cstdlib>
#include <fstream>

#include "cli/ctl_context.h"
#include "cli/ctl_grammar.h"
#include "common/console.h"
#include "common/printable.h"
#include "common/private_file.h"
#include "hid/wire_log.h"
#include "layout/key_maps.h"

namespace qx9::ctl {

namespace {

// The word the bash completion runs qx9ctl with: `qx9ctl __complete WORD…` (not a command).
constexpr const char* kCompleteWord = "__complete";
constexpr int kRefused = 1;
constexpr int kUnreadable = 2;
constexpr int kParsed = -1;  // parse(): a command was chosen

// A stream that swallows what it is given (the diagnostic console unless --verbose).
struct NullBuffer : std::streambuf {
    int overflow(int c) override { return c; }
};

// The diagnostic console sent to a stream for the life of the object.
class ConsoleTo {
public:
    explicit ConsoleTo(std::ostream* stream) : previous_(setConsoleStream(stream)) {}
    ~ConsoleTo() { setConsoleStream(previous_); }
    ConsoleTo(const ConsoleTo&) = delete;
    ConsoleTo& operator=(const ConsoleTo&) = delete;

private:
    std::ostream* previous_;
};

void addCommands(Grammar& g) {
    addDeviceCommands(g);
    addProfileCommands(g);
    addKeyCommands(g);
    addSettingsCommands(g);
    addMacroCommands(g);
    addLightCommands(g);
    addUserLightCommands(g);
    addFileCommands(g);
    addAppProfileCommands(g);
    addHistoryCommands(g);
}

// The deepest command the parse reached.
const CLI::App* reached(const CLI::App& root) {
    const CLI::App* app = &root;
    while (!app->get_subcommands().empty()) app = app->get_subcommands().front();
    return app;
}

// The command's words ("profile rename "), for messages.
std::string path(const CLI::App* app) {
    std::string words;
    for (; app && app->get_parent(); app = app->get_parent()) words = app->get_name() + " " + words;
    return words;
}

// Why the command line cannot be read: a word no command took, else what CLI11 refused.
std::string unreadable(const Grammar& g, const CLI::App& root, const CLI::ParseError* error) {
    const CLI::App* app = reached(root);
    for (const std::string& word : root.remaining(true)) {
        if (word == "--") continue;
        if (word.size() > 1 && word[0] == '-' && !parseNumber(word)) return "unknown option " + word;
        const bool group = app == &root || !app->get_subcommands([](const CLI::App*) { return true; }).empty();
        if (group) return "unknown command " + path(app) + word;
        return "unexpected argument " + word + " (" + g.usage(app) + ")";
    }
    if (!error) return "";
    if (dynamic_cast<const CLI::RequiredError*>(error)) return g.usage(app);
    const std::string what = error->what();
    return what.starts_with("-") ? what : path(app) + what;  // an option's: said by its name
}

// Reads the command line; kParsed, or the exit status of a run that ends here.
int parse(Grammar& g, const std::vector<std::string>& args, std::ostream& out, std::ostream& err) {
    std::vector<std::string> reversed(args.rbegin(), args.rend());
    std::string problem;
    try {
        g.root().parse(reversed);
        problem = unreadable(g, g.root(), nullptr);
    } catch (const CLI::CallForHelp&) {
        out << g.root().help();
        return 0;
    } catch (const CLI::CallForVersion& e) {
        out << e.what() << '\n';
        return 0;
    } catch (const CLI::ParseError& e) {
        problem = unreadable(g, g.root(), &e);
    }
    if (!problem.empty()) {
        err << "qx9ctl: " << printable(problem) << '\n';
        return kUnreadable;
    }
    if (!g.chosen) {
        err << g.root().help();
        return kUnreadable;
    }
    return kParsed;
}

// Runs the chosen command; its exit status.
int execute(Grammar& g, const Options& options, std::istream& in, std::ostream& out, std::ostream& err) {
    Context c(options, in, out, err);
    std::unique_ptr<std::ofstream> wireFile;
    if (options.wire == "-") {
        c.wire = std::make_shared<WireLogWriter>(out);
    } else if (!options.wire.empty()) {
        // Created the user's alone, and only ever a regular file (through a link, its target).
        std::string error;
        if (!openPrivateFileForAppend(options.wire, error)) throw UsageError{"the wire log: " + error};
        wireFile = std::make_unique<std::ofstream>(options.wire, std::ios::app);
        if (!*wireFile) throw UsageError{"cannot write the wire log " + options.wire};
        c.wire = std::make_shared<WireLogWriter>(*wireFile);
    }
    try {
        g.chosen(c);
    } catch (UsageError& e) {
        // A change refused because the file could not be read or written says why.
        const std::string cause = c.storeCause();
        if (!cause.empty() && e.message.find(cause) == std::string::npos) e.message += ": " + cause;
        throw;
    }
    if (!out.flush()) throw UsageError{"cannot write to standard output"};
    if (wireFile && !wireFile->flush()) throw UsageError{"cannot write the wire log " + options.wire};
    if (c.sends && !c.hasKeyboard()) {
        err << "qx9ctl: no keyboard attached: stored only, nothing was sent\n";
        return kRefused;
    }
    return 0;
}

}  // namespace

int run(const std::vector<std::string>& args, std::ostream& out, std::ostream& err, std::istream& in) {
    NullBuffer nullBuffer;
    std::ostream quiet(&nullBuffer);
    installKB108KMaps();  // the QX9's key maps, as the window's layout builder installs them
    Options options;
    Grammar grammar(options);
    addCommands(grammar);
    if (!args.empty() && args.front() == kCompleteWord) {
        const ConsoleTo console(&quiet);
        complete(grammar, std::vector<std::string>(args.begin() + 1, args.end()), out);
        return 0;
    }
    if (const int status = parse(grammar, args, out, err); status != kParsed) return status;
    const char* verbose = std::getenv("QX9_VERBOSE");  // as the window reads it
    if (verbose && std::string(verbose) == "1") options.verbose = true;
    const ConsoleTo console(options.verbose ? &err : &quiet);
    try {
        return execute(grammar, options, in, out, err);
    } catch (const UsageError& e) {
        // Messages quote what they were given (names, files, fields): printed on one safe line.
        err << "qx9ctl: " << printable(e.message) << '\n';
        return kRefused;
    }
}

}  // namespace qx9::ctl
