#include "ui/modMouseWheel.h"

#include <utility>

namespace vellums::ui::modMouseWheel {
namespace {

constexpr int kSmaller = 0;
constexpr int kLarger = 2;

// A window procedure has no other way to know what stood there before it.
struct Hook {
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
    const WNDPROC before = hooked().before;
    if (message == WM_MOUSEWHEEL && (GET_KEYSTATE_WPARAM(wParam) & MK_CONTROL) != 0)
        hooked().clickmnusizes(GET_WHEEL_DELTA_WPARAM(wParam) > 0 ? kSmaller : kLarger);
    return CallWindowProcW(before, window, message, wParam, lParam);
}

} // namespace

void hook(HWND window, SizeCommand clickmnusizes)
{
    if (hooked().before != nullptr)
        return;
    hooked().clickmnusizes = std::move(clickmnusizes);
    hooked().before = reinterpret_cast<WNDPROC>(GetWindowLongPtrW(window, GWLP_WNDPROC));
    SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(wheelProc));
}

void unhook(HWND window)
{
    if (hooked().before == nullptr)
        return;
    SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(hooked().before));
    hooked() = {};
}

} // namespace vellums::ui::modMouseWheel
