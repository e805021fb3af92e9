// Finding in the text and editing it: menus, keys and what the boxes report.
#include "ui/main/frmMain.h"

#include "platform/clipboard.h"
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
    mnu_switchCase_.attach(*menus_, ID_mnu_txtops_Case);
    mnu_RegExChar_.attach(
        menus_->popUpOf(ID_mnu_rePopUp), ID_mnu_RegExChar, kMostPatterns, MenuArray::Captions::Names);
    fillPatternMenu(notebook_, mnu_RegExChar_);
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
    const HWND box = GetDlgItem(hwnd_, id);
    switch (notification) {
    case EN_SETFOCUS:
    case EN_KILLFOCUS:
        InvalidateRect(box, nullptr, TRUE);
        if (notification == EN_SETFOCUS)
            target_ = boxOf(box).value_or(target_);
        break;
    case EN_CHANGE:
        if (!commands_.isMade()) // still being created
            break;
        if (id == ID_txtKey)
            instantSearch_.textChanged();
        else if (id == ID_txtInline)
            txtInlineTip_.setText({}); // it was about the text before
        break;
    }
}

void frmMain::showTextMenu(const Turn& turn, HWND control, POINT screen)
{
    SetFocus(control);
    target_ = boxOf(control).value_or(target_);
    commands_(turn).text.setTarget(target_);
    enableTextMenu(commands_(turn), control);
    const bool fromKeyboard = screen.x == -1 && screen.y == -1;
    popUp(turn, menus_->popUpOf(ID_mnu_txtpopup), fromKeyboard ? belowCaret(control) : screen);
}

// Grey is what would do nothing.
void frmMain::enableTextMenu(Commands& commands, HWND control)
{
    for (const int id : {ID_mnu_txtcut, ID_mnu_txtcopy, ID_mnu_txtdelete})
        menus_->setEnabled(id, commands.text.hasSelection());
    menus_->setEnabled(ID_mnu_txtundo, SendMessageW(control, EM_CANUNDO, 0, 0) != 0);
    for (const int id : {ID_mnu_txtpaste, ID_mnu_txtpastego})
        menus_->setEnabled(id, platform::clipboardHasText());
    for (const int id : {ID_mnu_txtjoinlines, ID_mnu_txtcomplines})
        menus_->setEnabled(id, !text_.selection().empty());
}

// Paste by key or by whoever sends the message; what is pasted gets the box's own line ends.
void frmMain::pasteInto(HWND box)
{
    gate_.run([&](const Turn& turn) {
        target_ = boxOf(box).value_or(target_);
        commands_(turn).text.setTarget(target_);
        commands_(turn).text.paste();
    });
}

// The user has paused. While another command runs the search waits.
void frmMain::searchDue()
{
    pause_.cancel();
    gate_.runOrWait(
        Waiting::Search, [this](const Turn& turn) { commands_(turn).boxes.searchInstantly(keyIsWaiting); });
}

} // namespace vellums::ui
