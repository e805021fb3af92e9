// The program as a person or a script runs it.
#include "platform/files.h"
#include "tests/support/lockedFile.h"
#include "tests/support/temporaryFolder.h"
#include "text/pieces.h"
#include "text/unicode.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cstdlib>

namespace vellums::cli {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

struct Outcome {
    int status = -1;
    std::string out;
    std::string err;
};

class Cli : public testing::Test {
protected:
    void SetUp() override
    {
        if (platform::separator() != u'/')
            GTEST_SKIP() << "driven through a shell, which is not at hand here";
        ASSERT_EQ(run({"create", "notes.mdb"}).status, 0);
    }

    // In the test's own folder.
    Outcome run(const std::vector<std::string>& words, const std::string& input = "")
    {
        folder_.write(u"input", input);
        std::string line =
            "cd '" + text::toUtf8(folder_.path()) + "' && '" VELLUMS_BINARY_DIR "/vellums-cli'";
        for (const std::string& word : words)
            line += " '" + text::toUtf8(text::replaceAll(text::fromUtf8(word), u"'", u"'\\''")) + "'";
        line += " < input > output 2> errors";
        const int status = std::system(line.c_str());
        return {
            status / 256, tests::bytesOf(folder_.file(u"output")), tests::bytesOf(folder_.file(u"errors"))};
    }
    std::string sql(const std::string& statement) { return run({"sql", "notes.mdb", statement}).out; }
    std::string path(const char* name) { return text::toUtf8(folder_.path()) + "/" + name; }

    void TearDown() override
    {
        if (platform::separator() != u'/')
            return;
        const Outcome checked = run({"check", "notes.mdb"});
        EXPECT_EQ(checked.status, 0) << checked.out << checked.err;
    }

    tests::TemporaryFolder folder_;
};

TEST_F(Cli, CreatesDatabasesAndListsTheirTables)
{
    EXPECT_EQ(run({"tables", "notes.mdb"}).out, "TABLE_NAME\tSNIPPET\nnotes\t-1\n");
    sql("CREATE TABLE [Tab le] (A INTEGER)");
    EXPECT_EQ(run({"tables", "notes.mdb"}).out, "TABLE_NAME\tSNIPPET\nnotes\t-1\nTab le\t0\n");
    EXPECT_EQ(run({"create", "x.accdb", "--table", "笔记"}).status, 0);
    EXPECT_EQ(run({"tables", "x.accdb"}).out, "TABLE_NAME\tSNIPPET\n笔记\t-1\n");

    const Outcome again = run({"create", "notes.mdb"});
    EXPECT_EQ(again.status, 1);
    EXPECT_EQ(again.out, "");
    EXPECT_EQ(std::count(again.err.begin(), again.err.end(), '\n'), 1);
}

TEST_F(Cli, TellsOfAJournalThatBelongsToSomethingElse)
{
    folder_.write(u"notes.mdb-journal", "somebody's notes");
    const Outcome told = run({"add", "notes.mdb"}, "one");
    EXPECT_EQ(told.out, "1\n");
    EXPECT_EQ(std::count(told.err.begin(), told.err.end(), '\n'), 1) << told.err;
    EXPECT_THAT(told.err, HasSubstr("notes.mdb-journal-unused1"));
    EXPECT_EQ(tests::bytesOf(folder_.file(u"notes.mdb-journal-unused1")), "somebody's notes");
    EXPECT_EQ(run({"show", "notes.mdb", "1"}).err, "");
}

TEST_F(Cli, CopiesAndDropsTables)
{
    EXPECT_EQ(run({"add", "notes.mdb"}, "one").out, "1\n");
    EXPECT_EQ(run({"add", "notes.mdb"}, "two").out, "2\n");
    EXPECT_EQ(sql("SELECT * INTO [it's new] FROM [notes]"), "2\n");
    EXPECT_EQ(sql("SELECT * INTO [empty] From [notes] WHERE 1=2"), "0\n");
    EXPECT_EQ(
        run({"show", "notes.mdb", "2", "--table", "it's new"}).out, run({"show", "notes.mdb", "2"}).out);
    EXPECT_EQ(run({"add", "notes.mdb", "--table", "empty"}, "first").out, "1\n");
    EXPECT_EQ(sql("DROP TABLE [it's new]"), "0\n");
    EXPECT_EQ(run({"tables", "notes.mdb"}).out, "TABLE_NAME\tSNIPPET\nnotes\t-1\nempty\t-1\n");
    for (const char* const refused :
        {"DROP TABLE [it's new]", "SELECT * INTO [empty] FROM [notes]", "DROP TABLE [MSysObjects]"}) {
        const Outcome outcome = run({"sql", "notes.mdb", refused});
        EXPECT_EQ(outcome.status, 1) << refused;
        EXPECT_EQ(std::count(outcome.err.begin(), outcome.err.end(), '\n'), 1) << outcome.err;
    }
}

TEST_F(Cli, AddsShowsAndSearchesRecords)
{
    EXPECT_EQ(run({"add", "notes.mdb"}, "Groceries\nmilk, it's\tfresh\\\n").out, "1\n");
    EXPECT_EQ(run({"add", "notes.mdb", "--title=it's a title"}, "\xEF\xBB\xBF中文 body").out, "2\n");
    const std::string shown = run({"show", "notes.mdb", "1"}).out;
    EXPECT_THAT(shown,
        StartsWith("ID\tVLHEAD\tVLTEXT\tVLTYPE\tVLDATE\tVLLINK\tVLMD5\n"
                   "1\tGroceries\tGroceries\\r\\nmilk, it's\\tfresh\\\\\t\t20"));
    EXPECT_EQ(std::count(shown.begin(), shown.end(), '\n'), 2);
    sql("UPDATE notes SET VLDATE='2001-2-3 4:5:6' WHERE ID=1");
    EXPECT_EQ(run({"search", "notes.mdb"}).out, "ID\tVLHEAD\n2\tit's a title\n1\tGroceries\n");
    EXPECT_EQ(run({"search", "notes.mdb", "--ascending"}).out, "ID\tVLHEAD\n1\tGroceries\n2\tit's a title\n");
    EXPECT_EQ(run({"search", "notes.mdb", "--by-title"}).out, "ID\tVLHEAD\n1\tGroceries\n2\tit's a title\n");
    EXPECT_EQ(run({"search", "notes.mdb", "MILK", "fresh"}).out, "ID\tVLHEAD\n1\tGroceries\n");
    EXPECT_EQ(run({"search", "notes.mdb", "fresh milk"}).out, "ID\tVLHEAD\n");
    EXPECT_EQ(run({"search", "notes.mdb", "中*body"}).out, "ID\tVLHEAD\n2\tit's a title\n");
    EXPECT_EQ(run({"search", "notes.mdb", "--titles-only", "body"}).out, "ID\tVLHEAD\n");
    EXPECT_EQ(run({"search", "notes.mdb", "--", "--by-title"}).out, "ID\tVLHEAD\n");
    EXPECT_EQ(run({"search", "notes.mdb", "it's"}).out, "ID\tVLHEAD\n2\tit's a title\n1\tGroceries\n");

    const Outcome unknown = run({"show", "notes.mdb", "7"});
    EXPECT_EQ(unknown.status, 1);
    EXPECT_EQ(unknown.out, "");
}

TEST_F(Cli, ShowsEveryKindOfValue)
{
    sql("CREATE TABLE v (a BYTE, b SHORT, c SINGLE, d DOUBLE, e CURRENCY, f DATETIME, g YESNO, h TEXT(20), i "
        "BINARY(4), j MEMO)");
    sql("INSERT INTO v VALUES (200, -3, 0.1, 1e100, -1234.5, '2024-3-5 9:7:3', True, 'a\tb', NULL, '')");
    EXPECT_EQ(sql("SELECT * FROM v"),
        "a\tb\tc\td\te\tf\tg\th\ti\tj\n"
        "200\t-3\t0.1\t1e+100\t-1234.5\t2024-03-05 09:07:03\t-1\ta\\tb\t\\N\t\n");
    EXPECT_EQ(sql("SELECT a FROM v WHERE 1=2"), "a\n");
}

TEST_F(Cli, RunsStatementsOnOneConnection)
{
    const Outcome two =
        run({"sql", "notes.mdb", "INSERT INTO notes (VLDATE) VALUES (1)", "SELECT @@IDENTITY"});
    EXPECT_EQ(two.out, "1\n\nExpr1000\n1\n");
    const Outcome lines = run({"sql", "notes.mdb", "-"},
        "UPDATE notes SET VLTEXT='a\\tb\\r\\nc\\\\d'\r\n\n  \nSELECT VLTEXT FROM notes\n");
    EXPECT_EQ(lines.out, "1\n\nVLTEXT\na\\tb\\r\\nc\\\\d\n");
    const Outcome failing =
        run({"sql", "notes.mdb", "DELETE FROM notes", "SELECT x FROM missing", "SELECT 1"});
    EXPECT_EQ(failing.status, 1);
    EXPECT_EQ(failing.out, "1\n");
    EXPECT_EQ(std::count(failing.err.begin(), failing.err.end(), '\n'), 1);
    EXPECT_EQ(sql("SELECT COUNT(*) AS n FROM notes"), "n\n0\n");
}

TEST_F(Cli, ImportsFilesAndFoldersAndSaysWhatItDid)
{
    folder_.write(u"in/a.txt", "same");
    folder_.write(u"in/sub/b\tc.txt", "same");
    folder_.write(u"in/sub/d.bin", "x");
    folder_.write(u"large.txt", std::string(600000, 'x'));
    const Outcome imported = run({"import", "notes.mdb", "in", "in/../in/a.txt", "large.txt"});
    EXPECT_EQ(imported.status, 1) << "not everything could be taken";
    EXPECT_THAT(imported.out, HasSubstr("\t" + path("in/a.txt") + "\n"));
    EXPECT_THAT(imported.out, HasSubstr("\t" + path("in/sub/b\\tc.txt") + "\n"));
    EXPECT_THAT(imported.out, HasSubstr("3\t" + path("in/a.txt") + "\n"));
    EXPECT_THAT(imported.err, HasSubstr("Over Sized:\t" + path("large.txt") + "\n"));
    EXPECT_EQ(sql("SELECT COUNT(*) AS n FROM notes"), "n\n2\n") << "the folder's duplicate is gone";

    platform::removeFile(folder_.file(u"notes.mdb.bak"));
    folder_.makeFolder(u"notes.mdb.bak");
    const Outcome refused = run({"dedupe", "notes.mdb"});
    EXPECT_EQ(refused.status, 1);
    EXPECT_THAT(refused.err, HasSubstr("No safety copy"));
    EXPECT_THAT(refused.err, HasSubstr("--no-backup"));
    EXPECT_EQ(sql("SELECT COUNT(*) AS n FROM notes"), "n\n2\n") << "nothing is removed";
    EXPECT_EQ(run({"dedupe", "--no-backup", "notes.mdb"}).out,
        "1 duplicate removed from total 2 records (50.00%).\n");
    EXPECT_EQ(run({"dedupe", "notes.mdb"}).out, "");

    const Outcome missing = run({"import", "notes.mdb", "none.txt", "in/a.txt"});
    EXPECT_EQ(missing.status, 1);
    EXPECT_EQ(missing.err, "File can't not be retrieved: " + path("none.txt") + "\n");
    EXPECT_THAT(missing.out, HasSubstr(path("in/a.txt"))) << "the rest is imported";
}

TEST_F(Cli, ReadsTextFilesInTheCodePage)
{
    folder_.write(u"a.txt", "\xD6\xD0");
    EXPECT_EQ(run({"import", "notes.mdb", "a.txt", "--code-page", "936"}).status, 0);
    EXPECT_EQ(sql("SELECT VLTEXT FROM notes"), "VLTEXT\n中\n");
    EXPECT_EQ(run({"digest", "a.txt", "--code-page", "936"}).out, "336d5ebc5436534e61d16e63ddfca327\n");
    EXPECT_EQ(run({"import", "notes.mdb", "a.txt", "--code-page", "77777"}).status, 2);
}

TEST_F(Cli, DigestsTheWholeTextAsItStands)
{
    folder_.write(u"a.txt", "abc");
    folder_.write(u"b.txt", " abc\n");
    EXPECT_EQ(run({"digest", "a.txt"}).out, "900150983cd24fb0d6963f7d28e17f72\n");
    EXPECT_NE(run({"digest", "b.txt"}).out, run({"digest", "a.txt"}).out);
    EXPECT_EQ(run({"digest", "none.txt"}).status, 1);
}

TEST_F(Cli, FindsInATextFileAndTellsWhyItEndsEarly)
{
    folder_.write(u"a.txt", "\xEF\xBB\xBFTax  rate\r\ncab ab\tx\r\n中文");
    const Outcome found = run({"find", "a.txt", "^ab|AB.x|文"});
    EXPECT_EQ(found.status, 0) << found.err;
    EXPECT_EQ(found.out, "position\tmatch\n15\tab\\tx\n22\t文\n");
    folder_.write(u"a.txt", "x\r\nabc" + std::string(40000, '-') + "abc\r\nabc");
    const Outcome far = run({"find", "a.txt", "abc"});
    EXPECT_EQ(far.status, 0);
    EXPECT_EQ(far.out, "position\tmatch\n3\tabc\n") << "the second stands too far right";
    EXPECT_EQ(far.err, "vellums-cli: The list ends early: Overflow (6)\n");
    const Outcome bad = run({"find", "a.txt", "ab(c"});
    EXPECT_EQ(bad.status, 1);
    EXPECT_EQ(bad.out, "");
    EXPECT_THAT(
        bad.err, HasSubstr("Expected ')' in regular expression (5020) at character 3 of the pattern"));
    EXPECT_EQ(run({"find", "none.txt", "a"}).status, 1);
}

TEST_F(Cli, ChecksFilesAndRefusesWhatIsNoDatabase)
{
    const std::string header("\0\1\0\0Standard Jet DB\0\1", 21);
    for (const std::string& bytes :
        {std::string(8192, 'x'), header + std::string(40000, 'x'), header, std::string()}) {
        folder_.write(u"junk.mdb", bytes);
        for (const char* command : {"tables", "check", "search", "add", "dedupe"}) {
            const Outcome junk = run({command, "junk.mdb"});
            EXPECT_EQ(junk.status, 1) << command;
            EXPECT_EQ(std::count(junk.err.begin(), junk.err.end(), '\n'), 1) << junk.err;
            EXPECT_EQ(run({command, "none.mdb"}).status, 1) << command;
        }
        EXPECT_EQ(tests::bytesOf(folder_.file(u"junk.mdb")), bytes);
    }
    EXPECT_FALSE(platform::fileExists(folder_.file(u"none.mdb")));
}

TEST_F(Cli, OpensADatabaseWithItsPassword)
{
    run({"create", "locked.mdb", "--table", "t"});
    tests::lockFile(folder_.file(u"locked.mdb"), u"Geheim 密");
    const std::vector<std::vector<std::string>> commands = {{"add", "locked.mdb"}, {"add", "locked.mdb"},
        {"search", "locked.mdb"}, {"show", "locked.mdb", "1"}, {"tables", "locked.mdb"},
        {"sql", "locked.mdb", "SELECT * FROM t"}, {"import", "locked.mdb", "input"}, {"dedupe", "locked.mdb"},
        {"check", "locked.mdb"}};
    for (std::vector<std::string> words : commands) {
        const Outcome refused = run(words, "text");
        EXPECT_EQ(refused.status, 1) << words[0];
        EXPECT_THAT(refused.err, HasSubstr("Not a valid password")) << words[0];
        words.insert(words.end(), {"--password", "geheim 密"});
        EXPECT_EQ(run(words, "text").status, 1) << words[0];
        words.back() = "Geheim 密";
        const Outcome done = run(words, "text");
        EXPECT_EQ(done.status, 0) << words[0] << done.err;
    }
    EXPECT_EQ(run({"tables", "locked.mdb.bak"}).status, 1) << "the copy is locked as well";
    EXPECT_EQ(run({"sql", "locked.mdb.bak", "SELECT COUNT(*) FROM t", "--password=Geheim 密"}).status, 0);
    EXPECT_EQ(run({"create", "new.mdb", "--password", "x"}).status, 2);
}

TEST_F(Cli, TellsWrongUsageFromFailure)
{
    const std::vector<std::vector<std::string>> wrong = {{}, {"bogus"}, {"show", "notes.mdb"},
        {"show", "notes.mdb", "x"}, {"show", "notes.mdb", "1", "2"}, {"search", "notes.mdb", "--bogus"},
        {"check", "notes.mdb", "--table", "x"}, {"add", "notes.mdb", "--title"}, {"compress"},
        {"sql", "notes.mdb"}};
    for (const auto& words : wrong) {
        const Outcome outcome = run(words);
        EXPECT_EQ(outcome.status, 2) << testing::PrintToString(words);
        EXPECT_EQ(outcome.out, "");
        EXPECT_NE(outcome.err, "");
    }
    EXPECT_EQ(run({"search", "notes.mdb", "--table", "missing"}).status, 1);
}

TEST_F(Cli, ExplainsItself)
{
    const Outcome help = run({"--help"});
    EXPECT_EQ(help.status, 0);
    for (const char* command : {"create", "tables", "sql", "check", "compact", "add", "import", "search",
             "show", "dedupe", "digest", "find"}) {
        EXPECT_THAT(help.out, HasSubstr(std::string("\n  ") + command + " "));
        EXPECT_THAT(
            run({command, "--help"}).out, StartsWith(std::string("Usage: vellums-cli ") + command + " "));
        EXPECT_EQ(run({"help", command}).out, run({command, "--help"}).out);
    }
}

} // namespace
} // namespace vellums::cli
