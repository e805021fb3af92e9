#include "jet/database.h"

#include "jet/sql/values/conversion.h"
#include "platform/files.h"
#include "tests/support/smallMemory.h"
#include "tests/support/temporaryFolder.h"
#include "text/decimal.h"
#include "text/unicode.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <random>

namespace vellums::jet {
namespace {

using text::decimal;
using text::toUtf8;

// A fresh file; after the test every structure of it must be sound.
// With hardly any memory for .mdb, so that every statement writes as it goes.
class DatabaseTest : public testing::TestWithParam<FileFormat> {
protected:
    DatabaseTest()
        : memory_(GetParam() == FileFormat::Jet4 ? 40 : 1000, GetParam() != FileFormat::Jet4)
        , path_(folder_.file(GetParam() == FileFormat::Jet4 ? u"notes.mdb" : u"notes.accdb"))
    {
        createDatabase(path_, GetParam(), 45000);
        db_ = std::make_unique<Database>(path_);
    }
    ~DatabaseTest() override
    {
        db_.reset();
        for (const std::u16string& fault : Database(path_).check())
            ADD_FAILURE() << toUtf8(fault);
        EXPECT_FALSE(platform::fileExists(path_ + u"-journal"));
    }

    void makeMemo(const std::u16string& name = u"Memo")
    {
        db_->run(u"CREATE TABLE [" + name +
            u"] (ID COUNTER CONSTRAINT [PK] PRIMARY KEY, VLHEAD VARCHAR(255), VLTEXT MEMO, VLTYPE "
            u"VARCHAR(255), "
            u"VLDATE DATETIME, VLLINK VARCHAR(255), VLMD5 VARCHAR(32))");
    }

    std::int32_t change(std::u16string_view sql) { return db_->run(sql).changedRows; }

    // Fields with "|" between, rows with "/".
    std::string rows(std::u16string_view sql)
    {
        std::u16string text;
        for (const std::vector<Value>& row : db_->run(sql).rows) {
            text += text.empty() ? u"" : u"/";
            for (std::size_t i = 0; i < row.size(); ++i)
                text +=
                    (i == 0 ? u"" : u"|") + (isNull(row[i]) ? std::u16string(u"NULL") : sql::textOf(row[i]));
        }
        return toUtf8(text);
    }

    std::string errorOf(std::u16string_view sql)
    {
        try {
            db_->run(sql);
            return "(none)";
        } catch (const Error& error) {
            return std::to_string(error.native) + " " + toUtf8(error.description);
        }
    }

    tests::SmallMemory memory_;
    tests::TemporaryFolder folder_;
    std::u16string path_;
    std::unique_ptr<Database> db_;
};

// The file is large enough to be looked through in several threads.
TEST_P(DatabaseTest, ASelectIsGivenUpWhenNobodyWaitsForIt)
{
    makeMemo();
    db_->beginBatch();
    for (int i = 0; i < 800; ++i)
        change(u"INSERT INTO Memo (VLTEXT,VLDATE) VALUES ('" +
            std::u16string(12000, static_cast<char16_t>(u'\u4e00' + i)) + u"',#2020-1-1#)");
    db_->endBatch();
    const std::u16string search = u"SELECT ID FROM Memo WHERE VLTEXT LIKE '%\u4e07%' ORDER BY ID";
    int asked = 0;
    db_->stopWhen([&] { return ++asked == 2; });
    try {
        db_->run(search);
        ADD_FAILURE() << "it went on";
    } catch (const Error& e) {
        EXPECT_EQ(e.native, 3059);
        EXPECT_EQ(e.number, kCanceled);
    }
    EXPECT_EQ(asked, 2);
    EXPECT_EQ(change(u"UPDATE Memo SET VLHEAD='x' WHERE ID=1"), 1); // a change is never stopped half way
    db_->stopWhen({});
    EXPECT_EQ(rows(search), "8");
}

INSTANTIATE_TEST_SUITE_P(BothFormats, DatabaseTest, testing::Values(FileFormat::Jet4, FileFormat::Ace12),
    [](const auto& which) { return which.param == FileFormat::Jet4 ? "Mdb" : "Accdb"; });

TEST_P(DatabaseTest, TellsTheTablesColumnsAsTheyAreSpelled)
{
    makeMemo();
    EXPECT_EQ(db_->run(u"select * from memo where 1=2").columns,
        (std::vector<std::u16string>{
            u"ID", u"VLHEAD", u"VLTEXT", u"VLTYPE", u"VLDATE", u"VLLINK", u"VLMD5"}));
    const Result result =
        db_->run(u"SELECT vlhead, m.id AS Number, 1+1, [vltext] & '' FROM memo AS m WHERE 1=2");
    EXPECT_EQ(result.columns, (std::vector<std::u16string>{u"VLHEAD", u"Number", u"Expr1000", u"Expr1001"}));
    EXPECT_EQ(result.types,
        (std::vector<ColumnType>{ColumnType::Text, ColumnType::Long, ColumnType::Long, ColumnType::Memo}));
    const std::vector<TableInfo> tables = db_->tables();
    EXPECT_EQ(std::count_if(tables.begin(), tables.end(),
                  [](const TableInfo& t) { return t.kind == TableKind::Table; }),
        1);
}

TEST_P(DatabaseTest, KeepsARecordThroughItsLife)
{
    makeMemo();
    EXPECT_EQ(rows(u"SELECT @@IDENTITY"), "0");
    EXPECT_EQ(change(u"INSERT INTO [Memo] (VLHEAD, VLTEXT, VLTYPE, VLDATE, VLLINK, VLMD5) VALUES ('it''s', "
                     u"'body\r\n\ttwo 中文 😀','', '2024-3-5 9:7:3', '', 'd41d')"),
        1);
    EXPECT_EQ(rows(u"SELECT @@IDENTITY"), "1");
    EXPECT_EQ(change(u"INSERT INTO [Memo] SELECT VLHEAD, VLTEXT, VLTYPE, VLDATE, VLLINK, VLMD5 FROM [Memo] "
                     u"WHERE ID=1"),
        1);
    EXPECT_EQ(rows(u"SELECT @@IDENTITY"), "2");
    EXPECT_EQ(change(u"UPDATE [Memo] SET VLHEAD='new', VLTEXT='', VLDATE='2025-1-2 3:4:5' WHERE ID=2"), 1);
    EXPECT_EQ(rows(u"SELECT * FROM Memo ORDER BY ID"),
        "1|it's|body\r\n\ttwo 中文 😀||2024-03-05 09:07:03||d41d/2|new|||2025-01-02 03:04:05||d41d");
    EXPECT_EQ(change(u"DELETE FROM [Memo] WHERE ID=1"), 1);
    EXPECT_EQ(change(u"DELETE FROM [Memo] WHERE ID=1"), 0);
    EXPECT_EQ(change(u"INSERT INTO Memo (VLHEAD) VALUES (NULL)"), 1);
    EXPECT_EQ(
        rows(u"SELECT ID, VLHEAD, VLTEXT, VLDATE FROM Memo"), "2|new||2025-01-02 03:04:05/3|NULL|NULL|NULL");
    EXPECT_EQ(rows(u"SELECT @@IDENTITY"), "3");
}

TEST_P(DatabaseTest, FailedStatementsChangeNothing)
{
    makeMemo();
    change(u"INSERT INTO Memo (VLHEAD, VLDATE) VALUES ('a', '2024-1-1')");
    change(u"INSERT INTO Memo (VLHEAD, VLDATE) VALUES ('b', NULL)");
    const struct {
        const char16_t* sql;
        const char* error;
    } cases[] = {
        {u"SELECT NOSUCH FROM Memo", "3061 No value given for one or more required parameters."},
        {u"SELECT x.ID FROM Memo AS y", "3061 No value given for one or more required parameters."},
        {u"SELECT ID FROM Memo WHERE NOSUCH=1", "3061 No value given for one or more required parameters."},
        {u"UPDATE Memo SET NOSUCH=1", "3061 No value given for one or more required parameters."},
        {u"UPDATE Memo SET VLHEAD=NOSUCH", "3061 No value given for one or more required parameters."},
        {u"SELECT ID FROM Nowhere",
            "3078 The database engine cannot find the input table or query 'Nowhere'. Make sure it exists "
            "and that "
            "its name is spelled correctly."},
        {u"INSERT INTO Nowhere (a) VALUES (1)", "3192 Could not find output table 'Nowhere'."},
        {u"INSERT INTO Memo (VLHEAD, NOSUCH) VALUES (1, 2)",
            "3127 The INSERT INTO statement contains the following unknown field name: 'NOSUCH'. Make sure "
            "you have "
            "typed the name correctly, and try the operation again."},
        {u"INSERT INTO Memo SELECT 1+1 FROM Memo",
            "3127 The INSERT INTO statement contains the following unknown field name: 'Expr1000'. Make sure "
            "you "
            "have typed the name correctly, and try the operation again."},
        {u"INSERT INTO Memo (VLHEAD, vlhead) VALUES (1, 2)", "3063 Duplicate output destination 'VLHEAD'."},
        {u"INSERT INTO Memo (VLHEAD) VALUES (1, 2)",
            "3346 Number of query values and destination fields are not the same."},
        {u"INSERT INTO Memo VALUES (1, 2)",
            "3346 Number of query values and destination fields are not the same."},
        {u"UPDATE Memo SET ID=9 WHERE ID=1", "3164 Cannot update 'ID'; field not updateable."},
        {u"UPDATE Memo SET VLDATE=VLHEAD", "3464 Data type mismatch in criteria expression."},
        {u"UPDATE Memo SET VLDATE=IIF(VLHEAD='a', '2024-2-2', 'never')",
            "3464 Data type mismatch in criteria expression."},
        {u"SELECT ID FROM Memo WHERE ID='1'", "3464 Data type mismatch in criteria expression."},
        {u"SELECT ID FROM Memo WHERE VLDATE>'2020-1-1'", "3464 Data type mismatch in criteria expression."},
        {u"DELETE FROM Memo WHERE VLHEAD IN ('a', 5)", "3464 Data type mismatch in criteria expression."},
        {u"INSERT INTO Memo (ID, VLHEAD) VALUES (1, 'twice')",
            "3022 The changes you requested to the table were not successful because they would create "
            "duplicate "
            "values in the index, primary key, or relationship. Change the data in the field or fields that "
            "contain duplicate data, remove the index, or redefine the index to permit duplicate entries and "
            "try "
            "again."},
        {u"SELECT ID, COUNT(*) FROM Memo",
            "3122 You tried to execute a query that does not include the specified expression 'ID' as part "
            "of an "
            "aggregate function."},
        {u"SELECT ID FROM Memo WHERE COUNT(*)>1",
            "3096 Cannot have aggregate function in WHERE clause (COUNT(*))."},
        {u"SELECT DISTINCT VLHEAD FROM Memo ORDER BY ID",
            "3093 ORDER BY clause (ID) conflicts with DISTINCT."},
        {u"SELECT *", "3067 Query input must contain at least one table or query."},
        {u"CREATE TABLE memo (a LONG)", "3010 Table 'memo' already exists."},
        {u"CREATE TABLE t (a LONG, A MEMO)", "3191 Cannot define field more than once."},
        {u"ALTER TABLE Memo ADD COLUMN VLMD5 VARCHAR(32)",
            "3380 Field 'VLMD5' already exists in table 'Memo'."},
    };
    for (const auto& c : cases)
        EXPECT_EQ(errorOf(c.sql), c.error) << toUtf8(c.sql);
    const std::u16string tooLong = u"UPDATE Memo SET VLMD5='" + std::u16string(33, u'x') + u"' WHERE ID=2";
    EXPECT_EQ(errorOf(tooLong).substr(0, 4), "3163");
    EXPECT_EQ(rows(u"SELECT ID, VLHEAD, VLDATE, VLMD5 FROM Memo"), "1|a|2024-01-01|NULL/2|b|NULL|NULL");
    EXPECT_EQ(rows(u"SELECT @@IDENTITY"), "2");
    change(u"INSERT INTO Memo (VLHEAD) VALUES ('c')");
    EXPECT_EQ(rows(u"SELECT @@IDENTITY"), "3");
}

TEST_P(DatabaseTest, TrimsStampedTitlesInOneUpdate)
{
    makeMemo();
    for (const char16_t* head :
        {u"230415093000 Meeting notes", u"231345093000 x", u"240229235959", u"plain", u""})
        change(u"INSERT INTO Memo (VLHEAD) VALUES ('" + std::u16string(head) + u"')");
    change(u"INSERT INTO Memo (VLHEAD) VALUES (NULL)");
    const std::u16string stamp = u"'20' & LEFT(VLHEAD,2) & '-' & MID(VLHEAD,3,2) & '-' & MID(VLHEAD,5,2) & ' "
                                 u"' & MID(VLHEAD,7,2) & ':' & "
                                 u"MID(VLHEAD,9,2) & ':' & MID(VLHEAD,11,2)";
    EXPECT_EQ(change(u"UPDATE [Memo] SET VLHEAD=MID(VLHEAD,14), VLDATE=" + stamp + u" WHERE IsDate(" + stamp +
                  u")"),
        2);
    EXPECT_EQ(rows(u"SELECT VLHEAD, VLDATE FROM Memo"),
        "Meeting notes|2023-04-15 09:30:00/231345093000 x|NULL/|2024-02-29 "
        "23:59:59/plain|NULL/|NULL/NULL|NULL");
}

TEST_P(DatabaseTest, OrdersAndCutsAsAsked)
{
    makeMemo();
    const char16_t* const values[] = {u"'b', '', '2024-1-1'", u"'B', NULL, '2024-1-2'",
        u"NULL, '20240101000000', NULL", u"'', '20250101000000', '1899-12-29'", u"'é', '', '2024-1-1'",
        u"'e', '', '2024-1-1 0:0:1'"};
    for (const char16_t* value : values)
        change(u"INSERT INTO Memo (VLHEAD, VLTYPE, VLDATE) VALUES (" + std::u16string(value) + u")");
    EXPECT_EQ(rows(u"SELECT ID FROM Memo ORDER BY VLTYPE DESC, VLDATE DESC, ID DESC"), "4/3/6/5/1/2");
    EXPECT_EQ(rows(u"SELECT ID FROM Memo ORDER BY VLHEAD, ID"), "3/4/1/2/6/5");
    EXPECT_EQ(rows(u"SELECT ID, VLHEAD FROM Memo ORDER BY 2 DESC, 1"), "5|é/6|e/1|b/2|B/4|/3|NULL");
    EXPECT_EQ(rows(u"SELECT VLDATE FROM Memo ORDER BY VLDATE"),
        "NULL/1899-12-29/2024-01-01/2024-01-01/2024-01-01 00:00:01/2024-01-02");
    EXPECT_EQ(rows(u"SELECT ID FROM Memo ORDER BY -ID"), "6/5/4/3/2/1");
    EXPECT_EQ(rows(u"SELECT ID AS n FROM Memo ORDER BY n DESC"), "6/5/4/3/2/1");
    EXPECT_EQ(rows(u"SELECT TOP 2 ID FROM Memo ORDER BY ID DESC"), "6/5");
    EXPECT_EQ(rows(u"SELECT TOP 3 ID FROM Memo ORDER BY VLHEAD"), "3/4/1/2"); // 1 and 2 tie
    EXPECT_EQ(rows(u"SELECT TOP 1 ID FROM Memo ORDER BY VLTYPE"), "2");
    EXPECT_EQ(rows(u"SELECT TOP 2 ID FROM Memo"), "1/2");
    EXPECT_EQ(rows(u"SELECT TOP 0 ID FROM Memo"), "");
    EXPECT_EQ(rows(u"SELECT DISTINCT VLHEAD FROM Memo ORDER BY VLHEAD"), "NULL//b/e/é");
    EXPECT_EQ(rows(u"SELECT DISTINCT TOP 1 VLTYPE FROM Memo ORDER BY VLTYPE DESC"), "20250101000000");
}

// Numbers below zero, beyond the whole numbers of a double, and of every type sort as they compare.
TEST_P(DatabaseTest, OrdersNumbersOfEveryType)
{
    change(u"CREATE TABLE n (ID COUNTER, k LONG, d DOUBLE, c CURRENCY, x DECIMAL(28,10), s SINGLE, b BIT)");
    change(u"INSERT INTO n (k, d, c, x, s, b) VALUES (-5, -1E300, '-922337203685477.5807', "
           u"'-123456789012345678.02', -1, 1)");
    change(u"INSERT INTO n (k, d, c, x, s, b) VALUES (7, 1E-300, '922337203685477.5806', "
           u"'-123456789012345678.01', 0, 0)");
    change(u"INSERT INTO n (k, d, c, x, s, b) VALUES (0, -1E-300, '922337203685477.5807', "
           u"'123456789012345678.0000000001', 1, 1)");
    change(u"INSERT INTO n (k, d, c, x, s, b) VALUES (NULL, 0, 0, '123456789012345678', NULL, 0)");
    EXPECT_EQ(rows(u"SELECT ID FROM n ORDER BY k"), "4/1/3/2");
    EXPECT_EQ(rows(u"SELECT ID FROM n ORDER BY d"), "1/3/4/2");
    EXPECT_EQ(rows(u"SELECT ID FROM n ORDER BY c"), "1/4/2/3");
    EXPECT_EQ(rows(u"SELECT ID FROM n ORDER BY c DESC"), "3/2/4/1");
    EXPECT_EQ(rows(u"SELECT ID FROM n ORDER BY x"), "1/2/4/3");
    EXPECT_EQ(rows(u"SELECT ID FROM n ORDER BY x DESC"), "3/4/2/1");
    EXPECT_EQ(rows(u"SELECT ID FROM n ORDER BY b, s DESC"), "3/1/2/4");
    EXPECT_EQ(rows(u"SELECT MIN(k), MAX(c), SUM(k), AVG(k), COUNT(k), COUNT(*), MAX(s)-MIN(s) FROM n"),
        "-5|922337203685477.5807|2|0.666666666666667|3|4|2");
    EXPECT_EQ(rows(u"SELECT ID FROM n WHERE b AND k<0"), "1");
    EXPECT_EQ(rows(u"SELECT ID FROM n WHERE c=0 OR x<-123456789012345000"), "1/2/4");
    EXPECT_EQ(rows(u"SELECT MIN(k), COUNT(*) FROM n WHERE ID>99"), "NULL|0");

    // Neighbours that are the same double, on both sides of a power of ten.
    change(u"CREATE TABLE p (c CURRENCY, x DECIMAL(28,10))");
    for (const char16_t* number : {u"99999999999999.9999", u"-100000000000000", u"100000000000000",
             u"-99999999999999.9999", u"100000000000000.0001"})
        change(u"INSERT INTO p (c, x) VALUES ('" + std::u16string(number) + u"', '" + number + u"')");
    for (const char16_t* column : {u"c", u"x"})
        EXPECT_EQ(rows(u"SELECT c FROM p ORDER BY " + std::u16string(column)),
            "-100000000000000/-99999999999999.9999/99999999999999.9999/100000000000000/100000000000000.0001");
}

// A bounded sort must give what sorting everything gives, ties included.
TEST_P(DatabaseTest, TopAgreesWithSortingEverything)
{
    change(u"CREATE TABLE r (ID COUNTER, a LONG, b VARCHAR(20))");
    std::mt19937 random(7);
    std::vector<std::pair<std::int32_t, std::int32_t>> all; // a descending, then ID
    db_->beginBatch();
    for (std::int32_t id = 1; id <= 4000; ++id) {
        const auto a = static_cast<std::int32_t>(random() % 500) - 250;
        change(u"INSERT INTO r (a, b) VALUES (" + decimal(a) + u", 'x')");
        all.emplace_back(-a, id);
    }
    db_->endBatch();
    std::sort(all.begin(), all.end());
    for (const std::size_t n : {1u, 3u, 100u, 1500u}) {
        std::string expected;
        for (std::size_t i = 0; i < all.size() && (i < n || all[i].first == all[n - 1].first); ++i)
            expected += (i == 0 ? "" : "/") + std::to_string(all[i].second);
        EXPECT_EQ(
            rows(u"SELECT TOP " + decimal(static_cast<std::int64_t>(n)) + u" ID FROM r ORDER BY a DESC"),
            expected)
            << n;
    }
}

TEST_P(DatabaseTest, SearchesTitlesBodiesAndLinks)
{
    makeMemo();
    const std::u16string filler(20000, u'x');
    const char16_t* const values[] = {u"'Garden plan', 'Beans and peas', NULL",
        u"'note', 'the GARDEN gate', ''", u"NULL, NULL, 'c:\\garden.txt'", u"NULL, NULL, NULL",
        u"'中文', '花园里的豆子', ''", u"'100%', 'a_b', ''"};
    for (const char16_t* value : values)
        change(u"INSERT INTO Memo (VLHEAD, VLTEXT, VLLINK) VALUES (" + std::u16string(value) + u")");
    change(u"INSERT INTO Memo (VLTEXT) VALUES ('" + filler + u"gar' & 'den 中" + filler + u"tail')");
    const auto found = [&](const std::u16string& pattern) {
        return rows(u"SELECT TOP 32767 ID FROM [Memo] WHERE ([VLHEAD] LIKE '%" + pattern +
            u"%' OR [VLTEXT] LIKE '%" + pattern + u"%' OR [VLLINK] LIKE '%" + pattern +
            u"%') ORDER BY VLTYPE DESC,  VLDATE DESC, ID DESC");
    };
    EXPECT_EQ(found(u"garden"), "7/3/2/1");
    EXPECT_EQ(found(u"garden%tail"), "7");
    EXPECT_EQ(found(u"beans%peas"), "1");
    EXPECT_EQ(found(u"豆子"), "5");
    EXPECT_EQ(found(u"[%]"), "6");
    EXPECT_EQ(found(u"a[_]b"), "6");
    EXPECT_EQ(found(u"a["), "");
    EXPECT_EQ(found(u""), "7/6/5/3/2/1"); // the row of NULLs alone is not found
    EXPECT_EQ(rows(u"SELECT ID FROM Memo WHERE ID LIKE '[1-3]' AND VLHEAD NOT LIKE 'g%'"), "2");
    EXPECT_EQ(
        rows(u"SELECT ID FROM Memo WHERE VLHEAD LIKE VLHEAD AND 'garden' LIKE LEFT(VLHEAD,1) & '%'"), "1");
}

// Large files are looked through in several threads; the order and the errors stay those of one.
TEST_P(DatabaseTest, FindsTheSameInALargeFile)
{
    makeMemo();
    const std::u16string filler(40000, u'x');
    constexpr int kRows = 400;
    db_->beginBatch();
    for (int i = 1; i <= kRows; ++i)
        change(u"INSERT INTO Memo (VLHEAD, VLTEXT, VLTYPE) VALUES ('" +
            std::u16string(i == 390 ? u"bad" : u"7") + u"', '" + filler + (i % 3 == 0 ? u"needle" : u"") +
            u"', '" + decimal(i % 5) + u"')");
    db_->endBatch();
    std::string inOrder;
    std::string sorted;
    for (int i = 3; i <= kRows; i += 3)
        inOrder += (inOrder.empty() ? "" : "/") + std::to_string(i);
    for (int type = 4, found = 0; type >= 0; --type)
        for (int i = kRows - kRows % 3; i > 0 && found < 50; i -= 3)
            if (i % 5 == type && ++found > 0)
                sorted += (sorted.empty() ? "" : "/") + std::to_string(i);
    for (int turn = 0; turn < 3; ++turn) {
        EXPECT_EQ(rows(u"SELECT ID FROM Memo WHERE VLTEXT LIKE '%needle%'"), inOrder);
        EXPECT_EQ(
            rows(u"SELECT TOP 50 ID FROM Memo WHERE VLTEXT LIKE '%needle%' ORDER BY VLTYPE DESC, ID DESC"),
            sorted);
        EXPECT_EQ(errorOf(u"SELECT ID FROM Memo WHERE VLHEAD+1=8").substr(0, 4), "3464");
    }
    EXPECT_EQ(rows(u"SELECT TOP 2 ID FROM Memo WHERE VLTEXT LIKE '%needle'"), "3/6");
    EXPECT_EQ(change(u"UPDATE Memo SET VLTEXT='' WHERE VLTEXT NOT LIKE '%needle%'"), 267);
    EXPECT_EQ(rows(u"SELECT COUNT(*) FROM Memo WHERE VLTEXT=''"), "267");
}

TEST_P(DatabaseTest, InsertSelectReadsBeforeItWrites)
{
    makeMemo();
    makeMemo(u"Other");
    change(u"INSERT INTO Memo (VLHEAD) VALUES ('a')");
    change(u"INSERT INTO Memo (VLHEAD) VALUES ('b')");
    EXPECT_EQ(
        change(u"INSERT INTO Memo (VLHEAD, VLTEXT) SELECT VLHEAD & '2', ID FROM Memo ORDER BY ID DESC"), 2);
    EXPECT_EQ(rows(u"SELECT ID, VLHEAD, VLTEXT FROM Memo"), "1|a|NULL/2|b|NULL/3|b2|2/4|a2|1");
    EXPECT_EQ(change(u"INSERT INTO Other SELECT * FROM Memo WHERE ID>2"), 2);
    EXPECT_EQ(rows(u"SELECT ID, VLHEAD FROM Other"), "3|b2/4|a2");
    EXPECT_EQ(change(u"INSERT INTO Other (VLHEAD) SELECT VLHEAD FROM Memo WHERE 1=2"), 0);
    EXPECT_EQ(change(u"INSERT INTO Other (VLHEAD) SELECT 'next' FROM Memo WHERE ID=1"), 1);
    EXPECT_EQ(rows(u"SELECT MAX(ID) FROM Other"), "5");
    EXPECT_EQ(change(u"INSERT INTO Other (VLHEAD, VLMD5) SELECT DISTINCT LEFT(VLHEAD,1), 'm' FROM Memo"), 2);
    EXPECT_EQ(rows(u"SELECT VLHEAD FROM Other WHERE VLMD5='M'"), "a/b");
}

TEST_P(DatabaseTest, LooksUpByNumberWhateverElseIsAsked)
{
    makeMemo();
    db_->beginBatch();
    for (int i = 1; i <= 300; ++i)
        change(u"INSERT INTO Memo (VLHEAD) VALUES ('n" + decimal(i) + u"')");
    db_->endBatch();
    EXPECT_EQ(rows(u"SELECT VLHEAD FROM Memo WHERE ID=250"), "n250");
    EXPECT_EQ(rows(u"SELECT VLHEAD FROM Memo WHERE 250=ID AND VLHEAD LIKE 'N%'"), "n250");
    EXPECT_EQ(rows(u"SELECT VLHEAD FROM Memo WHERE VLHEAD='x' AND ID=250"), "");
    EXPECT_EQ(rows(u"SELECT VLHEAD FROM Memo WHERE ID=250 OR ID=251"), "n250/n251");
    EXPECT_EQ(rows(u"SELECT VLHEAD FROM Memo WHERE ID=250.0"), "n250");
    EXPECT_EQ(rows(u"SELECT VLHEAD FROM Memo WHERE ID=250.5"), "");
    EXPECT_EQ(rows(u"SELECT VLHEAD FROM Memo WHERE ID=-1"), "");
    EXPECT_EQ(rows(u"SELECT VLHEAD FROM Memo WHERE ID=NULL"), "");
    EXPECT_EQ(rows(u"SELECT COUNT(*) FROM Memo WHERE NOT ID=250"), "299");
    EXPECT_EQ(change(u"DELETE * FROM Memo WHERE ID BETWEEN 10 AND 299"), 290);
    EXPECT_EQ(rows(u"SELECT ID FROM Memo WHERE ID>8"), "9/300");
}

TEST_P(DatabaseTest, AddsColumnsAndFixedTexts)
{
    change(u"CREATE TABLE t (a LONG, f CHAR(5), r VARCHAR(10) NOT NULL)");
    change(u"INSERT INTO t VALUES (1, 'ab', 'x')");
    change(u"ALTER TABLE t ADD COLUMN VLLINK VARCHAR(255)");
    change(u"ALTER TABLE t ADD VLMD5 VARCHAR(32)");
    change(u"UPDATE t SET VLMD5='m'");
    change(u"INSERT INTO t (a, r, VLLINK) VALUES (2, 'y', 'l')");
    EXPECT_EQ(rows(u"SELECT a, r, VLLINK, VLMD5 FROM t WHERE f='ab' OR f IS NULL"), "1|x|NULL|m/2|y|l|NULL");
    EXPECT_EQ(errorOf(u"INSERT INTO t (a) VALUES (3)"),
        "3314 The field 't.r' cannot contain a Null value because the Required property for this field is "
        "set to "
        "True. Enter a value in this field.");
    EXPECT_EQ(errorOf(u"UPDATE t SET r=NULL WHERE a=1").substr(0, 4), "3314");
}

TEST_P(DatabaseTest, ABatchTakesAFailedStatementBackAlone)
{
    makeMemo();
    db_->beginBatch();
    change(u"INSERT INTO Memo (VLHEAD, VLTEXT) VALUES ('one', '" + std::u16string(9000, u'z') + u"')");
    EXPECT_NE(
        errorOf(u"UPDATE Memo SET VLTEXT='" + std::u16string(50000, u'y') + u"', VLDATE='never'"), "(none)");
    EXPECT_NE(errorOf(u"INSERT INTO Memo (VLHEAD) SELECT IIF(ID=1, 'x', 'y') & VLTEXT FROM Memo"), "(none)");
    change(u"INSERT INTO Memo (VLHEAD) VALUES ('two')");
    EXPECT_EQ(rows(u"SELECT ID, VLHEAD, LEN(VLTEXT) FROM Memo"), "1|one|9000/2|two|NULL");
    db_->endBatch();
    EXPECT_EQ(rows(u"SELECT ID, VLHEAD, LEN(VLTEXT) FROM Memo"), "1|one|9000/2|two|NULL");
    db_->beginBatch();
    change(u"DELETE FROM Memo");
    db_.reset(); // gives the batch up
    db_ = std::make_unique<Database>(path_);
    EXPECT_EQ(rows(u"SELECT COUNT(*) FROM Memo"), "2");
}

TEST_P(DatabaseTest, RefusesWhatItDoesNotDo)
{
    makeMemo();
    change(u"INSERT INTO Memo (VLHEAD) VALUES ('kept')");
    for (const char16_t* sql : {u"CREATE TABLE u (a LONG DEFAULT 5)",
             u"CREATE TABLE u (a LONG REFERENCES Memo (ID))", u"ALTER TABLE Memo DROP CONSTRAINT PK",
             u"UPDATE MSysObjects SET Name='x'", u"DELETE FROM MSysObjects"})
        EXPECT_NE(errorOf(sql), "(none)") << toUtf8(sql);
    EXPECT_EQ(rows(u"SELECT VLHEAD FROM Memo"), "kept");
}

TEST_P(DatabaseTest, AnswersWithoutATable)
{
    EXPECT_EQ(rows(u"SELECT 1+1, 'a' & 'b', NULL"), "2|ab|NULL");
    EXPECT_EQ(rows(u"SELECT 1 WHERE 1=2"), "");
    EXPECT_EQ(rows(u"SELECT COUNT(*) WHERE 1=2"), "0");
}

} // namespace
} // namespace vellums::jet
