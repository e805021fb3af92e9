#include "ui/windows/modLstRclick.h"

#include <cwchar>

namespace vellums::ui::modLstRclick {
namespace {

bool isListBox(HWND window)
{
    wchar_t name[16] = {};
    GetClassNameW(window, name, 16);
    return _wcsicmp(name, L"LISTBOX") == 0;
}

bool holds(const RECT& rect, int x, int y)
{
    return x >= rect.left && x <= rect.right && y >= rect.top && y <= rect.bottom;
}

void selectAlone(HWND list, WPARAM index)
{
    if (SendMessageW(list, LB_SETCURSEL, index, 0) != LB_ERR)
        return;
    SendMessageW(list, LB_SETSEL, FALSE, -1); // a list with several selections
    SendMessageW(list, LB_SETSEL, TRUE, static_cast<LPARAM>(index));
}

} // namespace

int selectItemUnderPoint(HWND list, double x, double y, double twipsPerPixelX, double twipsPerPixelY)
{
    if (!isListBox(list))
        return -1;
    const int pixelX = static_cast<int>(x / twipsPerPixelX);
    const int pixelY = static_cast<int>(y / twipsPerPixelY);
    const LRESULT count = SendMessageW(list, LB_GETCOUNT, 0, 0);
    // From the first visible entry down to the point, as LB_ITEMFROMPOINT would give the nearest entry
    // instead.
    for (LRESULT i = SendMessageW(list, LB_GETTOPINDEX, 0, 0); i < count; ++i) {
        const auto index = static_cast<WPARAM>(i);
        RECT rect{};
        SendMessageW(list, LB_GETITEMRECT, index, reinterpret_cast<LPARAM>(&rect));
        if (rect.top > pixelY)
            break;
        if (!holds(rect, pixelX, pixelY))
            continue;
        if (SendMessageW(list, LB_GETSEL, index, 0) <= 0)
            selectAlone(list, index);
        return static_cast<int>(i);
    }
    return -1;
}

} // namespace vellums::ui::modLstRclick
