// Text that the end of a session had cut off comes back: none is lost, and none overwrites another.
#include "app/unsavedText.h"

#include "platform/files.h"
#include "tests/support/windowNotebook.h"

#include <gmock/gmock.h>

namespace vellums {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class UnsavedTextTest : public testing::Test, protected tests::WindowNotebook {
protected:
    UnsavedTextTest()
    {
        first = addRecord(*notes, {u"first body", u"first", u""})->id;
        offerFields();
        records.start();
    }
    // The session ends with this in the boxes.
    void end(const std::u16string& title, const std::u16string& text)
    {
        window.txtType.type(title);
        window.txtShowWrap.type(text);
        ASSERT_TRUE(keepUnsavedText(*notes, records.current().unsavedText()));
    }
    // The next start.
    void startAgain(Answer answer)
    {
        window.dialogs.answerNext(answer);
        RecordCommands next(*notes, ports, moments);
        next.start();
        next.offerUnsavedTexts();
    }
    std::vector<std::u16string> rows()
    {
        return notes.rows(u"SELECT VLHEAD, VLTEXT, VLLINK FROM [Notes] ORDER BY ID");
    }

    std::int32_t first = 0;
};

TEST_F(UnsavedTextTest, KeepsEveryUnitInAFileOfItsOwn)
{
    UnsavedText text;
    text.conn = u"Data Source=笔记.mdb";
    text.id = 7;
    text.title = std::u16string(u"a\0b", 3) + char16_t(0xD800); // half a character, a zero
    text.text = u"中文\r\n😀" + std::u16string(100000, u'x');
    UnsavedText other = text;
    other.id = -1;
    other.text.clear();
    ASSERT_TRUE(keepUnsavedText(*notes, text));
    ASSERT_TRUE(keepUnsavedText(*notes, other)) << "an earlier one is not overwritten";
    const auto files = unsavedTextFiles(*notes);
    ASSERT_EQ(files.size(), 2u);
    EXPECT_EQ(readUnsavedText(files[0]), text);
    EXPECT_EQ(readUnsavedText(files[1]), other);
    notes.folder().write(u"Vellums.100.unsaved", "the last one that can be");
    notes.folder().write(u"Vellums.101.unsaved", "never made");
    EXPECT_EQ(unsavedTextFiles(*notes).size(), 3u);

    const std::string bytes = tests::bytesOf(files[0]);
    for (const std::size_t cut :
        {std::size_t{0}, std::size_t{7}, std::size_t{40}, bytes.size() / 2, bytes.size() - 1})
        EXPECT_FALSE(readUnsavedText(notes.folder().write(u"cut", bytes.substr(0, cut)))) << cut;
    std::string flipped = bytes;
    flipped[bytes.size() / 3] ^= 1;
    EXPECT_FALSE(readUnsavedText(notes.folder().write(u"flipped", flipped)));
}

TEST_F(UnsavedTextTest, GoesBackIntoTheRecordThatIsAsItWas)
{
    end(u"new title", u"new body");
    startAgain(Answer::Yes);
    EXPECT_THAT(rows(), ElementsAre(u"new title|new body|"));
    EXPECT_EQ(window.txtShowWrap.text(), u"new body");
    EXPECT_THAT(unsavedTextFiles(*notes), IsEmpty());
}

TEST_F(UnsavedTextTest, BecomesANewRecordWhereTheOldOneHasChangedOrIsGone)
{
    end(u"new title", u"new body");
    notes.run(u"UPDATE [Notes] SET VLTEXT='changed elsewhere'");
    startAgain(Answer::Yes);
    EXPECT_THAT(rows(), ElementsAre(u"first|changed elsewhere|", u"new title|new body|"));
    records.start();
    end(u"third", u"third body");
    notes.run(u"DELETE FROM [Notes]");
    startAgain(Answer::Yes);
    EXPECT_THAT(rows(), ElementsAre(u"third|third body|"));
}

TEST_F(UnsavedTextTest, ANewRecordKeepsItsLinkAndATextOfALostDatabaseIsNotLost)
{
    records.current().clear();
    window.chkSort.setCaption(u"https://example.com");
    end(u"", u"never saved");
    window.chkSort.setCaption(u"");
    startAgain(Answer::Yes);
    EXPECT_THAT(rows(), ElementsAre(u"first|first body|", u"never saved|never saved|https://example.com"));

    UnsavedText text;
    text.conn = u"Data Source=gone.mdb";
    text.parent = notes->dbParent;
    text.table = u"Notes";
    text.id = first;
    text.title = u"of another database";
    ASSERT_TRUE(keepUnsavedText(*notes, text));
    startAgain(Answer::Yes);
    EXPECT_EQ(rows().back(), u"of another database||");
}

TEST_F(UnsavedTextTest, NoGivesItUpAndCancelAsksAgain)
{
    end(u"title", u"body");
    startAgain(Answer::Cancel);
    EXPECT_EQ(unsavedTextFiles(*notes).size(), 1u);
    startAgain(Answer::No);
    EXPECT_THAT(unsavedTextFiles(*notes), IsEmpty());
    EXPECT_THAT(rows(), ElementsAre(u"first|first body|"));
}

// A text that cannot be put into the database stays in its file.
TEST_F(UnsavedTextTest, AFailureLosesNothing)
{
    end(std::u16string(300, u'x'), u"body");
    startAgain(Answer::Yes);
    EXPECT_EQ(unsavedTextFiles(*notes).size(), 1u);
    EXPECT_TRUE(notes.outcome().starts_with(u"modRecord - "));
}

} // namespace
} // namespace vellums
