// qx9ctl export / import: the whole configuration as one JSON document.
#include "cli/ctl_context.h"
#include "cli/ctl_grammar.h"
#include "common/private_file.h"
#include "ops/configuration.h"

namespace qx9::ctl {

namespace {

// FILE, or - for standard input, read whole up to the largest document import takes.
std::string readDocument(Context& c, const std::string& file) {
    std::string text;
    if (file != "-") {
        check(ops::readDocumentFile(file, text));
        return text;
    }
    text.resize(static_cast<std::size_t>(ops::kMaxDocumentBytes) + 1);
    c.in.read(text.data(), static_cast<std::streamsize>(text.size()));
    if (c.in.bad()) throw UsageError{"cannot read standard input"};
    if (static_cast<std::uintmax_t>(c.in.gcount()) > ops::kMaxDocumentBytes) {
        throw UsageError{"standard input is larger than a configuration can be (" + std::to_string(ops::kMaxDocumentBytes >> 20) + " MiB)"};
    }
    text.resize(static_cast<std::size_t>(c.in.gcount()));
    return text;
}

}  // namespace

void addFileCommands(Grammar& g) {
    CLI::App* exporting = g.command(&g.root(), "export", "FILE|-", "Write the whole configuration as JSON (- for standard output)");
    g.argument(exporting, "FILE", "The file, or - for standard output", {}, {Source::kFiles, {"-"}});
    g.action(exporting, [](Context& c, const CLI::App& a) {
        const std::string file = text(a, "FILE");
        std::string json;
        check(ops::exportConfiguration(c.database(), json));
        if (file == "-") {
            if (!(c.out << json).flush()) throw UsageError{"the configuration was not exported: cannot write to standard output"};
            return;
        }
        // Written beside the target and renamed over it, so that a failed export leaves no half file.
        std::string error;
        if (!replacePrivateFile(file, json, error)) throw UsageError{error};
    });
    CLI::App* importing = g.command(&g.root(), "import", "FILE|-", "Replace the configuration with an exported one and send it");
    g.argument(importing, "FILE", "The file, or - for standard input", {}, {Source::kFiles, {"-"}});
    g.action(importing, [](Context& c, const CLI::App& a) {
        const std::string file = text(a, "FILE");
        const std::string name = file == "-" ? "standard input" : file;
        const std::string json = readDocument(c, file);
        // Checked before the database opens: a refused document changes nothing, not even the
        // first-start data of a new database file.
        if (const ops::Outcome checked = ops::checkConfigurationDocument(json); !checked) {
            throw UsageError{name + " was not imported: " + ops::describe(checked)};
        }
        const ops::Outcome imported = ops::importConfiguration(c.target(), json);
        if (!imported) throw UsageError{name + " was not imported: " + ops::describe(imported)};
        printResult(c, settingsTable(c));
    });
}

}  // namespace qx9::ctl
