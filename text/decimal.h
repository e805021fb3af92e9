// Whole numbers as text.
#pragma once

#include <cstdint>
#include <string>

namespace vellums::text {

// A number in decimal digits, with "-" when negative.
std::u16string decimal(std::int64_t value);
// The same with leading zeros up to the width; for values from 0.
std::u16string decimal(std::int64_t value, int width);

} // namespace vellums::text
