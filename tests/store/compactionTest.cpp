#include "store/databases/compaction.h"

#include "platform/files.h"
#include "store/embedded/embeddedProvider.h"
#include "store/records/records.h"
#include "tests/support/lockedFile.h"
#include "tests/support/shortWait.h"
#include "tests/support/testNotebook.h"
#include "text/decimal.h"
#include "text/unicode.h"

#include <gmock/gmock.h>

#include <functional>

namespace vellums {
namespace {

using testing::ElementsAre;

// Compacts as the test says; everything else is done by the client of the tests.
class Compactor : public Provider {
public:
    std::unique_ptr<Connection> open(const std::u16string& connectionString) const override
    {
        return tests::client().open(connectionString);
    }
    void createDatabase(const std::u16string&, const std::u16string&) const override { }
    void compact(const std::u16string& source, const std::u16string& destination) const override
    {
        work(source, destination);
    }
    std::function<void(const std::u16string&, const std::u16string&)> work = platform::copyFile;
};

class CompactionTest : public testing::Test {
protected:
    CompactionTest()
    {
        notes_->provider = &compactor_;
        notes_->appDir = notes_.folder().makeFolder(u"program");
        added_ = addRecord(*notes_, {u"kept", u"", u""}).has_value();
        before_ = tests::bytesOf(notes_.file());
    }
    ~CompactionTest() override
    {
        EXPECT_THAT(notes_.rows(u"SELECT VLTEXT FROM [Notes]"), ElementsAre(u"kept"));
        EXPECT_FALSE(platform::fileExists(notes_.file() + u".compacted"));
        EXPECT_FALSE(platform::fileExists(temporary()));
    }
    std::u16string temporary() const { return notes_.folder().file(u"program/temp.cdb"); }
    // Fails, with the reason as the report's last line, and leaves the database as it was.
    void expectFailure(const std::u16string& reason)
    {
        const Compaction result = compactDatabase(*notes_, notes_.file());
        EXPECT_FALSE(result.done);
        const std::u16string head =
            notes_->chinese ? u"数据库文件整理失败:" : u"Database file not compacted:";
        EXPECT_EQ(
            text::toUtf8(result.report), text::toUtf8(head + u"\r\n" + notes_.file() + u"\r\n" + reason));
        EXPECT_EQ(tests::bytesOf(notes_.file()), before_);
    }

    tests::TestNotebook notes_;
    Compactor compactor_;
    bool added_ = false;
    std::string before_;
};

TEST_F(CompactionTest, PutsTheCopyInThePlaceOfTheFile)
{
    notes_.folder().write(u"program/temp.cdb", "of a run that was cut off");
    notes_.folder().setReadOnly(u"notes.mdb", true);
    compactor_.work = [&](const std::u16string& source, const std::u16string& destination) {
        EXPECT_EQ(source, notes_.file());
        EXPECT_EQ(destination, temporary());
        platform::copyFile(source, destination);
        platform::File copy(destination, platform::Access::Write);
        copy.resize(copy.size() + 4096); // to be told from the old one
    };
    const Compaction result = compactDatabase(*notes_, notes_.file());
    EXPECT_TRUE(result.done);
    EXPECT_EQ(tests::bytesOf(notes_.file()).size(), before_.size() + 4096);
    EXPECT_EQ(text::toUtf8(result.report),
        text::toUtf8(u"Database file compacted:\r\n" + notes_.file() + u"\r\n" +
            text::kilobytes(before_.size()) + u" -> " + text::kilobytes(before_.size() + 4096) + u"."));
    notes_->chinese = true;
    EXPECT_TRUE(compactDatabase(*notes_, notes_.file()).report.starts_with(u"数据库文件整理完毕:\r\n"));
    platform::File(notes_.file(), platform::Access::Write).resize(before_.size()); // for the checker
    EXPECT_TRUE(added_);
}

TEST_F(CompactionTest, LeavesTheFileWhereTheEngineFails)
{
    compactor_.work = [](const std::u16string&, const std::u16string& destination) {
        platform::File(destination, platform::Access::Create).resize(10);
        throw ProviderError(u"Unrecognized database format.", 3343);
    };
    expectFailure(u"Unrecognized database format. (3343)");
    notes_->chinese = true;
    expectFailure(u"Unrecognized database format. (3343)");
    compactor_.work = [](const std::u16string&, const std::u16string&) {};
    expectFailure(u"整理后的文件不是数据库。");
    compactor_.work = [](const std::u16string&, const std::u16string& destination) {
        platform::File(destination, platform::Access::Create).resize(4096);
    };
    notes_->chinese = false;
    expectFailure(u"The compacted copy is no database.");
}

TEST_F(CompactionTest, LosesNoPassword)
{
    tests::lockFile(notes_.file(), u"secret");
    before_ = tests::bytesOf(notes_.file());
    compactor_.work = [](const std::u16string&, const std::u16string&) {
        ADD_FAILURE() << "it is compacted";
    };
    expectFailure(u"A database with a password is not compacted: the copy would lose it.");
    tests::lockFile(notes_.file(), u"");
}

TEST_F(CompactionTest, DoesNotReplaceAFileThatSomebodyHasOpened)
{
    std::optional<platform::File> held;
    compactor_.work = [&](const std::u16string& source, const std::u16string& destination) {
        platform::copyFile(source, destination);
        held.emplace(source, platform::Access::Write);
    };
    const Compaction result = compactDatabase(*notes_, notes_.file());
    held.reset();
    EXPECT_FALSE(result.done);
    EXPECT_TRUE(result.report.ends_with(u"\r\nAnother program has the file open."));
    EXPECT_EQ(tests::bytesOf(notes_.file()), before_);
}

// The embedded engine works in the file itself, and holds it meanwhile.
TEST_F(CompactionTest, TheEmbeddedEngineCompactsInPlace)
{
    static const EmbeddedProvider embedded; // the fixture's last look goes through it
    notes_->provider = &embedded;
    for (int i = 0; i < 40; ++i)
        ASSERT_TRUE(addRecord(*notes_, {.text = std::u16string(3000, u'x'), .title = u"", .link = u""}));
    std::vector<std::int32_t> ids;
    for (std::int32_t id = 2; id <= 41; ++id)
        ids.push_back(id);
    ASSERT_TRUE(delRecords(*notes_, ids).whole());
    {
        const platform::File reader(notes_.file(), platform::Access::Read);
        const tests::ShortWait wait;
        EXPECT_FALSE(compactDatabase(*notes_, notes_.file()).done);
    }
    const auto before = platform::fileSize(notes_.file());
    const Compaction result = compactDatabase(*notes_, notes_.file());
    EXPECT_TRUE(result.done) << text::toUtf8(result.report);
    EXPECT_LT(platform::fileSize(notes_.file()), before);
    EXPECT_FALSE(platform::fileExists(notes_.file() + u"-journal"));
}

TEST_F(CompactionTest, RefusesWhatIsNoAccessFile)
{
    for (const char16_t* name : {u"b.xdb", u"mdb", u"c.mdb.bak"}) {
        const std::u16string file = notes_.folder().write(name, "x");
        EXPECT_FALSE(compactDatabase(*notes_, file).done);
        EXPECT_EQ(tests::bytesOf(file), "x");
    }
    EXPECT_TRUE(compactDatabase(*notes_, notes_.folder().file(u"none.mdb"))
                    .report.ends_with(u"\r\nThe file is not there."));
    EXPECT_FALSE(platform::fileExists(notes_.folder().file(u"none.mdb")));
}

} // namespace
} // namespace vellums
