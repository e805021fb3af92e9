// The text of a window.
#pragma once

#include <string>

#include <windows.h>

namespace vellums::ui {

// From a control's edge to its text, at 96 dpi.
inline constexpr int kTextInsetPixels = 3;

std::u16string windowText(HWND window);
// False: the window keeps the text it had.
bool setWindowText(HWND window, const std::u16string& text);

} // namespace vellums::ui
