// Key strokes of the program's own.
#pragma once

#include <windows.h>

namespace vellums::ui::modKBEvent {

// Posts the key going down and up; nothing waits for it. Nothing calls it yet: the hand-over to a running
// program will.
inline void postKey(HWND window, WORD virtualKey)
{
    PostMessageW(window, WM_KEYDOWN, virtualKey, 0);
    PostMessageW(window, WM_KEYUP, virtualKey, 0);
}

} // namespace vellums::ui::modKBEvent
