// The clipboard's text. On systems without one the process keeps a clipboard of its own.
#pragma once

#include <optional>
#include <string>

namespace vellums::platform {

bool clipboardHasText();
// The text up to its first U+0000; empty when there is none or another program holds the clipboard
// for longer than a moment.
std::optional<std::u16string> clipboardText();
// False when the clipboard could not be had.
bool setClipboardText(const std::u16string& text);

} // namespace vellums::platform
