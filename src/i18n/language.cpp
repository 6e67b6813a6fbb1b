#include "i18n/language.h"

#include <algorithm>
#include <optional>

#include "i18n/text_rows.h"

namespace qx9 {

int curLanguage = kLanguageSimplifiedChinese;

namespace detail {
namespace {

std::optional<std::string_view> findText(std::span<const TextRow> rows, int id) {
    auto it = std::find_if(rows.begin(), rows.end(), [id](const TextRow& r) { return r.id == id; });
    if (it == rows.end()) return std::nullopt;
    return std::string_view(it->text);
}

}  // namespace

std::string lookupLan(std::span<const TextRow> lan, std::span<const TextRow> lan2,
                      std::string_view tag, int id) {
    if (id >= 1 && id <= 234) {
        if (auto text = findText(lan, id); text && *text != tag) return std::string(*text);
    }
    return lookupLan2(lan2, tag, id);
}

std::string lookupLan2(std::span<const TextRow> lan2, std::string_view tag, int id) {
    if ((id >= 500 && id <= 567) || (id >= 600 && id <= 621)) {
        if (auto text = findText(lan2, id)) return std::string(*text);
    }
    return std::string(tag);
}

}  // namespace detail

const LanguageTable& languageTable(int languageId) {
    static const LanguageTable english{ENGLanguage::tag, &ENGLanguage::getLan,
                                       &ENGLanguage::getLan2};
    static const LanguageTable simplified{CHSLanguage::tag, &CHSLanguage::getLan,
                                          &CHSLanguage::getLan2};
    static const LanguageTable traditional{CHTLanguage::tag, &CHTLanguage::getLan,
                                           &CHTLanguage::getLan2};
    switch (languageId) {
        case kLanguageTraditionalChinese:
            return traditional;
        case kLanguageSimplifiedChinese:
            return simplified;
        default:
            return english;
    }
}

std::string localizedText(int id) {
    return languageTable(curLanguage).getLan(id);
}

}  // namespace qx9
