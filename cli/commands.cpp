// One row a command: its help, what it takes and what runs it come from this table, so none of them can be
// forgotten. The texts are shown as they stand here, and lines of details end in "\n".
#include "cli/commands.h"

#include "cli/databaseCommands.h"
#include "cli/importCommand.h"
#include "cli/noteCommands.h"

#include <algorithm>
#include <iterator>

namespace vellums::cli {
namespace {

// clang-format off
constexpr Command kCommands[] = {
    {u"create", u"FILE [--table NAME]", u"make a database with one empty snippet table",
     u"A name ending in .accdb gets the format of Access 2007, any other that of Access 2000.\n"
     u"Without --table the table is named after the file, up to its first dot.\n",
     u"--table", 1, 1, runCreate},
    {u"tables", u"FILE", u"list the tables",
     u"Columns TABLE_NAME and SNIPPET: -1 for a snippet table, 0 for any other.\n",
     u"--password", 1, 1, runTables},
    {u"sql", u"FILE STATEMENT...", u"run SQL statements",
     u"Prints the rows of a SELECT under their column names, and of any other statement the number\n"
     u"of rows it changed. The results of several statements stand apart by an empty line; the first\n"
     u"statement that fails ends the run, and those before it stay done.\n"
     u"With \"-\" as the only statement, statements are read from standard input, one per line, and\n"
     u"\\t \\n \\r \\\\ in them stand for tab, line feed, carriage return and backslash.\n",
     u"--password", 2, kAnyNumber, runSql},
    {u"check", u"FILE", u"check every structure of a database",
     u"Prints a line for each fault. Exit status 0: the file is sound; 1: it is not.\n",
     u"--password", 1, 1, runCheck},
    {u"compact", u"FILE", u"give back the room that changes have left in a database",
     u"Prints the size before and after. The file is checked first; a damaged one stays as it is.\n"
     u"Everything that other programs keep in it stays. Whatever happens, the file is the old one or\n"
     u"the compacted one.\n",
     u"--password", 1, 1, runCompact},
    {u"add", u"FILE [--title TITLE] [--table NAME]", u"add a record with the text of standard input",
     u"Prints the ID of the new record. Without --title the title is taken from the text.\n",
     u"--title --table --password", 1, 1, runAdd},
    {u"import", u"FILE PATH... [--no-backup] [--table NAME]", u"import text files and folders",
     u"Prints the ID and the path of each record as soon as it is safely stored. A folder is imported\n"
     u"with everything below it; then records with equal texts are removed, but for the oldest.\n"
     u"Files of other kinds are passed over. What cannot be read and what is larger than 512 KiB is\n"
     u"told on standard error and in the log beside the program; the exit status is then 1. Before\n"
     u"records are removed the database is copied to FILE.bak; where it cannot be copied, they stay.\n"
     u"  --no-backup    remove them without a copy\n",
     u"--no-backup --table --password", 2, kAnyNumber, runImport},
    {u"search", u"FILE [WORDS...] [--titles-only] [--by-title] [--ascending] [--table NAME]",
     u"list the records that hold the words in this order",
     u"Looks in titles, texts and source paths; without words it lists every record. Columns ID and\n"
     u"VLHEAD: sticky records first, then the newest, 32767 at most. \"*\" stands for anything.\n"
     u"  --titles-only  look in titles and source paths only\n"
     u"  --by-title     sort by title, then by date\n"
     u"  --ascending    oldest first\n",
     u"--titles-only --by-title --ascending --table --password", 1, kAnyNumber, runSearch},
    {u"show", u"FILE ID [--table NAME]", u"print one record",
     u"All columns under their names.\n",
     u"--table --password", 2, 2, runShow},
    {u"dedupe", u"FILE [--no-backup] [--table NAME]", u"remove records whose text another, older record has",
     u"Records are compared by their digests. The database is first copied to FILE.bak; where it cannot\n"
     u"be copied, nothing is removed.\n"
     u"  --no-backup    do without the copy\n",
     u"--no-backup --table --password", 1, 1, runDedupe},
    {u"digest", u"TEXTFILE", u"print the digest of a text file",
     u"The digest that a record with exactly this text would have: MD5 of the low byte of each\n"
     u"character.\n",
     u"", 1, 1, runDigest},
    {u"find", u"TEXTFILE PATTERN", u"list where a regular expression occurs in a text file",
     u"Columns position (characters from the start of the text, counted from 0) and match, as the find box\n"
     u"of the window lists them: upper and lower case are alike, no match reaches beyond its line, empty\n"
     u"ones are left out, 32767 at most are listed. What cannot be listed because it stands beyond column\n"
     u"32767 of its line, or takes too many steps to find, ends the list early; standard error tells.\n",
     u"", 2, 2, runFind},
};
// clang-format on

constexpr std::u16string_view kEverywhere = u"--help -h --code-page";

// A blank on both sides, so that no option is found within the name of another.
bool listed(std::u16string_view options, std::u16string_view option)
{
    const std::u16string wanted = u" " + std::u16string(option) + u" ";
    return (u" " + std::u16string(options) + u" ").find(wanted) != std::u16string::npos;
}

} // namespace

std::span<const Command> commands()
{
    return kCommands;
}

const Command* findCommand(std::u16string_view name)
{
    const auto found = std::find_if(
        std::begin(kCommands), std::end(kCommands), [name](const Command& c) { return c.name == name; });
    return found == std::end(kCommands) ? nullptr : found;
}

bool takesOption(const Command& command, std::u16string_view option)
{
    return listed(kEverywhere, option) || listed(command.options, option);
}

std::u16string generalHelp()
{
    constexpr std::size_t kColumn = 10;
    std::u16string help = u"vellums-cli - notes kept in Access databases (.mdb, .accdb)\n\n"
                          u"Usage: vellums-cli COMMAND FILE ...\n\nCommands:\n";
    for (const Command& command : kCommands)
        help += u"  " + std::u16string(command.name) + std::u16string(kColumn - command.name.size(), u' ') +
            std::u16string(command.summary) + u"\n";
    return help +
        u"\nOptions of every command:\n"
        u"  --help         explain the command\n"
        u"  --code-page N  code page of text files without a mark (default: UTF-8; on Windows it is\n"
        u"                 the system's)\n"
        u"  --             what follows is no option\n"
        u"Option of those that work on a database made before:\n"
        u"  --password P   its password; encrypted databases are not opened by one\n\n"
        u"Texts are UTF-8. Rows are separated by tabs under a line of column names; \\t \\n \\r \\\\ stand\n"
        u"for tab, line feed, carriage return and backslash, \\N for no value.\n"
        u"The program's own engine serves every database, whether Access is installed or not.\n"
        u"Exit status: 0 done, 1 failed (a line on standard error says why), 2 wrong usage.\n";
}

std::u16string helpOf(const Command& command)
{
    const std::u16string name(command.name);
    return u"Usage: vellums-cli " + name + u" " + std::u16string(command.usage) + u"\n\n" + name + u": " +
        std::u16string(command.summary) + u".\n" + std::u16string(command.details);
}

} // namespace vellums::cli
