// Waits until the thread has nothing else to do: a timer comes behind all other messages.
#pragma once

#include "ports/controls.h"

#include <algorithm>

#include <windows.h>

namespace vellums::ui {

class PauseTimer : public Postponed {
public:
    // WM_TIMER with this id goes to the window, which cancels and does what was put off.
    void attach(HWND window, UINT_PTR id)
    {
        window_ = window;
        id_ = id;
    }
    void start(int quietMs) override
    {
        SetTimer(window_, id_, static_cast<UINT>(std::max(quietMs, USER_TIMER_MINIMUM)), nullptr);
    }
    void cancel() override { KillTimer(window_, id_); }

private:
    HWND window_ = nullptr;
    UINT_PTR id_ = 0;
};

// A key, or what came of one, waits to be treated.
inline bool keyIsWaiting()
{
    return HIWORD(GetQueueStatus(QS_KEY | QS_POSTMESSAGE)) != 0;
}

} // namespace vellums::ui
