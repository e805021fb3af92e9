#include "platform/win32/systemPath.h"

#include <algorithm>

namespace vellums::platform {

std::u16string fromWide(std::wstring_view text)
{
    return std::u16string(text.begin(), text.end());
}

std::wstring toWide(std::u16string_view text)
{
    return std::wstring(text.begin(), text.end());
}

std::wstring systemPath(std::u16string_view path)
{
    // The limit of files is 260, but a folder must leave room for a name of 12.
    constexpr std::size_t kLongPath = 248;
    std::wstring wide = toWide(path);
    if (wide.size() < kLongPath || wide.rfind(L"\\\\?\\", 0) == 0)
        return wide;
    std::replace(wide.begin(), wide.end(), L'/', L'\\');
    const bool drive = wide[1] == L':' && wide[2] == L'\\';
    const bool share = wide[0] == L'\\' && wide[1] == L'\\';
    if (!drive && !share)
        return wide;
    // The literal form knows no "." and "..": let Windows resolve them first.
    std::wstring full(32768, L'\0');
    const DWORD length =
        GetFullPathNameW(wide.c_str(), static_cast<DWORD>(full.size()), full.data(), nullptr);
    if (length == 0 || length >= full.size())
        return wide;
    full.resize(length);
    return share ? L"\\\\?\\UNC" + full.substr(1) : L"\\\\?\\" + full;
}

FileFault faultOfWindows(DWORD code)
{
    switch (code) {
    case ERROR_FILE_NOT_FOUND:
        return FileFault::NotFound;
    case ERROR_PATH_NOT_FOUND:
    case ERROR_INVALID_DRIVE:
    case ERROR_BAD_NETPATH:
    case ERROR_BAD_NET_NAME:
        return FileFault::FolderNotFound;
    case ERROR_ACCESS_DENIED:
        return FileFault::Denied;
    case ERROR_WRITE_PROTECT:
        return FileFault::ReadOnly;
    case ERROR_SHARING_VIOLATION:
    case ERROR_LOCK_VIOLATION:
        return FileFault::InUse;
    case ERROR_FILE_EXISTS:
    case ERROR_ALREADY_EXISTS:
        return FileFault::Exists;
    case ERROR_DISK_FULL:
    case ERROR_HANDLE_DISK_FULL:
        return FileFault::DiskFull;
    default:
        return FileFault::Failed;
    }
}

} // namespace vellums::platform
