// A switch is made in an order that a failure cannot split: the other table is read first, while everything
// still shows the present one; what throws is done next, on copies; then the window shows nothing, and only
// then do dbConn and dbTable change, by moves that cannot fail. Between the two there is no moment in which a
// heading or a text of one table could be taken for one of the other.
#include "app/tableCommands.h"

#include "app/headingList.h"
#include "app/start/settings.h"
#include "store/connectionString.h"
#include "store/databases/modCreateDB.h"
#include "store/databases/schema.h"
#include "store/databases/tableChanges.h"
#include "text/letterCase.h"
#include "text/pieces.h"

namespace vellums {
namespace {

constexpr std::u16string_view kTableMarker = u"@2#";
constexpr std::u16string_view kExtension = u".mdb";

std::u16string queryError(const ProviderError& error)
{
    return u"dbQuery: " + reasonOf(error);
}

} // namespace

TableCommands::TableCommands(Notebook& notebook, ListPorts list, MenuItems& mnu_AvailFields,
    RecordCommands& records, TablePorts tables)
    : notebook_(notebook)
    , list_(list)
    , mnu_AvailFields_(mnu_AvailFields)
    , records_(records)
    , tables_(tables)
{
}

void TableCommands::rebuildMenu()
{
    buildDatabaseMenu(notebook_, tables_.mnu_availdb, tables_.mnu_switchto);
}

std::u16string TableCommands::fileName() const
{
    return getConnPart(notebook_, notebook_.dbConn, ConnPart::FileName);
}

void TableCommands::switchTo(std::size_t index)
{
    if (index >= tables_.mnu_availdb.size())
        return;
    const MenuItem item = tables_.mnu_availdb.at(index);
    const std::optional<std::u16string> table = tableOfEntry(item);
    if (item.checked || !table || !records_.leaveRecord())
        return;
    if (open(connectionStringFor(notebook_, item.tag), *table))
        markOpenDatabase(notebook_, tables_.mnu_availdb);
    else
        rebuildMenu(); // it may be gone
}

// Makes another table the current one and lists its records. False: it cannot be read; everything stays
// as it is, and the panel says why.
bool TableCommands::open(const std::u16string& connectionString, const std::u16string& table)
{
    try {
        columnNames(*notebook_.connect(connectionString), table);
    } catch (const ProviderError& e) {
        notebook_.status.failed(queryError(e));
        return false;
    }
    std::u16string conn = getConnPart(notebook_, connectionString, ConnPart::WithBareName);
    std::u16string name = table;
    showNothing(); // while there is still no other table that its headings could be taken for
    notebook_.dbConn = std::move(conn);
    notebook_.dbTable = std::move(name);
    const bool stored = storeDatabaseChoice(notebook_);
    records_.start();
    if (!stored)
        notebook_.status.failed(
            notebook_.say(u"The settings file cannot be written: " + notebook_.settingsFile,
                u"无法写入设置文件: " + notebook_.settingsFile));
    return true;
}

// Nothing of the table before may be taken for one of the new table: no heading, no record, no search
// field of a column that the new one lacks.
void TableCommands::showNothing()
{
    records_.current().clear();
    list_.lstHeads.fill({});
    for (std::size_t i = 0; i < mnu_AvailFields_.size(); ++i) {
        MenuItem field = mnu_AvailFields_.at(i);
        field.checked = false;
        mnu_AvailFields_.set(i, field);
    }
}

void TableCommands::newDatabase()
{
    std::u16string name = tables_.frmInput.ask(nameForm(notebook_, kDatabaseMarker));
    if (name.empty())
        return;
    if (const std::u16string trimmed(text::trimBlanks(name)); !trimmed.empty())
        name = trimmed;
    if (!text::lowerCase(name).ends_with(kExtension))
        name += kExtension;
    if (!records_.leaveRecord())
        return;
    const std::u16string table = dbCreateNew(notebook_, name);
    if (table.empty())
        return;
    // Said twice: before the switch, should that fail, and after it, over what the switch itself has said.
    const std::u16string report =
        notebook_.say(u"New database file created: ", u"数据库文件新建成功: ") + name;
    notebook_.status.done(report);
    const bool opened = open(connectionStringFor(notebook_, name), table);
    rebuildMenu();
    if (opened)
        notebook_.status.done(report);
}

void TableCommands::newTable()
{
    const std::u16string name = tables_.frmInput.ask(nameForm(notebook_, kTableMarker));
    if (name.empty())
        return;
    // Where no table is open there is no structure to copy.
    const bool isFirst = notebook_.dbTable == kNoTable;
    if (isFirst && !records_.leaveRecord())
        return;
    if (!(isFirst ? newSnippetTable(notebook_, name) : vellums::newTable(notebook_, name)))
        return;
    if (isFirst)
        open(notebook_.dbConn, checkedTableName(name));
    rebuildMenu();
    if (!isFirst)
        notebook_.status.done(notebook_.say(u"New table created: ", u"数据表新建成功: ") + name);
}

// Nothing is asked where there is nothing to rename or to drop.
bool TableCommands::hasTable() const
{
    if (notebook_.dbTable != kNoTable)
        return true;
    notebook_.status.failed(notebook_.say(u"There is no table to do this with.", u"当前没有数据表"));
    return false;
}

void TableCommands::renameTable()
{
    if (!hasTable())
        return;
    const std::u16string name = tables_.frmInput.ask(nameForm(notebook_, kTableMarker));
    if (name.empty() || !records_.leaveRecord())
        return;
    std::u16string renamed(name.substr(0, name.find_last_not_of(u' ') + 1)); // as it will be stored
    const std::u16string toOpen = renamed;
    if (!vellums::renameTable(notebook_, name))
        return;
    notebook_.dbTable = std::move(renamed); // whatever fails from here on, the old name is no table's
    open(notebook_.dbConn, toOpen);
    rebuildMenu();
}

void TableCommands::dropTable()
{
    if (!hasTable())
        return;
    const std::u16string table = notebook_.dbTable;
    const std::u16string question =
        notebook_.say(u"Are you sure to drop table " + table + u" from " + fileName() + u"?",
            u"确实要从数据库 " + fileName() + u" 中删除表 " + table + u" 吗?");
    if (tables_.dialogs.askYesNo(question) != Answer::Yes || !records_.leaveRecord() ||
        !vellums::dropTable(notebook_, table))
        return;
    notebook_.dbTable = kNoTable;
    list_.lstHeads.fill({});
    showNothing();
    list_.caption.setText(windowCaption(notebook_));
    openAnother();
    rebuildMenu();
}

// After a drop: the first snippet table that is left, or a fresh one if the user wants it.
void TableCommands::openAnother()
{
    try {
        const std::u16string first = firstSnippetTable(*notebook_.connect());
        if (first.empty())
            offerFreshTable();
        else
            open(notebook_.dbConn, first);
    } catch (const ProviderError& e) {
        notebook_.status.failed(queryError(e));
    }
}

void TableCommands::offerFreshTable()
{
    storeDatabaseChoice(notebook_);
    // That of a first start, as far as no other table has it.
    const std::u16string name = freeTableName(*notebook_.connect(), newTableName(u"", notebook_.chinese));
    const std::u16string left = notebook_.say(
        u"No snippet table is left in " + fileName() + u".", u"数据库 " + fileName() + u" 中已没有摘录表");
    notebook_.status.done(left);
    const Answer answer = tables_.dialogs.askYesNo(
        left + notebook_.say(u" Create the new table " + name + u"?", u", 是否新建表 " + name + u"?"));
    if (answer == Answer::Yes && newSnippetTable(notebook_, name))
        open(notebook_.dbConn, name);
}

} // namespace vellums
