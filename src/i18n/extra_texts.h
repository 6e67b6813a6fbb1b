#pragma once

#include <string>

namespace qx9 {

// Texts of this application that the three string tables do not hold, in the same three
// languages (looked up for curLanguage).
enum class ExtraText {
    kMacroLimitTitle,    // "Too many macros"
    kMacroLimitMessage,  // "The keyboard holds at most 100 macros. Delete one to add another."
    kNotStoredTitle,     // "The change was not saved"
    kNotDoneMessage,     // a value the change was refused for
    kNotStoredMessage,   // "The settings file could not be written; nothing was sent to the keyboard."
    kNotSent,            // "The keyboard did not take the change. It is saved on this computer; …"
    kChangedElsewhere,   // "Another program changed this meanwhile …": the change was not stored
    kEditsReplaced,      // the macro being edited was changed by another program
    kSending,            // "Sending to the keyboard…"
    kUnreadableTitle,    // "The settings file cannot be read"
    kUnreadableMessage,  // "%1 is damaged or …": %1 stands for the file
    kFileInUse,          // "%1 is in use by another program …"
    kFileNotWritable,    // "%1 cannot be written …"
    kDiskFull,           // "The disk that holds %1 is full …"
    // The macro page.
    kMacroMemory,      // "Macro memory: %1 of %2 bytes"
    kMacroMemoryFull,  // "Too large for the keyboard: …"
    kMacroRecording,   // "Recording: … %1 events so far."
    kMacroSkipped,     // "Keys skipped: %1 …": %2 is the last one's HID usage
    kMacroPressKey,    // "Press a key"
    kDeleteEvent,      // "Delete Event"
    kRename,           // "Rename"
    // The header's buttons (tooltips and accessible names) and the tray menu.
    kPageHome,
    kPageKeys,
    kPageMacros,
    kPageBacklight,
    kPageUserLight,
    kPageSettings,
    kQuit,
    kProfiles,  // the key page's profile list
    kInputAccessHint,  // how to let the application read the keyboard's event devices
    // Names of the lighting pages' controls that show no text of their own.
    kRed,
    kGreen,
    kBlue,
    kColour,        // the swatch that opens the colour dialog
    kPresetColour,  // "Preset colour %1"
    kUp,
    kRight,
    kLeft,
    kDown,
    kAdd,
    kDelete,
    kLightKeyboard,   // the lighting keyboard's name
    kEffects,         // the backlight effect list's name
    kKeysNotPainted,  // the keys that share a key cap on the on-screen keyboard
    kKeyFunctions,    // the key page's palette of functions
    kNotice,          // the notice bar under the pages
    kKey,             // the custom key dialog's field that shows the key
    kCaptureKeys,     // the custom key dialog's button that takes the next combination
    kPressTheKeys,    // its field while it takes them
    kMouseButton,     // the macro page's label of the mouse button to insert
    // The keyboard following the user: the tray menu and the settings page.
    kLightsOff,            // "Lights off"
    kShowWindow,           // "Open HALVORN QX9"
    kFollowUser,           // the settings page's heading of what follows
    kStartAtLogin,         // "Start at login, in the tray"
    kNoTray,               // the desktop shows no tray: the switch stays off
    kDarkWhenLocked,       // "Lights off while the screen is locked"
    kAutomaticProfiles,    // "Automatic profiles"
    kAutomaticSource,      // "Follows the application in front: %1"
    kAutomaticUnavailable, // "automatic profiles are not available on this desktop"
    kApplication,          // "Application"
    kTitleContains,        // "Title contains"
    kProfile,              // "Profile"
    kEditRules,            // "Rules…"
    // Undo and redo (%1: the step, step_texts.h).
    kUndoButton,     // "Undo"
    kRedoButton,     // "Redo"
    kUndoStep,       // "Undo: %1"
    kRedoStep,       // "Redo: %1"
    kNothingToUndo,  // "Nothing to undo"
    kNothingToRedo,  // "Nothing to redo"
    kStepChanged,    // "“%1” was not undone or redone: another program …"
    kNoHistory,      // the history file beside the settings cannot be used
};

std::string extraText(ExtraText id);
// The same in one of the three languages (kLanguageEnglish, …).
std::string extraText(ExtraText id, int language);

}  // namespace qx9
