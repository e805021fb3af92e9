#include "ui/windows/menuKeyWatch.h"

namespace vellums::ui {
namespace {

// A hook has no object of the program's to ask.
bool& pressed() noexcept
{
    static bool was = false;
    return was;
}

// An open menu has a message loop of its own, which asks nobody but this kind of hook.
LRESULT CALLBACK filterProc(int code, WPARAM wParam, LPARAM lParam) noexcept
{
    const auto* message = reinterpret_cast<const MSG*>(lParam);
    if (code == MSGF_MENU && (message->message == WM_KEYDOWN || message->message == WM_SYSKEYDOWN) &&
        (message->wParam == VK_APPS || (message->wParam == VK_F10 && GetKeyState(VK_SHIFT) < 0))) {
        pressed() = true;
        EndMenu();
        return 1; // the menu does not see the key
    }
    return CallNextHookEx(nullptr, code, wParam, lParam);
}

} // namespace

MenuKeyWatch::MenuKeyWatch()
    : hook_(SetWindowsHookExW(WH_MSGFILTER, filterProc, nullptr, GetCurrentThreadId()))
{
    pressed() = false;
}

bool MenuKeyWatch::wasPressed() const
{
    return pressed();
}

} // namespace vellums::ui
