#include "ui/windows/deviceContext.h"

#include "ui/windows/wide.h"

namespace vellums::ui {

int lineHeight(HFONT font)
{
    const DeviceContext screen(nullptr);
    const Selected selected(screen.get(), font);
    TEXTMETRICW metrics{};
    GetTextMetricsW(screen.get(), &metrics);
    return metrics.tmHeight;
}

int textWidth(HFONT font, const std::u16string& text)
{
    const DeviceContext screen(nullptr);
    const Selected selected(screen.get(), font);
    SIZE size{};
    GetTextExtentPoint32W(screen.get(), wide(text), static_cast<int>(text.size()), &size);
    return size.cx;
}

} // namespace vellums::ui
