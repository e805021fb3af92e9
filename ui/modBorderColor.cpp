#include "ui/modBorderColor.h"

#include "ui/systemLook.h"

namespace vellums::ui::modBorderColor {
namespace {

constexpr wchar_t kProperty[] = L"OrigProcAddr";
constexpr COLORREF kBorder = RGB(122, 138, 153);

void drawBorder(HWND control)
{
    RECT rect{};
    GetWindowRect(control, &rect);
    OffsetRect(&rect, -rect.left, -rect.top);
    const HDC dc = GetWindowDC(control);
    const HBRUSH brush = CreateSolidBrush(isHighContrast() ? GetSysColor(COLOR_WINDOWFRAME) : kBorder);
    FrameRect(dc, &rect, brush);
    DeleteObject(brush);
    ReleaseDC(control, dc);
}

LRESULT CALLBACK borderProc(HWND control, UINT message, WPARAM wParam, LPARAM lParam)
{
    const auto before = reinterpret_cast<WNDPROC>(GetPropW(control, kProperty));
    if (message == WM_DESTROY) {
        SetWindowLongPtrW(control, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(before));
        RemovePropW(control, kProperty);
    }
    const LRESULT result = CallWindowProcW(before, control, message, wParam, lParam);
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
    if (SetPropW(control, kProperty, reinterpret_cast<HANDLE>(before)))
        SetWindowLongPtrW(control, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(borderProc));
}

} // namespace vellums::ui::modBorderColor
