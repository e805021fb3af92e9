// Files of Access 97 are read, and stay as they are whatever is asked of them.
#include "jet/database.h"
#include "platform/files.h"
#include "tests/jet/fixturesFolder.h"
#include "tests/support/jet3File.h"
#include "tests/support/smallMemory.h"
#include "tests/support/temporaryFolder.h"

#include <filesystem>
#include <functional>
#include <gtest/gtest.h>

namespace vellums::jet {
namespace {

std::string jet3Bytes()
{
    const Bytes bytes = tests::jet3File();
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

std::u16string repeated(std::size_t count, char16_t unit)
{
    return std::u16string(count, unit);
}

TEST(FilesOfAccess97, GiveTheirTextsInTheirCodePage)
{
    for (const bool mapped : {true, false}) {
        const tests::SmallMemory memory(4, mapped);
        const tests::TemporaryFolder folder;
        Database database(folder.write(u"old.mdb", jet3Bytes()));
        const std::vector<std::vector<Value>> expected = {
            {1, u"Tür", true, u"kurz é", Null{}},
            {2, Null{}, false, Null{}, u""},
            {3, repeated(200, u'a'), true, repeated(700, u'ü'), repeated(200, u'b')},
            {4, u"x", false, repeated(3000, u'€'), u"y"},
        };
        EXPECT_EQ(database.run(u"SELECT * FROM [umsätze]").rows, expected);
        for (const char16_t* const condition :
            {u"[Größe] LIKE 't_R'", u"Notiz LIKE '%Z É'", u"[Größe]='TÜR'", u"ID=1"})
            EXPECT_EQ(database.run(u"SELECT ID FROM [Umsätze] WHERE " + std::u16string(condition)).rows,
                (std::vector<std::vector<Value>>{{1}}));
        EXPECT_EQ(database.run(u"SELECT ID FROM [Umsätze] WHERE Notiz LIKE '%€' ORDER BY [Größe] DESC").rows,
            (std::vector<std::vector<Value>>{{4}}));
        EXPECT_EQ(database.tables().size(), 2u);
    }
}

void expectRefused(const std::function<void()>& work)
{
    try {
        work();
        ADD_FAILURE() << "nothing is thrown";
    } catch (const Error& e) {
        EXPECT_EQ(e.native, 3027);
        EXPECT_NE(
            e.description.find(u"is a file of Access 97, and such files are only read"), e.description.npos);
    }
}

// A journal beside the file, idle or not, stays too: it can only belong to something else.
TEST(FilesOfAccess97, AreNeverChanged)
{
    for (const std::string& bytes : {jet3Bytes(), tests::fixtureBytes("nwind.mdb")}) {
        if (bytes.empty())
            continue;
        const tests::TemporaryFolder folder;
        const std::u16string path = folder.write(u"old.mdb", bytes);
        for (const std::string& journal :
            {std::string(), std::string(16, '\0'), std::string("VELJRNL2 somebody's")}) {
            if (!journal.empty())
                folder.write(u"old.mdb-journal", journal);
            {
                Database database(path);
                for (const char16_t* const sql : {u"INSERT INTO [Umsätze] (ID) VALUES (5)",
                         u"UPDATE [Umsätze] SET OrderID=5", u"DELETE FROM [Umsätze]", u"DROP TABLE [Umsätze]",
                         u"ALTER TABLE [Umsätze] ADD COLUMN x TEXT(5)", u"CREATE TABLE t (ID COUNTER)",
                         u"SELECT * INTO t FROM [Umsätze]", u"CREATE INDEX i ON [Umsätze] (ID)"})
                    expectRefused([&] { database.run(sql); });
                expectRefused([&] { database.createTable({u"t", {{u"a"}}, {}}); });
                expectRefused([&] { database.beginBatch(); });
                EXPECT_FALSE(database.run(u"SELECT * FROM [Umsätze]").rows.empty());
            }
            EXPECT_EQ(tests::bytesOf(path), bytes);
            EXPECT_EQ(tests::bytesOf(path + u"-journal"), journal);
            const auto entries = std::filesystem::directory_iterator(folder.path());
            EXPECT_EQ(std::distance(begin(entries), end(entries)), journal.empty() ? 1 : 2);
        }
    }
}

} // namespace
} // namespace vellums::jet
