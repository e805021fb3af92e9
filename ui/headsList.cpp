#include "ui/headsList.h"

#include <algorithm>

namespace vellums::ui {

void HeadsList::setText(int index, std::u16string_view text)
{
    const auto at = static_cast<WPARAM>(index);
    const std::int32_t number = datum(index);
    const LRESULT wasSelected = SendMessageW(hwnd(), LB_GETSEL, at, 0);
    const LRESULT caret = SendMessageW(hwnd(), LB_GETCARETINDEX, 0, 0);
    const DrawingOff off(hwnd());
    SendMessageW(hwnd(), LB_DELETESTRING, at, 0);
    insert(index, {std::u16string(text), number});
    SendMessageW(hwnd(), LB_SETSEL, static_cast<WPARAM>(wasSelected > 0), index);
    SendMessageW(hwnd(), LB_SETCARETINDEX, static_cast<WPARAM>(caret), TRUE);
}

std::vector<int> HeadsList::selected() const
{
    const LRESULT count = SendMessageW(hwnd(), LB_GETSELCOUNT, 0, 0);
    std::vector<int> indexes(static_cast<std::size_t>(std::max<LRESULT>(count, 0)));
    if (!indexes.empty())
        SendMessageW(hwnd(), LB_GETSELITEMS, indexes.size(), reinterpret_cast<LPARAM>(indexes.data()));
    return indexes;
}

int HeadsList::current() const
{
    return count() == 0 ? -1 : static_cast<int>(SendMessageW(hwnd(), LB_GETCARETINDEX, 0, 0));
}

void HeadsList::select(int index)
{
    SendMessageW(hwnd(), LB_SETSEL, FALSE, -1);
    if (index < 0)
        return;
    SendMessageW(hwnd(), LB_SETSEL, TRUE, index);
    SendMessageW(hwnd(), LB_SETCARETINDEX, static_cast<WPARAM>(index), FALSE);
}

} // namespace vellums::ui
