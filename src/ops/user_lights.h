#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "layout/keyboard_layout.h"
#include "ops/history.h"
#include "ops/target.h"

namespace qx9::ops {

// The per-key colour sets belong to profile 1, whatever profile is current.

// The name of a new set: "User light" and the number of sets listed plus one.
std::string newUserLightName(std::size_t listedSets);
bool userLightExists(const DeviceSQLite& db, std::int64_t set);

// The keys of the on-screen keyboard, in layout order.
const std::vector<KeyData>& paintableKeys();
// The layout position of a key code, none for a key the on-screen keyboard lacks.
std::optional<std::size_t> paintablePosition(std::int64_t keyCode);
// The colours of a set per layout position (0xRRGGBB, 0 black). A stored colour of a key that
// shares its position with another (an F-key and its number key) shows at that position.
std::vector<std::uint32_t> setColours(const DeviceSQLite& db, std::int64_t set);

// Adds a set named after the number of sets there are (newUserLightName).
Outcome addUserLight(const Target& target, std::string& name, std::int64_t& id);
Outcome renameUserLight(const Target& target, std::int64_t set, const std::string& name);
// The set's colours stay in the store; a later set that gets the same id starts with them.
Outcome deleteUserLight(const Target& target, std::int64_t set);
// Sends the set's colours and the per-key mode.
Outcome showUserLight(const Target& target, std::int64_t set);
// Stores one colour per layout position (black takes the key out of every set: a key is
// coloured in at most one set) in one transaction, then sends the set. With `loaded` (the
// colours the page showed before the user painted), a key whose colour is still the loaded one
// keeps what the set holds now, so that another program's colours since are kept.
Outcome applyUserLight(const Target& target, std::int64_t set, const std::vector<std::uint32_t>& colours,
                       const std::vector<std::uint32_t>* loaded = nullptr);
// The set's keys black, stored and sent.
Outcome resetUserLight(const Target& target, std::int64_t set);
// The set as stored with `keys` (codes) in `rgb`, applied.
Outcome paintKeys(const Target& target, std::int64_t set, const std::vector<std::int64_t>& keys, std::uint32_t rgb);
// Reads the set's colours, lets `change` change them and stores them, in one transaction; then
// sends the set.
Outcome changeUserLight(const Target& target, std::int64_t set,
                        const std::function<Outcome(std::vector<std::uint32_t>&)>& change, const StepName& step);

// Sends the per-key mode; the key colours of one set, then the per-key mode.
Outcome sendUserLightMode(const Target& target);
Outcome sendUserLightColours(const Target& target, std::int64_t setId);

}  // namespace qx9::ops
