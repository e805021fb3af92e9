// The digits that numbers, dates and names of SQL are made of: 0 to 9, no others.
#pragma once

namespace vellums::jet::sql {

inline bool isDigit(char16_t c)
{
    return c >= u'0' && c <= u'9';
}

} // namespace vellums::jet::sql
