#pragma once

#include <string>

namespace qx9 {

// Texts of this application that the three string tables do not hold, in the same three
// languages (looked up for curLanguage).
enum class ExtraText {
    kMacroLimitTitle,    // "Too many macros"
    kMacroLimitMessage,  // "The keyboard holds at most 100 macros. Delete one to add another."
};

std::string extraText(ExtraText id);

}  // namespace qx9
