#pragma once

#include <string>
#include <utility>
#include <vector>

namespace qx9::ops {

// Why an operation did not go through. The arguments each reason takes are listed beside it;
// every front end renders them in its own words (describe() gives qx9ctl's English line).
enum class Reason {
    kNone,
    // Refusals: the input was not valid, nothing changed.
    kNoLanguage,        // {language}
    kSleepTimeRange,    // {largest}
    kByteRange,         // {what, value}
    kNoLayer,           // {}
    kNoKey,             // {key code}
    kKeyNotShown,       // {key code}: not on the on-screen keyboard
    kNotAColour,        // {}
    kNoProfile,         // {profile}
    kNoMacro,           // {macro}
    kNoEvent,           // {event, events the macro has}
    kNoUserLight,       // {set}; set 0: none is chosen
    kEmptyName,         // {what is named: "profile", "macro", "user light"}
    kLastProfile,       // {}
    kTooManyMacros,     // {most}
    kUnreadableEffect,  // {effect}
    kNotAConfiguration, // {why}
    kNotRead,           // {why}: a file or the database could not be read
    kNoAppProfile,      // {application}: no automatic profile for it
    kNothingToUndo,     // {}
    kNothingToRedo,     // {}
    kNoHistory,         // {}: the history beside the database could not be opened
    kStepChanged,       // {the step}: another program changed its rows since
    // The other endings.
    kNotStored,         // {what the database did not take, or why}
    kNotSent,           // {the block, and why when known}
    kTooLarge,          // {how large}
    kChanged,           // {what another program changed}
};

// How an operation ended: done, or a status with its reason.
struct Outcome {
    enum Status {
        kDone,
        kRefused,    // the input was not valid: nothing changed
        kNotStored,  // the database did not take the change: nothing was sent
        kNotSent,    // stored, but the keyboard did not take the whole transaction
        kTooLarge,   // stored, but too large for the keyboard's memory: nothing was sent
        kChanged,    // another program changed what the change was based on: nothing changed
        kNotRead,    // what an operation reads could not be read: nothing changed
    };
    Status status = kDone;
    Reason reason = Reason::kNone;
    std::vector<std::string> args;

    explicit operator bool() const { return status == kDone; }
    static Outcome done() { return {}; }
    static Outcome refused(Reason reason, std::vector<std::string> args = {}) {
        return {kRefused, reason, std::move(args)};
    }
    static Outcome notStored(std::string what) { return {kNotStored, Reason::kNotStored, {std::move(what)}}; }
    static Outcome notSent(std::string what) { return {kNotSent, Reason::kNotSent, {std::move(what)}}; }
    static Outcome tooLarge(std::string why) { return {kTooLarge, Reason::kTooLarge, {std::move(why)}}; }
    // The change was not stored because another program changed what it was based on.
    static Outcome changedMeanwhile(std::string what) { return {kChanged, Reason::kChanged, {std::move(what)}}; }
    static Outcome notRead(std::string why) { return {kNotRead, Reason::kNotRead, {std::move(why)}}; }
};

// The outcome in one English line (empty when done).
std::string describe(const Outcome& outcome);

}  // namespace qx9::ops
