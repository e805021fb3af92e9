#include "store/catalogue.h"

#include "platform/files.h"
#include "store/connectionString.h"

#include <algorithm>

namespace vellums {
namespace {

constexpr std::u16string_view kSnippetColumns = u"IDVLHEADVLTEXTVLTYPEVLDATEVLLINKVLMD5";

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
    return connection.query(u"SELECT * FROM [" + table + u"] WHERE 1=2")->columns();
}

bool isSnippetTable(Connection& connection, const std::u16string& table)
{
    std::u16string joined;
    for (const std::u16string& name : columnNames(connection, table))
        joined += name;
    return joined == kSnippetColumns;
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
        return names.empty() ? u"-" : names.front();
    } catch (const ProviderError&) {
        return u"-";
    }
}

std::u16string getTables(const Notebook& notebook, const std::u16string& file)
{
    std::u16string joined;
    try {
        for (const auto& name : ordinaryTables(*notebook.connect(connectionStringFor(notebook, file))))
            joined += (joined.empty() ? u"" : u"|") + name;
    } catch (const ProviderError&) {
        return {};
    }
    return joined;
}

std::u16string getDataBaseList(const Notebook& notebook, const std::u16string& folder)
{
    std::u16string joined;
    for (const auto& name : platform::databaseNames(folder.empty() ? notebook.dbParent : folder))
        joined += (joined.empty() ? u"" : u"\r\n") + name;
    return joined;
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
    Connection& connection, const std::u16string& table, const std::u16string& column)
{
    try {
        const std::u16string length = column == u"VLMD5" ? u"32" : u"255";
        connection.execute(
            u"ALTER TABLE [" + table + u"] ADD COLUMN " + column + u" VARCHAR(" + length + u")");
        return 0;
    } catch (const ProviderError& e) {
        return e.number;
    }
}

} // namespace vellums
