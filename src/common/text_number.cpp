#include "common/text_number.h"

#include <cctype>
#include <limits>

namespace qx9 {

std::int64_t leadingInteger(std::string_view text) {
    std::size_t i = 0;
    while (i < text.size() && std::isspace(static_cast<unsigned char>(text[i]))) ++i;
    bool negative = false;
    if (i < text.size() && (text[i] == '+' || text[i] == '-')) negative = text[i++] == '-';
    constexpr std::int64_t kMax = std::numeric_limits<std::int64_t>::max();
    std::int64_t value = 0;
    for (; i < text.size() && std::isdigit(static_cast<unsigned char>(text[i])); ++i) {
        const int digit = text[i] - '0';
        if (value > (kMax - digit) / 10) return negative ? std::numeric_limits<std::int64_t>::min() : kMax;
        value = value * 10 + digit;
    }
    return negative ? -value : value;
}

}  // namespace qx9
