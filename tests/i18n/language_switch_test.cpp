#include <gtest/gtest.h>

#include <set>
#include <string>
#include <utility>

#include "i18n/language.h"
#include "i18n/language_switch.h"

namespace qx9 {
namespace {

// The text ids the pages look up, page by page.
// clang-format off
const int kPageTextIds[] = {
    // Window title.
    30,
    // Profiles: default names, the prefix of new names, the last-profile warning.
    67, 68, 69, 70, 71, 72,
    // Key page: layers, Fn-key modes, key menu, the no-key warning.
    90, 91, 600, 601, 602, 101, 102, 103, 111, 112,
    // Custom key dialog: labels and the choice lists.
    165, 166, 167, 120, 121, 122, 123, 124, 125, 131, 132, 133, 134, 135, 136, 137, 138, 145,
    146, 147, 148, 149, 150, 151, 156, 157, 158, 159, 160, 161, 168, 169, 170,
    // Macro page: labels, event descriptions, pop-ups, recorder, macro names, warnings.
    2, 180, 181, 182, 183, 184, 185, 186, 188, 189, 190, 191, 192, 193, 200, 201, 210, 211, 212,
    220, 221, 222, 223, 224, 225, 230, 231, 232, 233, 234,
    // Lighting page: the twenty effects and the labels.
    500, 501, 502, 503, 504, 505, 506, 507, 508, 509, 510, 511, 512, 513, 514, 515, 516, 517,
    518, 519, 530, 531, 532, 535, 536, 537, 538, 539,
    // Per-key lighting page.
    560, 561, 566, 567,
    // Settings page.
    603, 605, 606, 607, 610, 611, 620, 621,
};
// clang-format on

TEST(LanguageSwitch, EveryIdAPageUsesHasAnEnglishText) {
    std::set<int> ids(std::begin(kPageTextIds), std::end(kPageTextIds));
    for (const SwitchedText& t : languageSwitchTexts()) ids.insert(t.textId);
    for (int id : ids) {
        SCOPED_TRACE(id);
        EXPECT_NE(ENGLanguage::getLan(id), "ENG");
        EXPECT_NE(CHSLanguage::getLan(id), "CHS");
        if (id < 605 || id > 607) {
            EXPECT_NE(CHTLanguage::getLan(id), "CHT");
        }
    }
}

TEST(LanguageSwitch, ControlsAndOrder) {
    const auto texts = languageSwitchTexts();
    ASSERT_FALSE(texts.empty());
    EXPECT_EQ(texts.front().control, "window");
    EXPECT_EQ(texts.front().textId, 30);

    std::set<std::pair<std::string, int>> seen;
    int modeRows = 0;
    for (const SwitchedText& t : texts) {
        EXPECT_TRUE(seen.insert({std::string(t.control), t.item}).second)
            << t.control << " is set twice";
        if (t.control == "light_mode_datas") {
            EXPECT_EQ(t.textId, 500 + t.item) << "row " << t.item;
            ++modeRows;
        }
    }
    EXPECT_EQ(modeRows, 20);

    // The settings page's texts are set in this order.
    const std::pair<const char*, int> settings[] = {
        {"config_label_language", 603}, {"btn_resetmousedata", 610},
        {"btn_resetalldata", 611},      {"config_label_gamemode", 605},
        {"config_label_lockwin", 606},  {"config_btn_disable_gamemode", 607},
    };
    std::size_t at = 0;
    while (at < texts.size() && texts[at].control != settings[0].first) ++at;
    for (const auto& [control, id] : settings) {
        ASSERT_LT(at, texts.size());
        EXPECT_EQ(texts[at].control, control);
        EXPECT_EQ(texts[at].textId, id);
        ++at;
    }
}

}  // namespace
}  // namespace qx9
