#include "protocol/user_light.h"

#include "common/bytes.h"
#include "common/fatal.h"
#include "layout/key_maps.h"
#include "protocol/command_frame.h"

namespace qx9::protocol {

std::array<std::uint8_t, 65> buildUserLightModeRecord() {
    std::array<std::uint8_t, 65> record{};
    record[0] = 0x80;   // the per-key mode
    record[1] = 0xFF;   // red
    record[8] = 0x01;   // random colour
    record[9] = 0x0F;   // brightness
    record[10] = 0x0F;  // speed
    record[11] = 0x0F;  // direction
    record[14] = kTrailer0;
    record[15] = kTrailer1;
    return record;
}

KeyColourBlock buildKeyColourBlock(const std::vector<UserLightLEDData>& colours) {
    KeyColourBlock block{};
    for (int i = 0; i < kPrefilledLightSlots; ++i) block[4 * static_cast<std::size_t>(i)] = static_cast<std::uint8_t>(i);
    for (const UserLightLEDData& led : colours) {
        const KeyCodeEntry& entry = G_KB_SuperKeyCodeMap.at(static_cast<int>(led.key_value));
        const std::uint8_t li = checkedByte(entry.light_index, "light index");
        const std::size_t o = 4 * static_cast<std::size_t>(li);
        if (o + 4 > block.size()) fatalError("light index outside the colour block");
        if (led.key_rgbvalue < 0 || led.key_rgbvalue > 0xFFFFFF) {
            fatalError("key colour " + std::to_string(led.key_rgbvalue) + " is not 0xRRGGBB");
        }
        const auto rgb = static_cast<std::uint32_t>(led.key_rgbvalue);
        block[o] = li;
        block[o + 1] = static_cast<std::uint8_t>(rgb >> 16);
        block[o + 2] = static_cast<std::uint8_t>((rgb >> 8) & 0xFF);
        block[o + 3] = static_cast<std::uint8_t>(rgb & 0xFF);
    }
    block[574] = kTrailer0;
    block[575] = kTrailer1;
    return block;
}

void SendUserLightModeData(DeviceComm* comm) {
    CommandFrame frame(comm);
    frame.send(kOpen);
    frame.send(kLightModeHeader, 1);
    sendRawDataReport(comm, buildUserLightModeRecord());
    frame.send(kEnd, 0);
    frame.send(kClose);
}

void SendUserLightLedData(DeviceComm* comm, const std::vector<UserLightLEDData>& colours) {
    CommandFrame frame(comm);
    frame.send(kOpen);
    frame.send(kKeyColourHeader, kKeyColourReports);
    const KeyColourBlock block = buildKeyColourBlock(colours);
    sendDataBlock(comm, block, kKeyColourReports);
    frame.send(kEnd, 0);
    frame.send(kClose);
    SendUserLightModeData(comm);
}

}  // namespace qx9::protocol
