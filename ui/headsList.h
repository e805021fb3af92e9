// The heading list over a LISTBOX control with extended selection.
#pragma once

#include "app/controls.h"

#include <windows.h>

namespace vellums::ui {

class HeadsList : public ListBox {
public:
    void create(HWND parent, int id);
    HWND hwnd() const { return hwnd_; }

    void fill(const std::vector<ListEntry>& entries) override;
    int count() const override;
    std::int32_t datum(int index) const override;
    void insert(int index, const ListEntry& entry) override;
    void setText(int index, std::u16string_view text) override;
    void remove(const std::vector<int>& indexes) override;
    std::vector<int> selected() const override;
    int current() const override;
    void select(int index) override;
    std::u16string tag() const override { return tag_; }
    void setTag(std::u16string_view tag) override { tag_ = tag; }

private:
    HWND hwnd_ = nullptr;
    std::u16string tag_;
};

} // namespace vellums::ui
