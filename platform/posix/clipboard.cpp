#include "platform/clipboard.h"

#include "platform/posix/processClipboard.h"

#include <optional>

namespace vellums::platform {
namespace {

// No value: nothing was ever put there, which is not the same as an empty text.
std::optional<std::u16string>& kept()
{
    static std::optional<std::u16string> text;
    return text;
}

bool& isHeld()
{
    static bool held = false;
    return held;
}

} // namespace

bool clipboardHasText()
{
    return kept().has_value();
}

void holdClipboard(bool held)
{
    isHeld() = held;
}

ClipboardText clipboardText()
{
    if (isHeld())
        return {ClipboardText::State::Held, {}};
    if (!kept())
        return {};
    return {ClipboardText::State::Text, *kept()};
}

bool setClipboardText(const std::u16string& text)
{
    if (isHeld())
        return false;
    kept() = text.substr(0, text.find(u'\0'));
    return true;
}

} // namespace vellums::platform
