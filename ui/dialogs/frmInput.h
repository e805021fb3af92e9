// The small dialog that asks for the name of a database or a table.
#pragma once

#include "app/nameForm.h"

#include <windows.h>

namespace vellums::ui {

class frmInput : public NameDialog {
public:
    void setOwner(HWND owner) { owner_ = owner; }
    // Waits for an answer over the owner. The text in the box is selected, so that typing replaces it.
    std::u16string ask(const NameForm& form) override;

private:
    HWND owner_ = nullptr;
};

} // namespace vellums::ui
