// Ctrl and the wheel change the size of the text. Looks at the messages of the main window and passes
// every one of them on.
#pragma once

#include <functional>

#include <windows.h>

namespace vellums::ui::modMouseWheel {

// Receives 0 (smaller) for a turn away from the user, 2 (larger) for one towards the user, once for
// each wheel message.
using SizeCommand = std::function<void(int)>;

// Replaces the window's procedure until unhook(), which puts the one before back. One window at a time.
void hook(HWND window, SizeCommand clickmnusizes);
void unhook(HWND window);

} // namespace vellums::ui::modMouseWheel
