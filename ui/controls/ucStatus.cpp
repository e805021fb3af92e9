// The panel is a window of its own class around a static label. The label draws the text, the panel answers
// what colours it draws with, and hears the label's mouse through a subclass, in its own coordinates. Colours
// are kept as they were set, also as numbers of system colours, and looked up anew when the system's change.
#include "ui/controls/ucStatus.h"

#include "text/decimal.h"
#include "ui/controls/windowText.h"
#include "ui/windows/border.h"
#include "ui/windows/systemLook.h"
#include "ui/windows/wide.h"

#include <algorithm>
#include <utility>

#include <windowsx.h>

namespace vellums::ui {
namespace {

constexpr wchar_t kPanelClass[] = L"ucStatus";
constexpr std::uint32_t kSystemColour = 0x80000000;

COLORREF colourOf(std::uint32_t colour)
{
    return (colour & kSystemColour) != 0 ? GetSysColor(static_cast<int>(colour & 0xFF)) : colour;
}

// 1 Shift, 2 Ctrl, 4 Alt: the sum that handlers of such events expect.
int shiftState(WPARAM keys)
{
    return ((keys & MK_SHIFT) != 0 ? 1 : 0) | ((keys & MK_CONTROL) != 0 ? 2 : 0) |
        (GetKeyState(VK_MENU) < 0 ? 4 : 0);
}

// "name,height"; empty for the container's font.
std::u16string fontText(HFONT font)
{
    LOGFONTW description{};
    if (font == nullptr || GetObjectW(font, sizeof description, &description) == 0)
        return {};
    return fromWide(description.lfFaceName) + u"," + text::decimal(description.lfHeight);
}

OwnedFont fontOf(const std::u16string& text)
{
    const std::size_t comma = text.rfind(u',');
    if (comma == std::u16string::npos || comma == 0 || comma >= LF_FACESIZE)
        return {};
    LOGFONTW description{};
    std::copy_n(text.begin(), comma, description.lfFaceName);
    description.lfHeight = _wtoi(wide(text.substr(comma + 1)));
    description.lfCharSet = DEFAULT_CHARSET;
    return OwnedFont(CreateFontIndirectW(&description));
}

// Digits alone; anything else, or a number beyond 32 bits, gives the default.
std::uint32_t numberIn(const PropertyBag& bag, const std::u16string& name, std::uint32_t defaultValue)
{
    const auto found = bag.find(name);
    if (found == bag.end() || found->second.empty())
        return defaultValue;
    std::uint64_t number = 0;
    for (const char16_t c : found->second) {
        if (c < u'0' || c > u'9' || number > 0xFFFFFFFF)
            return defaultValue;
        number = number * 10 + static_cast<std::uint64_t>(c - u'0');
    }
    return number > 0xFFFFFFFF ? defaultValue : static_cast<std::uint32_t>(number);
}

} // namespace

void ucStatus::create(HWND parent, int id)
{
    const HINSTANCE program = GetModuleHandleW(nullptr);
    WNDCLASSEXW panel{};
    panel.cbSize = sizeof panel;
    panel.lpfnWndProc = panelProc;
    panel.hInstance = program;
    panel.hCursor = LoadCursorW(nullptr, IDC_ARROW);
    panel.lpszClassName = kPanelClass;
    RegisterClassExW(&panel); // fails harmlessly for the second panel
    hwnd_ = CreateWindowExW(WS_EX_STATICEDGE, kPanelClass, nullptr, WS_CHILD | WS_VISIBLE | WS_CLIPCHILDREN,
        0, 0, 0, 0, parent, reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), program, this);
    lblCaption_ = CreateWindowExW(0, L"STATIC", nullptr,
        WS_CHILD | WS_VISIBLE | SS_NOTIFY | SS_NOPREFIX | SS_LEFTNOWORDWRAP | SS_CENTERIMAGE, 0, 0, 0, 0,
        hwnd_, nullptr, program, nullptr);
    label_ = Subclass(lblCaption_, labelProc, this);
    tooltip_.create(hwnd_, lblCaption_);
    setBackColor(backColor_);
}

void ucStatus::setBackColor(std::uint32_t colour)
{
    backColor_ = colour;
    brush_.reset(CreateSolidBrush(colourOf(colour)));
    InvalidateRect(hwnd_, nullptr, TRUE);
    InvalidateRect(lblCaption_, nullptr, TRUE);
}

void ucStatus::setForeColor(std::uint32_t colour)
{
    foreColor_ = colour;
    InvalidateRect(lblCaption_, nullptr, TRUE);
}

void ucStatus::setFont(HFONT font)
{
    font_ = font;
    SendMessageW(lblCaption_, WM_SETFONT, reinterpret_cast<WPARAM>(font), TRUE);
}

std::u16string ucStatus::Caption() const
{
    return windowText(lblCaption_);
}

void ucStatus::setCaption(const std::u16string& caption)
{
    setWindowText(lblCaption_, caption);
    setWindowText(hwnd_, caption); // screen readers and scripts ask the panel itself
    tooltip_.setText(Caption());
    if (Change)
        Change();
}

void ucStatus::setAlignment(Alignment alignment)
{
    alignment_ = alignment;
    LONG_PTR style = GetWindowLongPtrW(lblCaption_, GWL_STYLE) & ~static_cast<LONG_PTR>(SS_TYPEMASK);
    switch (alignment) {
    case Alignment::Left:
        style |= SS_LEFTNOWORDWRAP;
        break;
    case Alignment::Right:
        style |= SS_RIGHT;
        break;
    case Alignment::Centre:
        style |= SS_CENTER;
        break;
    }
    SetWindowLongPtrW(lblCaption_, GWL_STYLE, style);
    InvalidateRect(lblCaption_, nullptr, TRUE);
}

void ucStatus::writeProperties(PropertyBag& bag) const
{
    bag[u"BackColor"] = text::decimal(backColor_);
    bag[u"ForeColor"] = text::decimal(foreColor_);
    bag[u"Font"] = fontText(font_);
    bag[u"Caption"] = Caption();
    bag[u"Alignment"] = text::decimal(static_cast<int>(alignment_));
}

void ucStatus::readProperties(const PropertyBag& bag)
{
    setBackColor(numberIn(bag, u"BackColor", 0x8000000F));
    setForeColor(numberIn(bag, u"ForeColor", 0x80000012));
    if (const auto font = bag.find(u"Font"); font != bag.end()) {
        OwnedFont made = fontOf(font->second);
        if (made.get() != nullptr) {
            setFont(made.get());
            readFont_ = std::move(made);
        }
    }
    const std::uint32_t alignment = numberIn(bag, u"Alignment", 0);
    setAlignment(alignment > 2 ? Alignment::Left : static_cast<Alignment>(alignment));
}

void ucStatus::placeLabel(int width, int height)
{
    const int inset = MulDiv(kTextInsetPixels, static_cast<int>(dpiOf(hwnd_)), 96);
    MoveWindow(lblCaption_, inset, 1, width - 2 * inset, height - 2, TRUE);
}

LRESULT ucStatus::paintLabel(HDC dc)
{
    SetTextColor(dc, colourOf(foreColor_));
    SetBkColor(dc, colourOf(backColor_));
    return reinterpret_cast<LRESULT>(brush_.get());
}

LRESULT ucStatus::onPanel(UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message) {
    case WM_SIZE:
        placeLabel(LOWORD(lParam), HIWORD(lParam));
        return 0;
    case WM_ERASEBKGND: {
        RECT rect{};
        GetClientRect(hwnd_, &rect);
        FillRect(reinterpret_cast<HDC>(wParam), &rect, brush_.get());
        return 1;
    }
    case WM_CTLCOLORSTATIC:
        return paintLabel(reinterpret_cast<HDC>(wParam));
    case WM_SYSCOLORCHANGE:
        setBackColor(backColor_);
        return 0;
    case WM_DESTROY:
        tooltip_.destroy();
        return 0;
    }
    return DefWindowProcW(hwnd_, message, wParam, lParam);
}

bool ucStatus::onLabelMouse(UINT message, WPARAM wParam, LPARAM lParam)
{
    POINT at{GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)};
    MapWindowPoints(lblCaption_, hwnd_, &at, 1);
    switch (message) {
    case WM_LBUTTONUP:
    case WM_RBUTTONUP:
    case WM_MBUTTONUP: {
        const int button = message == WM_LBUTTONUP ? 1 : message == WM_RBUTTONUP ? 2 : 4;
        if (MouseUp)
            MouseUp(button, shiftState(wParam), at.x, at.y);
        if (message == WM_LBUTTONUP && Click)
            Click();
        return true;
    }
    case WM_LBUTTONDBLCLK:
        if (DblClick)
            DblClick();
        return true;
    }
    return false;
}

LRESULT CALLBACK ucStatus::panelProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == WM_NCCREATE) {
        const auto* created = reinterpret_cast<CREATESTRUCTW*>(lParam);
        SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(created->lpCreateParams));
        static_cast<ucStatus*>(created->lpCreateParams)->hwnd_ = window;
    }
    // Messages come before WM_NCCREATE as well.
    auto* panel = reinterpret_cast<ucStatus*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    if (panel == nullptr)
        return DefWindowProcW(window, message, wParam, lParam);
    return border::guarded<LRESULT>(0, [&] { return panel->onPanel(message, wParam, lParam); });
}

LRESULT CALLBACK ucStatus::labelProc(
    HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR, DWORD_PTR self)
{
    if (reinterpret_cast<ucStatus*>(self)->onLabelMouse(message, wParam, lParam))
        return 0;
    return DefSubclassProc(window, message, wParam, lParam);
}

} // namespace vellums::ui
