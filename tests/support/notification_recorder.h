#pragma once

#include <any>
#include <chrono>
#include <condition_variable>
#include <initializer_list>
#include <mutex>
#include <string>
#include <vector>

#include "common/notification_center.h"

namespace qx9 {

// Records what is posted under some names on the default notification centre while it lives;
// notifications may arrive on any thread.
class NotificationRecorder {
public:
    NotificationRecorder(std::initializer_list<std::string> names) {
        auto& center = NotificationCenter::defaultCenter();
        for (const std::string& name : names) {
            tokens_.push_back(center.addObserver(name, [this](const Notification& n) {
                std::lock_guard lock(mutex_);
                seen_.push_back(n);
                changed_.notify_all();
            }));
        }
    }
    ~NotificationRecorder() {
        for (auto t : tokens_) NotificationCenter::defaultCenter().removeObserver(t);
    }
    NotificationRecorder(const NotificationRecorder&) = delete;
    NotificationRecorder& operator=(const NotificationRecorder&) = delete;

    std::vector<Notification> seen() const {
        std::lock_guard lock(mutex_);
        return seen_;
    }
    void clear() {
        std::lock_guard lock(mutex_);
        seen_.clear();
    }

    // The objects of the notifications called `name`, in posting order, as T.
    template <typename T>
    std::vector<T> objects(const std::string& name) const { return waitFor<T>(name, 0, {}); }
    // The same once at least `count` of them have arrived, or the time is up.
    template <typename T>
    std::vector<T> waitFor(const std::string& name, std::size_t count,
                           std::chrono::milliseconds timeout) const {
        std::unique_lock lock(mutex_);
        std::vector<T> out;
        changed_.wait_for(lock, timeout, [&] {
            out.clear();
            for (const Notification& n : seen_)
                if (n.name == name) out.push_back(std::any_cast<T>(n.object));
            return out.size() >= count;
        });
        return out;
    }

private:
    std::vector<NotificationCenter::Token> tokens_;
    mutable std::mutex mutex_;
    mutable std::condition_variable changed_;
    std::vector<Notification> seen_;
};

}  // namespace qx9
