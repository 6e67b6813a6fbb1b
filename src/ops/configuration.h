#pragma once

#include <array>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "ops/target.h"
#include "store/configuration.h"

namespace qx9::ops {

// The export document: one JSON object
//   {"format": "halvorn-qx9-configuration", "version": 1,
//    "profiles", "configurationValues", "keyAssignments", "lighting",
//    "userLights", "userLightColours", "macros", "macroEvents": [rows…]}
// with every row of the application's tables, each with its own id and the id it belongs to,
// in id order. Rows whose owner is gone (the keys of a deleted profile, the colours of a
// deleted set) are kept too: a later profile or set that receives the same id finds them, so
// they are part of what the database does.
inline constexpr const char* kConfigurationFormat = "halvorn-qx9-configuration";
inline constexpr std::int64_t kConfigurationVersion = 1;

// The document of a configuration, and back. Parsing checks the whole document — its format
// and version, every field's presence, type and range, unique ids, no more macros than the
// keyboard can address — and gives nothing but an error message when anything is wrong.
std::string configurationDocument(const Configuration& configuration);
std::optional<Configuration> parseConfigurationDocument(std::string_view text, std::string& error);

// The largest document import reads: far more than a full configuration (100 macros of
// several hundred events each come to a few megabytes).
inline constexpr std::uintmax_t kMaxDocumentBytes = 16u << 20;
// Reads a document file: a regular file of at most kMaxDocumentBytes; none and the reason when
// it is not one or cannot be read.
Outcome readDocumentFile(const std::filesystem::path& file, std::string& text);
// Whether a document is a configuration import would take.
Outcome checkConfigurationDocument(std::string_view text);

// The database as a document.
Outcome exportConfiguration(const DeviceSQLite& db, std::string& document);
// Checks the document completely, then replaces the database contents with it in one
// transaction and sends everything it replaced: the backlight effect, what a first connection
// sends, and the macros. On any error nothing changes.
Outcome importConfiguration(const Target& target, std::string_view document);

// What the first connection sends: the first per-key set's colours with the per-key mode (when
// a set exists), the system functions and profile 1's key map.
std::vector<BlockRequest> wholeConfiguration(const DeviceSQLite& db);
// The first connection: profile 1's lighting rows made when missing, profile 1 stored as the
// keyboard's, then the whole configuration sent.
Outcome connectKeyboard(const Target& target);

}  // namespace qx9::ops
