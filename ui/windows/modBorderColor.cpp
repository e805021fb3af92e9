#include "ui/windows/modBorderColor.h"

#include "ui/windows/deviceContext.h"
#include "ui/windows/owned.h"
#include "ui/windows/subclass.h"
#include "ui/windows/systemLook.h"

#include <map>
#include <utility>

namespace vellums::ui::modBorderColor {
namespace {

constexpr wchar_t kProperty[] = L"OrigProcAddr";
constexpr COLORREF kBorder = RGB(122, 138, 153);

// The procedures that draw borders. Each is taken off with its control.
std::map<HWND, Subclass>& borders()
{
    static std::map<HWND, Subclass> all;
    return all;
}

void drawBorder(HWND control)
{
    RECT rect{};
    GetWindowRect(control, &rect);
    OffsetRect(&rect, -rect.left, -rect.top);
    const DeviceContext dc(control, DeviceContext::Of::WholeWindow);
    const OwnedBrush brush(CreateSolidBrush(isHighContrast() ? GetSysColor(COLOR_WINDOWFRAME) : kBorder));
    FrameRect(dc.get(), &rect, brush.get());
}

LRESULT CALLBACK borderProc(HWND control, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR, DWORD_PTR)
{
    // Takes this very procedure off; the message is passed on all the same.
    if (message == WM_DESTROY) {
        RemovePropW(control, kProperty);
        borders().erase(control);
    }
    const LRESULT result = DefSubclassProc(control, message, wParam, lParam);
    if (message == WM_PAINT)
        drawBorder(control);
    return result;
}

} // namespace

void subclass(HWND control)
{
    if (GetPropW(control, kProperty) != nullptr)
        return;
    const LONG_PTR before = GetWindowLongPtrW(control, GWLP_WNDPROC);
    if (!SetPropW(control, kProperty, reinterpret_cast<HANDLE>(before)))
        return;
    Subclass border(control, borderProc, nullptr);
    if (border.isOn())
        borders()[control] = std::move(border);
    else
        RemovePropW(control, kProperty);
}

} // namespace vellums::ui::modBorderColor
