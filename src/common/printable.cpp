#include "common/printable.h"

#include <cstdio>

namespace qx9 {

namespace {
constexpr unsigned char kDelete = 0x7F;
constexpr unsigned char kC1Lead = 0xC2;  // U+0080–U+009F are C2 80 – C2 9F
constexpr unsigned char kC1First = 0x80, kC1Last = 0x9F;
}  // namespace

std::string printable(std::string_view text) {
    std::string out;
    out.reserve(text.size());
    char hex[8];
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto c = static_cast<unsigned char>(text[i]);
        if (c == kC1Lead && i + 1 < text.size()) {
            const auto next = static_cast<unsigned char>(text[i + 1]);
            if (next >= kC1First && next <= kC1Last) {
                std::snprintf(hex, sizeof hex, "\\u%04X", next);
                out += hex;
                ++i;
                continue;
            }
        }
        if (c >= 0x20 && c != kDelete) {
            out += static_cast<char>(c);
            continue;
        }
        switch (c) {
            case '\n': out += "\\n"; break;
            case '\t': out += "\\t"; break;
            case '\r': out += "\\r"; break;
            case 0x1B: out += "\\e"; break;
            default:
                std::snprintf(hex, sizeof hex, "\\x%02X", c);
                out += hex;
        }
    }
    return out;
}

}  // namespace qx9
