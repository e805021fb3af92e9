// What the menus and the tool items do.
#include "ui/frmMain.h"

#include "app/settings.h"
#include "platform/files.h"
#include "search/searchFields.h"
#include "ui/ids.h"
#include "ui/wide.h"

namespace vellums::ui {
namespace {

constexpr std::size_t kMostFields = 256;

// Shows a menu of its own and gives the chosen id; 0: none.
int popUp(HWND owner, HMENU menu, POINT at)
{
    SetForegroundWindow(owner);
    const int id = TrackPopupMenuEx(menu, TPM_RETURNCMD | TPM_RIGHTBUTTON, at.x, at.y, owner, nullptr);
    PostMessageW(owner, WM_NULL, 0, 0);
    return id;
}

} // namespace

bool frmMain::onMenuCommand(int id)
{
    if (importing_ && id != ID_mnu_quit) // commands wait until the import is done
        return true;
    switch (id) {
    case ID_mnu_Paste:
        commands_->capture();
        return true;
    case ID_mnu_srchfield:
        txtKey_.focus();
        txtKey_.selectAll();
        return true;
    case ID_mnu_import:
        importFolder();
        return true;
    case ID_mnu_ezdel:
        mnu_ezdel_.setChecked(!mnu_ezdel_.checked());
        return true;
    case ID_mnu_quit:
        PostMessageW(hwnd_, WM_CLOSE, 0, 0);
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
    case ID_mnu_SortOnTitle:
        toggleSortOnTitle();
        return true;
    default:
        if (id < ID_mnu_AvailFields ||
            static_cast<std::size_t>(id - ID_mnu_AvailFields) >= mnu_AvailFields_.size())
            return false;
        toggleSearchField(ports_, static_cast<std::size_t>(id - ID_mnu_AvailFields));
        return true;
    }
}

void frmMain::onContextMenu(HWND control, POINT screen)
{
    const bool byKeyboard = screen.x == -1 && screen.y == -1;
    if (control == lstHeads_.hwnd()) {
        if (byKeyboard) {
            RECT rect{};
            SendMessageW(control, LB_GETITEMRECT, static_cast<WPARAM>(std::max(0, lstHeads_.current())),
                reinterpret_cast<LPARAM>(&rect));
            screen = {rect.left, rect.bottom};
            ClientToScreen(control, &screen);
        } else if (const int entry = lstHeads_.entryAt(screen); entry >= 0) {
            if (SendMessageW(control, LB_GETSEL, static_cast<WPARAM>(entry), 0) <= 0) {
                lstHeads_.select(entry);
                commands_->selectHeading();
            }
        }
        const OwnedMenu menu = buildListPopup(notebook_.chinese);
        onMenuCommand(popUp(hwnd_, menu.get(), screen));
    } else if (control == lblRemarks_.hwnd()) {
        showSearchOptions();
    }
}

void frmMain::showSearchOptions()
{
    const OwnedMenu menu(CreatePopupMenu());
    for (std::size_t i = 0; i < mnu_AvailFields_.size() && i < kMostFields; ++i) {
        const MenuItem& item = mnu_AvailFields_.at(i);
        if (item.visible)
            AppendMenuW(menu.get(), static_cast<UINT>(item.checked ? MF_CHECKED : MF_UNCHECKED),
                ID_mnu_AvailFields + i, wide(item.caption));
    }
    AppendMenuW(menu.get(), static_cast<UINT>(mnu_SortOnTitle_.checked() ? MF_CHECKED : MF_UNCHECKED),
        ID_mnu_SortOnTitle, wide(notebook_.say(u"Order by &Title", u"标题排序")));
    RECT label{};
    GetWindowRect(lblRemarks_.hwnd(), &label);
    onMenuCommand(popUp(hwnd_, menu.get(), {label.left, label.bottom}));
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

void frmMain::toggleSortOnTitle()
{
    mnu_SortOnTitle_.setChecked(!mnu_SortOnTitle_.checked());
    setPrefValue(
        notebook_.settingsFile, kOptionsSection, u"obTitle", mnu_SortOnTitle_.checked() ? u"1" : u"0");
    commands_->search();
}

} // namespace vellums::ui
