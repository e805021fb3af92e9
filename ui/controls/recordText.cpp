// One text, two boxes: whether an EDIT control wraps is fixed when it is made. Only the one that is shown
// holds the text; the other one is empty.
//
// Changing over has an order. The new box gets text and selection while it is hidden, so that nothing is seen
// to jump; the place at the top is read from the old box while that still has its text, and scrolled to when
// the new one is shown. The old box is emptied at the end.
#include "ui/controls/recordText.h"

#include "ui/controls/windowText.h"
#include "ui/windows/wide.h"

#include <cmath>
#include <functional>
#include <new>

namespace vellums::ui {
namespace {

// The first character of the line at the top of the box.
DWORD firstShown(HWND box)
{
    const LRESULT line = SendMessageW(box, EM_GETFIRSTVISIBLELINE, 0, 0);
    return static_cast<DWORD>(SendMessageW(box, EM_LINEINDEX, static_cast<WPARAM>(line), 0));
}

void scrollTo(HWND box, DWORD character)
{
    const LRESULT line = SendMessageW(box, EM_LINEFROMCHAR, character, 0);
    const LRESULT top = SendMessageW(box, EM_GETFIRSTVISIBLELINE, 0, 0);
    SendMessageW(box, EM_LINESCROLL, 0, line - top);
}

} // namespace

void RecordText::create(HWND parent, int wrappingId, int scrollingId)
{
    txtShowWrap_.create(parent, wrappingId, EditBox::Kind::Wrapping);
    txtShowNoWrap_.create(parent, scrollingId, EditBox::Kind::Scrolling);
    ShowWindow(txtShowNoWrap_.hwnd(), SW_HIDE);
}

void RecordText::setWraps(bool wraps, bool withFocus)
{
    if (wraps == wraps_)
        return;
    const HWND from = hwnd();
    const HWND to = (wraps ? txtShowWrap_ : txtShowNoWrap_).hwnd();
    const TextRange selection = shown().selection();
    const bool focused = withFocus || GetFocus() == from;
    if (!setWindowText(to, windowText(from)))
        throw std::bad_alloc(); // the text stays where it is
    wraps_ = wraps;

    shown().select(selection);
    const DWORD top = firstShown(from);

    ShowWindow(to, SW_SHOW);
    ShowWindow(from, SW_HIDE);
    setWindowText(from, {}); // one copy of a large text is enough
    if (focused)
        SetFocus(to);
    scrollTo(to, top);
    shown().scrollToCaret(); // where lines are of other lengths, the place may lie outside now
}

void RecordText::setFont(const std::u16string& name, double points, int dpi)
{
    const int height = -static_cast<int>(std::lround(points * dpi / 72));
    // A font that is set anew has the control lay out its whole text again: not for nothing.
    LOGFONTW now{};
    if (font_.get() != nullptr && GetObjectW(font_.get(), sizeof now, &now) != 0 && now.lfHeight == height &&
        lstrcmpiW(now.lfFaceName, wide(name)) == 0)
        return;
    OwnedFont font(CreateFontW(height, 0, 0, 0, FW_NORMAL, FALSE, FALSE, FALSE, DEFAULT_CHARSET,
        OUT_DEFAULT_PRECIS, CLIP_DEFAULT_PRECIS, CLEARTYPE_QUALITY, DEFAULT_PITCH | FF_DONTCARE, wide(name)));
    for (const EditBox& box : {std::cref(txtShowWrap_), std::cref(txtShowNoWrap_)})
        box.setFont(font.get(), dpi);
    shown().scrollToCaret();
    font_ = std::move(font);
}

} // namespace vellums::ui
