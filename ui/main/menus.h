// The menus of a main window as they stand: what is shown, checked, enabled and called how.
#pragma once

#include "ports/controls.h"
#include "ui/windows/owned.h"

#include <map>
#include <string>
#include <vector>

#include <windows.h>

namespace vellums::ui {

class Menus {
public:
    // Makes the bar and the context menus in the language. The bar belongs to the window that takes it.
    explicit Menus(bool chinese);
    Menus(const Menus&) = delete;
    Menus& operator=(const Menus&) = delete;

    HMENU takeBar() { return bar_.release(); }
    // The window that draws the bar, from when it is there.
    void setWindow(HWND window) { window_ = window; }
    // The menu that the entry `id` opens, of the bar or a context menu; null: none.
    HMENU popUpOf(int id) const;

    // Entries by id, wherever they stand; ids that are in no menu are passed over.
    void setCaption(int id, const std::u16string& caption);
    std::u16string caption(int id) const;
    void setChecked(int id, bool checked);
    bool isChecked(int id) const;
    void setEnabled(int id, bool enabled);
    bool isEnabled(int id) const;
    // The tool item "O" is there only while there is a source to view.
    void showSourceItem(bool shown);

    // A copy of a menu that can pop up while the menu itself hangs on the bar.
    OwnedMenu copyOf(HMENU menu) const;

private:
    void append(HMENU menu, const struct MenuEntry& entry, bool chinese);
    void redrawIfBar(HMENU menu) const;

    OwnedMenu bar_;
    HMENU barHandle_ = nullptr;
    HWND window_ = nullptr;
    std::vector<OwnedMenu> contexts_;
    std::map<int, HMENU> popUps_;
    std::map<int, HMENU> homes_; // the menu in which an entry stands
};

// An array of entries in one of the menus. What is not visible is not in the menu.
class MenuArray : public MenuItems {
public:
    // What the captions are: texts in which "&" marks a key, or names that are shown as they are.
    enum class Captions { Marked, Names };
    // Entries get the ids from `baseId` on and stand before the entry `beforeId`; 0: at the end.
    void attach(HMENU menu, int baseId, int mostEntries, Captions captions, int beforeId = 0);
    int baseId() const { return baseId_; }
    bool owns(int id) const { return id >= baseId_ && id < baseId_ + static_cast<int>(items_.size()); }

    std::size_t size() const override { return items_.size(); }
    const MenuItem& at(std::size_t index) const override { return items_.at(index); }
    void set(std::size_t index, const MenuItem& item) override;
    // Checks one entry alone; none where the index is out of range.
    void checkOnly(std::size_t index);

private:
    void show(std::size_t index);

    HMENU menu_ = nullptr;
    int baseId_ = 0;
    int mostEntries_ = 0;
    int beforeId_ = 0;
    Captions captions_ = Captions::Marked;
    std::vector<MenuItem> items_;
};

// The check mark of an entry.
class MenuCheck : public CheckItem {
public:
    void attach(Menus& menus, int id)
    {
        menus_ = &menus;
        id_ = id;
    }
    bool checked() const override { return menus_->isChecked(id_); }
    void setChecked(bool checked) override { menus_->setChecked(id_, checked); }
    std::u16string caption() const override { return menus_->caption(id_); }
    void setCaption(std::u16string_view caption) override
    {
        menus_->setCaption(id_, std::u16string(caption));
    }

private:
    Menus* menus_ = nullptr;
    int id_ = 0;
};

// A menu or an entry that can be grey.
class MenuSwitch : public Switchable {
public:
    void attach(Menus& menus, int id)
    {
        menus_ = &menus;
        id_ = id;
    }
    bool enabled() const override { return menus_->isEnabled(id_); }
    void setEnabled(bool enabled) override { menus_->setEnabled(id_, enabled); }

private:
    Menus* menus_ = nullptr;
    int id_ = 0;
};

// All keys of the commands that exist, one for each.
OwnedAccelerators buildAccelerators();

} // namespace vellums::ui
