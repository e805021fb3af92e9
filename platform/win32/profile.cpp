#include "platform/profile.h"

#include "platform/win32/systemPath.h"

#include <windows.h>

namespace vellums::platform {

namespace {

bool markedReadOnly(const std::wstring& path)
{
    const DWORD marks = GetFileAttributesW(path.c_str());
    return marks != INVALID_FILE_ATTRIBUTES && (marks & FILE_ATTRIBUTE_READONLY) != 0;
}

} // namespace

// The W functions read and write the same ANSI files, and reach a file in any folder.

std::u16string readProfile(const std::u16string& path, std::u16string_view section, std::u16string_view key,
    std::u16string_view defaultValue)
{
    wchar_t value[256] = {};
    GetPrivateProfileStringW(toWide(section).c_str(), toWide(key).c_str(), toWide(defaultValue).c_str(),
        value, 256, toWide(path).c_str());
    return fromWide(std::wstring_view(value));
}

bool writeProfile(const std::u16string& path, std::u16string_view section, std::u16string_view key,
    std::u16string_view value)
{
    return !markedReadOnly(toWide(path)) &&
        WritePrivateProfileStringW(toWide(section).c_str(), toWide(key).c_str(),
            toWide(profileText(value)).c_str(), toWide(path).c_str()) != FALSE;
}

bool deleteProfile(const std::u16string& path, std::u16string_view section, std::u16string_view key)
{
    return WritePrivateProfileStringW(
               toWide(section).c_str(), toWide(key).c_str(), nullptr, toWide(path).c_str()) != FALSE;
}

} // namespace vellums::platform
