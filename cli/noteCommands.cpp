// The commands on records. Each opens the file anew and calls the routine that the window calls; what it adds
// is the form of a command line: texts come in with any line ends, rows go out a line each, and what a
// routine tells in the status panel becomes the line printed, or the failure.
#include "cli/noteCommands.h"

#include "cli/output.h"
#include "cli/session.h"
#include "cli/terminalProgress.h"
#include "formats/modTextUTF.h"
#include "maint/delDupRec.h"
#include "platform/sharedFile.h"
#include "search/occurrences.h"
#include "store/databases/schema.h"
#include "store/records/headingQuery.h"
#include "store/records/records.h"
#include "store/snippetTable.h"
#include "text/clsMD5.h"
#include "text/decimal.h"
#include "text/pieces.h"

namespace vellums::cli {
namespace {

using text::replaceAll;

// Any line end as CR LF, as the texts of records have it.
std::u16string withLineEnds(std::u16string_view text)
{
    return replaceAll(replaceAll(replaceAll(text, u"\r\n", u"\n"), u"\r", u"\n"), u"\n", u"\r\n");
}

// The searched columns that the table has, in its order.
std::vector<std::u16string> searchedColumns(
    Connection& connection, const std::u16string& table, bool titlesOnly)
{
    std::vector<std::u16string> columns;
    for (const std::u16string& name : columnNames(connection, table)) {
        const SnippetColumn* const column = snippetColumn(name);
        if (column != nullptr && column->searched && !(titlesOnly && name == kTextColumn))
            columns.push_back(name);
    }
    return columns;
}

void printAll(Recordset& rows)
{
    printFields(rows.columns());
    while (rows.next()) {
        std::vector<Value> values;
        for (std::size_t i = 0; i < rows.columns().size(); ++i)
            values.push_back(rows.value(i));
        printRow(values);
    }
}

std::u16string readText(const std::u16string& path)
{
    // The reader gives an empty text for a missing file as for an empty one; opening it tells them apart.
    if (!platform::SharedFile::open(path, platform::SharedFile::Mode::Read))
        throw Failure{u"File can't be read: " + path};
    formats::Encoding encoding = formats::Encoding::Detect;
    const std::u16string text = formats::readTextFile(path, encoding);
    if (encoding == formats::Encoding::Utf32Le || encoding == formats::Encoding::Utf32Be)
        throw Failure{u"File is in UTF-32, which is not supported: " + path};
    return text;
}

} // namespace

void runAdd(const Arguments& arguments)
{
    Session session(arguments.values[0], arguments.password);
    session.chooseTable(arguments.table);
    NewRecord record;
    record.text = withLineEnds(readInput());
    if (arguments.title)
        record.title = withLineEnds(*arguments.title);
    const auto added = addRecord(session.notebook(), record);
    if (!added)
        session.fail();
    printLine(text::decimal(added->id));
}

void runSearch(const Arguments& arguments)
{
    Session session(arguments.values[0], arguments.password);
    session.chooseTable(arguments.table);
    std::u16string words;
    for (std::size_t i = 1; i < arguments.values.size(); ++i)
        words += (i == 1 ? u"" : u" ") + arguments.values[i];
    const auto connection = session.open();
    HeadingQuery query;
    query.table = session.notebook().dbTable;
    query.columns = searchedColumns(*connection, query.table, arguments.titlesOnly);
    query.pattern = searchPattern(words);
    query.byTitle = arguments.byTitle;
    query.ascending = arguments.ascending;
    printAll(*connection->query(headingStatement(query)));
}

void runShow(const Arguments& arguments)
{
    const auto id = wholeNumber(arguments.values[1]);
    if (!id)
        throw UsageError{u"\"" + arguments.values[1] + u"\" is no ID."};
    Session session(arguments.values[0], arguments.password);
    session.chooseTable(arguments.table);
    const auto connection = session.open();
    const auto result = asProvider([&] {
        return connection->database().run(
            u"SELECT * FROM [" + session.notebook().dbTable + u"] WHERE ID=" + text::decimal(*id));
    });
    if (result.rows.empty())
        throw Failure{u"There is no record with the ID " + text::decimal(*id) + u"."};
    printFields(result.columns);
    printRow(result.rows[0]);
}

void runDedupe(const Arguments& arguments)
{
    Session session(arguments.values[0], arguments.password);
    session.chooseTable(arguments.table);
    TerminalProgress progress;
    const Duplicates duplicates =
        delDupRec(session.notebook(), progress.bulkUser(!arguments.noBackup, u"duplicates removed"));
    progress.clear();
    if (!duplicates.withoutCopy.empty())
        throw Failure{session.outcome().line(false) + u"; --no-backup does without a copy."};
    if (!duplicates.done)
        session.fail();
    if (!session.outcome().isEmpty())
        printLine(session.outcome().line(false));
}

void runDigest(const Arguments& arguments)
{
    printLine(text::clsMD5().MD5(readText(arguments.values[0])));
}

void runFind(const Arguments& arguments)
{
    // A pattern that is none has no result at all and is a failed operation; a search that ended early has
    // one.
    constexpr std::int32_t kFirstOfBadPatterns = 5016;
    constexpr std::int32_t kNestedTooDeeply = 28;
    const Occurrences found = findOccurrences(readText(arguments.values[0]), arguments.values[1]);
    const std::u16string reason = !found.ending
        ? u""
        : found.ending->description + u" (" + text::decimal(found.ending->number) + u")" +
            (!found.ending->position ? u""
                                     : u" at character " +
                        text::decimal(static_cast<std::int64_t>(*found.ending->position) + 1) +
                        u" of the pattern");
    if (found.ending &&
        (found.ending->number >= kFirstOfBadPatterns || found.ending->number == kNestedTooDeeply))
        throw Failure{reason};
    printFields({u"position", u"match"});
    for (const Occurrence& occurrence : found.list)
        printFields({text::decimal(occurrence.position), occurrence.text});
    if (found.ending)
        complain(u"vellums-cli: The list ends early: " + reason);
}

} // namespace vellums::cli
