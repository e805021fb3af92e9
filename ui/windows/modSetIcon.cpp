#include "ui/windows/modSetIcon.h"

namespace vellums::ui::modSetIcon {
namespace {

void setOne(HWND window, HWND owner, const wchar_t* name, WPARAM kind, int widthMetric, int heightMetric)
{
    // Shared icons belong to the system and are never given back.
    const HANDLE icon = LoadImageW(GetModuleHandleW(nullptr), name, IMAGE_ICON, GetSystemMetrics(widthMetric),
        GetSystemMetrics(heightMetric), LR_SHARED);
    if (icon == nullptr)
        return;
    SendMessageW(window, WM_SETICON, kind, reinterpret_cast<LPARAM>(icon));
    if (owner != nullptr)
        SendMessageW(owner, WM_SETICON, kind, reinterpret_cast<LPARAM>(icon));
}

} // namespace

void setIcon(HWND window, const wchar_t* groupIcon, bool onOwnerToo)
{
    const HWND owner = onOwnerToo ? GetWindow(window, GW_OWNER) : nullptr;
    setOne(window, owner, groupIcon, ICON_BIG, SM_CXICON, SM_CYICON);
    setOne(window, owner, groupIcon, ICON_SMALL, SM_CXSMICON, SM_CYSMICON);
}

} // namespace vellums::ui::modSetIcon
