// The controls of the main window and the keys that they take for themselves.
#include "ui/frmMain.h"

#include "platform/clipboard.h"
#include "ui/ids.h"
#include "ui/wide.h"

#include <commctrl.h>

namespace vellums::ui {
namespace {

// Other instances of the program look for the check box by this name.
constexpr wchar_t kCheckBoxClass[] = L"ThunderRT6CheckBox";

HWND createChild(HWND parent, const wchar_t* windowClass, const std::u16string& text, DWORD style, int id)
{
    return CreateWindowExW(0, windowClass, wide(text), WS_CHILD | WS_VISIBLE | style, 0, 0, 0, 0, parent,
        reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), GetModuleHandleW(nullptr), nullptr);
}

// The system's button under a name of our own.
void registerCheckBox()
{
    WNDCLASSEXW button{};
    button.cbSize = sizeof button;
    GetClassInfoExW(nullptr, L"BUTTON", &button);
    button.hInstance = GetModuleHandleW(nullptr);
    button.lpszClassName = kCheckBoxClass;
    RegisterClassExW(&button);
}

} // namespace

void frmMain::createControls()
{
    registerCheckBox();
    lblRemarks_.attach(createChild(
        hwnd_, L"STATIC", notebook_.say(u"Search:", u"搜索:"), SS_NOTIFY | SS_CENTERIMAGE, ID_lblRemarks));
    txtKey_.create(hwnd_, ID_txtKey, EditBox::Kind::OneLine);
    chkSort_.attach(createChild(hwnd_, kCheckBoxClass, u"", WS_TABSTOP | BS_AUTOCHECKBOX, ID_chkSort));
    lblDate_.attach(createChild(hwnd_, L"STATIC", u"", SS_NOTIFY | SS_RIGHT | SS_CENTERIMAGE, ID_lblDate));
    txtType_.create(hwnd_, ID_txtType, EditBox::Kind::OneLine);
    lstHeads_.create(hwnd_, ID_lstHeads);
    txtShowWrap_.create(hwnd_, ID_txtShowWrap, EditBox::Kind::Wrapping);
    ucStatusLeft_.create(hwnd_, ID_ucStatusLeft);
    ucStatusRight_.create(hwnd_, ID_ucStatusRight);
    for (const HWND control : {txtKey_.hwnd(), txtType_.hwnd(), txtShowWrap_.hwnd(), lstHeads_.hwnd()})
        SetWindowSubclass(control, controlProc, 1, reinterpret_cast<DWORD_PTR>(this));

    const HDC dc = GetDC(hwnd_);
    dpi_ = static_cast<UINT>(GetDeviceCaps(dc, LOGPIXELSX));
    ReleaseDC(hwnd_, dc);
    makeFonts();
}

// Enter, Esc and Del where they are commands; the boxes' own use of all other keys stays.
bool frmMain::onControlKey(HWND control, WPARAM key)
{
    if (control == txtKey_.hwnd() && (key == VK_RETURN || key == VK_ESCAPE)) {
        if (key == VK_ESCAPE)
            txtKey_.setText({});
        commands_->search();
        return true;
    }
    if (control == txtType_.hwnd() && key == VK_RETURN) {
        txtShowWrap_.focus();
        return true;
    }
    if (control == lstHeads_.hwnd() && key == VK_DELETE) {
        commands_->deleteSelected();
        return true;
    }
    if (control != lstHeads_.hwnd() && key == 'A' && GetKeyState(VK_CONTROL) < 0 &&
        GetKeyState(VK_SHIFT) >= 0 && GetKeyState(VK_MENU) >= 0) {
        SendMessageW(control, EM_SETSEL, 0, -1);
        return true;
    }
    return false;
}

LRESULT CALLBACK frmMain::controlProc(
    HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR id, DWORD_PTR self)
{
    auto* form = reinterpret_cast<frmMain*>(self);
    constexpr WPARAM kSelectAll = 1; // what Ctrl+A types
    switch (message) {
    case WM_GETDLGCODE: {
        const auto* key = reinterpret_cast<const MSG*>(lParam);
        const bool oneLine = window == form->txtKey_.hwnd() || window == form->txtType_.hwnd();
        if (oneLine && key != nullptr && (key->wParam == VK_RETURN || key->wParam == VK_ESCAPE))
            return DefSubclassProc(window, message, wParam, lParam) | DLGC_WANTALLKEYS;
        if (window == form->txtShowWrap_.hwnd()) // entering the box does not select its whole text
            return DefSubclassProc(window, message, wParam, lParam) & ~static_cast<LRESULT>(DLGC_HASSETSEL);
        break;
    }
    case WM_KEYDOWN:
        if (form->onControlKey(window, wParam))
            return 0;
        break;
    case WM_CHAR: // the keys above were treated already; the box would beep or type them
        if (wParam == kSelectAll)
            return 0;
        if ((wParam == VK_RETURN || wParam == VK_ESCAPE) && window != form->txtShowWrap_.hwnd())
            return 0;
        break;
    case WM_NCDESTROY:
        RemoveWindowSubclass(window, controlProc, id);
        break;
    }
    return DefSubclassProc(window, message, wParam, lParam);
}

void frmMain::copyDate()
{
    const std::u16string date = lblDate_.text();
    if (!date.empty())
        platform::setClipboardText(date);
}

} // namespace vellums::ui
