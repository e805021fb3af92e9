#include "ui/controls/editBox.h"

#include "app/boxText.h"
#include "ui/controls/windowText.h"
#include "ui/windows/childWindow.h"
#include "ui/windows/wide.h"

#include <new>

namespace vellums::ui {

void EditBox::create(HWND parent, int id, Kind kind)
{
    DWORD style = WS_VISIBLE | WS_TABSTOP | WS_BORDER | ES_NOHIDESEL;
    if (kind == Kind::OneLine)
        style |= ES_AUTOHSCROLL;
    else
        style |= WS_VSCROLL | ES_MULTILINE | ES_AUTOVSCROLL | ES_WANTRETURN;
    if (kind == Kind::Scrolling)
        // Scrolling sideways is what keeps the control from wrapping; it cannot be changed later.
        style |= WS_HSCROLL | ES_AUTOHSCROLL;
    hwnd_ = createChild(parent, L"EDIT", id, style);
    SendMessageW(hwnd_, EM_SETLIMITTEXT, 0, 0); // as much as the control can take
}

// The margins that a font suggests are none in some languages.
void EditBox::setFont(HFONT font, int dpi) const
{
    SendMessageW(hwnd_, WM_SETFONT, reinterpret_cast<WPARAM>(font), TRUE);
    const int margin = MulDiv(kTextInsetPixels, dpi, 96);
    SendMessageW(hwnd_, EM_SETMARGINS, EC_LEFTMARGIN | EC_RIGHTMARGIN, MAKELPARAM(margin, margin));
}

std::u16string EditBox::text() const
{
    return windowText(hwnd_);
}

void EditBox::setText(std::u16string_view text)
{
    // A box that cannot take the text would show an empty one, and the next save would store that.
    if (!setWindowText(hwnd_, boxText(text)))
        throw std::bad_alloc();
}

bool EditBox::isOneLine() const
{
    return (GetWindowLongPtrW(hwnd_, GWL_STYLE) & ES_MULTILINE) == 0;
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
    const std::u16string put = boxText(isOneLine() ? firstLine(text) : text);
    SendMessageW(hwnd_, EM_REPLACESEL, TRUE, reinterpret_cast<LPARAM>(wide(put)));
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

} // namespace vellums::ui
