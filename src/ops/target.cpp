#include "ops/target.h"

namespace qx9::ops {

Outcome send(const Target& target, const std::vector<BlockRequest>& blocks) {
    if (!target.keyboard || blocks.empty()) return Outcome::done();
    const SendResult result = target.keyboard->send(blocks);
    switch (result.status) {
        case SendResult::kSent:
        case SendResult::kQueued: return Outcome::done();
        case SendResult::kTooLarge: return Outcome::tooLarge(result.message);
        case SendResult::kNotSent: return Outcome::notSent(result.message);
    }
    return Outcome::done();
}

}  // namespace qx9::ops
