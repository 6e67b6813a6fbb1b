#include "sender/lights_off_sender.h"

#include <algorithm>

namespace qx9 {

namespace {

bool isLighting(const BlockRequest& b) {
    return b.kind == BlockRequest::kLightMode || b.kind == BlockRequest::kUserLightMode ||
           b.kind == BlockRequest::kUserLightColours;
}

}  // namespace

SendResult LightsOffSender::send(const std::vector<BlockRequest>& blocks) {
    if (!dark_ || std::none_of(blocks.begin(), blocks.end(), isLighting)) return inner_.send(blocks);
    std::vector<BlockRequest> passed;
    for (const BlockRequest& b : blocks) {
        if (!isLighting(b)) {
            passed.push_back(b);
            continue;
        }
        std::erase_if(keptLighting_, [&](const BlockRequest& kept) { return kept.sameBlock(b); });
        keptLighting_.push_back(b);
    }
    if (passed.empty()) return {SendResult::kQueued, {}};  // kept for later: the keys stay dark
    return inner_.send(passed);
}

SendResult LightsOffSender::setDark(bool dark, std::int64_t profile) {
    if (dark == dark_) return {};
    dark_ = dark;
    if (dark) return inner_.send({SendBacklightOff(profile)});
    std::vector<BlockRequest> lighting = std::move(keptLighting_);
    keptLighting_.clear();
    if (lighting.empty()) lighting.push_back(SendLightModeData(profile, profile));
    return inner_.send(lighting);
}

}  // namespace qx9
