// Text for Windows: the same UTF-16 units under the name wchar_t.
#pragma once

#include <string>
#include <string_view>

namespace vellums::ui {

inline const wchar_t* wide(const char16_t* text)
{
    return reinterpret_cast<const wchar_t*>(text);
}
inline const wchar_t* wide(const std::u16string& text)
{
    return wide(text.c_str());
}
inline std::u16string fromWide(std::wstring_view text)
{
    return {text.begin(), text.end()};
}

} // namespace vellums::ui
