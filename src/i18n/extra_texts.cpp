#include "i18n/extra_texts.h"

#include "i18n/language.h"

namespace qx9 {

namespace {

struct Texts {
    const char* english;
    const char* simplified;
    const char* traditional;
};

Texts textsOf(ExtraText id) {
    switch (id) {
        case ExtraText::kMacroLimitTitle: return {"Too many macros", "宏数量已满", "巨集數量已滿"};
        case ExtraText::kMacroLimitMessage:
            return {"The keyboard holds at most 100 macros. Delete one to add another.",
                    "键盘最多保存 100 个宏。请先删除一个宏再添加。",
                    "鍵盤最多儲存 100 個巨集。請先刪除一個巨集再新增。"};
        case ExtraText::kNotStoredTitle: return {"The change was not saved", "更改未保存", "變更未儲存"};
        case ExtraText::kNotStoredMessage:
            return {"The settings file could not be written; nothing was sent to the keyboard.",
                    "无法写入设置文件；没有向键盘发送任何内容。", "無法寫入設定檔；沒有向鍵盤傳送任何內容。"};
        case ExtraText::kNotSent:
            return {"The keyboard did not take the change. It is saved on this computer; try again once the "
                    "keyboard is ready.",
                    "键盘没有接受此更改。更改已保存在本机；请在键盘就绪后重试。",
                    "鍵盤沒有接受此變更。變更已儲存在本機；請在鍵盤就緒後重試。"};
        case ExtraText::kUnreadableTitle: return {"The settings file cannot be read", "无法读取设置文件", "無法讀取設定檔"};
        case ExtraText::kUnreadableMessage:
            return {"%1 is damaged or is not a settings file of this application. Nothing was sent to the "
                    "keyboard and the file was left as it is. Move it aside and start the application again to "
                    "begin with fresh settings, or import a backup (qx9ctl import FILE).",
                    "%1 已损坏或不是本程序的设置文件。没有向键盘发送任何内容，文件保持原样。请将其移走后重新启动"
                    "程序以使用新的设置，或导入备份（qx9ctl import 文件）。",
                    "%1 已損壞或不是本程式的設定檔。沒有向鍵盤傳送任何內容，檔案保持原樣。請將其移走後重新啟動"
                    "程式以使用新的設定，或匯入備份（qx9ctl import 檔案）。"};
        case ExtraText::kRed: return {"Red", "红", "紅"};
        case ExtraText::kGreen: return {"Green", "绿", "綠"};
        case ExtraText::kBlue: return {"Blue", "蓝", "藍"};
        case ExtraText::kColour: return {"Colour", "颜色", "顏色"};
        case ExtraText::kPresetColour: return {"Preset colour %1", "预设颜色 %1", "預設顏色 %1"};
        case ExtraText::kUp: return {"Up", "向上", "向上"};
        case ExtraText::kRight: return {"Right", "向右", "向右"};
        case ExtraText::kLeft: return {"Left", "向左", "向左"};
        case ExtraText::kDown: return {"Down", "向下", "向下"};
        case ExtraText::kAdd: return {"Add", "添加", "新增"};
        case ExtraText::kDelete: return {"Delete", "删除", "刪除"};
        case ExtraText::kRename: return {"Rename", "重命名", "重新命名"};
        case ExtraText::kLightKeyboard: return {"Keyboard", "键盘", "鍵盤"};
        case ExtraText::kEffects: return {"Lighting effects", "灯光效果", "燈光效果"};
        case ExtraText::kKeysNotPainted:
            return {"F1–F12, ` and Right Ctrl share a key cap here and cannot be painted on this page.",
                    "F1–F12、` 和右 Ctrl 在此处与其他按键共用键位，无法在本页设置颜色。",
                    "F1–F12、` 和右 Ctrl 在此處與其他按鍵共用鍵位，無法在本頁設定顏色。"};
    }
    return {"", "", ""};
}

}  // namespace

std::string extraText(ExtraText id) {
    const Texts t = textsOf(id);
    switch (curLanguage) {
        case kLanguageSimplifiedChinese: return t.simplified;
        case kLanguageTraditionalChinese: return t.traditional;
        default: return t.english;
    }
}

}  // namespace qx9
