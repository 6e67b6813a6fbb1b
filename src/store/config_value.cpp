#include "store/config_value.h"

#include <charconv>
#include <string>

#include "common/console.h"

namespace qx9 {

std::int64_t parseConfigInteger(std::string_view text, std::string_view key, std::int64_t minimum,
                                std::int64_t maximum) {
    if (text.empty()) return 0;
    std::string_view digits = text;
    if (digits.front() == '+') digits.remove_prefix(1);
    std::int64_t value = 0;
    const char* end = digits.data() + digits.size();
    auto [ptr, ec] = std::from_chars(digits.data(), end, value);
    if (digits.empty() || ec != std::errc() || ptr != end || value < minimum || value > maximum) {
        console() << "configuration value \"" << key << "\" is damaged: \"" << text << "\"; taken as 0\n";
        return 0;
    }
    return value;
}

}  // namespace qx9
