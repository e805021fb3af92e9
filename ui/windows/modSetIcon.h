// Icons of windows, from the program's own resources.
#pragma once

#include <windows.h>

namespace vellums::ui::modSetIcon {

inline constexpr wchar_t kProgramIcon[] = L"KVRN";
inline constexpr wchar_t kTableIcon[] = L"TABLE";

// Sets the group icon in its large and its small size, on the window's owner as well if asked. An icon
// that is not there leaves the window as it was.
void setIcon(HWND window, const wchar_t* groupIcon, bool onOwnerToo);

} // namespace vellums::ui::modSetIcon
