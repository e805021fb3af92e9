#include "search/textCommands.h"

#include "app/boxText.h"
#include "platform/clipboard.h"
#include "regexp/regExp.h"
#include "search/patternMenu.h"
#include "tests/search/boxesFixture.h"
#include "text/pieces.h"
#include "text/unicode.h"

#include <gmock/gmock.h>
#include <random>

namespace vellums {
namespace {

class TextCommandsTest : public tests::BoxesFixture {
protected:
    std::u16string after(std::u16string_view text, void (TextCommands::*command)())
    {
        const std::u16string shown = boxText(text);
        box.setText(u"前" + shown + u"后");
        box.select({1, 1 + shown.size()});
        (commands.*command)();
        const std::u16string result = box.text();
        EXPECT_EQ(box.selectedText(), result.substr(1, result.size() - 2)); // what was put in is selected
        box.undo();
        EXPECT_EQ(box.selectedText(), shown);
        return result.substr(1, result.size() - 2);
    }

    tests::MemoryCheckItem mnu_switchCase;
    TextCommands commands{*notes, ports.textBoxes(), boxes, mnu_switchCase};
    tests::MemoryTextBox& box = window.txtShowWrap;
};

TEST_F(TextCommandsTest, JoinAndCompressLines)
{
    EXPECT_EQ(after(u"a\r\n\tb", &TextCommands::joinLines), u"ab");
    EXPECT_EQ(after(u"\ta\r\n\t\t b \r\nc\r\n", &TextCommands::joinLines), u"\ta b c");
    EXPECT_EQ(after(u"1\r\n\r\n\r\n2\r\n\r\n\r\n3", &TextCommands::compressLines), u"1\r\n2\r\n3");
    EXPECT_EQ(after(u"\r\n\r\na\r\n \r\n\r\n", &TextCommands::compressLines), u"\r\na\r\n \r\n");
    box.setText(u"a\r\nb");
    commands.joinLines();
    commands.compressLines();
    EXPECT_EQ(box.text(), u"a\r\nb"); // nothing is selected
}

std::u16string repeated(std::u16string text, std::u16string_view from, std::u16string_view to)
{
    for (std::u16string next;; text = next)
        if ((next = text::replaceAll(text, from, to)) == text)
            return text;
}

TEST_F(TextCommandsTest, JoinAndCompressAsIfReplacedAgainAndAgain)
{
    std::mt19937 random(5);
    for (int round = 0; round < 2000; ++round) {
        std::u16string text(1 + random() % 24, u'a');
        for (char16_t& c : text)
            c = u"\r\n\t\r\nab"[random() % 7];
        const std::u16string lines = boxText(text); // lone CR and LF are line ends in a box
        EXPECT_EQ(after(text, &TextCommands::joinLines),
            repeated(repeated(lines, u"\r\n\t", u"\r\n"), u"\r\n", u""));
        EXPECT_EQ(after(text, &TextCommands::compressLines), repeated(lines, u"\r\n\r\n", u"\r\n"));
    }
}

TEST_F(TextCommandsTest, SwitchCaseGoesToAndFro)
{
    EXPECT_EQ(after(u"Straße ÄÖ 中文 Жук ΑΣ ǅ İ", &TextCommands::switchCase), u"straße äö 中文 жук ασ ǆ İ");
    EXPECT_TRUE(mnu_switchCase.checked());
    EXPECT_EQ(after(u"straße äö 中文 жук ÿ ĳ", &TextCommands::switchCase), u"STRAßE ÄÖ 中文 ЖУК Ÿ Ĳ");
    EXPECT_FALSE(mnu_switchCase.checked());
    box.setText(u"All of it");
    box.select({3, 3});
    commands.switchCase();
    EXPECT_EQ(box.text(), u"all of it");
    box.undo();
    EXPECT_EQ(box.text(), u"all of it");
    EXPECT_TRUE(box.scrolled());
}

TEST_F(TextCommandsTest, InsertDateAndTitleAtTheCaret)
{
    box.setText(u"first\r\nlast");
    box.select({5, 5});
    commands.setTarget(PopUpTarget::Title); // makes no difference
    commands.insertDate();
    std::u16string stamp = box.text().substr(5, box.text().size() - 11);
    for (char16_t& c : stamp)
        c = c >= u'0' && c <= u'9' ? u'9' : c;
    EXPECT_EQ(stamp.substr(0, 10), u"\r\n> 9999-9");
    EXPECT_EQ(stamp.substr(stamp.size() - 11), u" 99:99:99\r\n");
    EXPECT_EQ(box.selection().start, box.text().size() - 6); // at the end of its own line's end
    box.undo();
    EXPECT_EQ(box.text(), u"first\r\nlast");

    window.txtType.setText(u"标题");
    box.select({5, 11});
    commands.insertTitle();
    EXPECT_EQ(box.text(), u"first标题");
    box.undo();
    EXPECT_EQ(box.text(), u"first\r\nlast");
}

TEST_F(TextCommandsTest, TrimTextCannotBeUndone)
{
    box.setText(u"a  \r\n\r\n\r\n\r\n b\r\n");
    commands.trimText();
    EXPECT_EQ(box.text(), u"a\r\n\r\nb");
    box.undo();
    EXPECT_EQ(box.text(), u"a\r\n\r\nb");
}

TEST_F(TextCommandsTest, WorkOnTheirTarget)
{
    tests::MemoryTextBox* targets[] = {&box, &window.txtKey, &window.txtType, &window.txtInline};
    for (int i = 0; i < 4; ++i) {
        tests::MemoryTextBox& target = *targets[i];
        commands.setTarget(static_cast<PopUpTarget>(i));
        target.setText(u"one two");
        target.select({0, 4});
        commands.cut();
        EXPECT_EQ(target.text(), u"two");
        commands.undo();
        EXPECT_EQ(target.text(), u"one two");
        commands.deleteSelection();
        commands.undo();
        EXPECT_EQ(target.text(), u"one two");
        commands.selectAll();
        commands.copy();
        EXPECT_EQ(platform::clipboardText().text, u"one two");
        commands.paste();
        commands.paste();
        EXPECT_EQ(target.text(), u"one twoone two");
        platform::setClipboardText(u"");
        target.select({0, 3});
        commands.paste();
        EXPECT_EQ(target.text(), u"one twoone two") << "there is nothing to paste";
        commands.clearText();
        EXPECT_EQ(target.text(), u"");
        commands.undo();
        EXPECT_EQ(target.text(), u"one twoone two");
        target.setText({});
    }
    box.setText(u"whole\r\ntext");
    commands.copyAll();
    EXPECT_EQ(platform::clipboardText().text, u"whole\r\ntext");
}

TEST_F(TextCommandsTest, PasteAndGoAndResetAreEnterAndEscOfTheBox)
{
    addNote(u"apple", u"red");
    addNote(u"pear", u"green");
    records.start();
    EXPECT_EQ(window.lstHeads.count(), 2);

    commands.setTarget(PopUpTarget::Search);
    platform::setClipboardText(u"red");
    commands.pasteAndGo();
    EXPECT_EQ(window.lstHeads.texts(), std::vector<std::u16string>{u"apple"});
    commands.reset();
    EXPECT_EQ(window.txtKey.text(), u"");
    EXPECT_EQ(window.lstHeads.count(), 2);

    commands.setTarget(PopUpTarget::Find);
    platform::setClipboardText(u"re+n");
    commands.pasteAndGo();
    EXPECT_EQ(box.selectedText(), u"reen");
    EXPECT_TRUE(window.lstInLineSrch.visible());
    commands.reset();
    EXPECT_EQ(window.txtInline.text(), u"");
    EXPECT_FALSE(window.lstInLineSrch.visible());

    commands.setTarget(PopUpTarget::Title);
    commands.pasteAndGo();
    EXPECT_EQ(window.txtType.text(), u"re+npear");
    commands.reset();
    EXPECT_EQ(window.txtType.text(), u"");
    EXPECT_EQ(box.text(), u"green");
}

TEST_F(TextCommandsTest, PatternsAreInsertedWithoutTheirGaps)
{
    tests::MemoryMenuItems menu;
    fillPatternMenu(*notes, menu);
    ASSERT_GT(menu.size(), 20u);
    window.txtInline.setText(u"ab");
    window.txtInline.select({1, 2});
    commands.insertPattern(u"(?=...)");
    EXPECT_EQ(window.txtInline.text(), u"a(?=)");
    EXPECT_TRUE(window.txtInline.focused());
    window.txtInline.undo();
    EXPECT_EQ(window.txtInline.text(), u"ab");
    for (std::size_t i = 0; i < menu.size(); ++i) { // each is a pattern, or becomes one behind a letter
        regexp::RegExp regExp;
        regExp.Pattern = u"(a)" + text::replaceAll(menu.at(i).tag, u"...", u"b");
        EXPECT_NO_THROW(regExp.Test(u"ab")) << text::toUtf8(menu.at(i).tag);
    }
}

} // namespace
} // namespace vellums
