// Device contexts, what is selected into them, and the measures of texts that come from them.
#pragma once

#include <string>

#include <windows.h>

namespace vellums::ui {

// The device context of a window, given back at the end. Null: that of the screen.
class DeviceContext {
public:
    enum class Of { ClientArea, WholeWindow };

    explicit DeviceContext(HWND window, Of area = Of::ClientArea)
        : window_(window)
        , dc_(area == Of::ClientArea ? GetDC(window) : GetWindowDC(window))
    {
    }
    DeviceContext(const DeviceContext&) = delete;
    DeviceContext& operator=(const DeviceContext&) = delete;
    ~DeviceContext()
    {
        if (dc_ != nullptr)
            ReleaseDC(window_, dc_);
    }
    HDC get() const { return dc_; }

private:
    HWND window_;
    HDC dc_;
};

// Selects an object into a device context, and what was there before again at the end. Null: selects
// nothing.
class Selected {
public:
    Selected(HDC dc, HGDIOBJ object)
        : dc_(dc)
        , before_(object == nullptr ? nullptr : SelectObject(dc, object))
    {
    }
    Selected(const Selected&) = delete;
    Selected& operator=(const Selected&) = delete;
    ~Selected()
    {
        if (before_ != nullptr)
            SelectObject(dc_, before_);
    }

private:
    HDC dc_;
    HGDIOBJ before_;
};

// In pixels; null: the font that a device context begins with.
int lineHeight(HFONT font);
int textWidth(HFONT font, const std::u16string& text);

} // namespace vellums::ui
