// A check box.
#pragma once

#include "ports/controls.h"
#include "ui/controls/windowText.h"

namespace vellums::ui {

class ButtonCheck : public CheckItem {
public:
    void attach(HWND button) { hwnd_ = button; }
    HWND hwnd() const { return hwnd_; }
    bool checked() const override { return SendMessageW(hwnd_, BM_GETCHECK, 0, 0) == BST_CHECKED; }
    void setChecked(bool checked) override
    {
        SendMessageW(hwnd_, BM_SETCHECK, checked ? BST_CHECKED : BST_UNCHECKED, 0);
    }
    std::u16string caption() const override { return windowText(hwnd_); }
    void setCaption(std::u16string_view caption) override { setWindowText(hwnd_, std::u16string(caption)); }

private:
    HWND hwnd_ = nullptr;
};

} // namespace vellums::ui
