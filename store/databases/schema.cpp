#include "store/databases/schema.h"

#include "platform/files.h"

namespace vellums {
namespace {

// System tables, links to other files and stored queries have types of their own.
std::vector<std::u16string> ordinaryTables(Connection& connection)
{
    std::vector<std::u16string> names;
    for (const SchemaTable& table : connection.tables())
        if (table.type == u"TABLE")
            names.push_back(table.name);
    return names;
}

} // namespace

std::vector<std::u16string> columnNames(Connection& connection, const std::u16string& table)
{
    // A query that gives no row: its columns are known without one being read.
    return connection.query(u"SELECT * FROM [" + table + u"] WHERE 1=2")->columns();
}

bool isSnippetTable(Connection& connection, const std::u16string& table)
{
    return columnNames(connection, table) == snippetColumnNames();
}

bool isSnippetTable(
    const Notebook& notebook, const std::u16string& connectionString, const std::u16string& table)
{
    try {
        return isSnippetTable(*notebook.connect(connectionString), table);
    } catch (const ProviderError&) {
        return false;
    }
}

std::u16string getFirstTable(const Notebook& notebook, const std::u16string& connectionString)
{
    try {
        const auto names = ordinaryTables(*notebook.connect(connectionString));
        return names.empty() ? std::u16string(kNoTable) : names.front();
    } catch (const ProviderError&) {
        return std::u16string(kNoTable);
    }
}

std::u16string getDataBaseList(const Notebook& notebook, const std::u16string& folder)
{
    std::u16string list;
    for (const std::u16string& name : platform::databaseNames(folder.empty() ? notebook.dbParent : folder))
        list.append(list.empty() ? u"" : u"\r\n").append(name);
    return list;
}

std::vector<std::u16string> snippetTables(Connection& connection)
{
    std::vector<std::u16string> found;
    for (const std::u16string& name : ordinaryTables(connection)) {
        try {
            if (isSnippetTable(connection, name))
                found.push_back(name);
        } catch (const ProviderError&) { // a table that cannot be read is not offered
        }
    }
    return found;
}

std::u16string firstSnippetTable(Connection& connection)
{
    const std::vector<std::u16string> tables = snippetTables(connection);
    return tables.empty() ? std::u16string() : tables.front();
}

std::int32_t addSnippetColumn(
    Connection& connection, const std::u16string& table, const SnippetColumn& column)
{
    try {
        connection.execute(u"ALTER TABLE [" + table + u"] ADD COLUMN " + columnDefinition(column));
        return 0;
    } catch (const ProviderError& e) {
        return e.number;
    }
}

} // namespace vellums
