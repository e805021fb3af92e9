// The main window. It shows what it is told, and passes clicks and keys on to the commands; no rule of
// the notebook lives here.
#pragma once

#include "app/listCommands.h"
#include "app/mainWindow.h"
#include "app/recordCommands.h"
#include "app/tableCommands.h"
#include "search/searchBoxes.h"
#include "search/textCommands.h"
#include "ui/checkItems.h"
#include "ui/displaySettings.h"
#include "ui/editBox.h"
#include "ui/fraSplitter.h"
#include "ui/frmInput.h"
#include "ui/headsList.h"
#include "ui/layout.h"
#include "ui/menus.h"
#include "ui/messageDialogs.h"
#include "ui/pauseTimer.h"
#include "ui/recordText.h"
#include "ui/resultsList.h"
#include "ui/tooltip.h"
#include "ui/ucStatus.h"
#include "ui/windowLabel.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace vellums::ui {

// What the window was started with.
struct Opening {
    std::vector<std::u16string> paths; // imported once the window is shown
    bool firstStart = false;           // the database is new: greet
};

// Shows each line at once in a panel, once the window is there.
struct PanelLine : StatusLine {
    ucStatus* panel = nullptr;
    void failed(const std::u16string& line) override { show(line); }
    void done(const std::u16string& line) override { show(line); }
    void found(const std::u16string& line) override { show(line); }
    void show(const std::u16string& line) const
    {
        if (panel != nullptr)
            panel->setCaption(line);
    }
};

// Work that nobody sees yet.
struct UnseenWork : Progress {
    void begin(std::u16string_view) override { }
    bool step(std::size_t, std::size_t) override { return true; }
    void end() noexcept override { }
};

class frmMain {
public:
    // `notebook` outlives the window; start-up has prepared it when open() is called.
    explicit frmMain(Notebook& notebook);
    frmMain(const frmMain&) = delete;
    frmMain& operator=(const frmMain&) = delete;
    ~frmMain();

    // The panel, for reports from before the window is shown.
    ucStatus& statusPanel() { return ucStatusLeft_; }

    // Creates and shows the window, fills the list, and imports what it was opened with.
    void open(const Opening& opening, int showCommand);
    HWND hwnd() const { return hwnd_; }

    // A message of the thread's loop: keys of the menus, Tab and Enter. True: it was treated.
    bool translate(MSG& message);

private:
    static LRESULT CALLBACK windowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
    LRESULT onMessage(UINT message, WPARAM wParam, LPARAM lParam);

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
    bool onControlKey(HWND control, WPARAM key);
    bool onControlKeyUp(HWND control, WPARAM key);
    bool isHeldReturn(HWND control, WPARAM key, LPARAM keyData) const;
    bool onControlMouse(HWND control, UINT message);
    HBRUSH colourControl(HDC dc, HWND control);

    // frmMainLayout.cpp
    void layOut();
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
    bool onMenuCommand(int id);
    bool onViewCommand(int id);
    bool onRecordCommand(int id);
    bool onTableCommand(int id);
    bool onArrayCommand(int id);
    void onContextMenu(HWND control, POINT screen);
    void selectUnderPoint(HWND list, POINT screen) const;
    int popUp(HMENU menu, POINT screen);
    void popUpUnder(HWND label, HMENU menu);
    void onMenuSelect(UINT id, UINT flags);
    void toggleWrap();
    void toggleOnTop();
    void onSourceChanged();
    void showSourceMenu(int x, int y);
    void copyDate();

    // frmMainText.cpp
    void prepareTextMenus();
    bool onTextCommand(int id);
    bool onPopUpCommand(int id);
    void onBoxNotification(int id, int notification);
    std::optional<PopUpTarget> boxOf(HWND control) const;
    void showTextMenu(HWND control, POINT screen);
    void showResultsMenu(POINT screen);
    void enableTextMenu(HWND control);
    void onPause();

    // frmMainImport.cpp
    void importFolder();
    void importPaths(const std::vector<std::u16string>& paths);
    void refreshKeeping(const std::u16string& report);
    void removeDuplicates();
    void compactData();

    Notebook& notebook_;
    HWND hwnd_ = nullptr;
    Scale scale_;
    HWND focusBefore_ = nullptr; // the control that had the focus when the window lost it
    bool importing_ = false;     // commands wait meanwhile
    bool closing_ = false;       // closed during an import, which ends first
    OwnedFont font_;
    OwnedBrush focusBrush_;
    OwnedAccelerators accelerators_;
    bool explaining_ = false;       // the left panel explains a menu entry
    std::u16string textBeforeHelp_; // and showed this before

    double splitterLeft_ = kFirstSplitterLeft; // twips
    double listRight_ = kFirstSplitterLeft;    // where the list ends when it is shown
    bool listShown_ = true;

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
    HWND lblStaticBorder_ = nullptr;
    HWND shpEdge_ = nullptr;
    fraSplitter splitter_;
    std::unique_ptr<DisplaySettings> display_;
    ButtonCheck chkSort_;
    ucStatus ucStatusLeft_;
    ucStatus ucStatusRight_;
    UnseenWork work_;
    MessageDialogs dialogs_;
    frmInput input_;
    MainWindow ports_;
    Moments moments_;
    std::unique_ptr<RecordCommands> commands_;
    std::unique_ptr<TableCommands> tables_;
    std::unique_ptr<ListCommands> list_;
    PauseTimer instantSearch_;
    std::unique_ptr<SearchBoxes> boxes_;
    std::unique_ptr<TextCommands> textCommands_;
    bool returnIsHeld_ = false; // since it was a command of a box
};

// Treats the messages of this thread until the window is closed; gives the exit status.
int runWindow(frmMain& window);

} // namespace vellums::ui
