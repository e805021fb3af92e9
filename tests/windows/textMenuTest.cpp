// The commands of the text menu and of the Edit menu, in the real edit controls.
#include "tests/windows/programTest.h"
#include "ui/ids.h"

namespace vellums::tests {
namespace {

class TextMenuTest : public ProgramTest {
protected:
    static bool shows(const Program& program, int id, const std::u16string& text)
    {
        const bool shown = eventually([&] { return program.text(id) == text; });
        EXPECT_EQ(program.text(id), text);
        return shown;
    }
    static std::u16string selected(const Program& program, int id)
    {
        const auto [start, end] = program.selection(id);
        return program.text(id).substr(
            static_cast<std::size_t>(start), static_cast<std::size_t>(end - start));
    }
    // Opens the menu over a box with the mouse and chooses the entry with this letter.
    static void popUp(const Program& program, int box, WORD letter)
    {
        program.click(box, 6, 6, true);
        ASSERT_TRUE(opensMenu(program));
        EXPECT_TRUE(choose(program, letter));
    }
};

TEST_P(TextMenuTest, EditsTheSelectedLinesUndoably)
{
    Program program(folder.executable());
    const std::u16string text = u"中文😀 one\r\n\t\ttwo\r\n\r\n\r\nthree 完";
    const struct {
        WORD letter;
        std::u16string selected;
        std::u16string result;
    } cases[] = {
        {'J', u"one\r\n\t\ttwo\r\n\r\n\r\nthree", u"onetwothree"},
        {'M', u"one\r\n\t\ttwo\r\n\r\n\r\nthree", u"one\r\n\t\ttwo\r\nthree"},
        {'D', u"one\r\n\t\ttwo", u""},
    };
    for (const int box : {ID_txtShowWrap, ID_txtShowNoWrap}) {
        ASSERT_TRUE(eventually([&] { return program.isShown(box); }));
        for (const auto& c : cases) {
            program.setText(box, text);
            const auto at = static_cast<int>(text.find(c.selected));
            program.select(box, at, at + static_cast<int>(c.selected.size()));
            popUp(program, box, c.letter);
            std::u16string changed = text;
            changed.replace(static_cast<std::size_t>(at), c.selected.size(), c.result);
            EXPECT_TRUE(shows(program, box, changed));
            EXPECT_EQ(selected(program, box), c.result);
            popUp(program, box, 'U');
            EXPECT_TRUE(shows(program, box, text));
        }
        program.command(ID_mnu_chkwrap);
    }
}

TEST_P(TextMenuTest, KeysOfTheEditMenuChangeTheText)
{
    Program program(folder.executable());
    program.setText(ID_txtShowWrap, u"中文😀 Straße\r\nEnd");
    program.select(ID_txtShowWrap, 5, 11);
    program.type(ID_txtShowWrap, 'U', true);
    EXPECT_TRUE(shows(program, ID_txtShowWrap, u"中文😀 straße\r\nEnd"));
    EXPECT_EQ(selected(program, ID_txtShowWrap), u"straße");
    Program::strike('U', true);
    EXPECT_TRUE(shows(program, ID_txtShowWrap, u"中文😀 STRAßE\r\nEnd"));
    Program::strike('Z', true);
    EXPECT_TRUE(shows(program, ID_txtShowWrap, u"中文😀 straße\r\nEnd"));
    program.select(ID_txtShowWrap, 0, 0);
    Program::strike('U', true);
    EXPECT_TRUE(shows(program, ID_txtShowWrap, u"中文😀 straße\r\nend"));

    program.select(ID_txtShowWrap, 11, 11); // behind the first line
    Program::strike(VK_F5, true);
    EXPECT_TRUE(eventually([&] { return program.text(ID_txtShowWrap).size() > 30; }));
    const std::u16string stamped = program.text(ID_txtShowWrap);
    EXPECT_EQ(stamped.substr(0, 17), u"中文😀 straße\r\n> 20");
    EXPECT_EQ(stamped.substr(stamped.size() - 7), u"\r\n\r\nend");
    EXPECT_EQ(program.selection(ID_txtShowWrap).first, static_cast<int>(stamped.size()) - 5);
    Program::strike('Z', true);
    EXPECT_TRUE(shows(program, ID_txtShowWrap, u"中文😀 straße\r\nend"));

    program.setText(ID_txtType, u"标题");
    program.select(ID_txtShowWrap, 0, 2);
    program.command(ID_mnu_top + 10);
    EXPECT_TRUE(shows(program, ID_txtShowWrap, u"标题😀 straße\r\nend"));
    program.type(ID_txtType, 'E', true); // clears the box that has the focus
    EXPECT_TRUE(shows(program, ID_txtType, u""));
    Program::strike('Z', true);
    EXPECT_TRUE(shows(program, ID_txtType, u"标题"));
    EXPECT_EQ(program.text(ID_txtShowWrap), u"标题😀 straße\r\nend");
    program.type(ID_txtShowWrap, 'E', true);
    EXPECT_TRUE(shows(program, ID_txtShowWrap, u""));
    Program::strike('Z', true);
    EXPECT_TRUE(shows(program, ID_txtShowWrap, u"标题😀 straße\r\nend"));

    program.setText(ID_txtShowWrap, u"中文  \r\n\r\n\r\n\r\n end\r\n");
    program.type(ID_txtShowWrap, 'T', true);
    EXPECT_TRUE(shows(program, ID_txtShowWrap, u"中文\r\n\r\nend"));
    ASSERT_TRUE(setClipboard(u"other"));
    Program::strike('C', false, false, true); // copies all of it
    EXPECT_TRUE(eventually([] { return clipboard() == u"中文\r\n\r\nend"; }));
    program.command(ID_mnu_txtundo); // there is nothing to undo
    program.type(ID_txtType, 'E', true);
    EXPECT_TRUE(shows(program, ID_txtType, u""));
    EXPECT_EQ(program.text(ID_txtShowWrap), u"中文\r\n\r\nend");
}

TEST_P(TextMenuTest, PasteAndGoAndResetAreEnterAndEsc)
{
    Program program(folder.executable());
    for (const char16_t* text : {u"中文😀 apple pie", u"plum"})
        ASSERT_TRUE(program.paste(text));
    ASSERT_TRUE(setClipboard(u"apple"));
    popUp(program, ID_txtKey, 'G');
    EXPECT_TRUE(eventually([&] { return program.count(ID_lstHeads) == 1; }));
    EXPECT_TRUE(shows(program, ID_txtShowWrap, u"中文😀 apple pie"));
    popUp(program, ID_txtKey, 'R');
    EXPECT_TRUE(eventually([&] { return program.count(ID_lstHeads) == 2; }));
    EXPECT_EQ(program.text(ID_txtKey), u"");
    program.type(ID_txtKey, 'B', true);
    EXPECT_TRUE(eventually([&] { return program.count(ID_lstHeads) == 1; }));

    ASSERT_TRUE(setClipboard(u"[😀p]+le"));
    popUp(program, ID_txtInline, 'G');
    EXPECT_TRUE(eventually([&] { return program.selection(ID_txtShowWrap) == std::pair(6, 10); }));
    EXPECT_TRUE(program.isShown(ID_lstInLineSrch));
    EXPECT_TRUE(hasFocus(program, ID_txtShowWrap));
    popUp(program, ID_txtInline, 'R');
    EXPECT_TRUE(eventually([&] { return !program.isShown(ID_lstInLineSrch); }));
    EXPECT_EQ(program.text(ID_txtInline), u"");

    ASSERT_TRUE(setClipboard(u"题"));
    program.select(ID_txtType, 0, -1);
    popUp(program, ID_txtType, 'P');
    EXPECT_TRUE(shows(program, ID_txtType, u"题"));
    popUp(program, ID_txtType, 'A');
    popUp(program, ID_txtType, 'T');
    EXPECT_TRUE(shows(program, ID_txtType, u""));
    popUp(program, ID_txtType, 'U');
    EXPECT_TRUE(shows(program, ID_txtType, u"题"));
    program.select(ID_txtType, 0, 0);
    program.type(ID_txtShowWrap, 'A', true);
    EXPECT_TRUE(eventually([&] { return program.selection(ID_txtShowWrap) == std::pair(0, 14); }));
    popUp(program, ID_txtShowWrap, 'C');
    EXPECT_TRUE(eventually([] { return clipboard() == u"中文😀 apple pie"; }));
    popUp(program, ID_txtType, 'P');
    EXPECT_TRUE(shows(program, ID_txtType, u"中文😀 apple pie题"));
    popUp(program, ID_txtType, 'R');
    EXPECT_TRUE(shows(program, ID_txtType, u""));
    EXPECT_EQ(program.text(ID_txtShowWrap), u"中文😀 apple pie");
}

INSTANTIATE_TEST_SUITE_P(InBothLanguages, TextMenuTest, languagesHere(), languageOf);

} // namespace
} // namespace vellums::tests
