// The virtual QX9's memory as a JSON file, so that a virtual keyboard can outlive one process.
#include <nlohmann/json.hpp>

#include "common/bytes.h"
#include "hid/device_comm.h"
#include "virtual/virtual_qx9_memory.h"
#include "protocol/command_frame.h"

namespace qx9 {

using nlohmann::json;

namespace {

constexpr int kFormatVersion = 1;

json rawBlock(const std::optional<std::vector<std::uint8_t>>& block) {
    return block ? json(hexString(*block)) : json(nullptr);
}

json decodedKeyTable(const VirtualQX9Memory& memory, int layer) {
    json out = json::object();
    for (const auto& rec : keyRecords(memory, layer)) {
        out[std::to_string(rec.slot)] = hexString(rec.bytes);
    }
    return out;
}

json decodedMacros(const VirtualQX9Memory& memory) {
    json out = json::array();
    for (const auto& m : decodeMacros(memory)) {
        json events = json::array();
        for (const auto& e : m.events) events.push_back(macroEventText(e));
        out.push_back({{"position", m.position}, {"empty", m.empty}, {"events", events}});
    }
    return out;
}

json decodedColours(const VirtualQX9Memory& memory) {
    json out = json::object();
    if (!memory.keyColours) return out;
    constexpr auto kLights = VirtualQX9Memory::kColourBytes / protocol::kKeyColourSlotSize;
    for (int li = 0; li < static_cast<int>(kLights); ++li) {
        const auto rgb = keyColour(memory, li);
        if (rgb && *rgb) {
            char buf[16];
            std::snprintf(buf, sizeof buf, "%06X", static_cast<unsigned>(*rgb));
            out[std::to_string(li)] = buf;
        }
    }
    return out;
}

bool readBlock(const json& doc, const char* key, std::size_t size, bool wholeReports,
               std::optional<std::vector<std::uint8_t>>& out, std::string& error) {
    out.reset();
    if (!doc.contains(key) || doc.at(key).is_null()) return true;
    if (!doc.at(key).is_string()) {
        error = std::string(key) + ": expected a hex string";
        return false;
    }
    Bytes bytes;
    if (!parseHexBytes(doc.at(key).get<std::string>(), bytes)) {
        error = std::string(key) + ": not hex bytes";
        return false;
    }
    constexpr std::size_t kReport = DeviceComm::kReportLength;
    const bool sizeOk = wholeReports ? (!bytes.empty() && bytes.size() % kReport == 0 &&
                                        bytes.size() <= protocol::kMaxDataReports * kReport)
                                     : bytes.size() == size;
    if (!sizeOk) {
        error = std::string(key) + ": wrong size " + std::to_string(bytes.size());
        return false;
    }
    out = std::move(bytes);
    return true;
}

}  // namespace

std::string memoryToJson(const VirtualQX9Memory& memory) {
    json doc;
    doc["format"] = "qx9-virtual-memory";
    doc["version"] = kFormatVersion;
    doc["raw"] = {
        {"keyTable0", rawBlock(memory.keyTables[0])},
        {"keyTable1", rawBlock(memory.keyTables[1])},
        {"macroBlock", rawBlock(memory.macroBlock)},
        {"lightMode", rawBlock(memory.lightMode)},
        {"keyColours", rawBlock(memory.keyColours)},
        {"systemFunctions", rawBlock(memory.systemFunctions)},
    };
    doc["counters"] = {{"transactions", memory.transactions},
                       {"droppedBlocks", memory.droppedBlocks},
                       {"strayReports", memory.strayReports}};

    json decoded;
    decoded["keyTable0"] = decodedKeyTable(memory, 0);
    decoded["keyTable1"] = decodedKeyTable(memory, 1);
    decoded["macros"] = decodedMacros(memory);
    if (auto lm = decodeLightMode(memory)) {
        decoded["lightMode"] = {{"mode", lm->mode},     {"red", lm->red},
                                {"green", lm->green},   {"blue", lm->blue},
                                {"random", lm->random}, {"brightness", lm->brightness},
                                {"speed", lm->speed},   {"direction", lm->direction}};
    }
    decoded["keyColours"] = decodedColours(memory);
    if (auto sf = decodeSystemFunctions(memory)) {
        decoded["systemFunctions"] = {{"gameMode", sf->gameMode},     {"blockAltTab", sf->blockAltTab},
                                      {"blockAltF4", sf->blockAltF4}, {"lockWin", sf->lockWin},
                                      {"fnFunction", sf->fnFunction}, {"sleepTime", sf->sleepTime}};
    }
    doc["decoded"] = decoded;
    return doc.dump(2) + "\n";
}

bool memoryFromJson(const std::string& text, VirtualQX9Memory& memory, std::string& error) {
    const json doc = json::parse(text, nullptr, /*allow_exceptions=*/false);
    if (doc.is_discarded() || !doc.is_object()) {
        error = "not a JSON object";
        return false;
    }
    if (doc.value("format", std::string()) != "qx9-virtual-memory") {
        error = "not a virtual QX9 memory file";
        return false;
    }
    if (!doc.contains("raw") || !doc.at("raw").is_object()) {
        error = "no \"raw\" section";
        return false;
    }
    const json& raw = doc.at("raw");
    VirtualQX9Memory loaded;
    if (!readBlock(raw, "keyTable0", VirtualQX9Memory::kKeyTableBytes, false, loaded.keyTables[0],
                   error) ||
        !readBlock(raw, "keyTable1", VirtualQX9Memory::kKeyTableBytes, false, loaded.keyTables[1],
                   error) ||
        !readBlock(raw, "macroBlock", 0, true, loaded.macroBlock, error) ||
        !readBlock(raw, "lightMode", DeviceComm::kReportLength, false, loaded.lightMode, error) ||
        !readBlock(raw, "keyColours", VirtualQX9Memory::kColourBytes, false, loaded.keyColours,
                   error) ||
        !readBlock(raw, "systemFunctions", DeviceComm::kReportLength, false, loaded.systemFunctions,
                   error)) {
        return false;
    }
    if (doc.contains("counters") && doc.at("counters").is_object()) {
        const json& c = doc.at("counters");
        auto counter = [&](const char* key) -> std::uint64_t {
            return c.contains(key) && c.at(key).is_number_unsigned() ? c.at(key).get<std::uint64_t>() : 0;
        };
        loaded.transactions = counter("transactions");
        loaded.droppedBlocks = counter("droppedBlocks");
        loaded.strayReports = counter("strayReports");
    }
    memory = std::move(loaded);
    return true;
}

}  // namespace qx9
