// The border to the system: window procedures, hooks and callbacks are called by Windows, which knows no
// exceptions. What would be thrown out of one ends here and becomes a line in the panel.
#pragma once

#include <utility>

#include <windows.h>

namespace vellums::ui::border {

// Where a failure is told: a window whose text is set, with no memory taken. Null: nowhere.
void tellIn(HWND panel, bool chinese) noexcept;
void tell() noexcept;

// Does the work for the system; where something is thrown the answer is `otherwise`.
template <typename Result, typename Work>
Result guarded(Result otherwise, Work&& work) noexcept
{
    try {
        return std::forward<Work>(work)();
    } catch (...) { // whatever it is, the system must not see it
        tell();
        return otherwise;
    }
}

} // namespace vellums::ui::border
