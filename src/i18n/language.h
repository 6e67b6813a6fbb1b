#pragma once

#include <string>
#include <string_view>

namespace qx9 {

// Windows-style language ids, the values of the "language" configuration value.
inline constexpr int kLanguageEnglish = 1033;
inline constexpr int kLanguageSimplifiedChinese = 2052;
inline constexpr int kLanguageTraditionalChinese = 1028;

// The interface language. Simplified Chinese until the stored language is applied at the first
// connection; the settings page writes it when the user picks another language.
extern int curLanguage;

// Base of the three string tables; no behaviour of its own.
class Language {};

// Each table has two lookups by text id. `getLan` holds ids 1–234: an id outside that range,
// one the table does not hold, or one whose text is the table's tag goes on to `getLan2`.
// `getLan2` holds ids 500–567 and 600–621 and answers every other id with the table's tag, so
// an unknown id never fails: the control shows "ENG", "CHS" or "CHT".
class ENGLanguage : public Language {
public:
    static constexpr std::string_view tag = "ENG";
    static std::string getLan(int lan);
    static std::string getLan2(int lan);
};

class CHSLanguage : public Language {
public:
    static constexpr std::string_view tag = "CHS";
    static std::string getLan(int lan);
    static std::string getLan2(int lan);
};

// Ids 605, 606 and 607 are missing from this table and read "CHT".
class CHTLanguage : public Language {
public:
    static constexpr std::string_view tag = "CHT";
    static std::string getLan(int lan);
    static std::string getLan2(int lan);
};

// The lookups of one table.
struct LanguageTable {
    std::string_view tag;
    std::string (*getLan)(int lan);
    std::string (*getLan2)(int lan);
};

// 1028 chooses Traditional Chinese, 2052 Simplified Chinese, any other id English.
const LanguageTable& languageTable(int languageId);

// The text of an id in the current language (`getLan` of the table chosen by curLanguage).
std::string localizedText(int id);

}  // namespace qx9
