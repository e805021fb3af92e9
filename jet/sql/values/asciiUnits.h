// What the words and numbers of SQL are made of: the digits 0 to 9 and the letters A to Z, no others.
#pragma once

#include <string>
#include <string_view>

namespace vellums::jet::sql {

inline bool isDigit(char16_t c)
{
    return c >= u'0' && c <= u'9';
}

// The word in capital letters; what is no letter of A to Z stays.
inline std::u16string capitals(std::u16string_view word)
{
    std::u16string result(word);
    for (char16_t& c : result)
        if (c >= u'a' && c <= u'z')
            c = static_cast<char16_t>(c - 0x20);
    return result;
}

} // namespace vellums::jet::sql
