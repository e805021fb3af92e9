// The entry of a list under the mouse.
#pragma once

#include <windows.h>

namespace vellums::ui::modLstRclick {

// Selects the entry under a point of the list (twips, from its upper left corner) and gives its index. An
// entry that is part of a larger selection leaves that as it is. -1: no list, or no entry there; then
// nothing changes.
int selectItemUnderPoint(HWND list, double x, double y, double twipsPerPixelX, double twipsPerPixelY);

} // namespace vellums::ui::modLstRclick
