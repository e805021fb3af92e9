#include "store/records/headingQuery.h"

#include "store/records/records.h"
#include "tests/support/testNotebook.h"

#include <gmock/gmock.h>

namespace vellums {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(HeadingQuery, IsWrittenExactlySo)
{
    HeadingQuery query{u"Notes", {u"VLHEAD", u"VLTEXT"}, searchPattern(u" it's *x "), true, false};
    EXPECT_EQ(headingStatement(query),
        u"SELECT TOP 32767 ID,VLHEAD FROM [Notes] WHERE ([VLHEAD] LIKE '%it''s%x%' OR [VLTEXT] LIKE "
        u"'%it''s%x%') ORDER BY VLTYPE DESC,  VLHEAD ASC, VLDATE DESC, ID DESC");
    query = {u"Notes", {u"VLHEAD"}, searchPattern(u""), false, true};
    EXPECT_EQ(headingStatement(query),
        u"SELECT TOP 32767 ID,VLHEAD FROM [Notes] WHERE ([VLHEAD] LIKE '%') ORDER BY VLTYPE DESC,  VLDATE "
        u"ASC, ID DESC");
}

class Headings : public testing::Test {
protected:
    std::vector<std::u16string> found(
        const std::u16string& words, std::vector<std::u16string> columns = {u"VLHEAD", u"VLTEXT", u"VLLINK"})
    {
        return notes_.rows(
            headingStatement({u"Notes", std::move(columns), searchPattern(words), byTitle_, ascending_}));
    }
    void add(const std::u16string& title, const std::u16string& text, const std::u16string& date)
    {
        ASSERT_TRUE(addRecord(*notes_, {text, title, u""}));
        notes_.run(u"UPDATE [Notes] SET VLDATE='" + date + u"' WHERE VLHEAD='" + title + u"'");
    }

    tests::TestNotebook notes_;
    bool byTitle_ = false;
    bool ascending_ = false;
};

TEST_F(Headings, HoldTheWordsInTheirOrder)
{
    add(u"one", u"red and green apple", u"2001-1-1");
    add(u"two", u"Apple\r\nred", u"2002-1-1");
    EXPECT_THAT(found(u"red apple"), ElementsAre(u"1|one"));
    EXPECT_THAT(found(u"RED  *apple"), ElementsAre(u"1|one"));
    EXPECT_THAT(found(u"apple"), ElementsAre(u"2|two", u"1|one"));
    EXPECT_THAT(found(u"apple", {u"VLHEAD", u"VLLINK"}), IsEmpty());
    EXPECT_THAT(found(u""), ElementsAre(u"2|two", u"1|one"));
    EXPECT_THROW(found(u"x", {}), ProviderError);
}

TEST_F(Headings, ComeStickyFirstThenByTitleOrDate)
{
    add(u"b", u"", u"2001-1-1");
    add(u"a", u"", u"2002-1-1");
    add(u"c", u"", u"2003-1-1");
    add(u"d", u"", u"2003-1-1");
    notes_.run(u"UPDATE [Notes] SET VLTYPE='20240101000000' WHERE VLHEAD='a'");
    notes_.run(u"UPDATE [Notes] SET VLTYPE='20240305090703' WHERE VLHEAD='b'");
    EXPECT_THAT(found(u""), ElementsAre(u"1|b", u"2|a", u"4|d", u"3|c"));
    ascending_ = true;
    EXPECT_THAT(found(u""), ElementsAre(u"1|b", u"2|a", u"4|d", u"3|c"));
    notes_.run(u"UPDATE [Notes] SET VLTYPE=''");
    EXPECT_THAT(found(u""), ElementsAre(u"1|b", u"2|a", u"4|d", u"3|c"));
    byTitle_ = true;
    EXPECT_THAT(found(u""), ElementsAre(u"2|a", u"1|b", u"3|c", u"4|d"));
}

} // namespace
} // namespace vellums
