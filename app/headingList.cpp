#include "app/headingList.h"

#include "store/connectionString.h"
#include "store/records/headingQuery.h"
#include "text/decimal.h"

namespace vellums {
namespace {

std::u16string databaseName(const Notebook& notebook)
{
    return getConnPart(notebook, notebook.dbConn, ConnPart::FileName);
}

HeadingQuery queryOf(const Notebook& notebook, const CheckItem& chkSort, const SearchPorts& search)
{
    HeadingQuery query;
    query.table = notebook.dbTable;
    query.pattern = searchPattern(search.txtKey.text());
    query.byTitle = search.mnu_SortOnTitle.checked();
    query.ascending = chkSort.checked();
    for (std::size_t i = 0; i < search.mnu_AvailFields.size(); ++i)
        if (search.mnu_AvailFields.at(i).checked)
            query.columns.push_back(search.mnu_AvailFields.at(i).tag);
    return query;
}

} // namespace

std::vector<int> entriesOf(const ListBox& lstHeads, const std::set<std::int32_t>& ids)
{
    std::vector<int> entries;
    for (int i = 0; i < lstHeads.count(); ++i)
        if (ids.contains(lstHeads.datum(i)))
            entries.push_back(i);
    return entries;
}

std::u16string windowCaption(const Notebook& notebook)
{
    return u"Vellums - <" + databaseName(notebook) + u" - " + notebook.dbTable + u">";
}

std::u16string foundText(const Notebook& notebook, int count)
{
    const std::u16string number = text::decimal(count);
    const std::u16string place = databaseName(notebook) + u" - " + notebook.dbTable;
    return notebook.say(number + u" record" + (count > 1 ? u"s" : u"") + u" found in " + place + u".",
        u"搜索到 " + number + u" 条记录 (" + place + u")");
}

bool dbQuery(const Notebook& notebook, const ListPorts& list, const SearchPorts& search,
    const std::function<bool()>& giveUp)
{
    list.caption.setText(windowCaption(notebook));
    try {
        std::vector<ListEntry> entries;
        const std::unique_ptr<Connection> connection = notebook.connect();
        connection->stopWhen(giveUp);
        const auto rows = connection->query(headingStatement(queryOf(notebook, list.chkSort, search)));
        while (rows->next()) {
            const auto* id = std::get_if<std::int32_t>(&rows->value(0));
            entries.push_back({textOf(rows->value(1)), id == nullptr ? 0 : *id});
        }
        // Asked once more before the list is touched: filling it takes long, too, and cannot be given up half
        // way.
        if (giveUp && giveUp())
            return false;
        list.lstHeads.fill(entries);
        return true;
    } catch (const ProviderError& e) {
        // Given up by request, which is no failure and says nothing.
        if (e.number == kOperationCanceled && giveUp)
            return false;
        notebook.status.failed(u"dbQuery: " + reasonOf(e));
        return false;
    }
}

} // namespace vellums
