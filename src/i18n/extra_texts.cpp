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
