// What comes while a question stands or an import runs: nothing typed is lost, no command begins.
#include "jet/database.h"
#include "tests/windows/programTest.h"
#include "tests/windows/windowProbe.h"
#include "ui/ids.h"
#include "ui/main/menuTable.h"

#include <algorithm>
#include <thread>

namespace vellums::tests {
namespace {

using Rows = std::vector<std::u16string>;

class ReentryTest : public ProgramTest {
protected:
    std::u16string saveQuestion() const
    {
        return say(u"Save changes to the current snippet?", u"是否保存当前记录所作修改?");
    }
    // Of every record, in the order of the IDs.
    Rows columnOf(std::u16string StoredRecord::*column) const
    {
        Rows texts;
        for (const StoredRecord& record : recordsIn(narrow(folder.file(L"Vellums.mdb"))))
            texts.push_back(record.*column);
        return texts;
    }
    Rows bodies() const { return columnOf(&StoredRecord::text); }
    // A folder with so many texts that importing them takes a while.
    std::wstring manyTexts(int count) const
    {
        const std::wstring texts = folder.file(L"texts");
        CreateDirectoryW(texts.c_str(), nullptr);
        for (int i = 0; i < count; ++i)
            folder.write(L"texts\\" + std::to_wstring(i) + L".txt", "text number " + std::to_string(i));
        return texts;
    }
    static bool isLocked(const Program& program)
    {
        return (GetWindowLongW(program.control(ID_txtShowWrap), GWL_STYLE) & ES_READONLY) != 0;
    }
    void pasteThree(const Program& program) const
    {
        for (const char16_t* const text : {u"one", u"two", u"three"})
            ASSERT_TRUE(program.paste(text));
    }
};

INSTANTIATE_TEST_SUITE_P(Languages, ReentryTest, testing::Values(GetACP() == 936), languageOf);

TEST_P(ReentryTest, TextThatComesDuringAnImportStays)
{
    const std::wstring texts = manyTexts(3000);
    Program program(folder.executable(), L"\"" + texts + L"\"");
    ASSERT_TRUE(eventually([&] { return isLocked(program); }));
    program.ask(ID_txtShowWrap, WM_CHAR, 'x'); // a locked box takes no letter
    EXPECT_EQ(program.text(ID_txtShowWrap), u"");
    program.setText(ID_txtShowWrap, u"came from outside"); // but a program may set its text
    for (const int id : {ID_mnu_top_PasteNew, ID_mnu_sqlman_Delete, ID_mnu_sqlman_Refresh, ID_mnu_remdups,
             ID_mnu_dbcreate, ID_mnu_dbops_Drop, ID_mnu_txtops_Clear})
        program.command(id);
    program.press(ID_txtShowWrap, 'Q');
    program.type(ID_txtShowWrap, VK_F4); // a real key
    ASSERT_TRUE(eventually([&] { return !isLocked(program); }, 60000));
    Sleep(300);
    EXPECT_TRUE(program.isShown(ID_lstHeads));
    EXPECT_EQ(program.questionsOpen(), 0) << "what came meanwhile does not come out later";
    EXPECT_EQ(program.text(ID_txtShowWrap), u"came from outside");
    EXPECT_EQ(program.count(ID_lstHeads), 3000);
    EXPECT_EQ(bodies().size(), 3000u);
    PostMessageW(program.window(), WM_CLOSE, 0, 0);
    EXPECT_EQ(program.waitForBox(), saveQuestion());
    EXPECT_TRUE(program.answer(IDYES));
    EXPECT_TRUE(eventually([&] { return !program.isRunning(); }));
    EXPECT_EQ(bodies().back(), u"came from outside");
}

TEST_P(ReentryTest, AnImportIsStoppedByEscAndByAClose)
{
    const std::wstring texts = manyTexts(3000);
    std::size_t taken = 0;
    {
        Program program(folder.executable(), L"\"" + texts + L"\"");
        ASSERT_TRUE(eventually([&] { return isLocked(program); }));
        program.press(ID_txtKey, VK_ESCAPE); // at once: a test that is kept waiting here comes too late
        ASSERT_TRUE(eventually([&] { return !isLocked(program); }, 3000)) << "Esc stops it soon";
        taken = bodies().size();
        EXPECT_LT(taken, 3000u);
        EXPECT_EQ(program.count(ID_lstHeads), static_cast<int>(taken)) << "what was taken is listed";
        EXPECT_EQ(program.close(), 0u);
    }
    Program program(folder.executable(), L"\"" + texts + L"\"");
    ASSERT_TRUE(eventually([&] { return isLocked(program); }));
    program.setText(ID_txtShowWrap, u"unsaved");
    PostMessageW(program.window(), WM_CLOSE, 0, 0);
    PostMessageW(program.window(), WM_CLOSE, 0, 0);
    EXPECT_EQ(program.waitForBox(), saveQuestion()) << "the import ends first";
    PostMessageW(program.window(), WM_CLOSE, 0, 0);
    Sleep(200);
    EXPECT_EQ(program.questionsOpen(), 1);
    EXPECT_TRUE(program.answer(IDCANCEL));
    Sleep(300);
    EXPECT_EQ(program.questionsOpen(), 0) << "a close is asked about once";
    EXPECT_TRUE(program.isRunning());
    EXPECT_EQ(program.text(ID_txtShowWrap), u"unsaved");
    EXPECT_GE(bodies().size(), taken);
    program.command(ID_mnu_sqlman_Save);
    EXPECT_TRUE(eventually([&] {
        const Rows now = bodies();
        return std::find(now.begin(), now.end(), u"unsaved") != now.end();
    }));
    EXPECT_EQ(program.close(), 0u);
}

// Every command of the window, posted while the question of another one stands.
TEST_P(ReentryTest, NoCommandBeginsWhileAQuestionStands)
{
    Program program(folder.executable());
    pasteThree(program);
    program.setText(ID_txtShowWrap, u"typed");
    std::vector<int> ids;
    for (int id = ID_mnu_View; id < ID_mnu_availdb + 3; ++id)
        if (ui::menuEntry(id) != nullptr || ui::arrayCommand(id) != nullptr)
            ids.push_back(id);
    ASSERT_GT(ids.size(), 100u);
    const Rows before = bodies();
    const std::u16string caption = program.caption();
    for (const int asking : {ID_mnu_top_PasteNew, ID_mnu_sqlman_Delete, ID_mnu_dbops_Drop, ID_mnu_dbcreate}) {
        program.command(asking);
        ASSERT_TRUE(eventually([&] { return program.questionsOpen() == 1; })) << asking;
        for (const int id : ids)
            program.command(id);
        PostMessageW(program.window(), WM_KEYDOWN, VK_F5, 1);
        program.selectEntry(ID_lstHeads, 2);
        Sleep(200);
        EXPECT_EQ(program.questionsOpen(), 1) << asking;
        EXPECT_EQ(program.text(ID_txtShowWrap), u"typed");
        EXPECT_EQ(bodies(), before);
        EXPECT_EQ(program.caption(), caption);
        setClipboard(u""); // so that the hand-over that waits finds nothing
        if (asking == ID_mnu_dbcreate)
            program.answer(IDCANCEL);
        else if (asking == ID_mnu_top_PasteNew) {
            program.answer(IDYES);
            ASSERT_TRUE(eventually([&] { return bodies().size() == before.size() + 1; }));
            return; // quit, which had waited, has ended the program, or asks first
        } else {
            program.answer(IDNO);
        }
        break;
    }
}

// A search that is due waits for Delete's question: those records go that were selected when it was asked.
TEST_P(ReentryTest, ATimerRefillsNothingBelowAQuestion)
{
    Program program(folder.executable());
    pasteThree(program);
    program.command(ID_mnu_InstantSrch);
    program.selectEntry(ID_lstHeads, 0); // three
    program.setText(ID_txtKey, u"one");
    program.command(ID_mnu_sqlman_Delete);
    ASSERT_FALSE(program.waitForBox().empty());
    const int shown = program.count(ID_lstHeads);
    Sleep(500);
    EXPECT_EQ(program.count(ID_lstHeads), shown);
    program.answer(IDYES);
    ASSERT_TRUE(eventually([&] { return bodies().size() == 2u; }));
    if (shown == 3) { // the question came before the timer
        EXPECT_EQ(bodies(), (Rows{u"one", u"two"}));
        EXPECT_TRUE(eventually([&] { return program.count(ID_lstHeads) == 1; }))
            << "then the search has its turn";
    }
    EXPECT_EQ(program.close(), 0u);
}

TEST_P(ReentryTest, TheEndOfASessionKeepsTextForTheNextStart)
{
    {
        Program program(folder.executable());
        pasteThree(program);
        program.setText(ID_txtShowWrap, u"three, changed");
        LRESULT mayEnd = 99;
        std::thread session([&] { mayEnd = SendMessageW(program.window(), WM_QUERYENDSESSION, 0, 0); });
        EXPECT_EQ(program.waitForBox(), saveQuestion());
        program.answer(IDCANCEL);
        session.join();
        EXPECT_EQ(mayEnd, FALSE);
        SendMessageW(program.window(), WM_ENDSESSION, TRUE, 0); // all the same
        program.kill();
    }
    EXPECT_NE(GetFileAttributesW(folder.file(L"Vellums.unsaved").c_str()), INVALID_FILE_ATTRIBUTES);
    Program program(folder.executable());
    EXPECT_NE(program.waitForBox().find(u"three"), std::u16string::npos);
    program.answer(IDYES);
    EXPECT_TRUE(eventually([&] { return bodies() == Rows{u"one", u"two", u"three, changed"}; }));
    EXPECT_TRUE(eventually([&] {
        return GetFileAttributesW(folder.file(L"Vellums.unsaved").c_str()) == INVALID_FILE_ATTRIBUTES;
    }));
    EXPECT_EQ(SendMessageW(program.window(), WM_QUERYENDSESSION, 0, 0), TRUE);
    EXPECT_EQ(program.close(), 0u);
}

TEST_P(ReentryTest, AFirstInstanceCarriesOutItsOwnCommandLine)
{
    ASSERT_TRUE(setClipboard(u"from the clipboard"));
    {
        Program program(folder.executable(), L"/add \"https://example.com\"");
        EXPECT_TRUE(eventually([&] { return bodies() == Rows{u"from the clipboard"}; }));
        EXPECT_EQ(columnOf(&StoredRecord::link), Rows{u"https://example.com"});
        EXPECT_EQ(program.close(), 0u);
    }
    folder.write(L"relative.txt", "of a relative path");
    wchar_t before[MAX_PATH] = {};
    GetCurrentDirectoryW(MAX_PATH, before);
    SetCurrentDirectoryW(folder.path().c_str());
    Program program(folder.executable(), L"relative.txt");
    SetCurrentDirectoryW(before);
    EXPECT_TRUE(eventually([&] { return bodies().size() == 2u; }));
    EXPECT_EQ(columnOf(&StoredRecord::link).back(), narrow(folder.file(L"relative.txt")));
    EXPECT_EQ(program.close(), 0u);
}

} // namespace
} // namespace vellums::tests
