// Windows finds an entry by its id in a menu and all below it, but not in the bar and the context menus at
// once; homes_ knows for each id the menu in which it stands, and whoever changes an entry need not know. An
// entry that opens a menu gets an id as well, which AppendMenu cannot give, and can then be made grey like
// any other.
//
// A MenuArray keeps all its items and has only the visible ones in the menu. An item's id is the base and its
// index, whatever is visible before it, so a command needs no translation; its place is before the next
// visible item, or before the entry that follows the array.
#include "ui/main/menus.h"

#include "text/pieces.h"
#include "ui/ids.h"
#include "ui/main/menuTable.h"
#include "ui/windows/wide.h"

#include <span>

namespace vellums::ui {
namespace {

constexpr int kColumnAfter = 30; // entries of a long array, before the next column begins

std::u16string captionIn(HMENU menu, UINT id)
{
    const int length = GetMenuStringW(menu, id, nullptr, 0, MF_BYCOMMAND);
    std::u16string caption(static_cast<std::size_t>(length > 0 ? length : 0), u'\0');
    if (length > 0)
        GetMenuStringW(menu, id, reinterpret_cast<wchar_t*>(caption.data()), length + 1, MF_BYCOMMAND);
    return caption;
}

void insertEntry(HMENU menu, int beforeId, const MenuItem& item, int id, bool newColumn)
{
    MENUITEMINFOW info{};
    info.cbSize = sizeof info;
    info.fMask = MIIM_STRING | MIIM_ID | MIIM_STATE | MIIM_FTYPE;
    info.fType = newColumn ? MFT_MENUBARBREAK : MFT_STRING;
    info.fState = static_cast<UINT>(
        (item.checked ? MFS_CHECKED : MFS_UNCHECKED) | (item.enabled ? MFS_ENABLED : MFS_GRAYED));
    info.wID = static_cast<UINT>(id);
    info.dwTypeData = const_cast<wchar_t*>(wide(item.caption));
    InsertMenuItemW(
        menu, beforeId != 0 ? static_cast<UINT>(beforeId) : static_cast<UINT>(-1), beforeId == 0, &info);
}

void collectKeys(std::vector<ACCEL>& keys, std::span<const MenuEntry> entries)
{
    for (const MenuEntry& entry : entries) {
        if (entry.key != 0 && !entry.isNotYetThere())
            keys.push_back(
                {static_cast<BYTE>(FVIRTKEY | entry.modifiers), entry.key, static_cast<WORD>(entry.id)});
        collectKeys(keys, entry.entries);
    }
}

} // namespace

Menus::Menus(bool chinese)
    : bar_(CreateMenu())
    , barHandle_(bar_.get())
{
    for (const MenuEntry& entry : menuBarEntries())
        append(barHandle_, entry, chinese);
    for (const MenuEntry& entry : contextMenuEntries()) {
        OwnedMenu menu(CreatePopupMenu());
        popUps_[entry.id] = menu.get();
        for (const MenuEntry& inner : entry.entries)
            append(menu.get(), inner, chinese);
        contexts_.push_back(std::move(menu));
    }
}

void Menus::append(HMENU menu, const MenuEntry& entry, bool chinese)
{
    if (entry.shown != MenuEntry::Shown::Yes)
        return;
    if (entry.id != 0)
        homes_[entry.id] = menu;
    if (entry.isLine()) {
        AppendMenuW(menu, MF_SEPARATOR, static_cast<UINT_PTR>(entry.id), nullptr);
        return;
    }
    const std::u16string caption = shownCaption(entry, chinese);
    if (!entry.isMenu) {
        AppendMenuW(menu, MF_STRING | (entry.isNotYetThere() ? MF_GRAYED : MF_ENABLED),
            static_cast<UINT_PTR>(entry.id), wide(caption));
        return;
    }
    OwnedMenu below(CreatePopupMenu());
    for (const MenuEntry& inner : entry.entries)
        append(below.get(), inner, chinese);
    popUps_[entry.id] = below.get();
    MENUITEMINFOW info{};
    info.cbSize = sizeof info;
    info.fMask = MIIM_STRING | MIIM_ID | MIIM_SUBMENU;
    info.wID = static_cast<UINT>(entry.id);
    info.hSubMenu = below.release();
    info.dwTypeData = const_cast<wchar_t*>(wide(caption));
    InsertMenuItemW(menu, static_cast<UINT>(GetMenuItemCount(menu)), TRUE, &info);
}

HMENU Menus::popUpOf(int id) const
{
    const auto found = popUps_.find(id);
    return found == popUps_.end() ? nullptr : found->second;
}

// An entry of the bar is drawn by its window, which has to be told.
void Menus::redrawIfBar(HMENU menu) const
{
    if (menu == barHandle_ && window_ != nullptr)
        DrawMenuBar(window_);
}

void Menus::showSourceItem(bool shown)
{
    constexpr int kSourceItem = ID_mnu_top_Source;
    if (shown == (homes_.count(kSourceItem) != 0))
        return;
    if (shown) {
        homes_[kSourceItem] = barHandle_;
        insertEntry(barHandle_, ID_mnu_fontfaces, {u"O", u"", false, true}, kSourceItem, false);
        setEnabled(kSourceItem, !menuEntry(kSourceItem)->isNotYetThere());
    } else {
        DeleteMenu(barHandle_, kSourceItem, MF_BYCOMMAND);
        homes_.erase(kSourceItem);
    }
    redrawIfBar(barHandle_);
}

void Menus::setCaption(int id, const std::u16string& caption)
{
    const auto home = homes_.find(id);
    if (home == homes_.end())
        return;
    MENUITEMINFOW info{};
    info.cbSize = sizeof info;
    info.fMask = MIIM_STRING;
    info.dwTypeData = const_cast<wchar_t*>(wide(caption));
    SetMenuItemInfoW(home->second, static_cast<UINT>(id), FALSE, &info);
    redrawIfBar(home->second);
}

std::u16string Menus::caption(int id) const
{
    const auto home = homes_.find(id);
    return home == homes_.end() ? std::u16string() : captionIn(home->second, static_cast<UINT>(id));
}

void Menus::setChecked(int id, bool checked)
{
    if (const auto home = homes_.find(id); home != homes_.end())
        CheckMenuItem(home->second, static_cast<UINT>(id),
            static_cast<UINT>(MF_BYCOMMAND | (checked ? MF_CHECKED : MF_UNCHECKED)));
}

bool Menus::isChecked(int id) const
{
    const auto home = homes_.find(id);
    return home != homes_.end() &&
        (GetMenuState(home->second, static_cast<UINT>(id), MF_BYCOMMAND) & MF_CHECKED) != 0;
}

void Menus::setEnabled(int id, bool enabled)
{
    const auto home = homes_.find(id);
    if (home == homes_.end())
        return;
    MENUITEMINFOW info{}; // reaches entries with a submenu, too
    info.cbSize = sizeof info;
    info.fMask = MIIM_STATE;
    GetMenuItemInfoW(home->second, static_cast<UINT>(id), FALSE, &info);
    info.fState &= ~static_cast<UINT>(MFS_GRAYED);
    if (!enabled)
        info.fState |= MFS_GRAYED;
    SetMenuItemInfoW(home->second, static_cast<UINT>(id), FALSE, &info);
    redrawIfBar(home->second);
}

bool Menus::isEnabled(int id) const
{
    const auto home = homes_.find(id);
    if (home == homes_.end())
        return false;
    MENUITEMINFOW info{};
    info.cbSize = sizeof info;
    info.fMask = MIIM_STATE;
    GetMenuItemInfoW(home->second, static_cast<UINT>(id), FALSE, &info);
    return (info.fState & MFS_GRAYED) == 0;
}

OwnedMenu Menus::copyOf(HMENU menu) const
{
    OwnedMenu copy(CreatePopupMenu());
    for (int i = 0; i < GetMenuItemCount(menu); ++i) {
        std::u16string caption(
            static_cast<std::size_t>(GetMenuStringW(menu, static_cast<UINT>(i), nullptr, 0, MF_BYPOSITION)) +
                1,
            u'\0');
        MENUITEMINFOW info{};
        info.cbSize = sizeof info;
        info.fMask = MIIM_STRING | MIIM_ID | MIIM_STATE | MIIM_FTYPE;
        info.dwTypeData = reinterpret_cast<wchar_t*>(caption.data());
        info.cch = static_cast<UINT>(caption.size());
        if (GetMenuItemInfoW(menu, static_cast<UINT>(i), TRUE, &info))
            InsertMenuItemW(copy.get(), static_cast<UINT>(i), TRUE, &info);
    }
    return copy;
}

void MenuArray::attach(HMENU menu, int baseId, int mostEntries, Captions captions, int beforeId)
{
    captions_ = captions;
    menu_ = menu;
    baseId_ = baseId;
    mostEntries_ = mostEntries;
    beforeId_ = beforeId;
}

void MenuArray::set(std::size_t index, const MenuItem& item)
{
    if (index >= static_cast<std::size_t>(mostEntries_))
        return;
    if (index >= items_.size())
        items_.resize(index + 1);
    items_[index] = item;
    show(index);
}

// Puts the entry where it belongs among those of the array that are visible.
void MenuArray::show(std::size_t index)
{
    // Taken out and put in anew: a caption, a mark and a place change together.
    DeleteMenu(menu_, static_cast<UINT>(baseId_) + static_cast<UINT>(index), MF_BYCOMMAND);
    if (!items_[index].visible)
        return;
    int before = beforeId_;
    for (std::size_t later = index + 1; later < items_.size(); ++later)
        if (items_[later].visible) {
            before = baseId_ + static_cast<int>(later);
            break;
        }
    MenuItem shown = items_[index];
    if (captions_ == Captions::Names)
        shown.caption = text::replaceAll(shown.caption, u"&", u"&&");
    insertEntry(
        menu_, before, shown, baseId_ + static_cast<int>(index), index != 0 && index % kColumnAfter == 0);
}

void MenuArray::checkOnly(std::size_t index)
{
    for (std::size_t i = 0; i < items_.size(); ++i) {
        items_[i].checked = i == index;
        CheckMenuItem(menu_, static_cast<UINT>(baseId_) + static_cast<UINT>(i),
            static_cast<UINT>(MF_BYCOMMAND | (items_[i].checked ? MF_CHECKED : MF_UNCHECKED)));
    }
}

OwnedAccelerators buildAccelerators()
{
    std::vector<ACCEL> keys;
    collectKeys(keys, menuBarEntries());
    collectKeys(keys, contextMenuEntries());
    return OwnedAccelerators(CreateAcceleratorTableW(keys.data(), static_cast<int>(keys.size())));
}

} // namespace vellums::ui
