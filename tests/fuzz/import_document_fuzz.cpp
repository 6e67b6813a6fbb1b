// libFuzzer target: the import document's check on arbitrary text. A document the check accepts
// must come out of the export it makes unchanged when read again.
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "layout/key_maps.h"
#include "ops/configuration.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    qx9::installKB108KMaps();
    std::string error;
    const auto parsed =
        qx9::ops::parseConfigurationDocument(std::string_view(reinterpret_cast<const char*>(data), size), error);
    if (!parsed) {
        if (error.empty() || error.find('\n') != std::string::npos) __builtin_trap();  // one line, always
        return 0;
    }
    const std::string again = qx9::ops::configurationDocument(*parsed);
    if (!qx9::ops::parseConfigurationDocument(again, error)) __builtin_trap();
    return 0;
}
