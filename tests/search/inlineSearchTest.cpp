#include "search/inlineSearch.h"

#include "app/currentRecord.h"
#include "platform/clipboard.h"
#include "search/findInText.h"
#include "tests/support/memoryControls.h"
#include "tests/support/shownLines.h"

#include <gmock/gmock.h>

namespace vellums {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class InlineSearch : public testing::Test {
protected:
    InlineSearch()
    {
        window.lstInLineSrch.setVisible(false);
        window.lstInLineSrch.setEnabled(false);
    }
    void search(std::u16string_view text, std::u16string_view keyword)
    {
        window.txtShowWrap.setText(text);
        window.txtInline.setText(keyword);
        doInlineSearch(notebook, window.ports().find);
    }
    void find(FindCommand command) { findInText(notebook, window.ports().find, window.txtKey, command); }
    std::u16string selected() const { return window.txtShowWrap.selectedText(); }
    std::size_t caret() const { return window.txtShowWrap.selection().start; }
    bool listIsUntouched() const { return !results.enabled() && !results.visible(); }

    // The last line; "before" where there was none.
    std::u16string lastLine() const { return status.lines.empty() ? u"before" : status.lines.back(); }

    tests::ShownLines status;
    Notebook notebook{status};
    tests::MemoryWindow window;
    tests::MemoryListBox& results = window.lstInLineSrch;
};

TEST_F(InlineSearch, ListsThePlacesSelectsTheFirstAndCounts)
{
    search(u"中文 Tax\r\n😀 tax, TAX", u"tax");
    EXPECT_THAT(results.texts(), ElementsAre(u"3 > Tax", u"11 > tax", u"16 > TAX"));
    EXPECT_THAT(results.data(), ElementsAre(3, 11, 16));
    EXPECT_TRUE(results.enabled());
    EXPECT_TRUE(results.visible());
    EXPECT_EQ(results.current(), 0);
    EXPECT_EQ(results.tag(), u"tax");
    EXPECT_EQ(selected(), u"Tax");
    EXPECT_TRUE(window.txtShowWrap.scrolled());
    EXPECT_TRUE(window.txtShowWrap.focused());
    EXPECT_EQ(lastLine(), u"3 matches found.");
    search(u"one > two", u"e > t"); // the first mark alone stands between position and text
    EXPECT_EQ(selected(), u"e > t");
    EXPECT_EQ(lastLine(), u"1 match found.");
    notebook.chinese = true;
    search(u"aa", u"a");
    EXPECT_EQ(lastLine(), u"关键字查找共 2 处匹配。");
}

TEST_F(InlineSearch, ChangesNothingToBeSeenWhereNothingIsFound)
{
    for (const char16_t* keyword : {u"absent", u"q*", u""}) {
        search(u"some text", keyword);
        EXPECT_THAT(results.texts(), IsEmpty());
        EXPECT_TRUE(listIsUntouched());
        EXPECT_EQ(results.tag(), keyword);
        EXPECT_EQ(window.txtInlineTip.text(), u"");
    }
    search(u"", u"a");
    EXPECT_TRUE(listIsUntouched());
    EXPECT_EQ(lastLine(), u"before");
    EXPECT_FALSE(window.txtShowWrap.focused());
}

TEST_F(InlineSearch, TellsInTheTipWhyNothingWasFound)
{
    search(u"some text", u"(x");
    EXPECT_EQ(window.txtInlineTip.text(),
        u"Not a regular expression: \")\" is missing, or one too many (character 1).");
    EXPECT_TRUE(listIsUntouched());
    EXPECT_EQ(lastLine(), u"before");
    notebook.chinese = true;
    search(u"some text", u"ab[z-a]");
    EXPECT_EQ(window.txtInlineTip.text().substr(0, 15), u"正则表达式有误: 字符范围颠倒");
    search(u"some text", u"text");
    EXPECT_EQ(window.txtInlineTip.text(), u"");

    // What was found before the search had to end stays, but takes no clicks.
    hideResults(results);
    search(u"ab\r\n" + std::u16string(40000, u'-') + u"ab", u"ab");
    EXPECT_THAT(results.texts(), ElementsAre(u"0 > ab"));
    EXPECT_FALSE(results.enabled());
    EXPECT_EQ(window.txtInlineTip.text(), u"文本中有一行过长，未能全部查找。");
}

TEST_F(InlineSearch, StopsAtWhatTheListCanHold)
{
    search(std::u16string(40000, u'a') + u"\r\n", u"a");
    EXPECT_EQ(results.count(), 32767);
    EXPECT_EQ(lastLine(), u"32767 matches found.");
    hideResults(results);
    EXPECT_EQ(results.tag(), u"");
    EXPECT_FALSE(results.visible());
    results.setEnabled(false);
    results.limitTo(10);
    search(std::u16string(50, u'a'), u"a");
    EXPECT_EQ(lastLine(), u"Too many matches.");
    EXPECT_TRUE(listIsUntouched());
}

TEST_F(InlineSearch, CopiesAnEntryAndAllOfThem)
{
    search(u"cat\r\ncut", u"c.t");
    results.select(1);
    copyResult(notebook, results);
    EXPECT_EQ(platform::clipboardText().text, u"cut");
    results.select(0);
    copyResult(notebook, results);
    EXPECT_EQ(platform::clipboardText().text, u"cat");
    results.select(-1);
    lstInLineSrchClick(window.ports().find);
    copyResult(notebook, results);
    EXPECT_EQ(platform::clipboardText().text, u"cat") << "nothing is selected";
    copyAllResults(notebook, results);
    EXPECT_EQ(platform::clipboardText().text, u"0 > cat\r\n5 > cut\r\n");
}

TEST_F(InlineSearch, StepsFromTheCaretAndAroundTheEnds)
{
    search(u"ab ab 中文😀 ab", u"ab"); // at 0, 3 and 11
    find(FindCommand::Next);
    EXPECT_EQ(caret(), 3u);
    find(FindCommand::Next);
    EXPECT_EQ(caret(), 11u);
    find(FindCommand::Next);
    EXPECT_EQ(caret(), 0u);
    find(FindCommand::Previous);
    EXPECT_EQ(caret(), 11u);
    EXPECT_EQ(results.current(), 2);
    window.txtShowWrap.select({4, 4});
    find(FindCommand::Previous);
    EXPECT_EQ(caret(), 3u);
    EXPECT_EQ(selected(), u"ab");
    find(FindCommand::Previous);
    EXPECT_EQ(caret(), 0u);
    find(FindCommand::Next); // not the one at the caret
    EXPECT_EQ(caret(), 3u);
    search(u"only one", u"one");
    find(FindCommand::Next);
    find(FindCommand::Previous);
    EXPECT_EQ(selected(), u"one");
}

TEST_F(InlineSearch, IsDoneAnewForAnotherKeywordOrAnEmptyList)
{
    search(u"ab ab ac", u"ab");
    find(FindCommand::Next);
    window.txtInline.type(u"a");
    find(FindCommand::Previous);
    EXPECT_EQ(results.count(), 3);
    EXPECT_EQ(caret(), 0u);
    window.txtInline.type(u"x");
    find(FindCommand::Next);
    EXPECT_EQ(results.count(), 0);
    window.txtShowWrap.type(u"ab x");
    find(FindCommand::Next);
    EXPECT_THAT(results.texts(), ElementsAre(u"3 > x"));
}

TEST_F(InlineSearch, OffersAKeyword)
{
    const struct {
        const char* why;
        std::u16string selected, words, clipboard, keyword;
    } cases[] = {
        {"the selected text", u" tax ", u"words", u"clip", u"tax"},
        {"words in this order on one line", u"two  words", u"", u"", u"two.*.*words"},
        {"its first line", u"first line\r\nsecond", u"", u"", u"first.*line"},
        {"the search words", u"  ", u"red apple ", u"clip", u"red.*apple"},
        {"the clipboard", u"", u"", u"from there\r\n", u"from.*there"},
        {"nothing", u"", u"", u"", u""},
    };
    for (const auto& c : cases) {
        for (const FindCommand command : {FindCommand::Inline, FindCommand::Next}) {
            window.txtShowWrap.setText(u"->" + c.selected);
            window.txtShowWrap.select({2, 2 + c.selected.size()});
            window.txtKey.setText(c.words);
            platform::setClipboardText(c.clipboard);
            window.txtInline.setText({});
            find(command);
            EXPECT_EQ(window.txtInline.text(), c.keyword) << c.why;
            EXPECT_EQ(window.txtInline.selectedText(), c.keyword) << c.why;
            EXPECT_TRUE(window.txtInline.focused());
        }
    }
    window.txtInline.setText(u"mine");
    find(FindCommand::Inline);
    EXPECT_EQ(window.txtInline.selectedText(), u"mine");
    EXPECT_EQ(results.count(), 0);
}

} // namespace
} // namespace vellums
