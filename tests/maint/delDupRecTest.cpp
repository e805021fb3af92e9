#include "maint/delDupRec.h"

#include "platform/files.h"
#include "store/databases/safetyCopy.h"
#include "tests/support/testNotebook.h"
#include "text/decimal.h"

#include <gmock/gmock.h>

namespace vellums {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class Duplicate : public testing::Test {
protected:
    void add(int year, const char16_t* digest)
    {
        notes_.run(u"INSERT INTO [Notes] (VLHEAD, VLDATE, VLMD5) VALUES ('x', '" + text::decimal(year) +
            u"-1-1', " + (digest == nullptr ? u"NULL" : u"'" + std::u16string(digest) + u"'") + u")");
    }
    std::vector<std::u16string> left() { return notes_.rows(u"SELECT ID FROM [Notes] ORDER BY ID"); }

    tests::TestNotebook notes_;
};

TEST_F(Duplicate, RemovalDoesNothingInAnEmptyTable)
{
    const Duplicates result = delDupRec(*notes_);
    EXPECT_TRUE(result.done);
    EXPECT_EQ(result.removed, 0u);
    EXPECT_THAT(notes_.shown(), IsEmpty());
    EXPECT_FALSE(platform::fileExists(safetyCopyPath(notes_.file())));
}

TEST_F(Duplicate, RemovalKeepsTheOldestOfEachDigest)
{
    add(2010, u"a");
    add(2011, u"a");
    add(2009, u"a");
    EXPECT_TRUE(delDupRec(*notes_).done);
    EXPECT_THAT(left(), ElementsAre(u"3"));
    EXPECT_THAT(notes_.shown(), ElementsAre(u"2 duplicates removed from total 3 records (66.67%)."));
}

TEST_F(Duplicate, RemovalPassesOverRecordsWithoutADigest)
{
    for (const char16_t* digest : {u"", u"", static_cast<const char16_t*>(nullptr),
             static_cast<const char16_t*>(nullptr), u"b", u"a", u"b", u"c"})
        add(2010, digest);
    notes_->chinese = true;
    EXPECT_EQ(delDupRec(*notes_).removed, 1u);
    EXPECT_EQ(left().size(), 7u);
    EXPECT_THAT(notes_.rows(u"SELECT COUNT(*) FROM [Notes] WHERE VLMD5='b'"), ElementsAre(u"1"));
    EXPECT_THAT(notes_.shown(), ElementsAre(u"已从 8 条记录中删除 1 条重复项 (12.50%)"));
}

TEST_F(Duplicate, RemovalCopiesTheDatabaseFirst)
{
    add(2010, u"a");
    add(2011, u"a");
    const std::string before = tests::bytesOf(notes_.file());
    EXPECT_TRUE(delDupRec(*notes_).done);
    EXPECT_EQ(tests::bytesOf(safetyCopyPath(notes_.file())), before);

    platform::removeFile(safetyCopyPath(notes_.file()));
    add(2012, u"a");
    notes_->safetyCopies = false;
    EXPECT_TRUE(delDupRec(*notes_).done);
    EXPECT_FALSE(platform::fileExists(safetyCopyPath(notes_.file())));
}

TEST_F(Duplicate, RemovalTellsWhatFailed)
{
    notes_->dbTable = u"Missing";
    EXPECT_FALSE(delDupRec(*notes_).done);
    ASSERT_EQ(notes_.shown().size(), 1u);
    EXPECT_TRUE(notes_.shown()[0].starts_with(u"delDupRec - "));
    EXPECT_EQ(notes_.shown()[0].back(), u')');
}

// The rows of hundreds of groups against a plain count.
TEST_F(Duplicate, RemovalLeavesOneRecordOfEachOfManyDigests)
{
    {
        const auto connection = notes_->connect();
        connection->beginBatch();
        for (int i = 0; i < 900; ++i)
            connection->execute(u"INSERT INTO [Notes] (VLDATE, VLMD5) VALUES (" + text::decimal(40000 + i) +
                u", 'digest " + text::decimal(i * 7 % 300) + u"')");
        connection->endBatch();
    }
    EXPECT_EQ(delDupRec(*notes_).removed, 600u);
    EXPECT_THAT(notes_.rows(u"SELECT COUNT(*) FROM [Notes] WHERE ID <= 300"), ElementsAre(u"300"));
}

} // namespace
} // namespace vellums
