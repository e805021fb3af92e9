// The list of places found in the text, one of which is selected. An entry may hold a line of any length:
// the list draws its entries itself, and of a long one only what can be seen.
#pragma once

#include "ui/controls/listControl.h"

#include <functional>

namespace vellums::ui {

class ResultsList : public ListControl {
public:
    // Made hidden and not enabled.
    void create(HWND parent, int id);
    // Raised when the list was shown or hidden: the text beside it takes less or more room.
    std::function<void()> VisibleChanged;

    // Answers the parent's WM_MEASUREITEM and WM_DRAWITEM.
    void measure(MEASUREITEMSTRUCT& item) const;
    void draw(const DRAWITEMSTRUCT& item, COLORREF text, COLORREF background) const;

    void setText(int index, std::u16string_view text) override;
    std::vector<int> selected() const override;
    int current() const override;
    void select(int index) override;
    bool visible() const override { return visible_; }
    void setVisible(bool visible) override;

private:
    bool visible_ = false;
};

} // namespace vellums::ui
