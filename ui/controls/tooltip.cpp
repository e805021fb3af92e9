#include "ui/controls/tooltip.h"

#include "ui/windows/systemLook.h"
#include "ui/windows/wide.h"

#include <utility>

#include <commctrl.h>

namespace vellums::ui {
namespace {

constexpr int kMostPixels = 480; // at 96 dpi; a longer text is wrapped

TTTOOLINFOW toolOf(HWND parent, HWND control, const std::u16string& text)
{
    TTTOOLINFOW tool{};
    tool.cbSize = TTTOOLINFOW_V1_SIZE;
    tool.uFlags = TTF_IDISHWND | TTF_SUBCLASS;
    tool.hwnd = parent;
    tool.uId = reinterpret_cast<UINT_PTR>(control);
    tool.lpszText = const_cast<wchar_t*>(wide(text));
    return tool;
}

} // namespace

void Tooltip::create(HWND parent, HWND control)
{
    parent_ = parent;
    control_ = control;
    // Without an owner: windows that own others are not always raised above all.
    hwnd_ = CreateWindowExW(WS_EX_TOPMOST, TOOLTIPS_CLASSW, nullptr, WS_POPUP | TTS_NOPREFIX | TTS_ALWAYSTIP,
        0, 0, 0, 0, nullptr, nullptr, GetModuleHandleW(nullptr), nullptr);
    const TTTOOLINFOW tool = toolOf(parent_, control_, text_);
    SendMessageW(hwnd_, TTM_ADDTOOLW, 0, reinterpret_cast<LPARAM>(&tool));
    limitWidth();
}

void Tooltip::destroy()
{
    if (hwnd_ != nullptr)
        DestroyWindow(std::exchange(hwnd_, nullptr));
}

void Tooltip::setText(std::u16string_view text)
{
    text_ = text;
    limitWidth();
    const TTTOOLINFOW tool = toolOf(parent_, control_, text_);
    SendMessageW(hwnd_, TTM_UPDATETIPTEXTW, 0, reinterpret_cast<LPARAM>(&tool));
}

// With each text: the window may have come to a screen of another resolution.
void Tooltip::limitWidth() const
{
    SendMessageW(hwnd_, TTM_SETMAXTIPWIDTH, 0, MulDiv(kMostPixels, static_cast<int>(dpiOf(parent_)), 96));
}

} // namespace vellums::ui
