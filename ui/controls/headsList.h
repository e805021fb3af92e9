// The heading list: several entries may be selected.
#pragma once

#include "ui/controls/listControl.h"

namespace vellums::ui {

class HeadsList : public ListControl {
public:
    void create(HWND parent, int id) { createList(parent, id, WS_VISIBLE | LBS_EXTENDEDSEL); }

    void setText(int index, std::u16string_view text) override;
    std::vector<int> selected() const override;
    int current() const override;
    void select(int index) override;
    bool visible() const override { return IsWindowVisible(hwnd()) != FALSE; }
    void setVisible(bool visible) override { ShowWindow(hwnd(), visible ? SW_SHOWNA : SW_HIDE); }
};

} // namespace vellums::ui
