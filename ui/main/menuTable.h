// The menus of the main window as tables: captions in both languages, keys, the command, what it says of
// itself, and what is shown from the start. One row a command; menus, accelerators, dispatch and help are
// made of it.
#pragma once

#include <cstddef>
#include <span>
#include <string>

#include <windows.h>

namespace vellums::ui {

struct Commands;

// What an entry does, within the gate.
using CommandHandler = void (*)(Commands& commands);
// What entry number `index` of an array does.
using ArrayHandler = void (*)(Commands& commands, std::size_t index);

struct MenuEntry {
    const char16_t* english = nullptr; // null: a line
    const char16_t* chinese = nullptr; // null: the English caption stays
    int id = 0;                        // 0: a line without a name
    WORD key = 0;                      // an accelerator of the window
    BYTE modifiers = 0;
    CommandHandler handler = nullptr; // null for an entry: its command is not there yet, it is grey
    // For the status line while the entry is highlighted; null: the caption says it all.
    const char16_t* help = nullptr;
    const char16_t* helpChinese = nullptr;
    enum class Shown { Yes, Never, Later } shown = Shown::Yes; // Later: it comes while the program runs
    bool keyInCaption = true;
    std::span<const MenuEntry> entries = {}; // of a submenu
    bool isMenu = false;                     // a submenu, though perhaps an empty one

    bool isLine() const { return english == nullptr; }
    bool isNotYetThere() const { return !isLine() && !isMenu && handler == nullptr; }
};

// The menu bar, tool items included.
std::span<const MenuEntry> menuBarEntries();
// The context menus; each is an entry with a submenu.
std::span<const MenuEntry> contextMenuEntries();
// The entry with this id, wherever it stands; null: none.
const MenuEntry* menuEntry(int id);

// The arrays that are filled while the program runs.
struct MenuArrayCommand {
    int firstId;
    int lastId;
    ArrayHandler handler;
};
// The array that an id belongs to; null: none.
const MenuArrayCommand* arrayCommand(int id);

// The caption as it is shown: in the language, with the key behind a tab.
std::u16string shownCaption(const MenuEntry& entry, bool chinese);

} // namespace vellums::ui
