// A panel that shows one line of status text.
//
// An inner label, lblCaption, fills the panel but for a small inset and carries text and colours. The
// whole text is the label's tooltip, so a text that is cut off at the edge can still be read.
#pragma once

#include "ports/controls.h"
#include "store/notebook.h"
#include "ui/controls/tooltip.h"
#include "ui/windows/owned.h"
#include "ui/windows/subclass.h"

#include <cstdint>
#include <functional>
#include <map>
#include <string>

#include <windows.h>

namespace vellums::ui {

// Values by name, as a container keeps them for its controls.
using PropertyBag = std::map<std::u16string, std::u16string>;

enum class Alignment : std::uint8_t { Left = 0, Right = 1, Centre = 2 };

class ucStatus : public Label {
public:
    ucStatus() = default;
    ucStatus(const ucStatus&) = delete;
    ucStatus& operator=(const ucStatus&) = delete;

    void create(HWND parent, int id);
    HWND hwnd() const { return hwnd_; }

    // Colours are Windows colour values; with the top bit set, the number of a system colour.
    std::uint32_t BackColor() const { return backColor_; }
    void setBackColor(std::uint32_t colour);
    std::uint32_t ForeColor() const { return foreColor_; }
    void setForeColor(std::uint32_t colour);
    HFONT Font() const { return font_; }
    void setFont(HFONT font); // not owned
    std::u16string Caption() const;
    void setCaption(const std::u16string& caption);
    Alignment alignment() const { return alignment_; }
    void setAlignment(Alignment alignment);

    // Raised when the same happens on the inner label. X and Y in pixels of the panel.
    std::function<void()> Click;
    std::function<void()> DblClick;
    std::function<void(int button, int shift, int x, int y)> MouseUp;
    // Raised when the text has changed.
    std::function<void()> Change;

    // Colours, font ("name,height in pixels"), caption and alignment; the caption is written but not read
    // back, it is filled at run time. Nothing in the program keeps them in a bag; a designer of forms would.
    void writeProperties(PropertyBag& bag) const;
    void readProperties(const PropertyBag& bag);

    std::u16string text() const override { return Caption(); }
    void setText(std::u16string_view text) override { setCaption(std::u16string(text)); }

private:
    static LRESULT CALLBACK panelProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
    static LRESULT CALLBACK labelProc(
        HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR id, DWORD_PTR self);
    LRESULT onPanel(UINT message, WPARAM wParam, LPARAM lParam);
    bool onLabelMouse(UINT message, WPARAM wParam, LPARAM lParam);
    void placeLabel(int width, int height);
    LRESULT paintLabel(HDC dc);

    HWND hwnd_ = nullptr;
    HWND lblCaption_ = nullptr;
    Tooltip tooltip_;
    Subclass label_;
    OwnedBrush brush_;
    HFONT font_ = nullptr;
    OwnedFont readFont_;                   // made by readProperties()
    std::uint32_t backColor_ = 0x8000000F; // button face
    std::uint32_t foreColor_ = 0x80000012; // button text
    Alignment alignment_ = Alignment::Left;
};

} // namespace vellums::ui
