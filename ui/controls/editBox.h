// A text box over an EDIT control.
#pragma once

#include "ports/controls.h"

#include <windows.h>

namespace vellums::ui {

class EditBox : public TextBox {
public:
    // A box of one line, of several lines that wrap, or of several lines that scroll sideways.
    enum class Kind { OneLine, Wrapping, Scrolling };
    // Makes the control; its parent owns it.
    void create(HWND parent, int id, Kind kind);
    HWND hwnd() const { return hwnd_; }
    void setFont(HFONT font, int dpi) const; // not owned

    std::u16string text() const override;
    void setText(std::u16string_view text) override;
    void focus() override;
    TextRange selection() const override;
    void select(TextRange range) override;
    void replaceSelection(std::u16string_view text) override;
    void scrollToCaret() override;
    void undo() override;
    void cut() override;
    void copy() override;

private:
    bool isOneLine() const;

    HWND hwnd_ = nullptr;
};

} // namespace vellums::ui
