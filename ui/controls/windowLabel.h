// The text of a window as a label: a STATIC control, or the caption of the main window.
#pragma once

#include "ports/controls.h"
#include "ui/controls/windowText.h"

namespace vellums::ui {

class WindowLabel : public Label {
public:
    void attach(HWND window) { hwnd_ = window; }
    HWND hwnd() const { return hwnd_; }
    std::u16string text() const override { return windowText(hwnd_); }
    void setText(std::u16string_view text) override { setWindowText(hwnd_, std::u16string(text)); }

private:
    HWND hwnd_ = nullptr;
};

} // namespace vellums::ui
