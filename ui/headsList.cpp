#include "ui/headsList.h"

#include "ui/wide.h"

#include <algorithm>

namespace vellums::ui {
namespace {

// Entries are added one by one while nothing is drawn: with drawing on, each would move the scroll bar.
class DrawingOff {
public:
    explicit DrawingOff(HWND window)
        : window_(window)
    {
        SendMessageW(window_, WM_SETREDRAW, FALSE, 0);
    }
    DrawingOff(const DrawingOff&) = delete;
    DrawingOff& operator=(const DrawingOff&) = delete;
    ~DrawingOff()
    {
        SendMessageW(window_, WM_SETREDRAW, TRUE, 0);
        RedrawWindow(window_, nullptr, nullptr, RDW_ERASE | RDW_FRAME | RDW_INVALIDATE);
    }

private:
    HWND window_;
};

} // namespace

void HeadsList::create(HWND parent, int id)
{
    const DWORD style = WS_CHILD | WS_VISIBLE | WS_TABSTOP | WS_BORDER | WS_VSCROLL | LBS_NOTIFY |
        LBS_EXTENDEDSEL | LBS_NOINTEGRALHEIGHT | LBS_HASSTRINGS;
    hwnd_ = CreateWindowExW(0, L"LISTBOX", nullptr, style, 0, 0, 0, 0, parent,
        reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), GetModuleHandleW(nullptr), nullptr);
}

void HeadsList::fill(const std::vector<ListEntry>& entries)
{
    std::size_t units = 0;
    for (const ListEntry& entry : entries)
        units += entry.text.size() + 1;
    const DrawingOff off(hwnd_);
    SendMessageW(hwnd_, LB_RESETCONTENT, 0, 0);
    SendMessageW(hwnd_, LB_INITSTORAGE, entries.size(), static_cast<LPARAM>(units * sizeof(wchar_t)));
    for (std::size_t i = 0; i < entries.size(); ++i) {
        SendMessageW(hwnd_, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(wide(entries[i].text)));
        SendMessageW(hwnd_, LB_SETITEMDATA, i, entries[i].datum);
    }
}

int HeadsList::count() const
{
    return static_cast<int>(SendMessageW(hwnd_, LB_GETCOUNT, 0, 0));
}

std::int32_t HeadsList::datum(int index) const
{
    return static_cast<std::int32_t>(SendMessageW(hwnd_, LB_GETITEMDATA, static_cast<WPARAM>(index), 0));
}

void HeadsList::insert(int index, const ListEntry& entry)
{
    SendMessageW(
        hwnd_, LB_INSERTSTRING, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(wide(entry.text)));
    SendMessageW(hwnd_, LB_SETITEMDATA, static_cast<WPARAM>(index), entry.datum);
}

void HeadsList::setText(int index, std::u16string_view text)
{
    const auto at = static_cast<WPARAM>(index);
    const std::int32_t number = datum(index);
    const LRESULT wasSelected = SendMessageW(hwnd_, LB_GETSEL, at, 0);
    const LRESULT caret = SendMessageW(hwnd_, LB_GETCARETINDEX, 0, 0);
    const DrawingOff off(hwnd_);
    SendMessageW(hwnd_, LB_DELETESTRING, at, 0);
    insert(index, {std::u16string(text), number});
    SendMessageW(hwnd_, LB_SETSEL, static_cast<WPARAM>(wasSelected > 0), index);
    SendMessageW(hwnd_, LB_SETCARETINDEX, static_cast<WPARAM>(caret), TRUE);
}

void HeadsList::remove(const std::vector<int>& indexes)
{
    const DrawingOff off(hwnd_);
    for (auto index = indexes.rbegin(); index != indexes.rend(); ++index)
        SendMessageW(hwnd_, LB_DELETESTRING, static_cast<WPARAM>(*index), 0);
}

std::vector<int> HeadsList::selected() const
{
    const LRESULT count = SendMessageW(hwnd_, LB_GETSELCOUNT, 0, 0);
    std::vector<int> indexes(static_cast<std::size_t>(std::max<LRESULT>(count, 0)));
    if (!indexes.empty())
        SendMessageW(hwnd_, LB_GETSELITEMS, indexes.size(), reinterpret_cast<LPARAM>(indexes.data()));
    return indexes;
}

int HeadsList::current() const
{
    return count() == 0 ? -1 : static_cast<int>(SendMessageW(hwnd_, LB_GETCARETINDEX, 0, 0));
}

void HeadsList::select(int index)
{
    SendMessageW(hwnd_, LB_SETSEL, FALSE, -1);
    if (index < 0)
        return;
    SendMessageW(hwnd_, LB_SETSEL, TRUE, index);
    SendMessageW(hwnd_, LB_SETCARETINDEX, static_cast<WPARAM>(index), FALSE);
}

} // namespace vellums::ui
