// The real program, driven as a user does, in both languages.
#include "jet/database.h"
#include "tests/windows/builtProgram.h"
#include "tests/windows/driver.h"
#include "ui/ids.h"

#include <gtest/gtest.h>

namespace vellums::tests {
namespace {

struct Texts {
    bool chinese;
    std::u16string table;
    std::u16string saveQuestion;
    std::u16string deleteQuestion;
    std::u16string found1; // one record
    std::u16string found0;
    std::u16string pasted;
    std::u16string empty;
    std::u16string deleted2;
    std::u16string searchLabel;
};

const Texts kEnglish = {false, u"Memo", u"Save changes to the current snippet?",
    u"Are you sure to delete selected records?    ", u"1 record found in Vellums.mdb - Memo.",
    u"0 record found in Vellums.mdb - Memo.", u"1 record created from the Clibboard.", u"1 record created.",
    u"2 record(s) deleted.", u"Search:"};
const Texts kChinese = {true, u"笔记", u"是否保存当前记录所作修改?", u"确定删除选定的记录?   ",
    u"搜索到 1 条记录 (Vellums.mdb - 笔记)", u"搜索到 0 条记录 (Vellums.mdb - 笔记)",
    u"已从剪粘板新增 1 条记录", u"已新建 1 条记录", u"已删除 2 条记录", u"搜索:"};

class NotebookTest : public testing::TestWithParam<Texts> {
protected:
    NotebookTest()
        : folder(builtProgram())
    {
        if (GetParam().chinese)
            folder.write(L"Vellums.ini", "[Options]\r\nuiChinese=1\r\n");
    }
    std::u16string database() const { return narrow(folder.file(L"Vellums.mdb")); }
    void expectSound() const
    {
        for (const std::u16string& fault : jet::Database(database()).check())
            ADD_FAILURE() << std::string(fault.begin(), fault.end());
    }
    // The rows of the table as the engine reads them.
    std::vector<std::vector<jet::Value>> rows(const std::u16string& columns) const
    {
        return jet::Database(database())
            .run(u"SELECT " + columns + u" FROM [" + GetParam().table + u"] ORDER BY ID")
            .rows;
    }
    void paste(const Program& program, const std::u16string& text) const
    {
        const int before = program.count(ID_lstHeads);
        ASSERT_TRUE(setClipboard(text));
        program.command(ID_mnu_top + 0);
        ASSERT_TRUE(eventually([&] { return program.count(ID_lstHeads) == before + 1; }));
    }
    void search(const Program& program, const std::u16string& words) const
    {
        program.setText(ID_txtKey, words);
        program.press(ID_txtKey, VK_RETURN);
    }

    ProgramFolder folder;
};

std::u16string textIn(const jet::Value& value)
{
    const auto* text = std::get_if<std::u16string>(&value);
    return text == nullptr ? u"(no text)" : *text;
}

// Start in an empty folder, add, edit, save, search, delete, restart: everything is found again.
TEST_P(NotebookTest, KeepsWhatIsTypedFromTheFirstStartOn)
{
    const Texts& texts = GetParam();
    const std::u16string body = u"It's 100% 中文 [x] 😀\r\nsecond line é_ß";
    {
        Program program(folder.executable());
        ASSERT_NE(program.window(), nullptr);
        EXPECT_EQ(program.caption(), u"Vellums - <Vellums.mdb - " + texts.table + u">");
        EXPECT_TRUE(program.showsStatus(texts.found0));
        EXPECT_EQ(program.text(ID_lblRemarks), texts.searchLabel);

        paste(program, body);
        EXPECT_TRUE(program.showsStatus(texts.pasted));
        EXPECT_EQ(program.text(ID_txtShowWrap), body);
        EXPECT_EQ(program.text(ID_txtType), u"It's 100% 中文 [x] 😀");

        program.setText(ID_txtType, u"A title's end");
        program.setText(ID_txtShowWrap, body + u"\r\nthird line");
        program.command(ID_mnu_sqlman + 3);
        EXPECT_TRUE(eventually([&] { return program.entryOf(ID_lstHeads, u"A title's end") == 0; }));

        emptyClipboard();
        program.command(ID_mnu_sqlman + 0);
        EXPECT_TRUE(program.showsStatus(texts.empty));
        EXPECT_EQ(program.text(ID_txtShowWrap), u"");

        search(program, u"third");
        EXPECT_TRUE(program.showsStatus(texts.found1));
        EXPECT_EQ(program.text(ID_txtType), u"A title's end");
        search(program, u"title's");
        EXPECT_TRUE(program.showsStatus(texts.found1));
        search(program, u"nowhere");
        EXPECT_TRUE(program.showsStatus(texts.found0));
        EXPECT_EQ(program.text(ID_txtShowWrap), u"");
        EXPECT_EQ(program.close(), 0u);
    }
    {
        Program program(folder.executable());
        search(program, u"中文 third");
        EXPECT_TRUE(program.showsStatus(texts.found1));
        EXPECT_EQ(program.text(ID_txtShowWrap), body + u"\r\nthird line");

        program.press(ID_txtKey, VK_ESCAPE);
        EXPECT_TRUE(eventually([&] { return program.count(ID_lstHeads) == 2; }));
        program.selectEntry(ID_lstHeads, 0);
        program.addToSelection(ID_lstHeads, 1);
        program.command(ID_mnu_sqlman + 2);
        EXPECT_EQ(program.waitForBox(), texts.deleteQuestion);
        program.answer(IDNO);
        EXPECT_EQ(program.count(ID_lstHeads), 2);
        program.press(ID_lstHeads, VK_DELETE);
        EXPECT_EQ(program.waitForBox(), texts.deleteQuestion);
        program.answer(IDYES);
        EXPECT_TRUE(program.showsStatus(texts.deleted2));
        EXPECT_EQ(program.count(ID_lstHeads), 0);
        EXPECT_EQ(program.close(), 0u);
    }
    EXPECT_TRUE(rows(u"ID").empty());
    expectSound();
}

// Every way to leave a changed record asks first, and each answer does what it says.
TEST_P(NotebookTest, AsksBeforeAChangedTextIsReplaced)
{
    const Texts& texts = GetParam();
    Program program(folder.executable());
    paste(program, u"first\r\n1");
    paste(program, u"second\r\n2"); // shown, entry 0
    const auto change = [&](const std::u16string& text) { program.setText(ID_txtShowWrap, text); };

    change(u"typed");
    program.selectEntry(ID_lstHeads, 1);
    EXPECT_EQ(program.waitForBox(), texts.saveQuestion);
    program.answer(IDCANCEL);
    EXPECT_EQ(program.text(ID_txtShowWrap), u"typed");
    EXPECT_EQ(textIn(rows(u"VLTEXT")[1][0]), u"second\r\n2");

    program.selectEntry(ID_lstHeads, 1);
    program.waitForBox();
    program.answer(IDYES);
    EXPECT_TRUE(eventually([&] { return program.text(ID_txtShowWrap) == u"first\r\n1"; }));
    EXPECT_EQ(textIn(rows(u"VLTEXT")[1][0]), u"typed");

    change(u"dropped");
    search(program, u"typed");
    EXPECT_EQ(program.waitForBox(), texts.saveQuestion);
    program.answer(IDNO);
    EXPECT_TRUE(program.showsStatus(texts.found1));
    EXPECT_EQ(textIn(rows(u"VLTEXT")[0][0]), u"first\r\n1");

    change(u"kept at the end");
    PostMessageW(program.window(), WM_CLOSE, 0, 0);
    EXPECT_EQ(program.waitForBox(), texts.saveQuestion);
    program.answer(IDCANCEL);
    EXPECT_TRUE(program.isRunning());
    EXPECT_EQ(program.text(ID_txtShowWrap), u"kept at the end");
    PostMessageW(program.window(), WM_CLOSE, 0, 0);
    program.waitForBox();
    program.answer(IDYES);
    EXPECT_TRUE(eventually([&] { return !program.isRunning(); }));
    EXPECT_EQ(textIn(rows(u"VLTEXT")[1][0]), u"kept at the end");
    expectSound();
}

// Paths on the command line, a folder among them; what is unknown, missing or too large is passed over.
TEST_P(NotebookTest, ImportsWhatTheCommandLineNames)
{
    CreateDirectoryW(folder.file(L"my notes").c_str(), nullptr);
    folder.write(L"my notes\\it's.txt", "plain text");
    folder.write(L"my notes\\same.TXT", "plain text");
    folder.write(L"my notes\\utf8.txt",
        "\xEF\xBB\xBF"
        "caf\xC3\xA9");
    folder.write(L"my notes\\README", "no extension");
    folder.write(L"my notes\\large.txt", std::string(524289, 'x'));
    folder.write(L"single.ini", "[section]");
    Program program(folder.executable(),
        L"/import \"" + folder.file(L"my notes") + L"\" " + folder.file(L"single.ini") + L" C:\\missing.txt");
    ASSERT_TRUE(eventually([&] { return program.count(ID_lstHeads) == 3; }));
    EXPECT_GE(program.entryOf(ID_lstHeads, u"single"), 0);
    EXPECT_EQ(program.close(), 0u);
    const auto links = rows(u"VLHEAD, VLLINK");
    ASSERT_EQ(links.size(), 3u);
    for (const auto& row : links)
        if (textIn(row[0]) == u"single") {
            EXPECT_EQ(textIn(row[1]), narrow(folder.file(L"single.ini")));
        }
    EXPECT_NE(GetFileAttributesW(folder.file(L"Vellums.log").c_str()), INVALID_FILE_ATTRIBUTES);
    expectSound();
}

INSTANTIATE_TEST_SUITE_P(InBothLanguages, NotebookTest, testing::Values(kEnglish, kChinese),
    [](const auto& test) { return test.param.chinese ? "Chinese" : "English"; });

class StrangeFolderTest : public testing::Test {
protected:
    StrangeFolderTest()
        : folder(builtProgram())
    {
    }
    std::string contentOf(const std::wstring& name) const
    {
        std::string bytes(100000, '\0');
        const HANDLE file = CreateFileW(
            folder.file(name).c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr);
        DWORD read = 0;
        ReadFile(file, bytes.data(), static_cast<DWORD>(bytes.size()), &read, nullptr);
        CloseHandle(file);
        bytes.resize(read);
        return bytes;
    }

    ProgramFolder folder;
};

// A database that cannot be read: one line, nothing written, and what is typed stays in the box.
TEST_F(StrangeFolderTest, DamagedDatabasesAreReportedAndLeftAsTheyAre)
{
    const std::string header = std::string("\0\1\0\0Standard Jet DB\0\1", 21);
    struct Case {
        const char* why;
        std::string bytes;
    };
    const Case cases[] = {
        {"foreign", "This is a text, not a database. " + std::string(5000, 'x')},
        {"damaged", header + std::string(40000, '\x55')},
        {"truncated", header},
        {"empty", ""},
    };
    folder.write(L"Vellums.ini",
        "[Options]\r\ndbConn=Provider=Microsoft.ACE.OLEDB.12.0; Data Source=notes.mdb\r\ndbTable=Memo\r\n");
    for (const Case& c : cases) {
        folder.write(L"notes.mdb", c.bytes);
        Program program(folder.executable());
        EXPECT_TRUE(program.statusBegins(u"dbQuery: ")) << c.why;
        program.setText(ID_txtShowWrap, u"typed all the same");
        program.command(ID_mnu_sqlman + 3);
        EXPECT_TRUE(program.statusBegins(u"addRecord - ")) << c.why;
        EXPECT_EQ(program.text(ID_txtShowWrap), u"typed all the same") << c.why;
        program.kill();
        EXPECT_EQ(contentOf(L"notes.mdb"), c.bytes) << c.why;
    }
}

TEST_F(StrangeFolderTest, ASettingsFileOfGarbageGivesDefaults)
{
    std::string garbage = "[Options\r\ndbConn\0===[[\xFF\xFE\r\n[Options]\r\nuiChinese=yes\r\ndbTable";
    garbage += std::string(3000, '\x80') + "\r\n=\r\nobTitle=2\r\n";
    folder.write(L"Vellums.ini", garbage);
    Program program(folder.executable());
    ASSERT_NE(program.window(), nullptr);
    EXPECT_EQ(program.caption(), u"Vellums - <Vellums.mdb - Memo>");
    EXPECT_EQ(program.close(), 0u);
}

TEST_F(StrangeFolderTest, AReadOnlyDatabaseKeepsTheTextInTheBox)
{
    {
        Program program(folder.executable());
        program.close();
    }
    SetFileAttributesW(folder.file(L"Vellums.mdb").c_str(), FILE_ATTRIBUTE_READONLY);
    Program program(folder.executable());
    program.setText(ID_txtShowWrap, u"not to be lost");
    program.command(ID_mnu_sqlman + 3);
    EXPECT_TRUE(program.statusBegins(u"addRecord - Operation must use an updateable query."));
    EXPECT_EQ(program.text(ID_txtShowWrap), u"not to be lost");
    program.kill();
    SetFileAttributesW(folder.file(L"Vellums.mdb").c_str(), FILE_ATTRIBUTE_NORMAL);
}

// A title that the column does not take: the provider's sentence, and nothing is lost.
TEST_F(StrangeFolderTest, ATitleTooLongIsRefusedAndStays)
{
    Program program(folder.executable());
    const std::u16string title(256, u'標');
    program.setText(ID_txtType, title);
    program.setText(ID_txtShowWrap, u"body");
    program.command(ID_mnu_top + 3);
    EXPECT_TRUE(program.statusBegins(u"addRecord - The field is too small"));
    EXPECT_EQ(program.text(ID_txtType), title);
    program.setText(ID_txtType, std::u16string(255, u'標'));
    program.command(ID_mnu_top + 3);
    EXPECT_TRUE(program.showsStatus(u"1 record added."));
    EXPECT_EQ(program.close(), 0u);
}

// Killed in the middle of an import: the file opens, is sound, and holds what was there before.
TEST_F(StrangeFolderTest, AKilledImportLeavesASoundFile)
{
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
