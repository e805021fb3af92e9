// Controls as they are made: of no size, placed later.
#pragma once

#include "ui/windows/wide.h"

#include <string>

#include <windows.h>

namespace vellums::ui {

// Its parent owns it. `style` without WS_CHILD.
inline HWND createChild(
    HWND parent, const wchar_t* windowClass, int id, DWORD style, const std::u16string& text = {})
{
    return CreateWindowExW(0, windowClass, wide(text), WS_CHILD | style, 0, 0, 0, 0, parent,
        reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), GetModuleHandleW(nullptr), nullptr);
}

} // namespace vellums::ui
