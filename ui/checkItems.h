// Things with a check mark: check boxes, menu entries, and entries that become a menu when it pops up.
#pragma once

#include "app/controls.h"
#include "ui/windowText.h"

#include <vector>

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

// Its state is kept here; the window puts the mark on its menu entry when the menu opens.
class MenuCheck : public CheckItem {
public:
    bool checked() const override { return checked_; }
    void setChecked(bool checked) override { checked_ = checked; }
    std::u16string caption() const override { return caption_; }
    void setCaption(std::u16string_view caption) override { caption_ = caption; }

private:
    bool checked_ = false;
    std::u16string caption_;
};

class StoredItems : public MenuItems {
public:
    std::size_t size() const override { return items_.size(); }
    const MenuItem& at(std::size_t index) const override { return items_.at(index); }
    void set(std::size_t index, const MenuItem& item) override
    {
        if (index >= items_.size())
            items_.resize(index + 1);
        items_[index] = item;
    }

private:
    std::vector<MenuItem> items_;
};

} // namespace vellums::ui
