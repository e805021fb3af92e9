// What every list over a LISTBOX control has in common. How many entries may be selected differs.
//
// The list shows whole rows only: what is left of its height below the last of them is margin, as is a
// small strip before the texts.
#pragma once

#include "ports/controls.h"
#include "ui/windows/subclass.h"

#include <windows.h>

namespace vellums::ui {

class ListControl : public ListBox {
public:
    HWND hwnd() const { return hwnd_; }

    void setFont(HFONT font, int dpi); // not owned

    void fill(const std::vector<ListEntry>& entries) override;
    int count() const override;
    std::u16string text(int index) const override;
    std::int32_t datum(int index) const override;
    void insert(int index, const ListEntry& entry) override;
    void remove(const std::vector<int>& indexes) override;
    bool enabled() const override { return IsWindowEnabled(hwnd_) != FALSE; }
    void setEnabled(bool enabled) override;
    std::u16string tag() const override { return tag_; }
    void setTag(std::u16string_view tag) override { tag_ = tag; }

protected:
    // Makes the control, with these styles and those of every list; its parent owns it.
    void createList(HWND parent, int id, DWORD style);

    // Entries change one by one while nothing is drawn: with drawing on, each would move the scroll bar.
    class DrawingOff {
    public:
        explicit DrawingOff(HWND window);
        DrawingOff(const DrawingOff&) = delete;
        DrawingOff& operator=(const DrawingOff&) = delete;
        ~DrawingOff();

    private:
        HWND window_;
    };

    // Sends the control a message past whoever watches it: asking them for each of some ten thousand
    // entries takes longer than the entries themselves.
    LRESULT send(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) const
    {
        return CallWindowProcW(classProc_, hwnd_, message, wParam, lParam);
    }

private:
    static LRESULT CALLBACK marginProc(
        HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR id, DWORD_PTR self);
    void takeMargins(RECT& client) const;
    void paintMargins() const;
    bool isLeftMargin(POINT screen) const;

    HWND hwnd_ = nullptr;
    WNDPROC classProc_ = nullptr;
    Subclass margins_;
    int inset_ = 0; // pixels before the texts
    std::u16string tag_;
};

} // namespace vellums::ui
