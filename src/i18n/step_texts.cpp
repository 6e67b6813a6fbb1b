#include "i18n/step_texts.h"

#include <array>

#include "i18n/language.h"

namespace qx9 {

namespace {

struct StepTexts {
    std::string_view kind;
    const char* english;
    const char* simplified;
    const char* traditional;
};

// %1, %2 stand for what the step names, in the order the operations record it.
constexpr std::array<StepTexts, 34> kSteps = {{
    {"assign", "assign %1", "分配 %1", "指派 %1"},
    {"add-macro", "add macro %1", "新建宏 %1", "新增巨集 %1"},
    {"rename-macro", "rename macro %1", "重命名宏 %1", "重新命名巨集 %1"},
    {"delete-macro", "delete macro %1", "删除宏 %1", "刪除巨集 %1"},
    {"record-macro", "record macro %1", "录制宏 %1", "錄製巨集 %1"},
    {"edit-macro", "edit macro %1", "编辑宏 %1", "編輯巨集 %1"},
    {"add-profile", "add profile %1", "新建配置文件 %1", "新增設定檔 %1"},
    {"rename-profile", "rename profile %1", "重命名配置文件 %1", "重新命名設定檔 %1"},
    {"delete-profile", "delete profile %1", "删除配置文件 %1", "刪除設定檔 %1"},
    {"effect", "choose backlight effect %1", "选择灯效 %1", "選擇燈效 %1"},
    {"light-colour", "backlight colour %1", "背光颜色 %1", "背光顏色 %1"},
    {"random-colour-on", "random colour on", "开启随机颜色", "開啟隨機顏色"},
    {"random-colour-off", "random colour off", "关闭随机颜色", "關閉隨機顏色"},
    {"brightness", "brightness %1", "亮度 %1", "亮度 %1"},
    {"speed", "speed %1", "速度 %1", "速度 %1"},
    {"direction", "direction %1", "方向 %1", "方向 %1"},
    {"language", "change the language", "更改语言", "變更語言"},
    {"fn-mode-fn", "Fn keys first", "Fn 键优先", "Fn 鍵優先"},
    {"fn-mode-default", "media keys first", "多媒体键优先", "多媒體鍵優先"},
    {"game-mode-on", "game mode on", "开启游戏模式", "開啟遊戲模式"},
    {"game-mode-off", "game mode off", "关闭游戏模式", "關閉遊戲模式"},
    {"block-on", "block %1", "禁用 %1", "停用 %1"},
    {"block-off", "unblock %1", "启用 %1", "啟用 %1"},
    {"sleep-time", "sleep time %1", "休眠时间 %1", "休眠時間 %1"},
    {"reset-keys", "reset the keys of profile %1", "重置配置文件 %1 的按键", "重設設定檔 %1 的按鍵"},
    {"reset-all", "reset everything", "全部重置", "全部重設"},
    {"add-set", "add per-key set %1", "新建自定义灯效 %1", "新增自訂燈效 %1"},
    {"rename-set", "rename per-key set %1", "重命名自定义灯效 %1", "重新命名自訂燈效 %1"},
    {"delete-set", "delete per-key set %1", "删除自定义灯效 %1", "刪除自訂燈效 %1"},
    {"paint", "colour %1 keys %2", "将 %1 个按键设为 %2", "將 %1 個按鍵設為 %2"},
    {"set-colours", "colours of %1", "%1 的颜色", "%1 的顏色"},
    {"reset-set", "clear per-key set %1", "清除自定义灯效 %1", "清除自訂燈效 %1"},
    {"import", "import settings", "导入设置", "匯入設定"},
    {"", "change", "更改", "變更"},
}};

const char* inLanguage(const StepTexts& t, int language) {
    if (language == kLanguageSimplifiedChinese) return t.simplified;
    if (language == kLanguageTraditionalChinese) return t.traditional;
    return t.english;
}

std::string fill(std::string text, const std::vector<std::string>& args) {
    for (std::size_t i = 0; i < args.size() && i < 9; ++i) {
        const std::string mark = "%" + std::to_string(i + 1);
        if (const std::size_t at = text.find(mark); at != std::string::npos) text.replace(at, mark.size(), args[i]);
    }
    return text;
}

}  // namespace

std::string stepText(std::string_view kind, const std::vector<std::string>& args, int language) {
    for (const StepTexts& t : kSteps) {
        if (t.kind == kind) return fill(inLanguage(t, language), args);
    }
    return inLanguage(kSteps.back(), language);
}

std::string stepText(std::string_view kind, const std::vector<std::string>& args) {
    return stepText(kind, args, curLanguage);
}

std::string withStep(std::string text, const std::string& step) { return fill(std::move(text), {step}); }

}  // namespace qx9
