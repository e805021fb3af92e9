// The text of a window.
#pragma once

#include <string>

#include <windows.h>

namespace vellums::ui {

std::u16string windowText(HWND window);
// False: the window keeps the text it had.
bool setWindowText(HWND window, const std::u16string& text);

} // namespace vellums::ui
