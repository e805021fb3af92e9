// While it exists, the system tells the user why the session cannot end yet.
#pragma once

#include "ui/windows/wide.h"

#include <string>

#include <windows.h>

namespace vellums::ui {

class ShutdownBlock {
public:
    ShutdownBlock(HWND window, const std::u16string& reason)
        : window_(window)
    {
        ShutdownBlockReasonCreate(window_, wide(reason));
    }
    ShutdownBlock(const ShutdownBlock&) = delete;
    ShutdownBlock& operator=(const ShutdownBlock&) = delete;
    ~ShutdownBlock() { ShutdownBlockReasonDestroy(window_); }

private:
    HWND window_;
};

} // namespace vellums::ui
