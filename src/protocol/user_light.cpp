#include "protocol/user_light.h"

#include "common/bytes.h"
#include "common/fatal.h"
#include "layout/key_maps.h"
#include "protocol/command_frame.h"

namespace qx9::protocol {

KeyColourBlock buildKeyColourBlock(const std::vector<UserLightLEDData>& colours) {
    KeyColourBlock block{};
    for (int i = 0; i < kPrefilledLightSlots; ++i) {
        block[kKeyColourSlotSize * static_cast<std::size_t>(i)] = static_cast<std::uint8_t>(i);
    }
    for (const UserLightLEDData& led : colours) {
        const KeyCodeEntry& entry = G_KB_SuperKeyCodeMap.at(static_cast<int>(led.key_value));
        const std::uint8_t li = checkedByte(entry.light_index, "light index");
        const std::size_t o = kKeyColourSlotSize * static_cast<std::size_t>(li);
        if (o + kKeyColourSlotSize > block.size())
            fatalError("light index outside the colour block");
        if (led.key_rgbvalue < 0 || led.key_rgbvalue > 0xFFFFFF) {
            fatalError("key colour " + std::to_string(led.key_rgbvalue) + " is not 0xRRGGBB");
        }
        const auto rgb = static_cast<std::uint32_t>(led.key_rgbvalue);
        block[o] = li;
        block[o + 1] = static_cast<std::uint8_t>(rgb >> 16);
        block[o + 2] = static_cast<std::uint8_t>((rgb >> 8) & 0xFF);
        block[o + 3] = static_cast<std::uint8_t>(rgb & 0xFF);
    }
    putTrailer(block, kKeyColourTrailerOffset);
    return block;
}

Transaction userLightModeTransaction() { return lightModeTransaction(kPerKeyLightMode, kPerKeyLightRecord); }

Transaction userLightLedTransaction(const std::vector<UserLightLEDData>& colours) {
    Transaction transaction;
    CommandFrame frame(transaction);
    frame.send(kOpen);
    frame.send(kKeyColourHeader, kKeyColourReports);
    const KeyColourBlock block = buildKeyColourBlock(colours);
    frame.sendDataBlock(block, kKeyColourReports);
    frame.send(kEnd, kNoDataReports);
    frame.send(kClose);
    transaction.append(userLightModeTransaction());
    return transaction;
}

}  // namespace qx9::protocol
