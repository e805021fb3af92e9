// The SQL of Access files cannot rename a table, so renaming is copying and dropping (replaceTable), in a
// batch where the provider has such: then both happen or neither. Names are checked before the provider sees
// them, as providers differ in what they let pass; the same name in another letter case is the same to all of
// them.
#include "store/databases/tableChanges.h"

#include "jet/catalogue/objectName.h"
#include "jet/file/error.h"
#include "store/snippetTable.h"
#include "text/decimal.h"
#include "text/letterCase.h"

#include <algorithm>

namespace vellums {
namespace {

using text::equalNoCase;

bool isAmong(const std::vector<SchemaTable>& tables, const std::u16string& name)
{
    return std::any_of(tables.begin(), tables.end(),
        [&](const SchemaTable& table) { return equalNoCase(table.name, name); });
}

bool tableExists(const Notebook& notebook, const std::u16string& name)
{
    try {
        return isAmong(notebook.connect()->tables(), name);
    } catch (const ProviderError&) { // then the first error says what there is to say
        return false;
    }
}

// `renamed`: the table whose name it shall become, or empty. Of a change of letter case alone the name is
// always there.
void showNotCreated(const Notebook& notebook, const std::u16string& name, const std::u16string& renamed,
    const ProviderError& error)
{
    const std::u16string reason = !equalNoCase(name, renamed) && tableExists(notebook, name)
        ? notebook.say(u"named table already existed. ", u"同名表已存在 ")
        : error.description;
    notebook.status.failed(notebook.say(u"Failed to create new table: ", u"新增数据表失败, ") + reason);
}

// Runs the work with the checked name on a connection; a failure becomes the line about new tables.
template <typename Work>
bool creating(
    const Notebook& notebook, const std::u16string& name, const std::u16string& renamed, Work&& work)
{
    std::u16string checked = name;
    try {
        checked = checkedTableName(name);
        work(*notebook.connect(), checked);
        return true;
    } catch (const ProviderError& e) {
        showNotCreated(notebook, checked, renamed, e);
        return false;
    }
}

void copyTable(Connection& connection, const std::u16string& from, const std::u16string& to)
{
    connection.execute(u"SELECT * INTO [" + to + u"] From [" + from + u"]");
}

// Copies a table under another name and drops it. Where the copy stays although the drop is refused, it
// is taken away again: two tables with the same records would help nobody.
void replaceTable(Connection& connection, const std::u16string& from, const std::u16string& to)
{
    copyTable(connection, from, to);
    try {
        dropTable(connection, from);
    } catch (const ProviderError&) {
        try {
            dropTable(connection, to);
        } catch (const ProviderError&) { // the first refusal is the one that counts
        }
        throw;
    }
}

} // namespace

std::u16string freeTableName(Connection& connection, const std::u16string& name)
{
    const std::vector<SchemaTable> tables = connection.tables();
    std::u16string free = name;
    for (int number = 2; isAmong(tables, free); ++number)
        free = name + text::decimal(number);
    return free;
}

std::u16string checkedTableName(const std::u16string& name)
{
    try {
        std::u16string checked = jet::checkedName(name);
        if (!jet::isSystemName(checked))
            return checked;
    } catch (const jet::Error& e) {
        throw ProviderError(e.description, e.number);
    }
    throw ProviderError(u"'" + name + u"' is not a valid name: such names are those of system tables.",
        jet::kErrorsInCommand);
}

void newTable(Connection& connection, const std::u16string& source, const std::u16string& name)
{
    connection.execute(u"SELECT * INTO [" + name + u"] From [" + source + u"] WHERE 1=2");
}

bool newTable(const Notebook& notebook, const std::u16string& name)
{
    return creating(notebook, name, {}, [&](Connection& connection, const std::u16string& checked) {
        newTable(connection, notebook.dbTable, checked);
    });
}

void newSnippetTable(Connection& connection, const std::u16string& name)
{
    std::u16string columns;
    for (const SnippetColumn& column : kSnippetColumns)
        columns += (columns.empty() ? u"" : u", ") + columnDefinition(column);
    connection.execute(u"CREATE TABLE [" + name + u"] (" + columns + u")");
}

bool newSnippetTable(const Notebook& notebook, const std::u16string& name)
{
    return creating(notebook, name, {},
        [](Connection& connection, const std::u16string& checked) { newSnippetTable(connection, checked); });
}

void renameTable(Connection& connection, const std::u16string& table, const std::u16string& name)
{
    // An open batch that is never ended is given up with the connection: all or nothing.
    connection.beginBatch();
    // A change of letter case goes by way of a third name, or the copy would be refused for the name it
    // copies.
    if (table != name && equalNoCase(table, name)) { // the same name to the database
        const std::u16string passing = freeTableName(connection, u"Vellums 1");
        replaceTable(connection, table, passing);
        replaceTable(connection, passing, name);
    } else {
        replaceTable(connection, table, name);
    }
    connection.endBatch();
}

bool renameTable(const Notebook& notebook, const std::u16string& name)
{
    return creating(
        notebook, name, notebook.dbTable, [&](Connection& connection, const std::u16string& checked) {
            renameTable(connection, notebook.dbTable, checked);
        });
}

void dropTable(Connection& connection, const std::u16string& table)
{
    connection.execute(u"DROP TABLE [" + table + u"]");
}

bool dropTable(const Notebook& notebook, const std::u16string& table)
{
    try {
        dropTable(*notebook.connect(), table);
        return true;
    } catch (const ProviderError& e) {
        notebook.status.failed(u"dropTable - " + reasonOf(e));
        return false;
    }
}

} // namespace vellums
