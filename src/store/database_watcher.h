#pragma once

#include <filesystem>
#include <string>

#include "common/unique_fd.h"

namespace qx9 {

// Tells when a database file may have been written, by this program or another: inotify on the
// file's folder, for the file and its write-ahead log and journal. Nothing is polled: fd()
// becomes readable when something was written, and the front end's event loop watches it.
// Whether another connection committed is then told by the file's data version
// (DeviceSQLite::dataVersion), which this program's own writes through a connection leave as
// it is.
class DatabaseWatcher {
public:
    explicit DatabaseWatcher(const std::filesystem::path& file);

    // -1 when the folder cannot be watched.
    int fd() const { return fd_.get(); }
    // Takes every event waiting; true when one of them was a write of the database's files.
    bool written();

private:
    UniqueFd fd_;
    std::string name_;  // the database's file name: the log and journal add a suffix to it
};

}  // namespace qx9
