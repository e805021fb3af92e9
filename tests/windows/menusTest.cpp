// The menus as the window holds them.
#include "ui/main/menus.h"

#include "ui/ids.h"
#include "ui/main/menuTable.h"

#include <gtest/gtest.h>
#include <set>

namespace vellums::ui {
namespace {

std::vector<std::u16string> captionsOf(HMENU menu)
{
    std::vector<std::u16string> captions;
    for (int i = 0; i < GetMenuItemCount(menu); ++i) {
        wchar_t text[100] = {};
        GetMenuStringW(menu, static_cast<UINT>(i), text, 100, MF_BYPOSITION);
        captions.emplace_back(text, text + wcslen(text));
    }
    return captions;
}

void collect(std::span<const MenuEntry> entries, std::vector<const MenuEntry*>& all)
{
    for (const MenuEntry& entry : entries) {
        all.push_back(&entry);
        collect(entry.entries, all);
    }
}

TEST(Menus, EveryIdAndEveryKeyBelongsToOneEntry)
{
    std::vector<const MenuEntry*> all;
    collect(menuBarEntries(), all);
    collect(contextMenuEntries(), all);
    std::set<int> ids;
    std::set<std::pair<WORD, BYTE>> keys;
    for (const MenuEntry* entry : all) {
        if (entry->id != 0) {
            EXPECT_TRUE(ids.insert(entry->id).second) << entry->id;
        }
        if (entry->key != 0) {
            EXPECT_TRUE(keys.insert({entry->key, entry->modifiers}).second) << entry->id;
        }
    }
    EXPECT_EQ(keys.size(), 29u);
}

TEST(Menus, CaptionsFollowTheLanguage)
{
    Menus english(false);
    Menus chinese(true);
    EXPECT_EQ(english.caption(ID_mnu_txtpastego1), u"Paste && &Go");
    EXPECT_EQ(chinese.caption(ID_mnu_txtpastego1), u"粘贴并转到(&G)");
    EXPECT_EQ(english.caption(ID_mnu_lpu_delete), u"&Delete\tDel");
    EXPECT_EQ(chinese.caption(ID_mnu_lpu_delete), u"删除(&D)\tCtrl+D");
    EXPECT_EQ(chinese.caption(ID_mnu_lstNotepad2), u"&Notepad2");
    EXPECT_EQ(english.caption(ID_mnu_dbops), u"&Create Table ...\tCtrl+Ins");
    EXPECT_EQ(chinese.caption(ID_mnu_find + 1), u"上一个\tShift+F3");
    EXPECT_EQ(chinese.caption(ID_mnu_toolsentry), u"维护(&T)");
    for (const int never : {ID_mnu_delvisible, ID_mnu_lstImport, ID_mnu_top + 4})
        EXPECT_EQ(english.caption(never), u"") << never;
    EXPECT_EQ(captionsOf(english.popUpOf(ID_mnu_toolsentry)),
        (std::vector<std::u16string>{
            u"Remove D&uplicates", u"Fi&x Errors", u"Trim &Titles", u"Co&mpact Data"}));
}

TEST(Menus, TheSourceItemComesAndGoesInItsPlace)
{
    Menus menus(false);
    const HMENU bar = menus.takeBar();
    const auto before = captionsOf(bar);
    menus.showSourceItem(true);
    menus.showSourceItem(true);
    auto with = before;
    with.insert(with.end() - 3, u"O");
    EXPECT_EQ(captionsOf(bar), with);
    menus.showSourceItem(false);
    EXPECT_EQ(captionsOf(bar), before);
    DestroyMenu(bar);
}

TEST(MenuArray, ShowsWhatIsVisibleInOrder)
{
    const OwnedMenu menu(CreatePopupMenu());
    AppendMenuW(menu.get(), MF_STRING, 7, L"behind");
    MenuArray array;
    array.attach(menu.get(), 100, 4, MenuArray::Captions::Names, 7);
    array.set(0, {u"first", u"", false, true});
    array.set(2, {u"A & B", u"", false, true});
    array.set(1, {u"second", u"", true, false});
    array.set(9, {u"too many", u"", false, true});
    EXPECT_EQ(captionsOf(menu.get()), (std::vector<std::u16string>{u"first", u"A && B", u"behind"}));
    array.set(1, {u"second", u"", true, true});
    EXPECT_EQ(
        captionsOf(menu.get()), (std::vector<std::u16string>{u"first", u"second", u"A && B", u"behind"}));
    EXPECT_NE(GetMenuState(menu.get(), 101, MF_BYCOMMAND) & MF_CHECKED, 0u);
    array.checkOnly(2);
    EXPECT_EQ(GetMenuState(menu.get(), 101, MF_BYCOMMAND) & MF_CHECKED, 0u);
    EXPECT_NE(GetMenuState(menu.get(), 102, MF_BYCOMMAND) & MF_CHECKED, 0u);
    EXPECT_TRUE(array.owns(100));
    EXPECT_FALSE(array.owns(103));
}

} // namespace
} // namespace vellums::ui
