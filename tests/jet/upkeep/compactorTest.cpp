#include "jet/upkeep/compactor.h"

#include "jet/database.h"
#include "jet/sql/values/conversion.h"
#include "tests/jet/fixturesFolder.h"
#include "tests/support/smallMemory.h"
#include "tests/support/soundFile.h"
#include "tests/support/temporaryFolder.h"
#include "text/decimal.h"
#include "text/unicode.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace vellums::jet {
namespace {

constexpr std::string_view kWritten[] = {"ASampleDatabase.accdb", "calcFieldTestV2010.accdb",
    "complexDataTestV2010.accdb", "indexTestV2000.mdb", "indexTestV2010.accdb", "overflowTestV2000.mdb",
    "queryTestV2000.mdb", "test2V2000.mdb", "testPromotionV2000.mdb", "testV2000.mdb", "testV2010.accdb"};

std::string shown(const Value& value)
{
    if (const auto* bytes = std::get_if<Bytes>(&value))
        return {reinterpret_cast<const char*>(bytes->data()), bytes->size()};
    return isNull(value) ? "NULL" : text::toUtf8(sql::textOf(value));
}

// All that the file says, table by table in its order of rows; but for the pages of definitions, which may
// move.
std::string contentOf(const std::u16string& path)
{
    Database database(path);
    std::string content;
    for (const TableInfo& table : database.tables()) {
        content += "\n" + text::toUtf8(table.name) + "\n";
        Result result;
        try {
            result = database.run(u"SELECT * FROM [" + table.name + u"]");
        } catch (const Error& e) { // a link, a query
            content += text::toUtf8(e.description);
        }
        for (const std::vector<Value>& row : result.rows)
            for (std::size_t i = 0; i < row.size(); ++i) {
                const std::u16string& column = result.columns[i];
                if (table.kind == TableKind::System && (column == u"Id" || column == u"ObjectId"))
                    continue;
                content += shown(row[i]) + "|";
            }
    }
    return content;
}

TEST(Compaction, KeepsWhatOtherProgramsKeepInAFile)
{
    int tried = 0;
    for (const std::string_view name : kWritten) {
        const std::string before = tests::fixtureBytes(name);
        if (before.empty())
            continue;
        ++tried;
        const tests::TemporaryFolder folder;
        const std::u16string path = folder.write(text::fromUtf8(std::string(name)), before);
        const std::string content = contentOf(path);
        compactFile(path);
        const std::string compacted = tests::bytesOf(path);
        EXPECT_LT(compacted.size(), before.size()) << name;
        EXPECT_EQ(contentOf(path), content) << name;
        tests::expectSound(path);
        EXPECT_EQ(compacted.substr(0, kPageSize), before.substr(0, kPageSize)) << name;
        compactFile(path);
        EXPECT_EQ(tests::bytesOf(path).size(), compacted.size()) << name << ": nothing was left to gain";
        EXPECT_EQ(contentOf(path), content) << name;
    }
    if (tried == 0)
        GTEST_SKIP() << "no fixtures";
}

class CompactionOfOwn : public testing::TestWithParam<FileFormat> {
protected:
    CompactionOfOwn()
    {
        createDatabase(path, GetParam(), 45000);
        database = std::make_unique<Database>(path);
        run(u"CREATE TABLE Notes (ID COUNTER CONSTRAINT PK PRIMARY KEY, Title VARCHAR(255), Body MEMO)");
    }
    void run(const std::u16string& sql) { database->run(sql); }
    void add(int number, std::size_t length)
    {
        run(u"INSERT INTO Notes (Title, Body) VALUES ('" + text::decimal(number) + u"', '" +
            std::u16string(length, static_cast<char16_t>(u'a' + number % 26)) + u"')");
    }
    std::uintmax_t size() const { return std::filesystem::file_size(std::filesystem::path(path)); }

    tests::SmallMemory memory{40};
    tests::TemporaryFolder folder;
    std::u16string path = folder.file(GetParam() == FileFormat::Jet4 ? u"own.mdb" : u"own.accdb");
    std::unique_ptr<Database> database;
};

INSTANTIATE_TEST_SUITE_P(Formats, CompactionOfOwn, testing::Values(FileFormat::Jet4, FileFormat::Ace12),
    [](const auto& format) { return format.param == FileFormat::Jet4 ? "Mdb" : "Accdb"; });

// Chains, values in rows, moved rows, gaps; and a definition that a renaming has put behind everything.
TEST_P(CompactionOfOwn, GivesBackTheRoomAndTheTableGoesOn)
{
    const std::uintmax_t empty = size();
    database->beginBatch();
    for (int i = 0; i < 300; ++i)
        add(i, static_cast<std::size_t>(i * 37 % 9000));
    database->endBatch();
    run(u"UPDATE Notes SET Title = Title & '" + std::u16string(200, u'x') + u"' WHERE ID < 90");
    run(u"SELECT * INTO Kept FROM Notes");
    run(u"DROP TABLE Notes");
    run(u"DELETE FROM Kept WHERE ID > 20");
    const std::string content = contentOf(path);
    const std::uintmax_t full = size();
    database.reset();

    compactFile(path);
    tests::expectSound(path);
    EXPECT_EQ(contentOf(path), content);
    EXPECT_LT(size(), full / 4);
    EXPECT_LT(size() - empty, 20u * 9000 + 20 * kPageSize);
    EXPECT_FALSE(platform::fileExists(path + u"-compacted"));

    database = std::make_unique<Database>(path);
    run(u"INSERT INTO Kept (Title, Body) VALUES ('new', 'text')");
    EXPECT_EQ(sql::textOf(database->run(u"SELECT ID FROM Kept WHERE Title='new'").rows.at(0).at(0)), u"301");
    EXPECT_EQ(database->run(u"SELECT Title FROM Kept WHERE ID=7").rows.size(), 1U);
    EXPECT_TRUE(database->check().empty());
}

TEST_P(CompactionOfOwn, LeavesADamagedFileAlone)
{
    for (int i = 0; i < 30; ++i)
        add(i, 3000);
    database.reset();
    std::string bytes = tests::bytesOf(path);
    const std::size_t lval = bytes.find("LVAL"); // who owns a page of long values
    ASSERT_NE(lval, std::string::npos);
    bytes[lval] = 'X';
    folder.write(path.substr(folder.path().size() + 1), bytes);
    folder.write(path.substr(folder.path().size() + 1) + u"-compacted", "left over");
    EXPECT_THROW(compactFile(path), Error);
    EXPECT_EQ(tests::bytesOf(path), bytes);
    EXPECT_FALSE(platform::fileExists(path + u"-compacted"));
}

} // namespace
} // namespace vellums::jet
