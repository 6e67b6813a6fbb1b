#include "common/bytes.h"

#include "common/fatal.h"

namespace qx9 {

Byte checkedByte(std::int64_t value, std::string_view what) {
    if (value < 0 || value > 255) {
        fatalError(std::string(what) + " " + std::to_string(value) + " does not fit in a byte");
    }
    return static_cast<Byte>(value);
}

std::string hexString(std::span<const Byte> bytes) {
    static constexpr char kDigits[] = "0123456789ABCDEF";
    std::string out;
    out.reserve(bytes.size() * 3);
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        if (i) out.push_back(' ');
        out.push_back(kDigits[bytes[i] >> 4]);
        out.push_back(kDigits[bytes[i] & 0x0F]);
    }
    return out;
}

namespace {
int hexDigit(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return -1;
}
bool isSpace(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; }
}  // namespace

bool parseHexBytes(std::string_view text, Bytes& out) {
    out.clear();
    std::size_t i = 0;
    while (i < text.size()) {
        if (isSpace(text[i])) {
            ++i;
            continue;
        }
        if (i + 1 >= text.size()) return false;
        const int hi = hexDigit(text[i]);
        const int lo = hexDigit(text[i + 1]);
        if (hi < 0 || lo < 0) return false;
        if (i + 2 < text.size() && !isSpace(text[i + 2])) return false;
        out.push_back(static_cast<Byte>(hi * 16 + lo));
        i += 2;
    }
    return true;
}

std::string bracketedList(std::span<const Byte> bytes) {
    std::string out = "[";
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        if (i) out += ", ";
        out += std::to_string(bytes[i]);
    }
    out += "]";
    return out;
}

}  // namespace qx9
