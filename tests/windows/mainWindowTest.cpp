// How the real window looks and answers: places, splitter, fonts, wrapping, keys.
#include "tests/windows/driver.h"
#include "ui/ids.h"

#include <gtest/gtest.h>

namespace vellums::tests {
namespace {

class MainWindowTest : public testing::Test {
protected:
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
    static bool hasFocus(const Program& program, int id)
    {
        return eventually([&] { return program.focused() == id; });
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

// Only the mouse and a new size of the window move the splitter.
TEST_F(MainWindowTest, TheSplitterStaysWhereItWasPut)
{
    Program program(folder.executable());
    resize(program, 1000, 700);
    program.setText(ID_txtShowWrap, u"a line, a line");
    const auto toggle = [&](bool shown) {
        program.type(ID_txtShowWrap, VK_F4);
        EXPECT_TRUE(eventually([&] { return program.isShown(ID_lstHeads) == shown; }));
    };
    const auto press = [&](WPARAM key, bool shown) { // in the find box
        program.press(ID_txtInline, key);
        EXPECT_TRUE(eventually([&] { return program.isShown(ID_lstInLineSrch) == shown; }));
    };
    for (const int left : {100, 350}) { // 100 is less than a quarter
        drag(program, left - static_cast<int>(program.place(ID_fraSplitter).left));
        ASSERT_EQ(program.place(ID_fraSplitter).left, left);
        program.setText(ID_txtInline, u"line");
        press(VK_RETURN, true);
        EXPECT_EQ(program.place(ID_fraSplitter).left, left);
        toggle(false);
        press(VK_ESCAPE, false);
        toggle(true);
        EXPECT_EQ(program.place(ID_fraSplitter).left, left);
        EXPECT_EQ(program.place(ID_lstHeads).right, left);
        expectTextFillsTheRest(program);
        drag(program, -2000); // dragged away, it comes back to where it was
        ASSERT_FALSE(program.isShown(ID_lstHeads));
        toggle(true);
        EXPECT_EQ(program.place(ID_fraSplitter).left, left);
        toggle(false);
        toggle(true);
        EXPECT_EQ(program.place(ID_fraSplitter).left, left);
    }
    toggle(false); // what a new size does to it is seen when it comes back
    resize(program, 1190, 700);
    toggle(true);
    EXPECT_EQ(program.place(ID_fraSplitter).left, 350);
    toggle(false);
    resize(program, 1000, 700);
    resize(program, 500, 700);
    EXPECT_FALSE(program.isShown(ID_lstHeads));
    toggle(true);
    EXPECT_LE(program.place(ID_fraSplitter).left, widthOf(program) * 3 / 4 + 1);
    program.setText(ID_txtShowWrap, u"");
    EXPECT_EQ(program.close(), 0u);
}

// Both ways, wherever in the text the selection stands: the caret can be seen, and nothing of the text has
// changed, saved or not.
TEST_F(MainWindowTest, WrappingKeepsTextAndSelection)
{
    Program program(folder.executable());
    resize(program, 620, 500);
    std::u16string text = u"中文 and 😀\r\n";
    for (int i = 0; i < 120; ++i)
        text += i % 7 == 0
            ? u"short\r\n"
            : u"a line that is long enough to be wrapped, " + std::u16string(150, u'x') + u" twice\r\n";
    program.setText(ID_txtShowWrap, text);
    int shown = ID_txtShowWrap;
    for (const int at : {5000, 12000, 30, 16000, 9000, static_cast<int>(text.size()) - 20, 3}) {
        for (const bool seenBefore : {true, false}) {
            program.select(shown, at, at + 15);
            if (seenBefore)
                program.ask(shown, EM_SCROLLCARET);
            const int hidden = shown;
            shown = ID_txtShowWrap + ID_txtShowNoWrap - shown;
            program.type(hidden, 'W', true);
            ASSERT_TRUE(eventually([&] { return program.isShown(shown) && !program.isShown(hidden); }));
            ASSERT_TRUE(hasFocus(program, shown));
            EXPECT_EQ(program.text(shown), text);
            EXPECT_EQ(program.selection(shown), std::pair(at, at + 15));
            RECT client{};
            GetClientRect(program.control(shown), &client);
            const LRESULT caret = program.ask(shown, EM_POSFROMCHAR, static_cast<WPARAM>(at + 15));
            const int x = static_cast<short>(LOWORD(caret));
            const int y = static_cast<short>(HIWORD(caret));
            EXPECT_TRUE(x >= 0 && x < client.right) << at << ": " << x << " of " << client.right;
            EXPECT_TRUE(y >= 0 && y + 10 < client.bottom) << at << ": " << y << " of " << client.bottom;
        }
    }
    // What is typed in either box and not yet saved is the record's text in the other, and is saved from it.
    program.setText(shown, u"unwrapped\r\ntext");
    program.command(ID_mnu_top + 8);
    shown = ID_txtShowWrap + ID_txtShowNoWrap - shown;
    ASSERT_TRUE(eventually([&] { return program.isShown(shown); }));
    EXPECT_EQ(program.text(shown), u"unwrapped\r\ntext");
    program.command(ID_mnu_sqlman + 3);
    EXPECT_TRUE(eventually([&] { return program.entryOf(ID_lstHeads, u"unwrapped") == 0; }));
    EXPECT_FALSE(program.boxIsOpen());
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

// The window comes to lie on the screen, wherever the system would put it.
TEST_F(MainWindowTest, TheWindowIsInsideTheScreen)
{
    const LONG width = GetSystemMetrics(SM_CXSCREEN);
    const LONG height = GetSystemMetrics(SM_CYSCREEN);
    for (const POINT start : {POINT{width - 90, height - 60}, POINT{-400, -300}}) {
        Program program(folder.executable(), L"", &start);
        RECT rect{};
        GetWindowRect(program.window(), &rect);
        EXPECT_GE(rect.left, 0);
        EXPECT_GE(rect.top, 0);
        EXPECT_LE(rect.right, width);
        EXPECT_LE(rect.bottom, height);
        EXPECT_GT(rect.right - rect.left, 400);
        EXPECT_EQ(rect.left == 0, start.x < 0); // it was moved no farther than it had to be
        EXPECT_EQ(program.close(), 0u);
    }
}

} // namespace
} // namespace vellums::tests
