#include "store/records/records.h"

#include "platform/clock.h"
#include "platform/files.h"
#include "tests/support/testNotebook.h"
#include "text/clsMD5.h"

#include <gmock/gmock.h>

#include <utility>

namespace vellums {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Lines = std::vector<std::u16string>;

class Records : public testing::TestWithParam<const char16_t*> {
protected:
    Records()
        : notes_(GetParam())
    {
    }

    std::int32_t add(const std::u16string& text)
    {
        const auto added = addRecord(*notes_, {text, u"", u""});
        EXPECT_TRUE(added);
        return added ? added->id : 0;
    }

    tests::TestNotebook notes_;
};

INSTANTIATE_TEST_SUITE_P(Formats, Records, testing::Values(u"notes.mdb", u"notes.accdb"),
    [](const auto& test) { return test.param == std::u16string(u"notes.mdb") ? "mdb" : "accdb"; });

// The digest belongs to the text as it lies in the table, not as it was given.
TEST_P(Records, TheDigestIsThatOfTheStoredText)
{
    const std::u16string given = u"  a\t 中文 \r\n\r\n\r\n\r\nit's\r\n  ";
    const auto expectItsDigest = [&] {
        const auto stored = getRecText(*notes_, 1);
        ASSERT_TRUE(stored);
        EXPECT_NE(stored->text, given) << "a text that cleaning changes";
        EXPECT_EQ(stored->md5, text::clsMD5().MD5(stored->text));
        EXPECT_NE(stored->md5, text::clsMD5().MD5(given));
    };
    add(given);
    expectItsDigest();
    ASSERT_EQ(modRecord(*notes_, 1, u"title", given + u"more", u""), Saved::Yes);
    expectItsDigest();
}

TEST_P(Records, AreAddedCleanedWithTheirDigest)
{
    const double before = platform::oleNow();
    const auto added = addRecord(*notes_, {u"it's  \r\n\r\n\r\n\r\n中文   x", u"", u"C:\\o'k.txt"});
    ASSERT_TRUE(added);
    EXPECT_EQ(added->title, u"it's  ");
    const auto record = getRecText(*notes_, added->id);
    ASSERT_TRUE(record);
    EXPECT_EQ(record->head, u"it's  ");
    EXPECT_EQ(record->text, u"it's\r\n\r\n中文 x");
    EXPECT_EQ(record->type, u"");
    EXPECT_EQ(record->link, u"C:\\o'k.txt");
    EXPECT_EQ(record->md5.size(), 32u);
    ASSERT_TRUE(record->date);
    EXPECT_GE(*record->date, before - 1e-9);
    EXPECT_LE(*record->date, platform::oleNow() + 1e-9);
    EXPECT_THAT(notes_.shown(), IsEmpty());
}

TEST_P(Records, TakeAGivenTitleThatIsQuotedAlready)
{
    const auto added = addRecord(*notes_, {u"text", u"it's", u""});
    ASSERT_TRUE(added);
    EXPECT_EQ(added->title, u"it's");
    EXPECT_THAT(notes_.rows(u"SELECT ID, VLHEAD FROM [Notes]"), ElementsAre(u"1|it's"));
}

TEST_P(Records, AreRefusedWithATitleThatIsTooLong)
{
    EXPECT_FALSE(addRecord(*notes_, {u"text", std::u16string(256, u'x'), u""}));
    EXPECT_EQ(notes_.shown().size(), 1u);
    EXPECT_TRUE(addRecord(*notes_, {u"text", std::u16string(255, u'x'), u""}));
    EXPECT_THAT(notes_.rows(u"SELECT COUNT(*) FROM [Notes]"), ElementsAre(u"1"));
}

TEST_P(Records, KeepTextsOfMegabytes)
{
    std::u16string text;
    for (int i = 0; text.size() < 1500000; ++i)
        text += u"line " + std::u16string(static_cast<std::size_t>(i % 40), u'文') + u"'\r\n";
    const auto record = getRecText(*notes_, add(text));
    ASSERT_TRUE(record);
    EXPECT_TRUE(record->text == text.substr(0, text.size() - 2)); // not to be printed
}

TEST_P(Records, AreSavedWithoutTouchingTheLink)
{
    const auto added = addRecord(*notes_, {u"old", u"", u"C:\\a.txt"});
    ASSERT_TRUE(added);
    notes_.run(u"UPDATE [Notes] SET VLDATE='2001-2-3 4:5:6'");
    EXPECT_EQ(modRecord(*notes_, added->id, u"a\r\nb'c", u"new\n\n\n\ntext", u"20240305090703"), Saved::Yes);
    const auto record = getRecText(*notes_, added->id);
    ASSERT_TRUE(record);
    EXPECT_EQ(record->head, u"ab'c");
    EXPECT_EQ(record->text, u"new\r\n\r\ntext");
    EXPECT_EQ(record->type, u"20240305090703");
    EXPECT_EQ(record->link, u"C:\\a.txt");
    EXPECT_GT(record->date.value_or(0), 45000);
    EXPECT_EQ(modRecord(*notes_, 99, u"a", u"b", u""), Saved::Gone);
}

TEST_P(Records, AreDuplicatedButForTheirId)
{
    const std::int32_t id = add(u"text");
    notes_.run(u"UPDATE [Notes] SET VLTYPE='20240305090703', VLDATE='2001-2-3 4:5:6', VLLINK='l'");
    EXPECT_TRUE(dupRecord(*notes_, id));
    const Lines rows = notes_.rows(u"SELECT VLHEAD, VLTEXT, VLTYPE, VLDATE, VLLINK, VLMD5 FROM [Notes]");
    ASSERT_EQ(rows.size(), 2u);
    EXPECT_EQ(rows[0], rows[1]);
    EXPECT_THAT(notes_.rows(u"SELECT ID FROM [Notes] ORDER BY ID"), ElementsAre(u"1", u"2"));
}

TEST_P(Records, OnceDeletedAreGone)
{
    const std::int32_t first = add(u"one");
    const std::int32_t second = add(u"two");
    EXPECT_THAT(delRecords(*notes_, {first, second}).ids, ElementsAre(first, second));
    EXPECT_FALSE(getRecText(*notes_, first));
    EXPECT_EQ(notes_.shown().size(), 1u) << "the panel says that it is gone";
    EXPECT_EQ(add(u"three"), 3) << "an ID is not given out again";
}

TEST_P(Records, StickAndGoBackToTheDateOfTheirSource)
{
    const std::u16string source = notes_.folder().write(u"source.txt", "x");
    const auto linked = addRecord(*notes_, {u"a", u"", source});
    const auto lost = addRecord(*notes_, {u"b", u"", u"C:\\no such file.txt"});
    const std::int32_t plain = add(u"c");
    ASSERT_TRUE(linked && lost);
    notes_.run(u"UPDATE [Notes] SET VLDATE='2001-2-3 4:5:6'");
    notes_.run(u"UPDATE [Notes] SET VLLINK=NULL WHERE ID=3");
    const std::vector<std::int32_t> all = {linked->id, lost->id, plain};
    EXPECT_EQ(setStickyRecs(*notes_, all).ids, all);
    for (const std::u16string& stamp : notes_.rows(u"SELECT VLTYPE FROM [Notes]")) {
        EXPECT_EQ(stamp.size(), 14u);
        EXPECT_EQ(stamp.substr(0, 2), u"20");
    }
    EXPECT_EQ(ClearStickyRecs(*notes_, all).ids, all);
    EXPECT_THAT(notes_.rows(u"SELECT VLTYPE FROM [Notes]"), ElementsAre(u"", u"", u""));
    EXPECT_NEAR(getRecText(*notes_, linked->id)->date.value_or(0), *platform::fileModified(source), 1e-5);
    EXPECT_NEAR(getRecText(*notes_, lost->id)->date.value_or(0), 36925.17, 0.01);
    EXPECT_NEAR(getRecText(*notes_, plain)->date.value_or(0), 36925.17, 0.01);
}

TEST_P(Records, AreCopiedWithTheDateOfTheCopy)
{
    const std::int32_t id = add(u"one");
    add(u"two");
    notes_.run(u"CREATE TABLE [Other] (ID COUNTER, VLHEAD TEXT(255), VLTEXT MEMO, VLTYPE TEXT(255), VLDATE "
               u"DATETIME, VLLINK TEXT(255), VLMD5 TEXT(32))");
    notes_.run(u"UPDATE [Notes] SET VLDATE='2001-2-3 4:5:6'");
    const ChangedRecords copied = copyRecords(*notes_, u"Other", {id, 77});
    EXPECT_THAT(copied.ids, ElementsAre(id)) << "77 is gone";
    EXPECT_TRUE(copied.whole());
    EXPECT_THAT(
        notes_.rows(u"SELECT VLHEAD, VLTEXT FROM [Other] WHERE VLDATE > 45000"), ElementsAre(u"one|one"));
    const ChangedRecords nowhere = copyRecords(*notes_, u"Missing", {id});
    EXPECT_THAT(nowhere.ids, IsEmpty());
    EXPECT_TRUE(nowhere.result.failed());
    EXPECT_THAT(notes_.shown(), IsEmpty()) << "the caller tells";
}

// Every routine has one way out: one line that begins with its name.
TEST_P(Records, TellWhatFailed)
{
    notes_->dbTable = u"Missing";
    EXPECT_FALSE(addRecord(*notes_, {u"a", u"", u""}));
    EXPECT_EQ(modRecord(*notes_, 1, u"", u"", u""), Saved::Failed);
    EXPECT_FALSE(dupRecord(*notes_, 5));
    EXPECT_FALSE(delRecords(*notes_, {1}).whole());
    EXPECT_FALSE(getRecText(*notes_, 7));
    EXPECT_FALSE(setStickyRecs(*notes_, {1}).whole());
    EXPECT_FALSE(ClearStickyRecs(*notes_, {1}).whole());
    const std::u16string starts[] = {u"addRecord - ", u"modRecord - ", u"dupRecord - 5 > ", u"delRecord - ",
        u"getRecText - 7 > ", u"setStickyRecs - ", u"ClearStickyRecs - "};
    ASSERT_EQ(notes_.shown().size(), std::size(starts));
    for (std::size_t i = 0; i < std::size(starts); ++i) {
        EXPECT_TRUE(notes_.shown()[i].starts_with(starts[i])) << i;
        EXPECT_EQ(notes_.shown()[i].back(), u')');
    }
}

// Servers count in another type than Access, and need not tell how many rows they changed.
class Server : public Connection {
public:
    class OneNumber : public Recordset {
    public:
        const std::vector<std::u16string>& columns() const override { return columns_; }
        bool next() override { return std::exchange(left_, false); }
        const Value& value(std::size_t) const override { return number_; }

    private:
        std::vector<std::u16string> columns_{u"Expr1"};
        Value number_ = jet::Decimal{false, {0, 0, 0, 70000}, 0};
        bool left_ = true;
    };
    std::unique_ptr<Recordset> query(std::u16string_view) override { return std::make_unique<OneNumber>(); }
    std::int32_t execute(std::u16string_view) override { return -1; }
    std::vector<SchemaTable> tables() override { return {}; }
};

TEST(AddedRecords, HaveTheIdentityThatAServerGives)
{
    Server server;
    EXPECT_EQ(addRecord(server, u"snippets", {u"text", u"", u""}).id, 70000);
}

} // namespace
} // namespace vellums
