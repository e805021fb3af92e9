// Watches for the menu key (or Shift+F10) while a menu is open: it closes the menu and is remembered.
#pragma once

#include "ui/windows/owned.h"

namespace vellums::ui {

// From its construction to its end; one at a time.
class MenuKeyWatch {
public:
    MenuKeyWatch();
    bool wasPressed() const;

private:
    OwnedHook hook_;
};

} // namespace vellums::ui
