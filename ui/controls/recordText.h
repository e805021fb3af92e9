// The two boxes that show the text of the record, one of them at a time: one wraps its lines, the other
// scrolls sideways.
#pragma once

#include "ui/controls/editBox.h"
#include "ui/windows/owned.h"

namespace vellums::ui {

class RecordText : public TextBox {
public:
    void create(HWND parent, int wrappingId, int scrollingId);
    const EditBox& wrapping() const { return txtShowWrap_; }
    const EditBox& scrolling() const { return txtShowNoWrap_; }
    // The one that is shown.
    EditBox& shown() { return wraps_ ? txtShowWrap_ : txtShowNoWrap_; }
    const EditBox& shown() const { return wraps_ ? txtShowWrap_ : txtShowNoWrap_; }
    HWND hwnd() const { return shown().hwnd(); }
    bool holds(HWND window) const { return window == txtShowWrap_.hwnd() || window == txtShowNoWrap_.hwnd(); }

    bool wraps() const { return wraps_; }
    // Shows the other box with the same text and selection, and the same place in the text as far as the
    // caret is seen there. Moves the focus along when the box had it or `withFocus` asks for it. Throws
    // std::bad_alloc where the other box cannot take the text; then nothing has changed.
    void setWraps(bool wraps, bool withFocus);

    // Point sizes may be halves. The caret is scrolled into view where something changed.
    void setFont(const std::u16string& name, double points, int dpi);

    std::u16string text() const override { return shown().text(); }
    void setText(std::u16string_view text) override { shown().setText(text); }
    void focus() override { shown().focus(); }
    TextRange selection() const override { return shown().selection(); }
    void select(TextRange range) override { shown().select(range); }
    void replaceSelection(std::u16string_view text) override { shown().replaceSelection(text); }
    void scrollToCaret() override { shown().scrollToCaret(); }
    void undo() override { shown().undo(); }
    void cut() override { shown().cut(); }
    void copy() override { shown().copy(); }

private:
    EditBox txtShowWrap_;
    EditBox txtShowNoWrap_;
    bool wraps_ = true;
    OwnedFont font_;
};

} // namespace vellums::ui
