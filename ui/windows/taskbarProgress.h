// How far a work is, on the window's button in the taskbar. Where there is no taskbar nothing happens.
#pragma once

#include <cstddef>

#include <windows.h>

struct ITaskbarList3;

namespace vellums::ui {

class TaskbarProgress {
public:
    TaskbarProgress() = default;
    TaskbarProgress(const TaskbarProgress&) = delete;
    TaskbarProgress& operator=(const TaskbarProgress&) = delete;
    ~TaskbarProgress();

    void attach(HWND window) { window_ = window; }
    // total 0: nobody knows how much there is.
    void show(std::size_t done, std::size_t total);
    void hide();

private:
    HWND window_ = nullptr;
    ITaskbarList3* taskbar_ = nullptr; // made when it is needed first
    bool asked_ = false;
};

} // namespace vellums::ui
