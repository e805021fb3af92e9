// Where the controls stand: the window's part in it; the rules are in layout.h.
#include "ui/main/frmMain.h"

#include "ui/ids.h"
#include "ui/windows/deviceContext.h"
#include "ui/windows/wide.h"

#include <iterator>
#include <utility>

namespace vellums::ui {
namespace {

constexpr int kFontTenths = 80;  // 8 points
constexpr int kLabelMargin = 12; // pixels behind a text
// A box of one line puts its text this far below its upper edge at any resolution; as much below the text
// and it stands in the middle.
constexpr int kAboveLine = 2;

struct Place {
    HWND window;
    const RECT& rect;
};

bool stands(HWND parent, const Place& place)
{
    RECT now{};
    GetWindowRect(place.window, &now);
    MapWindowPoints(nullptr, parent, reinterpret_cast<POINT*>(&now), 2);
    return EqualRect(&now, &place.rect) != FALSE;
}

} // namespace

void frmMain::makeFonts()
{
    // The old font stays until every control has the new one: a control draws with what it was given last.
    OwnedFont font(CreateFontW(-MulDiv(kFontTenths, scale_.dpi(), 720), 0, 0, 0, FW_NORMAL, FALSE, FALSE,
        FALSE, DEFAULT_CHARSET, OUT_DEFAULT_PRECIS, CLIP_DEFAULT_PRECIS, CLEARTYPE_QUALITY,
        DEFAULT_PITCH | FF_SWISS, wide(defaultFontName())));
    for (const HWND control :
        {lblRemarks_[0].hwnd(), lblRemarks_[1].hwnd(), chkSort_.hwnd(), lblDate_.hwnd()})
        SendMessageW(control, WM_SETFONT, reinterpret_cast<WPARAM>(font.get()), TRUE);
    for (const EditBox* box : {&txtKey_, &txtInline_, &txtType_})
        box->setFont(font.get(), scale_.dpi());
    lstHeads_.setFont(font.get(), scale_.dpi());
    lstInLineSrch_.setFont(font.get(), scale_.dpi());
    ucStatusLeft_.setFont(font.get());
    ucStatusRight_.setFont(font.get());
    font_ = std::move(font);
}

// The limits of the splitter are those of a change of the size; whatever else has the controls placed leaves
// it where the user put it.
void frmMain::onResized()
{
    RECT client{};
    GetClientRect(hwnd_, &client);
    if (client.right != sizeBefore_.cx || client.bottom != sizeBefore_.cy)
        splitterLeft_ = splitterInWindow(splitterLeft_, scale_.twips(client.right));
    sizeBefore_ = {client.right, client.bottom};
    layOut();
}

double frmMain::splitterLeft() const
{
    if (dragLeft_)
        return *dragLeft_;
    return listShown_ ? splitterLeft_ : 0;
}

void frmMain::layOut()
{
    RECT client{};
    GetClientRect(hwnd_, &client);
    const auto measured = [this](const std::u16string& text) {
        return scale_.twips(textWidth(font_.get(), text) + kLabelMargin);
    };
    LayoutInput input;
    input.width = scale_.twips(client.right);
    input.height = scale_.twips(client.bottom);
    input.rowHeight = scale_.twips(lineHeight(font_.get()) + 2 * kAboveLine);
    input.searchLabelWidth = measured(lblRemarks_[0].text());
    input.findLabelWidth = measured(lblRemarks_[1].text());
    input.dateWidth = measured(u"2000-00-00 00:00:00");
    input.splitterLeft = splitterLeft();
    input.resultsShown = lstInLineSrch_.visible();
    const Layout at = computeLayout(input, scale_);

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
    // What stood there is drawn anew, not copied: copies of neighbours that move at the same time overlap.
    HDWP moves = BeginDeferWindowPos(static_cast<int>(std::size(places)));
    for (const Place& place : places)
        if (!stands(hwnd_, place))
            moves = DeferWindowPos(moves, place.window, nullptr, place.rect.left, place.rect.top,
                place.rect.right - place.rect.left, place.rect.bottom - place.rect.top,
                SWP_NOZORDER | SWP_NOACTIVATE | SWP_NOCOPYBITS);
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
    dragLeft_ = splitterInDrag(scale_.twips(left), scale_.twips(client.right));
    lstHeads_.setVisible(*dragLeft_ > 0);
    layOut();
}

// A list that was dragged away comes back where it ended before the drag.
void frmMain::endSplitterDrag()
{
    if (!dragLeft_)
        return;
    const double left = *std::exchange(dragLeft_, std::nullopt);
    if (left > 0)
        splitterLeft_ = left;
    showList(left > 0);
}

void frmMain::showList(bool shown)
{
    listShown_ = shown;
    const bool hadFocus = GetFocus() == lstHeads_.hwnd();
    layOut();
    ShowWindow(splitter_.hwnd(), shown ? SW_SHOWNA : SW_HIDE);
    lstHeads_.setVisible(shown);
    if (!shown && hadFocus)
        text_.focus();
    markListShown();
}

void frmMain::markListShown()
{
    menus_->setChecked(ID_mnu_hidelst, !listShown_);
    menus_->setCaption(ID_mnu_top_List, listShown_ ? u"||" : u"|");
}

} // namespace vellums::ui
