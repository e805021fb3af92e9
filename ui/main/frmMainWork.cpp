// The window while long work runs: it draws, moves and can be closed; nothing can be typed or chosen, and
// what is typed or clicked meanwhile does not come out later. Esc is the wish to stop.
#include "ui/main/frmMain.h"

namespace vellums::ui {
namespace {

bool isKey(const MSG& message)
{
    return message.message >= WM_KEYFIRST && message.message <= WM_KEYLAST;
}

// Of the mouse: presses and turns of the wheel in the client area, and the menu bar.
bool choosesSomething(const MSG& message)
{
    if (message.message == WM_NCLBUTTONDOWN || message.message == WM_NCLBUTTONDBLCLK)
        return message.wParam == HTMENU;
    return message.message >= WM_MOUSEFIRST && message.message <= WM_MOUSELAST &&
        message.message != WM_MOUSEMOVE;
}

} // namespace

bool frmMain::isTreatedDuringWork(const MSG& message)
{
    if (isKey(message) && message.hwnd == hwnd_ && message.wParam == VK_F5)
        return true; // handed over by another process; it waits at the gate
    if (message.message == WM_KEYDOWN && message.wParam == VK_ESCAPE)
        work_.askToStop();
    return !isKey(message) && !choosesSomething(message);
}

void frmMain::treatMessagesDuringWork()
{
    MSG message{};
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
        if (message.message == WM_QUIT) { // the thread's loop ends by it
            PostQuitMessage(static_cast<int>(message.wParam));
            work_.askToStop();
            return;
        }
        if (isTreatedDuringWork(message))
            DispatchMessageW(&message);
    }
}

void frmMain::lockBoxes(bool locked)
{
    for (const HWND box : {txtKey_.hwnd(), txtInline_.hwnd(), txtType_.hwnd(), text_.wrapping().hwnd(),
             text_.scrolling().hwnd()})
        SendMessageW(box, EM_SETREADONLY, locked ? TRUE : FALSE, 0);
    SetCursor(LoadCursorW(nullptr, locked ? IDC_WAIT : IDC_ARROW));
}

} // namespace vellums::ui
