#include "platform/registry.h"

#include "platform/win32/systemPath.h"

#include <algorithm>

#include <windows.h>

namespace vellums::platform {
namespace {

HKEY rootKey(RegistryRoot root)
{
    switch (root) {
    case RegistryRoot::ClassesRoot:
        return HKEY_CLASSES_ROOT;
    case RegistryRoot::CurrentUser:
        return HKEY_CURRENT_USER;
    case RegistryRoot::LocalMachine:
        return HKEY_LOCAL_MACHINE;
    }
    return HKEY_LOCAL_MACHINE;
}

REGSAM viewFlag(RegistryView view)
{
    switch (view) {
    case RegistryView::Own:
        return 0;
    case RegistryView::Bits32:
        return KEY_WOW64_32KEY;
    case RegistryView::Bits64:
        return KEY_WOW64_64KEY;
    }
    return 0;
}

class OwnedKey {
public:
    OwnedKey() = default;
    OwnedKey(const OwnedKey&) = delete;
    OwnedKey& operator=(const OwnedKey&) = delete;
    ~OwnedKey()
    {
        if (raw_ != nullptr)
            RegCloseKey(raw_);
    }
    HKEY get() const { return raw_; }
    HKEY* put() { return &raw_; }

private:
    HKEY raw_ = nullptr;
};

} // namespace

RegistryText readRegistry(
    RegistryRoot root, std::u16string_view key, std::u16string_view name, RegistryView view)
{
    OwnedKey open;
    const LONG opened =
        RegOpenKeyExW(rootKey(root), toWide(key).c_str(), 0, KEY_READ | viewFlag(view), open.put());
    if (opened != ERROR_SUCCESS)
        return {opened, {}};
    const std::wstring wideName = toWide(name);
    std::wstring text;
    for (DWORD bytes = 256;;) {
        // One unit more: a value of another kind may have an odd number of bytes.
        text.resize(bytes / sizeof(wchar_t) + 1);
        DWORD kind = 0;
        DWORD size = bytes;
        const LONG result = RegQueryValueExW(
            open.get(), wideName.c_str(), nullptr, &kind, reinterpret_cast<BYTE*>(text.data()), &size);
        if (result == ERROR_MORE_DATA) {
            bytes = size > bytes ? size : bytes * 2; // it may grow between two calls
            continue;
        }
        if (result != ERROR_SUCCESS)
            return {result, {}};
        if (kind != REG_SZ && kind != REG_EXPAND_SZ)
            return {ERROR_FILE_NOT_FOUND, {}};
        text.resize(size / sizeof(wchar_t));
        text.resize(std::min(text.find(L'\0'), text.size())); // the terminator may be missing
        return {0, fromWide(text)};
    }
}

} // namespace vellums::platform
