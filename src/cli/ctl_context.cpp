#include "cli/ctl_context.h"

#include "i18n/language.h"
#include "ops/macros.h"
#include "ops/profiles.h"
#include "ops/settings.h"

namespace qx9::ctl {

void check(const ops::Outcome& outcome) {
    if (outcome) return;
    throw UsageError{ops::describe(outcome)};
}

std::int64_t existingProfile(Context& c, std::int64_t id) {
    if (!ops::profileExists(c.database(), id)) throw UsageError{"no profile " + std::to_string(id) + " (see: qx9ctl profile list)"};
    return id;
}

std::int64_t existingMacro(Context& c, std::int64_t id) {
    if (!ops::macroExists(c.database(), id)) throw UsageError{"no macro " + std::to_string(id) + " (see: qx9ctl macro list)"};
    return id;
}

void printResult(Context& c, const Table& table) {
    if (c.options.json) table.print(c.out, c.format());
}

void printRecord(Context& c, const Table& record, bool always) {
    if (c.options.json || always) record.printObject(c.out, c.format());
}

std::string Context::storeCause() const {
    const StoreProblem problem = db_ ? db_->problem() : StoreProblem::kOther;
    return namesACause(problem) ? describe(problem) : "";
}

DeviceSQLite& Context::database() {
    if (db_) return *db_;
    db_ = DeviceSQLite::openFile(options.db);
    if (!db_->readable()) {
        const StoreProblem problem = db_->problem();
        throw UsageError{"cannot read the database " + db_->filePath().string() + ": " + describe(problem) +
                         (moveAsideHelps(problem) ? " (left as it is; move it aside to start afresh, or import a backup)"
                                                  : " (left as it is)")};
    }
    curLanguage = ops::languageInUse(*db_);
    return *db_;
}

OpenedDevice& Context::keyboard() {
    if (deviceOpened_) return device_;
    std::string error;
    if (!openDevice(options.device, device_, error)) throw UsageError{error};
    deviceOpened_ = true;
    return device_;
}

ops::Target Context::target() {
    DeviceSQLite& db = database();
    OpenedDevice& device = keyboard();
    sends = true;
    if (hasKeyboard() && !comm_) {
        comm_ = std::make_unique<DeviceComm>(device.record.device, nullptr, wire);
        sender_ = std::make_unique<DirectSender>(*comm_, db);
    }
    return ops::Target{db, sender_.get()};
}

}  // namespace qx9::ctl
