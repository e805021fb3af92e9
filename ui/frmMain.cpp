#include "ui/frmMain.h"

#include "platform/events.h"
#include "search/inlineSearch.h"
#include "search/searchFields.h"
#include "ui/ids.h"
#include "ui/modMouseWheel.h"
#include "ui/modSetIcon.h"
#include "ui/systemLook.h"
#include "ui/wide.h"

#include <windowsx.h>

namespace vellums::ui {
namespace {

constexpr wchar_t kWindowClass[] = L"frmMain";
constexpr int kSmallestWidthTwips = 7200;
constexpr int kSmallestHeightTwips = 4800;
constexpr int kWidthTwips = 14400;
constexpr int kHeightTwips = 9600;

// A click in a list is treated once the list is done with the mouse: a question may follow.
constexpr UINT kHeadingSelected = WM_APP + 1;
constexpr UINT kResultSelected = WM_APP + 2;

// Loading the service that names controls takes a good part of the start: the window is there first.
constexpr UINT kNameControls = WM_APP + 3;
constexpr UINT_PTR kInstantSearch = 1; // a timer

void registerClass()
{
    WNDCLASSEXW main{};
    main.cbSize = sizeof main;
    main.lpfnWndProc = DefWindowProcW; // frmMain takes over once its parts exist
    main.hInstance = GetModuleHandleW(nullptr);
    main.hIcon = LoadIconW(main.hInstance, modSetIcon::kProgramIcon);
    main.hCursor = LoadCursorW(nullptr, IDC_ARROW);
    main.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_BTNFACE + 1);
    main.lpszClassName = kWindowClass;
    RegisterClassExW(&main);
}

} // namespace

frmMain::frmMain(Notebook& notebook)
    : notebook_(notebook)
    , ports_{.caption = caption_,
          .txtKey = txtKey_,
          .txtInline = txtInline_,
          .txtType = txtType_,
          .txtShowWrap = text_,
          .lstHeads = lstHeads_,
          .lstInLineSrch = lstInLineSrch_,
          .txtInlineTip = txtInlineTip_,
          .lblDate = lblDate_,
          .chkSort = chkSort_,
          .mnu_SortOnTitle = mnu_SortOnTitle_,
          .mnu_ezdel = mnu_ezdel_,
          .mnu_InstantSrch = mnu_InstantSrch_,
          .mnu_AvailFields = mnu_AvailFields_,
          .ucStatusRight = ucStatusRight_,
          .progress = work_,
          .dialogs = dialogs_}
{
}

frmMain::~frmMain()
{
    if (hwnd_ != nullptr)
        DestroyWindow(hwnd_);
}

void frmMain::open(const Opening& opening, int showCommand)
{
    registerClass();
    menus_ = std::make_unique<Menus>(notebook_.chinese);
    const HWND window = CreateWindowExW(WS_EX_APPWINDOW, kWindowClass, L"Vellums",
        WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN, CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT,
        nullptr, menus_->takeBar(), GetModuleHandleW(nullptr), nullptr);
    hwnd_ = window;
    SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
    SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(windowProc));
    scale_ = Scale(dpiOf(window));
    menus_->setWindow(window);
    modSetIcon::setIcon(window, modSetIcon::kProgramIcon, false);
    caption_.attach(window);
    dialogs_.setOwner(window);
    input_.setOwner(window);
    accelerators_ = buildAccelerators();
    instantSearch_.attach(window, kInstantSearch);
    createControls();
    prepareMenus();
    modMouseWheel::hook(window, [this](int index) { display_->clickmnusizes(index); });
    SetWindowPos(window, nullptr, 0, 0, pixels(kWidthTwips), pixels(kHeightTwips), SWP_NOMOVE | SWP_NOZORDER);
    keepOnScreen(window);

    commands_ = std::make_unique<RecordCommands>(notebook_, ports_, moments_);
    tables_ = std::make_unique<TableCommands>(
        notebook_, ports_, *commands_, TableMenus{mnu_availdb_, mnu_switchto_, input_});
    list_ =
        std::make_unique<ListCommands>(notebook_, ports_, *commands_, ListMenus{mnu_avtables_, mnu_moverec_});
    boxes_ = std::make_unique<SearchBoxes>(notebook_, ports_, *commands_, instantSearch_);
    textCommands_ = std::make_unique<TextCommands>(notebook_, ports_, *boxes_, mnu_switchCase_);
    moments_.tableOpened.add([this] { rebuildSearchFields(notebook_, ports_); });
    const std::u16string startReport = ucStatusLeft_.Caption();
    commands_->start();
    tables_->rebuildMenu();
    if (!startReport.empty()) // what start-up had to say matters more than the count
        ucStatusLeft_.setCaption(startReport);
    if (opening.firstStart)
        ucStatusRight_.setCaption(notebook_.say(u"Type or paste a text, then press Ctrl+S to keep it.",
            u"请输入或粘贴文本, 然后按 Ctrl+S 保存。"));
    ShowWindow(window, showCommand);
    UpdateWindow(window);
    PostMessageW(window, kNameControls, 0, 0);
    SetFocus(lstHeads_.count() > 0 ? lstHeads_.hwnd() : text_.hwnd());
    if (!opening.paths.empty())
        importPaths(opening.paths);
}

bool frmMain::translate(MSG& message)
{
    if (hwnd_ == nullptr || (message.hwnd != hwnd_ && !IsChild(hwnd_, message.hwnd)))
        return false;
    return TranslateAcceleratorW(hwnd_, accelerators_.get(), &message) != 0 ||
        IsDialogMessageW(hwnd_, &message);
}

LRESULT CALLBACK frmMain::windowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    auto* form = reinterpret_cast<frmMain*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    return form->onMessage(message, wParam, lParam);
}

LRESULT frmMain::onMessage(UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message) {
    case WM_SIZE:
        if (wParam != SIZE_MINIMIZED)
            layOut();
        return 0;
    case WM_GETMINMAXINFO: {
        auto* limits = reinterpret_cast<MINMAXINFO*>(lParam);
        limits->ptMinTrackSize = {pixels(kSmallestWidthTwips), pixels(kSmallestHeightTwips)};
        return 0;
    }
    case WM_DPICHANGED:
        onDpiChanged(HIWORD(wParam), *reinterpret_cast<const RECT*>(lParam));
        return 0;
    case WM_CTLCOLOREDIT:
    case WM_CTLCOLORLISTBOX:
        if (const HBRUSH brush = colourControl(reinterpret_cast<HDC>(wParam), reinterpret_cast<HWND>(lParam));
            brush != nullptr)
            return reinterpret_cast<LRESULT>(brush);
        break;
    case WM_SYSCOLORCHANGE:
    case WM_SETTINGCHANGE:
        if (display_ != nullptr)
            display_->systemColoursChanged();
        break;
    case WM_COMMAND:
        if (onCommand(LOWORD(wParam), HIWORD(wParam)))
            return 0;
        break;
    case kHeadingSelected:
        if (!importing_)
            commands_->selectHeading();
        return 0;
    case kNameControls:
        nameControls();
        return 0;
    case kResultSelected:
        if (!importing_)
            lstInLineSrchClick(ports_);
        return 0;
    case WM_TIMER:
        onPause();
        return 0;
    case WM_MEASUREITEM:
        lstInLineSrch_.measure(*reinterpret_cast<MEASUREITEMSTRUCT*>(lParam));
        return TRUE;
    case WM_DRAWITEM:
        lstInLineSrch_.draw(
            *reinterpret_cast<const DRAWITEMSTRUCT*>(lParam), display_->foreColor(), display_->backColor());
        return TRUE;
    case WM_CONTEXTMENU:
        onContextMenu(reinterpret_cast<HWND>(wParam), {GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)});
        return 0;
    case WM_MENUSELECT:
        onMenuSelect(LOWORD(wParam), HIWORD(wParam));
        return 0;
    case WM_ACTIVATE:
        if (LOWORD(wParam) == WA_INACTIVE)
            focusBefore_ = GetFocus();
        break;
    case WM_SETFOCUS:
        SetFocus(focusBefore_ != nullptr && IsChild(hwnd_, focusBefore_) ? focusBefore_ : lstHeads_.hwnd());
        return 0;
    case WM_CLOSE:
        if (importing_)
            closing_ = true;
        else if (commands_->mayClose())
            DestroyWindow(hwnd_);
        return 0;
    case WM_QUERYENDSESSION: // the last chance to ask about unsaved text
        return commands_->mayClose() ? TRUE : FALSE;
    case WM_DESTROY:
        modMouseWheel::unhook(hwnd_);
        txtInlineTip_.destroy();
        PostQuitMessage(0);
        return 0;
    case WM_NCDESTROY:
        return DefWindowProcW(std::exchange(hwnd_, nullptr), message, wParam, lParam);
    }
    return DefWindowProcW(hwnd_, message, wParam, lParam);
}

bool frmMain::onCommand(int id, int notification)
{
    switch (id) {
    case ID_lstHeads:
        if (notification == LBN_SELCHANGE)
            PostMessageW(hwnd_, kHeadingSelected, 0, 0);
        return true;
    case ID_lstFontNames:
    case ID_lstFontSizes:
        if (notification == LBN_SELCHANGE)
            display_->onListSelection(id);
        return true;
    case ID_chkSort:
        if (notification == BN_CLICKED && !importing_)
            commands_->search();
        return true;
    case ID_lblDate:
        if (notification == STN_DBLCLK)
            copyDate();
        return true;
    case ID_lstInLineSrch:
        if (notification == LBN_SELCHANGE)
            PostMessageW(hwnd_, kResultSelected, 0, 0);
        return true;
    case ID_txtKey:
    case ID_txtInline:
    case ID_txtType:
    case ID_txtShowWrap:
    case ID_txtShowNoWrap:
        onBoxNotification(id, notification);
        return true;
    default:
        return onMenuCommand(id);
    }
}

int runWindow(frmMain& window)
{
    platform::setEventYield([&window] {
        MSG message{};
        while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
            if (message.message == WM_QUIT) { // the loop below ends by it
                PostQuitMessage(static_cast<int>(message.wParam));
                return;
            }
            if (!window.translate(message)) {
                TranslateMessage(&message);
                DispatchMessageW(&message);
            }
        }
    });
    MSG message{};
    while (GetMessageW(&message, nullptr, 0, 0) > 0) {
        if (!window.translate(message)) {
            TranslateMessage(&message);
            DispatchMessageW(&message);
        }
    }
    platform::setEventYield({});
    return static_cast<int>(message.wParam);
}

} // namespace vellums::ui
