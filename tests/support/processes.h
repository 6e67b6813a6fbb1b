#pragma once

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <string>
#include <vector>

namespace qx9::test {

// Starts `program` with `args`, its output thrown away; the child's pid, or -1.
inline pid_t startProcess(const std::string& program, const std::vector<std::string>& args) {
    std::vector<std::string> all = {program};
    all.insert(all.end(), args.begin(), args.end());
    std::vector<char*> argv;
    for (std::string& a : all) argv.push_back(a.data());
    argv.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, 1, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_addopen(&actions, 2, "/dev/null", O_WRONLY, 0);
    pid_t pid = -1;
    if (::posix_spawn(&pid, program.c_str(), &actions, nullptr, argv.data(), environ) != 0) pid = -1;
    posix_spawn_file_actions_destroy(&actions);
    return pid;
}

// The exit status of a started process (-1 when it did not exit normally).
inline int exitStatus(pid_t pid) {
    int status = 0;
    if (pid < 0 || ::waitpid(pid, &status, 0) != pid || !WIFEXITED(status)) return -1;
    return WEXITSTATUS(status);
}

// Runs every command at the same time and waits for all of them; their exit statuses in order.
inline std::vector<int> runTogether(const std::string& program, const std::vector<std::vector<std::string>>& commands) {
    std::vector<pid_t> pids;
    for (const auto& args : commands) pids.push_back(startProcess(program, args));
    std::vector<int> statuses;
    for (pid_t pid : pids) statuses.push_back(exitStatus(pid));
    return statuses;
}

}  // namespace qx9::test
