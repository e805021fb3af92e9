#include "jet/sql/parse/parser.h"

#include "jet/sql/values/conversion.h"
#include "text/unicode.h"

#include <gtest/gtest.h>

namespace vellums::jet::sql {
namespace {

std::u16string errorOf(std::u16string_view sql, int* native = nullptr)
{
    try {
        parseStatement(sql);
        return u"(none)";
    } catch (const Error& error) {
        if (native)
            *native = error.native;
        return error.description;
    }
}

struct ErrorCase {
    const char16_t* sql;
    int native;
    const char16_t* description;
};

constexpr const char16_t* kSelectFault = u"The SELECT statement includes a reserved word or an argument name "
                                         u"that is misspelled or missing, or the "
                                         u"punctuation is incorrect.";
constexpr const char16_t* kNoStatement =
    u"Invalid SQL statement; expected 'DELETE', 'INSERT', 'PROCEDURE', 'SELECT', or 'UPDATE'.";

// clang-format off
const ErrorCase kErrors[] = {
    {u"SELECT ID FROM t WHERE () ORDER BY ID", 3075, u"Syntax error in query expression '()'."},
    {u"SELECT ID FROM t WHERE (ID=1", 3075, u"Missing ), ], or Item in query expression '(ID=1'."},
    {u"SELECT ID FROM t WHERE ID=1)", 3075, u"Extra ) in query expression 'ID=1)'."},
    {u"SELECT ID FROM t WHERE ID=", 3075, u"Syntax error (missing operator) in query expression 'ID='."},
    {u"SELECT ID FROM t WHERE ID 1", 3075, u"Syntax error (missing operator) in query expression 'ID 1'."},
    {u"SELECT ID FROM t WHERE ID != 1", 3075, u"Syntax error (missing operator) in query expression 'ID != 1'."},
    {u"SELECT ID FROM t WHERE ID == 1", 3075, u"Syntax error (missing operator) in query expression 'ID == 1'."},
    {u"SELECT ID FROM t -- comment", 3131, u"Syntax error in FROM clause."},
    {u"SELECT ID x FROM t", 3075, u"Syntax error (missing operator) in query expression 'ID x'."},
    {u"SELECT ID FROM t WHERE h='it's' ORDER BY ID", 3075,
        u"Syntax error (missing operator) in query expression 'h='it's' ORDER BY ID'."},
    {u"SELECT ID FROM t WHERE h='open", 3075, u"Syntax error in string in query expression 'h='open'."},
    {u"SELECT ID FROM t WHERE d=#2024-13-45#", 3075, u"Syntax error in date in query expression '#2024-13-45#'."},
    {u"SELECT ID FROM t WHERE [ID=1", 3126, u"Invalid bracketing of name 'ID=1'."},
    {u"SELECT ID FROM t WHERE ID\u3000=1", 3075, u"Syntax error in query expression 'ID\u3000=1'."},
    {u"SELECT NOSUCH(1)", 3085, u"Undefined function 'NOSUCH' in expression."},
    {u"SELECT LEFT('a')", 3075, u"Wrong number of arguments used with function in query expression 'LEFT('a')'."},
    {u"SELECT NOW(1)", 3075, u"Wrong number of arguments used with function in query expression 'NOW(1)'."},
    {u"SELECT FROM t", 3141, kSelectFault},
    {u"SELECT ID, FROM t", 3141, kSelectFault},
    {u"SELECT", 3141, kSelectFault},
    {u"SELECT TOP -1 ID FROM t", 3075, u"Syntax error (missing operator) in query expression 'TOP -1 ID'."},
    {u"SELECT ID FROM", 3131, u"Syntax error in FROM clause."},
    {u"SELECT ID FROM t ORDER ID", 3138, u"Syntax error in ORDER BY clause."},
    {u"SELECT ID FROM t ORDER BY", 3138, u"Syntax error in ORDER BY clause."},
    {u"SELECT ID FROM t; SELECT ID FROM t", 3142, u"Characters found after end of SQL statement."},
    {u"SELECT ID FROM a, b", 3131, u"Syntax error in FROM clause: joins are not supported."},
    {u"SELECT ID FROM a INNER JOIN b ON a.x=b.x", 3131, u"Syntax error in FROM clause: joins are not supported."},
    {u"SELECT ID FROM a LEFT JOIN b ON a.x=b.x", 3131, u"Syntax error in FROM clause: joins are not supported."},
    {u"SELECT COUNT(*) FROM t GROUP BY x", 3131, u"Syntax error: GROUP is not supported in a SELECT statement."},
    {u"SELECT ID FROM t WHERE ID IN (SELECT x FROM y)", 3075,
        u"Syntax error in query expression: subqueries are not supported."},
    {u"INSERT t VALUES (1)", 3134, u"Syntax error in INSERT INTO statement."},
    {u"INSERT INTO t (a,) VALUES (1)", 3134, u"Syntax error in INSERT INTO statement."},
    {u"INSERT INTO t (a) VALUES (1", 3134, u"Syntax error in INSERT INTO statement."},
    {u"INSERT INTO t (a) VALUES ('x) ", 3075, u"Syntax error in string in query expression ''x) '."},
    {u"UPDATE t SET", 3144, u"Syntax error in UPDATE statement."},
    {u"UPDATE t SET a=", 3144, u"Syntax error in UPDATE statement."},
    {u"UPDATE t SET a=1 WHEN b=2", 3075, u"Syntax error (missing operator) in query expression '1 WHEN b=2'."},
    {u"DELETE t", 3131, u"Syntax error in FROM clause."},
    {u"CREATE TABLE t (a FROB)", 3292, u"Syntax error in field definition."},
    {u"CREATE TABLE t a LONG", 3290, u"Syntax error in CREATE TABLE statement."},
    {u"CREATE TABLE t (a VARCHAR(256))", 3319, u"Size of field 'a' is too long."},
    {u"CREATE INDEX i ON t", 3291, u"Syntax error in CREATE INDEX statement."},
    {u"ALTER TABLE t ADD", 3292, u"Syntax error in field definition."},
    {u"ALTER TABLE t DROP COLUMN", 3293, u"Syntax error in ALTER TABLE statement."},
    {u"ALTER TABEL t", 3293, u"Syntax error in ALTER TABLE statement."},
    {u"DROP t", 3295, u"Syntax error in DROP TABLE or DROP INDEX."},
    {u"SHOW TABLES", 3129, kNoStatement},
    {u"", 3129, kNoStatement},
    {u"  ;", 3129, kNoStatement},
    {u"/* x */ SELECT 1", 3129, kNoStatement},
};
// clang-format on

TEST(Parser, SaysWhatIsWrong)
{
    for (const ErrorCase& c : kErrors) {
        int native = 0;
        EXPECT_EQ(text::toUtf8(errorOf(c.sql, &native)), text::toUtf8(c.description)) << text::toUtf8(c.sql);
        EXPECT_EQ(native, c.native) << text::toUtf8(c.sql);
    }
}

TEST(Parser, TakesEveryStatementOfTheDialect)
{
    const char16_t* const statements[] = {
        u"SELECT TOP 32767 ID,VLHEAD FROM [Memo] WHERE ([VLHEAD] LIKE '%w%' OR [VLTEXT] LIKE '%w%') ORDER BY "
        u"VLTYPE DESC,  VLDATE DESC, ID DESC",
        u"select distinct a as b, t.*, [t]![x y] from [t] as x where not a in (1,2) order by 1 asc, b desc;",
        u"SELECT @@identity",
        u"SELECT * INTO [new] From [old] WHERE 1=2",
        u"SELECT COUNT(*), COUNT(a), MIN(a), MAX(a), SUM(a), AVG(a) FROM t x",
        u"SELECT [Date], Date, [select], Name, Value, `back` FROM [Order]",
        u"INSERT INTO [T] (VLHEAD, VLTEXT) VALUES ('it''s', \"a \"\"b\"\"\")",
        u"INSERT INTO [T] SELECT VLHEAD, VLTEXT FROM [T] WHERE ID=7",
        u"INSERT INTO [T] VALUES (1, 'a', NULL)",
        u"UPDATE [T] SET VLHEAD=MID(VLHEAD,14), VLDATE='20' & LEFT(VLHEAD,2) & '-' & MID(VLHEAD,3,2) WHERE "
        u"IsDate('20' & LEFT(VLHEAD,2))",
        u"DELETE FROM [T] WHERE ID=1",
        u"DELETE * FROM t",
        u"CREATE TABLE [T] (ID COUNTER PRIMARY KEY, a VARCHAR(255) NOT NULL, b MEMO, c DATETIME, d TEXT, e "
        u"CHARACTER VARYING(10), f DECIMAL(10,2), g TEXT(20) WITH COMPRESSION, CONSTRAINT u UNIQUE (a, c "
        u"DESC))",
        u"ALTER TABLE [T] ADD COLUMN VLLINK VARCHAR(255)",
        u"ALTER TABLE [T] ADD VLMD5 CHAR(32)",
        u"ALTER TABLE [T] DROP COLUMN VLMD5",
        u"ALTER TABLE [T] DROP [VLMD5];",
        u"DROP TABLE [T]",
        u"CREATE UNIQUE INDEX i ON [T] (a, b DESC) WITH DISALLOW NULL",
        u"DROP INDEX i ON [T]",
    };
    for (const char16_t* sql : statements)
        EXPECT_EQ(errorOf(sql), u"(none)") << text::toUtf8(sql);
}

TEST(Parser, KeepsEveryCharacterOfALiteral)
{
    const std::u16string note(3 << 20, u'\'');
    const Statement statement = parseStatement(u"INSERT INTO t (a) VALUES ('" + note + note + u"')");
    const auto& insert = std::get<InsertStatement>(statement);
    EXPECT_EQ(std::get<std::u16string>(insert.values[0].literal), note);
    using namespace std::literals;
    EXPECT_NE(errorOf(u"INSERT INTO t (a) VALUES ('a\0b')"sv), u"(none)");
}

TEST(Parser, ReadsColumnTypes)
{
    const Statement statement = parseStatement(u"CREATE TABLE t (a IDENTITY(1,1), b TEXT, c TEXT(7), d "
                                               u"CHAR(3), e NUMERIC(12,4), f BIT NOT NULL, g VARCHAR, "
                                               u"h LONGBINARY)");
    const std::vector<ColumnSpec>& columns = std::get<CreateTableStatement>(statement).table.columns;
    ASSERT_EQ(columns.size(), 8u);
    EXPECT_TRUE(columns[0].autoNumber);
    EXPECT_EQ(columns[1].type, ColumnType::Memo);
    EXPECT_EQ(columns[2].length, 7);
    EXPECT_TRUE(columns[3].fixedText);
    EXPECT_EQ(columns[4].precision, 12);
    EXPECT_EQ(columns[4].scale, 4);
    EXPECT_TRUE(columns[5].required);
    EXPECT_EQ(columns[6].length, 255);
    EXPECT_EQ(columns[7].type, ColumnType::Ole);
}

} // namespace
} // namespace vellums::jet::sql
