#include "ui/windows/modRegistry.h"

#include "ui/windows/wide.h"

#include <algorithm>
#include <utility>

namespace vellums::ui::modRegistry {
namespace {

constexpr char16_t kNotAString[] = u"Specified Key\\Value combination is not a 'String' value.";

// Closes the key, and tells whether that worked.
class OpenKey {
public:
    OpenKey() = default;
    OpenKey(const OpenKey&) = delete;
    OpenKey& operator=(const OpenKey&) = delete;
    ~OpenKey() { close(); }
    HKEY* put() { return &key_; }
    HKEY get() const { return key_; }
    LSTATUS close()
    {
        const HKEY key = std::exchange(key_, nullptr);
        return key == nullptr ? ERROR_SUCCESS : RegCloseKey(key);
    }

private:
    HKEY key_ = nullptr;
};

std::u16string systemText(LSTATUS error)
{
    wchar_t text[512] = {};
    const DWORD length = FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr,
        static_cast<DWORD>(error), 0, text, 512, nullptr);
    std::u16string found = fromWide({text, length});
    while (!found.empty() && (found.back() == u'\n' || found.back() == u'\r'))
        found.pop_back();
    return found;
}

std::u16string failure(const char16_t* call, LSTATUS error)
{
    const std::string number = std::to_string(error);
    return std::u16string(u"An error occured while calling the ") + call +
        u" Windows API function.\r\nBelow is the error information:\r\nError Number = " +
        std::u16string(number.begin(), number.end()) + u"\r\nError Description = " + systemText(error);
}

// The text, or what went wrong in `problem`.
std::optional<std::u16string> read(
    HKEY root, const std::u16string& path, const std::u16string& name, std::u16string& problem)
{
    OpenKey key;
    if (const LSTATUS error = RegOpenKeyExW(root, wide(path), 0, KEY_READ, key.put());
        error != ERROR_SUCCESS) {
        problem = failure(u"RegOpenKeyEx", error);
        return std::nullopt;
    }
    DWORD type = 0;
    DWORD bytes = 0;
    // First for the type and the length, then for the text.
    LSTATUS error = RegQueryValueExW(key.get(), wide(name), nullptr, &type, nullptr, &bytes);
    if (error == ERROR_SUCCESS && type != REG_SZ) {
        problem = kNotAString;
        return std::nullopt;
    }
    std::u16string text(bytes / sizeof(char16_t), u'\0');
    if (error == ERROR_SUCCESS && !text.empty())
        error = RegQueryValueExW(
            key.get(), wide(name), nullptr, &type, reinterpret_cast<BYTE*>(text.data()), &bytes);
    if (error != ERROR_SUCCESS) {
        problem = failure(u"RegQueryValueEx", error);
        return std::nullopt;
    }
    text.resize(std::min(text.size(), text.find(u'\0'))); // a value may lack its terminator, or hold more
    if (error = key.close(); error != ERROR_SUCCESS) {
        problem = failure(u"RegCloseKey", error);
        return std::nullopt;
    }
    return text;
}

} // namespace

std::optional<std::u16string> readString(
    HWND owner, HKEY root, const std::u16string& path, const std::u16string& name, const Report& report)
{
    constexpr char16_t kTitle[] = u"  Windows API Error";
    std::u16string problem;
    const std::optional<std::u16string> text = read(root, path, name, problem);
    if (!text && report)
        report(kTitle, problem);
    else if (!text)
        MessageBoxW(owner, wide(problem), wide(kTitle), MB_OK | MB_ICONERROR);
    return text;
}

std::u16string typeName(DWORD type)
{
    switch (type) {
    case REG_NONE:
        return u"Undefined Type";
    case REG_SZ:
        return u"String";
    case REG_EXPAND_SZ:
        return u"Unexpanded references to an environment variable";
    case REG_BINARY:
        return u"Binary";
    case REG_DWORD: // the little-endian one is the same number
        return u"DWORD";
    case REG_DWORD_BIG_ENDIAN:
        return u"DWORD - Big Endian";
    case REG_LINK:
        return u"Unicode Symbolic Link";
    case REG_MULTI_SZ:
        return u"String Array";
    case REG_RESOURCE_LIST:
        return u"Device Driver Resource List";
    default:
        return u"Unknown Type";
    }
}

} // namespace vellums::ui::modRegistry
