#include "app/clipboardText.h"

#include "platform/clipboard.h"

namespace vellums {
namespace {

void sayThatItIsHeld(const Notebook& notebook)
{
    notebook.status.failed(notebook.say(
        u"Another program holds the clipboard; please try again.", u"剪贴板正被其他程序占用, 请重试"));
}

} // namespace

std::optional<std::u16string> clipboardText(const Notebook& notebook)
{
    platform::ClipboardText clipboard = platform::clipboardText();
    if (clipboard.isHeld()) {
        sayThatItIsHeld(notebook);
        return std::nullopt;
    }
    return std::move(clipboard.text);
}

void copyText(const Notebook& notebook, const std::u16string& text)
{
    if (!platform::setClipboardText(text))
        sayThatItIsHeld(notebook);
}

} // namespace vellums
