// The real main window in this process, on a thread of its own: a test sees its fonts, sends it what cannot
// be sent to another process, and stands in for the system where the system cannot be told.
#pragma once

#include "tests/windows/driver.h"

#include <functional>
#include <string>
#include <thread>

#include <windows.h>

namespace vellums::tests {

class WindowThread {
public:
    // Opens the window as a program in that folder does, and waits until it is there. `before` runs on its
    // thread first.
    explicit WindowThread(const ProgramFolder& folder, const std::function<void()>& before = {});
    WindowThread(const WindowThread&) = delete;
    WindowThread& operator=(const WindowThread&) = delete;
    ~WindowThread(); // closes it

    HWND window() const { return window_; }
    HWND control(int id) const { return GetDlgItem(window_, id); }
    LRESULT ask(int id, UINT message, WPARAM wParam = 0, LPARAM lParam = 0) const
    {
        return SendMessageW(control(id), message, wParam, lParam);
    }
    std::u16string text(int id) const;
    RECT place(int id) const { return placeOf(window_, id); }
    // The texts of the tooltips of this window, and the narrowest width at which one is wrapped.
    std::vector<std::u16string> tooltips(int* mostWidth = nullptr) const;
    // Runs something where the window runs: the focus belongs to a thread.
    void run(const std::function<void()>& what) const;
    // Waits until everything that was to be drawn stands on the screen.
    void settle() const;

private:
    HWND hatch_ = nullptr; // takes what is to be run
    HWND window_ = nullptr;
    std::thread thread_;
};

} // namespace vellums::tests
