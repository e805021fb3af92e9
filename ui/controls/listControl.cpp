// A list box draws the row that its lower edge cuts, and its texts begin at its border. Both are mended by
// giving it less room, not by drawing entries differently: its client area ends with a whole row and begins
// a little to the right of the border, so that the control's own scrolling, paging and mouse stay right. What
// the client area leaves of the window is painted here, in the colour of the list.
#include "ui/controls/listControl.h"

#include "ui/controls/windowText.h"
#include "ui/windows/childWindow.h"
#include "ui/windows/deviceContext.h"
#include "ui/windows/wide.h"

#include <new>

#include <windowsx.h>

namespace vellums::ui {
namespace {

RECT offset(RECT rect, int x, int y)
{
    OffsetRect(&rect, x, y);
    return rect;
}

} // namespace

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
    hwnd_ = createChild(parent, L"LISTBOX", id,
        style | WS_TABSTOP | WS_BORDER | WS_VSCROLL | LBS_NOTIFY | LBS_NOINTEGRALHEIGHT | LBS_HASSTRINGS);
    // Before any of ours is put on: send() goes to this one directly.
    classProc_ = reinterpret_cast<WNDPROC>(GetWindowLongPtrW(hwnd_, GWLP_WNDPROC));
    margins_ = Subclass(hwnd_, marginProc, this);
}

void ListControl::setFont(HFONT font, int dpi)
{
    inset_ = MulDiv(kTextInsetPixels, dpi, 96);
    SendMessageW(hwnd_, WM_SETFONT, reinterpret_cast<WPARAM>(font), TRUE);
    send(LB_SETITEMHEIGHT, 0, lineHeight(font));
    SetWindowPos(hwnd_, nullptr, 0, 0, 0, 0,
        SWP_FRAMECHANGED | SWP_NOMOVE | SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}

void ListControl::takeMargins(RECT& client) const
{
    if (client.right - client.left > inset_)
        client.left += inset_;
    const auto row = static_cast<int>(send(LB_GETITEMHEIGHT));
    const int height = client.bottom - client.top;
    if (row > 0 && height > row)
        client.bottom -= height % row;
}

void ListControl::paintMargins() const
{
    if (!IsWindowVisible(hwnd_))
        return;
    RECT window{};
    RECT client{};
    GetWindowRect(hwnd_, &window);
    GetClientRect(hwnd_, &client);
    POINT corner{};
    ClientToScreen(hwnd_, &corner);
    client = offset(client, corner.x - window.left, corner.y - window.top);
    RECT inner = offset(window, -window.left, -window.top);
    InflateRect(&inner, -GetSystemMetrics(SM_CXBORDER), -GetSystemMetrics(SM_CYBORDER));
    const RECT strips[] = {
        {inner.left, inner.top, client.left, inner.bottom},
        {inner.left, client.bottom, inner.right, inner.bottom},
    };
    const DeviceContext dc(hwnd_, DeviceContext::Of::WholeWindow);
    const auto brush = reinterpret_cast<HBRUSH>(SendMessageW(GetParent(hwnd_), WM_CTLCOLORLISTBOX,
        reinterpret_cast<WPARAM>(dc.get()), reinterpret_cast<LPARAM>(hwnd_)));
    for (const RECT& strip : strips)
        FillRect(dc.get(), &strip, brush);
}

bool ListControl::isLeftMargin(POINT screen) const
{
    RECT window{};
    RECT client{};
    GetWindowRect(hwnd_, &window);
    GetClientRect(hwnd_, &client);
    const int left = screen.x - window.left;
    ScreenToClient(hwnd_, &screen);
    return left > 0 && screen.x < 0 && screen.y >= 0 && screen.y < client.bottom;
}

LRESULT CALLBACK ListControl::marginProc(
    HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR, DWORD_PTR self)
{
    const auto* list = reinterpret_cast<const ListControl*>(self);
    const LRESULT result = DefSubclassProc(window, message, wParam, lParam);
    switch (message) {
    case WM_NCCALCSIZE: // both forms begin with the rectangle that becomes the client area
        list->takeMargins(*reinterpret_cast<RECT*>(lParam));
        break;
    case WM_NCPAINT:
        list->paintMargins();
        break;
    case WM_NCHITTEST: // a click before a text is meant for it
        if (list->isLeftMargin({GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)}))
            return HTCLIENT;
        break;
    }
    return result;
}

void ListControl::fill(const std::vector<ListEntry>& entries)
{
    std::size_t units = 0;
    for (const ListEntry& entry : entries)
        units += entry.text.size() + 1;
    const DrawingOff off(hwnd_);
    send(LB_RESETCONTENT);
    // All room at once: growing entry by entry would copy the list again and again.
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

// The scroll bar, too, is drawn otherwise when it can be used.
void ListControl::setEnabled(bool enabled)
{
    EnableWindow(hwnd_, enabled);
    RedrawWindow(hwnd_, nullptr, nullptr, RDW_FRAME | RDW_INVALIDATE);
}

void ListControl::insert(int index, const ListEntry& entry)
{
    const auto at = static_cast<WPARAM>(index);
    // The number would go to the entry that stands there, and its record be taken for another one.
    if (send(LB_INSERTSTRING, at, reinterpret_cast<LPARAM>(wide(entry.text))) < 0)
        throw std::bad_alloc();
    send(LB_SETITEMDATA, at, entry.datum);
}

void ListControl::remove(const std::vector<int>& indexes)
{
    const DrawingOff off(hwnd_);
    // From the last on, so that the indexes that are left keep their meaning.
    for (auto index = indexes.rbegin(); index != indexes.rend(); ++index)
        send(LB_DELETESTRING, static_cast<WPARAM>(*index), 0);
}

} // namespace vellums::ui
