// What the user has told the system about how windows look.
#pragma once

#include <windows.h>

namespace vellums::ui {

bool isHighContrast();

// The resolution of the screen on which the window stands (per inch).
UINT dpiOf(HWND window);

// Moves and shrinks the window into the work area of its screen.
void keepOnScreen(HWND window);

} // namespace vellums::ui
