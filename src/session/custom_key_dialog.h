#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "store/records.h"

namespace qx9 {

class KeyPage;
struct SessionCore;

// The custom key dialog without its window: the five choice lists, the key-combination capture,
// the macro play mode and count, and Save. Opened for the key the key page chose
// ("Custom Function"); its assignments always go to the base layer.
class CustomKeyDialog {
public:
    // One entry of a choice list: the text shown and the value stored.
    struct Choice {
        std::string text;
        std::int64_t mode = 0;
    };

    // Needs the session's store and transport (a keyboard connected), unless the session
    // works without a keyboard.
    CustomKeyDialog(SessionCore& core, const KeyPage& keys);

    const std::string& keyText() const { return customKeyDesc_; }
    const std::vector<Choice>& keyFunctionTypeDatas() const { return types_; }
    const std::vector<Choice>& keyFunctionMacroTypeDatas() const { return macroTypes_; }
    // The list of the chosen type (macros, mouse, multimedia or Mac shortcuts; the type list
    // for any other type).
    const std::vector<Choice>& functionList() const;

    void viewDidAppear();
    // Selection changes of the three lists.
    void selectFunctionType(int index);
    void selectFunction(int index);
    void selectMacroPlayType(int index);
    void setPlayCountText(const std::string& text) { playCountText_ = text; }

    // What the window shows.
    int functionTypeIndex() const { return typeIndex_; }
    int functionIndex() const { return functionIndex_; }
    int macroPlayTypeIndex() const { return macroPlayTypeIndex_; }
    bool showsFunctionList() const { return showFunctionList_; }
    bool showsCombinationField() const { return showCombination_; }
    bool showsMacroPlayType() const { return showMacroPlayType_; }
    bool showsPlayCount() const { return showPlayCount_; }
    const std::string& playCountText() const { return playCountText_; }
    const std::string& keyfuncEditText() const { return keyfuncEdit_; }

    // "Keyboard Function" takes its combination from the keyboard once the user begins a capture;
    // while it captures the front end passes its key events here (after the keystroke capture has
    // seen them), Tab and Escape included. It ends when every key of the combination is released.
    bool capturesKeys() const { return key_functiontypevalue_ == kMacroTypeKey; }
    void beginCapture() { capturing_ = capturesKeys(); }
    bool capturingKeys() const { return capturesKeys() && capturing_; }
    void keyEvent();
    // Takes the held modifiers and the first held key from the keystroke capture.
    void fillBindInput();
    // The same with keys given directly (modifiers first).
    void fillBindInput(const std::vector<std::int64_t>& keys);

    // Save: stores the assignment and sends the base layer's table; the window then closes.
    void savekeyfunc_action() { keyAssignment(); }
    void keyAssignment();

private:
    SessionCore& core_;
    std::int64_t customKeyValue_;
    std::string customKeyDesc_;
    std::int64_t currentProfile_;

    std::vector<Choice> types_, mouse_, macros_, macroTypes_, multimedia_, macShortcuts_;
    std::int64_t key_functiontypevalue_ = 0;
    bool capturing_ = false;
    std::int64_t key_functionvalue_ = 0;
    int typeIndex_ = -1;
    int functionIndex_ = -1;
    int macroPlayTypeIndex_ = -1;
    bool showFunctionList_ = false;
    bool showCombination_ = false;
    bool showMacroPlayType_ = false;
    bool showPlayCount_ = false;
    std::string playCountText_ = "1";
    std::string keyfuncEdit_;
    std::string currentModifyKeysStr_;
    std::vector<std::int64_t> currentModifyKeys_;
};

}  // namespace qx9
