#pragma once

#include <cstdint>
#include <string>

#include "ops/target.h"

namespace qx9::ops {

// The name a new profile gets: the prefix of the interface language and the number of profiles
// before adding (so that with one profile the new one is "Configuration File 1" again).
std::string newProfileName(std::size_t profilesBefore);

// A stored name as the interface language shows it: in Chinese the three default names are
// shown translated; the database keeps them in English.
std::string displayedProfileName(const std::string& stored);

bool profileExists(const DeviceSQLite& db, std::int64_t profile);

// Adds a profile named after the number of profiles there are (newProfileName); its id and name
// in `id` and `name`.
Outcome addProfile(const Target& target, std::string& name, std::int64_t& id);
Outcome renameProfile(const Target& target, std::int64_t profile, const std::string& name);
// Refused for the last profile.
Outcome deleteProfile(const Target& target, std::int64_t profile);
// Makes `profile` the one the keys are edited in: its lighting rows are created when missing,
// it is stored as the keyboard's profile, its selected effect is read into `lightMode`, and
// then its base-layer key map is sent (nothing when the database did not take it).
Outcome selectProfile(const Target& target, std::int64_t profile, std::int64_t& lightMode);

}  // namespace qx9::ops
