// Finding inside a text, in the real window.
#include "tests/windows/programTest.h"
#include "ui/ids.h"

namespace vellums::tests {
namespace {

const std::u16string kText = u"中文😀 tax rate\r\nno\r\n税 Tax; TAX 完";
using Range = std::pair<int, int>;

class FindTest : public ProgramTest {
protected:
    static bool selects(const Program& program, Range range, int box = ID_txtShowWrap)
    {
        const bool selected = eventually([&] { return program.selection(box) == range; });
        EXPECT_EQ(program.selection(box), range);
        return selected;
    }
};

TEST_P(FindTest, EnterFindsAndKeysStep)
{
    Program program(folder.executable());
    program.setText(ID_txtShowWrap, kText);
    program.setText(ID_txtInline, u"t[ea]x");
    EXPECT_FALSE(program.isShown(ID_lstInLineSrch));
    program.type(ID_txtInline, VK_RETURN);
    EXPECT_TRUE(program.showsStatus(say(u"3 matches found.", u"关键字查找共 3 处匹配。")));
    EXPECT_TRUE(selects(program, {5, 8}));
    EXPECT_TRUE(hasFocus(program, ID_txtShowWrap));
    EXPECT_TRUE(program.isShown(ID_lstInLineSrch));
    EXPECT_EQ(program.entryOf(ID_lstInLineSrch, u"5 > tax"), 0);
    EXPECT_EQ(program.entryOf(ID_lstInLineSrch, u"21 > Tax"), 1);
    EXPECT_EQ(program.entryOf(ID_lstInLineSrch, u"26 > TAX"), 2);

    Program::strike(VK_F3);
    EXPECT_TRUE(selects(program, {21, 24}));
    Program::strike(VK_F3);
    EXPECT_TRUE(selects(program, {26, 29}));
    Program::strike(VK_F3);
    EXPECT_TRUE(selects(program, {5, 8}));
    Program::strike(VK_F3, false, true);
    EXPECT_TRUE(selects(program, {26, 29}));
    program.type(ID_txtInline, VK_RETURN); // the same, from the box
    EXPECT_TRUE(selects(program, {21, 24}));
    program.command(ID_mnu_top + 6);
    EXPECT_TRUE(selects(program, {26, 29}));
    program.command(ID_mnu_top + 5);
    EXPECT_TRUE(selects(program, {21, 24}));

    program.type(ID_txtInline, VK_ESCAPE);
    EXPECT_TRUE(eventually([&] { return !program.isShown(ID_lstInLineSrch); }));
    EXPECT_EQ(program.text(ID_txtInline), u"");
    EXPECT_EQ(program.count(ID_lstInLineSrch), 0);
    EXPECT_EQ(program.text(ID_txtShowWrap), kText);
}

TEST_P(FindTest, TheListSelectsInTheTextAndIsCopied)
{
    Program program(folder.executable());
    program.command(ID_mnu_chkwrap); // the other box
    ASSERT_TRUE(eventually([&] { return program.isShown(ID_txtShowNoWrap); }));
    program.setText(ID_txtShowNoWrap, kText);
    const RECT before = program.place(ID_txtShowNoWrap);
    program.setText(ID_txtInline, u"tax");
    program.type(ID_txtInline, VK_RETURN);
    EXPECT_TRUE(selects(program, {5, 8}, ID_txtShowNoWrap));
    const RECT text = program.place(ID_txtShowNoWrap);
    const RECT list = program.place(ID_lstInLineSrch);
    EXPECT_LT(text.bottom, before.bottom);
    EXPECT_EQ(list.left, text.left);
    EXPECT_EQ(list.right, text.right);
    EXPECT_EQ(list.top, text.bottom);

    const auto height = static_cast<int>(program.ask(ID_lstInLineSrch, LB_GETITEMHEIGHT));
    program.click(ID_lstInLineSrch, 20, 2 * height + height / 2);
    EXPECT_TRUE(selects(program, {26, 29}, ID_txtShowNoWrap));
    EXPECT_TRUE(hasFocus(program, ID_txtShowNoWrap));

    program.click(ID_lstInLineSrch, 20, height + height / 2, true);
    ASSERT_TRUE(opensMenu(program));
    EXPECT_TRUE(choose(program, 'C'));
    EXPECT_TRUE(eventually([] { return clipboard() == u"Tax"; }));
    program.click(ID_lstInLineSrch, 20, height / 2, true);
    ASSERT_TRUE(opensMenu(program));
    EXPECT_TRUE(choose(program, 'A'));
    EXPECT_TRUE(eventually([] { return clipboard() == u"5 > tax\r\n21 > Tax\r\n26 > TAX\r\n"; }));
}

TEST_P(FindTest, FindInlineOffersTheSelectedWords)
{
    Program program(folder.executable());
    program.setText(ID_txtShowWrap, kText);
    program.select(ID_txtShowWrap, 5, 17); // "tax rate" and the line behind it
    program.type(ID_txtShowWrap, 'F', true);
    EXPECT_TRUE(eventually([&] { return program.text(ID_txtInline) == u"tax.*rate"; }));
    EXPECT_TRUE(selects(program, {0, 9}, ID_txtInline));
    EXPECT_TRUE(hasFocus(program, ID_txtInline));
    program.type(ID_txtInline, 'Z', true);
    EXPECT_TRUE(eventually([&] { return program.text(ID_txtInline).empty(); }));

    // The menu under the label, and the key that opens it.
    program.click(ID_lblRemarks + 1, 3, 3);
    ASSERT_TRUE(opensMenu(program));
    Program::strike(VK_DOWN);
    EXPECT_TRUE(choose(program, VK_RETURN));
    EXPECT_TRUE(eventually([&] { return program.text(ID_txtInline) == u"."; }));
    program.type(ID_txtInline, VK_OEM_2, true);
    ASSERT_TRUE(opensMenu(program));
    Program::strike(VK_UP); // the last one
    EXPECT_TRUE(choose(program, VK_RETURN));
    EXPECT_TRUE(eventually([&] { return program.text(ID_txtInline) == u".[\\w.-]+@[\\w.-]+"; }));
    program.type(ID_txtKey, VK_OEM_2, true);
    EXPECT_TRUE(opensMenu(program));
    EXPECT_TRUE(choose(program, VK_ESCAPE));
}

TEST_P(FindTest, TheListFollowsEachLetterWhereItIsToldTo)
{
    Program program(folder.executable());
    for (const char16_t* text : {u"apple pie", u"apple cake", u"plum"})
        ASSERT_TRUE(program.paste(text));
    program.command(ID_mnu_InstantSrch);
    program.type(ID_txtKey, 'P');
    program.type(ID_txtKey, 'L');
    program.ask(ID_txtKey, WM_IME_STARTCOMPOSITION); // nothing is looked for until the word is whole
    program.type(ID_txtKey, 'U');
    EXPECT_TRUE(eventually([&] { return program.text(ID_txtKey) == u"plu"; }));
    EXPECT_EQ(program.count(ID_lstHeads), 3);
    program.ask(ID_txtKey, WM_IME_ENDCOMPOSITION);
    EXPECT_TRUE(eventually([&] { return program.count(ID_lstHeads) == 1; }));
    program.type(ID_txtKey, VK_BACK);
    EXPECT_TRUE(eventually([&] { return program.count(ID_lstHeads) == 3; }));
    EXPECT_TRUE(hasFocus(program, ID_txtKey));
    program.command(ID_mnu_InstantSrch);
    program.command(ID_mnu_AvailFields + 2); // bodies are not searched
    program.type(ID_txtKey, 'U');
    EXPECT_TRUE(eventually([&] { return program.count(ID_lstHeads) == 1; }));
    program.type(ID_txtKey, VK_ESCAPE);
    EXPECT_TRUE(eventually([&] { return program.count(ID_lstHeads) == 3; }));
}

INSTANTIATE_TEST_SUITE_P(InBothLanguages, FindTest, languagesHere(), languageOf);

} // namespace
} // namespace vellums::tests
