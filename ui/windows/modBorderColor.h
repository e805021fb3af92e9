// Borders of controls in a colour of our own.
#pragma once

#include <windows.h>

namespace vellums::ui::modBorderColor {

// Subclasses the control once; a second call leaves it as it is. The border is drawn after each WM_PAINT
// over the outermost pixels of the control's window, in a quiet grey blue, or the colour of window frames
// in high contrast.
void subclass(HWND control);

} // namespace vellums::ui::modBorderColor
