// SELECT INTO, DROP TABLE and DROP COLUMN: what they make, what they give back, what they refuse.
#include "jet/catalogue/catalogue.h"
#include "jet/catalogue/propertySet.h"
#include "jet/catalogue/systemRows.h"
#include "jet/database.h"
#include "jet/file/dataPage.h"
#include "jet/file/pageFile.h"
#include "jet/sql/values/conversion.h"
#include "jet/table/indexKeys.h"
#include "platform/files.h"
#include "tests/jet/fixturesFolder.h"
#include "tests/support/bareFile.h"
#include "tests/support/crashingDisk.h"
#include "tests/support/smallMemory.h"
#include "tests/support/soundFile.h"
#include "tests/support/temporaryFolder.h"
#include "text/decimal.h"
#include "text/unicode.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace vellums::jet {
namespace {

using tests::expectSound;
using text::decimal;
using text::toUtf8;

constexpr std::u16string_view kColumns =
    u"(ID COUNTER CONSTRAINT [VLIDX] UNIQUE, VLHEAD VARCHAR(255), VLTEXT MEMO, VLTYPE VARCHAR(255), "
    u"VLDATE DATETIME NOT NULL, VLLINK VARCHAR(255), VLMD5 VARCHAR(32))";

std::string errorOf(Database& database, std::u16string_view sql)
{
    try {
        database.run(sql);
        return "(none)";
    } catch (const Error& error) {
        return std::to_string(error.native) + " " + std::to_string(error.number) + " " +
            toUtf8(error.description);
    }
}

std::vector<std::u16string> userTables(Database& database)
{
    std::vector<std::u16string> names;
    for (const TableInfo& table : database.tables())
        if (table.kind == TableKind::Table)
            names.push_back(table.name);
    return names;
}

// With hardly any memory for .mdb, so that every statement writes as it goes.
class TableStatements : public testing::TestWithParam<FileFormat> {
protected:
    TableStatements()
        : memory_(GetParam() == FileFormat::Jet4 ? 24 : 200, GetParam() != FileFormat::Jet4)
        , path_(folder_.file(GetParam() == FileFormat::Jet4 ? u"notes.mdb" : u"notes.accdb"))
    {
        createDatabase(path_, GetParam(), 45000);
        db_ = std::make_unique<Database>(path_);
    }
    ~TableStatements() override
    {
        db_.reset();
        expectSound(path_);
        EXPECT_FALSE(platform::fileExists(path_ + u"-journal"));
    }

    void make(const std::u16string& name)
    {
        db_->run(u"CREATE TABLE [" + name + u"] " + std::u16string(kColumns));
    }
    std::int32_t add(const std::u16string& table, const std::u16string& title, const std::u16string& text)
    {
        db_->run(u"INSERT INTO [" + table + u"] (VLHEAD, VLTEXT, VLTYPE, VLDATE, VLLINK, VLMD5) VALUES ('" +
            title + u"', '" + text + u"', '', '2024-3-5 9:7:3', '', '')");
        return std::get<std::int32_t>(db_->run(u"SELECT @@IDENTITY").rows[0][0]);
    }
    std::string rows(const std::u16string& sql)
    {
        std::u16string text;
        for (const std::vector<Value>& row : db_->run(sql).rows) {
            for (const Value& value : row)
                text += (isNull(value) ? u"NULL" : sql::textOf(value)) + u"|";
            text += u"/";
        }
        return toUtf8(text);
    }

    tests::SmallMemory memory_;
    tests::TemporaryFolder folder_;
    std::u16string path_;
    std::unique_ptr<Database> db_;
};

INSTANTIATE_TEST_SUITE_P(BothFormats, TableStatements, testing::Values(FileFormat::Jet4, FileFormat::Ace12),
    [](const auto& which) { return which.param == FileFormat::Jet4 ? "Mdb" : "Accdb"; });

// The bytes of the only row of a table, as they lie in the file.
Bytes onlyRow(const std::u16string& path, const std::u16string& name)
{
    PageFile file(path, OpenMode::Read);
    const Catalogue catalogue(file);
    const Table table = catalogue.open(*catalogue.find(name));
    Bytes bytes;
    table.forEachRow([&](const Row& row) {
        const DataPage page(file.read(row.home().page));
        const ByteView stored = page.bytes(row.home().row);
        bytes.assign(stored.begin(), stored.end());
        return true;
    });
    return bytes;
}

TEST_P(TableStatements, AFirstTextColumnGivesOldRowsTheFormOfNewOnes)
{
    db_->run(u"CREATE TABLE [Old] (N LONG)");
    db_->run(u"INSERT INTO [Old] (N) VALUES (7)");
    db_->run(u"ALTER TABLE [Old] ADD COLUMN T VARCHAR(9)");
    db_->run(u"CREATE TABLE [New] (N LONG, T VARCHAR(9))");
    db_->run(u"INSERT INTO [New] (N) VALUES (7)");
    EXPECT_EQ(onlyRow(path_, u"Old"), onlyRow(path_, u"New"));
}

// The values go, with their pages and properties; number and slot of the column are nobody's from then on.
TEST_P(TableStatements, AColumnGoesAndLeavesTheOthersAsTheyAre)
{
    db_->run(u"CREATE TABLE [T] (A LONG, B MEMO, C VARCHAR(9), D DATETIME NOT NULL, E MEMO)");
    db_->beginBatch();
    for (int i = 0; i < 30; ++i)
        db_->run(u"INSERT INTO [T] VALUES (" + decimal(i) + u", '" + std::u16string(3000, u'b') +
            u"', 'c', #2024-3-5#, '" + std::u16string(40000, u'e') + u"')");
    db_->endBatch();
    const std::string before = rows(u"SELECT A, B, C FROM [T]");
    db_->run(u"ALTER TABLE [T] DROP COLUMN e");
    db_->run(u"ALTER TABLE [T] DROP D");
    expectSound(path_);
    EXPECT_EQ(rows(u"SELECT * FROM [T]"), before);
    {
        PageFile file(path_, OpenMode::Read);
        const CatalogueEntry entry = Catalogue(file).find(u"T").value();
        const TableDefinition table = readTableDefinition(file, static_cast<PageNo>(entry.id));
        EXPECT_EQ(table.joined.size(), 63u + 3 * (25 + 4) + 10 + 2); // B alone has maps
        EXPECT_EQ(table.columnSlots, 5);
        EXPECT_EQ(table.variableSlots, 3);
        const Table objects(file, kObjectsPage, u"MSysObjects");
        const Bytes blob = bytesIn(objects.rowAt(entry.row), columnOf(objects, u"LvProp")).value();
        EXPECT_EQ(
            PropertySet::parse(blob).value().columns(), (std::vector<std::u16string>{u"A", u"B", u"C"}));
    }
    const std::uint64_t size = platform::fileSize(path_).value();
    db_->run(u"ALTER TABLE [T] ADD COLUMN E MEMO");
    db_->run(u"ALTER TABLE [T] ADD COLUMN D LONG");
    EXPECT_EQ(rows(u"SELECT COUNT(*) FROM [T] WHERE E IS NULL AND D IS NULL"), "30|/");
    db_->run(u"UPDATE [T] SET E='" + std::u16string(39000, u'n') + u"', D=A");
    EXPECT_EQ(platform::fileSize(path_).value(), size) << "the pages serve again";
    EXPECT_EQ(rows(u"SELECT A, B, C FROM [T]"), before);
    EXPECT_EQ(rows(u"SELECT COUNT(*) FROM [T] WHERE D=A AND LEN(E)=39000"), "30|/");
    for (const char16_t* const name : {u"B", u"C", u"E", u"A"})
        db_->run(std::u16string(u"ALTER TABLE [T] DROP COLUMN ") + name);
    EXPECT_EQ(errorOf(*db_, u"ALTER TABLE [T] DROP COLUMN D").substr(0, 2), "0 ") << "the last one stays";
    EXPECT_EQ(rows(u"SELECT * FROM [T] WHERE D>27"), "28|/29|/");
}

// The maps of their pages do not fit on one page.
TEST_P(TableStatements, AnyNumberOfLongTextColumnsCanBeAdded)
{
    db_->run(u"CREATE TABLE [T] (N LONG)");
    for (int i = 0; i < 40; ++i)
        db_->run(u"ALTER TABLE [T] ADD COLUMN M" + decimal(i) + u" MEMO");
    const std::u16string body(3000, u'm');
    db_->run(u"INSERT INTO [T] (N, M0, M39) VALUES (1, '" + body + u"', '" + body + u"')");
    EXPECT_EQ(db_->run(u"SELECT M39 FROM [T]").rows, std::vector<std::vector<Value>>{{body}});
}

TEST_P(TableStatements, TheConstantsStandWhereverAValueStands)
{
    db_->run(u"CREATE TABLE [T] (N LONG, B BIT, S VARCHAR(9))");
    db_->run(u"INSERT INTO [T] VALUES (ON, YES, NO)");
    db_->run(u"INSERT INTO [T] (N, B, S) SELECT OFF, NO, ON FROM [T]");
    EXPECT_EQ(rows(u"SELECT * FROM [T] ORDER BY N"), "-1|-1|0|/0|0|-1|/");
    EXPECT_EQ(rows(u"SELECT ON, Off AS No, yes FROM [T] WHERE B=On OR ON=B"), "-1|0|-1|/");
    EXPECT_EQ(rows(u"SELECT N FROM [T] WHERE B IN (NO, OFF) AND N BETWEEN NO AND OFF"), "0|/");
    db_->run(u"UPDATE [T] SET B=ON WHERE B=FALSE");
    EXPECT_EQ(rows(u"SELECT COUNT(*), IIF(ON, 'y', 'n') FROM [T] WHERE B=Yes"), "2|y|/");
    EXPECT_EQ(errorOf(*db_, u"SELECT [Yes] FROM [T]").substr(0, 5), "3061 ") << "a bracketed name is a name";
}

TEST_P(TableStatements, APrimaryKeyHoldsNoNull)
{
    db_->run(u"CREATE TABLE [T] (K LONG PRIMARY KEY, T VARCHAR(9))");
    EXPECT_NE(errorOf(*db_, u"INSERT INTO [T] (T) VALUES ('no key')"), "(none)");
    EXPECT_EQ(db_->run(u"SELECT * FROM [T]").rows.size(), 0u);
}

TEST_P(TableStatements, AnEmptyCopyTakesRecordsLikeTheFirstTable)
{
    make(u"Notes");
    for (int i = 0; i < 5; ++i)
        add(u"Notes", u"old", u"text");
    EXPECT_EQ(db_->run(u"SELECT * INTO [50% of \"it's\"] From [Notes] WHERE 1=2").changedRows, 0);
    const std::u16string copy = u"50% of \"it's\"";
    EXPECT_EQ(db_->run(u"SELECT * FROM [" + copy + u"] WHERE 1=2").columns,
        db_->run(u"SELECT * FROM [Notes] WHERE 1=2").columns);
    EXPECT_EQ(userTables(*db_), (std::vector<std::u16string>{u"Notes", copy}));
    EXPECT_EQ(add(copy, u"it", std::u16string(3000, u'中')), 1) << "numbers begin anew";
    EXPECT_EQ(add(copy, u"it too", std::u16string(100000, u'x')), 2);
    EXPECT_EQ(db_->run(u"UPDATE [" + copy + u"] SET VLTEXT='short', VLTYPE='20240305090703' WHERE ID=2")
                  .changedRows,
        1);
    EXPECT_EQ(rows(u"SELECT ID, VLHEAD, LEN(VLTEXT), VLTYPE FROM [" + copy + u"] ORDER BY VLTYPE DESC"),
        "2|it too|5|20240305090703|/1|it|3000||/");
    EXPECT_EQ(
        errorOf(*db_, u"INSERT INTO [" + copy + u"] (ID, VLHEAD) VALUES (2, 'again')").substr(0, 5), "3022 ")
        << "the unique index of the numbers is kept";
    EXPECT_EQ(rows(u"SELECT COUNT(*) FROM [Notes]"), "5|/");
}

TEST_P(TableStatements, ACopyHoldsTheRowsAndTheirNumbers)
{
    make(u"Notes");
    db_->beginBatch();
    for (int i = 1; i <= 400; ++i)
        add(u"Notes", u"title " + decimal(i), std::u16string(static_cast<std::size_t>(i * 37 % 9000), u'x'));
    db_->endBatch();
    db_->run(u"DELETE FROM [Notes] WHERE ID<=100");
    db_->run(u"UPDATE [Notes] SET VLTEXT=NULL, VLHEAD=NULL WHERE ID=200");
    EXPECT_EQ(db_->run(u"SELECT * INTO [Copy] FROM [Notes]").changedRows, 300);
    EXPECT_EQ(rows(u"SELECT * FROM [Copy] ORDER BY ID"), rows(u"SELECT * FROM [Notes] ORDER BY ID"));
    EXPECT_EQ(rows(u"SELECT VLHEAD FROM [Copy] WHERE ID=399"), "title 399|/");
    EXPECT_EQ(add(u"Copy", u"next", u""), 401);
    EXPECT_EQ(
        db_->run(u"SELECT VLHEAD, ID INTO [Part] FROM [Copy] WHERE ID>399 ORDER BY ID DESC").changedRows, 2);
    EXPECT_EQ(rows(u"SELECT * FROM [Part]"), "next|401|/title 400|400|/");
    db_->run(u"INSERT INTO [Part] (VLHEAD) VALUES ('counts on')");
    EXPECT_EQ(rows(u"SELECT ID FROM [Part] WHERE VLHEAD='counts on'"), "402|/");
}

TEST_P(TableStatements, ACopyHasTheTypesOfItsColumns)
{
    db_->run(u"CREATE TABLE [All] (N COUNTER PRIMARY KEY, A BYTE, B SMALLINT, C INTEGER, D SINGLE, E DOUBLE, "
             u"F CURRENCY, "
             u"G DECIMAL(10,3), H DATETIME, I BIT, J VARCHAR(7), K CHAR(4), L MEMO, M GUID)");
    db_->run(
        u"INSERT INTO [All] (A, B, C, D, E, F, G, H, I, J, K, L, M) VALUES (200, -5, 70000, 1.5, 0.1, "
        u"12.3456, "
        u"-1.125, '2024-3-5 9:7:3', TRUE, 'seven', 'ab', 'memo', '{00112233-4455-6677-8899-AABBCCDDEEFF}')");
    db_->run(u"INSERT INTO [All] (I) VALUES (FALSE)");
    EXPECT_EQ(db_->run(u"SELECT * INTO [Copy] FROM [All]").changedRows, 2);
    const Result before = db_->run(u"SELECT * FROM [All]");
    const Result after = db_->run(u"SELECT * FROM [Copy]");
    EXPECT_EQ(after.types, before.types);
    EXPECT_EQ(rows(u"SELECT * FROM [Copy]"), rows(u"SELECT * FROM [All]"));
    EXPECT_EQ(errorOf(*db_, u"UPDATE [Copy] SET J='12345678'").substr(0, 5), "3163 ");
    EXPECT_EQ(errorOf(*db_, u"UPDATE [Copy] SET G=12345678").substr(0, 5),
        errorOf(*db_, u"UPDATE [All] SET G=12345678").substr(0, 5));

    db_->run(u"SELECT COUNT(*) AS Several, MAX(H) AS Latest, 'x' AS Letter, 1/2 AS Half, 3>2 AS Truth INTO "
             u"[Computed] FROM [All]");
    EXPECT_EQ(rows(u"SELECT * FROM [Computed]"), "2|2024-03-05 09:07:03|x|0.5|-1|/");
    EXPECT_EQ(db_->run(u"SELECT * FROM [Computed]").types,
        (std::vector<ColumnType>{
            ColumnType::Long, ColumnType::Date, ColumnType::Text, ColumnType::Double, ColumnType::Long}));
}

TEST_P(TableStatements, TablesComeAndGoWithoutTheFileGrowing)
{
    make(u"Stays");
    const std::int32_t kept = add(u"Stays", u"kept", std::u16string(20000, u'k'));
    std::uint64_t size = 0;
    for (int round = 0; round < 10; ++round) {
        make(u"Comes");
        db_->beginBatch();
        for (int i = 0; i < 40; ++i)
            add(u"Comes", u"title", std::u16string(static_cast<std::size_t>(i) * 1500, u'中'));
        db_->endBatch();
        EXPECT_EQ(db_->run(u"SELECT * INTO [Copy] FROM [Comes]").changedRows, 40);
        db_->run(u"DROP TABLE [comes]");
        db_->run(u"DROP TABLE Copy");
        if (round == 1)
            size = platform::fileSize(path_).value();
    }
    EXPECT_EQ(platform::fileSize(path_).value(), size);
    EXPECT_EQ(userTables(*db_), std::vector<std::u16string>{u"Stays"});
    EXPECT_EQ(rows(u"SELECT LEN(VLTEXT) FROM [Stays] WHERE ID=" + decimal(kept)), "20000|/");
    EXPECT_EQ(errorOf(*db_, u"SELECT * FROM [Comes]").substr(0, 17), "3078 -2147217865 ");
}

TEST_P(TableStatements, AWideTableGivesBackItsMaps)
{
    std::u16string wide = u"CREATE TABLE [Wide] (ID COUNTER PRIMARY KEY";
    for (int i = 0; i < 70; ++i) // two maps each: more than lie on two pages
        wide += u", [A rather long name of a column " + decimal(i) + u"] MEMO";
    std::uint64_t size = 0;
    for (int round = 0; round < 4; ++round) {
        db_->run(wide + u")");
        for (int i = 0; i < 70; ++i)
            db_->run(u"INSERT INTO [Wide] ([A rather long name of a column " + decimal(i) + u"]) VALUES ('" +
                std::u16string(9000, u'w') + u"')");
        db_->run(u"DROP TABLE [Wide]");
        if (round == 0)
            size = platform::fileSize(path_).value();
    }
    EXPECT_EQ(platform::fileSize(path_).value(), size);
}

TEST_P(TableStatements, WhatIsRefusedLeavesTheFileAsItWas)
{
    make(u"Notes");
    add(u"Notes", std::u16string(200, u'a'), u"text");
    add(u"Notes", u"b", u"text");
    const std::string before = tests::bytesOf(path_);
    const std::pair<std::u16string, std::string> refused[] = {
        {u"SELECT * INTO [NOTES] FROM [Notes] WHERE 1=2", "3010 -2147217900 Table 'NOTES' already exists."},
        {u"SELECT * INTO [MSysObjects] FROM [Notes]", "3125 -2147217900 "},
        {u"SELECT * INTO [a.b] FROM [Notes]", "3125 -2147217900 'a.b' is not a valid name."},
        {u"SELECT * INTO [ ] FROM [Notes]", "3125 -2147217900 "},
        {u"SELECT * INTO [" + std::u16string(65, u'x') + u"] FROM [Notes]", "3125 -2147217900 "},
        {u"SELECT * INTO [New] FROM [Missing]", "3078 -2147217865 "},
        {u"SELECT Missing INTO [New] FROM [Notes]", "3061 -2147217904 "},
        {u"SELECT ID, ID INTO [New] FROM [Notes]", "3191 -2147217900 "},
        {u"SELECT VLHEAD & VLHEAD AS Long INTO [New] FROM [Notes] ORDER BY ID DESC", "3163 -2147217833 "},
        {u"DROP TABLE [Missing]", "3376 -2147217865 Table 'Missing' does not exist."},
        {u"DROP TABLE [MSysACEs]", "0 "},
        {u"DROP TABLE [Notes] WHERE 1=1", "3295 "},
        {u"ALTER TABLE [Notes] DROP COLUMN Missing", "3381 -2147217887 There is no field named 'Missing'"},
        {u"ALTER TABLE [Notes] DROP COLUMN ID", "3280 -2147467259 "},
        {u"ALTER TABLE [Missing] DROP COLUMN ID", "3078 "},
        {u"ALTER TABLE [MSysACEs] DROP COLUMN ACM", "0 "},
    };
    for (const auto& [sql, error] : refused) {
        EXPECT_EQ(errorOf(*db_, sql).substr(0, error.size()), error) << toUtf8(sql);
        EXPECT_EQ(tests::bytesOf(path_), before) << toUtf8(sql);
    }
}

// The indexes of all tables: names, and the entries that lead to rows.
std::vector<std::vector<Value>> indexesOf(const std::u16string& path)
{
    PageFile file(path, OpenMode::Read);
    std::vector<std::vector<Value>> indexes;
    for (const CatalogueEntry& entry : Catalogue(file).entries()) {
        if (!entry.isUserTable())
            continue;
        const Table table = Catalogue(file).open(entry);
        for (const LogicalIndex& index : table.definition().logicalIndexes) {
            const PhysicalIndex& tree = table.definition().physicalIndexes[index.physical];
            const auto entries = BTree(file, treeOf(table.definition(), tree)).inspect().entries.size();
            indexes.push_back({index.name, static_cast<std::int32_t>(entries)});
        }
    }
    return indexes;
}

// Wherever the disk stops and whatever it forgets, a table is copied, changed, emptied, dropped or renamed,
// an index is made or dropped, or everything is as it was.
TEST_P(TableStatements, AreAllOrNothingWhereverTheDiskStops)
{
    const bool small = GetParam() == FileFormat::Jet4;
    const tests::SmallMemory memory(small ? 6 : 200, !small);
    make(u"Notes");
    for (int i = 0; i < 6; ++i)
        add(u"Notes", u"title", std::u16string(5000, u't'));
    db_.reset();
    const std::string before = tests::bytesOf(path_);
    const std::vector<std::u16string> acts[] = {{u"SELECT * INTO [Other] FROM [Notes]"},
        {u"UPDATE [Notes] SET VLTEXT=VLTEXT & ID"}, {u"DELETE FROM [Notes]"}, {u"DROP TABLE [Notes]"},
        {u"SELECT * INTO [Other] FROM [Notes]", u"DROP TABLE [Notes]"},
        {u"CREATE UNIQUE INDEX [By text] ON [Notes] (ID DESC, VLTEXT) WITH PRIMARY"},
        {u"DROP INDEX VLIDX ON [Notes]"}, {u"ALTER TABLE [Notes] DROP COLUMN VLTEXT"}};
    const auto state = [&] {
        Database database(path_);
        std::vector<std::vector<Value>> rows;
        for (const std::u16string& name : userTables(database)) {
            rows.push_back({name});
            for (std::vector<Value>& row : database.run(u"SELECT * FROM [" + name + u"]").rows)
                rows.push_back(std::move(row));
        }
        for (std::vector<Value>& index : indexesOf(path_))
            rows.push_back(std::move(index));
        return rows;
    };
    const auto stateBefore = state();
    for (const std::vector<std::u16string>& act : acts) {
        SCOPED_TRACE(toUtf8(act.front()));
        auto stateAfter = stateBefore;
        for (int stop = -1;; ++stop) { // the first time it does not stop
            tests::writeBytes(path_, std::as_bytes(std::span(before)));
            platform::removeFile(path_ + u"-journal");
            tests::CrashingDisk disk(path_);
            disk.stopAfter(stop < 0 ? 100000 : stop);
            try {
                Database database(path_);
                database.beginBatch();
                for (const std::u16string& statement : act)
                    database.run(statement);
                database.endBatch();
            } catch (...) {
            }
            const bool stopped = disk.struck;
            if (stopped)
                disk.powerCut(static_cast<unsigned>(stop));
            disk.work();
            const auto now = state();
            if (stop < 0)
                stateAfter = now;
            ASSERT_NE(stateAfter, stateBefore);
            EXPECT_TRUE(now == stateAfter || (stopped && now == stateBefore)) << stop;
            if (stop < 0 || stop % 5 == 0)
                expectSound(path_);
            if (stop >= 0 && !stopped)
                break;
        }
    }
}

TEST_P(TableStatements, OneThatFailsHalfWayLeavesTheFileAsItWas)
{
    make(u"Notes");
    for (int i = 0; i < 40; ++i)
        add(u"Notes", i < 39 ? u"a" : std::u16string(200, u'a'), std::u16string(5000, u't'));
    const std::string before = tests::bytesOf(path_);
    const std::u16string failing = u"SELECT VLHEAD & VLHEAD AS Twice, VLTEXT INTO [New] FROM [Notes]";
    EXPECT_EQ(errorOf(*db_, failing).substr(0, 5), "3163 ");
    EXPECT_EQ(tests::bytesOf(path_), before);
    db_->beginBatch();
    db_->run(u"SELECT * INTO [Copy] FROM [Notes]");
    EXPECT_EQ(errorOf(*db_, failing).substr(0, 5), "3163 ");
    EXPECT_EQ(errorOf(*db_, u"UPDATE [Copy] SET VLHEAD=VLHEAD & VLHEAD, VLTEXT='x'").substr(0, 5), "3163 ");
    db_->endBatch();
    EXPECT_EQ(userTables(*db_), (std::vector<std::u16string>{u"Notes", u"Copy"}));
    EXPECT_EQ(rows(u"SELECT * FROM [Copy]"), rows(u"SELECT * FROM [Notes]"));
    db_->beginBatch();
    db_->run(u"DROP TABLE [Copy]");
    db_.reset(); // given up
    db_ = std::make_unique<Database>(path_);
    EXPECT_EQ(rows(u"SELECT * FROM [Copy]"), rows(u"SELECT * FROM [Notes]"));
}

// Drops the columns of a table from the first on; those that are refused, and their values, stay. Gives how
// many went.
int dropColumns(Database& database, const std::u16string& path, const std::u16string& table)
{
    Result left = database.run(u"SELECT * FROM [" + table + u"]");
    const std::size_t all = left.columns.size();
    for (std::size_t i = 0; i < left.columns.size();) {
        const std::string before = tests::bytesOf(path);
        const std::u16string sql = u"ALTER TABLE [" + table + u"] DROP COLUMN [" + left.columns[i] + u"]";
        if (errorOf(database, sql) != "(none)") {
            EXPECT_EQ(tests::bytesOf(path), before);
            ++i;
            continue;
        }
        const auto at = static_cast<std::ptrdiff_t>(i);
        left.columns.erase(left.columns.begin() + at);
        for (std::vector<Value>& row : left.rows)
            row.erase(row.begin() + at);
    }
    const Result now = database.run(u"SELECT * FROM [" + table + u"]");
    EXPECT_EQ(now.columns, left.columns);
    EXPECT_EQ(now.rows, left.rows);
    expectSound(path);
    return static_cast<int>(all - left.columns.size());
}

// Every table of other programs' files is copied and dropped, or refused with everything left as it is.
TEST(ForeignTables, AreCopiedWithTheirRowsAndDroppedCleanly)
{
    int copied = 0;
    int dropped = 0;
    int refused = 0;
    int columnsGone = 0;
    for (const char* name : {"adox_jet4.mdb", "bigIndexTestV2000.mdb", "compIndexTestV2010.accdb",
             "complexDataTestV2010.accdb", "calcFieldTestV2010.accdb", "delColTestV2000.mdb",
             "delTestV2010.accdb", "fixedNumericTestV2000.mdb", "fixedTextTestV2010.accdb",
             "indexTestV2000.mdb", "indexTestV2010.accdb", "overflowTestV2000.mdb", "queryTestV2010.accdb",
             "test2V2000.mdb", "testEmoticonsV2010.accdb", "testIndexPropertiesV2010.accdb",
             "testPromotionV2000.mdb", "testV2010.accdb"}) {
        SCOPED_TRACE(name);
        const std::string original = tests::fixtureBytes(name);
        if (original.empty())
            continue;
        const tests::TemporaryFolder folder;
        const std::u16string path = folder.write(u"copy.mdb", original);
        Database database(path);
        for (const std::u16string& table : userTables(database)) {
            SCOPED_TRACE(toUtf8(table));
            const std::string before = tests::bytesOf(path);
            if (const std::string error =
                    errorOf(database, u"SELECT * INTO [the copy] FROM [" + table + u"]");
                error != "(none)") {
                ++refused;
                EXPECT_EQ(tests::bytesOf(path), before);
            } else {
                ++copied;
                EXPECT_EQ(database.run(u"SELECT * FROM [the copy]").rows,
                    database.run(u"SELECT * FROM [" + table + u"]").rows);
                expectSound(path);
                EXPECT_EQ(errorOf(database, u"DROP TABLE [the copy]"), "(none)");
                expectSound(path);
            }
            columnsGone += dropColumns(database, path, table);
            const std::string whole = tests::bytesOf(path);
            if (const std::string error = errorOf(database, u"DROP TABLE [" + table + u"]");
                error != "(none)") {
                ++refused;
                EXPECT_EQ(tests::bytesOf(path), whole);
            } else {
                ++dropped;
                expectSound(path);
            }
        }
    }
    if (copied + dropped + refused == 0)
        GTEST_SKIP() << "no fixtures";
    EXPECT_EQ(copied, 29);  // all but those with calculated fields or attachments
    EXPECT_EQ(dropped, 24); // all but those with attachments or in a relationship
    EXPECT_EQ(refused, 9);
    EXPECT_EQ(columnsGone, 206); // all but those that indexes, relationships or tables need
}

} // namespace
} // namespace vellums::jet
