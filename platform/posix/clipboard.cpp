#include "platform/clipboard.h"

namespace vellums::platform {
namespace {

std::optional<std::u16string>& kept()
{
    static std::optional<std::u16string> text;
    return text;
}

} // namespace

bool clipboardHasText()
{
    return kept().has_value();
}

std::optional<std::u16string> clipboardText()
{
    return kept();
}

bool setClipboardText(const std::u16string& text)
{
    kept() = text.substr(0, text.find(u'\0'));
    return true;
}

} // namespace vellums::platform
