// Where the controls stand: the window's part in it; the rules are in layout.h.
#include "ui/frmMain.h"

#include "ui/ids.h"
#include "ui/wide.h"

#include <iterator>

namespace vellums::ui {
namespace {

constexpr int kFontTenths = 80;  // 8 points
constexpr int kLabelMargin = 12; // pixels behind a text

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

void frmMain::makeFonts()
{
    OwnedFont font(CreateFontW(-MulDiv(kFontTenths, scale_.dpi(), 720), 0, 0, 0, FW_NORMAL, FALSE, FALSE,
        FALSE, DEFAULT_CHARSET, OUT_DEFAULT_PRECIS, CLIP_DEFAULT_PRECIS, CLEARTYPE_QUALITY,
        DEFAULT_PITCH | FF_SWISS, wide(defaultFontName())));
    for (const HWND control : {lblRemarks_[0].hwnd(), lblRemarks_[1].hwnd(), txtKey_.hwnd(),
             txtInline_.hwnd(), chkSort_.hwnd(), lblDate_.hwnd(), txtType_.hwnd(), lstHeads_.hwnd()})
        SendMessageW(control, WM_SETFONT, reinterpret_cast<WPARAM>(font.get()), TRUE);
    lstInLineSrch_.setFont(font.get());
    ucStatusLeft_.setFont(font.get());
    ucStatusRight_.setFont(font.get());
    font_ = std::move(font);
}

void frmMain::layOut()
{
    RECT client{};
    GetClientRect(hwnd_, &client);
    const double width = scale_.twips(client.right);
    if (listShown_ && !splitter_.isDragged())
        splitterLeft_ = splitterInWindow(splitterLeft_, width);

    const auto measured = [this](const WindowLabel& label, const std::u16string& text) {
        return scale_.twips(textWidth(label.hwnd(), font_.get(), text) + kLabelMargin);
    };
    LayoutInput input;
    input.width = width;
    input.height = scale_.twips(client.bottom);
    input.searchLabelWidth = measured(lblRemarks_[0], lblRemarks_[0].text());
    input.findLabelWidth = measured(lblRemarks_[1], lblRemarks_[1].text());
    input.dateWidth = measured(lblDate_, u"2000-00-00 00:00:00");
    input.splitterLeft = splitterLeft_;
    input.resultsShown = lstInLineSrch_.visible();
    const Layout at = computeLayout(input, scale_);

    struct Place {
        HWND window;
        const RECT& rect;
    };
    const Place places[] = {
        {lblStaticBorder_, at.lblStaticBorder},
        {lblRemarks_[0].hwnd(), at.lblSearch},
        {txtKey_.hwnd(), at.txtKey},
        {lblRemarks_[1].hwnd(), at.lblFind},
        {txtInline_.hwnd(), at.txtInline},
        {lblDate_.hwnd(), at.lblDate},
        {txtType_.hwnd(), at.txtType},
        {chkSort_.hwnd(), at.chkSort},
        {lstHeads_.hwnd(), at.lstHeads},
        {splitter_.hwnd(), at.fraSplitter},
        {text_.wrapping().hwnd(), at.text},
        {text_.scrolling().hwnd(), at.text},
        {lstInLineSrch_.hwnd(), at.lstInLineSrch},
        {shpEdge_, at.shpEdge},
        {ucStatusLeft_.hwnd(), at.ucStatusLeft},
        {ucStatusRight_.hwnd(), at.ucStatusRight},
    };
    HDWP moves = BeginDeferWindowPos(static_cast<int>(std::size(places)));
    for (const Place& place : places)
        moves = DeferWindowPos(moves, place.window, nullptr, place.rect.left, place.rect.top,
            place.rect.right - place.rect.left, place.rect.bottom - place.rect.top,
            SWP_NOZORDER | SWP_NOACTIVATE);
    EndDeferWindowPos(moves);
}

void frmMain::onDpiChanged(UINT dpi, const RECT& suggested)
{
    scale_ = Scale(dpi);
    makeFonts();
    display_->setDpi(scale_.dpi());
    SetWindowPos(hwnd_, nullptr, suggested.left, suggested.top, suggested.right - suggested.left,
        suggested.bottom - suggested.top, SWP_NOZORDER | SWP_NOACTIVATE);
    layOut();
}

// At the left edge the list is gone, anywhere else it is there.
void frmMain::dragSplitter(int left)
{
    RECT client{};
    GetClientRect(hwnd_, &client);
    splitterLeft_ = splitterInDrag(scale_.twips(left), scale_.twips(client.right));
    lstHeads_.setVisible(splitterLeft_ > 0);
    layOut();
}

void frmMain::endSplitterDrag()
{
    listShown_ = splitterLeft_ > 0;
    if (listShown_)
        listRight_ = splitterLeft_;
    else
        showList(false);
    markListShown();
}

void frmMain::showList(bool shown)
{
    listShown_ = shown;
    const bool hadFocus = GetFocus() == lstHeads_.hwnd();
    if (shown)
        splitterLeft_ = listRight_ + 2 * scale_.twipsPerPixel();
    else
        splitterLeft_ = 0;
    layOut();
    ShowWindow(splitter_.hwnd(), shown ? SW_SHOWNA : SW_HIDE);
    lstHeads_.setVisible(shown);
    if (!shown && hadFocus)
        text_.focus();
    if (shown)
        listRight_ = splitterLeft_ - 2 * scale_.twipsPerPixel();
    markListShown();
}

void frmMain::markListShown()
{
    menus_->setChecked(ID_mnu_hidelst, !listShown_);
    menus_->setCaption(ID_mnu_top + 9, listShown_ ? u"||" : u"|");
}

} // namespace vellums::ui
