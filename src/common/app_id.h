#pragma once

namespace qx9 {

// The application's reverse-DNS id: data directory, desktop file, D-Bus-style names.
inline constexpr const char* kApplicationId = "org.qx9config.Qx9";

}  // namespace qx9
