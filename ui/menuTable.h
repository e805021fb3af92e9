// The menus of the main window: one table feeds both languages, the accelerators and the dispatch.
#pragma once

#include "ui/owned.h"

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace vellums::ui {

struct MenuEntry {
    const char16_t* english;
    const char16_t* chinese; // null: the English caption stays
    int id;                  // 0: a line
    WORD key = 0;            // an accelerator of the window
    BYTE modifiers = 0;
};

struct MenuGroup {
    const char16_t* english; // caption on the menu bar
    const char16_t* chinese;
    std::span<const MenuEntry> entries;
    const MenuGroup* submenu = nullptr; // stands above the entries
};

// The menu bar with its keys shown behind the captions.
OwnedMenu buildMenuBar(bool chinese);
// The context menu of the heading list.
OwnedMenu buildListPopup(bool chinese);
// All keys, one for each command.
OwnedAccelerators buildAccelerators();

// What a tool item or a menu command does, for the status line; empty where the caption says it all.
std::u16string commandHelp(int id, bool chinese);

} // namespace vellums::ui
