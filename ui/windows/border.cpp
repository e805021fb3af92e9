#include "ui/windows/border.h"

namespace vellums::ui::border {
namespace {

// Window procedures have no object of the program's to ask.
HWND& panelOf() noexcept
{
    static HWND panel = nullptr;
    return panel;
}

bool& isChinese() noexcept
{
    static bool chinese = false;
    return chinese;
}

} // namespace

void tellIn(HWND panel, bool chinese) noexcept
{
    panelOf() = panel;
    isChinese() = chinese;
}

void tell() noexcept
{
    if (panelOf() != nullptr)
        SetWindowTextW(panelOf(),
            isChinese() ? L"内存不足或内部错误; 文本框中的内容未受影响。"
                        : L"Not enough memory, or a fault of the program; the texts in the boxes are as they "
                          L"were.");
}

} // namespace vellums::ui::border
