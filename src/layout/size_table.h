#pragma once

#include <initializer_list>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "common/fatal.h"

namespace qx9 {

// A small fixed table of sizes in points, keyed by a class name ("normal", "backspace",
// "key_separator") or by a row number. Kept in table order; `at` treats a missing entry as a
// programming error and stops.
template <typename Key>
class SizeTable {
public:
    using Entry = std::pair<Key, int>;

    SizeTable(std::string name, std::initializer_list<Entry> entries)
        : name_(std::move(name)), entries_(entries) {}

    template <typename K>
    const int* find(const K& key) const {
        for (const Entry& e : entries_) {
            if (e.first == key) return &e.second;
        }
        return nullptr;
    }

    template <typename K>
    int at(const K& key) const {
        if (const int* value = find(key)) return *value;
        if constexpr (std::is_arithmetic_v<K>) {
            fatalError(name_ + " has no entry " + std::to_string(key));
        } else {
            fatalError(name_ + " has no entry \"" + std::string(key) + "\"");
        }
    }

    const std::string& name() const { return name_; }
    const std::vector<Entry>& entries() const { return entries_; }

private:
    std::string name_;
    std::vector<Entry> entries_;
};

using NamedSizes = SizeTable<std::string>;  // size class name → points
using RowPositions = SizeTable<int>;        // row number → y of the row's bottom edge

}  // namespace qx9
