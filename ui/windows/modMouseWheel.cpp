#include "ui/windows/modMouseWheel.h"

#include "ui/windows/border.h"

#include <utility>

namespace vellums::ui::modMouseWheel {
namespace {

constexpr int kSmaller = 0;
constexpr int kLarger = 2;

// One for the process: one window at a time is looked at. It takes the place of the window's procedure by
// itself, since a Subclass looks up the window's properties at every message, and a list that is emptied
// sends its parent one for each of up to 32,767 entries. Nobody else stands on the main window.
struct Hook {
    HWND window = nullptr;
    WNDPROC before = nullptr;
    SizeCommand clickmnusizes;
};
Hook& hooked()
{
    static Hook hook;
    return hook;
}

LRESULT CALLBACK wheelProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    const WNDPROC before = hooked().before; // the message may end the hook
    if (message == WM_MOUSEWHEEL && (GET_KEYSTATE_WPARAM(wParam) & MK_CONTROL) != 0)
        border::guarded(0, [&] {
            const SizeCommand clickmnusizes = hooked().clickmnusizes;
            clickmnusizes(GET_WHEEL_DELTA_WPARAM(wParam) > 0 ? kSmaller : kLarger);
            return 0;
        });
    return CallWindowProcW(before, window, message, wParam, lParam);
}

} // namespace

void hook(HWND window, SizeCommand clickmnusizes)
{
    if (hooked().window != nullptr)
        return;
    hooked() = {
        window, reinterpret_cast<WNDPROC>(GetWindowLongPtrW(window, GWLP_WNDPROC)), std::move(clickmnusizes)};
    SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(wheelProc));
}

void unhook(HWND window)
{
    if (window != hooked().window)
        return;
    SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(hooked().before));
    hooked() = {};
}

} // namespace vellums::ui::modMouseWheel
