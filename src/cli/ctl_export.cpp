// qx9ctl export / import: the whole configuration as one JSON document.
#include "cli/ctl_context.h"
#include "common/private_file.h"
#include "ops/configuration.h"

namespace qx9::ctl {

void cmdExport(Context& c, const std::vector<std::string>& args) {
    if (args.size() != 1 || args[0].empty()) throw usageError("usage: qx9ctl export FILE (- for standard output)");
    std::string error;
    const std::optional<std::string> document = ops::exportConfiguration(c.database(), error);
    if (!document) throw UsageError{"cannot export: " + error};
    if (args[0] == "-") {
        c.out << *document;
        return;
    }
    // Written beside the target and renamed over it, so that a failed export leaves no half file.
    if (!replacePrivateFile(args[0], *document, error)) throw UsageError{error};
}

void cmdImport(Context& c, const std::vector<std::string>& args) {
    if (args.size() != 1 || args[0].empty()) throw usageError("usage: qx9ctl import FILE");
    std::string error;
    const std::optional<std::string> read = ops::readDocumentFile(args[0], error);
    if (!read) throw UsageError{error};
    const std::string& document = *read;
    // Checked before the database opens: a refused document changes nothing, not even the
    // first-start data of a new database file.
    if (!ops::parseConfigurationDocument(document, error)) throw UsageError{args[0] + " was not imported: " + error};
    const ops::Outcome imported = ops::importConfiguration(c.target(), document);
    if (!imported) throw UsageError{args[0] + " was not imported: " + ops::describe(imported)};
}

}  // namespace qx9::ctl
