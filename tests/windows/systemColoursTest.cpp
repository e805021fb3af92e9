// The window follows the colours of the system: after a change, and in high contrast.
#include "tests/windows/windowThread.h"
#include "ui/ids.h"

#include <gtest/gtest.h>

// Where this program keeps the address of the system's function: a system that cannot be brought into high
// contrast is stood in for here.
extern "C" decltype(&SystemParametersInfoW) __imp_SystemParametersInfoW;

namespace vellums::tests {
namespace {

constexpr COLORREF kOwnPaper = RGB(198, 206, 183);

BOOL WINAPI highContrastInfo(UINT action, UINT parameter, PVOID data, UINT change)
{
    static const auto real = reinterpret_cast<decltype(&SystemParametersInfoW)>(
        reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"user32.dll"), "SystemParametersInfoW")));
    if (action != SPI_GETHIGHCONTRAST)
        return real(action, parameter, data, change);
    auto* contrast = static_cast<HIGHCONTRASTW*>(data);
    contrast->dwFlags = HCF_AVAILABLE | HCF_HIGHCONTRASTON;
    contrast->lpszDefaultScheme = nullptr;
    return TRUE;
}

class HighContrast {
public:
    HighContrast() { __imp_SystemParametersInfoW = highContrastInfo; }
    HighContrast(const HighContrast&) = delete;
    HighContrast& operator=(const HighContrast&) = delete;
    ~HighContrast() { __imp_SystemParametersInfoW = before_; }

private:
    decltype(&SystemParametersInfoW) before_ = __imp_SystemParametersInfoW;
};

// Colours of the system, put back at the end.
class SystemColour {
public:
    SystemColour(int which, COLORREF colour)
        : which_(which)
        , before_(GetSysColor(which))
    {
        SetSysColors(1, &which, &colour);
    }
    SystemColour(const SystemColour&) = delete;
    SystemColour& operator=(const SystemColour&) = delete;
    ~SystemColour() { SetSysColors(1, &which_, &before_); }

private:
    int which_;
    COLORREF before_;
};

class SystemColoursTest : public testing::Test {
protected:
    static COLORREF colourAt(const WindowThread& program, int id)
    {
        program.settle();
        RECT rect{};
        GetClientRect(program.control(id), &rect);
        MapWindowPoints(program.control(id), nullptr, reinterpret_cast<POINT*>(&rect), 2);
        return pixelsOf({rect.right - 26, rect.bottom - 5, rect.right - 25, rect.bottom - 4}).front();
    }

    ProgramFolder folder;
};

TEST_F(SystemColoursTest, ThePanelsTakeNewColours)
{
    WindowThread program(folder);
    SetForegroundWindow(program.window());
    const COLORREF before = GetSysColor(COLOR_BTNFACE);
    EXPECT_EQ(colourAt(program, ID_ucStatusLeft), before);
    {
        const SystemColour face(COLOR_BTNFACE, RGB(10, 200, 90));
        SendMessageW(program.window(), WM_SYSCOLORCHANGE, 0, 0);
        for (const int id : {ID_ucStatusLeft, ID_ucStatusRight})
            EXPECT_EQ(colourAt(program, id), RGB(10, 200, 90)) << id;
    }
    SendMessageW(program.window(), WM_SYSCOLORCHANGE, 0, 0);
    EXPECT_EQ(colourAt(program, ID_ucStatusRight), before);
}

// The program's own colours give way, also after they were reset; colours that the user chose do not.
TEST_F(SystemColoursTest, HighContrastShowsTheSystemsColours)
{
    const SystemColour window(COLOR_WINDOW, RGB(0, 0, 60));
    {
        WindowThread program(folder);
        SetForegroundWindow(program.window());
        EXPECT_EQ(colourAt(program, ID_txtShowWrap), kOwnPaper);
        {
            const HighContrast on;
            SendMessageW(program.window(), WM_SETTINGCHANGE, SPI_SETHIGHCONTRAST, 0);
            for (const int id : {ID_txtShowWrap, ID_lstHeads, ID_txtKey, ID_txtType})
                EXPECT_EQ(colourAt(program, id), RGB(0, 0, 60)) << id;
            PostMessageW(program.window(), WM_COMMAND, ID_mnu_sizes + 1, 0);
            HWND box = nullptr;
            ASSERT_TRUE(eventually([&] {
                box = FindWindowW(L"#32770", nullptr);
                return box != nullptr && IsWindowVisible(box);
            }));
            PostMessageW(box, WM_COMMAND, IDYES, 0);
            ASSERT_TRUE(eventually([&] { return IsWindowEnabled(program.window()) != FALSE; }));
            EXPECT_EQ(colourAt(program, ID_txtShowWrap), RGB(0, 0, 60));
        }
        SendMessageW(program.window(), WM_SETTINGCHANGE, SPI_SETHIGHCONTRAST, 0);
        EXPECT_EQ(colourAt(program, ID_lstHeads), kOwnPaper);
    }
    const HighContrast on;
    {
        WindowThread program(folder); // with the colours that Reset has written
        SetForegroundWindow(program.window());
        EXPECT_EQ(colourAt(program, ID_txtShowWrap), RGB(0, 0, 60));
    }
    folder.write(L"Vellums.ini", "[Options]\r\nbackColor=255\r\n");
    WindowThread program(folder);
    SetForegroundWindow(program.window());
    EXPECT_EQ(colourAt(program, ID_txtShowWrap), RGB(255, 0, 0));
}

} // namespace
} // namespace vellums::tests
