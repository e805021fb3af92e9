// The main window. It shows what it is told, and passes clicks and keys on to the commands, through the
// gate; no rule of the notebook lives here.
#pragma once

#include "app/gate.h"
#include "app/start/commandLine.h"
#include "ports/windowPorts.h"
#include "search/instantSearch.h"
#include "ui/controls/buttonCheck.h"
#include "ui/controls/editBox.h"
#include "ui/controls/fraSplitter.h"
#include "ui/controls/headsList.h"
#include "ui/controls/recordText.h"
#include "ui/controls/resultsList.h"
#include "ui/controls/tooltip.h"
#include "ui/controls/ucStatus.h"
#include "ui/controls/windowLabel.h"
#include "ui/dialogs/frmInput.h"
#include "ui/dialogs/messageDialogs.h"
#include "ui/main/commands.h"
#include "ui/main/displaySettings.h"
#include "ui/main/layout.h"
#include "ui/main/menus.h"
#include "ui/main/windowProgress.h"
#include "ui/windows/pauseTimer.h"
#include "ui/windows/shutdownBlock.h"
#include "ui/windows/subclass.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace vellums::ui {

// Messages that the window posts to itself.
//
// A click in a list is treated once the list is done with the mouse: a question may follow.
inline constexpr UINT kHeadingSelected = WM_APP + 1;
inline constexpr UINT kResultSelected = WM_APP + 2;
// Loading the service that names controls takes a good part of the start: the window is there first.
inline constexpr UINT kNameControls = WM_APP + 3;
inline constexpr UINT kServeGate = WM_APP + 4; // what waited gets its turn
inline constexpr UINT kStart = WM_APP + 5;     // what the program was started with

// What the window was started with.
struct Opening {
    Start start;             // carried out once the window is shown
    bool firstStart = false; // the database is new: greet
};

class frmMain : private WindowView {
public:
    // Both outlive the window; start-up has prepared the notebook when open() is called. `outcome` is what
    // the notebook's routines tell, that of start-up included.
    frmMain(Notebook& notebook, Outcome& outcome);
    frmMain(const frmMain&) = delete;
    frmMain& operator=(const frmMain&) = delete;
    ~frmMain() override;

    // Creates and shows the window, fills the list, and carries out what it was started with.
    void open(const Opening& opening, int showCommand);
    HWND hwnd() const { return hwnd_; }

    // A message of the thread's loop: keys of the menus, Tab and Enter. True: it was treated.
    bool translate(MSG& message);

private:
    static LRESULT CALLBACK windowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
    LRESULT onMessage(UINT message, WPARAM wParam, LPARAM lParam);
    // Each treats the messages of one kind; nothing: the message is of another, or the system's as well.
    std::optional<LRESULT> onLooks(UINT message, WPARAM wParam, LPARAM lParam);
    std::optional<LRESULT> onInput(UINT message, WPARAM wParam, LPARAM lParam);
    std::optional<LRESULT> onPosted(UINT message, WPARAM wParam, LPARAM lParam);
    std::optional<LRESULT> onEnd(UINT message, WPARAM wParam, LPARAM lParam);

    // frmMainControls.cpp
    void createControls();
    void createHeader();
    void createBody();
    void nameControls() const;
    // What screen readers call what has no label to be seen.
    std::u16string titleName() const;
    std::u16string sortName() const;
    std::u16string headingsName() const;
    std::u16string textName() const;
    std::u16string resultsName() const;
    static LRESULT CALLBACK controlProc(
        HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR id, DWORD_PTR self);
    std::optional<LRESULT> onControlMessage(HWND control, UINT message, WPARAM wParam, LPARAM lParam);
    LRESULT keysWanted(HWND control, LRESULT own, const MSG* key) const;
    bool onControlKey(HWND control, WPARAM key);
    void carryOutBoxKey(const Turn& turn, PopUpTarget box, bool enter);
    bool onControlKeyUp(HWND control, WPARAM key);
    bool isHeldReturn(HWND control, WPARAM key, LPARAM keyData) const;
    bool isTabOfText(HWND control, WPARAM key) const;
    bool onControlMouse(HWND control, UINT message);
    HBRUSH colourControl(HDC dc, HWND control);
    void onSystemLook(UINT message);
    void copyDate();

    // frmMainLayout.cpp
    void onResized();
    void layOut();
    double splitterLeft() const;
    void makeFonts();
    void onDpiChanged(UINT dpi, const RECT& suggested);
    void dragSplitter(int left);
    void endSplitterDrag();
    void showList(bool shown);
    void markListShown();
    int pixels(int twips) const { return scale_.pixels(twips); }

    // frmMainMenus.cpp
    void prepareMenus();
    bool onCommand(int id, int notification);
    bool perform(int id);
    void carryOut(const Turn& turn, int id);
    void onContextMenu(HWND control, POINT screen);
    void showHeadsMenu(const Turn& turn, POINT screen);
    void showResultsMenu(const Turn& turn, POINT screen);
    void selectUnderPoint(HWND list, POINT screen) const;
    void popUp(const Turn& turn, HMENU menu, POINT screen);
    void popUpUnder(const Turn& turn, HWND label, HMENU menu);
    void popUpForSearch(const Turn& turn);
    void onMenuSelect(UINT id, UINT flags);
    void onSourceChanged();
    void showSourceMenu(int x, int y);

    // What the commands change of the window; longer ones are in frmMainMenus.cpp, too.
    void toggleWrap() override;
    void toggleList() override { showList(!listShown_); }
    void toggleEasyDelete() override { mnu_ezdel_.setChecked(!mnu_ezdel_.checked()); }
    void toggleOnTop() override;
    void smallerText() override { display_->clickmnusizes(0); }
    void resetDisplay() override { display_->clickmnusizes(1); }
    void largerText() override { display_->clickmnusizes(2); }
    void chooseSize(std::size_t index) override;
    void chooseFont(std::size_t index) override { display_->chooseFont(static_cast<int>(index)); }
    void quit() override { PostMessageW(hwnd_, WM_CLOSE, 0, 0); }

    // frmMainText.cpp
    void prepareTextMenus();
    void onBoxNotification(int id, int notification);
    std::optional<PopUpTarget> boxOf(HWND control) const;
    void showTextMenu(const Turn& turn, HWND control, POINT screen);
    void enableTextMenu(Commands& commands, HWND control);
    void pasteInto(HWND box);
    void searchDue();

    // frmMainSession.cpp
    void carryOutStart(const Turn& turn, const Start& start);
    void handOver();
    void close();
    bool sessionMayEnd();
    void sessionEnds(bool ends);
    bool hasUnsavedText() const;

    // frmMainWork.cpp
    void treatMessagesDuringWork();
    bool isTreatedDuringWork(const MSG& message);
    void lockBoxes(bool locked);

    Notebook& notebook_;
    HWND hwnd_ = nullptr;
    Start start_;
    Scale scale_;
    HWND focusBefore_ = nullptr; // the control that had the focus when the window lost it
    bool closing_ = false;       // the question before closing stands
    std::optional<ShutdownBlock> shutdownBlock_;
    bool endAgreed_ = false; // the user has answered what becomes of the text when the session ends
    OwnedFont font_;
    OwnedBrush focusBrush_;
    OwnedAccelerators accelerators_;
    bool explaining_ = false;       // the left panel explains a menu entry
    std::u16string textBeforeHelp_; // and showed this before

    double splitterLeft_ = kFirstSplitterLeft; // while the list is shown and nothing drags (twips)
    std::optional<double> dragLeft_;           // while the mouse drags it
    bool listShown_ = true;
    SIZE sizeBefore_{}; // of the client area, when it was last resized

    std::unique_ptr<Menus> menus_;
    MenuCheck mnu_SortOnTitle_;
    MenuCheck mnu_InstantSrch_;
    MenuCheck mnu_ezdel_;
    MenuCheck mnu_switchCase_;
    MenuArray mnu_AvailFields_;
    MenuArray mnu_RegExChar_;
    MenuArray mnu_availdb_;
    MenuArray mnu_avtables_;
    MenuSwitch mnu_switchto_;
    MenuSwitch mnu_moverec_;
    WindowLabel caption_;
    WindowLabel lblRemarks_[2];
    WindowLabel lblDate_;
    EditBox txtKey_;
    EditBox txtInline_;
    EditBox txtType_;
    RecordText text_;
    HeadsList lstHeads_;
    ResultsList lstInLineSrch_;
    Tooltip txtInlineTip_;
    Tooltip chkSortTip_;
    std::vector<Subclass> keys_; // what the controls do with keys and clicks of ours
    HWND lblStaticBorder_ = nullptr;
    HWND shpEdge_ = nullptr;
    fraSplitter splitter_;
    std::unique_ptr<DisplaySettings> display_;
    ButtonCheck chkSort_;
    ucStatus ucStatusLeft_;
    ucStatus ucStatusRight_;
    WindowProgress work_;
    MessageDialogs dialogs_;
    frmInput input_;
    WindowPorts ports_;
    Moments moments_;
    PauseTimer pause_;
    InstantSearch instantSearch_;
    Gate gate_;
    Gated<Commands> commands_;
    PopUpTarget target_ = PopUpTarget::RecordText; // the box that has, or had last, the focus
    bool returnIsHeld_ = false;                    // since it was a command of a box
};

// Treats the messages of this thread until the window is closed; gives the exit status.
int runWindow(frmMain& window);

} // namespace vellums::ui
