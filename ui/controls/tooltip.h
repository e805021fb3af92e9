// The text that shows when the mouse rests on a control; empty: nothing shows.
#pragma once

#include "ports/controls.h"

#include <windows.h>

namespace vellums::ui {

class Tooltip : public Label {
public:
    Tooltip() = default;
    Tooltip(const Tooltip&) = delete;
    Tooltip& operator=(const Tooltip&) = delete;
    ~Tooltip() override { destroy(); }

    // `control` lies in `parent`.
    void create(HWND parent, HWND control);
    void destroy();
    HWND hwnd() const { return hwnd_; }

    std::u16string text() const override { return text_; }
    void setText(std::u16string_view text) override;

private:
    void limitWidth() const;

    HWND hwnd_ = nullptr;
    HWND parent_ = nullptr;
    HWND control_ = nullptr;
    std::u16string text_;
};

} // namespace vellums::ui
