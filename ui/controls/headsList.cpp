#include "ui/controls/headsList.h"

#include <algorithm>

namespace vellums::ui {

void HeadsList::setText(int index, std::u16string_view text)
{
    // No message changes a text: the entry is taken out and put in again, and everything that hung on it is
    // brought back.
    const auto at = static_cast<WPARAM>(index);
    const std::int32_t number = datum(index);
    const LRESULT wasSelected = send(LB_GETSEL, at, 0);
    const LRESULT caret = send(LB_GETCARETINDEX);
    const DrawingOff off(hwnd());
    send(LB_DELETESTRING, at, 0);
    insert(index, {std::u16string(text), number});
    send(LB_SETSEL, static_cast<WPARAM>(wasSelected > 0), index);
    send(LB_SETCARETINDEX, static_cast<WPARAM>(caret), TRUE);
}

std::vector<int> HeadsList::selected() const
{
    const LRESULT count = send(LB_GETSELCOUNT);
    std::vector<int> indexes(static_cast<std::size_t>(std::max<LRESULT>(count, 0)));
    if (!indexes.empty())
        send(LB_GETSELITEMS, indexes.size(), reinterpret_cast<LPARAM>(indexes.data()));
    return indexes;
}

int HeadsList::current() const
{
    // An empty list has no such entry, whatever the control says.
    return count() == 0 ? -1 : static_cast<int>(send(LB_GETCARETINDEX));
}

void HeadsList::select(int index)
{
    send(LB_SETSEL, FALSE, -1);
    if (index < 0)
        return;
    send(LB_SETSEL, TRUE, index);
    send(LB_SETCARETINDEX, static_cast<WPARAM>(index), FALSE);
}

} // namespace vellums::ui
