#pragma once

#include <any>
#include <cstdint>
#include <functional>
#include <mutex>
#include <string>
#include <vector>

namespace qx9 {

// A posted notification: its name and its object (the payload).
struct Notification {
    std::string name;
    std::any object;
};

// Process-wide named notifications. Observers are called synchronously on the posting thread,
// in the order they registered; an observer that must touch the interface hands the work to
// the main thread itself.
class NotificationCenter {
public:
    using Observer = std::function<void(const Notification&)>;
    using Token = std::uint64_t;

    static NotificationCenter& defaultCenter();

    Token addObserver(const std::string& name, Observer observer);
    void removeObserver(Token token);
    void post(const std::string& name, std::any object = {});

private:
    struct Entry {
        Token token;
        std::string name;
        Observer observer;
    };
    std::mutex mutex_;
    std::vector<Entry> observers_;
    Token next_ = 1;
};

}  // namespace qx9
