#include "search/searchBoxes.h"

#include "app/start/settings.h"
#include "tests/search/boxesFixture.h"
#include "tests/support/failingProvider.h"

namespace vellums {
namespace {

constexpr std::size_t kBodyField = 2; // columns: ID, VLHEAD, VLTEXT, ...

class SearchBoxesTest : public tests::BoxesFixture {
protected:
    SearchBoxesTest()
    {
        for (const char16_t* title : {u"apple", u"pear", u"plum"})
            addNote(title, u"a fruit");
        records.start();
    }
    void type(std::u16string_view words)
    {
        window.txtKey.type(words);
        instant.textChanged();
    }
    // Whether a search was waiting for a pause, which comes now.
    bool searched(bool userGoesOn = false)
    {
        if (!instantSearch.comes())
            return false;
        boxes.searchInstantly([=] { return userGoesOn; });
        return true;
    }
};

TEST_F(SearchBoxesTest, TypingSearchesAtOnceOnlyWhereThatIsCheapOrWanted)
{
    type(u"apple");
    EXPECT_FALSE(searched());
    boxes.searchEnter();
    EXPECT_EQ(window.lstHeads.count(), 1);

    boxes.toggleInstantSearch();
    type(u"p");
    EXPECT_TRUE(searched());
    EXPECT_EQ(window.lstHeads.count(), 3);
    boxes.toggleInstantSearch();
    type(u"pl");
    EXPECT_FALSE(searched());

    toggleSearchField(window.mnu_AvailFields, kBodyField);
    type(u"fruit");
    EXPECT_TRUE(searched());
    EXPECT_EQ(window.lstHeads.count(), 0); // the word stands in bodies alone
}

TEST_F(SearchBoxesTest, EnterAndEscLeaveNothingWaiting)
{
    boxes.toggleInstantSearch();
    type(u"plum");
    boxes.searchEnter();
    EXPECT_FALSE(searched());
    EXPECT_EQ(window.lstHeads.count(), 1);
    type(u"plums");
    boxes.searchEscape();
    EXPECT_FALSE(searched());
    EXPECT_EQ(window.txtKey.text(), u"");
    EXPECT_EQ(window.lstHeads.count(), 3);
    notes.run(u"DELETE FROM Notes WHERE VLHEAD='pear'");
    boxes.searchEscape(); // also when it was empty
    EXPECT_EQ(window.lstHeads.count(), 2);
}

TEST_F(SearchBoxesTest, NoSearchStartsWhileAnInputMethodComposes)
{
    boxes.toggleInstantSearch();
    type(u"p");
    instant.compositionStarted();
    type(u"pl");
    EXPECT_FALSE(searched());
    instant.compositionEnded();
    EXPECT_TRUE(searched());
    EXPECT_EQ(window.lstHeads.count(), 2);
}

TEST_F(SearchBoxesTest, ASearchIsGivenUpWhenTheUserGoesOnAndComesAgain)
{
    boxes.toggleInstantSearch();
    const std::vector<std::u16string> shown = notes.shown();
    type(u"plum");
    EXPECT_TRUE(searched(true));
    EXPECT_EQ(window.lstHeads.count(), 3);
    EXPECT_EQ(notes.shown(), shown);
    EXPECT_TRUE(searched());
    EXPECT_EQ(window.lstHeads.count(), 1);
}

// A search that may be given up and one that fails are told apart.
TEST_F(SearchBoxesTest, ASearchThatFailsWhileLettersAreTypedSaysSo)
{
    boxes.toggleInstantSearch();
    tests::FailingProvider provider;
    provider.refuses = [](std::u16string_view, int) { return true; };
    notes->provider = &provider;
    notes.outcome();
    type(u"plum");
    searched();
    EXPECT_EQ(notes.outcome(), u"dbQuery: Refused. (-2147467259)");
    EXPECT_EQ(window.lstHeads.count(), 3);
}

TEST_F(SearchBoxesTest, NoLetterAnswersTheQuestionAboutUnsavedText)
{
    boxes.toggleInstantSearch();
    type(u"a");
    EXPECT_EQ(instantSearch.quietMs(), 0);
    window.txtShowWrap.type(u"unsaved");
    type(u"an");
    EXPECT_GE(instantSearch.quietMs(), 500);
    window.dialogs.answerNext(Answer::Yes);
    EXPECT_TRUE(searched());
    EXPECT_EQ(notes.rows(u"SELECT COUNT(*) FROM Notes WHERE VLTEXT='unsaved'").front(), u"1");
}

TEST_F(SearchBoxesTest, OrderByTitleIsKeptAndSearchesAnew)
{
    notes.run(u"UPDATE Notes SET VLDATE=#2021-1-1# WHERE VLHEAD='plum'");
    boxes.toggleSortOnTitle();
    EXPECT_EQ(getPrefValue(notes->settingsFile, kOptionsSection, u"obTitle", u""), u"1");
    EXPECT_EQ(window.lstHeads.texts().front(), u"apple");
    boxes.toggleSortOnTitle();
    EXPECT_EQ(getPrefValue(notes->settingsFile, kOptionsSection, u"obTitle", u""), u"0");
    EXPECT_EQ(window.lstHeads.texts().front(), u"plum");
}

TEST_F(SearchBoxesTest, AnotherRecordMakesTheResultsStale)
{
    window.txtInline.type(u"fruit");
    boxes.findEnter();
    EXPECT_EQ(window.txtShowWrap.selectedText(), u"fruit");
    EXPECT_EQ(window.lstInLineSrch.tag(), u"fruit");
    window.lstHeads.click({1});
    records.selectHeading();
    window.txtShowWrap.type(u"no such word, but fruit");
    boxes.findEnter();
    EXPECT_EQ(window.lstInLineSrch.data(), std::vector<std::int32_t>{18});
    window.dialogs.answerNext(Answer::No);
    boxes.searchEnter();

    window.txtInline.type(u"(");
    boxes.findEnter();
    EXPECT_NE(window.txtInlineTip.text(), u"");
    boxes.findEscape();
    EXPECT_EQ(window.txtInline.text(), u"");
    EXPECT_FALSE(window.lstInLineSrch.visible());
    boxes.newSearch();
    EXPECT_TRUE(window.txtKey.focused());
}

} // namespace
} // namespace vellums
