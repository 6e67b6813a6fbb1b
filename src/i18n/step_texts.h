#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace qx9 {

// What a step of the change history is called ("assign Caps Lock"), from its kind and what it
// names, in one of the three languages (kLanguageEnglish, …). A kind this table does not know
// (a newer program wrote it) reads "change".
std::string stepText(std::string_view kind, const std::vector<std::string>& args, int language);
// The same in the current language.
std::string stepText(std::string_view kind, const std::vector<std::string>& args);
// `text` with its %1 replaced by `step` (the undo texts of extra_texts.h).
std::string withStep(std::string text, const std::string& step);

}  // namespace qx9
