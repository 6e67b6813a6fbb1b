#pragma once

namespace qx9 {

// The application's reverse-DNS id: data directory, desktop file, D-Bus-style names.
inline constexpr const char* kApplicationId = "org.qx9config.qx9";
// The id of the builds before the first release; their data folder moves to the current one.
inline constexpr const char* kFormerApplicationId = "org.qx9config.Qx9";

}  // namespace qx9
