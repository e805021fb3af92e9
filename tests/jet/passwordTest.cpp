// A password locks the header of a file. Who has it reads and writes the file like any other.
#include "jet/database.h"
#include "platform/files.h"
#include "tests/support/bareFile.h"
#include "tests/support/crashingDisk.h"
#include "tests/support/jet3File.h"
#include "tests/support/lockedFile.h"
#include "tests/support/temporaryFolder.h"

#include <algorithm>
#include <gtest/gtest.h>

namespace vellums::jet {
namespace {

void expectRefused(const std::u16string& path, const std::u16string& password, const std::u16string& sentence)
{
    const Bytes before = tests::readBytes(path);
    for (const OpenMode mode : {OpenMode::Read, OpenMode::Write}) {
        try {
            const PageFile file(path, mode, password);
            ADD_FAILURE() << "opens";
        } catch (const Error& e) {
            EXPECT_EQ(e.native, 3031);
            EXPECT_NE(e.description.find(u"Not a valid password. The database '" + path + u"'" + sentence),
                std::u16string::npos);
        }
    }
    EXPECT_EQ(tests::readBytes(path), before);
    EXPECT_FALSE(platform::fileExists(path + u"-journal"));
}

const std::u16string kAbsent = u" has a password.";
const std::u16string kWrong = u" has another one than was given.";

class Passwords : public testing::TestWithParam<FileFormat> {
protected:
    Passwords()
    {
        createDatabase(path_, GetParam(), 45000);
        Database(path_).run(u"CREATE TABLE T (ID COUNTER PRIMARY KEY, V MEMO)");
    }
    const tests::TemporaryFolder folder_;
    const std::u16string path_ = folder_.file(u"locked.mdb");
};

TEST_P(Passwords, OpenOnlyTheFileThatTheyLock)
{
    for (const std::u16string password : {u"s", u"Geheim ß 密码", u"12345678901234567890"}) {
        tests::lockFile(path_, password);
        EXPECT_NO_THROW(Database(path_, password));
        expectRefused(path_, u"", kAbsent);
        std::u16string other = password;
        other.back() = static_cast<char16_t>(other.back() ^ 0x20); // the other case of a letter
        for (const std::u16string& wrong : {other, password + u"x", password + u" ", std::u16string(u"x")})
            expectRefused(path_, wrong, kWrong);
        if (password.size() > 1)
            expectRefused(path_, password.substr(0, password.size() - 1), kWrong);
    }
    tests::lockFile(path_, u"");
    EXPECT_NO_THROW(Database(path_, u"of no use"));
}

TEST_P(Passwords, LetTheFileBeChangedLikeOthers)
{
    tests::lockFile(path_, u"secret");
    const Bytes before = tests::readBytes(path_);
    {
        Database database(path_, u"secret");
        database.run(u"INSERT INTO T (V) VALUES ('" + std::u16string(9000, u'x') + u"')");
        database.beginBatch();
        database.run(u"INSERT INTO T (V) VALUES ('two')");
        database.run(u"CREATE TABLE U (A LONG)");
        database.endBatch();
        database.run(u"SELECT * INTO W FROM T");
        database.run(u"DROP TABLE U");
        EXPECT_EQ(database.run(u"SELECT * FROM W").rows.size(), 2u);
        EXPECT_TRUE(database.check().empty());
    }
    EXPECT_FALSE(platform::fileExists(path_ + u"-journal"));
    const Bytes after = tests::readBytes(path_);
    EXPECT_TRUE(std::equal(before.begin(), before.begin() + kPageSize, after.begin())) << "the header";
    expectRefused(path_, u"", kAbsent);
    EXPECT_EQ(Database(path_, u"secret").run(u"SELECT * FROM T").rows.size(), 2u);
}

// A journal with work in it waits for somebody who has the password.
TEST_P(Passwords, AreNeededToSettleAJournal)
{
    tests::lockFile(path_, u"secret");
    {
        Database database(path_, u"secret");
        database.run(u"INSERT INTO T (V) VALUES ('one')");
        const Bytes sound = tests::readBytes(path_);
        tests::CrashingDisk disk(path_);
        disk.stopAfter(4);
        EXPECT_ANY_THROW(database.run(u"INSERT INTO T (V) VALUES ('two')"));
        ASSERT_NE(tests::readBytes(path_), sound);
        disk.work();
        const Bytes broken = tests::readBytes(path_);
        EXPECT_THROW(Database(path_, u"wrong"), Error);
        EXPECT_EQ(tests::readBytes(path_), broken);
        Database again(path_, u"secret");
        EXPECT_EQ(tests::readBytes(path_), sound);
        EXPECT_EQ(again.run(u"SELECT * FROM T").rows.size(), 1u);
    }
    EXPECT_FALSE(platform::fileExists(path_ + u"-journal"));
}

INSTANTIATE_TEST_SUITE_P(BothFormats, Passwords, testing::Values(FileFormat::Jet4, FileFormat::Ace12));

TEST(PasswordsOfAccess97, AreInTheCodePage)
{
    const tests::TemporaryFolder folder;
    const std::u16string path = folder.file(u"old.mdb");
    Bytes bytes = tests::jet3File();
    const Bytes header = tests::jet3Header("Geh\xF6r\x80");
    std::copy(header.begin(), header.end(), bytes.begin());
    tests::writeBytes(path, bytes);
    EXPECT_EQ(Database(path, u"Gehör€").run(u"SELECT * FROM [Umsätze]").rows.size(), 4u);
    EXPECT_THROW(Database(path, u"GEHÖR€"), Error);
    EXPECT_THROW(Database(path, u""), Error);
}

} // namespace
} // namespace vellums::jet
