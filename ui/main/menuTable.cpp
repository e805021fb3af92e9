#include "ui/main/menuTable.h"

#include "ui/ids.h"
#include "ui/main/commands.h"

namespace vellums::ui {
namespace {

constexpr BYTE kCtrl = FCONTROL;
constexpr BYTE kShift = FSHIFT;
constexpr BYTE kAlt = FALT;
constexpr MenuEntry kLine = {};

constexpr MenuEntry line(int id)
{
    return {.id = id};
}

template <std::size_t Count>
constexpr MenuEntry menuOf(
    const char16_t* english, const char16_t* chinese, int id, const MenuEntry (&entries)[Count])
{
    return {.english = english, .chinese = chinese, .id = id, .entries = entries, .isMenu = true};
}

// A submenu whose entries come while the program runs.
constexpr MenuEntry emptyMenu(const char16_t* english, const char16_t* chinese, int id)
{
    return {.english = english, .chinese = chinese, .id = id, .isMenu = true};
}

constexpr MenuEntry command(const char16_t* english, const char16_t* chinese, int id, CommandHandler handler,
    WORD key = 0, BYTE modifiers = 0)
{
    return {.english = english,
        .chinese = chinese,
        .id = id,
        .key = key,
        .modifiers = modifiers,
        .handler = handler};
}

// Greyed, and its key stays with the text boxes.
constexpr MenuEntry notYet(
    const char16_t* english, const char16_t* chinese, int id, WORD key = 0, BYTE modifiers = 0)
{
    return command(english, chinese, id, nullptr, key, modifiers);
}

// A tool item explains itself in the status line, since the bar has no tooltips.
constexpr MenuEntry tool(
    const char16_t* sign, int id, CommandHandler handler, const char16_t* help, const char16_t* helpChinese)
{
    return {.english = sign, .id = id, .handler = handler, .help = help, .helpChinese = helpChinese};
}

constexpr MenuEntry with(MenuEntry entry, MenuEntry::Shown shown)
{
    entry.shown = shown;
    return entry;
}

// Though it has a key, the caption does not tell.
constexpr MenuEntry keyUntold(MenuEntry entry)
{
    entry.keyInCaption = false;
    return entry;
}

// A method of one of the parts of Commands as a handler.
template <auto Part, auto Method>
constexpr CommandHandler kCall = [](Commands& commands) { ((commands.*Part).*Method)(); };
template <auto Part, auto Method>
constexpr ArrayHandler kPick =
    [](Commands& commands, std::size_t index) { ((commands.*Part).*Method)(index); };

template <auto Method>
constexpr CommandHandler records = kCall<&Commands::records, Method>;
template <auto Method>
constexpr CommandHandler tables = kCall<&Commands::tables, Method>;
template <auto Method>
constexpr CommandHandler list = kCall<&Commands::list, Method>;
template <auto Method>
constexpr CommandHandler boxes = kCall<&Commands::boxes, Method>;
template <auto Method>
constexpr CommandHandler text = kCall<&Commands::text, Method>;
template <auto Method>
constexpr CommandHandler imports = kCall<&Commands::imports, Method>;
template <auto Method>
constexpr CommandHandler maintenance = kCall<&Commands::maintenance, Method>;
template <auto Method>
constexpr CommandHandler view = [](Commands& commands) { (commands.view.*Method)(); };

using Records = RecordCommands;
using Tables = TableCommands;
using List = ListCommands;
using Boxes = SearchBoxes;
using Text = TextCommands;
using Imports = ImportCommands;
using Maintenance = MaintenanceCommands;
using View = WindowView;
using Shown = MenuEntry::Shown;

// clang-format off
constexpr MenuEntry kHomeMenu[] = {
    //      English              Chinese                id                        command                  key
    command(u"&Paste New",       u"从剪贴板新增",       ID_mnu_Paste,             records<&Records::capture>, VK_F5),
    command(u"&New Search",      u"搜索(&R)",           ID_mnu_srchfield,         boxes<&Boxes::newSearch>, 'G', kCtrl),
    keyUntold(command(u"Paste && &Go", u"粘贴并转到(&G)", ID_mnu_txtpastego1,     text<&Text::pasteAndGo>, 'B', kCtrl)),
    kLine,
    command(u"I&mport ...",      u"导入(&I)",           ID_mnu_import,            imports<&Imports::importFolder>, 'O', kCtrl),
    notYet(u"&Export ...",       u"导出(&E)",           ID_mnu_export,            VK_F6),
    kLine,
    notYet(u"&Notepad2",         u"记事本打开",         ID_mnu_Print,             'P', kCtrl),
    notYet(u"View So&urce",      u"查看原文件",         ID_mnu_viewsrc,           VK_F2),
    kLine,
    command(u"&Word Wrap",       u"自动换行",           ID_mnu_chkwrap,           view<&View::toggleWrap>, 'W', kCtrl),
    command(u"&Hide List",       u"隐藏列表(&H)",       ID_mnu_hidelst,           view<&View::toggleList>, VK_F4),
    command(u"Eas&y Delete",     u"快速删除(&Y)",       ID_mnu_ezdel,             view<&View::toggleEasyDelete>),
    command(u"&Top Level",       u"窗体置顶(&T)",       ID_mnu_ontop,             view<&View::toggleOnTop>, VK_F11, kCtrl),
    kLine,
    notYet(u"Create Desktop &Link", u"创建桌面快捷方式(&L)", ID_mnu_desklink),
    kLine,
    notYet(u"&Options...",       u"选项设置(&P) ...",   ID_mnu_options,           VK_F12, kCtrl),
    kLine,
    command(u"E&xit",            u"退出(&X)",           ID_mnu_quit,              view<&View::quit>),
};
constexpr MenuEntry kEditMenu[] = {
    command(u"Select &All",      u"全选(&A)",           ID_mnu_txtops_SelectAll,  text<&Text::selectAll>, 'A', kCtrl),
    command(u"&Clear Text",      u"清除(&C)",           ID_mnu_txtops_Clear,      text<&Text::clearText>, 'E', kCtrl),
    line(ID_mnu_txtops_Line),
    command(u"Insert &Date",     u"插入日期",           ID_mnu_txtops_Date,       text<&Text::insertDate>, VK_F5, kCtrl),
    command(u"Switch Case",      u"切换大小写",         ID_mnu_txtops_Case,       text<&Text::switchCase>, 'U', kCtrl),
    command(u"&Trim Text",       u"清理文本",           ID_mnu_txtops_Trim,       text<&Text::trimText>, 'T', kCtrl),
    line(ID_mnu_txtops + 6),
    command(u"&Find Inline",     u"查找",               ID_mnu_find_Inline,       boxes<&Boxes::findInline>, 'F', kCtrl),
    command(u"Find Pre&vious",   u"上一个",             ID_mnu_find_Previous,     boxes<&Boxes::findPrevious>, VK_F3, kShift),
    command(u"Find &Next",       u"下一个",             ID_mnu_find_Next,         boxes<&Boxes::findNext>, VK_F3),
};
constexpr MenuEntry kToolsMenu[] = {
    with(notYet(u"Delete Visib&le", u"批量删除(&L)",    ID_mnu_delvisible),       Shown::Never),
    command(u"Remove D&uplicates", u"清除重复项(&U)",   ID_mnu_remdups,           maintenance<&Maintenance::removeDuplicates>),
    notYet(u"Fi&x Errors",       u"修复错误(&X)",       ID_mnu_fixerrors),
    notYet(u"Trim &Titles",      u"精简标题(&T)",       ID_mnu_trimtitles),
    command(u"Co&mpact Data",    u"压缩数据库(&K)",     ID_mnu_shrinkdata,        maintenance<&Maintenance::compactData>),
};
constexpr MenuEntry kDataMenu[] = {
    command(u"New Data&base",    u"新建数据库(&N)",     ID_mnu_dbcreate,          tables<&Tables::newDatabase>),
    kLine,
    menuOf(u"&Tools",            u"维护(&T)",           ID_mnu_toolsentry,        kToolsMenu),
    kLine,
    command(u"&Create Table ...", u"创建表(&C) ...",    ID_mnu_dbops_Create,      tables<&Tables::newTable>, VK_INSERT, kCtrl),
    command(u"Re&name Table ...", u"重命名(&R) ...",    ID_mnu_dbops_Rename,      tables<&Tables::renameTable>),
    command(u"&Drop Table ...",  u"删除表(&D) ...",     ID_mnu_dbops_Drop,        tables<&Tables::dropTable>),
    kLine,
    emptyMenu(u"S&witch to",     u"切换至(&W)",         ID_mnu_switchto),
    kLine,
    command(u"&Insert",          u"插入记录(&I)",       ID_mnu_sqlman_Insert,     records<&Records::pasteNew>, 'N', kCtrl),
    command(u"D&uplicate",       u"创建副本(&M)",       ID_mnu_sqlman_Duplicate,  records<&Records::duplicate>, 'M', kCtrl),
    command(u"&Delete",          u"删除记录(&D)",       ID_mnu_sqlman_Delete,     records<&Records::deleteSelected>, 'D', kCtrl),
    command(u"&Save",            u"保存记录(&S)",       ID_mnu_sqlman_Save,       records<&Records::save>, 'S', kCtrl),
    line(ID_mnu_sqlman_Line),
    command(u"&Refresh",         u"刷新(&R)",           ID_mnu_sqlman_Refresh,    records<&Records::reload>, 'R', kCtrl),
};
constexpr MenuEntry kSizesMenu[] = {
    command(u"&Smaller",         u"缩小",               ID_mnu_sizes_Smaller,     view<&View::smallerText>, VK_F7),
    command(u"&Reset",           u"默认",               ID_mnu_sizes_Reset,       view<&View::resetDisplay>, VK_F9),
    command(u"&Larger",          u"放大",               ID_mnu_sizes_Larger,      view<&View::largerText>, VK_F8),
    line(ID_mnu_sizes_Line),
};
constexpr MenuEntry kBar[] = {
    menuOf(u"&Home",             u"开始(&S)",           ID_mnu_View,              kHomeMenu),
    menuOf(u"&Edit",             u"编辑(&E)",           ID_mnu_edit,              kEditMenu),
    menuOf(u"&Data",             u"数据(&D)",           ID_mnu_dbfPopUp,          kDataMenu),
    tool(u"+",  ID_mnu_top_PasteNew,     records<&Records::pasteNew>,       u"Paste New",      u"新增 (剪贴板优先)"),
    tool(u"#",  ID_mnu_top_Duplicate,    records<&Records::duplicate>,      u"Duplicate",      u"创建副本"),
    tool(u"x",  ID_mnu_top_Delete,       records<&Records::deleteSelected>, u"Delete",         u"删除"),
    tool(u"=",  ID_mnu_top_Save,         records<&Records::save>,           u"Save",           u"保存"),
    with(tool(u"0", ID_mnu_top_Unseen,   nullptr, nullptr, nullptr), Shown::Never),
    tool(u"<",  ID_mnu_top_FindPrevious, boxes<&Boxes::findPrevious>,       u"Find Previous",  u"查找 (向前)"),
    tool(u">",  ID_mnu_top_FindNext,     boxes<&Boxes::findNext>,           u"Find Next",      u"查找 (向后)"),
    tool(u"@",  ID_mnu_top_Reload,       records<&Records::reload>,         u"Reload",         u"刷新"),
    tool(u"Z",  ID_mnu_top_Wrap,         view<&View::toggleWrap>,           u"Wrap/UnWrap",    u"自动/手动换行"),
    tool(u"||", ID_mnu_top_List,         view<&View::toggleList>,           u"Show/Hide List", u"显示/隐藏列表"),
    tool(u"H",  ID_mnu_top_Title,        text<&Text::insertTitle>,          u"Insert Title",   u"插入标题"),
    with(tool(u"O", ID_mnu_top_Source,   nullptr, u"View Source", u"查看来源"), Shown::Later),
    emptyMenu(u"f",              nullptr,               ID_mnu_fontfaces),
    menuOf(u"s",                 nullptr,               ID_mnu_fontsizes,         kSizesMenu),
    notYet(u"?",                 nullptr,               ID_mnu_help),
};

// Keys in the captions of context menus are text only, but for that of Copy All. Both captions of Delete
// stay as they are: each language shows the key its users press.
constexpr MenuEntry kListPopUp[] = {
    command(u"&Delete\tDel",     u"删除(&D)\tCtrl+D",   ID_mnu_lpu_delete,        records<&Records::deleteSelected>),
    kLine,
    command(u"S&tick to Top",    u"置顶(&T)",           ID_mnu_setsticky,         list<&List::stick>),
    command(u"&Unstick",         u"取消置顶(&U)",       ID_mnu_nosticky,          list<&List::unstick>),
    kLine,
    emptyMenu(u"Mo&ve to",       u"移动至",             ID_mnu_moverec),
    with(notYet(u"&Import ...",  u"导入(&I) ...",       ID_mnu_lstImport),        Shown::Never),
    notYet(u"&Export ...\tF6",   u"导出(&E) ...\tF6",   ID_mnu_lstExport),
    kLine,
    notYet(u"&Notepad2",         nullptr,               ID_mnu_lstNotepad2),
};
constexpr MenuEntry kTextPopUp[] = {
    command(u"&Undo",            u"撤销(&U)\tCtrl+Z",   ID_mnu_txtundo,           text<&Text::undo>),
    kLine,
    command(u"Cu&t",             u"剪切(&T)\tCtrl+X",   ID_mnu_txtcut,            text<&Text::cut>),
    command(u"&Copy",            u"复制(&C)\tCtrl+C",   ID_mnu_txtcopy,           text<&Text::copy>),
    command(u"&Paste",           u"粘贴(&P)\tCtrl+P",   ID_mnu_txtpaste,          text<&Text::paste>),
    command(u"Paste && &Go\tCtrl+B", u"粘贴并转到(&G)\tCtrl+B", ID_mnu_txtpastego, text<&Text::pasteAndGo>),
    command(u"&Delete",          u"删除(&D)\tDel",      ID_mnu_txtdelete,         text<&Text::deleteSelection>),
    kLine,
    command(u"Select &All",      u"全选(&A)\tCtrl+A",   ID_mnu_txtselall,         text<&Text::selectAll>),
    keyUntold(command(u"Copy A&ll\tAlt+C", u"复制全部(&O)\tAlt+C", ID_mnu_txtcopyall, text<&Text::copyAll>, 'C', kAlt)),
    kLine,
    command(u"&Join Lines",      u"合并行(&J)",         ID_mnu_txtjoinlines,      text<&Text::joinLines>),
    command(u"Co&mpress Lines",  u"压缩行(&M)",         ID_mnu_txtcomplines,      text<&Text::compressLines>),
    emptyMenu(u"RegE&x",         u"正则字符(&I)",       ID_mnu_rePopUp),
    kLine,
    command(u"&Reset",           u"重置(&R)\tESC",      ID_mnu_txtreset,          text<&Text::reset>),
};
constexpr MenuEntry kSourcePopUp[] = {
    notYet(u"&Open",             u"打开(&O)",           ID_mnu_openfile),
    notYet(u"Open &Folder",      u"打开文件夹(&F)",     ID_mnu_openfolder),
};
constexpr MenuEntry kResultPopUp[] = {
    command(u"&Copy",            u"复制(&C)",           ID_mnu_ilsCopyCmds_One,   boxes<&Boxes::copyResult>),
    command(u"Copy &All",        u"复制全部(&A)",       ID_mnu_ilsCopyCmds_All,   boxes<&Boxes::copyAllResults>),
};
constexpr MenuEntry kSearchPopUp[] = {
    command(u"Order by &Title",  u"标题排序",           ID_mnu_SortOnTitle,       boxes<&Boxes::toggleSortOnTitle>),
    command(u"Instant &Search",  u"即时搜索",           ID_mnu_InstantSrch,       boxes<&Boxes::toggleInstantSearch>),
};
constexpr MenuEntry kContextMenus[] = {
    menuOf(u"lstPopUp",          nullptr,               ID_mnu_lstPopUp,          kListPopUp),
    menuOf(u"txtPopUp",          nullptr,               ID_mnu_txtpopup,          kTextPopUp),
    menuOf(u"srcPopUp",          nullptr,               ID_mnu_srcPopUp,          kSourcePopUp),
    menuOf(u"ilsPopUp",          nullptr,               ID_mnu_ilsPopUp,          kResultPopUp),
    menuOf(u"soPopUp",           nullptr,               ID_mnu_soPopUp,           kSearchPopUp),
};

constexpr int kMostDatabases = 2000;
// The ids of the arrays lie in one row; each reaches to before the next one, whatever number of them is used.
constexpr MenuArrayCommand kArrays[] = {
    {ID_mnu_AvailFields, ID_mnu_sizes - 1,     kPick<&Commands::boxes, &Boxes::toggleSearchField>},
    {ID_mnu_sizes_First, ID_mnu_fonts - 1,     [](Commands& commands, std::size_t index) { commands.view.chooseSize(index); }},
    {ID_mnu_fonts,       ID_mnu_RegExChar - 1, [](Commands& commands, std::size_t index) { commands.view.chooseFont(index); }},
    {ID_mnu_RegExChar,   ID_mnu_avtables - 1,  [](Commands& commands, std::size_t index) { commands.text.insertPattern(commands.mnu_RegExChar.at(index).tag); }},
    {ID_mnu_avtables,    ID_mnu_availdb - 1,   kPick<&Commands::list, &List::moveTo>},
    {ID_mnu_availdb,     ID_mnu_availdb + kMostDatabases - 1, kPick<&Commands::tables, &Tables::switchTo>},
};
// clang-format on

const MenuEntry* found(std::span<const MenuEntry> entries, int id)
{
    for (const MenuEntry& entry : entries) {
        if (entry.id == id)
            return &entry;
        if (const MenuEntry* inner = found(entry.entries, id); inner != nullptr)
            return inner;
    }
    return nullptr;
}

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
    // Letters and digits have their own character as their key.
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

const MenuEntry* menuEntry(int id)
{
    if (id == 0)
        return nullptr;
    const MenuEntry* entry = found(kBar, id);
    return entry != nullptr ? entry : found(kContextMenus, id);
}

const MenuArrayCommand* arrayCommand(int id)
{
    for (const MenuArrayCommand& array : kArrays)
        if (id >= array.firstId && id <= array.lastId)
            return &array;
    return nullptr;
}

std::u16string shownCaption(const MenuEntry& entry, bool chinese)
{
    std::u16string caption = chinese && entry.chinese != nullptr ? entry.chinese : entry.english;
    if (entry.key != 0 && entry.keyInCaption)
        caption += u"\t" + keyName(entry);
    return caption;
}

} // namespace vellums::ui
