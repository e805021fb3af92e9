// The window learns of this object as it is made, but messages reach it only when open() has the handle:
// until then they are the system's. What follows in open() has an order of its own: the menus before the
// window, which takes the bar; the controls before whoever watches them; the commands after everything they
// work on, with commands_.isMade() telling the notifications of a control that is still being made from those
// of the user; and what may ask a question (kStart) only when the window is shown.
//
// The messages stand in four lists, by what they are about; each case unpacks one and passes it on. What a
// message asks for is done at once where it only concerns how things look; what changes the notebook goes
// through the gate; and what comes from within a control's own treatment of the mouse or the keyboard is
// posted first (kHeadingSelected and the like), because a question that appeared in the midst of it would
// leave the control half done.
#include "ui/main/frmMain.h"

#include "platform/events.h"
#include "search/searchFields.h"
#include "ui/ids.h"
#include "ui/windows/border.h"
#include "ui/windows/modMouseWheel.h"
#include "ui/windows/modSetIcon.h"
#include "ui/windows/systemLook.h"

#include <utility>

#include <windowsx.h>

namespace vellums::ui {
namespace {

constexpr wchar_t kWindowClass[] = L"frmMain";
constexpr int kSmallestWidthTwips = 7200;
constexpr int kSmallestHeightTwips = 4800;
constexpr int kWidthTwips = 14400;
constexpr int kHeightTwips = 9600;

constexpr UINT_PTR kInstantSearch = 1; // a timer

void registerClass(WNDPROC procedure)
{
    WNDCLASSEXW main{};
    main.cbSize = sizeof main;
    main.lpfnWndProc = procedure;
    main.hInstance = GetModuleHandleW(nullptr);
    main.hIcon = LoadIconW(main.hInstance, modSetIcon::kProgramIcon);
    main.hCursor = LoadCursorW(nullptr, IDC_ARROW);
    main.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_BTNFACE + 1);
    main.lpszClassName = kWindowClass;
    RegisterClassExW(&main);
}

} // namespace

frmMain::frmMain(Notebook& notebook, Outcome& outcome)
    : notebook_(notebook)
    , ports_{.record = {.txtType = txtType_,
                 .txtTarget = text_,
                 .lblDate = lblDate_,
                 .ucStatusRight = work_.link()},
          .list = {.caption = caption_, .lstHeads = lstHeads_, .chkSort = chkSort_},
          .search = {.txtKey = txtKey_,
              .mnu_SortOnTitle = mnu_SortOnTitle_,
              .mnu_InstantSrch = mnu_InstantSrch_,
              .mnu_AvailFields = mnu_AvailFields_},
          .find = {.txtInline = txtInline_,
              .txtInlineTip = txtInlineTip_,
              .lstInLineSrch = lstInLineSrch_,
              .txtTarget = text_},
          .mnu_ezdel = mnu_ezdel_,
          .progress = work_,
          .dialogs = dialogs_}
    , instantSearch_(mnu_InstantSrch_, mnu_AvailFields_, pause_, [this] { return hasUnsavedText(); })
    , gate_(notebook, outcome,
          {[this](const std::u16string& line) { ucStatusLeft_.setCaption(line); },
              [this] { PostMessageW(hwnd_, kServeGate, 0, 0); }})
{
}

frmMain::~frmMain()
{
    if (hwnd_ != nullptr)
        DestroyWindow(hwnd_);
}

void frmMain::open(const Opening& opening, int showCommand)
{
    registerClass(windowProc);
    menus_ = std::make_unique<Menus>(notebook_.chinese);
    const HWND window = CreateWindowExW(WS_EX_APPWINDOW, kWindowClass, L"Vellums",
        WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN, CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT,
        nullptr, menus_->takeBar(), GetModuleHandleW(nullptr), this);
    hwnd_ = window;
    scale_ = Scale(dpiOf(window));
    menus_->setWindow(window);
    modSetIcon::setIcon(window, modSetIcon::kProgramIcon, false);
    caption_.attach(window);
    dialogs_.setOwner(window);
    input_.setOwner(window);
    accelerators_ = buildAccelerators();
    pause_.attach(window, kInstantSearch);
    createControls();
    border::tellIn(ucStatusLeft_.hwnd(), notebook_.chinese);
    prepareMenus();
    modMouseWheel::hook(
        window, [this](int index) { gate_.run([&](const Turn&) { display_->clickmnusizes(index); }); });
    SetWindowPos(window, nullptr, 0, 0, pixels(kWidthTwips), pixels(kHeightTwips), SWP_NOMOVE | SWP_NOZORDER);
    keepOnScreen(window);

    work_.attach(window, notebook_.chinese, ucStatusRight_, [this] { treatMessagesDuringWork(); });
    work_.Running = [this](bool runs) { lockBoxes(runs); };
    // Outside of long work a routine that yields is part of a command, and the window's messages can wait.
    platform::setEventYield([this] {
        if (work_.isRunning())
            treatMessagesDuringWork();
    });
    commands_.make(notebook_, ports_, moments_,
        CommandMenus{.tables = {mnu_availdb_, mnu_switchto_, input_, dialogs_},
            .list = {mnu_avtables_, mnu_moverec_},
            .mnu_switchCase = mnu_switchCase_,
            .mnu_RegExChar = mnu_RegExChar_},
        instantSearch_, static_cast<WindowView&>(*this));
    moments_.tableOpened.add([this] { rebuildSearchFields(notebook_, mnu_AvailFields_, lstHeads_); });
    gate_.run([this](const Turn& turn) {
        commands_(turn).records.start();
        commands_(turn).tables.rebuildMenu();
    });
    if (opening.firstStart)
        ucStatusRight_.setCaption(notebook_.say(u"Type or paste a text, then press Ctrl+S to keep it.",
            u"请输入或粘贴文本, 然后按 Ctrl+S 保存。"));
    ShowWindow(window, showCommand);
    UpdateWindow(window);
    PostMessageW(window, kNameControls, 0, 0);
    SetFocus(lstHeads_.count() > 0 ? lstHeads_.hwnd() : text_.hwnd());
    start_ = opening.start;
    PostMessageW(window, kStart, 0, 0);
}

bool frmMain::translate(MSG& message)
{
    if (hwnd_ == nullptr || (message.hwnd != hwnd_ && !IsChild(hwnd_, message.hwnd)))
        return false;
    // The keys of the menus come before those of dialogs, and both before the controls.
    return TranslateAcceleratorW(hwnd_, accelerators_.get(), &message) != 0 ||
        IsDialogMessageW(hwnd_, &message);
}

LRESULT CALLBACK frmMain::windowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == WM_NCCREATE) {
        const auto* created = reinterpret_cast<CREATESTRUCTW*>(lParam);
        SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(created->lpCreateParams));
    }
    auto* form = reinterpret_cast<frmMain*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    if (form == nullptr || form->hwnd_ == nullptr)
        return DefWindowProcW(window, message, wParam, lParam);
    return border::guarded<LRESULT>(0, [&] { return form->onMessage(message, wParam, lParam); });
}

LRESULT frmMain::onMessage(UINT message, WPARAM wParam, LPARAM lParam)
{
    using List = std::optional<LRESULT> (frmMain::*)(UINT, WPARAM, LPARAM);
    constexpr List kLists[] = {&frmMain::onLooks, &frmMain::onInput, &frmMain::onPosted, &frmMain::onEnd};
    for (const List list : kLists)
        if (const std::optional<LRESULT> answer = (this->*list)(message, wParam, lParam))
            return *answer;
    // The last message: the destructor must not destroy a handle that another window may have by then.
    const HWND window = message == WM_NCDESTROY ? std::exchange(hwnd_, nullptr) : hwnd_;
    return DefWindowProcW(window, message, wParam, lParam);
}

// Size, resolution, colours, and what the window draws for its controls.
std::optional<LRESULT> frmMain::onLooks(UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message) {
    case WM_SIZE:
        if (wParam != SIZE_MINIMIZED)
            onResized();
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
    case WM_CTLCOLORSTATIC: // of a box that is locked
        if (const HBRUSH brush = colourControl(reinterpret_cast<HDC>(wParam), reinterpret_cast<HWND>(lParam));
            brush != nullptr)
            return reinterpret_cast<LRESULT>(brush);
        break;
    case WM_SYSCOLORCHANGE:
    case WM_SETTINGCHANGE:
        onSystemLook(message);
        break;
    case WM_MEASUREITEM: // sent while the list is being made, before it has a font
        lstInLineSrch_.measure(*reinterpret_cast<MEASUREITEMSTRUCT*>(lParam));
        return TRUE;
    case WM_DRAWITEM:
        lstInLineSrch_.draw(
            *reinterpret_cast<const DRAWITEMSTRUCT*>(lParam), display_->foreColor(), display_->backColor());
        return TRUE;
    }
    return std::nullopt;
}

// What the user does, with the controls' notifications of it.
std::optional<LRESULT> frmMain::onInput(UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message) {
    case WM_COMMAND:
        if (onCommand(LOWORD(wParam), HIWORD(wParam)))
            return 0;
        break;
    case WM_KEYDOWN: // posted by another process; the user's own goes to a control
        if (wParam == VK_F5)
            handOver();
        return 0;
    case WM_ENTERMENULOOP:
        gate_.hold();
        return 0;
    case WM_EXITMENULOOP:
        gate_.release();
        return 0;
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
        // The system gives the focus to the window itself when it comes back; the control that had it gets it
        // again.
        SetFocus(focusBefore_ != nullptr && IsChild(hwnd_, focusBefore_) ? focusBefore_ : lstHeads_.hwnd());
        return 0;
    }
    return std::nullopt;
}

// What the window has posted to itself, and its timer.
std::optional<LRESULT> frmMain::onPosted(UINT message, WPARAM wParam, LPARAM /*lParam*/)
{
    switch (message) {
    case kHeadingSelected:
        gate_.runOrWait(
            Waiting::Heading, [this](const Turn& turn) { commands_(turn).records.selectHeading(); });
        return 0;
    case kNameControls:
        nameControls();
        return 0;
    case kResultSelected:
        gate_.run([this](const Turn& turn) { commands_(turn).boxes.selectResult(); });
        return 0;
    case kServeGate:
        gate_.serve();
        return 0;
    case kStart:
        gate_.run([this](const Turn& turn) { carryOutStart(turn, start_); });
        return 0;
    case WM_TIMER:
        if (wParam != kInstantSearch)
            break;
        searchDue();
        return 0;
    }
    return std::nullopt;
}

// How the window comes to its end.
std::optional<LRESULT> frmMain::onEnd(UINT message, WPARAM wParam, LPARAM /*lParam*/)
{
    switch (message) {
    case WM_CLOSE:
        close();
        return 0;
    case WM_QUERYENDSESSION: // the last chance to ask about unsaved text
        return sessionMayEnd() ? TRUE : FALSE;
    case WM_ENDSESSION:
        sessionEnds(wParam != FALSE);
        return 0;
    case WM_DESTROY:
        gate_.shut();
        platform::setEventYield({});
        border::tellIn(nullptr, false);
        modMouseWheel::unhook(hwnd_);
        txtInlineTip_.destroy();
        chkSortTip_.destroy();
        PostQuitMessage(0);
        return 0;
    }
    return std::nullopt;
}

int runWindow(frmMain& window)
{
    MSG message{};
    while (GetMessageW(&message, nullptr, 0, 0) > 0) {
        if (!window.translate(message)) {
            TranslateMessage(&message);
            DispatchMessageW(&message);
        }
    }
    return static_cast<int>(message.wParam);
}

} // namespace vellums::ui
