// Whole numbers as text.
#pragma once

#include <cstdint>
#include <string>

namespace vellums::text {

// A number in decimal digits, with "-" when negative.
std::u16string decimal(std::int64_t value);
// The same with leading zeros up to the width; for values from 0.
std::u16string decimal(std::int64_t value, int width);

// "1,234.00KB": bytes divided by 1024, with two decimals, a half rounded up.
std::u16string kilobytes(std::uint64_t bytes);

} // namespace vellums::text
