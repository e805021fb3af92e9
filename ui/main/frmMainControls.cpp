// The controls of the main window and the keys that they take for themselves.
//
// A key passes four stations, and the first that wants it keeps it: the accelerators of the menus; the dialog
// keys of the window (Tab, Enter, Esc), which ask each control by WM_GETDLGCODE what it wants for itself
// (keysWanted); our procedure before the control's own (onControlMessage), where Enter, Esc and Del are
// commands; and the control. A key that is treated at the third station as WM_KEYDOWN comes once more as
// WM_CHAR, which has to be kept from the control too.
#include "ui/main/frmMain.h"

#include "app/clipboardText.h"
#include "ui/ids.h"
#include "ui/windows/accessibleNames.h"
#include "ui/windows/border.h"
#include "ui/windows/childWindow.h"
#include "ui/windows/modBorderColor.h"
#include "ui/windows/systemLook.h"

#include <commctrl.h>
#include <windowsx.h>

namespace vellums::ui {
namespace {

// Other instances of the program look for the check box by this name.
constexpr wchar_t kCheckBoxClass[] = L"ThunderRT6CheckBox";
constexpr COLORREF kFocusColour = RGB(255, 253, 204);
constexpr COLORREF kPlainColour = RGB(255, 255, 255);

// The system's button under a name of our own.
void registerCheckBox()
{
    WNDCLASSEXW button{};
    button.cbSize = sizeof button;
    // Everything of it, its procedure included, so that it behaves as a button in every way but its name.
    GetClassInfoExW(nullptr, L"BUTTON", &button);
    button.hInstance = GetModuleHandleW(nullptr);
    button.lpszClassName = kCheckBoxClass;
    RegisterClassExW(&button);
}

} // namespace

// In the order of the Tab key.
void frmMain::createControls()
{
    registerCheckBox();
    createHeader();
    createBody();
    ucStatusLeft_.create(hwnd_, ID_ucStatusLeft);
    ucStatusRight_.create(hwnd_, ID_ucStatusRight);
    ucStatusRight_.Change = [this] { onSourceChanged(); };
    ucStatusRight_.MouseUp = [this](int, int, int x, int y) { showSourceMenu(x, y); };

    focusBrush_.reset(CreateSolidBrush(kFocusColour));
    display_ = std::make_unique<DisplaySettings>(notebook_.settingsFile, *menus_, text_);
    display_->confirmReset = [this] {
        return dialogs_.askYesNo(notebook_.say(u"Load default display settings?   ", u"恢复默认显示设置?   "),
                   QuestionIcon::Question) == Answer::Yes;
    };
    display_->coloursChanged = [this] {
        for (const HWND control : {text_.hwnd(), lstHeads_.hwnd(), lstInLineSrch_.hwnd()})
            InvalidateRect(control, nullptr, TRUE);
    };
    display_->create(hwnd_, scale_.dpi());

    // The procedure for borders first, so that ours is asked before it.
    const HWND bordered[] = {txtKey_.hwnd(), txtInline_.hwnd(), txtType_.hwnd(), lstHeads_.hwnd(),
        text_.wrapping().hwnd(), text_.scrolling().hwnd(), lstInLineSrch_.hwnd()};
    for (const HWND control : bordered) {
        modBorderColor::subclass(control);
        keys_.emplace_back(control, controlProc, this);
    }
    for (const WindowLabel& label : lblRemarks_)
        keys_.emplace_back(label.hwnd(), controlProc, this);
    makeFonts();
}

void frmMain::createHeader()
{
    lblStaticBorder_ = createChild(hwnd_, L"STATIC", ID_lblStaticBorder, WS_VISIBLE | SS_ETCHEDHORZ);
    lblRemarks_[0].attach(createChild(hwnd_, L"STATIC", ID_lblRemarks,
        WS_VISIBLE | SS_NOTIFY | SS_CENTERIMAGE, notebook_.say(u"Search:", u"搜索:")));
    txtKey_.create(hwnd_, ID_txtKey, EditBox::Kind::OneLine);
    lblRemarks_[1].attach(createChild(hwnd_, L"STATIC", ID_lblRemarks + 1,
        WS_VISIBLE | SS_NOTIFY | SS_CENTERIMAGE, notebook_.say(u"Find:", u"查找:")));
    txtInline_.create(hwnd_, ID_txtInline, EditBox::Kind::OneLine);
    txtInlineTip_.create(hwnd_, txtInline_.hwnd());
    lblDate_.attach(
        createChild(hwnd_, L"STATIC", ID_lblDate, WS_VISIBLE | SS_NOTIFY | SS_CENTER | SS_CENTERIMAGE));
    createUnseenLabel(hwnd_, ID_lblAccessible, titleName());
    txtType_.create(hwnd_, ID_txtType, EditBox::Kind::OneLine);
    createUnseenLabel(hwnd_, ID_lblAccessible + 1, sortName());
    chkSort_.attach(
        createChild(hwnd_, kCheckBoxClass, ID_chkSort, WS_VISIBLE | WS_TABSTOP | BS_AUTOCHECKBOX));
    chkSortTip_.create(hwnd_, chkSort_.hwnd());
    chkSortTip_.setText(sortName());
}

void frmMain::createBody()
{
    createUnseenLabel(hwnd_, ID_lblAccessible + 2, headingsName());
    lstHeads_.create(hwnd_, ID_lstHeads);
    splitter_.create(hwnd_, ID_fraSplitter);
    splitter_.Moved = [this](int left) { dragSplitter(left); };
    splitter_.Released = [this] { endSplitterDrag(); };
    createUnseenLabel(hwnd_, ID_lblAccessible + 3, textName());
    text_.create(hwnd_, ID_txtShowWrap, ID_txtShowNoWrap);
    createUnseenLabel(hwnd_, ID_lblAccessible + 4, resultsName());
    lstInLineSrch_.create(hwnd_, ID_lstInLineSrch);
    lstInLineSrch_.VisibleChanged = [this] { layOut(); };
    shpEdge_ = createChild(hwnd_, L"STATIC", ID_shpEdge, WS_VISIBLE | SS_ETCHEDHORZ);
}

std::u16string frmMain::titleName() const
{
    return notebook_.say(u"Title", u"标题");
}

std::u16string frmMain::sortName() const
{
    return notebook_.say(u"Oldest first", u"按时间升序");
}

std::u16string frmMain::headingsName() const
{
    return notebook_.say(u"Headings", u"标题列表");
}

std::u16string frmMain::textName() const
{
    return notebook_.say(u"Text", u"正文");
}

std::u16string frmMain::resultsName() const
{
    return notebook_.say(u"Matches", u"匹配结果");
}

void frmMain::nameControls() const
{
    setAccessibleName(txtKey_.hwnd(), notebook_.say(u"Search", u"搜索"));
    setAccessibleName(txtInline_.hwnd(), notebook_.say(u"Find", u"查找"));
    setAccessibleName(txtType_.hwnd(), titleName());
    setAccessibleName(chkSort_.hwnd(), sortName());
    setAccessibleName(lstHeads_.hwnd(), headingsName());
    setAccessibleName(text_.wrapping().hwnd(), textName());
    setAccessibleName(text_.scrolling().hwnd(), textName());
    setAccessibleName(lstInLineSrch_.hwnd(), resultsName());
    setAccessibleName(splitter_.hwnd(), notebook_.say(u"Splitter", u"分隔条"));
}

// The two boxes on top turn pale yellow while they have the focus; text and lists have their own colours.
HBRUSH frmMain::colourControl(HDC dc, HWND control)
{
    if (control == txtKey_.hwnd() || control == txtInline_.hwnd()) {
        if (isHighContrast())
            return nullptr;
        const bool focused = GetFocus() == control;
        SetTextColor(dc, RGB(0, 0, 0));
        SetBkColor(dc, focused ? kFocusColour : kPlainColour);
        return focused ? focusBrush_.get() : static_cast<HBRUSH>(GetStockObject(WHITE_BRUSH));
    }
    if (!text_.holds(control) && control != lstHeads_.hwnd() && control != lstInLineSrch_.hwnd())
        return nullptr;
    SetTextColor(dc, display_->foreColor());
    SetBkColor(dc, display_->backColor());
    return display_->backBrush();
}

// The system tells its colours to the windows of the desktop; what lies in them is told here.
void frmMain::onSystemLook(UINT message)
{
    if (message == WM_SYSCOLORCHANGE)
        for (HWND child = GetWindow(hwnd_, GW_CHILD); child != nullptr; child = GetWindow(child, GW_HWNDNEXT))
            SendMessageW(child, message, 0, 0);
    if (display_ != nullptr)
        display_->systemColoursChanged();
    RedrawWindow(hwnd_, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_FRAME | RDW_ALLCHILDREN);
}

// Enter, Esc and Del where they are commands; the boxes' own use of all other keys stays.
bool frmMain::onControlKey(HWND control, WPARAM key)
{
    if (control == lstHeads_.hwnd() && key == VK_DELETE) {
        gate_.run([this](const Turn& turn) { commands_(turn).records.deleteSelected(); });
        return true;
    }
    const std::optional<PopUpTarget> box = boxOf(control);
    if (!box || (key != VK_RETURN && key != VK_ESCAPE))
        return false;
    if (box == PopUpTarget::RecordText && key == VK_RETURN)
        return false;
    returnIsHeld_ = key == VK_RETURN;
    gate_.run([&](const Turn& turn) { carryOutBoxKey(turn, *box, key == VK_RETURN); });
    return true;
}

// What Enter (else Esc) means in a box.
void frmMain::carryOutBoxKey(const Turn& turn, PopUpTarget box, bool enter)
{
    SearchBoxes& boxes = commands_(turn).boxes;
    switch (box) {
    case PopUpTarget::Search:
        enter ? boxes.searchEnter() : boxes.searchEscape();
        break;
    case PopUpTarget::Find:
        enter ? boxes.findEnter() : boxes.findEscape();
        break;
    case PopUpTarget::Title:
        enter ? text_.focus() : txtKey_.focus();
        break;
    case PopUpTarget::RecordText:
        txtKey_.focus();
        break;
    }
}

// Ctrl+/ opens the menu under the label of the box.
bool frmMain::onControlKeyUp(HWND control, WPARAM key)
{
    if (key == VK_RETURN)
        returnIsHeld_ = false;
    if (key != VK_OEM_2 || GetKeyState(VK_CONTROL) >= 0)
        return false;
    if (control == txtKey_.hwnd())
        return onControlMouse(lblRemarks_[0].hwnd(), WM_LBUTTONUP);
    if (control == txtInline_.hwnd())
        return onControlMouse(lblRemarks_[1].hwnd(), WM_LBUTTONUP);
    return false;
}

// An Enter that was a command of another box repeats itself while it is held; the text, which has got the
// focus by that command, is not to lose its selection to it.
bool frmMain::isHeldReturn(HWND control, WPARAM key, LPARAM keyData) const
{
    constexpr LPARAM kWasDown = 1 << 30;
    return returnIsHeld_ && key == VK_RETURN && (keyData & kWasDown) != 0 && text_.holds(control);
}

// Ctrl+Tab, where it writes a tab.
bool frmMain::isTabOfText(HWND control, WPARAM key) const
{
    return key == VK_TAB && GetKeyState(VK_CONTROL) < 0 && text_.holds(control) &&
        (GetWindowLongW(control, GWL_STYLE) & ES_READONLY) == 0;
}

// Menus under the labels.
bool frmMain::onControlMouse(HWND control, UINT message)
{
    const HWND search = lblRemarks_[0].hwnd();
    const HWND find = lblRemarks_[1].hwnd();
    if (control != search && (control != find || message != WM_LBUTTONUP))
        return false;
    gate_.run([&](const Turn& turn) {
        if (control == find)
            popUpUnder(turn, find, menus_->popUpOf(ID_mnu_rePopUp));
        else if (message == WM_LBUTTONUP)
            popUpForSearch(turn);
        else
            popUpUnder(turn, search, menus_->popUpOf(ID_mnu_soPopUp));
    });
    return true;
}

// Which keys the dialog keys of the window leave to a control. A box of several lines would keep Tab and
// Esc for itself, and close its window on Esc.
LRESULT frmMain::keysWanted(HWND control, LRESULT own, const MSG* key) const
{
    if (!boxOf(control))
        return own;
    const WPARAM pressed = key == nullptr ? 0 : key->wParam;
    if (pressed == VK_ESCAPE || (pressed == VK_RETURN && !text_.holds(control)))
        return own | DLGC_WANTALLKEYS;
    if (!text_.holds(control))
        return own;
    // Entering the box does not select its whole text.
    own &= ~static_cast<LRESULT>(DLGC_HASSETSEL);
    if (pressed == VK_TAB && GetKeyState(VK_CONTROL) >= 0)
        own &= ~static_cast<LRESULT>(DLGC_WANTALLKEYS | DLGC_WANTTAB | DLGC_WANTMESSAGE);
    return own;
}

LRESULT CALLBACK frmMain::controlProc(
    HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR /*id*/, DWORD_PTR self)
{
    auto* form = reinterpret_cast<frmMain*>(self);
    const std::optional<LRESULT> answer = border::guarded<std::optional<LRESULT>>(
        0, [&] { return form->onControlMessage(window, message, wParam, lParam); });
    return answer ? *answer : DefSubclassProc(window, message, wParam, lParam);
}

// What the window treats in place of a control; nothing: the control does.
std::optional<LRESULT> frmMain::onControlMessage(HWND control, UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message) {
    case WM_GETDLGCODE:
        return keysWanted(
            control, DefSubclassProc(control, message, wParam, lParam), reinterpret_cast<const MSG*>(lParam));
    case WM_LBUTTONUP:
    case WM_RBUTTONUP:
        if (onControlMouse(control, message))
            return 0;
        break;
    case WM_CONTEXTMENU:
        if (!boxOf(control))
            break;
        gate_.run([&](const Turn& turn) {
            showTextMenu(turn, control, {GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)});
        });
        return 0;
    case WM_PASTE:
        if (!boxOf(control))
            break;
        pasteInto(control);
        return 0;
    case WM_KEYUP:
        if (onControlKeyUp(control, wParam))
            return 0;
        break;
    case WM_KEYDOWN:
        if (isHeldReturn(control, wParam, lParam) || onControlKey(control, wParam))
            return 0;
        if (isTabOfText(control, wParam)) { // not every keyboard layout makes a character of it
            SendMessageW(control, EM_REPLACESEL, TRUE, reinterpret_cast<LPARAM>(L"\t"));
            return 0;
        }
        break;
    case WM_CHAR: // the keys above were treated already; the box would beep or type them
        if (isHeldReturn(control, wParam, lParam) || isTabOfText(control, wParam))
            return 0;
        if (wParam == VK_ESCAPE || (wParam == VK_RETURN && !text_.holds(control)))
            return 0;
        break;
    case WM_IME_STARTCOMPOSITION:
        if (control == txtKey_.hwnd())
            instantSearch_.compositionStarted();
        break;
    case WM_IME_ENDCOMPOSITION: {
        const LRESULT result = DefSubclassProc(control, message, wParam, lParam);
        if (control == txtKey_.hwnd())
            instantSearch_.compositionEnded();
        return result;
    }
    }
    return std::nullopt;
}

void frmMain::copyDate()
{
    const std::u16string date = lblDate_.text();
    if (!date.empty())
        gate_.run([&](const Turn&) { copyText(notebook_, date); });
}

} // namespace vellums::ui
