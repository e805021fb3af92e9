#include "store/databases/schema.h"

#include "jet/catalogue/blankDatabase.h"
#include "jet/file/diskFile.h"
#include "platform/files.h"
#include "store/connectionString.h"
#include "store/databases/accessFile.h"
#include "store/databases/modCreateDB.h"
#include "store/embedded/embeddedProvider.h"
#include "tests/support/testNotebook.h"

#include <gmock/gmock.h>

namespace vellums {
namespace {

using testing::ElementsAre;

TEST(Schema, RecognisesASnippetTableByItsColumns)
{
    tests::TestNotebook notes;
    const char16_t* columns =
        u"VLHEAD TEXT(255), VLTEXT MEMO, VLTYPE TEXT(255), VLDATE DATETIME, VLLINK TEXT(255)";
    notes.run(u"CREATE TABLE [Few] (ID COUNTER, " + std::u16string(columns) + u")");
    notes.run(
        u"CREATE TABLE [Many] (ID COUNTER, " + std::u16string(columns) + u", VLMD5 TEXT(32), X INTEGER)");
    notes.run(u"CREATE TABLE [Lower] (id COUNTER, " + std::u16string(columns) + u", vlmd5 TEXT(32))");
    notes.run(u"CREATE TABLE [Moved] (IDVL COUNTER, HEAD TEXT(255), VLTEXT MEMO, VLTYPE TEXT(255), "
              u"VLDATE DATETIME, VLLINK TEXT(255), VLMD5 TEXT(32))");
    notes.run(u"CREATE TABLE [Same] (ID COUNTER, " + std::u16string(columns) + u", VLMD5 TEXT(32))");
    for (const char16_t* table : {u"Few", u"Many", u"Lower", u"Moved", u"Missing", u"MSysObjects"})
        EXPECT_FALSE(isSnippetTable(*notes, notes->dbConn, table));
    EXPECT_TRUE(isSnippetTable(*notes, notes->dbConn, u"Notes"));
    EXPECT_TRUE(isSnippetTable(*notes, notes->dbConn, u"Same"));
    EXPECT_FALSE(isSnippetTable(*notes, u"Data Source=none.mdb", u"Notes"));
}

TEST(Schema, ListsOrdinaryTables)
{
    tests::TestNotebook notes;
    notes.run(u"CREATE TABLE [Other] (A INTEGER)");
    EXPECT_EQ(getFirstTable(*notes, notes->dbConn), u"Notes");
    const std::u16string blank = notes.folder().file(u"blank.mdb");
    jet::createDatabase(blank, jet::FileFormat::Jet4, 45000);
    EXPECT_EQ(getFirstTable(*notes, connectionStringFor(*notes, blank)), u"-");
    EXPECT_EQ(firstSnippetTable(*notes->connect(connectionStringFor(*notes, blank))), u"");
    EXPECT_EQ(getFirstTable(*notes, u"Data Source=none.mdb"), u"-");
}

TEST(Schema, ListsTheFilesOfAFolder)
{
    tests::TestNotebook notes;
    EXPECT_EQ(getDataBaseList(*notes, u""), u"notes.mdb");
    notes.folder().makeFolder(u"sub");
    EXPECT_EQ(getDataBaseList(*notes, notes.folder().file(u"sub")), u"");
    notes.folder().write(u"sub/b.xdb", "");
    EXPECT_EQ(getDataBaseList(*notes, notes.folder().file(u"sub")), u"b.xdb");
}

TEST(Schema, AddsTheColumnsOfLaterVersions)
{
    tests::TestNotebook notes;
    notes.run(
        u"CREATE TABLE [Old] (ID COUNTER, VLHEAD TEXT(255), VLTEXT MEMO, VLTYPE TEXT(255), VLDATE DATETIME)");
    notes.run(u"INSERT INTO [Old] (VLHEAD) VALUES ('x')");
    const auto connection = notes->connect();
    EXPECT_EQ(addSnippetColumn(*connection, u"Old", *snippetColumn(kLinkColumn)), 0);
    EXPECT_EQ(addSnippetColumn(*connection, u"Old", *snippetColumn(kMd5Column)), 0);
    EXPECT_NE(addSnippetColumn(*connection, u"Old", *snippetColumn(kMd5Column)), 0);
    EXPECT_TRUE(isSnippetTable(*connection, u"Old"));
    EXPECT_THAT(notes.rows(u"SELECT VLHEAD, VLLINK, VLMD5 FROM [Old]"), ElementsAre(u"x|NULL|NULL"));
}

struct NameCase {
    const char16_t* file;
    const char16_t* english;
    const char16_t* chinese;
};

const NameCase kNames[] = {
    {u"notes.mdb", u"notes", u"notes"},
    {u"a.b.mdb", u"a", u"a"},
    {u".x.mdb", u"Memo", u"笔记"},
    {u"", u"Memo", u"笔记"},
    {u"notes", u"Memo", u"笔记"},
};

TEST(CreateDatabase, NamesTheTableAfterTheFile)
{
    for (const NameCase& c : kNames) {
        EXPECT_EQ(newTableName(c.file, false), c.english);
        EXPECT_EQ(newTableName(c.file, true), c.chinese);
    }
}

// The other one comes to its end while ours is still being made under another name.
TEST(CreateDatabase, LeavesAloneWhatAnotherProgramMakesMeanwhile)
{
    const tests::TemporaryFolder folder;
    const std::u16string path = folder.file(u"new.mdb");
    jet::DiskFile::beforeOperation = [&](const jet::DiskOperation&) {
        folder.write(u"new.mdb", "another's");
    };
    std::int32_t number = 0;
    try {
        EmbeddedProvider().createDatabase(path, u"Notes");
    } catch (const ProviderError& e) {
        number = e.number;
    }
    jet::DiskFile::beforeOperation = nullptr;
    EXPECT_EQ(number, jet::kDuplicateSource);
    EXPECT_TRUE(tests::bytesOf(path) == "another's");
    EXPECT_TRUE(platform::removeFile(path));
    EXPECT_TRUE(platform::removeFolder(folder.path())) << "something is left beside it";
}

TEST(CreateDatabase, MakesASnippetTableOnceAndNeverOverAnything)
{
    tests::TestNotebook notes;
    EXPECT_EQ(dbCreateNew(*notes, u""), u"Memo");
    EXPECT_TRUE(looksLikeAccessFile(notes.folder().file(u"Vellums.mdb")));
    EXPECT_FALSE(looksLikeAccessFile(notes.folder().file(u"missing.mdb")));
    EXPECT_EQ(dbCreateNew(*notes, u"笔记.accdb"), u"笔记");
    const std::u16string created = connectionStringFor(*notes, u"笔记.accdb");
    EXPECT_TRUE(isSnippetTable(*notes, created, u"笔记"));

    const std::string before = tests::bytesOf(notes.file());
    EXPECT_EQ(dbCreateNew(*notes, u"notes.mdb"), u"");
    ASSERT_EQ(notes.shown().size(), 1u);
    EXPECT_TRUE(notes.shown()[0].starts_with(u"dbCreateNew: "));
    EXPECT_EQ(tests::bytesOf(notes.file()), before);

    notes->dbParent = notes.folder().file(u"none");
    EXPECT_EQ(dbCreateNew(*notes, u"x.mdb"), u"");
}

// A file that lies where an unfinished database would is somebody else's.
TEST(CreateDatabase, LeavesForeignFilesAlone)
{
    tests::TestNotebook notes;
    notes.folder().write(u"other.mdb.new", "foreign");
    notes.folder().write(u"other.mdb.new.new", "foreign too");
    EXPECT_EQ(dbCreateNew(*notes, u"other.mdb"), u"other");
    EXPECT_EQ(tests::bytesOf(notes.folder().file(u"other.mdb.new")), "foreign");
    EXPECT_EQ(tests::bytesOf(notes.folder().file(u"other.mdb.new.new")), "foreign too");
}

TEST(ConnectionString, ARelativePathCountsFromTheDataFolder)
{
    tests::TestNotebook notes;
    const std::u16string inFolder = std::u16string(u"sub") + platform::separator() + u"x.mdb";
    const std::u16string conn = u"Provider=x; Data Source=" + inFolder;
    EXPECT_EQ(getConnPart(*notes, conn, ConnPart::FullPath), notes.folder().file(u"sub/x.mdb"));
    EXPECT_EQ(getConnPart(*notes, conn, ConnPart::FileName), u"x.mdb");
    EXPECT_TRUE(namesRelativeFile(conn));
    EXPECT_TRUE(namesRelativeFile(u"Data Source=x.mdb"));
    EXPECT_FALSE(namesRelativeFile(u"Data Source=C:\\x.mdb"));
    EXPECT_FALSE(namesRelativeFile(u"Data Source=/x.mdb"));
}

TEST(CreateDatabase, RequiresADate)
{
    tests::TestNotebook notes;
    EXPECT_THROW(notes.run(u"INSERT INTO [Notes] (VLHEAD) VALUES ('x')"), ProviderError);
    EXPECT_THROW(notes.run(u"INSERT INTO [Notes] (ID, VLDATE) SELECT 1, Now() UNION ALL SELECT 1, Now()"),
        ProviderError);
    notes.run(u"INSERT INTO [Notes] (VLDATE) VALUES ('2024-3-5 9:7:3')");
    EXPECT_THAT(notes.rows(u"SELECT ID, VLHEAD, VLMD5 FROM [Notes]"), ElementsAre(u"1|NULL|NULL"));
}

struct PartCase {
    const char16_t* connection;
    const char16_t* bare;
    const char16_t* name;
    const char16_t* path;
};

// The data folder is D:\x.
const PartCase kParts[] = {
    {u"P=1;Data Source=D:\\x\\a.mdb", u"P=1;Data Source=a.mdb", u"a.mdb", u"D:\\x\\a.mdb"},
    {u"P=1;Data Source=d:\\X\\a.MDB;Q=2", u"P=1;Data Source=a.MDB;Q=2", u"a.MDB", u"d:\\X\\a.MDB"},
    {u"Data Source=D:\\y.mdb.d\\a.accdb", u"Data Source=D:\\y.mdb.d\\a.accdb", u"a.accdb",
        u"D:\\y.mdb.d\\a.accdb"},
    {u"P=1;Q=2", u"P=1;Q=2", u"", u""},
};

TEST(ConnectionString, IsTakenApart)
{
    tests::TestNotebook notes;
    notes->dbParent = u"D:\\x";
    if (platform::separator() != u'\\')
        notes->dbParent = u"D:\\x\\"; // a separator of its own would be added
    for (const PartCase& c : kParts) {
        EXPECT_EQ(getConnPart(*notes, c.connection, ConnPart::WithBareName), c.bare);
        EXPECT_EQ(getConnPart(*notes, c.connection, ConnPart::FileName), c.name);
        EXPECT_EQ(getConnPart(*notes, c.connection, ConnPart::FullPath), c.path);
    }
    EXPECT_EQ(getConnPart(*notes, u"Data Source=a.mdb", ConnPart::FullPath), u"D:\\x\\a.mdb");
    EXPECT_EQ(getConnPart(*notes, u"Data Source=(LOCAL);X=1", ConnPart::FileName), u"(LOCAL)");
}

TEST(ConnectionString, IsMadeFromTheTemplateOfTheProvider)
{
    tests::TestNotebook notes;
    EXPECT_EQ(connectionStringFor(*notes, u"D:\\x\\n.ACCDB"),
        u"Provider=Microsoft.ACE.OLEDB.12.0; Data Source=D:\\x\\n.ACCDB");
    EXPECT_EQ(connectionStringFor(*notes, u"n.xdb"),
        u"Provider=Microsoft.ACE.OLEDB.12.0; Data Source=Vellums.accdb");
    notes->providerId = u"103";
    EXPECT_EQ(connectionStringFor(*notes, u"D:\\x\\notes.mdb"),
        u"Provider=Microsoft.Jet.OLEDB.4.0;Data Source=Vellums.mdb");
}

} // namespace
} // namespace vellums
