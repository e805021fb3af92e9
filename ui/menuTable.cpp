#include "ui/menuTable.h"

#include "ui/ids.h"

#include <algorithm>
#include <iterator>

namespace vellums::ui {
namespace {

constexpr BYTE kCtrl = FCONTROL;
constexpr BYTE kShift = FSHIFT;
constexpr MenuEntry kLine = {nullptr, nullptr, 0};

template <std::size_t Count>
constexpr MenuEntry menuOf(
    const char16_t* english, const char16_t* chinese, int id, const MenuEntry (&entries)[Count])
{
    return {english, chinese, id, 0, 0, entries, Count, true};
}

// A submenu whose entries come while the program runs.
constexpr MenuEntry emptyMenu(const char16_t* english, const char16_t* chinese, int id)
{
    return {english, chinese, id, 0, 0, nullptr, 0, true};
}

// clang-format off
constexpr MenuEntry kHomeMenu[] = {
    // English              Chinese                     id                  key      modifiers
    {u"&Paste New",         u"从剪贴板新增",            ID_mnu_Paste,       VK_F5},
    {u"&New Search",        u"搜索(&R)",                ID_mnu_srchfield,   'G',     kCtrl},
    {u"Paste && &Go",       u"粘贴并转到(&G)",          ID_mnu_txtpastego1, 'B',     kCtrl},
    kLine,
    {u"I&mport ...",        u"导入(&I)",                ID_mnu_import,      'O',     kCtrl},
    {u"&Export ...",        u"导出(&E)",                ID_mnu_export,      VK_F6},
    kLine,
    {u"&Notepad2",          u"记事本打开",              ID_mnu_Print,       'P',     kCtrl},
    {u"View So&urce",       u"查看原文件",              ID_mnu_viewsrc,     VK_F2},
    kLine,
    {u"&Word Wrap",         u"自动换行",                ID_mnu_chkwrap,     'W',     kCtrl},
    {u"&Hide List",         u"隐藏列表(&H)",            ID_mnu_hidelst,     VK_F4},
    {u"Eas&y Delete",       u"快速删除(&Y)",            ID_mnu_ezdel},
    {u"&Top Level",         u"窗体置顶(&T)",            ID_mnu_ontop,       VK_F11,  kCtrl},
    kLine,
    {u"Create Desktop &Link", u"创建桌面快捷方式(&L)",  ID_mnu_desklink},
    kLine,
    {u"&Options...",        u"选项设置(&P) ...",        ID_mnu_options,     VK_F12,  kCtrl},
    kLine,
    {u"E&xit",              u"退出(&X)",                ID_mnu_quit},
};
constexpr MenuEntry kEditMenu[] = {
    {u"Select &All",        u"全选(&A)",                ID_mnu_txtops + 0,  'A',     kCtrl},
    {u"&Clear Text",        u"清除(&C)",                ID_mnu_txtops + 1,  'E',     kCtrl},
    {nullptr,               nullptr,                    ID_mnu_txtops + 2},
    {u"Insert &Date",       u"插入日期",                ID_mnu_txtops + 3,  VK_F5,   kCtrl},
    {u"Switch Case",        u"切换大小写",              ID_mnu_txtops + 4,  'U',     kCtrl},
    {u"&Trim Text",         u"清理文本",                ID_mnu_txtops + 5,  'T',     kCtrl},
    {nullptr,               nullptr,                    ID_mnu_txtops + 6},
    {u"&Find Inline",       u"查找",                    ID_mnu_find + 0,    'F',     kCtrl},
    {u"Find Pre&vious",     u"上一个",                  ID_mnu_find + 1,    VK_F3,   kShift},
    {u"Find &Next",         u"下一个",                  ID_mnu_find + 2,    VK_F3},
};
constexpr MenuEntry kToolsMenu[] = {
    {u"Delete Visib&le",    u"批量删除(&L)",            ID_mnu_delvisible},
    {u"Remove D&uplicates", u"清除重复项(&U)",          ID_mnu_remdups},
    {u"Fi&x Errors",        u"修复错误(&X)",            ID_mnu_fixerrors},
    {u"Trim &Titles",       u"精简标题(&T)",            ID_mnu_trimtitles},
    {u"Co&mpact Data",      u"压缩数据库(&K)",          ID_mnu_shrinkdata},
};
constexpr MenuEntry kDataMenu[] = {
    {u"New Data&base",      u"新建数据库(&N)",          ID_mnu_dbcreate},
    kLine,
    menuOf(u"&Tools",       u"维护(&T)",                ID_mnu_toolsentry,  kToolsMenu),
    kLine,
    {u"&Create Table ...",  u"创建表(&C) ...",          ID_mnu_dbops + 0,   VK_INSERT, kCtrl},
    {u"Re&name Table ...",  u"重命名(&R) ...",          ID_mnu_dbops + 1},
    {u"&Drop Table ...",    u"删除表(&D) ...",          ID_mnu_dbops + 2},
    kLine,
    emptyMenu(u"S&witch to", u"切换至(&W)",             ID_mnu_switchto),
    kLine,
    {u"&Insert",            u"插入记录(&I)",            ID_mnu_sqlman + 0,  'N',     kCtrl},
    {u"D&uplicate",         u"创建副本(&M)",            ID_mnu_sqlman + 1,  'M',     kCtrl},
    {u"&Delete",            u"删除记录(&D)",            ID_mnu_sqlman + 2,  'D',     kCtrl},
    {u"&Save",              u"保存记录(&S)",            ID_mnu_sqlman + 3,  'S',     kCtrl},
    {nullptr,               nullptr,                    ID_mnu_sqlman + 4},
    {u"&Refresh",           u"刷新(&R)",                ID_mnu_sqlman + 5,  'R',     kCtrl},
};
constexpr MenuEntry kSizesMenu[] = {
    {u"&Smaller",           u"缩小",                    ID_mnu_sizes + 0,   VK_F7},
    {u"&Reset",             u"默认",                    ID_mnu_sizes + 1,   VK_F9},
    {u"&Larger",            u"放大",                    ID_mnu_sizes + 2,   VK_F8},
    {nullptr,               nullptr,                    ID_mnu_sizes + 3},
};
constexpr MenuEntry kBar[] = {
    menuOf(u"&Home",        u"开始(&S)",                ID_mnu_View,        kHomeMenu),
    menuOf(u"&Edit",        u"编辑(&E)",                ID_mnu_edit,        kEditMenu),
    menuOf(u"&Data",        u"数据(&D)",                ID_mnu_dbfPopUp,    kDataMenu),
    {u"+",                  nullptr,                    ID_mnu_top + 0},
    {u"#",                  nullptr,                    ID_mnu_top + 1},
    {u"x",                  nullptr,                    ID_mnu_top + 2},
    {u"=",                  nullptr,                    ID_mnu_top + 3},
    {u"0",                  nullptr,                    ID_mnu_top + 4},
    {u"<",                  nullptr,                    ID_mnu_top + 5},
    {u">",                  nullptr,                    ID_mnu_top + 6},
    {u"@",                  nullptr,                    ID_mnu_top + 7},
    {u"Z",                  nullptr,                    ID_mnu_top + 8},
    {u"||",                 nullptr,                    ID_mnu_top + 9},
    {u"H",                  nullptr,                    ID_mnu_top + 10},
    {u"O",                  nullptr,                    ID_mnu_top + 11},
    emptyMenu(u"f",         nullptr,                    ID_mnu_fontfaces),
    menuOf(u"s",            nullptr,                    ID_mnu_fontsizes,   kSizesMenu),
    {u"?",                  nullptr,                    ID_mnu_help},
};

// Keys in the captions of context menus are text only. Both captions of Delete stay as they are: each
// language shows the key its users press.
constexpr MenuEntry kListPopUp[] = {
    {u"&Delete\tDel",       u"删除(&D)\tCtrl+D",        ID_mnu_lpu_delete},
    kLine,
    {u"S&tick to Top",      u"置顶(&T)",                ID_mnu_setsticky},
    {u"&Unstick",           u"取消置顶(&U)",            ID_mnu_nosticky},
    kLine,
    emptyMenu(u"Mo&ve to",  u"移动至",                  ID_mnu_moverec),
    {u"&Import ...",        u"导入(&I) ...",            ID_mnu_lstImport},
    {u"&Export ...\tF6",    u"导出(&E) ...\tF6",        ID_mnu_lstExport},
    kLine,
    {u"&Notepad2",          nullptr,                    ID_mnu_lstNotepad2},
};
constexpr MenuEntry kTextPopUp[] = {
    {u"&Undo",              u"撤销(&U)\tCtrl+Z",        ID_mnu_txtundo},
    kLine,
    {u"Cu&t",               u"剪切(&T)\tCtrl+X",        ID_mnu_txtcut},
    {u"&Copy",              u"复制(&C)\tCtrl+C",        ID_mnu_txtcopy},
    {u"&Paste",             u"粘贴(&P)\tCtrl+P",        ID_mnu_txtpaste},
    {u"Paste && &Go\tCtrl+B", u"粘贴并转到(&G)\tCtrl+B", ID_mnu_txtpastego},
    {u"&Delete",            u"删除(&D)\tDel",           ID_mnu_txtdelete},
    kLine,
    {u"Select &All",        u"全选(&A)\tCtrl+A",        ID_mnu_txtselall},
    {u"Copy A&ll\tAlt+C",   u"复制全部(&O)\tAlt+C",     ID_mnu_txtcopyall},
    kLine,
    {u"&Join Lines",        u"合并行(&J)",              ID_mnu_txtjoinlines},
    {u"Co&mpress Lines",    u"压缩行(&M)",              ID_mnu_txtcomplines},
    emptyMenu(u"RegE&x",    u"正则字符(&I)",            ID_mnu_rePopUp),
    kLine,
    {u"&Reset",             u"重置(&R)\tESC",           ID_mnu_txtreset},
};
constexpr MenuEntry kSourcePopUp[] = {
    {u"&Open",              u"打开(&O)",                ID_mnu_openfile},
    {u"Open &Folder",       u"打开文件夹(&F)",          ID_mnu_openfolder},
};
constexpr MenuEntry kResultPopUp[] = {
    {u"&Copy",              u"复制(&C)",                ID_mnu_ilsCopyCmds + 0},
    {u"Copy &All",          u"复制全部(&A)",            ID_mnu_ilsCopyCmds + 1},
};
constexpr MenuEntry kSearchPopUp[] = {
    {u"Order by &Title",    u"标题排序",                ID_mnu_SortOnTitle},
    {u"Instant &Search",    u"即时搜索",                ID_mnu_InstantSrch},
};
constexpr MenuEntry kContextMenus[] = {
    menuOf(u"lstPopUp",     nullptr,                    ID_mnu_lstPopUp,    kListPopUp),
    menuOf(u"txtPopUp",     nullptr,                    ID_mnu_txtpopup,    kTextPopUp),
    menuOf(u"srcPopUp",     nullptr,                    ID_mnu_srcPopUp,    kSourcePopUp),
    menuOf(u"ilsPopUp",     nullptr,                    ID_mnu_ilsPopUp,    kResultPopUp),
    menuOf(u"soPopUp",      nullptr,                    ID_mnu_soPopUp,     kSearchPopUp),
};

constexpr int kNeverShown[] = {ID_mnu_delvisible, ID_mnu_lstImport, ID_mnu_top + 4};
constexpr int kNotYetThere[] = {
    ID_mnu_export, ID_mnu_Print, ID_mnu_viewsrc, ID_mnu_desklink, ID_mnu_options, ID_mnu_fixerrors,
    ID_mnu_trimtitles, ID_mnu_top + 11, ID_mnu_help, ID_mnu_lstExport, ID_mnu_lstNotepad2,
    ID_mnu_openfile, ID_mnu_openfolder,
};

struct Help {
    int id;
    const char16_t* english;
    const char16_t* chinese;
};
constexpr Help kHelp[] = {
    {ID_mnu_top + 0,        u"Paste New",               u"新增 (剪贴板优先)"},
    {ID_mnu_top + 1,        u"Duplicate",               u"创建副本"},
    {ID_mnu_top + 2,        u"Delete",                  u"删除"},
    {ID_mnu_top + 3,        u"Save",                    u"保存"},
    {ID_mnu_top + 5,        u"Find Previous",           u"查找 (向前)"},
    {ID_mnu_top + 6,        u"Find Next",               u"查找 (向后)"},
    {ID_mnu_top + 7,        u"Reload",                  u"刷新"},
    {ID_mnu_top + 8,        u"Wrap/UnWrap",             u"自动/手动换行"},
    {ID_mnu_top + 9,        u"Show/Hide List",          u"显示/隐藏列表"},
    {ID_mnu_top + 10,       u"Insert Title",            u"插入标题"},
    {ID_mnu_top + 11,       u"View Source",             u"查看来源"},
};
// clang-format on

struct KeyName {
    WORD key;
    const char16_t* name;
};
constexpr KeyName kKeyNames[] = {{VK_INSERT, u"Ins"}, {VK_F11, u"F11"}, {VK_F12, u"F12"}};

std::u16string keyName(const MenuEntry& entry)
{
    std::u16string name = (entry.modifiers & FCONTROL) != 0 ? u"Ctrl+" : u"";
    if ((entry.modifiers & FSHIFT) != 0)
        name += u"Shift+";
    for (const KeyName& known : kKeyNames)
        if (known.key == entry.key)
            return name + known.name;
    if (entry.key >= VK_F1 && entry.key <= VK_F9)
        return name + u"F" + static_cast<char16_t>(u'1' + (entry.key - VK_F1));
    return name + static_cast<char16_t>(entry.key);
}

} // namespace

std::span<const MenuEntry> menuBarEntries()
{
    return kBar;
}

std::span<const MenuEntry> contextMenuEntries()
{
    return kContextMenus;
}

std::u16string shownCaption(const MenuEntry& entry, bool chinese)
{
    std::u16string caption = chinese && entry.chinese != nullptr ? entry.chinese : entry.english;
    // This one shows no key, though it has one.
    if (entry.key != 0 && entry.id != ID_mnu_txtpastego1)
        caption += u"\t" + keyName(entry);
    return caption;
}

bool isNeverShown(int id)
{
    return std::find(std::begin(kNeverShown), std::end(kNeverShown), id) != std::end(kNeverShown);
}

bool isNotYetThere(int id)
{
    return std::find(std::begin(kNotYetThere), std::end(kNotYetThere), id) != std::end(kNotYetThere);
}

std::u16string commandHelp(int id, bool chinese)
{
    for (const Help& help : kHelp)
        if (help.id == id)
            return chinese ? help.chinese : help.english;
    return {};
}

} // namespace vellums::ui
