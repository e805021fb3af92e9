#include "search/searchFields.h"

#include "store/databases/schema.h"
#include "store/snippetTable.h"

#include <iterator>

namespace vellums {
namespace {

// One array of entries holds the columns of whatever table is current: the tag is the column, the check mark
// says whether it is searched, and only that of the text can be seen and changed.
void setField(const Notebook& notebook, MenuItems& fields, std::size_t index, const std::u16string& column)
{
    MenuItem item = index < fields.size() ? fields.at(index) : MenuItem();
    item.visible = false;
    item.tag = column;
    const SnippetColumn* const known = snippetColumn(column);
    if (known != nullptr && known->searched)
        item.checked = true;
    if (column == kTextColumn) {
        item.caption = notebook.say(u"Full Text Search", u"全文搜索");
        item.visible = true;
    }
    fields.set(index, item);
}

void setFields(const Notebook& notebook, MenuItems& fields, const std::vector<std::u16string>& columns)
{
    for (std::size_t i = 0; i < columns.size(); ++i)
        setField(notebook, fields, i, columns[i]);
    // Entries of a wider table before this one keep their state, but nobody sees them.
    for (std::size_t i = columns.size(); i < fields.size(); ++i) {
        MenuItem item = fields.at(i);
        item.visible = false;
        fields.set(i, item);
    }
}

// Adds what a table of an old version lacks; any other table is left as it is. True: columns were added.
bool upgradeTable(
    const Notebook& notebook, Connection& connection, const std::vector<std::u16string>& columns)
{
    int version = kSnippetVersion - 1;
    while (version > 0 && columns != snippetColumnNames(version))
        --version;
    if (version == 0) {
        notebook.status.done(
            notebook.say(u"The table " + notebook.dbTable + u" is no snippet table; it is left as it is.",
                u"数据表 " + notebook.dbTable + u" 不是摘录表, 未作修改"));
        return false;
    }
    for (const SnippetColumn& column : kSnippetColumns) {
        if (column.since <= version)
            continue;
        const std::u16string name(column.name);
        if (const std::int32_t number = addSnippetColumn(connection, notebook.dbTable, column); number != 0)
            throw ProviderError(notebook.say(u"The field " + name + u" could not be added to the table.",
                                    u"无法为数据表添加字段 " + name),
                number);
    }
    return true;
}

} // namespace

bool rebuildSearchFields(const Notebook& notebook, MenuItems& mnu_AvailFields, ListBox& lstHeads)
{
    try {
        const std::unique_ptr<Connection> connection = notebook.connect();
        const std::vector<std::u16string> columns = columnNames(*connection, notebook.dbTable);
        setFields(notebook, mnu_AvailFields, columns);
        // Counting is enough to know that columns lack; which ones is looked at before anything is added.
        if (columns.size() < std::size(kSnippetColumns) && upgradeTable(notebook, *connection, columns)) {
            lstHeads.setTag(u"1");
            setFields(notebook, mnu_AvailFields, columnNames(*connection, notebook.dbTable));
        }
        return true;
    } catch (const ProviderError& e) {
        notebook.status.failed(reasonOf(e));
        return false;
    }
}

void toggleSearchField(MenuItems& mnu_AvailFields, std::size_t index)
{
    MenuItem item = mnu_AvailFields.at(index);
    item.checked = !item.checked;
    mnu_AvailFields.set(index, item);
}

} // namespace vellums
