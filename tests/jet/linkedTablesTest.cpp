// Linked tables and queries share the names of tables; whatever is asked of one, the answer says what it is.
#include "jet/catalogue/systemRows.h"
#include "jet/database.h"
#include "tests/support/temporaryFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <map>

namespace vellums::jet {
namespace {

struct Object {
    std::u16string name;
    std::int32_t type;
    Value database;
    Value foreignName;
};

void addObjects(const std::u16string& path, const std::vector<Object>& objects)
{
    PageFile file(path, OpenMode::Write);
    Table table(file, kObjectsPage, u"MSysObjects");
    std::int32_t id = std::numeric_limits<std::int32_t>::min();
    for (const Object& object : objects) {
        const std::vector<std::pair<const char16_t*, Value>> values = {{u"Id", id++},
            {u"ParentId", kTablesId}, {u"Name", object.name}, {u"Type", object.type},
            {u"Flags", std::int32_t{0}}, {u"Database", object.database}, {u"ForeignName", object.foreignName},
            {u"Connect", u"ODBC;PWD=secret"}};
        std::vector<Assignment> row;
        for (const auto& [column, value] : values)
            row.push_back({columnOf(table, column), value});
        table.insert(row);
    }
    file.commit();
}

TEST(LinkedTablesAndQueries, AreToldApartFromTables)
{
    const tests::TemporaryFolder folder;
    const std::u16string path = folder.file(u"links.accdb");
    createDatabase(path, FileFormat::Ace12, 45000);
    Database database(path);
    database.run(u"CREATE TABLE Own (ID LONG)");
    addObjects(path,
        {{u"Orders", 6, u"C:\\data\\other.mdb", u"Bestellungen"}, {u"Remote", 4, u"x", u"dbo.Remote"},
            {u"Lost", 6, Null{}, Null{}}, {u"Sums", 5, Null{}, Null{}}, {u"~sq_hidden", 5, Null{}, Null{}}});
    const Bytes before = [&] {
        PageFile file(path, OpenMode::Read);
        const PageView page = file.read(2);
        return Bytes(page.bytes().begin(), page.bytes().end());
    }();

    std::map<std::u16string, TableKind> kinds;
    for (const TableInfo& table : database.tables())
        if (table.kind != TableKind::System)
            kinds.emplace(table.name, table.kind);
    EXPECT_EQ(kinds,
        (std::map<std::u16string, TableKind>{{u"Own", TableKind::Table}, {u"Orders", TableKind::LinkedFile},
            {u"Remote", TableKind::LinkedOdbc}, {u"Lost", TableKind::LinkedFile},
            {u"Sums", TableKind::Query}}));

    const std::u16string only = u" Only tables of the database itself can be read and changed.";
    const std::pair<std::u16string, std::u16string> sentences[] = {
        {u"orders",
            u"'Orders' is a linked table: its rows are in the table 'Bestellungen' of 'C:\\data\\other.mdb'."},
        {u"Remote", u"'Remote' is a linked table: its rows are in the table 'dbo.Remote' of an ODBC source."},
        {u"Lost", u"'Lost' is a linked table."}, {u"Sums", u"'Sums' is a query, no table."}};
    for (const auto& [name, sentence] : sentences)
        for (const std::u16string& sql :
            {u"SELECT * FROM [" + name + u"]", u"SELECT * INTO [New] FROM [" + name + u"]",
                u"INSERT INTO [" + name + u"] VALUES (1)", u"INSERT INTO Own SELECT * FROM [" + name + u"]",
                u"UPDATE [" + name + u"] SET ID=1", u"DELETE FROM [" + name + u"]",
                u"DROP TABLE [" + name + u"]", u"ALTER TABLE [" + name + u"] ADD COLUMN x LONG"}) {
            try {
                database.run(sql);
                ADD_FAILURE() << std::string(sql.begin(), sql.end());
            } catch (const Error& e) {
                EXPECT_EQ(e.description, sentence + only) << std::string(sql.begin(), sql.end());
            }
        }
    EXPECT_THROW(database.run(u"CREATE TABLE Sums (ID LONG)"), Error);
    PageFile file(path, OpenMode::Read);
    const PageView after = file.read(2);
    EXPECT_TRUE(std::ranges::equal(after.bytes(), before));
}

} // namespace
} // namespace vellums::jet
