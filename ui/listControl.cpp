#include "ui/listControl.h"

#include "ui/wide.h"

namespace vellums::ui {

ListControl::DrawingOff::DrawingOff(HWND window)
    : window_(window)
{
    SendMessageW(window_, WM_SETREDRAW, FALSE, 0);
}

ListControl::DrawingOff::~DrawingOff()
{
    SendMessageW(window_, WM_SETREDRAW, TRUE, 0);
    RedrawWindow(window_, nullptr, nullptr, RDW_ERASE | RDW_FRAME | RDW_INVALIDATE);
}

void ListControl::createList(HWND parent, int id, DWORD style)
{
    hwnd_ = CreateWindowExW(0, L"LISTBOX", nullptr,
        style | WS_CHILD | WS_TABSTOP | WS_BORDER | WS_VSCROLL | LBS_NOTIFY | LBS_NOINTEGRALHEIGHT |
            LBS_HASSTRINGS,
        0, 0, 0, 0, parent, reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), GetModuleHandleW(nullptr),
        nullptr);
    classProc_ = reinterpret_cast<WNDPROC>(GetWindowLongPtrW(hwnd_, GWLP_WNDPROC));
}

void ListControl::fill(const std::vector<ListEntry>& entries)
{
    std::size_t units = 0;
    for (const ListEntry& entry : entries)
        units += entry.text.size() + 1;
    const DrawingOff off(hwnd_);
    send(LB_RESETCONTENT);
    send(LB_INITSTORAGE, entries.size(), static_cast<LPARAM>(units * sizeof(wchar_t)));
    for (std::size_t i = 0; i < entries.size(); ++i) {
        if (send(LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(wide(entries[i].text))) < 0)
            break;
        send(LB_SETITEMDATA, i, entries[i].datum);
    }
}

int ListControl::count() const
{
    return static_cast<int>(send(LB_GETCOUNT));
}

std::u16string ListControl::text(int index) const
{
    const LRESULT length = send(LB_GETTEXTLEN, static_cast<WPARAM>(index), 0);
    if (length <= 0)
        return {};
    std::u16string text(static_cast<std::size_t>(length) + 1, u'\0');
    const LRESULT copied =
        send(LB_GETTEXT, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(text.data()));
    text.resize(static_cast<std::size_t>(copied < 0 ? 0 : copied));
    return text;
}

std::int32_t ListControl::datum(int index) const
{
    return static_cast<std::int32_t>(send(LB_GETITEMDATA, static_cast<WPARAM>(index), 0));
}

void ListControl::insert(int index, const ListEntry& entry)
{
    send(LB_INSERTSTRING, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(wide(entry.text)));
    send(LB_SETITEMDATA, static_cast<WPARAM>(index), entry.datum);
}

void ListControl::remove(const std::vector<int>& indexes)
{
    const DrawingOff off(hwnd_);
    for (auto index = indexes.rbegin(); index != indexes.rend(); ++index)
        send(LB_DELETESTRING, static_cast<WPARAM>(*index), 0);
}

} // namespace vellums::ui
