#pragma once

#include <algorithm>
#include <cctype>
#include <string>
#include <string_view>

namespace qx9 {

// Names typed by people and given by programs (key names, application ids, window classes)
// compared without regard to the case of their ASCII letters.
inline std::string asciiLower(std::string text) {
    for (char& c : text) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return text;
}

inline bool sameIgnoringCase(std::string_view a, std::string_view b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](char x, char y) {
        return std::tolower(static_cast<unsigned char>(x)) == std::tolower(static_cast<unsigned char>(y));
    });
}

}  // namespace qx9
