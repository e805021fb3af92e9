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

std::u16string kilobytes(std::uint64_t bytes)
{
    constexpr std::uint64_t kUnit = 1024;
    const std::uint64_t hundredths = bytes / kUnit * 100 + (bytes % kUnit * 100 + kUnit / 2) / kUnit;
    std::u16string digits = decimal(static_cast<std::int64_t>(hundredths / 100));
    for (std::size_t at = digits.size(); at > 3;)
        digits.insert(at -= 3, u",");
    return digits + u"." + decimal(static_cast<std::int64_t>(hundredths % 100), 2) + u"KB";
}

} // namespace vellums::text
