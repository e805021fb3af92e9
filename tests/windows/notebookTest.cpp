// The real program with its database, driven as a user does, in both languages.
#include "jet/database.h"
#include "tests/windows/programTest.h"
#include "tests/windows/windowProbe.h"
#include "ui/ids.h"

namespace vellums::tests {
namespace {

class NotebookTest : public ProgramTest {
protected:
    void expectSound(const wchar_t* file = L"Vellums.mdb") const
    {
        for (const std::u16string& fault : jet::Database(narrow(folder.file(file))).check())
            ADD_FAILURE() << std::string(fault.begin(), fault.end());
    }
    static void search(const Program& program, const std::u16string& words)
    {
        program.setText(ID_txtKey, words);
        program.press(ID_txtKey, VK_RETURN);
    }
    static bool showsTable(const Program& program, const std::u16string& table)
    {
        return eventually([&] { return program.caption() == u"Vellums - <Vellums.mdb - " + table + u">"; });
    }

    const std::u16string table = say(u"Memo", u"笔记");
};

INSTANTIATE_TEST_SUITE_P(InBothLanguages, NotebookTest, languagesHere(), languageOf);

// Start in an empty folder, add, edit, save, search, delete, restart: everything is found again.
TEST_P(NotebookTest, KeepsWhatIsTypedFromTheFirstStartOn)
{
    const std::u16string body = u"It's 100% 中文 [x] 😀\r\nsecond line é_ß";
    const std::u16string found =
        say(u"1 record found in Vellums.mdb - Memo.", u"搜索到 1 条记录 (Vellums.mdb - 笔记)");
    {
        Program program(folder.executable());
        EXPECT_TRUE(showsTable(program, table));
        EXPECT_TRUE(program.showsStatus(
            say(u"0 record found in Vellums.mdb - Memo.", u"搜索到 0 条记录 (Vellums.mdb - 笔记)")));
        EXPECT_EQ(program.text(ID_lblRemarks), say(u"Search:", u"搜索:"));

        EXPECT_TRUE(program.paste(body));
        EXPECT_TRUE(
            program.showsStatus(say(u"1 record created from the Clibboard.", u"已从剪粘板新增 1 条记录")));
        EXPECT_EQ(program.text(ID_txtShowWrap), body);
        EXPECT_EQ(program.text(ID_txtType), u"It's 100% 中文 [x] 😀");

        program.setText(ID_txtType, u"A title's end");
        program.setText(ID_txtShowWrap, body + u"\r\nthird line");
        program.command(ID_mnu_sqlman_Save);
        EXPECT_TRUE(eventually([&] { return program.entryOf(ID_lstHeads, u"A title's end") == 0; }));
        EXPECT_TRUE(program.paste(u""));
        EXPECT_EQ(program.text(ID_txtShowWrap), u"");
        EXPECT_EQ(program.close(), 0u);
    }
    {
        Program program(folder.executable());
        search(program, u"中文 third");
        EXPECT_TRUE(program.showsStatus(found));
        EXPECT_EQ(program.text(ID_txtShowWrap), body + u"\r\nthird line");

        program.press(ID_txtKey, VK_ESCAPE);
        EXPECT_TRUE(eventually([&] { return program.count(ID_lstHeads) == 2; }));
        program.selectEntry(ID_lstHeads, 0);
        program.addToSelection(ID_lstHeads, 1);
        program.press(ID_lstHeads, VK_DELETE);
        program.waitForBox();
        program.answer(IDYES);
        EXPECT_TRUE(program.showsStatus(say(u"2 record(s) deleted.", u"已删除 2 条记录")));
        EXPECT_EQ(program.close(), 0u);
    }
    EXPECT_TRUE(recordsIn(narrow(folder.file(L"Vellums.mdb"))).empty());
    expectSound();
}

TEST_P(NotebookTest, TablesAreMadeFilledRenamedAndDropped)
{
    {
        Program program(folder.executable());
        EXPECT_TRUE(program.paste(u"first note\r\nwith a body"));
        EXPECT_TRUE(program.paste(u"second note"));
        program.command(ID_mnu_dbops_Create);
        EXPECT_EQ(program.answerName(u"Other").size(), 10u); // the time, mmddhhmmss

        // Stick the older one to the top, then move it.
        program.selectEntry(ID_lstHeads, 1);
        ASSERT_TRUE(eventually([&] { return program.text(ID_txtType) == u"first note"; }));
        for (const int id : {ID_mnu_setsticky, ID_mnu_nosticky, ID_mnu_setsticky}) {
            program.command(id);
            EXPECT_TRUE(eventually([&] {
                return program.entryOf(ID_lstHeads, u"first note") == (id == ID_mnu_nosticky ? 1 : 0);
            }));
        }
        PostMessageW(program.window(), WM_CONTEXTMENU, reinterpret_cast<WPARAM>(program.control(ID_lstHeads)),
            static_cast<LPARAM>(-1));
        EXPECT_TRUE(opensMenu(program)); // it fills "Move to"
        PostMessageW(program.window(), WM_CANCELMODE, 0, 0);
        EXPECT_TRUE(eventually([&] { return !program.menuIsOpen(); }));
        program.command(ID_mnu_avtables + 0);
        EXPECT_TRUE(program.showsStatus(say(u"1 record(s) moved to Other", u"1 条记录已移动至 Other")));
        EXPECT_EQ(program.count(ID_lstHeads), 1);

        program.command(ID_mnu_availdb + 1);
        EXPECT_TRUE(showsTable(program, u"Other"));
        EXPECT_TRUE(eventually([&] { return program.text(ID_txtShowWrap) == u"first note\r\nwith a body"; }));
        program.command(ID_mnu_dbops_Rename);
        program.answerName(u"Renamed");
        EXPECT_TRUE(showsTable(program, u"Renamed"));
        EXPECT_EQ(program.close(), 0u);
    }
    Program program(folder.executable()); // what was chosen is remembered
    ASSERT_TRUE(showsTable(program, u"Renamed"));
    program.command(ID_mnu_dbops_Drop);
    EXPECT_TRUE(program.waitForBox().starts_with(say(u"Are you sure to drop table ", u"确实要从数据库 ")));
    program.answer(IDYES);
    EXPECT_TRUE(showsTable(program, table));
    EXPECT_EQ(program.entryOf(ID_lstHeads, u"second note"), 0);
    EXPECT_EQ(program.close(), 0u);
    expectSound();
}

TEST_P(NotebookTest, NewDatabasesAreMadeAndCompacted)
{
    Program program(folder.executable());
    program.command(ID_mnu_dbcreate);
    program.answerName(u"a & b (c)");
    EXPECT_TRUE(
        program.showsStatus(say(u"New database file created: ", u"数据库文件新建成功: ") + u"a & b (c).mdb"));
    EXPECT_TRUE(program.caption().starts_with(u"Vellums - <a & b (c).mdb - "));
    EXPECT_TRUE(program.paste(u"kept in the new file"));
    program.command(ID_mnu_shrinkdata);
    EXPECT_TRUE(program.waitForBox().starts_with(say(u"Database file compacted:", u"数据库文件整理完毕:")));
    program.answer(IDOK);
    EXPECT_EQ(program.entryOf(ID_lstHeads, u"kept in the new file"), 0);
    EXPECT_EQ(program.close(), 0u);
    expectSound(L"a & b (c).mdb");
}

// Killed in the middle of an import: the file opens, is sound, and holds what was there before.
TEST(StrangeFolderTest, AKilledImportLeavesASoundFile)
{
    const ProgramFolder folder;
    CreateDirectoryW(folder.file(L"many").c_str(), nullptr);
    for (int i = 0; i < 400; ++i)
        folder.write(
            L"many\\" + std::to_wstring(i) + L".txt", "note " + std::to_string(i) + std::string(4000, 'n'));
    const std::wstring database = folder.file(L"Vellums.mdb");
    for (const int delayMs : {0, 60, 250, 700}) {
        {
            Program program(folder.executable(), L"\"" + folder.file(L"many") + L"\"");
            Sleep(static_cast<DWORD>(delayMs)); // any moment will do
            program.kill();
        }
        jet::Database reopened(narrow(database));
        EXPECT_TRUE(reopened.check().empty()) << delayMs;
        EXPECT_NO_THROW(reopened.run(u"SELECT COUNT(*) FROM [Memo]")) << delayMs;
    }
}

} // namespace
} // namespace vellums::tests
