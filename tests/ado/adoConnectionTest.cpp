#include "store/ado/adoConnection.h"

#include "jet/database.h"
#include "store/connectionString.h"
#include "store/records/records.h"
#include "tests/ado/adoFixture.h"
#include "text/decimal.h"
#include "text/unicode.h"

namespace vellums::tests::ado {
namespace {

using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;

class AdoConnections : public WithAccess {
protected:
    void fill(int rows)
    {
        jet::Database database(notes.file());
        database.beginBatch();
        for (int i = 1; i <= rows; ++i)
            database.run(u"INSERT INTO [Notes] (VLHEAD, VLDATE) VALUES ('row " + text::decimal(i) + u"', 1)");
        database.endBatch();
    }

    TestNotebook notes;
};

TEST_F(AdoConnections, AskInTheDocumentedWay)
{
    const std::string opened =
        "Connection.ConnectionString/4('" + text::toUtf8(expandedConnection(*notes, notes->dbConn)) + "')";
    fill(1);
    EXPECT_THAT(callsOf([&] { notes.rows(u"SELECT ID, VLHEAD FROM [Notes]"); }),
        ElementsAre(opened, "Connection.Open/1()", "Command.ActiveConnection/8(object)",
            "Command.CommandType/4(1)", "Command.CommandText/4('SELECT ID, VLHEAD FROM [Notes]')",
            "Command.Execute/1()", "Recordset.State/2()", "Recordset.Fields/2()", "Fields.Count/2()",
            "Fields.Item/3(0)", "Field.Name/2()", "Field.Type/2()", "Fields.Item/3(1)", "Field.Name/2()",
            "Field.Type/2()", "Recordset.EOF/2()", "Recordset.GetRows/1(2000)", "Recordset.EOF/2()",
            "Recordset.State/2()", "Recordset.Close/1()", "Connection.State/2()", "Connection.Close/1()"));
    EXPECT_THAT(callsOf([&] { notes.run(u"UPDATE [Notes] SET VLTEXT='x'"); }),
        AllOf(Contains("Command.ActiveConnection/8(object)"),
            Contains("Command.Execute/1(out, missing, 129)")));
    EXPECT_THAT(callsOf([&] { notes->connect()->tables(); }), Contains("Connection.OpenSchema/1(20)"));
    EXPECT_THAT(
        callsOf([&] { notes.rows(u"SELECT VLTEXT FROM [Notes]"); }), Contains("Recordset.GetRows/1(50)"))
        << "rows with memos come in smaller blocks";
}

TEST_F(AdoConnections, GiveEveryRowOnceWhateverTheBlocks)
{
    fill(4001);
    for (const int count : {0, 1, 1999, 2000, 2001, 4000, 4001}) {
        const auto connection = notes->connect();
        const auto rows = connection->query(
            u"SELECT ID, VLHEAD FROM [Notes] WHERE ID <= " + text::decimal(count) + u" ORDER BY ID");
        EXPECT_THAT(rows->columns(), ElementsAre(u"ID", u"VLHEAD"));
        int seen = 0;
        while (rows->next()) {
            ++seen;
            ASSERT_EQ(rows->value(0), Value(std::int32_t{seen}));
            ASSERT_EQ(rows->value(1), Value(u"row " + text::decimal(seen)));
        }
        EXPECT_EQ(seen, count);
        EXPECT_FALSE(rows->next()) << "the end stays the end";
    }
}

// Every column type, NULL in each of them, and a date before 1900: as the embedded client reads them.
TEST_F(AdoConnections, ReadWhatTheEmbeddedClientReads)
{
    notes.run(u"CREATE TABLE [All] (A COUNTER, B BYTE, C SMALLINT, D INTEGER, E REAL, F DOUBLE, G CURRENCY, "
              u"H DATETIME, "
              u"I BIT, J TEXT(50), K MEMO, L DECIMAL(18, 4))");
    notes.run(
        u"INSERT INTO [All] (B, C, D, E, F, G, H, I, J, K, L) VALUES (200, -30000, -2000000000, 1.5, -2.25, "
        u"-12.3456, '1850-3-5 6:00:00', -1, 'it''s 中文', '', -1.5)");
    notes.run(u"INSERT INTO [All] (D) VALUES (NULL)");
    const std::u16string sql = u"SELECT * FROM [All] ORDER BY A";
    const auto ado = notes->connect();
    const auto own = EmbeddedProvider().open(expandedConnection(*notes, notes->dbConn));
    const auto adoRows = ado->query(sql);
    const auto ownRows = own->query(sql);
    ASSERT_EQ(adoRows->columns(), ownRows->columns());
    for (int row = 1; row <= 2; ++row) {
        ASSERT_TRUE(adoRows->next() && ownRows->next());
        for (std::size_t i = 0; i < ownRows->columns().size(); ++i) {
            EXPECT_EQ(adoRows->value(i), ownRows->value(i)) << row << text::toUtf8(ownRows->columns()[i]);
            const bool always = i == 0 || ownRows->columns()[i] == u"I"; // the number, and booleans
            EXPECT_EQ(isNull(adoRows->value(i)), row == 2 && !always);
        }
    }
}

struct BadString {
    const char16_t* connection;
    const char* number;
};

const BadString kBadStrings[] = {
    {u"Data Source=x.mdb", "(-2147467259)"}, // no provider
    {u"Provider=No.Such.Provider;Data Source=x.mdb", "(3706)"},
    {u"Provider=Other.Bitness;Data Source=x.mdb", "(-2147221164)"},
    {u"Provider=Microsoft.ACE.OLEDB.12.0;Data Source=C:\\no\\such.mdb", "(-2147467259)"},
    {u"Provider=SQLOLEDB.1;Data Source=(LOCAL)\\X;Initial Catalog=V", "(-2147467259)"},
    {u"", "(-2147467259)"},
};

TEST_F(AdoConnections, ThatFailToOpenLeaveOneLineAndNothingElse)
{
    const std::u16string good = notes->dbConn;
    std::size_t lines = 0;
    for (const BadString& bad : kBadStrings) {
        notes->dbConn = bad.connection;
        EXPECT_FALSE(addRecord(*notes, {u"text", u"", u""}));
        ASSERT_EQ(notes.shown().size(), ++lines);
        EXPECT_THAT(
            text::toUtf8(notes.shown().back()), AllOf(HasSubstr("addRecord - "), HasSubstr(bad.number)));
        EXPECT_EQ(world().alive, 0);
        EXPECT_EQ(world().connections(), 0);
        notes->dbConn = good;
        EXPECT_TRUE(addRecord(*notes, {u"text", u"", u""})) << "the next operation works";
    }
    EXPECT_EQ(getRecText(*notes, 6)->text, u"text");
}

TEST_F(AdoConnections, FindAFileWhoseNameHoldsASeparator)
{
    notes.folder().makeFolder(u"a;b");
    provider.createDatabase(notes.folder().file(u"a;b/c.mdb"), u"T");
    notes->dbConn = connectionStringFor(*notes, notes.folder().file(u"a;b/c.mdb"));
    EXPECT_THAT(notes.rows(u"SELECT COUNT(*) FROM [T]"), ElementsAre(u"0"));
}

} // namespace
} // namespace vellums::tests::ado
