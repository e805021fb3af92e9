// The small modules below the window toolkit, on windows of the test's own.
#include "ui/displaySettings.h"
#include "ui/layout.h"
#include "ui/modBorderColor.h"
#include "ui/modKBEvent.h"
#include "ui/modLstRclick.h"
#include "ui/modRegistry.h"

#include <gtest/gtest.h>

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

TEST(Hooks, ABorderIsPutOnOnceAndGoesWithTheControl)
{
    WNDPROC plain = nullptr;
    {
        const OwnWindow box(L"EDIT", WS_BORDER);
        plain = reinterpret_cast<WNDPROC>(GetWindowLongPtrW(box.hwnd(), GWLP_WNDPROC));
        modBorderColor::subclass(box.hwnd());
        const LONG_PTR once = GetWindowLongPtrW(box.hwnd(), GWLP_WNDPROC);
        modBorderColor::subclass(box.hwnd());
        EXPECT_EQ(GetWindowLongPtrW(box.hwnd(), GWLP_WNDPROC), once);
        EXPECT_NE(reinterpret_cast<WNDPROC>(once), plain);
        EXPECT_EQ(reinterpret_cast<WNDPROC>(GetPropW(box.hwnd(), L"OrigProcAddr")), plain);
        SetWindowTextW(box.hwnd(), L"still an edit box");
        UpdateWindow(box.hwnd());
        EXPECT_EQ(GetWindowTextLengthW(box.hwnd()), 17);
    }
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
TEST(Layout, GrowsWithTheResolution)
{
    LayoutInput input;
    input.width = 14000;
    input.height = 9000;
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
