#include "ui/controls/windowText.h"

#include "ui/windows/wide.h"

namespace vellums::ui {

std::u16string windowText(HWND window)
{
    const int length = GetWindowTextLengthW(window);
    if (length <= 0)
        return {};
    std::u16string text(static_cast<std::size_t>(length), u'\0');
    // The length is an upper bound: in some cases the text is shorter.
    const int copied = GetWindowTextW(window, reinterpret_cast<wchar_t*>(text.data()), length + 1);
    text.resize(static_cast<std::size_t>(copied));
    return text;
}

bool setWindowText(HWND window, const std::u16string& text)
{
    return SetWindowTextW(window, wide(text)) != FALSE;
}

} // namespace vellums::ui
