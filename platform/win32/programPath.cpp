#include "platform/programPath.h"

#include "platform/win32/systemPath.h"

#include <windows.h>

namespace vellums::platform {

std::u16string programFile()
{
    constexpr std::size_t kLongestPath = 32768;
    for (std::wstring path(MAX_PATH, L'\0');; path.resize(path.size() * 2)) {
        const DWORD length = GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
        // The call tells no needed length: as many characters as there was room for means that it was too
        // little.
        if (length < path.size() || path.size() >= kLongestPath)
            return fromWide(std::wstring_view(path).substr(0, length));
    }
}

} // namespace vellums::platform
