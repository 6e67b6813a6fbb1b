#include "common/private_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

namespace qx9 {

namespace {

constexpr mode_t kPrivateMode = 0600;

bool writeAll(int fd, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t n = ::write(fd, bytes.data(), bytes.size());
        if (n < 0 && errno == EINTR) continue;
        if (n <= 0) return false;
        bytes.remove_prefix(static_cast<std::size_t>(n));
    }
    return true;
}

std::string cannotWrite(const std::filesystem::path& path, int error) {
    return "cannot write " + path.string() + ": " + std::strerror(error);
}

}  // namespace

std::filesystem::path regularFileTarget(const std::filesystem::path& path, std::string& error) {
    namespace fs = std::filesystem;
    std::error_code ec;
    fs::path target = path;
    // A chain of links ends at its last target, which may not exist yet.
    for (int hops = 0; fs::is_symlink(fs::symlink_status(target, ec)); ++hops) {
        const fs::path next = fs::read_symlink(target, ec);
        if (ec || hops > 40) {
            error = "cannot follow the link " + path.string();
            return {};
        }
        target = next.is_absolute() ? next : target.parent_path() / next;
    }
    const fs::file_status status = fs::status(target, ec);
    if (fs::exists(status) && !fs::is_regular_file(status)) {
        error = "will not write " + path.string() + ": it is not a regular file";
        return {};
    }
    return target;
}

bool replacePrivateFile(const std::filesystem::path& path, std::string_view bytes, std::string& error) {
    const std::filesystem::path target = regularFileTarget(path, error);
    if (target.empty()) return false;
    const std::string temporary = target.string() + ".part" + std::to_string(::getpid());
    ::unlink(temporary.c_str());  // left over by a run that was killed
    UniqueFd fd(::open(temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, kPrivateMode));
    if (!fd) {
        error = cannotWrite(path, errno);
        return false;
    }
    const bool written = ::fchmod(fd.get(), kPrivateMode) == 0 && writeAll(fd.get(), bytes) && ::fsync(fd.get()) == 0;
    const int writeError = errno;
    fd.reset();
    if (!written || ::rename(temporary.c_str(), target.c_str()) != 0) {
        error = cannotWrite(path, written ? errno : writeError);
        ::unlink(temporary.c_str());
        return false;
    }
    return true;
}

UniqueFd openPrivateFileForAppend(const std::filesystem::path& path, std::string& error) {
    const std::filesystem::path target = regularFileTarget(path, error);
    if (target.empty()) return {};
    // Non-blocking, so that a pipe put there meanwhile cannot hold the open; checked after it.
    UniqueFd fd(::open(target.c_str(), O_WRONLY | O_APPEND | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC, kPrivateMode));
    struct stat st {};
    if (!fd || ::fstat(fd.get(), &st) != 0) {
        error = cannotWrite(path, errno);
        return {};
    }
    if (!S_ISREG(st.st_mode)) {
        error = "will not write " + path.string() + ": it is not a regular file";
        return {};
    }
    ::fcntl(fd.get(), F_SETFL, O_APPEND);
    return fd;
}

}  // namespace qx9
