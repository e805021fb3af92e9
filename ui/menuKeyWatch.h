// Watches for the menu key (or Shift+F10) while a menu is open: it closes the menu and is remembered.
#pragma once

#include "ui/owned.h"

namespace vellums::ui {

struct HookKind {
    using Raw = HHOOK;
    static Raw none() noexcept { return nullptr; }
    static void giveBack(Raw hook) noexcept { UnhookWindowsHookEx(hook); }
};
using OwnedHook = Owned<HookKind>;

// From its construction to its end; one at a time.
class MenuKeyWatch {
public:
    MenuKeyWatch();
    bool wasPressed() const;

private:
    OwnedHook hook_;
};

} // namespace vellums::ui
