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
        case ExtraText::kNotDoneMessage:
            return {"A value of this change is not valid for the keyboard; nothing was changed.",
                    "此更改中的某个值对键盘无效；未做任何更改。", "此變更中的某個值對鍵盤無效；未做任何變更。"};
        case ExtraText::kNotStoredMessage:
            return {"The settings file could not be written; nothing was sent to the keyboard.",
                    "无法写入设置文件；没有向键盘发送任何内容。", "無法寫入設定檔；沒有向鍵盤傳送任何內容。"};
        case ExtraText::kNotSent:
            return {"The keyboard did not take the change. It is saved on this computer; try again once the "
                    "keyboard is ready.",
                    "键盘没有接受此更改。更改已保存在本机；请在键盘就绪后重试。",
                    "鍵盤沒有接受此變更。變更已儲存在本機；請在鍵盤就緒後重試。"};
        case ExtraText::kChangedElsewhere:
            return {"Another program changed this meanwhile. The page now shows it as saved; your change was not "
                    "saved.",
                    "其他程序同时更改了此项。页面现在显示已保存的内容；您的更改未保存。",
                    "其他程式同時變更了此項。頁面現在顯示已儲存的內容；您的變更未儲存。"};
        case ExtraText::kEditsReplaced:
            return {"Another program changed this macro. The list shows it as saved now; your unsaved edits of it "
                    "were set aside.",
                    "其他程序更改了此宏。列表现在显示已保存的内容；您对它未保存的编辑已被放弃。",
                    "其他程式變更了此巨集。清單現在顯示已儲存的內容；您對它未儲存的編輯已被捨棄。"};
        case ExtraText::kSending: return {"Sending to the keyboard…", "正在发送到键盘…", "正在傳送到鍵盤…"};
        case ExtraText::kUnreadableTitle: return {"The settings file cannot be read", "无法读取设置文件", "無法讀取設定檔"};
        case ExtraText::kUnreadableMessage:
            return {"%1 is damaged or is not a settings file of this application. Nothing was sent to the "
                    "keyboard and the file was left as it is. Move it aside and start the application again to "
                    "begin with fresh settings, or import a backup (qx9ctl import FILE).",
                    "%1 已损坏或不是本程序的设置文件。没有向键盘发送任何内容，文件保持原样。请将其移走后重新启动"
                    "程序以使用新的设置，或导入备份（qx9ctl import 文件）。",
                    "%1 已損壞或不是本程式的設定檔。沒有向鍵盤傳送任何內容，檔案保持原樣。請將其移走後重新啟動"
                    "程式以使用新的設定，或匯入備份（qx9ctl import 檔案）。"};
        case ExtraText::kFileInUse:
            return {"%1 is in use by another program. Nothing was stored or sent; try again when that program has "
                    "finished with it.",
                    "%1 正被其他程序使用。没有保存或发送任何内容；请在该程序用完后重试。",
                    "%1 正被其他程式使用。沒有儲存或傳送任何內容；請在該程式用完後重試。"};
        case ExtraText::kFileNotWritable:
            return {"%1 cannot be written: the file or its folder is read-only. Nothing was stored or sent; the "
                    "settings can still be read and exported.",
                    "无法写入 %1：文件或其所在文件夹为只读。没有保存或发送任何内容；设置仍可读取和导出。",
                    "無法寫入 %1：檔案或其所在資料夾為唯讀。沒有儲存或傳送任何內容；設定仍可讀取和匯出。"};
        case ExtraText::kDiskFull:
            return {"The disk that holds %1 is full. Nothing was stored or sent; make room and try again.",
                    "%1 所在的磁盘已满。没有保存或发送任何内容；请腾出空间后重试。",
                    "%1 所在的磁碟已滿。沒有儲存或傳送任何內容；請騰出空間後重試。"};
        case ExtraText::kMacroMemory: return {"Macro memory: %1 of %2 bytes", "宏内存：已用 %1 / %2 字节", "巨集記憶體：已用 %1 / %2 位元組"};
        case ExtraText::kMacroMemoryFull:
            return {"Too large for the keyboard: the macros are not sent until events or macros are removed.",
                    "超出键盘的宏内存：删除一些事件或宏之前，宏不会发送到键盘。",
                    "超出鍵盤的巨集記憶體：刪除一些事件或巨集之前，巨集不會傳送到鍵盤。"};
        case ExtraText::kMacroRecording:
            return {"Recording: press the keys of the macro. %1 events so far.", "正在录制：请按下宏的按键。已录制 %1 个事件。",
                    "正在錄製：請按下巨集的按鍵。已錄製 %1 個事件。"};
        case ExtraText::kMacroSkipped:
            return {"Keys skipped: %1 (the keyboard cannot play them; the last was HID usage %2).",
                    "已跳过 %1 个键盘无法播放的按键（最后一个为 HID 用法 %2）。",
                    "已略過 %1 個鍵盤無法播放的按鍵（最後一個為 HID 用法 %2）。"};
        case ExtraText::kMacroPressKey: return {"Press a key", "请按下一个键", "請按下一個鍵"};
        case ExtraText::kDeleteEvent: return {"Delete Event", "删除事件", "刪除事件"};
        case ExtraText::kRename: return {"Rename", "重命名", "重新命名"};
        case ExtraText::kPageHome: return {"Home", "主页", "首頁"};
        case ExtraText::kPageKeys: return {"Key Assignment", "按键设置", "按鍵設定"};
        case ExtraText::kPageMacros: return {"Macros", "宏", "巨集"};
        case ExtraText::kPageBacklight: return {"Backlight", "背光", "背光"};
        case ExtraText::kPageUserLight: return {"Per-key Lighting", "单键灯光", "單鍵燈光"};
        case ExtraText::kPageSettings: return {"Settings", "设置", "設定"};
        case ExtraText::kQuit: return {"Quit", "退出", "結束"};
        case ExtraText::kProfiles: return {"Profiles", "配置文件", "設定檔"};
        case ExtraText::kInputAccessHint:
            return {"Keys are captured from this window only. To capture them from the keyboard itself, add your "
                    "user to the \u201cinput\u201d group (sudo usermod -aG input $USER) and log in again.",
                    "按键只从本窗口捕获。若要直接从键盘捕获按键，请将您的用户加入\u201cinput\u201d组"
                    "（sudo usermod -aG input $USER）并重新登录。",
                    "按鍵只從本視窗擷取。若要直接從鍵盤擷取按鍵，請將您的使用者加入「input」群組"
                    "（sudo usermod -aG input $USER）並重新登入。"};
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
        case ExtraText::kLightKeyboard: return {"Keyboard", "键盘", "鍵盤"};
        case ExtraText::kEffects: return {"Lighting effects", "灯光效果", "燈光效果"};
        case ExtraText::kKeyFunctions: return {"Key functions", "按键功能", "按鍵功能"};
        case ExtraText::kNotice: return {"Notice", "提示", "提示"};
        case ExtraText::kKey: return {"Key", "按键", "按鍵"};
        case ExtraText::kCaptureKeys: return {"Set keys", "设置按键", "設定按鍵"};
        case ExtraText::kPressTheKeys: return {"Press the keys", "请按下按键", "請按下按鍵"};
        case ExtraText::kMouseButton: return {"Button", "按键", "按鍵"};
        case ExtraText::kLightsOff: return {"Lights off", "关闭灯光", "關閉燈光"};
        case ExtraText::kShowWindow: return {"Open HALVORN QX9", "打开 HALVORN QX9", "開啟 HALVORN QX9"};
        case ExtraText::kFollowUser: return {"Desktop", "桌面", "桌面"};
        case ExtraText::kStartAtLogin: return {"Start at login, in the tray", "登录时启动（在托盘中）", "登入時啟動（在系統匣中）"};
        case ExtraText::kNoTray:
            return {"This desktop shows no tray, so a hidden start could not be reached.",
                    "此桌面没有托盘，隐藏启动后将无法打开。", "此桌面沒有系統匣，隱藏啟動後將無法開啟。"};
        case ExtraText::kDarkWhenLocked:
            return {"Lights off while the screen is locked", "锁屏时关闭灯光", "鎖定螢幕時關閉燈光"};
        case ExtraText::kAutomaticProfiles: return {"Automatic profiles", "自动切换配置文件", "自動切換設定檔"};
        case ExtraText::kAutomaticSource:
            return {"Follows the application in front: %1", "跟随前台应用程序：%1", "跟隨前景應用程式：%1"};
        case ExtraText::kAutomaticUnavailable:
            return {"automatic profiles are not available on this desktop", "此桌面无法使用自动切换配置文件",
                    "此桌面無法使用自動切換設定檔"};
        case ExtraText::kApplication: return {"Application", "应用程序", "應用程式"};
        case ExtraText::kTitleContains: return {"Title contains", "标题包含", "標題包含"};
        case ExtraText::kProfile: return {"Profile", "配置文件", "設定檔"};
        case ExtraText::kEditRules: return {"Rules…", "规则…", "規則…"};
        case ExtraText::kKeysNotPainted:
            return {"F1–F12, ` and Right Ctrl share a key cap here and cannot be painted on this page.",
                    "F1–F12、` 和右 Ctrl 在此处与其他按键共用键位，无法在本页设置颜色。",
                    "F1–F12、` 和右 Ctrl 在此處與其他按鍵共用鍵位，無法在本頁設定顏色。"};
        case ExtraText::kUndoButton: return {"Undo", "撤销", "復原"};
        case ExtraText::kRedoButton: return {"Redo", "重做", "重做"};
        case ExtraText::kUndoStep: return {"Undo: %1", "撤销：%1", "復原：%1"};
        case ExtraText::kRedoStep: return {"Redo: %1", "重做：%1", "重做：%1"};
        case ExtraText::kNothingToUndo: return {"Nothing to undo", "没有可撤销的操作", "沒有可復原的操作"};
        case ExtraText::kNothingToRedo: return {"Nothing to redo", "没有可重做的操作", "沒有可重做的操作"};
        case ExtraText::kStepChanged:
            return {"“%1” was not undone or redone: another program has changed the same settings since. Nothing "
                    "was changed.",
                    "未能撤销或重做“%1”：其他程序此后更改了相同的设置。未做任何更改。",
                    "未能復原或重做「%1」：其他程式此後變更了相同的設定。未做任何變更。"};
        case ExtraText::kNoHistory:
            return {"The change history beside the settings file cannot be used; changes are saved, but cannot be "
                    "undone.",
                    "无法使用设置文件旁的更改记录；更改会保存，但无法撤销。", "無法使用設定檔旁的變更記錄；變更會儲存，但無法復原。"};
    }
    return {"", "", ""};
}

}  // namespace

std::string extraText(ExtraText id) { return extraText(id, curLanguage); }

std::string extraText(ExtraText id, int language) {
    const Texts t = textsOf(id);
    switch (language) {
        case kLanguageSimplifiedChinese: return t.simplified;
        case kLanguageTraditionalChinese: return t.traditional;
        default: return t.english;
    }
}

}  // namespace qx9
