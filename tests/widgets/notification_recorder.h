#pragma once

#include <any>
#include <initializer_list>
#include <string>
#include <vector>

#include "common/notification_center.h"

namespace qx9 {

// Records what is posted under some names on the default notification centre while it lives.
class NotificationRecorder {
public:
    NotificationRecorder(std::initializer_list<std::string> names) {
        for (const std::string& name : names) {
            tokens_.push_back(NotificationCenter::defaultCenter().addObserver(
                name, [this](const Notification& n) { seen_.push_back(n); }));
        }
    }
    ~NotificationRecorder() {
        for (NotificationCenter::Token t : tokens_) {
            NotificationCenter::defaultCenter().removeObserver(t);
        }
    }
    NotificationRecorder(const NotificationRecorder&) = delete;
    NotificationRecorder& operator=(const NotificationRecorder&) = delete;

    const std::vector<Notification>& seen() const { return seen_; }
    void clear() { seen_.clear(); }

    // The objects of the notifications called `name`, in posting order, as T.
    template <typename T>
    std::vector<T> objects(const std::string& name) const {
        std::vector<T> out;
        for (const Notification& n : seen_) {
            if (n.name == name) out.push_back(std::any_cast<T>(n.object));
        }
        return out;
    }

private:
    std::vector<NotificationCenter::Token> tokens_;
    std::vector<Notification> seen_;
};

}  // namespace qx9
