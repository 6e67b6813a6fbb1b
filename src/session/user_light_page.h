#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace qx9 {

class KeyboardSession;

// A row of the per-key lighting sets.
struct UserLightRow {
    std::int64_t light = 0;
    std::string name;
};

// The per-key lighting page: the sets of profile 1 and the colours of the loaded one.
class UserLightPage {
public:
    explicit UserLightPage(KeyboardSession& session);

    const std::vector<UserLightRow>& userlight_datas() const { return rows_; }
    int selectedRow() const { return selectedRow_; }
    std::int64_t userlight_id() const { return userlight_id_; }
    // Colour of each key of the on-screen keyboard (layout order) as 0xRRGGBB; 0 is black.
    const std::vector<std::uint32_t>& keyColours() const { return keyColours_; }

    void loadUserLightData();
    void setUserLightTableSelect(int selectIndex);
    void loadUserLightInfo(int index);
    // Every key of the on-screen keyboard black.
    void resetKeyColor();

private:
    KeyboardSession& s_;
    std::vector<UserLightRow> rows_;
    int selectedRow_ = -1;
    std::int64_t userlight_id_ = 0;
    std::vector<std::uint32_t> keyColours_;
};

}  // namespace qx9
