// How the real window looks: what stands where in its boxes and lists, and in what colours.
#include "tests/windows/programTest.h"
#include "tests/windows/windowThread.h"
#include "ui/ids.h"

namespace vellums::tests {
namespace {

constexpr COLORREF kPaper = RGB(198, 206, 183);
constexpr COLORREF kFocused = RGB(255, 253, 204);
constexpr COLORREF kWhite = RGB(255, 255, 255);
constexpr int kOneLineBoxes[] = {ID_txtKey, ID_txtInline, ID_txtType};
constexpr int kLists[] = {ID_lstHeads, ID_lstInLineSrch};

RECT onScreen(HWND window)
{
    RECT rect{};
    GetWindowRect(window, &rect);
    return rect;
}

RECT clientOnScreen(HWND window)
{
    RECT rect{};
    GetClientRect(window, &rect);
    MapWindowPoints(window, nullptr, reinterpret_cast<POINT*>(&rect), 2);
    return rect;
}

COLORREF pixelAt(int x, int y)
{
    return pixelsOf({x, y, x + 1, y + 1}).front();
}

int lineHeightOf(HWND box)
{
    const HDC dc = GetDC(box);
    const HGDIOBJ before = SelectObject(dc, reinterpret_cast<HFONT>(SendMessageW(box, WM_GETFONT, 0, 0)));
    TEXTMETRICW metrics{};
    GetTextMetricsW(dc, &metrics);
    SelectObject(dc, before);
    ReleaseDC(box, dc);
    return metrics.tmHeight;
}

// As when the window comes to a screen of another resolution.
void setDpi(const WindowThread& program, UINT dpi)
{
    const LONG side = MulDiv(640, static_cast<int>(dpi), 96);
    RECT suggested{0, 0, std::min(side * 5 / 4, 1180L), std::min(side, 860L)};
    SendMessageW(program.window(), WM_DPICHANGED, MAKEWPARAM(dpi, dpi), reinterpret_cast<LPARAM>(&suggested));
}

class LooksTest : public ProgramTest {
protected:
    // Many headings, and matches of "line".
    void fillLists(const WindowThread& program) const
    {
        for (int i = 0; i < 90; ++i)
            program.ask(ID_lstHeads, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(L"标题 heading"));
        SetWindowTextW(program.control(ID_txtShowWrap), L"a line, a line, a line");
        SetWindowTextW(program.control(ID_txtInline), L"line");
        program.ask(ID_txtInline, WM_KEYDOWN, VK_RETURN, 1);
        ASSERT_TRUE(IsWindowVisible(program.control(ID_lstInLineSrch)));
    }
};

// What is drawn while the size changes is what a fresh drawing shows: nothing is left of before.
TEST_P(LooksTest, NothingOfTheOldPictureStaysAfterAResize)
{
    WindowThread program(folder);
    fillLists(program);
    program.run([&] { SetFocus(program.control(ID_lstHeads)); }); // no caret blinks there
    SetForegroundWindow(program.window());
    for (const SIZE size : {SIZE{700, 500}, SIZE{1190, 880}, SIZE{1000, 700}, SIZE{1100, 800}}) {
        SetWindowPos(program.window(), nullptr, 0, 0, size.cx, size.cy, SWP_NOZORDER);
        program.settle();
        const RECT client = clientOnScreen(program.window());
        const std::vector<COLORREF> shown = pixelsOf(client);
        program.run([&] {
            RedrawWindow(program.window(), nullptr, nullptr,
                RDW_INVALIDATE | RDW_ERASE | RDW_FRAME | RDW_ALLCHILDREN | RDW_UPDATENOW);
        });
        program.settle();
        EXPECT_TRUE(shown == pixelsOf(client)) << size.cx << " by " << size.cy;
    }
}

// At any resolution there is as much above a text as below it, and a little before it.
TEST_P(LooksTest, TextsOfOneLineStandInTheMiddle)
{
    WindowThread program(folder);
    for (const UINT dpi : {96u, 120u, 144u, 192u}) {
        setDpi(program, dpi);
        for (const int id : kOneLineBoxes) {
            const HWND box = program.control(id);
            SetWindowTextW(box, L"文 text");
            RECT client{};
            GetClientRect(box, &client);
            const auto at = static_cast<DWORD>(program.ask(id, EM_POSFROMCHAR, 0));
            const int below = client.bottom - HIWORD(at) - lineHeightOf(box);
            EXPECT_NEAR(HIWORD(at), below, 1) << id << " at " << dpi;
            EXPECT_GE(below, 1) << id << " at " << dpi;
            EXPECT_GE(LOWORD(at), static_cast<int>(dpi) / 32) << id << " at " << dpi;
        }
    }
}

// No row is cut, the rest of the list's room is paper, and so is what lies before the texts; a click there
// is meant for the text.
TEST_P(LooksTest, ListsShowWholeRowsOnPaper)
{
    WindowThread program(folder);
    fillLists(program);
    SetForegroundWindow(program.window());
    int cut = 0;
    for (int height = 700; height < 714; height += 3) {
        SetWindowPos(program.window(), nullptr, 0, 0, 1000, height, SWP_NOZORDER);
        program.settle();
        for (const int id : kLists) {
            const HWND list = program.control(id);
            const RECT whole = onScreen(list);
            const RECT client = clientOnScreen(list);
            const auto row = static_cast<int>(program.ask(id, LB_GETITEMHEIGHT));
            EXPECT_EQ((client.bottom - client.top) % row, 0);
            const int left = whole.bottom - 1 - client.bottom;
            EXPECT_LT(left, row);
            cut += left > 0;
            if (left > 0) {
                EXPECT_EQ(pixelAt(client.left + 20, client.bottom), kPaper);
            }
            EXPECT_GE(client.left - whole.left, 3);
            EXPECT_EQ(pixelAt(client.left - 1, client.top + 5), kPaper);
            EXPECT_EQ(
                SendMessageW(list, WM_NCHITTEST, 0, MAKELPARAM(client.left - 1, client.top + 5)), HTCLIENT);
        }
    }
    EXPECT_GT(cut, 5);
    // The last entry can be reached.
    program.ask(ID_lstHeads, LB_SETTOPINDEX, 89);
    RECT last{};
    RECT client{};
    GetClientRect(program.control(ID_lstHeads), &client);
    program.ask(ID_lstHeads, LB_GETITEMRECT, 89, reinterpret_cast<LPARAM>(&last));
    EXPECT_EQ(last.bottom, client.bottom);
}

TEST_P(LooksTest, TooltipsNameTheSortBoxAndWrapLongTexts)
{
    WindowThread program(folder);
    int width = 10000;
    const std::vector<std::u16string> tips = program.tooltips(&width);
    EXPECT_EQ(std::count(tips.begin(), tips.end(), say(u"Oldest first", u"按时间升序")), 1);
    EXPECT_GT(width, 100); // -1: never wrapped
    EXPECT_LT(width, 1000);
}

TEST_P(LooksTest, AnotherResolutionChangesSizesAndNothingElse)
{
    WindowThread program(folder);
    const std::wstring text = L"中文 😀\r\nunsaved";
    SetWindowTextW(program.control(ID_txtShowWrap), text.c_str());
    program.ask(ID_txtShowWrap, EM_SETSEL, 3, 8);
    setDpi(program, 96);
    const int line = lineHeightOf(program.control(ID_lstHeads));
    const int textLine = lineHeightOf(program.control(ID_txtShowWrap));
    const RECT title = program.place(ID_txtType);
    const RECT status = program.place(ID_ucStatusLeft);
    setDpi(program, 192);
    EXPECT_NEAR(lineHeightOf(program.control(ID_lstHeads)), 2 * line, 3);
    EXPECT_NEAR(lineHeightOf(program.control(ID_txtShowWrap)), 2 * textLine, 3);
    EXPECT_EQ(program.ask(ID_lstHeads, LB_GETITEMHEIGHT), lineHeightOf(program.control(ID_lstHeads)));
    EXPECT_EQ(program.ask(ID_lstInLineSrch, LB_GETITEMHEIGHT), program.ask(ID_lstHeads, LB_GETITEMHEIGHT));
    EXPECT_NEAR(program.place(ID_ucStatusLeft).bottom - program.place(ID_ucStatusLeft).top,
        2 * (status.bottom - status.top), 1);
    EXPECT_GT(program.place(ID_txtType).top, title.top * 3 / 2);
    const RECT whole = onScreen(program.window());
    EXPECT_EQ(whole.right - whole.left, 1180); // what was suggested
    EXPECT_EQ(whole.bottom - whole.top, 860);
    EXPECT_EQ(program.text(ID_txtShowWrap), narrow(text));
    EXPECT_EQ(program.ask(ID_txtShowWrap, EM_GETSEL), MAKELONG(3, 8));
    setDpi(program, 96);
    EXPECT_EQ(lineHeightOf(program.control(ID_lstHeads)), line);
    const RECT again = program.place(ID_txtType);
    EXPECT_TRUE(EqualRect(&again, &title));
}

TEST_P(LooksTest, TheBoxWithTheFocusIsYellow)
{
    WindowThread program(folder);
    SetForegroundWindow(program.window());
    const auto colourOf = [&](int id) {
        const RECT client = clientOnScreen(program.control(id));
        return pixelAt(client.right - 6, (client.top + client.bottom) / 2);
    };
    const int boxes[] = {ID_txtKey, ID_txtInline, ID_txtKey};
    for (const int id : boxes) {
        program.run([&] { SetFocus(program.control(id)); });
        program.settle();
        EXPECT_EQ(colourOf(id), kFocused);
        EXPECT_EQ(colourOf(ID_txtKey + ID_txtInline - id), kWhite);
        EXPECT_EQ(colourOf(ID_txtType), kWhite);
    }
    program.run([&] { SetFocus(program.control(ID_txtShowWrap)); });
    program.settle();
    EXPECT_EQ(colourOf(ID_txtKey), kWhite);
    const RECT text = clientOnScreen(program.control(ID_txtShowWrap));
    EXPECT_EQ(pixelAt(text.right - 30, text.bottom - 20), kPaper);
}

INSTANTIATE_TEST_SUITE_P(InBothLanguages, LooksTest, languagesHere(), languageOf);

} // namespace
} // namespace vellums::tests
