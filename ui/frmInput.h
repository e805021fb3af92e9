// The small dialog that asks for the name of a database or a table.
#pragma once

#include <string>

#include <windows.h>

namespace vellums::ui {

struct InputTexts {
    std::u16string caption;
    std::u16string label;
    std::u16string prefilled; // selected, so that typing replaces it
    std::u16string ok;
    std::u16string cancel;
};

// Waits for an answer over the owner. Empty: cancelled, or nothing was entered.
std::u16string frmInput(HWND owner, const InputTexts& texts);

} // namespace vellums::ui
