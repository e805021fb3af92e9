// Finding in the text and editing it: menus, keys and what the boxes report.
#include "ui/frmMain.h"

#include "platform/clipboard.h"
#include "search/findInText.h"
#include "search/inlineSearch.h"
#include "search/patternMenu.h"
#include "ui/ids.h"

namespace vellums::ui {
namespace {

constexpr int kMostPatterns = 300;

// Where a menu stands that was opened from the keyboard.
POINT belowCaret(HWND control)
{
    POINT at{};
    GetCaretPos(&at);
    ClientToScreen(control, &at);
    return at;
}

} // namespace

void frmMain::prepareTextMenus()
{
    mnu_InstantSrch_.attach(*menus_, ID_mnu_InstantSrch);
    mnu_switchCase_.attach(*menus_, ID_mnu_txtops + 4);
    mnu_RegExChar_.attach(
        menus_->popUpOf(ID_mnu_rePopUp), ID_mnu_RegExChar, kMostPatterns, MenuArray::Captions::Names);
    fillPatternMenu(notebook_, mnu_RegExChar_);
}

bool frmMain::onTextCommand(int id)
{
    switch (id) {
    case ID_mnu_txtops + 0:
        textCommands_->selectAll();
        return true;
    case ID_mnu_txtops + 1:
        textCommands_->clearText();
        return true;
    case ID_mnu_txtops + 3:
        textCommands_->insertDate();
        return true;
    case ID_mnu_txtops + 4:
        textCommands_->switchCase();
        return true;
    case ID_mnu_txtops + 5:
        textCommands_->trimText();
        return true;
    case ID_mnu_find + 0:
        findInText(notebook_, ports_, FindCommand::Inline);
        return true;
    case ID_mnu_find + 1:
    case ID_mnu_top + 5:
        findInText(notebook_, ports_, FindCommand::Previous);
        return true;
    case ID_mnu_find + 2:
    case ID_mnu_top + 6:
        findInText(notebook_, ports_, FindCommand::Next);
        return true;
    case ID_mnu_top + 10:
        textCommands_->insertTitle();
        return true;
    case ID_mnu_srchfield:
        boxes_->newSearch();
        return true;
    case ID_mnu_SortOnTitle:
        boxes_->toggleSortOnTitle();
        return true;
    case ID_mnu_InstantSrch:
        boxes_->toggleInstantSearch();
        return true;
    default:
        return false;
    }
}

// The entries of the boxes' context menu and of the result list's.
bool frmMain::onPopUpCommand(int id)
{
    switch (id) {
    case ID_mnu_txtundo:
        textCommands_->undo();
        return true;
    case ID_mnu_txtcut:
        textCommands_->cut();
        return true;
    case ID_mnu_txtcopy:
        textCommands_->copy();
        return true;
    case ID_mnu_txtpaste:
        textCommands_->paste();
        return true;
    case ID_mnu_txtpastego:
    case ID_mnu_txtpastego1:
        textCommands_->pasteAndGo();
        return true;
    case ID_mnu_txtdelete:
        textCommands_->deleteSelection();
        return true;
    case ID_mnu_txtselall:
        textCommands_->selectAll();
        return true;
    case ID_mnu_txtcopyall:
        textCommands_->copyAll();
        return true;
    case ID_mnu_txtjoinlines:
        textCommands_->joinLines();
        return true;
    case ID_mnu_txtcomplines:
        textCommands_->compressLines();
        return true;
    case ID_mnu_txtreset:
        textCommands_->reset();
        return true;
    case ID_mnu_ilsCopyCmds + 0:
        copyResult(ports_);
        return true;
    case ID_mnu_ilsCopyCmds + 1:
        copyAllResults(ports_);
        return true;
    default:
        return false;
    }
}

std::optional<PopUpTarget> frmMain::boxOf(HWND control) const
{
    if (text_.holds(control))
        return PopUpTarget::RecordText;
    if (control == txtKey_.hwnd())
        return PopUpTarget::Search;
    if (control == txtType_.hwnd())
        return PopUpTarget::Title;
    if (control == txtInline_.hwnd())
        return PopUpTarget::Find;
    return std::nullopt;
}

// The commands go to the box that has, or had last, the focus.
void frmMain::onBoxNotification(int id, int notification)
{
    if (boxes_ == nullptr) // still being created
        return;
    const HWND box = GetDlgItem(hwnd_, id);
    switch (notification) {
    case EN_SETFOCUS:
        textCommands_->setTarget(*boxOf(box));
        InvalidateRect(box, nullptr, TRUE);
        break;
    case EN_KILLFOCUS:
        InvalidateRect(box, nullptr, TRUE);
        break;
    case EN_CHANGE:
        if (id == ID_txtKey)
            boxes_->searchTextChanged();
        else if (id == ID_txtInline)
            boxes_->findTextChanged();
        break;
    }
}

void frmMain::showTextMenu(HWND control, POINT screen)
{
    SetFocus(control);
    textCommands_->setTarget(*boxOf(control));
    enableTextMenu(control);
    const bool fromKeyboard = screen.x == -1 && screen.y == -1;
    popUp(menus_->popUpOf(ID_mnu_txtpopup), fromKeyboard ? belowCaret(control) : screen);
}

// Grey is what would do nothing.
void frmMain::enableTextMenu(HWND control)
{
    for (const int id : {ID_mnu_txtcut, ID_mnu_txtcopy, ID_mnu_txtdelete})
        menus_->setEnabled(id, textCommands_->hasSelection());
    menus_->setEnabled(ID_mnu_txtundo, SendMessageW(control, EM_CANUNDO, 0, 0) != 0);
    for (const int id : {ID_mnu_txtpaste, ID_mnu_txtpastego})
        menus_->setEnabled(id, platform::clipboardHasText());
    for (const int id : {ID_mnu_txtjoinlines, ID_mnu_txtcomplines})
        menus_->setEnabled(id, !text_.selection().empty());
}

void frmMain::showResultsMenu(POINT screen)
{
    if (screen.x == -1 && screen.y == -1) {
        screen = {};
        ClientToScreen(lstInLineSrch_.hwnd(), &screen);
    } else {
        selectUnderPoint(lstInLineSrch_.hwnd(), screen);
    }
    menus_->setEnabled(ID_mnu_ilsCopyCmds, lstInLineSrch_.current() >= 0);
    popUp(menus_->popUpOf(ID_mnu_ilsPopUp), screen);
}

// The user has paused. An import ends with a search of its own.
void frmMain::onPause()
{
    instantSearch_.cancel();
    if (!importing_)
        boxes_->searchInstantly(keyIsWaiting);
}

} // namespace vellums::ui
