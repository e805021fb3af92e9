#include "text/decimal.h"

#include <cassert>

namespace vellums::text {

std::u16string decimal(std::int64_t value)
{
    const std::string digits = std::to_string(value);
    return std::u16string(digits.begin(), digits.end());
}

std::u16string decimal(std::int64_t value, int width)
{
    assert(value >= 0);
    std::u16string digits = decimal(value);
    if (digits.size() < static_cast<std::size_t>(width))
        digits.insert(0, static_cast<std::size_t>(width) - digits.size(), u'0');
    return digits;
}

} // namespace vellums::text
