#include "ui/menuTable.h"

#include "ui/ids.h"
#include "ui/wide.h"

namespace vellums::ui {
namespace {

constexpr BYTE kCtrl = FCONTROL;
constexpr MenuEntry kLine = {nullptr, nullptr, 0};

// clang-format off
constexpr MenuEntry kHomeMenu[] = {
    // English           Chinese                id                 key   modifiers
    {u"&Paste New",      u"从剪贴板新增",       ID_mnu_Paste,      VK_F5},
    {u"&New Search",     u"搜索(&R)",           ID_mnu_srchfield,  'G',  kCtrl},
    kLine,
    {u"I&mport ...",     u"导入(&I)",           ID_mnu_import,     'O',  kCtrl},
    kLine,
    {u"Eas&y Delete",    u"快速删除(&Y)",       ID_mnu_ezdel},
    kLine,
    {u"E&xit",           u"退出(&X)",           ID_mnu_quit},
};
constexpr MenuEntry kToolsMenu[] = {
    {u"Remove D&uplicates", u"清除重复项(&U)",  ID_mnu_remdups},
};
constexpr MenuEntry kDataMenu[] = {
    {u"&Insert",         u"插入记录(&I)",       ID_mnu_sqlman + 0, 'N',  kCtrl},
    {u"D&uplicate",      u"创建副本(&M)",       ID_mnu_sqlman + 1, 'M',  kCtrl},
    {u"&Delete",         u"删除记录(&D)",       ID_mnu_sqlman + 2, 'D',  kCtrl},
    {u"&Save",           u"保存记录(&S)",       ID_mnu_sqlman + 3, 'S',  kCtrl},
    kLine,
    {u"&Refresh",        u"刷新(&R)",           ID_mnu_sqlman + 5, 'R',  kCtrl},
};
// Both captions of Delete stay as they are: each language shows the key its users press.
constexpr MenuEntry kListPopup[] = {
    {u"&Delete\tDel",    u"删除(&D)\tCtrl+D",   ID_mnu_lpu_delete},
};
constexpr MenuEntry kToolItems[] = {
    {u"+",               nullptr,               ID_mnu_top + 0},
    {u"#",               nullptr,               ID_mnu_top + 1},
    {u"x",               nullptr,               ID_mnu_top + 2},
    {u"=",               nullptr,               ID_mnu_top + 3},
    {u"@",               nullptr,               ID_mnu_top + 7},
};
constexpr MenuGroup kTools = {u"&Tools", u"维护(&T)", kToolsMenu};
constexpr MenuGroup kBar[] = {
    {u"&Home",           u"开始(&S)",           kHomeMenu},
    {u"&Data",           u"数据(&D)",           kDataMenu, &kTools},
};

struct Help {
    int id;
    const char16_t* english;
    const char16_t* chinese;
};
constexpr Help kHelp[] = {
    {ID_mnu_top + 0,     u"Paste New",          u"新增 (剪贴板优先)"},
    {ID_mnu_top + 1,     u"Duplicate",          u"创建副本"},
    {ID_mnu_top + 2,     u"Delete",             u"删除"},
    {ID_mnu_top + 3,     u"Save",               u"保存"},
    {ID_mnu_top + 7,     u"Reload",             u"刷新"},
};
// clang-format on

const char16_t* captionOf(const char16_t* english, const char16_t* chineseText, bool chinese)
{
    return chinese && chineseText != nullptr ? chineseText : english;
}

std::u16string keyName(const MenuEntry& entry)
{
    std::u16string name = (entry.modifiers & FCONTROL) != 0 ? u"Ctrl+" : u"";
    if (entry.key >= VK_F1 && entry.key <= VK_F9)
        return name + u"F" + static_cast<char16_t>(u'1' + (entry.key - VK_F1));
    return name + static_cast<char16_t>(entry.key);
}

void appendEntries(HMENU menu, std::span<const MenuEntry> entries, bool chinese)
{
    for (const MenuEntry& entry : entries) {
        if (entry.id == 0) {
            AppendMenuW(menu, MF_SEPARATOR, 0, nullptr);
            continue;
        }
        std::u16string caption = captionOf(entry.english, entry.chinese, chinese);
        if (entry.key != 0)
            caption += u"\t" + keyName(entry);
        AppendMenuW(menu, MF_STRING, static_cast<UINT_PTR>(entry.id), wide(caption));
    }
}

void appendGroup(HMENU parent, const MenuGroup& group, bool chinese)
{
    OwnedMenu menu(CreatePopupMenu());
    if (group.submenu != nullptr) {
        appendGroup(menu.get(), *group.submenu, chinese);
        AppendMenuW(menu.get(), MF_SEPARATOR, 0, nullptr);
    }
    appendEntries(menu.get(), group.entries, chinese);
    AppendMenuW(parent, MF_POPUP, reinterpret_cast<UINT_PTR>(menu.release()),
        wide(captionOf(group.english, group.chinese, chinese)));
}

void collectKeys(std::vector<ACCEL>& keys, std::span<const MenuEntry> entries)
{
    for (const MenuEntry& entry : entries)
        if (entry.key != 0)
            keys.push_back(
                {static_cast<BYTE>(FVIRTKEY | entry.modifiers), entry.key, static_cast<WORD>(entry.id)});
}

} // namespace

OwnedMenu buildMenuBar(bool chinese)
{
    OwnedMenu bar(CreateMenu());
    for (const MenuGroup& group : kBar)
        appendGroup(bar.get(), group, chinese);
    appendEntries(bar.get(), kToolItems, chinese);
    return bar;
}

OwnedMenu buildListPopup(bool chinese)
{
    OwnedMenu menu(CreatePopupMenu());
    appendEntries(menu.get(), kListPopup, chinese);
    return menu;
}

OwnedAccelerators buildAccelerators()
{
    std::vector<ACCEL> keys;
    for (const MenuGroup& group : kBar)
        collectKeys(keys, group.entries);
    return OwnedAccelerators(CreateAcceleratorTableW(keys.data(), static_cast<int>(keys.size())));
}

std::u16string commandHelp(int id, bool chinese)
{
    for (const Help& help : kHelp)
        if (help.id == id)
            return captionOf(help.english, help.chinese, chinese);
    return {};
}

} // namespace vellums::ui
