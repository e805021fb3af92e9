#include "ui/controls/resultsList.h"

#include "ui/windows/deviceContext.h"
#include "ui/windows/wide.h"

#include <algorithm>

namespace vellums::ui {
namespace {

constexpr std::size_t kMostDrawn = 1000; // units of an entry

} // namespace

void ResultsList::create(HWND parent, int id)
{
    createList(parent, id, WS_DISABLED | LBS_OWNERDRAWFIXED);
}

void ResultsList::measure(MEASUREITEMSTRUCT& item) const
{
    const auto font = reinterpret_cast<HFONT>(SendMessageW(hwnd(), WM_GETFONT, 0, 0));
    item.itemHeight = static_cast<UINT>(lineHeight(font));
}

void ResultsList::draw(const DRAWITEMSTRUCT& item, COLORREF text, COLORREF background) const
{
    const bool selected = (item.itemState & ODS_SELECTED) != 0;
    SetBkColor(item.hDC, selected ? GetSysColor(COLOR_HIGHLIGHT) : background);
    SetTextColor(item.hDC,
        (item.itemState & ODS_DISABLED) != 0 ? GetSysColor(COLOR_GRAYTEXT)
            : selected                       ? GetSysColor(COLOR_HIGHLIGHTTEXT)
                                             : text);
    ExtTextOutW(item.hDC, 0, 0, ETO_OPAQUE, &item.rcItem, nullptr, 0, nullptr);
    if (static_cast<int>(item.itemID) >= 0) {
        std::u16string shown = this->text(static_cast<int>(item.itemID));
        // Drawing takes time for each unit, also for those far outside the window.
        shown.resize(std::min(shown.size(), kMostDrawn));
        RECT place = item.rcItem;
        place.left += 1;
        DrawTextW(item.hDC, wide(shown), static_cast<int>(shown.size()), &place,
            DT_SINGLELINE | DT_VCENTER | DT_NOPREFIX | DT_EXPANDTABS);
    }
    if ((item.itemState & ODS_FOCUS) != 0)
        DrawFocusRect(item.hDC, &item.rcItem);
}

void ResultsList::setText(int index, std::u16string_view text)
{
    const std::int32_t number = datum(index);
    const int selected = current();
    const DrawingOff off(hwnd());
    send(LB_DELETESTRING, static_cast<WPARAM>(index), 0);
    insert(index, {std::u16string(text), number});
    select(selected);
}

std::vector<int> ResultsList::selected() const
{
    return current() < 0 ? std::vector<int>() : std::vector<int>{current()};
}

int ResultsList::current() const
{
    return static_cast<int>(send(LB_GETCURSEL));
}

void ResultsList::select(int index)
{
    send(LB_SETCURSEL, static_cast<WPARAM>(index), 0);
}

void ResultsList::setVisible(bool visible)
{
    if (visible == visible_)
        return;
    visible_ = visible;
    ShowWindow(hwnd(), visible ? SW_SHOWNA : SW_HIDE);
    if (VisibleChanged)
        VisibleChanged();
}

} // namespace vellums::ui
