#include <gtest/gtest.h>

#include <optional>
#include <string>

#include "i18n/language.h"

namespace qx9 {
namespace {

const LanguageTable& english() {
    return languageTable(kLanguageEnglish);
}
const LanguageTable& simplified() {
    return languageTable(kLanguageSimplifiedChinese);
}
const LanguageTable& traditional() {
    return languageTable(kLanguageTraditionalChinese);
}

TEST(LanguageTables, TableChoiceByLanguageId) {
    EXPECT_EQ(languageTable(1033).tag, "ENG");
    EXPECT_EQ(languageTable(2052).tag, "CHS");
    EXPECT_EQ(languageTable(1028).tag, "CHT");
    EXPECT_EQ(languageTable(0).tag, "ENG");
    EXPECT_EQ(languageTable(1041).tag, "ENG");
    EXPECT_EQ(languageTable(1028).getLan(2), "是");
}

TEST(LanguageTables, CurrentLanguageStartsAsSimplifiedChineseAndChoosesTheTable) {
    EXPECT_EQ(curLanguage, 2052);
    EXPECT_EQ(localizedText(3), "否");
    curLanguage = 1033;
    EXPECT_EQ(localizedText(3), "NO");
    curLanguage = 1028;
    EXPECT_EQ(localizedText(605), "CHT");
    curLanguage = kLanguageSimplifiedChinese;
}

struct FallbackCase {
    int id;
    const char* eng;
    const char* chs;
    const char* cht;
};

// getLan answers ids outside 1–234 through getLan2; ids no table holds yield the tag.
const FallbackCase kFallbacks[] = {
    {1, "", "", ""},
    {300, "ENG", "CHS", "CHT"},
    {318, "ENG", "CHS", "CHT"},
    {0, "ENG", "CHS", "CHT"},
    {-1, "ENG", "CHS", "CHT"},
    {4, "ENG", "CHS", "CHT"},
    {568, "ENG", "CHS", "CHT"},
    {604, "ENG", "CHS", "CHT"},
    {622, "ENG", "CHS", "CHT"},
    {600, "Fn Switch function", "Fn 开关功能", "Fn 開關功能"},
    {605, "Game Mode", "游戏模式", "CHT"},
    {606, "Lock Command", "锁Command", "CHT"},
    {607, "Disabled", "禁用", "CHT"},
};

TEST(LanguageTables, Fallbacks) {
    for (const FallbackCase& c : kFallbacks) {
        SCOPED_TRACE(c.id);
        EXPECT_EQ(ENGLanguage::getLan(c.id), c.eng);
        EXPECT_EQ(CHSLanguage::getLan(c.id), c.chs);
        EXPECT_EQ(CHTLanguage::getLan(c.id), c.cht);
    }
    EXPECT_EQ(ENGLanguage::getLan2(2), "ENG") << "getLan2 does not hold getLan's ids";
    EXPECT_EQ(CHSLanguage::getLan2(611), "恢复出厂设置");
}

struct TextCase {
    int id;
    const char* eng;
    const char* chs;
    const char* cht;  // nullptr: missing from the Traditional Chinese table
};

const TextCase kTexts[] = {
    {2, "YES", "是", "是"},
    {3, "NO", "否", "否"},
    {30, "HALVORN QX9", "HALVORN QX9", "HALVORN QX9"},
    {67, "Configuration File 1", "配置文件1", "配置文件1"},
    {68, "Configuration File 2", "配置文件2", "配置文件2"},
    {69, "Configuration File 3", "配置文件3", "配置文件3"},
    {70, "Configuration File", "配置文件", "配置文件"},
    {71, "Delete configuration scheme", "删除配置方案", "刪除配置方案"},
    {72, "The last configuration scheme cannot be deleted", "不能删除最后一个配置方案",
     "不能刪除最後一個配置方案"},
    {90, "Top Layer", "Top 层", "Top 层"},
    {91, "Fn Layer", "Fn 层", "Fn 层"},
    {111, "Custom Key", "自定义按键", "自定義按鍵"},
    {112, "Please select a key on the keyboard", "请在键盘图片上选择一个按键",
     "請在鍵盤圖片上選擇一個按鍵"},
    {122, "Mouse", "鼠标功能", "鍵盤功能"},
    {145, "Play / Pause", "播放/暂停", "播放/暫停"},
    {171, "Loop count(1 ~ 255)", "循环计数(1 ~ 255)", "循環計數(1 ~ 255)"},
    {181, "Macro Recod", "宏记录", "巨集記錄"},
    {500, "Static", "静态恒亮", "静态恒亮"},
    {501, "SingleOn", "单点亮", "单点亮"},
    {502, "SingleOff", "单点灭", "单熄灭"},
    {509, "Scrolling", "多彩纵横", "多彩纵横"},
    {519, "Close Backlight", "关闭背光", "关闭背光"},
    {531, "Brightness", "灯光亮度", "燈光亮度"},
    {567, "Please add user lights", "请添加用户灯光", "请添加用户灯光"},
    {601, "Momentary", "正常模式", "正常模式"},
    {602, "Toggle", "Fn键开关模式", "Fn鍵開關模式"},
    {610, "Reset keyboard", "重置当前配置", "重置當前配置"},
    {611, "Restore Factory Settings", "恢复出厂设置", "恢復出廠設置"},
    {620, "Resetting the keyboard will erase all keyboard data. Continue?",
     "重置当前配置删除键盘当前数据，是否继续?", "重置當前配置刪除鍵盤當前數據，是否繼續?"},
    {621, "Resetting the mouse will erase all mouse data. Continue?",
     "恢复出厂设置会删除所有数据，是否继续?", "恢復出廠設置會刪除所有數據，是否繼續?"},
    {222, "[MOUSE DOWN] Middle button", nullptr, nullptr},
    {225, "[MOUSE UP] Right Button", nullptr, nullptr},
    {505, "Colourful", nullptr, nullptr},
    {537, "1 min", nullptr, nullptr},
};

TEST(LanguageTables, TextsInAllThreeLanguages) {
    for (const TextCase& c : kTexts) {
        SCOPED_TRACE(c.id);
        EXPECT_EQ(english().getLan(c.id), c.eng);
        if (c.chs != nullptr) {
            EXPECT_EQ(simplified().getLan(c.id), c.chs);
        }
        if (c.cht != nullptr) {
            EXPECT_EQ(traditional().getLan(c.id), c.cht);
        }
    }
}

std::optional<std::string> held(const LanguageTable& t, int id) {
    std::string text = id <= 234 ? t.getLan(id) : t.getLan2(id);
    if (text == t.tag) return std::nullopt;
    return text;
}

// Each table holds 81 getLan ids and 43 getLan2 ids (40 in Traditional Chinese), the same ids
// in all three; every Chinese text is a translation, so differs from the English one except the
// empty text and the product's name.
TEST(LanguageTables, SameIdsInAllThreeTablesAndEveryChineseTextTranslated) {
    int lan = 0, lan2 = 0, cht2 = 0;
    for (int id = 1; id <= 700; ++id) {
        SCOPED_TRACE(id);
        const auto eng = held(english(), id);
        const auto chs = held(simplified(), id);
        const auto cht = held(traditional(), id);
        EXPECT_EQ(chs.has_value(), eng.has_value());
        const bool missingInCht = id >= 605 && id <= 607;
        EXPECT_EQ(cht.has_value(), eng.has_value() && !missingInCht);
        if (!eng) continue;
        (id <= 234 ? lan : lan2) += 1;
        if (cht) cht2 += id > 234;
        if (id == 1 || id == 30) continue;
        EXPECT_NE(*chs, *eng);
        if (cht) {
            EXPECT_NE(*cht, *eng);
        }
    }
    EXPECT_EQ(lan, 81);
    EXPECT_EQ(lan2, 43);
    EXPECT_EQ(cht2, 40);
}

}  // namespace
}  // namespace qx9
