// Values of the later kinds, put into files by hand since nothing here writes them: they are read as the
// types that they stand for.
#include "jet/catalogue/systemRows.h"
#include "jet/database.h"
#include "jet/sql/values/conversion.h"
#include "tests/jet/fixturesFolder.h"
#include "tests/support/temporaryFolder.h"

#include <functional>
#include <gtest/gtest.h>

namespace vellums::jet {
namespace {

Table opened(PageFile& file, const std::u16string& name)
{
    const Catalogue catalogue(file);
    return catalogue.open(*catalogue.find(name));
}

// The record of a column is changed in the definition, behind the back of everybody.
void patch(PageFile& file, const std::u16string& name, std::size_t column,
    const std::function<void(MutableBytes)>& change)
{
    const Table table = opened(file, name);
    const std::size_t at = kDefinitionHeader + kIndexCounter * table.definition().physicalIndexes.size() +
        kColumnRecord * column;
    change(file.write(table.definition().page).subspan(at, kColumnRecord));
}

std::u16string shown(const Value& value)
{
    return isNull(value) ? u"NULL" : sql::textOf(value);
}

Bytes hex(std::string_view digits)
{
    Bytes bytes;
    for (std::size_t i = 0; i + 1 < digits.size(); i += 2)
        bytes.push_back(static_cast<std::byte>(std::stoi(std::string(digits.substr(i, 2)), nullptr, 16)));
    return bytes;
}

Bytes letters(std::string_view text)
{
    const auto bytes = std::as_bytes(std::span(text));
    return {bytes.begin(), bytes.end()};
}

class SpecialValues : public testing::Test {
protected:
    SpecialValues() { createDatabase(path_, FileFormat::Ace12, 45000); }

    // A table with one binary column that holds the bytes; then the record of the column is changed.
    std::unique_ptr<Database> holding(const Bytes& bytes, const std::function<void(MutableBytes)>& change)
    {
        auto database = std::make_unique<Database>(path_);
        database->run(u"CREATE TABLE T (V VARBINARY(200))");
        PageFile file(path_, OpenMode::Write);
        opened(file, u"T").insert({{0, bytes}});
        patch(file, u"T", 0, change);
        file.commit();
        return database;
    }

    const tests::TemporaryFolder folder_;
    const std::u16string path_ = folder_.file(u"special.accdb");
};

TEST_F(SpecialValues, DatesOfTheExtendedKindAreDates)
{
    const struct {
        std::string_view stored;
        std::u16string text;
        bool date;
    } cases[] = {
        {"0000000000000737849:0000000328270000000:7", u"2021-03-01 09:07:07", true},
        {"0000000000000693593:0000000000000000000:7", u"1899-12-30", true},
        {"0000000000000693592:0000000216000000000:7", u"1899-12-29 06:00:00", true}, // counts forward
        {"0000000000003652058:0000000863990000000:7", u"9999-12-31 23:59:59", true},
        {"0000000000003652059:0000000000000000000:7", u"", false},
        {"0000000000000737849:0000000864000000000:7", u"", false},
        {"000000000000073784x:0000000000000000000:7", u"", false},
        {"0000000000000737849;0000000000000000000:7", u"", false},
        {"99999999999999999999", u"", false},
    };
    for (const auto& c : cases) {
        Bytes bytes = letters(c.stored);
        bytes.push_back(std::byte{0});
        const auto database = holding(bytes, [](MutableBytes record) {
            record[0] = static_cast<std::byte>(ColumnType::ExtendedDate);
            store<std::uint16_t>(record, 23, 42);
        });
        const Result result = database->run(u"SELECT V FROM T");
        EXPECT_EQ(result.types[0], ColumnType::Date);
        if (c.date)
            EXPECT_EQ(shown(result.rows[0][0]), c.text) << c.stored;
        else
            EXPECT_EQ(result.rows[0][0], Value(bytes)) << c.stored;
        if (c.text.size() > 10) {
            EXPECT_EQ(database->run(u"SELECT V FROM T WHERE V=#" + c.text + u"#").rows.size(), 1u)
                << c.stored;
        }
        database->run(u"SELECT * INTO Copy FROM T WHERE V IS NULL");
        EXPECT_EQ(database->run(u"SELECT * FROM Copy").types[0], ColumnType::Date);
        database->run(u"DROP TABLE Copy");
        database->run(u"DROP TABLE T");
    }
}

TEST_F(SpecialValues, WholeNumbersOf64BitsKeepEveryDigit)
{
    for (const auto& [stored, text] : {std::pair("FFFFFFFFFFFFFF7F", u"9223372036854775807"),
             std::pair("0000000000000080", u"-9223372036854775808"), std::pair("FFFFFFFFFFFFFFFF", u"-1")}) {
        const auto database = holding(hex(stored), [](MutableBytes record) {
            record[0] = static_cast<std::byte>(ColumnType::BigInteger);
            store<std::uint16_t>(record, 23, 8);
        });
        const Result result = database->run(u"SELECT V FROM T WHERE V LIKE '" + std::u16string(text) + u"'");
        ASSERT_EQ(result.rows.size(), 1u) << stored;
        EXPECT_EQ(shown(result.rows[0][0]), text);
        database->run(u"UPDATE T SET V='123456789012345678'");
        EXPECT_EQ(shown(database->run(u"SELECT V FROM T").rows[0][0]), u"123456789012345678");
        database->run(u"DROP TABLE T");
    }
}

TEST_F(SpecialValues, CalculatedValuesHaveTheTypesOfTheirResults)
{
    const struct {
        ColumnType type;
        std::string_view stored;
        std::u16string text;
    } cases[] = {
        {ColumnType::Boolean, "FF", u"-1"},
        {ColumnType::Boolean, "00", u"0"},
        {ColumnType::Byte, "FE", u"254"},
        {ColumnType::Integer, "FEFF", u"-2"},
        {ColumnType::Long, "40420F00", u"1000000"},
        {ColumnType::Currency, "3930000000000000", u"1.2345"},
        {ColumnType::Single, "0000C03F", u"1.5"},
        {ColumnType::Double, "000000000000F8BF", u"-1.5"},
        {ColumnType::Date, "000000000088E340", u"2009-07-06"},
        {ColumnType::Text, "FFFE6162", u"ab"},
        {ColumnType::Text, "874E6100", u"\u4E87a"},
        {ColumnType::Guid, "A06C098F16FC8842801E119F26C0B6FC", u"{8F096CA0-FC16-4288-801E-119F26C0B6FC}"},
        {ColumnType::Decimal, "0E000A8000000000EC04B01FE7AE0000", u"-19230.7692307692"},
        {ColumnType::Decimal, "0000000001000000020000000300000000", u""}, // one byte too many
        {ColumnType::Decimal, "00000000010000000200000003000000", u"18446744086594453506"},
        {ColumnType::Long, "4042", u""},
    };
    for (const auto& c : cases) {
        const Bytes content = hex(c.stored);
        Bytes wrapped(16);
        append<std::uint32_t>(wrapped, static_cast<std::uint32_t>(content.size()));
        append(wrapped, content);
        append(wrapped, Bytes(3));
        const auto database = holding(wrapped, [&](MutableBytes record) {
            record[0] = static_cast<std::byte>(c.type);
            record[16] = std::byte{0xC0};
        });
        const Result result = database->run(u"SELECT V FROM T");
        EXPECT_EQ(result.types[0], c.type);
        if (c.text.empty())
            EXPECT_EQ(result.rows[0][0], Value(content)) << c.stored;
        else
            EXPECT_EQ(shown(result.rows[0][0]), c.text) << c.stored;
        EXPECT_THROW(database->run(u"DELETE FROM T"), Error);
        database->run(u"DROP TABLE T");
    }
}

TEST_F(SpecialValues, ComplexColumnsGiveTheirValuesAsTexts)
{
    Database database(path_);
    database.run(u"CREATE TABLE Parent (ID LONG, Several LONG, Files LONG)");
    database.run(u"CREATE TABLE Flat1 (Number COUNTER, [_Several] LONG, [Value] DOUBLE)");
    database.run(u"CREATE TABLE Flat2 (FileFlags LONG, FileName TEXT(255), [_Files] LONG, FileType TEXT(9))");
    for (const char16_t* const sql :
        {u"INSERT INTO Parent VALUES (1, 7, 1)", u"INSERT INTO Parent VALUES (2, 8, 2)",
            u"INSERT INTO Parent (ID) VALUES (3)", u"INSERT INTO Flat1 ([_Several], [Value]) VALUES (8, 2.5)",
            u"INSERT INTO Flat1 ([_Several], [Value]) VALUES (7, -1)",
            u"INSERT INTO Flat1 ([_Several], [Value]) VALUES (8, 3)",
            u"INSERT INTO Flat1 ([_Several]) VALUES (8)",
            u"INSERT INTO Flat2 VALUES (1, '豆.txt', 2, 'txt')"})
        database.run(sql);
    {
        PageFile file(path_, OpenMode::Write);
        const Catalogue catalogue(file);
        const auto idOf = [&](const char16_t* name) { return catalogue.find(name)->id; };
        Table list = opened(file, u"MSysComplexColumns");
        for (const auto& [column, flat] : {std::pair(u"several", u"Flat1"), std::pair(u"Files", u"Flat2")})
            list.insert({{columnOf(list, u"ColumnName"), std::u16string(column)},
                {columnOf(list, u"ConceptualTableID"), idOf(u"Parent")},
                {columnOf(list, u"FlatTableID"), idOf(flat)}});
        for (const std::size_t column : {1u, 2u})
            patch(file, u"Parent", column,
                [](MutableBytes record) { record[0] = static_cast<std::byte>(ColumnType::Complex); });
        file.commit();
    }
    const Result result = database.run(u"SELECT * FROM Parent");
    EXPECT_EQ(result.types, (std::vector{ColumnType::Long, ColumnType::Memo, ColumnType::Memo}));
    EXPECT_EQ(result.rows,
        (std::vector<std::vector<Value>>{{1, u"-1", Null{}}, {2, u"2.5;3", u"豆.txt"}, {3, Null{}, Null{}}}));
    const auto ids = [&](const std::u16string& rest) {
        return database.run(u"SELECT ID FROM Parent " + rest).rows;
    };
    EXPECT_EQ(ids(u"WHERE Several LIKE '%;3'"), (std::vector<std::vector<Value>>{{2}}));
    EXPECT_EQ(ids(u"WHERE Files IS NULL"), (std::vector<std::vector<Value>>{{1}, {3}}));
    EXPECT_EQ(ids(u"WHERE Several='-1'"), (std::vector<std::vector<Value>>{{1}}));
    EXPECT_EQ(ids(u"ORDER BY Several DESC"), (std::vector<std::vector<Value>>{{2}, {1}, {3}}));
}

TEST(SpecialValuesOfAccess, AreReadAsAccessWroteThem)
{
    const auto complexData = tests::fixturePath("complexDataTestV2010.accdb");
    const auto calculated = tests::fixturePath("calcFieldTestV2010.accdb");
    if (!complexData || !calculated)
        GTEST_SKIP() << "no fixtures";
    std::u16string text;
    const auto read = [&](const std::u16string& path, const std::u16string& sql) {
        text.clear();
        for (const std::vector<Value>& row : Database(path).run(sql).rows)
            for (const Value& value : row)
                text += shown(value) + u"|";
    };
    read(*complexData, u"SELECT [multi-value-data], [attach-data] FROM Table1");
    EXPECT_EQ(text,
        u"NULL|NULL|value1;value4|test_data.txt;test_data2.txt|value1;value2;value3;value4|NULL|NULL|"
        u"test_data2.txt|");
    read(*complexData, u"SELECT [VersionHistory_F5F8918F-0A3F-4DA9-AE71-184EE5012880] FROM Table1");
    EXPECT_EQ(text, u"NULL|row2-memo|row3-memo;row3-memo-revised;row3-memo-again|row4-memo|");
    // Currency, yes/no, a memo that calls itself a text, decimals, a single.
    read(*calculated,
        u"SELECT MonthlySalary, IsRich, AllNames, WeeklySalary, FloatTest, BigNumTest FROM Table1 WHERE ID=1");
    EXPECT_EQ(text,
        u"83333.3333|-1|Wayne, Bruce=Wayne, Bruce|19230.7692307692|2583.209|56505085819.42479129657228018|");
}

} // namespace
} // namespace vellums::jet
