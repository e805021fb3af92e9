// The program that was built beside the tests.
#pragma once

#include <string>

#include <windows.h>

namespace vellums::tests {

inline std::wstring builtProgram()
{
    wchar_t path[MAX_PATH] = {};
    GetModuleFileNameW(nullptr, path, MAX_PATH);
    const std::wstring self = path;
    return self.substr(0, self.rfind(L'\\') + 1) + L"Vellums.exe";
}

} // namespace vellums::tests
