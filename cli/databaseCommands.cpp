#include "cli/databaseCommands.h"

#include "cli/output.h"
#include "cli/session.h"
#include "platform/files.h"
#include "store/databases/modCreateDB.h"
#include "store/databases/schema.h"
#include "text/decimal.h"
#include "text/path.h"
#include "text/pieces.h"

#include <algorithm>

namespace vellums::cli {
namespace {

void printResult(const jet::Result& result)
{
    if (!result.hasRows) {
        printLine(text::decimal(result.changedRows));
        return;
    }
    printFields(result.columns);
    for (const std::vector<Value>& row : result.rows)
        printRow(row);
}

// One statement for each line that is not empty.
std::vector<std::u16string> statementsFromInput()
{
    std::vector<std::u16string> statements;
    for (std::u16string& line : text::split(readInput(), u"\n")) {
        if (!line.empty() && line.back() == u'\r')
            line.pop_back();
        if (!text::trimBlanks(line).empty())
            statements.push_back(unescaped(line));
    }
    return statements;
}

} // namespace

void runCreate(const Arguments& arguments)
{
    const std::u16string& file = arguments.values[0];
    Session session(file);
    const std::u16string path = platform::absolutePath(file);
    const std::u16string table = arguments.table.value_or(newTableName(text::nameOf(path), false));
    session.notebook().provider->createDatabase(path, table);
}

void runTables(const Arguments& arguments)
{
    const Session session(arguments.values[0], arguments.password);
    const auto connection = session.open();
    const std::vector<SchemaTable> tables = connection->tables();
    const std::vector<std::u16string> snippets = snippetTables(*connection);
    printFields({u"TABLE_NAME", u"SNIPPET"});
    for (const SchemaTable& table : tables)
        if (table.type == u"TABLE")
            printRow({Value(table.name),
                Value(std::find(snippets.begin(), snippets.end(), table.name) != snippets.end())});
}

void runSql(const Arguments& arguments)
{
    const Session session(arguments.values[0], arguments.password);
    const auto connection = session.open();
    std::vector<std::u16string> statements(arguments.values.begin() + 1, arguments.values.end());
    if (statements.size() == 1 && statements[0] == u"-")
        statements = statementsFromInput();
    bool first = true;
    for (const std::u16string& statement : statements) {
        // Printed only once the statement is done: one that fails half way leaves no half of its rows in the
        // output.
        const jet::Result result = asProvider([&] { return connection->database().run(statement); });
        if (!first)
            printLine(u"");
        first = false;
        printResult(result);
    }
}

void runCheck(const Arguments& arguments)
{
    const Session session(arguments.values[0], arguments.password);
    const auto connection = session.open();
    const auto faults = asProvider([&] { return connection->database().check(); });
    // The faults are the result and go to standard output; that there are any is the failure.
    for (const std::u16string& fault : faults)
        printFields({fault});
    if (!faults.empty())
        throw Failure{text::decimal(static_cast<std::int64_t>(faults.size())) +
            (faults.size() == 1 ? u" fault found." : u" faults found.")};
}

void runCompact(const Arguments& arguments)
{
    const std::u16string file = platform::absolutePath(arguments.values[0]);
    const std::uint64_t before = platform::fileSize(file).value_or(0);
    EmbeddedProvider().compactInPlace(file, arguments.password);
    printFields({text::kilobytes(before) + u" -> " + text::kilobytes(platform::fileSize(file).value_or(0))});
}

} // namespace vellums::cli
