// Names of controls for screen readers, where the window's own text does not tell.
#pragma once

#include <string>

#include <windows.h>

namespace vellums::ui {

// An unseen label; made right before a control, it names that control for whoever goes by labels.
void createUnseenLabel(HWND parent, int id, const std::u16string& name);

// Tells the system's accessibility service, where there is one, what the control is called. Needs COM on
// the thread.
void setAccessibleName(HWND control, const std::u16string& name);

} // namespace vellums::ui
