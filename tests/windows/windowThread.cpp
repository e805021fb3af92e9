#include "tests/windows/windowThread.h"

#include "app/start/engines.h"
#include "app/start/startUp.h"
#include "ui/main/frmMain.h"

#include <atomic>

#include <commctrl.h>
#include <ole2.h>

namespace vellums::tests {
namespace {

LRESULT CALLBACK hatchProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message != WM_APP)
        return DefWindowProcW(window, message, wParam, lParam);
    (*reinterpret_cast<const std::function<void()>*>(lParam))();
    return 1;
}

} // namespace

WindowThread::WindowThread(const ProgramFolder& folder, const std::function<void()>& before)
{
    std::atomic<bool> open = false;
    thread_ = std::thread([this, &open, &before, path = narrow(folder.path())] {
        OleInitialize(nullptr);
        if (before)
            before();
        hatch_ =
            CreateWindowExW(0, L"STATIC", nullptr, 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr);
        SetWindowLongPtrW(hatch_, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(hatchProc));
        Engines engines({[](const std::u16string&) { return false; }, {}});
        Outcome outcome;
        Notebook notebook(outcome);
        startUp(notebook, path, u"Vellums", [&](Notebook& started) { engines.serve(started); });
        ui::frmMain form(notebook, outcome);
        form.open({}, SW_SHOWNORMAL);
        window_ = form.hwnd();
        open = true;
        ui::runWindow(form);
        DestroyWindow(hatch_);
        OleUninitialize();
    });
    eventually([&] { return open.load(); }, 20000);
}

WindowThread::~WindowThread()
{
    run([this] { DestroyWindow(window_); }); // asks nothing
    thread_.join();
}

std::u16string WindowThread::text(int id) const
{
    wchar_t text[1000] = {};
    GetWindowTextW(control(id), text, 1000);
    return narrow(text);
}

std::vector<std::u16string> WindowThread::tooltips(int* mostWidth) const
{
    std::vector<std::u16string> texts;
    HWND tip = nullptr;
    while ((tip = FindWindowExW(nullptr, tip, TOOLTIPS_CLASSW, nullptr)) != nullptr) {
        if (GetWindowThreadProcessId(tip, nullptr) != GetWindowThreadProcessId(window_, nullptr))
            continue;
        wchar_t text[1000] = {};
        TTTOOLINFOW tool{};
        tool.cbSize = TTTOOLINFOW_V1_SIZE;
        tool.lpszText = text;
        if (SendMessageW(tip, TTM_ENUMTOOLSW, 0, reinterpret_cast<LPARAM>(&tool)) == FALSE)
            continue;
        texts.push_back(narrow(text));
        if (mostWidth != nullptr)
            *mostWidth = std::min(*mostWidth, static_cast<int>(SendMessageW(tip, TTM_GETMAXTIPWIDTH, 0, 0)));
    }
    return texts;
}

void WindowThread::run(const std::function<void()>& what) const
{
    SendMessageW(hatch_, WM_APP, 0, reinterpret_cast<LPARAM>(&what));
}

void WindowThread::settle() const
{
    const HWND window = window_;
    run([window] {
        MSG message{};
        while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
            TranslateMessage(&message);
            DispatchMessageW(&message);
        }
        RedrawWindow(window, nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
        GdiFlush();
    });
}

} // namespace vellums::tests
