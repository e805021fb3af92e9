// How the real window looks and answers: places, splitter, fonts, wrapping, keys.
#include "tests/windows/builtProgram.h"
#include "tests/windows/driver.h"
#include "ui/ids.h"

#include <gtest/gtest.h>
#include <set>

namespace vellums::tests {
namespace {

class MainWindowTest : public testing::Test {
protected:
    MainWindowTest()
        : folder(builtProgram())
    {
    }
    std::u16string option(const wchar_t* key) const
    {
        wchar_t value[256] = {};
        GetPrivateProfileStringW(L"Options", key, L"(none)", value, 256, folder.file(L"Vellums.ini").c_str());
        return narrow(value);
    }
    static void resize(const Program& program, int width, int height)
    {
        SetWindowPos(program.window(), nullptr, 0, 0, width, height, SWP_NOZORDER);
        ASSERT_TRUE(eventually([&] {
            RECT client{};
            GetClientRect(program.window(), &client);
            return program.place(ID_ucStatusRight).right == client.right;
        }));
    }
    // The mouse takes the splitter, moves by so many pixels, and lets go.
    static void drag(const Program& program, int by)
    {
        program.ask(ID_fraSplitter, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(1, 20));
        program.ask(ID_fraSplitter, WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(1 + by, 20));
        program.ask(ID_fraSplitter, WM_LBUTTONUP, 0, MAKELPARAM(1, 20));
    }
    static int widthOf(const Program& program)
    {
        RECT client{};
        GetClientRect(program.window(), &client);
        return client.right;
    }
    static void expectTextFillsTheRest(const Program& program)
    {
        const RECT text = program.place(ID_txtShowWrap);
        const RECT other = program.place(ID_txtShowNoWrap);
        const RECT results = program.place(ID_lstInLineSrch);
        EXPECT_TRUE(EqualRect(&text, &other));
        EXPECT_EQ(text.left, results.left);
        EXPECT_EQ(text.right, results.right);
        EXPECT_LE(widthOf(program) - text.right, 5);
        EXPECT_LE(program.place(ID_ucStatusLeft).top - text.bottom, 4);
    }

    ProgramFolder folder;
};

TEST_F(MainWindowTest, ControlsStandByTheRulesAtEverySize)
{
    Program program(folder.executable());
    for (const SIZE size : {SIZE{620, 420}, SIZE{1010, 705}, SIZE{1280, 900}}) {
        resize(program, size.cx, size.cy);
        const int width = widthOf(program);
        EXPECT_NEAR(program.place(ID_ucStatusLeft).right, width * 0.382, 1);
        EXPECT_EQ(program.place(ID_ucStatusLeft).right + 2, program.place(ID_ucStatusRight).left);
        const int splitter = program.place(ID_fraSplitter).left;
        EXPECT_GE(splitter, width / 4 - 1);
        EXPECT_LE(splitter, width * 3 / 4 + 1);
        EXPECT_EQ(program.place(ID_lstHeads).right, splitter);
        EXPECT_EQ(program.place(ID_txtShowWrap).left, program.place(ID_fraSplitter).right);
        EXPECT_EQ(program.place(ID_txtShowWrap).top, program.place(ID_lstHeads).top);
        EXPECT_EQ(program.place(ID_lblRemarks).right, program.place(ID_txtKey).left);
        EXPECT_LT(program.place(ID_txtKey).right, program.place(ID_txtInline).left);
        EXPECT_LT(program.place(ID_txtInline).right, program.place(ID_lblDate).left);
        EXPECT_GT(program.place(ID_txtKey).right, program.place(ID_txtKey).left + 40);
        expectTextFillsTheRest(program);
    }
    EXPECT_EQ(program.close(), 0u);
}

TEST_F(MainWindowTest, TheSplitterFollowsTheMouse)
{
    Program program(folder.executable());
    resize(program, 1000, 700);
    const int width = widthOf(program);
    const int before = program.place(ID_fraSplitter).left;
    drag(program, 60);
    EXPECT_EQ(program.place(ID_fraSplitter).left, before + 60);
    EXPECT_EQ(program.place(ID_lstHeads).right, before + 60);
    expectTextFillsTheRest(program);
    drag(program, 3000); // at most three quarters
    EXPECT_NEAR(program.place(ID_fraSplitter).left, width * 0.75, 1);
    drag(program, 100 - program.place(ID_fraSplitter).left); // a drag may go below the quarter
    EXPECT_EQ(program.place(ID_fraSplitter).left, 100);
    resize(program, 1001, 700); // resizing does not leave it there
    EXPECT_NEAR(program.place(ID_fraSplitter).left, widthOf(program) * 0.25, 1);

    drag(program, -2000);
    EXPECT_FALSE(program.isShown(ID_lstHeads));
    EXPECT_FALSE(program.isShown(ID_fraSplitter));
    EXPECT_LE(program.place(ID_txtShowWrap).left, 6);
    resize(program, 900, 600); // hidden stays hidden
    EXPECT_FALSE(program.isShown(ID_lstHeads));
    expectTextFillsTheRest(program);
    program.type(ID_txtShowWrap, VK_F4);
    EXPECT_TRUE(eventually([&] { return program.isShown(ID_lstHeads) && program.isShown(ID_fraSplitter); }));
    EXPECT_GE(program.place(ID_lstHeads).right, widthOf(program) / 4 - 1);
    program.command(ID_mnu_top + 9);
    EXPECT_TRUE(eventually([&] { return !program.isShown(ID_lstHeads); }));
    EXPECT_EQ(program.close(), 0u);
}

TEST_F(MainWindowTest, WrappingKeepsTextAndSelection)
{
    Program program(folder.executable());
    std::u16string text = u"中文 and 😀\r\n";
    for (int i = 0; i < 300; ++i)
        text += u"a line that is long enough to be wrapped in a window that is not very wide at all\r\n";
    program.setText(ID_txtShowWrap, text);
    program.ask(ID_txtShowWrap, EM_SETSEL, 5000, 5020);
    program.ask(ID_txtShowWrap, EM_SCROLLCARET);
    const int boxes[] = {ID_txtShowNoWrap, ID_txtShowWrap};
    for (const int shown : boxes) {
        program.type(shown == ID_txtShowNoWrap ? ID_txtShowWrap : ID_txtShowNoWrap, 'W', true);
        const int hidden = ID_txtShowWrap + ID_txtShowNoWrap - shown;
        ASSERT_TRUE(eventually([&] { return program.isShown(shown) && !program.isShown(hidden); }));
        EXPECT_TRUE(eventually([&] { return program.text(shown) == text; }));
        const auto selection = static_cast<DWORD>(program.ask(shown, EM_GETSEL));
        EXPECT_EQ(LOWORD(selection), 5000);
        EXPECT_EQ(HIWORD(selection), 5020);
        const LRESULT top = program.ask(shown, EM_GETFIRSTVISIBLELINE);
        EXPECT_LE(program.ask(shown, EM_LINEINDEX, static_cast<WPARAM>(top)), 5020);
        EXPECT_GT(program.ask(shown, EM_LINEINDEX, static_cast<WPARAM>(top)), 1000);
    }
    // What is typed unwrapped is saved, too.
    program.command(ID_mnu_top + 8);
    ASSERT_TRUE(eventually([&] { return program.isShown(ID_txtShowNoWrap); }));
    program.setText(ID_txtShowNoWrap, u"unwrapped\r\ntext");
    program.command(ID_mnu_sqlman + 3);
    EXPECT_TRUE(eventually([&] { return program.entryOf(ID_lstHeads, u"unwrapped") == 0; }));
    EXPECT_EQ(program.close(), 0u);
}

TEST_F(MainWindowTest, SizesFollowMenuKeysAndWheel)
{
    folder.write(L"Vellums.ini",
        "[Options]\r\nfontName=No Such Font\r\nfontSize=99\r\nforeColor=blue\r\nbackColor=-5\r\n");
    Program program(folder.executable());
    const auto size = [&] { return program.ask(ID_lstFontSizes, LB_GETCURSEL); };
    EXPECT_EQ(size(), 3); // a setting out of range is no setting
    program.type(ID_txtShowWrap, VK_F8);
    EXPECT_TRUE(eventually([&] { return size() == 4; }));
    EXPECT_TRUE(eventually([&] { return option(L"fontSize") == u"4"; }));
    program.type(ID_txtShowWrap, VK_F7);
    EXPECT_TRUE(eventually([&] { return size() == 3; }));
    const auto turn = [&](int delta) {
        program.ask(ID_txtShowWrap, WM_MOUSEWHEEL, MAKEWPARAM(MK_CONTROL, delta), 0);
    };
    turn(-WHEEL_DELTA); // towards the user: larger
    EXPECT_TRUE(eventually([&] { return size() == 4; }));
    turn(3 * WHEEL_DELTA); // one step for a message, however far
    EXPECT_TRUE(eventually([&] { return size() == 3; }));
    program.ask(ID_txtShowWrap, WM_MOUSEWHEEL, MAKEWPARAM(0, -WHEEL_DELTA), 0);
    EXPECT_EQ(size(), 3);
    program.command(ID_mnu_sizes + 4); // the smallest
    EXPECT_TRUE(eventually([&] { return size() == 0; }));
    turn(WHEEL_DELTA);
    EXPECT_EQ(size(), 0);
    program.command(ID_mnu_sizes + 4 + 23);
    EXPECT_TRUE(eventually([&] { return size() == 23; }));
    turn(-WHEEL_DELTA);
    EXPECT_EQ(size(), 23);

    const LRESULT fonts = program.ask(ID_lstFontNames, LB_GETCOUNT);
    const LRESULT other = program.ask(ID_lstFontNames, LB_GETCURSEL) == 0 ? fonts - 1 : 0;
    if (fonts > 1) { // which fonts there are is the system's affair
        program.command(ID_mnu_fonts + static_cast<int>(other));
        EXPECT_TRUE(eventually([&] { return program.ask(ID_lstFontNames, LB_GETCURSEL) == other; }));
        EXPECT_NE(option(L"fontName"), u"No Such Font");
    }
    program.type(ID_txtShowWrap, VK_F9);
    EXPECT_EQ(program.waitForBox(), u"Load default display settings?   ");
    program.answer(IDNO);
    EXPECT_EQ(size(), 23);
    EXPECT_EQ(option(L"backColor"), u"-5");
    program.type(ID_txtShowWrap, VK_F9);
    program.waitForBox();
    program.answer(IDYES);
    EXPECT_TRUE(eventually([&] { return size() == 3; }));
    EXPECT_TRUE(eventually([&] { return option(L"backColor") == u"12046022"; }));
    EXPECT_EQ(option(L"foreColor"), u"0");
    EXPECT_EQ(option(L"fontName"), u"Tahoma");
    EXPECT_EQ(program.close(), 0u);
}

TEST_F(MainWindowTest, SwitchesAreSeenFromOutside)
{
    Program program(folder.executable());
    const auto isOnTop = [&] { return (GetWindowLongW(program.window(), GWL_EXSTYLE) & WS_EX_TOPMOST) != 0; };
    program.command(ID_mnu_ontop);
    EXPECT_TRUE(eventually(isOnTop));
    program.type(ID_txtShowWrap, VK_F11, true);
    EXPECT_TRUE(eventually([&] { return !isOnTop(); }));

    program.command(ID_mnu_SortOnTitle);
    EXPECT_TRUE(eventually([&] { return option(L"obTitle") == u"1"; }));
    program.command(ID_mnu_SortOnTitle);
    EXPECT_TRUE(eventually([&] { return option(L"obTitle") == u"0"; }));

    program.setText(ID_txtKey, u"words");
    program.type(ID_txtShowWrap, 'G', true);
    EXPECT_TRUE(eventually([&] { return program.ask(ID_txtKey, EM_GETSEL) == MAKELONG(0, 5); }));
    EXPECT_EQ(program.close(), 0u);
}

// Whoever cannot see a control is told what it is: by its own text, by the system's service, or by the
// label right before it.
TEST_F(MainWindowTest, EveryControlHasAName)
{
    Program program(folder.executable());
    const int controls[] = {
        ID_txtKey, ID_txtInline, ID_txtType, ID_chkSort, ID_lstHeads, ID_txtShowWrap, ID_lstInLineSrch};
    std::set<std::u16string> names;
    for (const int id : controls) {
        const HWND before = GetWindow(program.control(id), GW_HWNDPREV);
        wchar_t kind[32] = {};
        GetClassNameW(before, kind, 32);
        EXPECT_STREQ(_wcslwr(kind), L"static") << id;
        const std::u16string name = program.text(GetDlgCtrlID(before));
        EXPECT_FALSE(name.empty()) << id;
        EXPECT_TRUE(names.insert(name).second) << id;
    }
}

// The window lies on the screen, also when it is larger than that.
TEST_F(MainWindowTest, TheWindowIsInsideTheScreen)
{
    Program program(folder.executable());
    RECT rect{};
    GetWindowRect(program.window(), &rect);
    EXPECT_GE(rect.left, 0);
    EXPECT_GE(rect.top, 0);
    EXPECT_LE(rect.right, GetSystemMetrics(SM_CXSCREEN));
    EXPECT_LE(rect.bottom, GetSystemMetrics(SM_CYSCREEN));
}

} // namespace
} // namespace vellums::tests
