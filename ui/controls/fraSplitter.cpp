// The mouse is captured while the button is down, and the end of the capture is the end of the drag, whoever
// ended it: the button, another window that takes the mouse, a message box. So there is one way out, and a
// drag never goes on without a button.
//
// Where in the bar it was gripped is kept: the bar moves by as much as the mouse does, not to where the mouse
// is.
#include "ui/controls/fraSplitter.h"

#include "ui/windows/border.h"
#include "ui/windows/childWindow.h"

#include <windowsx.h>

namespace vellums::ui {
namespace {

constexpr wchar_t kClass[] = L"fraSplitter";

} // namespace

void fraSplitter::create(HWND parent, int id)
{
    WNDCLASSEXW bar{};
    bar.cbSize = sizeof bar;
    bar.lpfnWndProc = splitterProc;
    bar.hInstance = GetModuleHandleW(nullptr);
    bar.hCursor = LoadCursorW(nullptr, IDC_SIZEWE);
    bar.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_BTNFACE + 1);
    bar.lpszClassName = kClass;
    RegisterClassExW(&bar); // fails harmlessly the second time
    hwnd_ = createChild(parent, kClass, id, WS_VISIBLE);
    SetWindowLongPtrW(hwnd_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
}

LRESULT CALLBACK fraSplitter::splitterProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    auto* self = reinterpret_cast<fraSplitter*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    if (self != nullptr && border::guarded(true, [&] { return self->onMessage(message, lParam); }))
        return 0;
    return DefWindowProcW(window, message, wParam, lParam);
}

bool fraSplitter::onMessage(UINT message, LPARAM lParam)
{
    switch (message) {
    case WM_LBUTTONDOWN:
        SetCapture(hwnd_);
        dragged_ = true;
        grip_ = GET_X_LPARAM(lParam);
        return true;
    case WM_MOUSEMOVE: {
        if (!dragged_)
            return false;
        POINT mouse{GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)};
        MapWindowPoints(hwnd_, GetParent(hwnd_), &mouse, 1);
        if (Moved)
            Moved(mouse.x - grip_);
        return true;
    }
    case WM_LBUTTONUP:
        if (dragged_)
            ReleaseCapture(); // ends the drag
        return true;
    case WM_CAPTURECHANGED:
        endDrag();
        return true;
    default:
        return false;
    }
}

void fraSplitter::endDrag()
{
    if (!dragged_)
        return;
    dragged_ = false;
    if (Released)
        Released();
}

} // namespace vellums::ui
