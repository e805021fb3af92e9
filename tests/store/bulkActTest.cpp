#include "store/records/bulkAct.h"

#include "platform/files.h"
#include "store/connectionString.h"
#include "store/databases/safetyCopy.h"
#include "store/records/records.h"
#include "tests/support/failingProvider.h"
#include "tests/support/testNotebook.h"
#include "text/decimal.h"
#include "text/unicode.h"

#include <gmock/gmock.h>

#include <set>

namespace vellums {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Ids = std::vector<std::int32_t>;

class BulkActs : public testing::Test {
protected:
    BulkActs()
    {
        notes_.run(u"SELECT * INTO [Other] FROM [Notes]");
        notes_->provider = &provider_;
    }

    Ids addMany(int count)
    {
        const auto connection = tests::client().open(expandedConnection(*notes_, notes_->dbConn));
        connection->beginBatch();
        Ids ids;
        for (int i = 0; i < count; ++i)
            ids.push_back(addRecord(*connection, u"Notes", {u"body " + text::decimal(i), u"t", u""}).id);
        connection->execute(u"UPDATE [Notes] SET VLDATE='2001-2-3 4:5:6', VLTYPE='20010203040506'");
        connection->endBatch();
        return ids;
    }
    std::u16string count(const std::u16string& table)
    {
        return notes_.rows(u"SELECT COUNT(*) FROM [" + table + u"]").front();
    }
    std::string copy() { return tests::bytesOf(safetyCopyPath(notes_.file())); }
    // Where the safety copy should lie, nothing can be written.
    void forbidCopy() { notes_.folder().makeFolder(u"notes.mdb.bak"); }

    tests::FailingProvider provider_;
    tests::TestNotebook notes_;
};

TEST_F(BulkActs, CopyTheDatabaseFirstWhenManyRecordsAreAtStake)
{
    const Ids ids = addMany(35);
    const std::string before = tests::bytesOf(notes_.file());
    EXPECT_TRUE(delRecords(*notes_, Ids(ids.begin(), ids.begin() + 10)).whole());
    EXPECT_EQ(copy(), "") << "ten are few";
    EXPECT_TRUE(copyRecords(*notes_, u"Other", Ids(ids.begin() + 10, ids.end())).whole());
    EXPECT_EQ(copy(), "") << "an act that only adds";

    const auto copied = [&](const auto& act) {
        platform::removeFile(safetyCopyPath(notes_.file()));
        const std::string now = tests::bytesOf(notes_.file());
        const bool whole = act(Ids(ids.begin() + 10, ids.begin() + 21)).whole();
        return whole && copy() == now && now != tests::bytesOf(notes_.file());
    };
    EXPECT_TRUE(copied([&](const Ids& some) { return setStickyRecs(*notes_, some); }));
    EXPECT_TRUE(copied([&](const Ids& some) { return ClearStickyRecs(*notes_, some); }));
    EXPECT_TRUE(copied([&](const Ids& some) { return moveRecords(*notes_, u"Other", some); }));
    EXPECT_TRUE(copied([&](const Ids&) {
        return delRecords(*notes_, Ids(ids.begin() + 21, ids.begin() + 32));
    })) << "and it takes the place of the older copy";

    addMany(11);
    notes_.folder().write(u"notes.mdb.bak", "old");
    notes_->safetyCopies = false;
    EXPECT_TRUE(setStickyRecs(*notes_, addMany(11)).whole());
    EXPECT_EQ(copy(), "old");
    EXPECT_NE(before, tests::bytesOf(notes_.file()));
}

TEST_F(BulkActs, AskWhereTheCopyFails)
{
    const Ids ids = addMany(11);
    forbidCopy();
    std::vector<std::u16string> reasons;
    bool answer = false;
    BulkUser user;
    user.goOnWithoutCopy = [&](const std::u16string& reason) {
        reasons.push_back(reason);
        return answer;
    };
    const ChangedRecords refused = delRecords(*notes_, ids, user);
    EXPECT_TRUE(refused.result.stopped);
    EXPECT_THAT(refused.ids, IsEmpty());
    EXPECT_EQ(count(u"Notes"), u"11");
    EXPECT_THAT(notes_.shown(), IsEmpty()) << "the user has just been told";
    const MovedRecords kept = moveRecords(*notes_, u"Other", ids, user);
    EXPECT_TRUE(kept.copied.result.stopped);
    EXPECT_EQ(count(u"Other"), u"0") << "nothing begins";
    EXPECT_EQ(count(u"Notes"), u"11");

    answer = true;
    EXPECT_TRUE(delRecords(*notes_, ids, user).whole());
    EXPECT_EQ(count(u"Notes"), u"0");
    ASSERT_EQ(reasons.size(), 3u);
    EXPECT_EQ(reasons[2].back(), u'.');
}

TEST_F(BulkActs, DoNotBeginWithoutACopyWhereNobodyCanBeAsked)
{
    const Ids ids = addMany(11);
    forbidCopy();
    EXPECT_TRUE(delRecords(*notes_, ids).result.failed());
    EXPECT_EQ(count(u"Notes"), u"11");
    EXPECT_TRUE(
        notes_.outcome().starts_with(u"delRecord - No safety copy of the database could be made: The file "));
    BulkUser user;
    user.safetyCopy = false;
    EXPECT_TRUE(delRecords(*notes_, ids, user).whole());
}

TEST_F(BulkActs, LeaveForeignFilesBesideTheDatabaseAlone)
{
    notes_.folder().write(u"notes.mdb.bak.new", "mine");
    EXPECT_FALSE(makeSafetyCopy(*notes_));
    EXPECT_EQ(copy(), tests::bytesOf(notes_.file()));
    EXPECT_EQ(tests::bytesOf(notes_.folder().file(u"notes.mdb.bak.new")), "mine");
    EXPECT_EQ(tests::bytesOf(notes_.folder().file(u"notes.mdb.bak 2.new")), "");

    platform::removeFile(safetyCopyPath(notes_.file()));
    forbidCopy();
    EXPECT_TRUE(makeSafetyCopy(*notes_));
    EXPECT_EQ(tests::bytesOf(notes_.folder().file(u"notes.mdb.bak 2.new")), "") << "no half copy is left";
    notes_->dbConn = u"Data Source=(LOCAL)\\SERVER;X=1";
    EXPECT_TRUE(makeSafetyCopy(*notes_));
}

TEST_F(BulkActs, StopAfterWholeRecordsAndTellWhichAreDone)
{
    const Ids ids = addMany(5);
    BulkUser user;
    std::vector<std::size_t> seen;
    user.goesOn = [&](std::size_t done, std::size_t total) {
        EXPECT_EQ(total, 5u);
        seen.push_back(done);
        return done % 5 != 2;
    };
    const ChangedRecords stopped = delRecords(*notes_, ids, user);
    EXPECT_TRUE(stopped.result.stopped);
    EXPECT_FALSE(stopped.result.failed());
    EXPECT_THAT(stopped.ids, ElementsAre(ids[0], ids[1]));
    EXPECT_THAT(seen, ElementsAre(1, 2));
    EXPECT_EQ(count(u"Notes"), u"3");

    const Ids more = addMany(5);
    user.goesOn = [&](std::size_t done, std::size_t total) { return total != 5 || done < 2; };
    const MovedRecords moved = moveRecords(*notes_, u"Other", more, user);
    EXPECT_TRUE(moved.copied.result.stopped);
    EXPECT_THAT(moved.deleted.ids, ElementsAre(more[0], more[1])) << "what was copied leaves its old place";
    EXPECT_EQ(count(u"Other"), u"2");
    EXPECT_EQ(count(u"Notes"), u"6");

    seen.clear();
    user.goesOn = [&](std::size_t done, std::size_t) {
        seen.push_back(done);
        return true;
    };
    EXPECT_TRUE(moveRecords(*notes_, u"Other", addMany(2), user).whole());
    EXPECT_THAT(seen, ElementsAre(1, 2, 1, 2)) << "the deletions are seen as the copies are";

    user.goesOn = [](std::size_t done, std::size_t total) { return done < total; };
    EXPECT_TRUE(delRecords(*notes_, more, user).whole()) << "asked after the last step, it is no Stop";
}

TEST_F(BulkActs, KeepWhatWasDoneBeforeAFailure)
{
    const Ids ids = addMany(4);
    provider_.refuses = [&](std::u16string_view sql, int) {
        return sql.ends_with(u"ID=" + text::decimal(ids[2]));
    };
    const struct {
        const char16_t* label;
        ChangedRecords (*act)(const Notebook&, const Ids&, const BulkUser&);
        const char16_t* done; // the condition for records that it has treated
        const char16_t* count;
    } acts[] = {
        {u"ClearStickyRecs", ClearStickyRecs, u"VLTYPE=''", u"2"},
        {u"setStickyRecs", setStickyRecs, u"VLTYPE>'2002'", u"2"},
        {u"delRecord", delRecords, u"ID>0", u"2"},
    };
    for (const auto& act : acts) {
        const ChangedRecords changed = act.act(*notes_, ids, {});
        EXPECT_THAT(changed.ids, ElementsAre(ids[0], ids[1]));
        EXPECT_EQ(notes_.outcome(), std::u16string(act.label) + u" - Refused. (-2147467259)");
        EXPECT_THAT(notes_.rows(u"SELECT COUNT(*) FROM [Notes] WHERE " + std::u16string(act.done)),
            ElementsAre(act.count));
    }
}

// Whether the client can take back statements together.
bool knowsBatches()
{
    tests::TestNotebook notes;
    {
        const auto connection = notes->connect();
        connection->beginBatch();
        connection->execute(u"INSERT INTO [Notes] (VLDATE) VALUES (1)");
    }
    return notes.rows(u"SELECT ID FROM [Notes]").empty();
}

// Whichever statement of the act is refused, each copy is whole, each record is somewhere, and in both
// tables only where the deletion failed.
TEST(MovingRecords, IsAllOrNothingWhicheverStatementFails)
{
    const bool batches = knowsBatches();
    bool finished = false;
    for (int failing = 1; !finished; ++failing) {
        ASSERT_LT(failing, 40);
        tests::FailingProvider provider;
        tests::TestNotebook notes;
        notes.run(u"SELECT * INTO [Other] FROM [Notes]");
        for (const char16_t* const text : {u"a", u"b", u"c"})
            notes.run(u"INSERT INTO [Notes] (VLTEXT, VLDATE) VALUES ('" + std::u16string(text) + u"', 1)");
        std::u16string refused;
        provider.refuses = [&](std::u16string_view sql, int number) {
            if (number == failing)
                refused = sql;
            return number == failing;
        };
        notes->provider = &provider;
        const MovedRecords moved = moveRecords(*notes, u"Other", {1, 2, 3});
        provider.refuses = {};
        finished = refused.empty();
        EXPECT_EQ(moved.whole(), finished) << failing;
        const auto count = [&](const std::u16string& rest) {
            return std::stoi(text::toUtf8(notes.rows(u"SELECT COUNT(*) FROM " + rest).front()));
        };
        std::set<std::u16string> texts;
        for (const char16_t* const table : {u"[Notes]", u"[Other]"})
            for (const std::u16string& text : notes.rows(u"SELECT VLTEXT FROM " + std::u16string(table)))
                texts.insert(text);
        EXPECT_THAT(texts, ElementsAre(u"a", u"b", u"c"));
        if (refused == u"SELECT @@IDENTITY" && !batches)
            continue; // nobody can say which copy it was
        EXPECT_EQ(count(u"[Other] WHERE VLDATE<40000"), 0) << failing;
        EXPECT_EQ(count(u"[Other]") + (moved.deleted.whole() ? count(u"[Notes]") : 0), 3) << failing;
    }
}

TEST_F(BulkActs, ReportOnlyWhatIsLasting)
{
    const Ids ids = addMany(3);
    std::size_t lasting = 0;
    BulkUser user;
    user.lasting = [&](std::size_t done) { lasting = done; };
    provider_.losesBatch = [] { return true; };
    const ChangedRecords lost = delRecords(*notes_, ids, user);
    EXPECT_TRUE(lost.result.failed());
    EXPECT_THAT(lost.ids, IsEmpty());
    EXPECT_EQ(lasting, 0u);
    EXPECT_EQ(notes_.outcome(), u"delRecord - The batch is lost. (-2147467259)");
    provider_.losesBatch = {};
    EXPECT_TRUE(delRecords(*notes_, ids, user).whole());
    EXPECT_EQ(lasting, 3u);
    EXPECT_THAT(bulkAct(*notes_, SafetyCopy::Always, 0, user, {}).whole(), true);
    EXPECT_EQ(copy(), "") << "nothing to do, nothing to copy";
}

TEST_F(BulkActs, HoldNothingDuringAQuestion)
{
    int open = 0;
    int begun = 0;
    provider_.onBatch = [&](bool begins) {
        open += begins ? 1 : -1;
        begun += begins;
    };
    EXPECT_TRUE(bulkAct(*notes_, SafetyCopy::None, 5, {}, [](BulkStep&) {}).whole());
    EXPECT_EQ(begun, 1) << "steps of one moment become lasting together";
    const BulkResult result = bulkAct(*notes_, SafetyCopy::None, 2, {}, [&](BulkStep& step) {
        EXPECT_EQ(open, 1);
        EXPECT_EQ(step.meanwhile([&] { return open; }), 0);
        EXPECT_EQ(open, 1);
    });
    EXPECT_EQ(result.done, 2u);
    EXPECT_EQ(open, 0);
}

} // namespace
} // namespace vellums
