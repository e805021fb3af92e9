// The clipboard's text. On systems without one the process keeps a clipboard of its own.
#pragma once

#include <string>

namespace vellums::platform {

bool clipboardHasText();

struct ClipboardText {
    enum class State {
        Text, // perhaps an empty one
        None, // nothing, or something else than text
        Held, // another program has had the clipboard open all the time, about half a second
    };
    State state = State::None;
    std::u16string text; // up to its first U+0000
    bool isHeld() const { return state == State::Held; }
};
ClipboardText clipboardText();
// False when the clipboard could not be had.
bool setClipboardText(const std::u16string& text);

} // namespace vellums::platform
