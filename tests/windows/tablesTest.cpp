// Databases and tables in the real window: making, switching, renaming, dropping, moving records,
// compacting, in both languages.
#include "jet/database.h"
#include "tests/windows/builtProgram.h"
#include "tests/windows/driver.h"
#include "ui/ids.h"

#include <gtest/gtest.h>

namespace vellums::tests {
namespace {

struct TableTexts {
    bool chinese;
    std::u16string table;
    std::u16string created;
    std::u16string moved;
    std::u16string dropBegins;
    std::u16string notCompacted;
    std::u16string failed;
};

const TableTexts kTableTexts[] = {
    {false, u"Memo", u"New database file created: ", u"1 record(s) moved to Other",
        u"Are you sure to drop table ", u"Database file not compacted:", u"Failed to create new table: "},
    {true, u"笔记", u"数据库文件新建成功: ", u"1 条记录已移动至 Other", u"确实要从数据库 ",
        u"数据库文件整理失败:", u"新增数据表失败, "},
};

class TablesTest : public testing::TestWithParam<TableTexts> {
protected:
    TablesTest()
        : folder(builtProgram())
    {
        if (GetParam().chinese)
            folder.write(L"Vellums.ini", "[Options]\r\nuiChinese=1\r\n");
    }
    bool showsTable(const Program& program, const std::u16string& fileAndTable) const
    {
        return eventually([&] { return program.caption() == u"Vellums - <" + fileAndTable + u">"; });
    }
    void paste(const Program& program, const std::u16string& text) const
    {
        const int before = program.count(ID_lstHeads);
        ASSERT_TRUE(setClipboard(text));
        program.command(ID_mnu_top + 0);
        ASSERT_TRUE(eventually([&] { return program.count(ID_lstHeads) == before + 1; }));
    }
    void expectSound(const wchar_t* file) const
    {
        for (const std::u16string& fault : jet::Database(narrow(folder.file(file))).check())
            ADD_FAILURE() << std::string(fault.begin(), fault.end());
    }

    ProgramFolder folder;
};

TEST_P(TablesTest, TablesAreMadeFilledRenamedAndDropped)
{
    const TableTexts& texts = GetParam();
    const std::u16string file = u"Vellums.mdb - ";
    {
        Program program(folder.executable());
        ASSERT_TRUE(showsTable(program, file + texts.table));
        paste(program, u"first note\r\nwith a body");
        paste(program, u"second note");

        program.command(ID_mnu_dbops + 0);
        EXPECT_EQ(program.answerName(u"Other").size(), 10u); // the time, mmddhhmmss
        program.command(ID_mnu_dbops + 0);                   // of that name there is one
        program.answerName(u"other");
        EXPECT_TRUE(program.statusBegins(texts.failed));
        program.command(ID_mnu_dbops + 0); // cancelled
        program.answerName(u"");
        EXPECT_EQ(program.count(ID_lstHeads), 2);

        // Stick the older one to the top, then move it.
        program.selectEntry(ID_lstHeads, 1);
        ASSERT_TRUE(eventually([&] { return program.text(ID_txtType) == u"first note"; }));
        program.command(ID_mnu_setsticky);
        EXPECT_TRUE(eventually([&] { return program.entryOf(ID_lstHeads, u"first note") == 0; }));
        program.command(ID_mnu_nosticky);
        EXPECT_TRUE(eventually([&] { return program.entryOf(ID_lstHeads, u"first note") == 1; }));
        program.command(ID_mnu_setsticky);
        EXPECT_TRUE(eventually([&] { return program.entryOf(ID_lstHeads, u"first note") == 0; }));
        PostMessageW(program.window(), WM_CONTEXTMENU, reinterpret_cast<WPARAM>(program.control(ID_lstHeads)),
            static_cast<LPARAM>(-1));
        EXPECT_TRUE(eventually([&] { return program.menuIsOpen(); })); // it fills "Move to"
        PostMessageW(program.window(), WM_CANCELMODE, 0, 0);
        EXPECT_TRUE(eventually([&] { return !program.menuIsOpen(); }));
        program.command(ID_mnu_avtables + 0);
        EXPECT_TRUE(program.showsStatus(texts.moved));
        EXPECT_EQ(program.count(ID_lstHeads), 1);

        // One entry is the open table, which does nothing; the other is asked about unsaved text.
        program.setText(ID_txtShowWrap, u"changed");
        program.command(ID_mnu_availdb + 0);
        program.command(ID_mnu_availdb + 1);
        program.waitForBox(); // unsaved changes
        program.answer(IDNO);
        EXPECT_TRUE(showsTable(program, file + u"Other"));
        EXPECT_EQ(program.entryOf(ID_lstHeads, u"first note"), 0);
        EXPECT_TRUE(eventually([&] { return program.text(ID_txtShowWrap) == u"first note\r\nwith a body"; }));

        program.command(ID_mnu_dbops + 1);
        program.answerName(u"Renamed");
        EXPECT_TRUE(showsTable(program, file + u"Renamed"));
        EXPECT_EQ(program.count(ID_lstHeads), 1);
        program.close();
    }
    {
        Program program(folder.executable()); // what was chosen is remembered
        ASSERT_TRUE(showsTable(program, file + u"Renamed"));
        program.command(ID_mnu_dbops + 2);
        EXPECT_TRUE(program.waitForBox().starts_with(texts.dropBegins));
        program.answer(IDNO);
        EXPECT_EQ(program.caption(), u"Vellums - <" + file + u"Renamed>");
        program.command(ID_mnu_dbops + 2);
        program.waitForBox();
        program.answer(IDYES);
        EXPECT_TRUE(showsTable(program, file + texts.table));
        EXPECT_EQ(program.entryOf(ID_lstHeads, u"second note"), 0);
        program.close();
    }
    expectSound(L"Vellums.mdb");
}

TEST_P(TablesTest, NewDatabasesAreMadeAndCompactingTellsHowItEnded)
{
    const TableTexts& texts = GetParam();
    Program program(folder.executable());
    program.command(ID_mnu_dbcreate);
    program.answerName(u"a & b (c)");
    EXPECT_TRUE(program.showsStatus(texts.created + u"a & b (c).mdb"));
    ASSERT_TRUE(eventually([&] { return program.caption().starts_with(u"Vellums - <a & b (c).mdb - "); }));
    paste(program, u"kept in the new file");
    program.command(ID_mnu_dbcreate); // a name that no file may have
    program.answerName(u"what?|<>");
    EXPECT_TRUE(program.statusBegins(u"dbCreateNew: "));
    EXPECT_EQ(program.entryOf(ID_lstHeads, u"kept in the new file"), 0);

    program.command(ID_mnu_shrinkdata);
    EXPECT_TRUE(program.waitForBox().starts_with(texts.notCompacted));
    program.answer(IDOK);
    EXPECT_EQ(program.entryOf(ID_lstHeads, u"kept in the new file"), 0);
    program.close();
    expectSound(L"a & b (c).mdb");
}

INSTANTIATE_TEST_SUITE_P(InBothLanguages, TablesTest, testing::ValuesIn(kTableTexts),
    [](const auto& test) { return test.param.chinese ? "Chinese" : "English"; });

// A table that another program drops, a database that vanishes: one line, and the window goes on.
TEST(VanishingTest, WhatVanishesIsReportedAndTheTextStays)
{
    const ProgramFolder folder(builtProgram());
    Program program(folder.executable());
    ASSERT_NE(program.window(), nullptr);
    jet::Database(narrow(folder.file(L"Vellums.mdb"))).run(u"DROP TABLE [Memo]");
    program.setText(ID_txtShowWrap, u"typed meanwhile");
    program.command(ID_mnu_sqlman + 3);
    EXPECT_TRUE(program.statusBegins(u"addRecord - "));
    EXPECT_EQ(program.text(ID_txtShowWrap), u"typed meanwhile");
    DeleteFileW(folder.file(L"Vellums.mdb").c_str());
    program.command(ID_mnu_sqlman + 3);
    EXPECT_TRUE(program.statusBegins(u"addRecord - "));
    EXPECT_EQ(program.text(ID_txtShowWrap), u"typed meanwhile");
    program.command(ID_mnu_dbcreate); // and a new one takes what was typed
    program.answerName(u"rescue");
    program.waitForBox();
    program.answer(IDYES);
    EXPECT_TRUE(program.statusBegins(u"addRecord - "));
    EXPECT_EQ(program.text(ID_txtShowWrap), u"typed meanwhile");
    program.kill();
}

} // namespace
} // namespace vellums::tests
