#include <gtest/gtest.h>

#include <optional>
#include <set>
#include <string>
#include <tuple>
#include <utility>

#include "i18n/language.h"

namespace qx9 {
namespace {

// getLan answers ids outside 1–234 through getLan2; ids no table holds yield the tag.
TEST(LanguageTables, Fallbacks) {
    const std::tuple<int, const char*, const char*, const char*> cases[] = {
        {1, "", "", ""},
        {300, "ENG", "CHS", "CHT"}, {0, "ENG", "CHS", "CHT"}, {-1, "ENG", "CHS", "CHT"},
        {600, "Fn Switch function", "Fn 开关功能", "Fn 開關功能"},
        {605, "Game Mode", "游戏模式", "CHT"},  // 605–607 are missing in Traditional Chinese: below
    };
    for (const auto& [id, eng, chs, cht] : cases) {
        EXPECT_EQ(ENGLanguage::getLan(id), eng) << id;
        EXPECT_EQ(CHSLanguage::getLan(id), chs) << id;
        EXPECT_EQ(CHTLanguage::getLan(id), cht) << id;
    }
    EXPECT_EQ(ENGLanguage::getLan2(2), "ENG") << "getLan2 does not hold getLan's ids";
    EXPECT_EQ(CHSLanguage::getLan2(611), "恢复出厂设置");
}

std::optional<std::string> held(const LanguageTable& t, int id) {
    std::string text = id <= 234 ? t.getLan(id) : t.getLan2(id);
    return text == t.tag ? std::nullopt : std::optional(text);
}

// Each table holds 81 getLan ids and 43 getLan2 ids (40 in Traditional Chinese), the same ids
// in all three; every Chinese text is a translation, so differs from the English one except the
// empty text and the product's name.
TEST(LanguageTables, SameIdsInAllThreeTablesAndEveryChineseTextTranslated) {
    int lan = 0, lan2 = 0, cht2 = 0;
    for (int id = 1; id <= 700; ++id) {
        SCOPED_TRACE(id);
        const auto eng = held(languageTable(kLanguageEnglish), id);
        const auto chs = held(languageTable(kLanguageSimplifiedChinese), id);
        const auto cht = held(languageTable(kLanguageTraditionalChinese), id);
        EXPECT_EQ(chs.has_value(), eng.has_value());
        EXPECT_EQ(cht.has_value(), eng.has_value() && (id < 605 || id > 607));  // 605–607 missing
        if (!eng) continue;
        (id <= 234 ? lan : lan2) += 1;
        if (cht) cht2 += id > 234;
        if (id == 1 || id == 30) continue;
        EXPECT_NE(*chs, *eng);
        EXPECT_NE(cht.value_or(""), *eng);
    }
    EXPECT_EQ(lan, 81);
    EXPECT_EQ(lan2, 43);
    EXPECT_EQ(cht2, 40);
}

}  // namespace
}  // namespace qx9
