#include "ops/outcome.h"

namespace qx9::ops {

std::string describe(const Outcome& outcome) {
    const auto arg = [&](std::size_t i) { return i < outcome.args.size() ? outcome.args[i] : std::string("?"); };
    switch (outcome.reason) {
        case Reason::kNone: return {};
        case Reason::kNoLanguage: return "no language " + arg(0);
        case Reason::kSleepTimeRange: return "the sleep time is 0-" + arg(0);
        case Reason::kByteRange: return arg(0) + " is 0-255, not " + arg(1);
        case Reason::kNoLayer: return "the layer is 0 (base) or 1 (Fn)";
        case Reason::kNoKey: return "no key " + arg(0) + " on the QX9";
        case Reason::kKeyNotShown: return "the key " + arg(0) + " is not on the on-screen keyboard";
        case Reason::kNotAColour: return "a colour is RRGGBB";
        case Reason::kNoProfile: return "no profile " + arg(0);
        case Reason::kNoMacro: return "no macro " + arg(0);
        case Reason::kNoEvent:
            return "no event " + arg(0) + " in this macro (it has " + arg(1) + (arg(1) == "1" ? " event)" : " events)");
        case Reason::kNoUserLight: return arg(0) == "0" ? "no per-key set is chosen" : "no user light " + arg(0);
        case Reason::kEmptyName: return "a " + arg(0) + " name cannot be empty";
        case Reason::kLastProfile: return "the last profile cannot be deleted";
        case Reason::kTooManyMacros: return "the keyboard holds at most " + arg(0) + " macros";
        case Reason::kUnreadableEffect: return "cannot read the backlight record of effect " + arg(0);
        case Reason::kNotAConfiguration:
        case Reason::kNotRead: return arg(0);
        case Reason::kNoAppProfile: return "no automatic profile for " + arg(0);
        case Reason::kNothingToUndo: return "nothing to undo";
        case Reason::kNothingToRedo: return "nothing to redo";
        case Reason::kNoHistory: return "the change history beside the database cannot be used";
        case Reason::kStepChanged:
            return "\"" + arg(0) + "\" was not undone or redone: another program has changed the same settings since";
        case Reason::kNotStored: return arg(0);
        case Reason::kNotSent: return "stored, but the keyboard did not take " + arg(0);
        case Reason::kTooLarge: return "stored, but nothing was sent: " + arg(0);
        case Reason::kChanged: return arg(0) + " was changed by another program meanwhile; nothing was stored";
    }
    return {};
}

}  // namespace qx9::ops
