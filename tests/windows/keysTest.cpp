// Every command that has a key, by that key; and those that have none, by their menu entry.
#include "tests/windows/programTest.h"
#include "ui/ids.h"

namespace vellums::tests {
namespace {

class KeysTest : public ProgramTest {
protected:
    static bool counts(const Program& program, int records)
    {
        return eventually([&] { return program.count(ID_lstHeads) == records; });
    }
};

TEST_P(KeysTest, RecordsAreAddedCopiedSavedAndDeleted)
{
    Program program(folder.executable());
    ASSERT_TRUE(setClipboard(u"from the clipboard\r\n中文"));
    program.type(ID_txtShowWrap, VK_F5);
    EXPECT_TRUE(counts(program, 1));
    program.type(ID_txtShowWrap, 'N', true);
    EXPECT_TRUE(counts(program, 2));
    program.type(ID_lstHeads, 'M', true);
    EXPECT_TRUE(counts(program, 3));

    program.setText(ID_txtType, u"typed title");
    program.type(ID_txtType, 'S', true);
    EXPECT_TRUE(eventually([&] { return program.entryOf(ID_lstHeads, u"typed title") >= 0; }));

    program.type(ID_txtShowWrap, 'D', true);
    EXPECT_EQ(program.waitForBox(),
        say(u"Are you sure to delete selected records?    ", u"确定删除选定的记录?   "));
    program.answer(IDNO);
    EXPECT_EQ(program.count(ID_lstHeads), 3);
    program.command(ID_mnu_ezdel);
    program.command(ID_mnu_lpu_delete);
    EXPECT_TRUE(counts(program, 2)); // nobody was asked
    EXPECT_FALSE(program.boxIsOpen());
    program.command(ID_mnu_ezdel);

    program.setText(ID_txtKey, u"nothing has these words");
    program.type(ID_txtShowWrap, 'R', true);
    EXPECT_TRUE(counts(program, 0));
    program.type(ID_txtKey, VK_ESCAPE);
    EXPECT_TRUE(counts(program, 2));
    program.command(ID_mnu_remdups);
    EXPECT_TRUE(counts(program, 1));

    program.command(ID_mnu_quit);
    EXPECT_TRUE(eventually([&] { return !program.isRunning(); }));
}

TEST_P(KeysTest, FormsOpenAndCancelChangesNothing)
{
    Program program(folder.executable());
    const std::u16string caption = program.caption();
    program.type(ID_txtShowWrap, VK_INSERT, true);
    EXPECT_FALSE(program.answerName(u"").empty());
    program.type(ID_txtShowWrap, 'O', true); // the system's dialog for folders
    EXPECT_TRUE(eventually([&] { return program.boxIsOpen(); }));
    EXPECT_TRUE(program.answer(IDCANCEL));
    EXPECT_EQ(program.caption(), caption);
    EXPECT_EQ(program.count(ID_lstHeads), 0);
    EXPECT_EQ(program.close(), 0u);
}

TEST_P(KeysTest, TheWindowSpeaksItsLanguage)
{
    Program program(folder.executable());
    EXPECT_EQ(program.text(ID_ucStatusRight),
        say(u"Type or paste a text, then press Ctrl+S to keep it.",
            u"请输入或粘贴文本, 然后按 Ctrl+S 保存。"));
    EXPECT_EQ(program.text(ID_lblRemarks + 1), say(u"Find:", u"查找:"));
    program.type(ID_txtShowWrap, VK_F9);
    EXPECT_EQ(program.waitForBox(), say(u"Load default display settings?   ", u"恢复默认显示设置?   "));
    program.answer(IDNO);
    program.ask(ID_chkSort, BM_CLICK);
    EXPECT_TRUE(eventually([&] { return program.ask(ID_chkSort, BM_GETCHECK) == BST_CHECKED; }));
    EXPECT_EQ(program.close(), 0u);
}

TEST_P(KeysTest, TabAndEscLeaveTheRecordText)
{
    Program program(folder.executable());
    const auto focuses = [&](int id) { return eventually([&] { return program.focused() == id; }); };
    program.setText(ID_txtShowWrap, u"text");
    program.type(ID_txtShowWrap, VK_TAB);
    EXPECT_TRUE(eventually([&] { return program.focused() != ID_txtShowWrap; }));
    Program::strike(VK_TAB, false, true);
    EXPECT_TRUE(focuses(ID_txtShowWrap));
    EXPECT_EQ(program.text(ID_txtShowWrap), u"text");
    program.type(ID_txtShowWrap, VK_HOME, true);
    program.type(ID_txtShowWrap, VK_TAB, true);
    EXPECT_TRUE(eventually([&] { return program.text(ID_txtShowWrap) == u"\ttext"; }));
    for (const int id : {ID_txtShowWrap, ID_txtType}) {
        program.type(id, VK_ESCAPE);
        EXPECT_TRUE(focuses(ID_txtKey));
        EXPECT_FALSE(program.boxIsOpen()) << "nothing is closed";
    }
    EXPECT_EQ(program.text(ID_txtShowWrap), u"\ttext");
    PostMessageW(program.window(), WM_CLOSE, 0, 0);
    program.waitForBox();
    program.answer(IDNO);
    EXPECT_EQ(program.close(), 0u);
}

INSTANTIATE_TEST_SUITE_P(InBothLanguages, KeysTest, languagesHere(), languageOf);

} // namespace
} // namespace vellums::tests
