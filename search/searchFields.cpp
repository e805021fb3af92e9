#include "search/searchFields.h"

#include "store/catalogue.h"
#include "text/decimal.h"

#include <algorithm>

namespace vellums {
namespace {

constexpr std::size_t kSnippetColumns = 7;
const std::vector<std::u16string> kOldColumns = {u"ID", u"VLHEAD", u"VLTEXT", u"VLTYPE", u"VLDATE"};

std::vector<std::u16string> columnsOf(Connection& connection, const std::u16string& table)
{
    return connection.query(u"SELECT TOP 1 * FROM [" + table + u"]")->columns();
}

void setField(const Notebook& notebook, WindowPorts& window, std::size_t index, const std::u16string& column)
{
    MenuItems& fields = window.mnu_AvailFields;
    MenuItem item = index < fields.size() ? fields.at(index) : MenuItem();
    item.visible = false;
    item.tag = column;
    if (column == u"VLHEAD" || column == u"VLLINK")
        item.checked = true;
    if (column == u"VLTEXT") {
        item.caption = notebook.say(u"Full Text Search", u"全文搜索");
        item.checked = true;
        item.visible = true;
    }
    fields.set(index, item);
}

void setFields(const Notebook& notebook, WindowPorts& window, const std::vector<std::u16string>& columns)
{
    for (std::size_t i = 0; i < columns.size(); ++i)
        setField(notebook, window, i, columns[i]);
    // Entries of a wider table before this one keep their state, but nobody sees them.
    for (std::size_t i = columns.size(); i < window.mnu_AvailFields.size(); ++i) {
        MenuItem item = window.mnu_AvailFields.at(i);
        item.visible = false;
        window.mnu_AvailFields.set(i, item);
    }
}

// Adds VLLINK and VLMD5 to a table of an old version; any other table is left as it is. True: columns
// were added.
bool upgradeTable(const Notebook& notebook, WindowPorts& window, Connection& connection,
    const std::vector<std::u16string>& columns)
{
    std::vector<std::u16string> withLink = kOldColumns;
    withLink.push_back(u"VLLINK");
    if (columns != kOldColumns && columns != withLink) {
        notebook.status.done(
            notebook.say(u"The table " + notebook.dbTable + u" is no snippet table; it is left as it is.",
                u"数据表 " + notebook.dbTable + u" 不是摘录表, 未作修改"));
        return false;
    }
    const auto add = [&](const std::u16string& column) {
        if (const std::int32_t number = addSnippetColumn(connection, notebook.dbTable, column); number != 0)
            throw ProviderError(notebook.say(u"The field " + column + u" could not be added to the table.",
                                    u"无法为数据表添加字段 " + column),
                number);
    };
    if (columns == kOldColumns)
        add(u"VLLINK");
    add(u"VLMD5");
    window.lstHeads.setTag(u"1");
    return true;
}

} // namespace

bool rebuildSearchFields(const Notebook& notebook, WindowPorts& window)
{
    try {
        const std::unique_ptr<Connection> connection = notebook.connect();
        const std::vector<std::u16string> columns = columnsOf(*connection, notebook.dbTable);
        setFields(notebook, window, columns);
        if (columns.size() < kSnippetColumns && upgradeTable(notebook, window, *connection, columns))
            setFields(notebook, window, columnsOf(*connection, notebook.dbTable));
        return true;
    } catch (const ProviderError& e) {
        notebook.status.failed(e.description + u" (" + text::decimal(e.number) + u")");
        return false;
    }
}

void toggleSearchField(WindowPorts& window, std::size_t index)
{
    MenuItem item = window.mnu_AvailFields.at(index);
    item.checked = !item.checked;
    window.mnu_AvailFields.set(index, item);
}

} // namespace vellums
