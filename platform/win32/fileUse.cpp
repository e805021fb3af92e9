#include "platform/fileUse.h"

#include "platform/win32/fileRanges.h"
#include "platform/win32/ownedHandle.h"
#include "platform/win32/systemPath.h"

namespace vellums::platform {
namespace {

bool modified(const std::u16string& path, FILETIME& time)
{
    WIN32_FILE_ATTRIBUTE_DATA data{};
    if (!GetFileAttributesExW(systemPath(path).c_str(), GetFileExInfoStandard, &data))
        return false;
    time = data.ftLastWriteTime;
    return true;
}

} // namespace

// Opened for oneself alone, the file shows whether anybody else has it. Locked bytes are asked for as well:
// they may belong to a program on another system, which knows no share modes.
FileUse useOf(const std::u16string& path, std::uint64_t from, std::uint64_t length)
{
    const std::wstring name = systemPath(path);
    OwnedHandle file(CreateFileW(name.c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_EXISTING,
        FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!file && GetLastError() == ERROR_ACCESS_DENIED)
        file = OwnedHandle(CreateFileW(
            name.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!file)
        return GetLastError() == ERROR_SHARING_VIOLATION ? FileUse::Certain : FileUse::None;
    return lockRange(file.get(), from, length, false) == ERROR_LOCK_VIOLATION ? FileUse::Certain
                                                                              : FileUse::None;
}

bool changedAfter(const std::u16string& path, const std::u16string& other)
{
    FILETIME one{};
    FILETIME two{};
    return modified(path, one) && modified(other, two) && CompareFileTime(&one, &two) > 0;
}

} // namespace vellums::platform
