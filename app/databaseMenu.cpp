#include "app/databaseMenu.h"

#include "platform/files.h"
#include "store/connectionString.h"
#include "store/databases/accessFile.h"
#include "store/databases/schema.h"
#include "text/letterCase.h"
#include "text/path.h"
#include "text/pieces.h"

namespace vellums {
namespace {

constexpr std::u16string_view kBetween = u" - "; // file and table in a caption

// Letter case counts in paths where "/" divides them.
bool samePath(const std::u16string& a, const std::u16string& b)
{
    return platform::separator() == u'/' ? a == b : text::equalNoCase(a, b);
}

bool isOpen(const Notebook& notebook, const std::u16string& path, const std::u16string& table)
{
    return samePath(getConnPart(notebook, notebook.dbConn, ConnPart::FullPath), path) &&
        text::equalNoCase(notebook.dbTable, table);
}

// A connection string for a file of a foreign extension names the sample file instead, which must not
// be offered under the wrong name. The older provider's strings name it for every file.
bool canBeNamed(const Notebook& notebook, const std::u16string& path)
{
    return notebook.providerId == u"103" || fileOf(connectionStringFor(notebook, path)) == path;
}

std::vector<std::u16string> snippetTablesOf(const Notebook& notebook, const std::u16string& connectionString)
{
    try {
        return snippetTables(*notebook.connect(connectionString));
    } catch (const ProviderError&) {
        return {};
    }
}

// Puts the entries into the array; those that are left over from before are hidden.
void fillMenu(MenuItems& menu, const std::vector<MenuItem>& items)
{
    for (std::size_t i = 0; i < items.size(); ++i)
        menu.set(i, items[i]);
    for (std::size_t i = items.size(); i < menu.size(); ++i)
        menu.set(i, {});
}

} // namespace

void buildDatabaseMenu(const Notebook& notebook, MenuItems& mnu_availdb, Switchable& mnu_switchto)
{
    std::vector<MenuItem> items;
    for (const std::u16string& name : text::split(getDataBaseList(notebook, {}), u"\r\n")) {
        const std::u16string path = platform::inFolder(notebook.dbParent, name);
        if (name.empty() || !looksLikeAccessFile(path) || !canBeNamed(notebook, path))
            continue;
        for (const auto& table : snippetTablesOf(notebook, connectionStringFor(notebook, path))) {
            MenuItem item;
            item.caption = name;
            item.caption.append(kBetween).append(table);
            item.tag = path;
            item.checked = isOpen(notebook, path, table);
            item.visible = true;
            items.push_back(std::move(item));
        }
    }
    fillMenu(mnu_availdb, items);
    mnu_switchto.setEnabled(!items.empty());
}

void markOpenDatabase(const Notebook& notebook, MenuItems& mnu_availdb)
{
    for (std::size_t i = 0; i < mnu_availdb.size(); ++i) {
        MenuItem item = mnu_availdb.at(i);
        const std::optional<std::u16string> table = tableOfEntry(item);
        item.checked = item.visible && table && isOpen(notebook, item.tag, *table);
        mnu_availdb.set(i, item);
    }
}

std::optional<std::u16string> tableOfEntry(const MenuItem& item)
{
    // Both names may hold the separator themselves; the file's is known.
    const std::u16string beginning = std::u16string(text::nameOf(item.tag)).append(kBetween);
    if (item.caption.starts_with(beginning))
        return item.caption.substr(beginning.size());
    const std::size_t at = item.caption.rfind(kBetween);
    if (at == std::u16string::npos)
        return std::nullopt;
    return item.caption.substr(at + kBetween.size());
}

void buildTableMenu(const Notebook& notebook, MenuItems& mnu_avtables, Switchable& mnu_moverec)
{
    std::vector<MenuItem> items;
    for (const std::u16string& table : snippetTablesOf(notebook, notebook.dbConn)) {
        if (text::equalNoCase(table, notebook.dbTable))
            continue;
        MenuItem item;
        item.caption = item.tag = table;
        item.visible = true;
        items.push_back(std::move(item));
    }
    fillMenu(mnu_avtables, items);
    mnu_moverec.setEnabled(!items.empty());
}

} // namespace vellums
