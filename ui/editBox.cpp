#include "ui/editBox.h"

#include "ui/wide.h"
#include "ui/windowText.h"

#include <algorithm>

namespace vellums::ui {
namespace {

// A box shows lines that end in CR LF, and a U+0000 would end its text: what lies behind would be lost
// with the next save.
std::u16string showable(std::u16string_view text)
{
    std::u16string result;
    result.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char16_t c = text[i];
        if (c == u'\n' && (i == 0 || text[i - 1] != u'\r'))
            result += u'\r';
        result += c == u'\0' ? u' ' : c;
        if (c == u'\r' && (i + 1 == text.size() || text[i + 1] != u'\n'))
            result += u'\n';
    }
    return result;
}

} // namespace

void EditBox::create(HWND parent, int id, Kind kind)
{
    DWORD style = WS_CHILD | WS_VISIBLE | WS_TABSTOP | WS_BORDER | ES_NOHIDESEL;
    if (kind == Kind::OneLine)
        style |= ES_AUTOHSCROLL;
    else
        style |= WS_VSCROLL | ES_MULTILINE | ES_AUTOVSCROLL | ES_WANTRETURN;
    if (kind == Kind::Scrolling)
        style |= WS_HSCROLL | ES_AUTOHSCROLL;
    hwnd_ = CreateWindowExW(0, L"EDIT", nullptr, style, 0, 0, 0, 0, parent,
        reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), GetModuleHandleW(nullptr), nullptr);
    SendMessageW(hwnd_, EM_SETLIMITTEXT, 0, 0); // as much as the control can take
}

std::u16string EditBox::text() const
{
    return windowText(hwnd_);
}

void EditBox::setText(std::u16string_view text)
{
    setWindowText(hwnd_, showable(text));
}

void EditBox::focus()
{
    SetFocus(hwnd_);
}

TextRange EditBox::selection() const
{
    DWORD start = 0;
    DWORD end = 0;
    SendMessageW(hwnd_, EM_GETSEL, reinterpret_cast<WPARAM>(&start), reinterpret_cast<LPARAM>(&end));
    return {start, end};
}

void EditBox::select(TextRange range)
{
    SendMessageW(hwnd_, EM_SETSEL, range.start, static_cast<LPARAM>(range.end));
}

void EditBox::replaceSelection(std::u16string_view text)
{
    SendMessageW(hwnd_, EM_REPLACESEL, TRUE, reinterpret_cast<LPARAM>(wide(showable(text))));
}

void EditBox::scrollToCaret()
{
    SendMessageW(hwnd_, EM_SCROLLCARET, 0, 0);
}

void EditBox::undo()
{
    SendMessageW(hwnd_, EM_UNDO, 0, 0);
}

void EditBox::cut()
{
    SendMessageW(hwnd_, WM_CUT, 0, 0);
}

void EditBox::copy()
{
    SendMessageW(hwnd_, WM_COPY, 0, 0);
}

void EditBox::paste()
{
    SendMessageW(hwnd_, WM_PASTE, 0, 0);
}

} // namespace vellums::ui
