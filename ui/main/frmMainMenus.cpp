// What the menus and the tool items do.
#include "ui/main/frmMain.h"

#include "app/start/settings.h"
#include "platform/files.h"
#include "ui/ids.h"
#include "ui/main/menuTable.h"
#include "ui/windows/menuKeyWatch.h"
#include "ui/windows/modLstRclick.h"

#include <algorithm>
#include <utility>

namespace vellums::ui {
namespace {

constexpr int kMostFields = 256;
constexpr int kMostTables = 2000;

} // namespace

void frmMain::prepareMenus()
{
    prepareTextMenus();
    mnu_SortOnTitle_.attach(*menus_, ID_mnu_SortOnTitle);
    mnu_ezdel_.attach(*menus_, ID_mnu_ezdel);
    mnu_switchto_.attach(*menus_, ID_mnu_switchto);
    mnu_moverec_.attach(*menus_, ID_mnu_moverec);
    mnu_AvailFields_.attach(menus_->popUpOf(ID_mnu_soPopUp), ID_mnu_AvailFields, kMostFields,
        MenuArray::Captions::Marked, ID_mnu_SortOnTitle);
    mnu_availdb_.attach(
        menus_->popUpOf(ID_mnu_switchto), ID_mnu_availdb, kMostTables, MenuArray::Captions::Names);
    mnu_avtables_.attach(
        menus_->popUpOf(ID_mnu_moverec), ID_mnu_avtables, kMostTables, MenuArray::Captions::Names);
    menus_->setChecked(ID_mnu_chkwrap, true);
    mnu_SortOnTitle_.setChecked(readSetting(notebook_.settingsFile, kSortOnTitleSetting));
}

bool frmMain::onCommand(int id, int notification)
{
    switch (id) {
    case ID_lstHeads:
        if (notification == LBN_SELCHANGE)
            PostMessageW(hwnd_, kHeadingSelected, 0, 0);
        return true;
    case ID_lstInLineSrch:
        if (notification == LBN_SELCHANGE)
            PostMessageW(hwnd_, kResultSelected, 0, 0);
        return true;
    case ID_lstFontNames:
    case ID_lstFontSizes:
        if (notification == LBN_SELCHANGE)
            gate_.run([&](const Turn&) { display_->onListSelection(id); });
        return true;
    case ID_lblDate:
        if (notification == STN_DBLCLK)
            copyDate();
        return true;
    case ID_chkSort:
        if (notification == BN_CLICKED)
            gate_.runOrWait(Waiting::Search, [this](const Turn& turn) { commands_(turn).records.search(); });
        return true;
    case ID_txtKey:
    case ID_txtInline:
    case ID_txtType:
    case ID_txtShowWrap:
    case ID_txtShowNoWrap:
        onBoxNotification(id, notification);
        return true;
    default:
        return perform(id);
    }
}

// A command of a menu or its key. False: there is no command of this id.
bool frmMain::perform(int id)
{
    if (menuEntry(id) == nullptr && arrayCommand(id) == nullptr)
        return false;
    const bool ran = gate_.run([&](const Turn& turn) { carryOut(turn, id); });
    if (!ran && id == ID_mnu_quit)
        close(); // waits
    return true;
}

void frmMain::carryOut(const Turn& turn, int id)
{
    if (const MenuEntry* entry = menuEntry(id); entry != nullptr && entry->handler != nullptr) {
        commands_(turn).text.setTarget(target_);
        entry->handler(commands_(turn));
    } else if (const MenuArrayCommand* array = arrayCommand(id); array != nullptr) {
        array->handler(commands_(turn), static_cast<std::size_t>(id - array->firstId));
    }
}

// Shows a menu and carries out what was chosen, as one command: what the user sees while choosing is what
// the command finds.
void frmMain::popUp(const Turn& turn, HMENU menu, POINT screen)
{
    SetForegroundWindow(hwnd_);
    const int id =
        TrackPopupMenuEx(menu, TPM_RETURNCMD | TPM_RIGHTBUTTON, screen.x, screen.y, hwnd_, nullptr);
    PostMessageW(hwnd_, WM_NULL, 0, 0);
    if (id != 0)
        carryOut(turn, id);
}

// At the label's left edge, just below it.
void frmMain::popUpUnder(const Turn& turn, HWND label, HMENU menu)
{
    RECT rect{};
    GetWindowRect(label, &rect);
    const OwnedMenu copy = menus_->copyOf(menu); // the menu itself may hang on the bar
    popUp(turn, copy.get(), {rect.left, rect.bottom});
}

// Databases and tables to switch to; the menu key leads on to the search options, which have no key of
// their own.
void frmMain::popUpForSearch(const Turn& turn)
{
    const HWND label = lblRemarks_[0].hwnd();
    const MenuKeyWatch watch;
    popUpUnder(turn, label, menus_->popUpOf(ID_mnu_switchto));
    if (watch.wasPressed())
        popUpUnder(turn, label, menus_->popUpOf(ID_mnu_soPopUp));
}

// Selects the entry that the mouse is on, where it is on one.
void frmMain::selectUnderPoint(HWND list, POINT screen) const
{
    ScreenToClient(list, &screen);
    const double perPixel = scale_.twipsPerPixel();
    modLstRclick::selectItemUnderPoint(list, screen.x * perPixel, screen.y * perPixel, perPixel, perPixel);
}

void frmMain::onContextMenu(HWND control, POINT screen)
{
    gate_.run([&](const Turn& turn) {
        if (control == lstInLineSrch_.hwnd())
            showResultsMenu(turn, screen);
        else if (control == lstHeads_.hwnd())
            showHeadsMenu(turn, screen);
    });
}

void frmMain::showHeadsMenu(const Turn& turn, POINT screen)
{
    const HWND list = lstHeads_.hwnd();
    if (screen.x == -1 && screen.y == -1) { // from the keyboard
        RECT rect{};
        SendMessageW(list, LB_GETITEMRECT, static_cast<WPARAM>(std::max(0, lstHeads_.current())),
            reinterpret_cast<LPARAM>(&rect));
        screen = {rect.left, rect.bottom};
        ClientToScreen(list, &screen);
    } else {
        const std::vector<int> before = lstHeads_.selected();
        selectUnderPoint(list, screen);
        if (lstHeads_.selected() != before)
            commands_(turn).records.selectHeading();
    }
    commands_(turn).list.rebuildMenu();
    popUp(turn, menus_->popUpOf(ID_mnu_lstPopUp), screen);
}

void frmMain::showResultsMenu(const Turn& turn, POINT screen)
{
    if (screen.x == -1 && screen.y == -1) {
        screen = {};
        ClientToScreen(lstInLineSrch_.hwnd(), &screen);
    } else {
        selectUnderPoint(lstInLineSrch_.hwnd(), screen);
    }
    menus_->setEnabled(ID_mnu_ilsCopyCmds_One, lstInLineSrch_.current() >= 0);
    popUp(turn, menus_->popUpOf(ID_mnu_ilsPopUp), screen);
}

// Menu-bar entries have no tooltips: the left panel says what they do while they are highlighted.
void frmMain::onMenuSelect(UINT id, UINT flags)
{
    const bool entry = flags != 0xFFFF && (flags & (MF_POPUP | MF_SEPARATOR)) == 0;
    const MenuEntry* const command = entry ? menuEntry(static_cast<int>(id)) : nullptr;
    std::u16string help;
    if (command != nullptr && command->help != nullptr)
        help = notebook_.say(command->help, command->helpChinese);
    if (!help.empty() && !explaining_) {
        textBeforeHelp_ = ucStatusLeft_.Caption();
        explaining_ = true;
    }
    if (!help.empty())
        ucStatusLeft_.setCaption(help);
    else if (std::exchange(explaining_, false))
        ucStatusLeft_.setCaption(textBeforeHelp_);
}

void frmMain::toggleWrap()
{
    const bool wraps = !text_.wraps();
    text_.setWraps(wraps, true);
    menus_->setChecked(ID_mnu_chkwrap, wraps);
    menus_->setCaption(ID_mnu_top_Wrap, wraps ? u"Z" : u"Ξ");
}

void frmMain::toggleOnTop()
{
    const bool onTop = !menus_->isChecked(ID_mnu_ontop);
    menus_->setChecked(ID_mnu_ontop, onTop);
    SetWindowPos(hwnd_, onTop ? HWND_TOPMOST : HWND_NOTOPMOST, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE);
}

// The tool item "O" is there while the link names a file.
void frmMain::onSourceChanged()
{
    const std::u16string link = work_.link().text();
    menus_->showSourceItem(!link.empty() && platform::fileExists(link));
}

// Where the right panel was clicked, when it shows the link of a file.
void frmMain::showSourceMenu(int x, int y)
{
    const std::u16string link = work_.link().text();
    if (link.empty() || !platform::fileExists(link))
        return;
    POINT at{x, y};
    ClientToScreen(ucStatusRight_.hwnd(), &at);
    gate_.run([&](const Turn& turn) { popUp(turn, menus_->popUpOf(ID_mnu_srcPopUp), at); });
}

void frmMain::chooseSize(std::size_t index)
{
    display_->clickmnusizes(ID_mnu_sizes_First - ID_mnu_sizes + static_cast<int>(index));
}

} // namespace vellums::ui
