#include "ui/windows/subclass.h"

#include "ui/windows/border.h"

#include <utility>

namespace vellums::ui {

Subclass::Subclass(HWND window, SUBCLASSPROC procedure, void* data)
    : place_(std::make_unique<Place>(Place{window, procedure, data}))
{
    if (!SetWindowSubclass(window, subclassProc, reinterpret_cast<UINT_PTR>(place_.get()),
            reinterpret_cast<DWORD_PTR>(place_.get())))
        place_->window = nullptr;
}

Subclass& Subclass::operator=(Subclass&& other) noexcept
{
    if (this != &other) {
        takeOff();
        place_ = std::move(other.place_);
    }
    return *this;
}

void Subclass::takeOff() noexcept
{
    if (place_ != nullptr)
        leave(*place_);
}

void Subclass::leave(Place& place) noexcept
{
    if (const HWND window = std::exchange(place.window, nullptr); window != nullptr)
        RemoveWindowSubclass(window, subclassProc, reinterpret_cast<UINT_PTR>(&place));
}

// The place may be gone once the procedure has been called: its owner may end by this very message.
LRESULT CALLBACK Subclass::subclassProc(
    HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR number, DWORD_PTR data)
{
    auto* place = reinterpret_cast<Place*>(data);
    const SUBCLASSPROC procedure = place->procedure;
    const auto argument = reinterpret_cast<DWORD_PTR>(place->data);
    if (message == WM_NCDESTROY) // nothing comes after it
        leave(*place);
    return border::guarded<LRESULT>(
        0, [&] { return procedure(window, message, wParam, lParam, number, argument); });
}

} // namespace vellums::ui
