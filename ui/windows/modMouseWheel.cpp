#include "ui/windows/modMouseWheel.h"

#include "ui/windows/subclass.h"

#include <utility>

namespace vellums::ui::modMouseWheel {
namespace {

constexpr int kSmaller = 0;
constexpr int kLarger = 2;

// One for the process: one window at a time is looked at.
struct Hook {
    Subclass subclass;
    SizeCommand clickmnusizes;
};
Hook& hooked()
{
    static Hook hook;
    return hook;
}

LRESULT CALLBACK wheelProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR, DWORD_PTR)
{
    if (message == WM_MOUSEWHEEL && (GET_KEYSTATE_WPARAM(wParam) & MK_CONTROL) != 0)
        hooked().clickmnusizes(GET_WHEEL_DELTA_WPARAM(wParam) > 0 ? kSmaller : kLarger);
    return DefSubclassProc(window, message, wParam, lParam);
}

} // namespace

void hook(HWND window, SizeCommand clickmnusizes)
{
    if (hooked().subclass.isOn())
        return;
    hooked().clickmnusizes = std::move(clickmnusizes);
    hooked().subclass = Subclass(window, wheelProc, nullptr);
}

// Called while the window is destroyed, within wheelProc's own call for that message.
void unhook(HWND /*window*/)
{
    hooked() = {};
}

} // namespace vellums::ui::modMouseWheel
