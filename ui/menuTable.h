// The menus of the main window as tables: captions in both languages, keys, what is shown from the
// start, and what belongs to commands that do not exist yet.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

#include <windows.h>

namespace vellums::ui {

struct MenuEntry {
    const char16_t* english; // null: a line
    const char16_t* chinese; // null: the English caption stays
    int id;                  // 0: a line without a name
    WORD key = 0;            // an accelerator of the window
    BYTE modifiers = 0;
    const MenuEntry* submenu = nullptr; // its entries, `count` of them
    std::size_t count = 0;
    bool isMenu = false; // a submenu, though perhaps an empty one

    std::span<const MenuEntry> entries() const { return {submenu, count}; }
    bool isLine() const { return english == nullptr; }
};

// The menu bar, tool items included.
std::span<const MenuEntry> menuBarEntries();
// The context menus; each is an entry with a submenu.
std::span<const MenuEntry> contextMenuEntries();

// The caption as it is shown: in the language, with the key behind a tab.
std::u16string shownCaption(const MenuEntry& entry, bool chinese);

// Never in any menu.
bool isNeverShown(int id);
// Shown, but without a command yet: disabled, and its key stays with the text boxes.
bool isNotYetThere(int id);

// What a tool item or a menu command does, for the status line; empty where the caption says it all.
std::u16string commandHelp(int id, bool chinese);

} // namespace vellums::ui
