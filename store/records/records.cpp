// Every statement of a single record is made here, as text, and is the same for each provider. Values stand
// in it quoted; dates as sqlDate() writes them, which every locale reads alike.
//
// A step that takes several statements is made whole by hand, as not every provider can take statements back:
// what the first one did is undone when the second one fails (copyRecord), and where even that fails, or
// cannot be tried, HalfDone has the bulk act give up what is not lasting yet.
#include "store/records/records.h"

#include "platform/clock.h"
#include "platform/files.h"
#include "store/records/sqlText.h"
#include "store/snippetTable.h"
#include "text/clsMD5.h"
#include "text/decimal.h"
#include "text/oleDate.h"
#include "text/pieces.h"
#include "text/textCleanup.h"
#include "text/titles.h"

#include <cassert>
#include <functional>

namespace vellums {
namespace {

using text::decimal;
using text::replaceAll;

constexpr std::u16string_view kLineEnd = u"\r\n";

std::u16string labelWithId(std::u16string_view routine, std::int32_t id)
{
    return std::u16string(routine) + u" - " + decimal(id) + u" > ";
}

// Opens a connection and does the work on it; a failure becomes one line in the panel. False: failed.
template <typename Work>
bool reporting(const Notebook& notebook, std::u16string_view label, Work&& work)
{
    try {
        const std::unique_ptr<Connection> connection = notebook.connect();
        work(*connection);
        return true;
    } catch (const ProviderError& e) {
        notebook.status.failed(std::u16string(label) + reasonOf(e));
        return false;
    }
}

// All columns that a new record is given, in their order.
const std::u16string& columnList()
{
    static const std::u16string list = [] {
        std::u16string names;
        for (const SnippetColumn& column : kSnippetColumns)
            if (column.kind != SnippetKind::Counter)
                names.append(names.empty() ? u"" : u", ").append(column.name);
        return names;
    }();
    return list;
}

std::u16string whereId(std::int32_t id)
{
    return u" WHERE ID=" + decimal(id);
}

std::int32_t lastIdentity(Connection& connection)
{
    const auto rows = connection.query(u"SELECT @@IDENTITY");
    if (!rows->next())
        return 0;
    // A 32-bit number from Access files; servers give a decimal, whose lowest word is the last.
    if (const auto* number = std::get_if<std::int32_t>(&rows->value(0)))
        return *number;
    const auto* wide = std::get_if<jet::Decimal>(&rows->value(0));
    return wide != nullptr && wide->scale == 0 ? static_cast<std::int32_t>(wide->magnitude[3]) : 0;
}

std::u16string stampNow()
{
    const text::LocalTime now = platform::localNow();
    return decimal(now.year, 4) + decimal(now.month, 2) + decimal(now.day, 2) + decimal(now.hour, 2) +
        decimal(now.minute, 2) + decimal(now.second, 2);
}

ChangedRecords changeRecords(const Notebook& notebook, SafetyCopy copy, const std::vector<std::int32_t>& ids,
    const BulkUser& user, const std::function<void(Connection&, std::int32_t)>& change)
{
    ChangedRecords changed;
    changed.result = bulkAct(
        notebook, copy, ids.size(), user, [&](BulkStep& step) { change(step.connection, ids[step.index]); });
    assert(changed.result.done <= ids.size());
    changed.ids.assign(ids.begin(), ids.begin() + static_cast<std::ptrdiff_t>(changed.result.done));
    return changed;
}

// The one exit of a routine: a failure becomes one line in the panel.
ChangedRecords told(const Notebook& notebook, std::u16string_view label, ChangedRecords changed)
{
    if (changed.result.failed())
        notebook.status.failed(std::u16string(label) + changed.result.reason(notebook));
    return changed;
}

// A record whose source is still there gets the date of that file.
void returnToDateOfSource(Connection& connection, const std::u16string& table, std::int32_t id)
{
    const auto rows = connection.query(u"SELECT VLLINK FROM " + table + whereId(id));
    const std::u16string link = rows->next() ? textOf(rows->value(0)) : std::u16string();
    const auto modified =
        link.empty() || !platform::fileExists(link) ? std::nullopt : platform::fileModified(link);
    if (modified)
        connection.execute(u"UPDATE " + table + u" SET VLDATE='" + sqlDate(*modified) + u"'" + whereId(id));
}

void unstick(Connection& connection, const std::u16string& table, std::int32_t id)
{
    connection.execute(u"UPDATE " + table + u" SET VLTYPE=''" + whereId(id));
    try {
        returnToDateOfSource(connection, table, id);
    } catch (const ProviderError& e) {
        throw HalfDone(e);
    }
}

// A copy that could not be dated is taken away again. False: the record is gone, and there is no copy.
bool copyRecord(
    Connection& connection, const std::u16string& source, const std::u16string& target, std::int32_t id)
{
    const std::u16string columns = columnList();
    const std::int32_t count = connection.execute(u"INSERT INTO [" + target + u"] (" + columns +
        u") SELECT " + columns + u" FROM [" + source + u"]" + whereId(id));
    if (count == 0)
        return false;
    std::int32_t copy = 0;
    try {
        copy = lastIdentity(connection);
        connection.execute(u"UPDATE [" + target + u"] SET VLDATE = '" + sqlNow() + u"'" + whereId(copy));
        return true;
    } catch (const ProviderError& e) {
        if (copy == 0)
            throw HalfDone(e);
        try {
            delRecord(connection, target, copy);
        } catch (const ProviderError&) {
            throw HalfDone(e);
        }
        throw;
    }
}

} // namespace

void delRecord(Connection& connection, const std::u16string& table, std::int32_t id)
{
    connection.execute(u"DELETE FROM [" + table + u"]" + whereId(id));
}

AddedRecord addRecord(Connection& connection, const std::u16string& table, const NewRecord& record)
{
    // The digest is that of the text as it is stored; the title is taken from the text as it came.
    const std::u16string body = text::cleanBody(record.text);
    std::u16string title = replaceAll(record.title, kLineEnd, u"");
    if (title.empty())
        title = text::titleOf(record.text);
    connection.execute(u"INSERT INTO [" + table + u"] (" + columnList() + u") VALUES ('" + sqlQuoted(title) +
        u"', '" + sqlQuoted(body) + u"','', '" + sqlNow() + u"', '" + sqlQuoted(record.link) + u"', '" +
        text::clsMD5().MD5(body) + u"')");
    return {lastIdentity(connection), title};
}

std::optional<AddedRecord> addRecord(const Notebook& notebook, const NewRecord& record)
{
    AddedRecord added;
    if (!reporting(notebook, u"addRecord - ",
            [&](Connection& connection) { added = addRecord(connection, notebook.dbTable, record); }))
        return std::nullopt;
    return added;
}

Saved modRecord(const Notebook& notebook, std::int32_t id, const std::u16string& title,
    const std::u16string& text, const std::u16string& stamp)
{
    std::int32_t changed = 0;
    const bool done = reporting(notebook, u"modRecord - ", [&](Connection& connection) {
        const std::u16string body = text::cleanBody(text);
        changed = connection.execute(u"UPDATE [" + notebook.dbTable + u"] SET VLHEAD='" +
            sqlQuoted(replaceAll(title, kLineEnd, u"")) + u"', VLTEXT='" + sqlQuoted(body) + u"', VLTYPE='" +
            sqlQuoted(stamp) + u"', VLDATE='" + sqlNow() + u"', VLMD5='" + text::clsMD5().MD5(body) + u"'" +
            whereId(id));
    });
    if (!done)
        return Saved::Failed;
    return changed == 0 ? Saved::Gone : Saved::Yes;
}

bool dupRecord(const Notebook& notebook, std::int32_t id)
{
    return reporting(notebook, labelWithId(u"dupRecord", id), [&](Connection& connection) {
        // Columns are matched by their names; ID is left out and counted on.
        connection.execute(u"INSERT INTO [" + notebook.dbTable + u"] SELECT " + columnList() + u" FROM [" +
            notebook.dbTable + u"]" + whereId(id));
    });
}

ChangedRecords delRecords(
    const Notebook& notebook, const std::vector<std::int32_t>& ids, const BulkUser& user)
{
    return told(notebook, u"delRecord - ", deleteRecords(notebook, ids, user, SafetyCopy::OfMany));
}

ChangedRecords deleteRecords(
    const Notebook& notebook, const std::vector<std::int32_t>& ids, const BulkUser& user, SafetyCopy copy)
{
    return changeRecords(notebook, copy, ids, user,
        [&](Connection& connection, std::int32_t id) { delRecord(connection, notebook.dbTable, id); });
}

std::optional<SnippetRecord> getRecText(const Notebook& notebook, std::int32_t id)
{
    std::optional<SnippetRecord> record;
    const bool done = reporting(notebook, labelWithId(u"getRecText", id),
        [&](Connection& connection) { record = getRecText(connection, notebook.dbTable, id); });
    if (done && !record)
        notebook.status.failed(
            notebook.say(u"getRecText - " + decimal(id) + u" > There is no such record any more.",
                u"getRecText - " + decimal(id) + u" > 该记录已不存在"));
    return record;
}

std::optional<SnippetRecord> getRecText(Connection& connection, const std::u16string& table, std::int32_t id)
{
    const auto rows = connection.query(u"SELECT * FROM [" + table + u"]" + whereId(id));
    if (!rows->next())
        return std::nullopt;
    SnippetRecord record;
    record.id = id;
    for (std::size_t i = 0; i < rows->columns().size(); ++i) {
        const std::u16string& column = rows->columns()[i];
        const Value& value = rows->value(i);
        if (column == kHeadColumn)
            record.head = textOf(value);
        else if (column == kTextColumn)
            record.text = textOf(value);
        else if (column == kTypeColumn)
            record.type = textOf(value);
        else if (column == kLinkColumn)
            record.link = textOf(value);
        else if (column == kMd5Column)
            record.md5 = textOf(value);
        else if (const auto* date = std::get_if<jet::Date>(&value); date != nullptr && column == kDateColumn)
            record.date = date->days;
    }
    return record;
}

ChangedRecords setStickyRecs(
    const Notebook& notebook, const std::vector<std::int32_t>& ids, const BulkUser& user)
{
    return told(notebook, u"setStickyRecs - ",
        changeRecords(notebook, SafetyCopy::OfMany, ids, user, [&](Connection& connection, std::int32_t id) {
            connection.execute(
                u"UPDATE [" + notebook.dbTable + u"] SET VLTYPE='" + stampNow() + u"'" + whereId(id));
        }));
}

ChangedRecords ClearStickyRecs(
    const Notebook& notebook, const std::vector<std::int32_t>& ids, const BulkUser& user)
{
    return told(notebook, u"ClearStickyRecs - ",
        changeRecords(notebook, SafetyCopy::OfMany, ids, user, [&](Connection& connection, std::int32_t id) {
            unstick(connection, u"[" + notebook.dbTable + u"]", id);
        }));
}

ChangedRecords copyRecords(const Notebook& notebook, const std::u16string& target,
    const std::vector<std::int32_t>& ids, const BulkUser& user)
{
    std::vector<std::size_t> gone;
    std::size_t place = 0;
    ChangedRecords copied =
        changeRecords(notebook, SafetyCopy::None, ids, user, [&](Connection& connection, std::int32_t id) {
            if (!copyRecord(connection, notebook.dbTable, target, id))
                gone.push_back(place);
            ++place;
        });
    // From the last on, so that the places before it stay valid.
    for (auto at = gone.rbegin(); at != gone.rend(); ++at)
        if (*at < copied.ids.size())
            copied.ids.erase(copied.ids.begin() + static_cast<std::ptrdiff_t>(*at));
    return copied;
}

MovedRecords moveRecords(const Notebook& notebook, const std::u16string& target,
    const std::vector<std::int32_t>& ids, const BulkUser& user)
{
    MovedRecords moved;
    moved.copied.result = copyBefore(notebook, SafetyCopy::OfMany, ids.size(), user);
    if (!moved.copied.whole())
        return moved;
    moved.copied = copyRecords(notebook, target, ids, user);
    // What was copied is deleted also after a Stop, which meant the rest.
    BulkUser watching = user;
    if (user.goesOn)
        watching.goesOn = [&](std::size_t done, std::size_t total) {
            user.goesOn(done, total);
            return true;
        };
    moved.deleted = deleteRecords(notebook, moved.copied.ids, watching, SafetyCopy::None);
    return moved;
}

} // namespace vellums
