// Where the controls stand. Measures are kept in twips and become pixels here, with the window's own
// dpi.
#include "ui/frmMain.h"

#include "ui/wide.h"

#include <algorithm>

namespace vellums::ui {
namespace {

constexpr int kTwipsPerInch = 1440;
constexpr int kGap = 60;
constexpr int kRowHeight = 345;
constexpr int kStatusHeight = 330;
constexpr int kCheckWidth = 240; // the box alone: its caption is never drawn
constexpr int kDateWidth = 2040;
constexpr double kStatusShare = 0.382;
constexpr double kListShare = 0.3;
constexpr int kFontTenths = 80; // 8 points

int textWidth(HWND label, HFONT font, const std::u16string& text)
{
    const HDC dc = GetDC(label);
    const HGDIOBJ before = SelectObject(dc, font);
    SIZE size{};
    GetTextExtentPoint32W(dc, wide(text), static_cast<int>(text.size()), &size);
    SelectObject(dc, before);
    ReleaseDC(label, dc);
    return size.cx;
}

} // namespace

int frmMain::pixels(int twips) const
{
    return MulDiv(twips, static_cast<int>(dpi_), kTwipsPerInch);
}

void frmMain::makeFonts()
{
    OwnedFont font(CreateFontW(-MulDiv(kFontTenths, static_cast<int>(dpi_), 720), 0, 0, 0, FW_NORMAL, FALSE,
        FALSE, FALSE, DEFAULT_CHARSET, OUT_DEFAULT_PRECIS, CLIP_DEFAULT_PRECIS, CLEARTYPE_QUALITY,
        DEFAULT_PITCH | FF_SWISS, L"Tahoma"));
    for (const HWND control : {lblRemarks_.hwnd(), txtKey_.hwnd(), chkSort_.hwnd(), lblDate_.hwnd(),
             txtType_.hwnd(), lstHeads_.hwnd(), txtShowWrap_.hwnd()})
        SendMessageW(control, WM_SETFONT, reinterpret_cast<WPARAM>(font.get()), TRUE);
    ucStatusLeft_.setFont(font.get());
    ucStatusRight_.setFont(font.get());
    font_ = std::move(font);
}

void frmMain::layOut(int width, int height)
{
    const int gap = pixels(kGap);
    const int row = pixels(kRowHeight);
    const int statusTop = height - pixels(kStatusHeight);
    const int labelWidth = textWidth(lblRemarks_.hwnd(), font_.get(), lblRemarks_.text()) + gap;
    const int dateLeft = width - gap - pixels(kDateWidth);
    const int checkLeft = dateLeft - gap - pixels(kCheckWidth);
    const int keyLeft = gap + labelWidth;
    const int titleTop = 2 * gap + row;
    const int bodyTop = titleTop + row + gap;
    const int listWidth = static_cast<int>(width * kListShare);
    const int textLeft = gap + listWidth + gap;
    const int leftPanel = static_cast<int>(width * kStatusShare);
    const int panelGap = pixels(30);

    struct Place {
        HWND window;
        int x;
        int y;
        int width;
        int height;
    };
    const Place places[] = {
        {lblRemarks_.hwnd(), gap, gap, labelWidth, row},
        {txtKey_.hwnd(), keyLeft, gap, checkLeft - gap - keyLeft, row},
        {chkSort_.hwnd(), checkLeft, gap, pixels(kCheckWidth), row},
        {lblDate_.hwnd(), dateLeft, gap, pixels(kDateWidth), row},
        {txtType_.hwnd(), gap, titleTop, width - 2 * gap, row},
        {lstHeads_.hwnd(), gap, bodyTop, listWidth, statusTop - gap - bodyTop},
        {txtShowWrap_.hwnd(), textLeft, bodyTop, width - gap - textLeft, statusTop - gap - bodyTop},
        {ucStatusLeft_.hwnd(), 0, statusTop, leftPanel, height - statusTop},
        {ucStatusRight_.hwnd(), leftPanel + panelGap, statusTop, width - leftPanel - panelGap,
            height - statusTop},
    };
    HDWP moves = BeginDeferWindowPos(static_cast<int>(std::size(places)));
    for (const Place& place : places)
        moves = DeferWindowPos(moves, place.window, nullptr, place.x, place.y, std::max(0, place.width),
            std::max(0, place.height), SWP_NOZORDER | SWP_NOACTIVATE);
    EndDeferWindowPos(moves);
}

void frmMain::onDpiChanged(UINT dpi, const RECT& suggested)
{
    dpi_ = dpi;
    makeFonts();
    SetWindowPos(hwnd_, nullptr, suggested.left, suggested.top, suggested.right - suggested.left,
        suggested.bottom - suggested.top, SWP_NOZORDER | SWP_NOACTIVATE);
    RECT client{};
    GetClientRect(hwnd_, &client);
    layOut(client.right, client.bottom);
}

} // namespace vellums::ui
