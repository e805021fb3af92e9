// The small modules below the window toolkit, on windows of the test's own.
#include "ui/controls/headsList.h"
#include "ui/controls/recordText.h"
#include "ui/main/displaySettings.h"
#include "ui/main/layout.h"
#include "ui/main/windowProgress.h"
#include "ui/windows/modBorderColor.h"
#include "ui/windows/modKBEvent.h"
#include "ui/windows/modLstRclick.h"
#include "ui/windows/modMouseWheel.h"
#include "ui/windows/modRegistry.h"
#include "ui/windows/subclass.h"

#include <gtest/gtest.h>
#include <new>
#include <utility>
#include <vector>

// Where this program keeps the address of the system's function, so that a test can count its calls.
extern "C" decltype(&FrameRect) __imp_FrameRect;

namespace vellums::ui {
namespace {

class OwnWindow {
public:
    explicit OwnWindow(const wchar_t* kind, DWORD style = 0)
        : hwnd_(CreateWindowExW(0, kind, L"", WS_POPUP | WS_VISIBLE | style, 10, 10, 200, 150, nullptr,
              nullptr, GetModuleHandleW(nullptr), nullptr))
    {
    }
    OwnWindow(const OwnWindow&) = delete;
    OwnWindow& operator=(const OwnWindow&) = delete;
    ~OwnWindow() { DestroyWindow(hwnd_); }
    HWND hwnd() const { return hwnd_; }

private:
    HWND hwnd_;
};

TEST(Hooks, ARightClickSelectsTheEntryUnderTheMouse)
{
    for (const DWORD style : {DWORD{0}, DWORD{LBS_EXTENDEDSEL}}) {
        const OwnWindow list(L"LISTBOX", style | LBS_HASSTRINGS);
        for (const wchar_t* text : {L"a", L"b", L"c"})
            SendMessageW(list.hwnd(), LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(text));
        RECT second{};
        SendMessageW(list.hwnd(), LB_GETITEMRECT, 1, reinterpret_cast<LPARAM>(&second));
        const double y = (second.top + 1) * 15.0;
        EXPECT_EQ(modLstRclick::selectItemUnderPoint(list.hwnd(), 75, y, 15, 15), 1);
        EXPECT_GT(SendMessageW(list.hwnd(), LB_GETSEL, 1, 0), 0);
        EXPECT_EQ(modLstRclick::selectItemUnderPoint(list.hwnd(), 75, 140 * 15, 15, 15), -1);
        EXPECT_GT(SendMessageW(list.hwnd(), LB_GETSEL, 1, 0), 0);
    }
    const OwnWindow box(L"EDIT");
    EXPECT_EQ(modLstRclick::selectItemUnderPoint(box.hwnd(), 75, 75, 15, 15), -1);
}

WNDPROC procedureOf(HWND window)
{
    return reinterpret_cast<WNDPROC>(GetWindowLongPtrW(window, GWLP_WNDPROC));
}

// What reaches a window itself, and what stands on it when it ends.
struct Seen {
    int paints = 0;
    int others = 0; // WM_APP
    WNDPROC lastProcedure = nullptr;
    HANDLE lastProperty = nullptr;
};
Seen seen;

LRESULT CALLBACK plainProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    seen.paints += message == WM_PAINT;
    seen.others += message == WM_APP;
    if (message == WM_NCDESTROY) {
        seen.lastProcedure = procedureOf(window);
        seen.lastProperty = GetPropW(window, L"OrigProcAddr");
    }
    return message == WM_APP ? 7 : DefWindowProcW(window, message, wParam, lParam);
}

class PlainWindow : public OwnWindow {
public:
    PlainWindow()
        : OwnWindow((registerPlain(), L"PlainWindow"))
    {
        seen = {};
    }

private:
    static void registerPlain()
    {
        WNDCLASSW plain{};
        plain.lpfnWndProc = plainProc;
        plain.hInstance = GetModuleHandleW(nullptr);
        plain.hbrBackground = static_cast<HBRUSH>(GetStockObject(WHITE_BRUSH));
        plain.lpszClassName = L"PlainWindow";
        RegisterClassW(&plain);
    }
};

int frames = 0;
int WINAPI countFrame(HDC dc, const RECT* rect, HBRUSH brush)
{
    ++frames;
    return FillRect(dc, rect, brush) != 0; // all of it, so that it can be seen anywhere
}

TEST(Hooks, ABorderIsPutOnOnceAndGoesWithTheControl)
{
    const auto realFrame = std::exchange(__imp_FrameRect, countFrame);
    const auto paint = [](const PlainWindow& box) {
        frames = 0;
        InvalidateRect(box.hwnd(), nullptr, TRUE);
        UpdateWindow(box.hwnd());
        GdiFlush();
    };
    {
        const PlainWindow box;
        modBorderColor::subclass(box.hwnd());
        const WNDPROC once = procedureOf(box.hwnd());
        EXPECT_NE(once, plainProc);
        modBorderColor::subclass(box.hwnd());
        EXPECT_EQ(procedureOf(box.hwnd()), once);
        EXPECT_EQ(GetPropW(box.hwnd(), L"OrigProcAddr"), reinterpret_cast<HANDLE>(plainProc));
        seen = {};
        paint(box);
        EXPECT_EQ(frames, 1);
        EXPECT_EQ(seen.paints, 1);
        EXPECT_EQ(SendMessageW(box.hwnd(), WM_APP, 0, 0), 7);
        const HDC dc = GetWindowDC(box.hwnd());
        EXPECT_EQ(GetPixel(dc, 0, 0), RGB(122, 138, 153));
        ReleaseDC(box.hwnd(), dc);
        SendMessageW(box.hwnd(), WM_DESTROY, 0, 0);
        EXPECT_EQ(procedureOf(box.hwnd()), plainProc); // no second one stands there
        EXPECT_EQ(GetPropW(box.hwnd(), L"OrigProcAddr"), nullptr);
        paint(box);
        EXPECT_EQ(frames, 0);
        EXPECT_EQ(seen.paints, 2);
        modBorderColor::subclass(box.hwnd());
        EXPECT_EQ(procedureOf(box.hwnd()), once);
    }
    EXPECT_EQ(seen.lastProcedure, plainProc); // before the end
    EXPECT_EQ(seen.lastProperty, nullptr);
    __imp_FrameRect = realFrame;
}

LRESULT CALLBACK countProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR, DWORD_PTR count)
{
    *reinterpret_cast<int*>(count) += message == WM_APP;
    return DefSubclassProc(window, message, wParam, lParam);
}

TEST(Hooks, ProceduresGoInAnyOrderAndOnce)
{
    for (const int first : {0, 1, 2}) {
        int counts[3] = {};
        std::vector<Subclass> owners;
        {
            const PlainWindow box;
            for (int& count : counts)
                owners.emplace_back(box.hwnd(), countProc, &count);
            EXPECT_EQ(SendMessageW(box.hwnd(), WM_APP, 0, 0), 7);
            owners[static_cast<std::size_t>(first)].takeOff();
            owners[static_cast<std::size_t>(first)].takeOff();
            SendMessageW(box.hwnd(), WM_APP, 0, 0);
            for (int i = 0; i < 3; ++i)
                EXPECT_EQ(counts[i], i == first ? 1 : 2);
            owners.erase(owners.begin()); // one goes with its owner, the last with the window
            SendMessageW(box.hwnd(), WM_APP, 0, 0);
            EXPECT_EQ(counts[0], first == 0 ? 1 : 2);
            EXPECT_EQ(counts[1] + counts[2], first == 0 ? 6 : 4);
            EXPECT_EQ(seen.others, 3);
        }
        for (const Subclass& owner : owners)
            EXPECT_FALSE(owner.isOn());
        const PlainWindow next; // may have the handle of the one before
        owners.clear();
        EXPECT_EQ(procedureOf(next.hwnd()), plainProc);
    }
    const PlainWindow box;
    {
        int count = 0;
        const Subclass owner(box.hwnd(), countProc, &count);
        EXPECT_NE(procedureOf(box.hwnd()), plainProc);
    }
    EXPECT_EQ(procedureOf(box.hwnd()), plainProc);
}

// The wheel's turns are seen and passed on; without Ctrl they are none of ours.
TEST(Hooks, TheWheelHookComesOffAgain)
{
    const PlainWindow box;
    std::vector<int> sizes;
    modMouseWheel::hook(box.hwnd(), [&](int index) { sizes.push_back(index); });
    SendMessageW(box.hwnd(), WM_MOUSEWHEEL, MAKEWPARAM(MK_CONTROL, 360), 0);
    SendMessageW(box.hwnd(), WM_MOUSEWHEEL, MAKEWPARAM(MK_CONTROL | MK_SHIFT, -120), 0);
    SendMessageW(box.hwnd(), WM_MOUSEWHEEL, MAKEWPARAM(MK_SHIFT, -120), 0);
    EXPECT_EQ(sizes, (std::vector<int>{0, 2}));
    modMouseWheel::unhook(box.hwnd());
    EXPECT_EQ(procedureOf(box.hwnd()), plainProc);
    SendMessageW(box.hwnd(), WM_MOUSEWHEEL, MAKEWPARAM(MK_CONTROL, 120), 0);
    EXPECT_EQ(sizes.size(), 2u);
}

TEST(Hooks, AKeyIsPostedDownAndUp)
{
    const OwnWindow box(L"EDIT");
    modKBEvent::postKey(box.hwnd(), VK_F5);
    MSG message{};
    ASSERT_TRUE(PeekMessageW(&message, box.hwnd(), WM_KEYFIRST, WM_KEYLAST, PM_REMOVE));
    EXPECT_EQ(message.message, static_cast<UINT>(WM_KEYDOWN));
    EXPECT_EQ(message.wParam, static_cast<WPARAM>(VK_F5));
    ASSERT_TRUE(PeekMessageW(&message, box.hwnd(), WM_KEYFIRST, WM_KEYLAST, PM_REMOVE));
    EXPECT_EQ(message.message, static_cast<UINT>(WM_KEYUP));
}

TEST(Hooks, TheRegistryTellsWhatFailed)
{
    std::u16string title;
    std::u16string text;
    const auto report = [&](const std::u16string& t, const std::u16string& m) {
        title = t;
        text = m;
    };
    const std::u16string path = u"Software\\VellumsTest";
    HKEY key = nullptr;
    RegCreateKeyExW(
        HKEY_CURRENT_USER, L"Software\\VellumsTest", 0, nullptr, 0, KEY_WRITE, nullptr, &key, nullptr);
    const wchar_t value[] = L"a text";
    RegSetValueExW(key, L"text", 0, REG_SZ, reinterpret_cast<const BYTE*>(value), sizeof value);
    const DWORD number = 7;
    RegSetValueExW(key, L"number", 0, REG_DWORD, reinterpret_cast<const BYTE*>(&number), sizeof number);
    RegCloseKey(key);

    EXPECT_EQ(modRegistry::readString(nullptr, HKEY_CURRENT_USER, path, u"text", report), u"a text");
    EXPECT_EQ(title, u"");
    EXPECT_FALSE(modRegistry::readString(nullptr, HKEY_CURRENT_USER, path, u"number", report));
    EXPECT_EQ(title, u"  Windows API Error");
    EXPECT_EQ(text, u"Specified Key\\Value combination is not a 'String' value.");
    EXPECT_FALSE(modRegistry::readString(nullptr, HKEY_CURRENT_USER, path, u"missing", report));
    EXPECT_EQ(
        text.find(u"An error occured while calling the RegQueryValueEx Windows API function.\r\nBelow is "
                  u"the error information:\r\nError Number = 2\r\nError Description = "),
        0u);
    EXPECT_FALSE(modRegistry::readString(nullptr, HKEY_CURRENT_USER, u"Software\\NoSuchKey", u"x", report));
    EXPECT_EQ(text.find(u"An error occured while calling the RegOpenKeyEx"), 0u);
    RegDeleteKeyW(HKEY_CURRENT_USER, L"Software\\VellumsTest");
}

TEST(DisplaySettings, OffersTheNamedFontsAndThoseOfTheSystemsOwnScript)
{
    EXPECT_TRUE(isOfferedFont(u"Segoe UI"));
    EXPECT_FALSE(isOfferedFont(u"Segoe UI Symbol"));
    EXPECT_FALSE(isOfferedFont(u"@宋体"));
    EXPECT_FALSE(isOfferedFont(u"微软雅黑"));
    EXPECT_EQ(isOfferedFont(u"宋体"), GetACP() == 936);
    EXPECT_FALSE(isOfferedFont(u""));
}

// The same window at twice the resolution is the same picture, twice as large.
TEST(WindowProgress, OpensTheBoxesWhateverBecomesOfThePanel)
{
    ucStatus panel;
    const OwnWindow parent(L"STATIC");
    panel.create(parent.hwnd(), 1);
    WindowProgress progress;
    progress.attach(parent.hwnd(), false, panel, [] {});
    bool locked = false;
    progress.Running = [&](bool runs) { locked = runs; };
    progress.begin(u"Work");
    Sleep(600); // until it is shown
    EXPECT_TRUE(progress.step(1, 2));
    EXPECT_TRUE(locked);
    panel.Change = [] { throw std::bad_alloc(); };
    progress.end();
    EXPECT_FALSE(locked);
}

LRESULT CALLBACK takesNoText(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR, DWORD_PTR)
{
    return message == WM_SETTEXT ? FALSE : DefSubclassProc(window, message, wParam, lParam);
}

TEST(RecordText, KeepsItsBoxWhereTheOtherOneCannotTakeTheText)
{
    const OwnWindow parent(L"STATIC");
    RecordText text;
    text.create(parent.hwnd(), 1, 2);
    text.setText(u"the only copy");
    const Subclass full(text.scrolling().hwnd(), takesNoText, nullptr);
    EXPECT_THROW(text.setWraps(false, false), std::bad_alloc);
    EXPECT_EQ(text.text(), u"the only copy");
    EXPECT_TRUE(text.wraps());
}

TEST(HeadsList, GivesNoOtherEntryTheNumberOfOneThatItCannotTake)
{
    const OwnWindow parent(L"STATIC");
    HeadsList list;
    list.create(parent.hwnd(), 1);
    list.fill({{u"a", 1}, {u"b", 2}});
    EXPECT_THROW(list.insert(3, {u"c", 3}), std::bad_alloc);
    EXPECT_EQ(list.count(), 2);
    EXPECT_EQ(list.datum(1), 2);
}

TEST(Layout, GrowsWithTheResolution)
{
    LayoutInput input;
    input.width = 14000;
    input.height = 9000;
    input.rowHeight = 255;
    input.searchLabelWidth = 700;
    input.findLabelWidth = 600;
    input.dateWidth = 1800;
    input.splitterLeft = 4400;
    const Layout low = computeLayout(input, Scale(96));
    for (const UINT dpi : {120u, 144u, 192u}) {
        const Layout high = computeLayout(input, Scale(dpi));
        const double factor = dpi / 96.0;
        const auto expectAlike = [&](const RECT& small, const RECT& large) {
            EXPECT_NEAR(small.left * factor, large.left, factor + 1);
            EXPECT_NEAR(small.top * factor, large.top, factor + 1);
            EXPECT_NEAR(small.right * factor, large.right, factor + 1);
            EXPECT_NEAR(small.bottom * factor, large.bottom, factor + 1);
        };
        expectAlike(low.txtKey, high.txtKey);
        expectAlike(low.lstHeads, high.lstHeads);
        expectAlike(low.text, high.text);
        expectAlike(low.ucStatusRight, high.ucStatusRight);
        EXPECT_EQ(high.ucStatusRight.left - high.ucStatusLeft.right, 2);
    }
    // Too small for everything: nothing gets a negative size.
    input.width = 500;
    input.height = 300;
    const Layout tiny = computeLayout(input, Scale(96));
    for (const RECT& rect : {tiny.txtKey, tiny.txtInline, tiny.text, tiny.lstHeads, tiny.txtType}) {
        EXPECT_LE(rect.left, rect.right);
        EXPECT_LE(rect.top, rect.bottom);
    }
}

} // namespace
} // namespace vellums::ui
