#include "common/notification_center.h"

#include <algorithm>

namespace qx9 {

NotificationCenter& NotificationCenter::defaultCenter() {
    static NotificationCenter center;
    return center;
}

NotificationCenter::Token NotificationCenter::addObserver(const std::string& name, Observer observer) {
    std::lock_guard lock(mutex_);
    const Token token = next_++;
    observers_.push_back({token, name, std::move(observer)});
    return token;
}

void NotificationCenter::removeObserver(Token token) {
    std::lock_guard lock(mutex_);
    std::erase_if(observers_, [&](const Entry& e) { return e.token == token; });
}

void NotificationCenter::post(const std::string& name, std::any object) {
    std::vector<Observer> targets;
    {
        std::lock_guard lock(mutex_);
        for (const Entry& e : observers_) {
            if (e.name == name) targets.push_back(e.observer);
        }
    }
    const Notification notification{name, std::move(object)};
    for (const Observer& o : targets) o(notification);
}

}  // namespace qx9
