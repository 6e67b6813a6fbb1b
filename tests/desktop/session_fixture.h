#pragma once

// Desktops of their own for the tests and the benchmark: programs started with a line they write
// when ready, an X server (Xvfb) with openbox on which windows are made and activated, and the
// serving of descriptors until what must come has come.

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>
#include <xcb/xcb.h>

#include <chrono>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "common/unique_fd.h"
#include "desktop/focus_source.h"
#include "session/session_core.h"

namespace qx9::test {

constexpr std::chrono::seconds kPatience{20};  // the wait for what must come
constexpr int kReportFd = 9;                   // "{fd}" of a started program

using Watched = std::vector<std::pair<int, std::function<void()>>>;

// Serves the descriptors, each with its handler, until `done` holds or kPatience passes.
inline bool serveUntil(const Watched& watched, const std::function<bool()>& done) {
    const auto deadline = std::chrono::steady_clock::now() + kPatience;
    std::vector<pollfd> fds;
    for (const auto& w : watched) fds.push_back({w.first, POLLIN, 0});
    while (!done()) {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - std::chrono::steady_clock::now()).count();
        if (left <= 0 || ::poll(fds.data(), fds.size(), static_cast<int>(left)) < 0) return false;
        for (std::size_t i = 0; i < fds.size(); ++i) {
            if (fds[i].revents) watched[i].second();
        }
    }
    return true;
}

inline bool serveUntil(desktop::FocusSource& source, const std::function<bool()>& done) {
    Watched watched;
    for (const int fd : source.descriptors()) watched.emplace_back(fd, [&] { source.dispatch(); });
    return serveUntil(watched, done);
}

// A program started for a test, found on PATH (`env` before it changes its environment), ended
// with SIGTERM when this goes. Its arguments may name "{fd}", a descriptor, or "{path}", a file,
// to write its ready line to, and "{in}", a file where it reads the lines say() sends.
class Child {
public:
    explicit Child(std::vector<std::string> argv) {
        int report[2], input[2];
        if (::pipe2(report, O_CLOEXEC) != 0 || ::pipe2(input, O_CLOEXEC) != 0) return;
        for (const int fd : {report[0], report[1], input[0], input[1]}) fds_.emplace_back(fd);
        const std::string proc = "/proc/" + std::to_string(::getpid()) + "/fd/";
        for (std::string& a : argv) {
            for (const auto& [key, value] : {std::pair<std::string, std::string>{"{fd}", std::to_string(kReportFd)},
                                             {"{path}", proc + std::to_string(report[1])}, {"{in}", proc + std::to_string(input[0])}}) {
                if (const auto at = a.find(key); at != std::string::npos) a.replace(at, key.size(), value);
            }
        }
        std::vector<char*> args;
        for (std::string& a : argv) args.push_back(a.data());
        args.push_back(nullptr);
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_adddup2(&actions, report[1], kReportFd);
        posix_spawn_file_actions_addopen(&actions, 1, "/dev/null", O_WRONLY, 0);
        posix_spawn_file_actions_addopen(&actions, 2, "/dev/null", O_WRONLY, 0);
        if (::posix_spawnp(&pid_, args[0], &actions, nullptr, args.data(), environ) != 0) pid_ = -1;
        posix_spawn_file_actions_destroy(&actions);
    }
    Child(const Child&) = delete;
    Child& operator=(const Child&) = delete;
    ~Child() { stop(); }

    // The first line it writes; empty when none comes in time.
    std::string readyLine() {
        std::string line;
        char c = 0;
        pollfd fd{fds_.empty() ? -1 : fds_[0].get(), POLLIN, 0};
        const int wait = static_cast<int>(std::chrono::milliseconds(kPatience).count());
        while (pid_ > 0 && ::poll(&fd, 1, wait) == 1 && ::read(fd.fd, &c, 1) == 1 && c != '\n') line += c;
        return c == '\n' ? line : "";
    }
    void say(const std::string& line) {
        [[maybe_unused]] const auto n = fds_.empty() ? 0 : ::write(fds_[3].get(), (line + "\n").data(), line.size() + 1);
    }
    // Ends its input, then waits for it to end.
    void finish() {
        if (!fds_.empty()) fds_[3].reset();
        wait();
    }
    void stop() {
        if (pid_ > 0) ::kill(pid_, SIGTERM);
        wait();
    }
    // Waits for it to end; its exit status, or -1.
    int wait() {
        int status = 0;
        if (pid_ <= 0 || ::waitpid(std::exchange(pid_, -1), &status, 0) < 0 || !WIFEXITED(status)) return -1;
        return WEXITSTATUS(status);
    }

private:
    pid_t pid_ = -1;
    std::vector<UniqueFd> fds_;  // the ready line's pipe and the input's (read end, write end each)
};

// Runs a program to its end; its exit status, or -1.
inline int run(const std::vector<std::string>& argv) { return Child(argv).wait(); }

// An X server of its own (Xvfb, on a display it picks) with openbox, and a connection that makes,
// names, activates and destroys windows.
class XSession {
public:
    XSession() {
        server_.emplace(std::vector<std::string>{"Xvfb", "-displayfd", "{fd}", "-nolisten", "tcp"});
        display_ = ":" + server_->readyLine();
        c_ = xcb_connect(display_.c_str(), nullptr);
        if (xcb_connection_has_error(c_)) {
            problem = "Xvfb cannot start";
            return;
        }
        root_ = xcb_setup_roots_iterator(xcb_get_setup(c_)).data->root;
        for (auto [atom, name] : {std::pair{&activeWindow_, "_NET_ACTIVE_WINDOW"}, {&wmName_, "_NET_WM_NAME"}, {&utf8_, "UTF8_STRING"}}) {
            xcb_intern_atom_reply_t* reply = xcb_intern_atom_reply(c_, xcb_intern_atom(c_, 0, std::strlen(name), name), nullptr);
            *atom = reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
            std::free(reply);
        }
        // It runs --startup when it serves: windows mapped before would wait for its next event.
        wm_.emplace(std::vector<std::string>{"env", "DISPLAY=" + display_, "openbox", "--sm-disable", "--startup", "sh -c 'echo ready >{path}'"});
        if (wm_->readyLine().empty()) problem = "openbox cannot start";
    }
    ~XSession() { xcb_disconnect(c_); }

    const std::string& display() const { return display_; }

    // A mapped window with this WM_CLASS and title (_NET_WM_NAME in UTF-8, or with `latin1`,
    // WM_NAME alone in ISO Latin-1).
    xcb_window_t window(const std::string& instance, const std::string& windowClass, const std::string& title, bool latin1 = false) {
        const xcb_window_t w = xcb_generate_id(c_);
        xcb_create_window(c_, XCB_COPY_FROM_PARENT, w, root_, 0, 0, 200, 100, 0, XCB_WINDOW_CLASS_INPUT_OUTPUT,
                          XCB_COPY_FROM_PARENT, 0, nullptr);
        set(w, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, 8, instance + '\0' + windowClass + '\0');
        setTitle(w, title, latin1);
        xcb_map_window(c_, w);
        xcb_flush(c_);
        return w;
    }
    void setTitle(xcb_window_t w, const std::string& title, bool latin1 = false) {
        latin1 ? set(w, XCB_ATOM_WM_NAME, XCB_ATOM_STRING, 8, title) : set(w, wmName_, utf8_, 8, title);
    }
    // Asks the window manager to activate `w`, as a pager does.
    void activate(xcb_window_t w) { run({"env", "DISPLAY=" + display_, "xdotool", "windowactivate", std::to_string(w)}); }
    // Writes the root's _NET_ACTIVE_WINDOW as a window manager might.
    void setActive(xcb_atom_t type, std::uint8_t format, const std::string& value) { set(root_, activeWindow_, type, format, value); }
    void destroy(xcb_window_t w) {
        xcb_destroy_window(c_, w);
        xcb_flush(c_);
    }
    xcb_window_t unusedId() { return xcb_generate_id(c_); }
    // Returns once the server has done what this connection asked (and sent the events of it).
    void sync() { std::free(xcb_get_input_focus_reply(c_, xcb_get_input_focus(c_), nullptr)); }
    void stopServer() {
        wm_.reset();
        server_.reset();
    }

    std::string problem;  // why the session is missing; empty when it runs

private:
    void set(xcb_window_t w, xcb_atom_t property, xcb_atom_t type, std::uint8_t format, const std::string& value) {
        xcb_change_property(c_, XCB_PROP_MODE_REPLACE, w, property, type, format, value.size() * 8 / format, value.data());
        xcb_flush(c_);
    }

    std::optional<Child> server_, wm_;
    std::string display_;
    xcb_connection_t* c_ = nullptr;
    xcb_window_t root_ = XCB_WINDOW_NONE;
    xcb_atom_t activeWindow_ = XCB_ATOM_NONE, wmName_ = XCB_ATOM_NONE, utf8_ = XCB_ATOM_NONE;
};

// The window's event loop, without the window: watched descriptors and timers.
class SessionLoop final : public SessionEvents {
public:
    void watchDescriptor(int fd, std::function<void()> readable) override { watched_[fd] = std::move(readable); }
    void unwatchDescriptor(int fd) override { watched_.erase(fd); }
    void runAfter(std::chrono::milliseconds delay, std::function<void()> work) override {
        timers_.emplace(std::chrono::steady_clock::now() + delay, std::move(work));
    }
    // Serves descriptors and timers until `done` holds (false when kPatience passed first).
    bool runUntil(const std::function<bool()>& done) {
        const auto deadline = std::chrono::steady_clock::now() + kPatience;
        while (!done()) {
            const auto now = std::chrono::steady_clock::now();
            if (now > deadline) return false;
            if (!timers_.empty() && timers_.begin()->first <= now) {
                auto work = std::move(timers_.begin()->second);
                timers_.erase(timers_.begin());
                work();
                continue;
            }
            const auto until = timers_.empty() ? deadline : std::min(deadline, timers_.begin()->first);
            std::vector<pollfd> fds;
            for (const auto& w : watched_) fds.push_back({w.first, POLLIN, 0});
            const int wait = static_cast<int>(std::chrono::ceil<std::chrono::milliseconds>(until - now).count());
            ::poll(fds.data(), fds.size(), std::max(wait, 0));
            for (const pollfd& f : fds) {
                if (f.revents && watched_.count(f.fd)) watched_[f.fd]();
            }
        }
        return true;
    }
    bool timersPending() const { return !timers_.empty(); }

private:
    std::map<int, std::function<void()>> watched_;
    std::multimap<std::chrono::steady_clock::time_point, std::function<void()>> timers_;
};

}  // namespace qx9::test
