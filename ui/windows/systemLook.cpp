#include "ui/windows/systemLook.h"

#include "ui/windows/deviceContext.h"

#include <algorithm>

namespace vellums::ui {

bool isHighContrast()
{
    HIGHCONTRASTW contrast{};
    contrast.cbSize = sizeof contrast;
    return SystemParametersInfoW(SPI_GETHIGHCONTRAST, sizeof contrast, &contrast, 0) != FALSE &&
        (contrast.dwFlags & HCF_HIGHCONTRASTON) != 0;
}

UINT dpiOf(HWND window)
{
    // Newer than the oldest Windows that the program runs on.
    using GetDpi = UINT(WINAPI*)(HWND);
    const FARPROC found = GetProcAddress(GetModuleHandleW(L"user32.dll"), "GetDpiForWindow");
    if (const auto get = reinterpret_cast<GetDpi>(reinterpret_cast<void*>(found)); get != nullptr)
        if (const UINT dpi = get(window); dpi != 0)
            return dpi;
    const DeviceContext dc(window);
    return static_cast<UINT>(GetDeviceCaps(dc.get(), LOGPIXELSX));
}

void keepOnScreen(HWND window)
{
    MONITORINFO monitor{};
    monitor.cbSize = sizeof monitor;
    RECT rect{};
    if (!GetMonitorInfoW(MonitorFromWindow(window, MONITOR_DEFAULTTONEAREST), &monitor) ||
        !GetWindowRect(window, &rect))
        return;
    const RECT& work = monitor.rcWork;
    // First no larger than the work area, so that there is a place where the whole window fits.
    const LONG width = std::min(rect.right - rect.left, work.right - work.left);
    const LONG height = std::min(rect.bottom - rect.top, work.bottom - work.top);
    const LONG left = std::clamp(rect.left, work.left, work.right - width);
    const LONG top = std::clamp(rect.top, work.top, work.bottom - height);
    SetWindowPos(window, nullptr, left, top, width, height, SWP_NOZORDER | SWP_NOACTIVATE);
}

} // namespace vellums::ui
