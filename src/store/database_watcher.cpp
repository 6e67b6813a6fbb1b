#include "store/database_watcher.h"

#include <sys/inotify.h>

#include <cerrno>
#include <cstring>

namespace qx9 {

DatabaseWatcher::DatabaseWatcher(const std::filesystem::path& file)
    : fd_(::inotify_init1(IN_NONBLOCK | IN_CLOEXEC)), name_(file.filename().string()) {
    if (!fd_) return;
    const std::filesystem::path folder = file.has_parent_path() ? file.parent_path() : std::filesystem::path(".");
    // A commit in write-ahead-log mode writes the log; a checkpoint, a journal or another
    // program's replacement of the file writes, creates or moves the file itself.
    if (::inotify_add_watch(fd_.get(), folder.c_str(), IN_MODIFY | IN_CLOSE_WRITE | IN_CREATE | IN_MOVED_TO | IN_DELETE) < 0) {
        fd_.reset();
    }
}

bool DatabaseWatcher::written() {
    if (!fd_) return false;
    bool ours = false;
    alignas(inotify_event) char buffer[4096];
    for (;;) {
        const ssize_t n = ::read(fd_.get(), buffer, sizeof buffer);
        if (n <= 0) {
            if (n < 0 && errno == EINTR) continue;
            return ours;  // EAGAIN: everything taken
        }
        for (ssize_t at = 0; at < n;) {
            const auto* event = reinterpret_cast<const inotify_event*>(buffer + at);
            if (event->len > 0) {
                const std::string_view name(event->name);
                ours = ours || name.starts_with(name_);
            }
            at += static_cast<ssize_t>(sizeof(inotify_event) + event->len);
        }
    }
}

}  // namespace qx9
