#include "store/records.h"

#include "io/textCleanup.h"
#include "maint/clsMD5.h"
#include "platform/clock.h"
#include "platform/files.h"
#include "platform/text.h"
#include "store/batches.h"
#include "store/sqlText.h"

#include <algorithm>

namespace vellums {
namespace {

using platform::decimal;
using platform::replaceAll;

constexpr std::u16string_view kLineEnd = u"\r\n";
constexpr std::u16string_view kSubject = u"主题:";
constexpr std::size_t kLongestFirstLine = 50;
constexpr std::u16string_view kColumns = u"VLHEAD, VLTEXT, VLTYPE, VLDATE, VLLINK, VLMD5";

std::u16string errorLine(std::u16string_view label, const ProviderError& error)
{
    return std::u16string(label) + error.description + u" (" + decimal(error.number) + u")";
}

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
        notebook.status.failed(errorLine(label, e));
        return false;
    }
}

std::u16string whereId(std::int32_t id)
{
    return u" WHERE ID=" + decimal(id);
}

std::u16string textOf(const Value& value)
{
    const auto* text = std::get_if<std::u16string>(&value);
    return text == nullptr ? std::u16string() : *text;
}

std::int32_t lastIdentity(Connection& connection)
{
    const auto rows = connection.query(u"SELECT @@IDENTITY");
    if (!rows->next())
        return 0;
    if (const auto* number = std::get_if<std::int32_t>(&rows->value(0)))
        return *number;
    const auto* wide = std::get_if<jet::Decimal>(&rows->value(0)); // of a server
    return wide != nullptr && wide->scale == 0 ? static_cast<std::int32_t>(wide->magnitude[3]) : 0;
}

std::u16string stampNow()
{
    const platform::LocalTime now = platform::localNow();
    return decimal(now.year, 4) + decimal(now.month, 2) + decimal(now.day, 2) + decimal(now.hour, 2) +
        decimal(now.minute, 2) + decimal(now.second, 2);
}

// A mail's subject; empty when the text has none or begins with it.
std::u16string subjectOf(std::u16string_view text)
{
    const std::size_t at = text.find(kSubject);
    if (at == std::u16string_view::npos || at == 0)
        return {};
    const std::size_t end = text.find(kLineEnd, std::min(at + 5, text.size()));
    if (end == std::u16string_view::npos)
        return {};
    return std::u16string(text.substr(at + 4, end - at - 4));
}

} // namespace

std::u16string titleOf(std::u16string_view text)
{
    const std::u16string subject = subjectOf(text);
    if (!subject.empty())
        return subject;
    const std::size_t lineEnd = text.find(kLineEnd);
    const std::size_t length =
        lineEnd == std::u16string_view::npos || lineEnd > kLongestFirstLine ? kLongestFirstLine : lineEnd;
    return replaceAll(text.substr(0, length), kLineEnd, u"");
}

AddedRecord addRecord(Connection& connection, const std::u16string& table, const NewRecord& record)
{
    const std::u16string body = io::cleanBody(record.text);
    std::u16string title = record.title.value_or(u"");
    if (title.empty())
        title = sqlQuoted(titleOf(record.text));
    connection.execute(u"INSERT INTO [" + table +
        u"] (VLHEAD, VLTEXT, VLTYPE, VLDATE, VLLINK, VLMD5) VALUES ('" + title + u"', '" + sqlQuoted(body) +
        u"','', '" + sqlNow() + u"', '" + sqlQuoted(record.link) + u"', '" + maint::clsMD5().MD5(body) +
        u"')");
    return {lastIdentity(connection), replaceAll(title, u"''", u"'")};
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
        const std::u16string body = io::cleanBody(text);
        changed = connection.execute(u"UPDATE [" + notebook.dbTable + u"] SET VLHEAD='" +
            sqlQuoted(replaceAll(title, kLineEnd, u"")) + u"', VLTEXT='" + sqlQuoted(body) + u"', VLTYPE='" +
            sqlQuoted(stamp) + u"', VLDATE='" + sqlNow() + u"', VLMD5='" + maint::clsMD5().MD5(body) + u"'" +
            whereId(id));
    });
    if (!done)
        return Saved::Failed;
    return changed == 0 ? Saved::Gone : Saved::Yes;
}

bool dupRecord(const Notebook& notebook, std::int32_t id)
{
    return reporting(notebook, labelWithId(u"dupRecord", id), [&](Connection& connection) {
        connection.execute(u"INSERT INTO [" + notebook.dbTable + u"] SELECT " + std::u16string(kColumns) +
            u" FROM [" + notebook.dbTable + u"]" + whereId(id));
    });
}

bool delRecord(const Notebook& notebook, std::int32_t id)
{
    return delRecords(notebook, {id}) == 1;
}

std::size_t delRecords(const Notebook& notebook, const std::vector<std::int32_t>& ids)
{
    std::size_t deleted = 0;
    std::size_t lasting = 0;
    reporting(notebook, u"delRecord - ", [&](Connection& connection) {
        Batches batches(connection, [&] { lasting = deleted; });
        for (const std::int32_t id : ids) {
            batches.step();
            connection.execute(u"DELETE FROM [" + notebook.dbTable + u"]" + whereId(id));
            ++deleted;
        }
        batches.finish();
    });
    return lasting;
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
        if (column == u"VLHEAD")
            record.head = textOf(value);
        else if (column == u"VLTEXT")
            record.text = textOf(value);
        else if (column == u"VLTYPE")
            record.type = textOf(value);
        else if (column == u"VLLINK")
            record.link = textOf(value);
        else if (column == u"VLMD5")
            record.md5 = textOf(value);
        else if (const auto* date = std::get_if<jet::Date>(&value); date != nullptr && column == u"VLDATE")
            record.date = date->days;
    }
    return record;
}

bool setStickyRecs(const Notebook& notebook, const std::vector<std::int32_t>& ids)
{
    return reporting(notebook, u"setStickyRecs - ", [&](Connection& connection) {
        Batches batches(connection);
        for (const std::int32_t id : ids) {
            batches.step();
            connection.execute(
                u"UPDATE [" + notebook.dbTable + u"] SET VLTYPE='" + stampNow() + u"'" + whereId(id));
        }
        batches.finish();
    });
}

bool ClearStickyRecs(const Notebook& notebook, const std::vector<std::int32_t>& ids)
{
    return reporting(notebook, u"ClearStickyRecs - ", [&](Connection& connection) {
        Batches batches(connection);
        for (const std::int32_t id : ids) {
            batches.step();
            const std::u16string table = u"[" + notebook.dbTable + u"]";
            connection.execute(u"UPDATE " + table + u" SET VLTYPE=''" + whereId(id));
            const auto rows = connection.query(u"SELECT VLLINK FROM " + table + whereId(id));
            const std::u16string link = rows->next() ? textOf(rows->value(0)) : std::u16string();
            const auto modified =
                link.empty() || !platform::fileExists(link) ? std::nullopt : platform::fileModified(link);
            if (modified)
                connection.execute(
                    u"UPDATE " + table + u" SET VLDATE='" + sqlDate(*modified) + u"'" + whereId(id));
        }
        batches.finish();
    });
}

CopiedRecords copyRecords(
    const Notebook& notebook, const std::u16string& target, const std::vector<std::int32_t>& ids)
{
    CopiedRecords copied;
    std::vector<std::int32_t> written;
    copied.failed = !reporting(notebook, u"copyRecords - ", [&](Connection& connection) {
        const std::u16string columns(kColumns);
        Batches batches(connection, [&] { copied.ids = written; });
        for (const std::int32_t id : ids) {
            batches.step();
            const std::int32_t count = connection.execute(u"INSERT INTO [" + target + u"] (" + columns +
                u") SELECT " + columns + u" FROM [" + notebook.dbTable + u"]" + whereId(id));
            if (count == 0) // gone meanwhile
                continue;
            const std::int32_t copy = lastIdentity(connection);
            connection.execute(u"UPDATE [" + target + u"] SET VLDATE = '" + sqlNow() + u"'" + whereId(copy));
            written.push_back(id);
        }
        batches.finish();
    });
    return copied;
}

} // namespace vellums
