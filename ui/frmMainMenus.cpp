// What the menus and the tool items do.
#include "ui/frmMain.h"

#include "app/settings.h"
#include "platform/files.h"
#include "search/searchFields.h"
#include "ui/ids.h"
#include "ui/menuTable.h"
#include "ui/modLstRclick.h"
#include "ui/wide.h"

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
    mnu_SortOnTitle_.setChecked(
        getPrefValue(notebook_.settingsFile, kOptionsSection, u"obTitle", u"") == u"1");
}

bool frmMain::onMenuCommand(int id)
{
    if (importing_ && id != ID_mnu_quit) // commands wait until the import is done
        return true;
    return onViewCommand(id) || onRecordCommand(id) || onTableCommand(id) || onTextCommand(id) ||
        onPopUpCommand(id) || onArrayCommand(id);
}

bool frmMain::onViewCommand(int id)
{
    switch (id) {
    case ID_mnu_chkwrap:
    case ID_mnu_top + 8:
        toggleWrap();
        return true;
    case ID_mnu_hidelst:
    case ID_mnu_top + 9:
        showList(!listShown_);
        return true;
    case ID_mnu_ezdel:
        mnu_ezdel_.setChecked(!mnu_ezdel_.checked());
        return true;
    case ID_mnu_ontop:
        toggleOnTop();
        return true;
    case ID_mnu_quit:
        PostMessageW(hwnd_, WM_CLOSE, 0, 0);
        return true;
    default:
        return false;
    }
}

bool frmMain::onRecordCommand(int id)
{
    switch (id) {
    case ID_mnu_Paste:
        commands_->capture();
        return true;
    case ID_mnu_import:
        importFolder();
        return true;
    case ID_mnu_remdups:
        removeDuplicates();
        return true;
    case ID_mnu_sqlman + 0:
    case ID_mnu_top + 0:
        commands_->pasteNew();
        return true;
    case ID_mnu_sqlman + 1:
    case ID_mnu_top + 1:
        commands_->duplicate();
        return true;
    case ID_mnu_sqlman + 2:
    case ID_mnu_top + 2:
    case ID_mnu_lpu_delete:
        commands_->deleteSelected();
        return true;
    case ID_mnu_sqlman + 3:
    case ID_mnu_top + 3:
        commands_->save();
        return true;
    case ID_mnu_sqlman + 5:
    case ID_mnu_top + 7:
        commands_->reload();
        return true;
    default:
        return false;
    }
}

bool frmMain::onTableCommand(int id)
{
    switch (id) {
    case ID_mnu_dbcreate:
        tables_->newDatabase();
        return true;
    case ID_mnu_dbops + 0:
        tables_->newTable();
        return true;
    case ID_mnu_dbops + 1:
        tables_->renameTable();
        return true;
    case ID_mnu_dbops + 2:
        tables_->dropTable();
        return true;
    case ID_mnu_shrinkdata:
        compactData();
        return true;
    case ID_mnu_setsticky:
        list_->stick();
        return true;
    case ID_mnu_nosticky:
        list_->unstick();
        return true;
    default:
        return false;
    }
}

// Entries of the arrays.
bool frmMain::onArrayCommand(int id)
{
    if (mnu_AvailFields_.owns(id))
        toggleSearchField(ports_, static_cast<std::size_t>(id - ID_mnu_AvailFields));
    else if (mnu_availdb_.owns(id))
        tables_->switchTo(static_cast<std::size_t>(id - ID_mnu_availdb));
    else if (mnu_avtables_.owns(id))
        list_->moveTo(static_cast<std::size_t>(id - ID_mnu_avtables));
    else if (mnu_RegExChar_.owns(id))
        textCommands_->insertPattern(mnu_RegExChar_.at(static_cast<std::size_t>(id - ID_mnu_RegExChar)).tag);
    else if (id >= ID_mnu_fonts && id < ID_mnu_RegExChar)
        display_->chooseFont(id - ID_mnu_fonts);
    else if (id >= ID_mnu_sizes && id < ID_mnu_fonts)
        display_->clickmnusizes(id - ID_mnu_sizes);
    else
        return false;
    return true;
}

// Shows a menu and carries out what was chosen.
int frmMain::popUp(HMENU menu, POINT screen)
{
    SetForegroundWindow(hwnd_);
    const int id =
        TrackPopupMenuEx(menu, TPM_RETURNCMD | TPM_RIGHTBUTTON, screen.x, screen.y, hwnd_, nullptr);
    PostMessageW(hwnd_, WM_NULL, 0, 0);
    if (id != 0)
        onMenuCommand(id);
    return id;
}

// At the label's left edge, just below it.
void frmMain::popUpUnder(HWND label, HMENU menu)
{
    RECT rect{};
    GetWindowRect(label, &rect);
    const OwnedMenu copy = menus_->copyOf(menu); // the menu itself may hang on the bar
    popUp(copy.get(), {rect.left, rect.bottom});
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
    if (control == lstInLineSrch_.hwnd())
        showResultsMenu(screen);
    if (control != lstHeads_.hwnd())
        return;
    if (screen.x == -1 && screen.y == -1) { // from the keyboard
        RECT rect{};
        SendMessageW(control, LB_GETITEMRECT, static_cast<WPARAM>(std::max(0, lstHeads_.current())),
            reinterpret_cast<LPARAM>(&rect));
        screen = {rect.left, rect.bottom};
        ClientToScreen(control, &screen);
    } else {
        const std::vector<int> before = lstHeads_.selected();
        selectUnderPoint(control, screen);
        if (lstHeads_.selected() != before && !importing_)
            commands_->selectHeading();
    }
    list_->rebuildMenu();
    popUp(menus_->popUpOf(ID_mnu_lstPopUp), screen);
}

// Menu-bar entries have no tooltips: the left panel says what they do while they are highlighted.
void frmMain::onMenuSelect(UINT id, UINT flags)
{
    const bool entry = flags != 0xFFFF && (flags & (MF_POPUP | MF_SEPARATOR)) == 0;
    const std::u16string help =
        entry ? commandHelp(static_cast<int>(id), notebook_.chinese) : std::u16string();
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
    const bool wraps = !menus_->isChecked(ID_mnu_chkwrap);
    menus_->setChecked(ID_mnu_chkwrap, wraps);
    menus_->setCaption(ID_mnu_top + 8, wraps ? u"Z" : u"Ξ");
    text_.setWraps(wraps, true);
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
    const std::u16string link = ucStatusRight_.Caption();
    menus_->showSourceItem(!link.empty() && platform::fileExists(link));
}

// Where the right panel was clicked, when it shows the link of a file.
void frmMain::showSourceMenu(int x, int y)
{
    const std::u16string link = ucStatusRight_.Caption();
    if (link.empty() || !platform::fileExists(link))
        return;
    POINT at{x, y};
    ClientToScreen(ucStatusRight_.hwnd(), &at);
    popUp(menus_->popUpOf(ID_mnu_srcPopUp), at);
}

} // namespace vellums::ui
