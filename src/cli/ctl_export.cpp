// qx9ctl export / import: the whole configuration as one JSON document.
#include "cli/ctl_context.h"
#include "common/private_file.h"
#include "ops/configuration.h"

namespace qx9::ctl {

void cmdExport(Context& c, const std::vector<std::string>& args) {
    if (args.size() != 1 || args[0].empty()) throw usageError("usage: qx9ctl export FILE (- for standard output)");
    std::string document;
    check(ops::exportConfiguration(c.database(), document));
    if (args[0] == "-") {
        c.out << document;
        return;
    }
    // Written beside the target and renamed over it, so that a failed export leaves no half file.
    std::string error;
    if (!replacePrivateFile(args[0], document, error)) throw UsageError{error};
}

void cmdImport(Context& c, const std::vector<std::string>& args) {
    if (args.size() != 1 || args[0].empty()) throw usageError("usage: qx9ctl import FILE");
    std::string document;
    check(ops::readDocumentFile(args[0], document));
    // Checked before the database opens: a refused document changes nothing, not even the
    // first-start data of a new database file.
    if (const ops::Outcome checked = ops::checkConfigurationDocument(document); !checked) {
        throw UsageError{args[0] + " was not imported: " + ops::describe(checked)};
    }
    const ops::Outcome imported = ops::importConfiguration(c.target(), document);
    if (!imported) throw UsageError{args[0] + " was not imported: " + ops::describe(imported)};
}

}  // namespace qx9::ctl
