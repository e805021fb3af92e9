// Questions in message boxes, owned by a window.
#pragma once

#include "ports/dialogs.h"

#include <windows.h>

namespace vellums::ui {

class MessageDialogs : public Dialogs {
public:
    void setOwner(HWND owner) { owner_ = owner; }

    Answer askYesNo(const std::u16string& question, QuestionIcon icon) override;
    Answer askNoYes(const std::u16string& question) override;
    Answer askYesNoCancel(const std::u16string& question) override;
    std::u16string chooseFolder(const std::u16string& prompt) override;
    void tell(const std::u16string& text, bool good) override;

private:
    Answer ask(const std::u16string& question, UINT style);

    HWND owner_ = nullptr;
};

} // namespace vellums::ui
