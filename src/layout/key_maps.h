#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

namespace qx9 {

// "key_type" of the key maps; only `flag` occurs in them.
enum class Keyboard_EN_Type { flag = 0, normalKey = 1 };

// One entry of a name map: a key name ("escape", "i1", "leftShift") and its properties.
struct KeyNameEntry {
    std::string name;
    int key_code = 0;
    std::string short_name;
    std::string full_name;
    std::optional<Keyboard_EN_Type> key_type;  // present only on caps lock and the modifiers
};

// One entry of a code map: a key code (HID keyboard usage, 175 for Fn) and its properties.
struct KeyCodeEntry {
    int code = 0;
    std::string key_name;
    std::string short_name;
    std::string full_name;
    std::optional<Keyboard_EN_Type> key_type;
    int layout_index = 0;  // position of the key's KeyData in the layout table
    int key_index = 0;     // the keyboard's slot number in the key-mapping block
    int light_index = 0;   // the key's slot in the per-key colour block
    int rgb_r = 0, rgb_g = 0, rgb_b = 0;  // default colour
};

// A fixed table kept in its table order, looked up by key. `at` treats a missing key as a
// programming error and stops; `find` is for callers that may meet unknown keys.
template <typename Key, typename Entry>
class KeyTable {
public:
    KeyTable() = default;
    explicit KeyTable(std::vector<Entry> entries);

    const Entry* find(const Key& key) const;
    const Entry& at(const Key& key) const;
    bool contains(const Key& key) const { return find(key) != nullptr; }
    const std::vector<Entry>& entries() const { return entries_; }
    std::size_t size() const { return entries_.size(); }
    bool empty() const { return entries_.empty(); }

private:
    std::vector<Entry> entries_;
    std::unordered_map<Key, std::size_t> index_;
};

using KeyNameMap = KeyTable<std::string, KeyNameEntry>;
using KeyCodeMap = KeyTable<int, KeyCodeEntry>;

// The master maps of the 108-key set, built once on first use.
const KeyNameMap& KB_108K_SuperKeyNameMap();
const KeyCodeMap& KB_108K_SuperKeyCodeMap();

// The maps in force: empty until a layout builder installs its maps; every run-time lookup
// goes through them so that another keyboard model could bring its own.
extern KeyNameMap G_KB_SuperKeyNameMap;
extern KeyCodeMap G_KB_SuperKeyCodeMap;

// Makes the 108-key maps the ones in force (the first step of every layout builder).
void installKB108KMaps();

// The Fn key's code, a value of this system's own.
inline constexpr int kFnKeyCode = 175;

}  // namespace qx9
